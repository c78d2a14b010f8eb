// The two directions of the codec, for the fuzz targets.
#pragma once

#include <cstdint>
#include <vector>

#include "flutter_host/standard_codec_serializer.h"

namespace vantro {

// Returns the codec's bytes of a value. They differ where "==" does not, such as for 0 and -0.
inline std::vector<uint8_t> Encoded(const EncodableValue& value) {
  ByteVector bytes;
  ByteBufferStreamWriter writer(&bytes);
  StandardCodecSerializer::GetInstance().WriteValue(value, &writer);
  return {bytes.data(), bytes.data() + bytes.size()};
}

}  // namespace vantro
