#include "flutter_host/byte_stream.h"

#include <cstdio>
#include <cstring>

namespace vantro {

void ByteBufferStreamReader::ReadBytes(uint8_t* buffer, size_t length) {
  if (length == 0) return;
  if (const uint8_t* bytes = Take(length)) std::memcpy(buffer, bytes, length);
}

// Out of line and cold: the readers' fast path stays a comparison.
const uint8_t* ByteBufferStreamReader::ReportInvalidRead() {
  std::fputs("Invalid read in StandardCodecByteStreamReader\n", stderr);
  Fail();
  return nullptr;
}

void ShortMessageWriter::WriteAlignment(uint8_t alignment) {
  constexpr uint8_t kZeros[16] = {};
  for (size_t left = (alignment - size() % alignment) % alignment; left > 0;) {
    const size_t padding = left < sizeof kZeros ? left : sizeof kZeros;
    WriteBytes(kZeros, padding);
    left -= padding;
  }
}

void ShortMessageWriter::WriteLong(const uint8_t* bytes, size_t length) {
  if (long_.empty()) {
    long_.reserve(size_ + length);
    long_.assign(short_, short_ + size_);
    size_ = sizeof short_;  // from here on every byte comes this way
  }
  long_.insert(long_.end(), bytes, bytes + length);
}

}  // namespace vantro
