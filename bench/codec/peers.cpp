#include "bench/codec/peers.h"

#include <cstdlib>
#include <string>

namespace vantro::bench {

namespace {

// The benchmarks' messages use no other alternative.
[[noreturn]] void Unexpected() { std::abort(); }

msgpack::object ListToMsgpack(const EncodableList& list, msgpack::zone& zone) {
  std::vector<msgpack::object> objects;
  for (const EncodableValue& element : list) objects.push_back(ToMsgpack(element, zone));
  return msgpack::object(objects, zone);
}

msgpack::object MapToMsgpack(const EncodableMap& map, msgpack::zone& zone) {
  std::map<std::string, msgpack::object> objects;
  for (const auto& [key, value] : map) objects[std::get<std::string>(key)] = ToMsgpack(value, zone);
  return msgpack::object(objects, zone);
}

}  // namespace

msgpack::object ToMsgpack(const EncodableValue& value, msgpack::zone& zone) {
  if (value.IsNull()) return msgpack::object();
  if (const auto* boolean = std::get_if<bool>(&value)) return msgpack::object(*boolean);
  if (const auto* narrow = std::get_if<int32_t>(&value)) return msgpack::object(*narrow);
  if (const auto* wide = std::get_if<int64_t>(&value)) return msgpack::object(*wide);
  if (const auto* real = std::get_if<double>(&value)) return msgpack::object(*real);
  if (const auto* text = std::get_if<std::string>(&value)) return msgpack::object(*text, zone);
  if (const auto* bytes = std::get_if<std::vector<uint8_t>>(&value)) return msgpack::object(*bytes, zone);
  if (const auto* list = std::get_if<EncodableList>(&value)) return ListToMsgpack(*list, zone);
  if (const auto* map = std::get_if<EncodableMap>(&value)) return MapToMsgpack(*map, zone);
  Unexpected();
}

nlohmann::json ToJson(const EncodableValue& value) {
  if (value.IsNull()) return nullptr;
  if (const auto* boolean = std::get_if<bool>(&value)) return *boolean;
  if (const auto* narrow = std::get_if<int32_t>(&value)) return *narrow;
  if (const auto* wide = std::get_if<int64_t>(&value)) return *wide;
  if (const auto* real = std::get_if<double>(&value)) return *real;
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* bytes = std::get_if<std::vector<uint8_t>>(&value)) return nlohmann::json::binary(*bytes);
  if (const auto* list = std::get_if<EncodableList>(&value)) {
    nlohmann::json array = nlohmann::json::array();
    for (const EncodableValue& element : *list) array.push_back(ToJson(element));
    return array;
  }
  if (const auto* map = std::get_if<EncodableMap>(&value)) {
    nlohmann::json object = nlohmann::json::object();
    for (const auto& [key, element] : *map) object[std::get<std::string>(key)] = ToJson(element);
    return object;
  }
  Unexpected();
}

}  // namespace vantro::bench
