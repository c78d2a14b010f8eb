// Any bytes decode to some value, within memory in proportion to them, and the reader over a buffer and any other
// reader agree on the value.
#include <algorithm>

#include "flutter_host/standard_codec_serializer.h"
#include "tests/fuzz/encoded.h"
#include "tests/fuzz/require.h"

namespace vantro {
namespace {

// The same reads through virtual calls, without the buffer's shortcuts.
class PlainReader : public ByteStreamReader {
 public:
  explicit PlainReader(ByteBufferStreamReader* reader) : reader_(reader) {}
  uint8_t ReadByte() override { return Noticing(reader_->ReadByte()); }
  void ReadBytes(uint8_t* buffer, size_t length) override {
    reader_->ReadBytes(buffer, length);
    Noticing(0);
  }
  void ReadAlignment(uint8_t alignment) override {
    reader_->ReadAlignment(alignment);
    Noticing(0);
  }

 private:
  uint8_t Noticing(uint8_t byte) {
    if (reader_->failed()) Fail();
    return byte;
  }
  ByteBufferStreamReader* reader_;
};

}  // namespace
}  // namespace vantro

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vantro;
  const StandardCodecSerializer& serializer = StandardCodecSerializer::GetInstance();
  ByteBufferStreamReader quick(data, size);
  const EncodableValue value = serializer.ReadValue(&quick);
  REQUIRE(quick.position() <= size);

  ByteBufferStreamReader under(data, size);
  PlainReader plain(&under);
  const EncodableValue same = serializer.ReadValue(&plain);
  REQUIRE(quick.failed() == plain.failed());
  REQUIRE(Encoded(value) == Encoded(same));
  return 0;
}
