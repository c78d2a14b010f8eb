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

}  // namespace vantro
