// Bytes written as text, and the codec's two directions, for the codec's tests.
#pragma once

#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "flutter_host/standard_codec_serializer.h"

namespace vantro::test {

using Bytes = std::vector<uint8_t>;

// "07 02 61 62" as four bytes.
inline Bytes FromHex(const std::string& hex) {
  Bytes bytes;
  const char* at = hex.c_str();
  for (char* end = nullptr;; at = end) {
    const unsigned long byte = std::strtoul(at, &end, 16);
    if (end == at) return bytes;
    bytes.push_back(static_cast<uint8_t>(byte));
  }
}

inline Bytes Encode(const EncodableValue& value) {
  Bytes bytes;
  ByteBufferStreamWriter writer(&bytes);
  StandardCodecSerializer::GetInstance().WriteValue(value, &writer);
  return bytes;
}

inline EncodableValue Decode(const Bytes& bytes) {
  ByteBufferStreamReader reader(bytes.data(), bytes.size());
  return StandardCodecSerializer::GetInstance().ReadValue(&reader);
}

template <class... Parts>
Bytes Join(const Parts&... parts) {
  Bytes joined;
  (joined.insert(joined.end(), parts.begin(), parts.end()), ...);
  return joined;
}

}  // namespace vantro::test
