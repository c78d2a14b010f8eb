#include "bench/codec/messages.h"

#include <string>

namespace vantro::bench {

namespace {

EncodableValue ChannelRecord(int number) {
  const std::string digits = std::to_string(number);
  return EncodableValue(EncodableMap{
      {EncodableValue("id"), EncodableValue(int64_t{5'000'000'000} + number)},
      {EncodableValue("number"), EncodableValue(int32_t{number})},
      {EncodableValue("name"), EncodableValue("Channel " + digits + " HD")},
      {EncodableValue("url"), EncodableValue("http://provider.example:8080/live/user/secret/" + digits + ".ts")},
      {EncodableValue("logo"), EncodableValue("http://provider.example/logos/" + digits + ".png")},
      {EncodableValue("group"), EncodableValue("News")},
      {EncodableValue("rating"), EncodableValue(number * 0.01)},
      {EncodableValue("isAdult"), EncodableValue(false)},
      {EncodableValue("archive"), EncodableValue(number % 2 == 0)},
      {EncodableValue("epgId"), EncodableValue()},
      {EncodableValue("tags"),
       EncodableValue(EncodableList{EncodableValue("hd"), EncodableValue("en"), EncodableValue("live")})},
      {EncodableValue("slots"),
       EncodableValue(
           EncodableList{EncodableValue(EncodableList{EncodableValue(int32_t{0}), EncodableValue(int32_t{3600})}),
                         EncodableValue(EncodableList{EncodableValue(int32_t{3600}), EncodableValue(int32_t{7200})})})},
  });
}

}  // namespace

EncodableValue SetMediaArguments() {
  return EncodableValue(EncodableMap{
      {EncodableValue("URL"), EncodableValue("http://provider.example:8080/live/user/secret/12345.ts")},
      {EncodableValue("url"), EncodableValue("http://provider.example:8080/live/user/secret/12345.ts")},
      {EncodableValue("title"), EncodableValue("Channel 12345 HD")},
      {EncodableValue("Title"), EncodableValue("Channel 12345 HD")},
      {EncodableValue("networkCacheMs"), EncodableValue(int32_t{5000})},
      {EncodableValue("initialSeekPositionMs"), EncodableValue(int32_t{0})},
      {EncodableValue("isLiveStream"), EncodableValue(true)},
      {EncodableValue("supportsTimeshift"), EncodableValue(false)},
      {EncodableValue("isInTimeshiftMode"), EncodableValue(false)},
      {EncodableValue("playerProfile"), EncodableValue("windows_fullscreen")},
      {EncodableValue("localVodProxyEnabled"), EncodableValue(false)},
      {EncodableValue("originalUrl"), EncodableValue("http://provider.example:8080/live/user/secret/12345.ts")},
  });
}

EncodableValue ProviderChunk(int records) {
  EncodableList items;
  for (int number = 0; number < records; ++number) items.push_back(ChannelRecord(number));
  return EncodableValue(EncodableMap{{EncodableValue("chunkType"), EncodableValue("channels")},
                                     {EncodableValue("items"), EncodableValue(std::move(items))}});
}

EncodableValue ByteList(size_t size) {
  std::vector<uint8_t> bytes(size);
  for (size_t at = 0; at < size; ++at) bytes[at] = static_cast<uint8_t>(at * 31);
  return EncodableValue(std::move(bytes));
}

}  // namespace vantro::bench
