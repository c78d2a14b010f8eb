// Whatever a request carries, each reader gives the value under its key or its default: no conversion is undefined, and
// a value of another type is never taken for one.
#include <cmath>

#include "bridge/argument_readers.h"
#include "flutter_host/standard_method_codec.h"
#include "services/snapshot_request.h"
#include "tests/fuzz/require.h"

namespace vantro {
namespace {

constexpr int32_t kIntFallback = 0x5EED;
constexpr double kNumberFallback = 1.0;

void CheckKey(const MethodCall& call, const EncodableMap& map, const std::string& key) {
  const EncodableValue* value = FindEntry(map, key);
  const bool isNarrow = std::get_if<int32_t>(value), isWide = std::get_if<int64_t>(value);
  const auto* real = std::get_if<double>(value);
  const auto* text = std::get_if<std::string>(value);

  const int32_t asInt = ReadIntArgument(call, key, kIntFallback);
  if (!isNarrow && !isWide && !real) REQUIRE(asInt == kIntFallback);
  if (real && std::abs(*real) < 1) REQUIRE(asInt == 0);
  const double asNumber = ReadNumberArgument(call, key, kNumberFallback);
  if (!isNarrow && !isWide && !real) REQUIRE(asNumber == kNumberFallback);
  const bool isFlag = std::get_if<bool>(value);
  if (!isFlag) REQUIRE(ReadBoolArgument(call, key, true) && !ReadBoolArgument(call, key, false));
  REQUIRE(ReadStringArgument(call, key) == (text ? *text : ""));
  // The other readers of numbers that arrive from outside.
  if (real) {
    static_cast<void>(vod_thumbnail::SeekTargetMs(*real));
    REQUIRE(vod_thumbnail::SnapshotFileName(key, *real).ends_with(".jpg"));
  }
}

}  // namespace
}  // namespace vantro

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vantro;
  const auto call = StandardMethodCodec::GetInstance().DecodeMethodCall(data, size);
  if (!call) return 0;
  REQUIRE(ReadIntArgument(*call, call->method_name() + "?", kIntFallback) == kIntFallback || call->arguments());
  const auto* map = std::get_if<EncodableMap>(call->arguments());
  if (!map) return 0;
  for (const auto& [key, value] : *map) {
    if (const auto* text = std::get_if<std::string>(&key)) CheckKey(*call, *map, *text);
  }
  return 0;
}
