#include "channel/argument_readers.h"

#include "common/saturated_cast.h"

namespace vantro {

namespace {

// Returns the null value if there is no such argument.
EncodableValue FindArgument(const MethodCall& call, std::string_view key) {
  const auto map = call.arguments().Get<EncodableMap>();
  const EncodableValue* const value = map ? map->Find(key) : nullptr;
  return value ? *value : EncodableValue();
}

}  // namespace

int32_t ReadIntArgument(const MethodCall& call, std::string_view key, int32_t fallback) {
  const EncodableValue value = FindArgument(call, key);
  if (const auto narrow = value.Get<int32_t>()) return *narrow;
  if (const auto wide = value.Get<int64_t>()) return static_cast<int32_t>(static_cast<uint32_t>(*wide));
  if (const auto real = value.Get<double>()) return SaturatedCast<int32_t>(*real);
  return fallback;
}

bool ReadBoolArgument(const MethodCall& call, std::string_view key, bool fallback) {
  return FindArgument(call, key).Get<bool>().value_or(fallback);
}

std::string ReadStringArgument(const MethodCall& call, std::string_view key) {
  return std::string(FindArgument(call, key).Get<std::string_view>().value_or(""));
}

double ReadNumberArgument(const MethodCall& call, std::string_view key, double fallback) {
  const EncodableValue value = FindArgument(call, key);
  if (const auto real = value.Get<double>()) return *real;
  if (const auto narrow = value.Get<int32_t>()) return *narrow;
  if (const auto wide = value.Get<int64_t>()) return static_cast<double>(*wide);
  return fallback;
}

}  // namespace vantro
