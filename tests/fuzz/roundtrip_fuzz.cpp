// A value decoded from any bytes, whole or broken, encodes to bytes that decode completely to the same value. So does a
// copy of it.
#include "tests/fuzz/encoded.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vantro;
  const StandardCodecSerializer& serializer = StandardCodecSerializer::GetInstance();
  LocalArena memory;
  ByteBufferStreamReader reader(data, size, &memory);
  const EncodableValue value = serializer.ReadValue(&reader);
  if (reader.isRefused()) return 0;
  const std::vector<uint8_t> once = Encoded(value);

  LocalArena memoryAgain;
  ByteBufferStreamReader again(once.data(), once.size(), &memoryAgain);
  const EncodableValue same = serializer.ReadValue(&again);
  REQUIRE(!again.failed());
  REQUIRE(again.position() == once.size());
  REQUIRE(same == value);
  REQUIRE(Encoded(same) == once);

  LocalArena memoryOfCopy;
  REQUIRE(Encoded(memoryOfCopy.Copy(value)) == once);
  return 0;
}
