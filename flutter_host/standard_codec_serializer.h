// Flutter's standard message codec: one EncodableValue as bytes and back. The format is Flutter's published one.
#pragma once

#include <cstdint>
#include <string_view>

#include "flutter_host/byte_stream.h"
#include "flutter_host/encodable_value.h"

namespace vantro {

// Stateless, so that any number of threads may use one instance. A subclass adds types of its own by overriding both
// operations and handing everything else on to these: a message's outermost values come to the overrides, and so do,
// inside lists and maps, types that are not the standard's and custom values.
//
// Reading never throws on bad bytes, and takes memory and time in proportion to the bytes that arrived, whatever a
// length in them claims. What is wrong is reported on the standard error stream:
//  - A read beyond the end fails the reader. A scalar is then zero; a string, a byte list and a typed list are empty; a
//    list and a map hold what stood complete before.
//  - An unknown type yields null, and reading goes on behind its byte.
//  - Lists and maps nested deeper than ByteBufferStreamReader::kMaximumNesting refuse the whole message.
// A key that occurs twice in a map keeps its last value, as in the interface. Type 5, an integer too large for 64 bits
// as hexadecimal text, is read as the string that it carries.
class StandardCodecSerializer {
 public:
  // The plain serializer, without types of its own.
  static const StandardCodecSerializer& GetInstance();

  virtual ~StandardCodecSerializer() = default;

  // A custom value is reported on the standard error stream and leaves no byte.
  virtual void WriteValue(const EncodableValue& value, ByteBufferStreamWriter* stream) const;
  // Reads the value behind a type byte that has been read. It lies in the reader's arena.
  virtual EncodableValue ReadValueOfType(uint8_t type, ByteBufferStreamReader* stream) const;

  EncodableValue ReadValue(ByteBufferStreamReader* stream) const { return ReadValueOfType(stream->ReadByte(), stream); }
};

}  // namespace vantro
