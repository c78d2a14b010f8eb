#include "bench/codec/messages.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vantro::bench {

using test::ListOf;
using test::MapOf;

namespace {

Value ChannelRecord(int number) {
  const std::string digits = std::to_string(number);
  return MapOf({
      {Value("id"), Value(int64_t{5'000'000'000} + number)},
      {Value("number"), Value(int32_t{number})},
      {Value("name"), Value("Channel " + digits + " HD")},
      {Value("url"), Value("http://provider.example:8080/live/user/secret/" + digits + ".ts")},
      {Value("logo"), Value("http://provider.example/logos/" + digits + ".png")},
      {Value("group"), Value("News")},
      {Value("rating"), Value(number * 0.01)},
      {Value("isAdult"), Value(false)},
      {Value("archive"), Value(number % 2 == 0)},
      {Value("epgId"), Value()},
      {Value("tags"), ListOf({Value("hd"), Value("en"), Value("live")})},
      {Value("slots"), ListOf({ListOf({Value(int32_t{0}), Value(int32_t{3600})}),
                               ListOf({Value(int32_t{3600}), Value(int32_t{7200})})})},
  });
}

// Puts the entries in a sender's order: unsorted, and the same each time.
template <class Entries>
void Shuffle(Entries& entries) {
  for (size_t at = 0; at < entries.size(); ++at) std::swap(entries[at], entries[at * 7919 % entries.size()]);
}

EncodableValue UnsortedCopy(const EncodableValue& value, ValueArena& memory) {
  if (const auto list = value.Get<EncodableList>()) {
    std::vector<EncodableValue> elements;
    for (const EncodableValue& element : *list) elements.push_back(UnsortedCopy(element, memory));
    return memory.Copy(EncodableValue(elements));
  }
  if (const auto map = value.Get<EncodableMap>()) {
    std::vector<EncodableEntry> entries;
    for (const EncodableEntry& entry : *map) entries.push_back({entry.key, UnsortedCopy(entry.value, memory)});
    Shuffle(entries);
    return memory.Copy(EncodableValue(EncodableMap(entries.data(), entries.size())));
  }
  return memory.Copy(value);
}

}  // namespace

Value WithKeysUnsorted(const Value& value) {
  const auto memory = std::make_shared<ValueArena>();
  return Value(UnsortedCopy(value.value(), *memory), memory);
}

Value SetMediaArguments() {
  return MapOf({
      {Value("URL"), Value("http://provider.example:8080/live/user/secret/12345.ts")},
      {Value("url"), Value("http://provider.example:8080/live/user/secret/12345.ts")},
      {Value("title"), Value("Channel 12345 HD")},
      {Value("Title"), Value("Channel 12345 HD")},
      {Value("networkCacheMs"), Value(int32_t{5000})},
      {Value("initialSeekPositionMs"), Value(int32_t{0})},
      {Value("isLiveStream"), Value(true)},
      {Value("supportsTimeshift"), Value(false)},
      {Value("isInTimeshiftMode"), Value(false)},
      {Value("playerProfile"), Value("windows_fullscreen")},
      {Value("localVodProxyEnabled"), Value(false)},
      {Value("originalUrl"), Value("http://provider.example:8080/live/user/secret/12345.ts")},
  });
}

Value ProviderChunk(int records) {
  std::vector<Value> items;
  for (int number = 0; number < records; ++number) items.push_back(ChannelRecord(number));
  return MapOf({{Value("chunkType"), Value("channels")}, {Value("items"), ListOf(items)}});
}

Value ByteList(size_t size) {
  std::vector<uint8_t> bytes(size);
  for (size_t at = 0; at < size; ++at) bytes[at] = static_cast<uint8_t>(at * 31);
  return Value(bytes);
}

}  // namespace vantro::bench
