// Flutter's standard message codec, which encodes and decodes one EncodableValue in Flutter's published format.
#pragma once

#include <cstdint>
#include <string_view>

#include "flutter_host/byte_stream.h"
#include "flutter_host/encodable_value.h"

namespace vantro {

// Stateless, so any number of threads may use one instance. A subclass adds its own types: it overrides both operations
// and calls these for everything else. The overrides get a message's outermost values and, inside lists and maps,
// custom values and type bytes that are not the standard's.
//
// Reading never throws on bad bytes. Its memory and time are in proportion to the bytes of the message, whatever
// lengths they claim. Errors are reported on the standard error stream:
//  - A read beyond the end fails the reader. A scalar is then zero; a string, a byte list and a typed list are empty;
//    a list and a map contain the elements that were complete.
//  - An unknown type gives null, and reading goes on after its byte.
//  - If lists and maps nest deeper than ByteBufferStreamReader::kMaximumNesting, the whole message is refused.
// A repeated key in a map keeps its last value, as in the interface. Type 5, an integer too large for 64 bits as
// hexadecimal text, is read as a string.
class StandardCodecSerializer {
 public:
  // The serializer without extra types.
  static const StandardCodecSerializer& GetInstance();

  virtual ~StandardCodecSerializer() = default;

  // A custom value is reported on the standard error stream, and nothing is written.
  virtual void WriteValue(const EncodableValue& value, ByteBufferStreamWriter* stream) const;
  // Reads the value after a type byte that has been read. The value is in the arena of the reader.
  virtual EncodableValue ReadValueOfType(uint8_t type, ByteBufferStreamReader* stream) const;

  EncodableValue ReadValue(ByteBufferStreamReader* stream) const { return ReadValueOfType(stream->ReadByte(), stream); }
};

}  // namespace vantro
