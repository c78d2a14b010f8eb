// A value as the bytes that the codec gives it: compares what "==" cannot, such as numbers that are not numbers.
#pragma once

#include <cstdint>
#include <vector>

#include "flutter_host/standard_codec_serializer.h"

namespace vantro {

inline std::vector<uint8_t> Encoded(const EncodableValue& value) {
  std::vector<uint8_t> bytes;
  ByteBufferStreamWriter writer(&bytes);
  StandardCodecSerializer::GetInstance().WriteValue(value, &writer);
  return bytes;
}

}  // namespace vantro
