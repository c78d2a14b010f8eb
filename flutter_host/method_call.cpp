#include "flutter_host/method_call.h"

#include <algorithm>

namespace vantro {

namespace {

// A message up to this size, with the values decoded from it, mostly fits into the call's own memory.
constexpr size_t kShortMessage = 640;
// For a longer message, its lists and maps get twice its bytes at first, but at most this much.
constexpr size_t kMostFirstRoom = size_t{64} * 1024;

std::string_view CopyText(std::string_view text, ValueArena& memory) {
  return *memory.Copy(EncodableValue(text)).Get<std::string_view>();
}

}  // namespace

MethodCall::MethodCall(std::string_view name, const EncodableValue& arguments)
    : name_(CopyText(name, local_)), arguments_(local_.Copy(arguments)) {}

MethodCall::MethodCall(std::string_view name, const OwnedValue& arguments)
    : name_(CopyText(name, local_)), arguments_(arguments.value()), shared_(arguments.memory()) {}

OwnedValue MethodCall::KeepArguments() const {
  return shared_ ? OwnedValue(arguments_, shared_) : OwnedValue(arguments_);
}

ValueArena& MethodCall::MemoryFor(size_t messageSize) {
  if (messageSize <= kShortMessage) return local_;
  const auto memory = std::make_shared<ValueArena>();
  memory->Expect(messageSize + std::min(2 * messageSize, kMostFirstRoom));
  shared_ = memory;
  return *memory;
}

}  // namespace vantro
