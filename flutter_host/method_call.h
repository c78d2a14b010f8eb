// One request: a method name and its arguments.
#pragma once

#include <memory>
#include <string_view>

#include "flutter_host/value_arena.h"

namespace vantro {

// Owns its name and its arguments. Little of both lies in the object itself, which its maker keeps on the stack, so
// that a short call costs no allocation.
class MethodCall {
 public:
  // To be decoded into.
  MethodCall() = default;
  // Copies the name and the arguments; null stands for none.
  MethodCall(std::string_view name, const EncodableValue& arguments);
  // Copies the name. Of the arguments the call gets a copy that shares their memory, which is immutable.
  MethodCall(std::string_view name, const OwnedValue& arguments);
  virtual ~MethodCall() = default;

  std::string_view method_name() const { return name_; }
  // Null when the call has none. Valid while the call lives.
  const EncodableValue& arguments() const { return arguments_; }
  // The arguments for whoever keeps them longer: a large message's share its memory, a short one's are copied.
  OwnedValue KeepArguments() const;

  // For the codec: where what is decoded from a message of this size is to lie, then what has been decoded.
  ValueArena& MemoryFor(size_t messageSize);
  void Set(std::string_view name, const EncodableValue& arguments) {
    name_ = name;
    arguments_ = arguments;
  }

 private:
  LocalArena local_;
  std::string_view name_;
  EncodableValue arguments_;
  std::shared_ptr<const ValueArena> shared_;  // null when the arguments lie in local_
};

}  // namespace vantro
