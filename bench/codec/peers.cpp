#include "bench/codec/peers.h"

#include <cstdlib>
#include <string>

namespace vantro::bench {

namespace {

// Called for an alternative that the benchmarks' messages do not use.
[[noreturn]] void Unexpected() { std::abort(); }

msgpack::object ListToMsgpack(EncodableList list, msgpack::zone& zone) {
  std::vector<msgpack::object> objects;
  for (const EncodableValue& element : list) objects.push_back(ToMsgpack(element, zone));
  return msgpack::object(objects, zone);
}

// Keeps the order of the entries.
msgpack::object MapToMsgpack(EncodableMap map, msgpack::zone& zone) {
  msgpack::object object;
  object.type = msgpack::type::MAP;
  object.via.map.size = static_cast<uint32_t>(map.size());
  object.via.map.ptr = static_cast<msgpack::object_kv*>(
      zone.allocate_align(map.size() * sizeof(msgpack::object_kv), MSGPACK_ZONE_ALIGNOF(msgpack::object_kv)));
  msgpack::object_kv* at = object.via.map.ptr;
  for (const EncodableEntry& entry : map) *at++ = {ToMsgpack(entry.key, zone), ToMsgpack(entry.value, zone)};
  return object;
}

}  // namespace

msgpack::object ToMsgpack(const EncodableValue& value, msgpack::zone& zone) {
  if (value.IsNull()) return msgpack::object();
  if (const auto boolean = value.Get<bool>()) return msgpack::object(*boolean);
  if (const auto narrow = value.Get<int32_t>()) return msgpack::object(*narrow);
  if (const auto wide = value.Get<int64_t>()) return msgpack::object(*wide);
  if (const auto real = value.Get<double>()) return msgpack::object(*real);
  if (const auto text = value.Get<std::string_view>()) return msgpack::object(std::string(*text), zone);
  if (const auto bytes = value.Get<std::span<const uint8_t>>()) {
    return msgpack::object(std::vector<uint8_t>(bytes->begin(), bytes->end()), zone);
  }
  if (const auto list = value.Get<EncodableList>()) return ListToMsgpack(*list, zone);
  if (const auto map = value.Get<EncodableMap>()) return MapToMsgpack(*map, zone);
  Unexpected();
}

nlohmann::json ToJson(const EncodableValue& value) {
  if (value.IsNull()) return nullptr;
  if (const auto boolean = value.Get<bool>()) return *boolean;
  if (const auto narrow = value.Get<int32_t>()) return *narrow;
  if (const auto wide = value.Get<int64_t>()) return *wide;
  if (const auto real = value.Get<double>()) return *real;
  if (const auto text = value.Get<std::string_view>()) return *text;
  if (const auto bytes = value.Get<std::span<const uint8_t>>()) {
    return nlohmann::json::binary(std::vector<uint8_t>(bytes->begin(), bytes->end()));
  }
  if (const auto list = value.Get<EncodableList>()) {
    nlohmann::json array = nlohmann::json::array();
    for (const EncodableValue& element : *list) array.push_back(ToJson(element));
    return array;
  }
  if (const auto map = value.Get<EncodableMap>()) {
    nlohmann::json object = nlohmann::json::object();
    for (const EncodableEntry& entry : *map) {
      object[std::string(entry.key.Get<std::string_view>().value())] = ToJson(entry.value);
    }
    return object;
  }
  Unexpected();
}

}  // namespace vantro::bench
