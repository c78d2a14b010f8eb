// Whatever was decoded, from whole or broken bytes, encodes to bytes that decode to it again, to the last byte.
#include "flutter_host/standard_codec_serializer.h"
#include "tests/fuzz/encoded.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vantro;
  const StandardCodecSerializer& serializer = StandardCodecSerializer::GetInstance();
  ByteBufferStreamReader reader(data, size);
  const std::vector<uint8_t> once = Encoded(serializer.ReadValue(&reader));

  ByteBufferStreamReader again(once.data(), once.size());
  const std::vector<uint8_t> twice = Encoded(serializer.ReadValue(&again));

  REQUIRE(!again.failed());
  REQUIRE(again.position() == once.size());
  REQUIRE(once == twice);
  return 0;
}
