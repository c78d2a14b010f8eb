// One request: a method name and its arguments.
#pragma once

#include <memory>
#include <string_view>

#include "flutter_host/value_arena.h"

namespace vantro {

// Owns its name and its arguments. Short ones are inside the object, on the stack of its user, so that a short call
// costs no allocation.
class MethodCall {
 public:
  // For decoding into.
  MethodCall() = default;
  // Copies the name and the arguments; the null value means none.
  MethodCall(std::string_view name, const EncodableValue& arguments);
  // Copies the name. The arguments share their memory with the given ones; it is immutable.
  MethodCall(std::string_view name, const OwnedValue& arguments);
  virtual ~MethodCall() = default;

  std::string_view method_name() const { return name_; }
  // Null when the call has none. Valid while the call lives.
  const EncodableValue& arguments() const { return arguments_; }
  // Returns the arguments to keep after the call. Those of a large message share its memory; others are copied.
  OwnedValue KeepArguments() const;

  // For the codec: the arena to decode a message of this size into, and then the decoded name and arguments.
  ValueArena& MemoryFor(size_t messageSize);
  void Set(std::string_view name, const EncodableValue& arguments) {
    name_ = name;
    arguments_ = arguments;
  }

 private:
  LocalArena local_;
  std::string_view name_;
  EncodableValue arguments_;
  std::shared_ptr<const ValueArena> shared_;  // null if the arguments are in local_
};

}  // namespace vantro
