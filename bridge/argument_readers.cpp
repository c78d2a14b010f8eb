#include "bridge/argument_readers.h"

#include "common/saturated_cast.h"

namespace vantro {

namespace {

const EncodableValue* FindArgument(const MethodCall& call, std::string_view key) {
  const auto* map = call.arguments() ? std::get_if<EncodableMap>(call.arguments()) : nullptr;
  return map ? FindEntry(*map, key) : nullptr;
}

}  // namespace

// A walk and not a lookup: a lookup would have to build a key of the map's own type first.
const EncodableValue* FindEntry(const EncodableMap& map, std::string_view key) {
  for (const auto& [entryKey, value] : map) {
    const auto* text = std::get_if<std::string>(&entryKey);
    if (text && *text == key) return &value;
  }
  return nullptr;
}

int32_t ReadIntArgument(const MethodCall& call, std::string_view key, int32_t fallback) {
  const EncodableValue* value = FindArgument(call, key);
  if (const auto* narrow = std::get_if<int32_t>(value)) return *narrow;
  if (const auto* wide = std::get_if<int64_t>(value)) return static_cast<int32_t>(static_cast<uint32_t>(*wide));
  if (const auto* real = std::get_if<double>(value)) return SaturatedCast<int32_t>(*real);
  return fallback;
}

bool ReadBoolArgument(const MethodCall& call, std::string_view key, bool fallback) {
  const auto* flag = std::get_if<bool>(FindArgument(call, key));
  return flag ? *flag : fallback;
}

std::string ReadStringArgument(const MethodCall& call, std::string_view key) {
  const auto* text = std::get_if<std::string>(FindArgument(call, key));
  return text ? *text : std::string();
}

double ReadNumberArgument(const MethodCall& call, std::string_view key, double fallback) {
  const EncodableValue* value = FindArgument(call, key);
  if (const auto* real = std::get_if<double>(value)) return *real;
  if (const auto* narrow = std::get_if<int32_t>(value)) return *narrow;
  if (const auto* wide = std::get_if<int64_t>(value)) return static_cast<double>(*wide);
  return fallback;
}

}  // namespace vantro
