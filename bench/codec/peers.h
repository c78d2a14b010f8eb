// Converts the same data to the trees of the other two libraries.
#pragma once

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wold-style-cast"
#include <msgpack.hpp>
#pragma GCC diagnostic pop
#include <nlohmann/json.hpp>

#include "flutter_host/encodable_value.h"

namespace vantro::bench {

// Strings and byte lists are stored in the zone.
msgpack::object ToMsgpack(const EncodableValue& value, msgpack::zone& zone);
nlohmann::json ToJson(const EncodableValue& value);

}  // namespace vantro::bench
