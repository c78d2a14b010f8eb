// For any request, each reader returns the value under its key or its default. No conversion is undefined, and a value
// of another type is never accepted.
#include <cmath>

#include "channel/argument_readers.h"
#include "flutter_host/standard_method_codec.h"
#include "services/snapshot_request.h"
#include "tests/fuzz/require.h"

namespace vantro {
namespace {

constexpr int32_t kIntFallback = 0x5EED;
constexpr double kNumberFallback = 1.0;

void CheckKey(const MethodCall& call, const EncodableMap& map, const std::string& key) {
  const EncodableValue value = *map.Find(key);
  const bool isNarrow = value.Get<int32_t>().has_value(), isWide = value.Get<int64_t>().has_value();
  const auto real = value.Get<double>();
  const auto text = value.Get<std::string_view>();

  const int32_t asInt = ReadIntArgument(call, key, kIntFallback);
  if (!isNarrow && !isWide && !real) REQUIRE(asInt == kIntFallback);
  if (real && std::abs(*real) < 1) REQUIRE(asInt == 0);
  const double asNumber = ReadNumberArgument(call, key, kNumberFallback);
  if (!isNarrow && !isWide && !real) REQUIRE(asNumber == kNumberFallback);
  if (!value.Get<bool>()) REQUIRE(ReadBoolArgument(call, key, true) && !ReadBoolArgument(call, key, false));
  REQUIRE(ReadStringArgument(call, key) == text.value_or(""));
  // The other readers of numbers that come from outside.
  if (real) {
    static_cast<void>(vod_thumbnail::SeekTargetMs(*real));
    REQUIRE(vod_thumbnail::SnapshotFileName(key, *real).ends_with(".jpg"));
  }
}

}  // namespace
}  // namespace vantro

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vantro;
  MethodCall call;
  if (!StandardMethodCodec::GetInstance().DecodeMethodCall(data, size, &call)) return 0;
  const auto map = call.arguments().Get<EncodableMap>();
  REQUIRE(map || ReadIntArgument(call, call.method_name(), kIntFallback) == kIntFallback);
  if (!map) return 0;
  for (const EncodableEntry& entry : *map) {
    if (const auto text = entry.key.Get<std::string_view>()) CheckKey(call, *map, std::string(*text));
  }
  return 0;
}
