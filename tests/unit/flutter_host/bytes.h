// Bytes written as text, and the codec's two directions, for the codec's tests.
#pragma once

#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "flutter_host/standard_codec_serializer.h"
#include "tests/support/values.h"

namespace vantro::test {

using Bytes = std::vector<uint8_t>;

// Returns four bytes for "07 02 61 62".
inline Bytes FromHex(const std::string& hex) {
  Bytes bytes;
  const char* at = hex.c_str();
  for (char* end = nullptr;; at = end) {
    const unsigned long byte = std::strtoul(at, &end, 16);
    if (end == at) return bytes;
    bytes.push_back(static_cast<uint8_t>(byte));
  }
}

inline Bytes Encode(const Value& value) {
  ByteVector bytes;
  ByteBufferStreamWriter writer(&bytes);
  StandardCodecSerializer::GetInstance().WriteValue(value.value(), &writer);
  return Bytes(bytes.data(), bytes.data() + bytes.size());
}

inline Value Decode(const Bytes& bytes) {
  const auto memory = std::make_shared<ValueArena>();
  ByteBufferStreamReader reader(bytes.data(), bytes.size(), memory.get());
  return Value(StandardCodecSerializer::GetInstance().ReadValue(&reader), memory);
}

template <class... Parts>
Bytes Join(const Parts&... parts) {
  Bytes joined;
  (joined.insert(joined.end(), parts.begin(), parts.end()), ...);
  return joined;
}

}  // namespace vantro::test
