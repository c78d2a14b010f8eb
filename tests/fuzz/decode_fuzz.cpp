// Any bytes decode to the same value as in a plain decoder, and fail where it fails.
#include "flutter_host/standard_codec_serializer.h"
#include "tests/fuzz/plain_decoder.h"
#include "tests/fuzz/require.h"

namespace vantro {
namespace {

void CheckBytes(const Plain& plain, const void* bytes, size_t size) {
  REQUIRE(plain.bytes.size() == size);
  REQUIRE(size == 0 || std::memcmp(plain.bytes.data(), bytes, size) == 0);
}

// Compares bit by bit, so that 0 and -0 differ.
void Check(const EncodableValue& value, const Plain& plain) {
  REQUIRE(value.kind() == plain.kind);
  if (const auto map = value.Get<EncodableMap>()) {
    REQUIRE(2 * map->size() == plain.children.size());
    for (size_t at = 0; at < map->size(); ++at) {
      Check((*map)[at].key, plain.children[2 * at]);
      Check((*map)[at].value, plain.children[2 * at + 1]);
    }
  } else if (const auto list = value.Get<EncodableList>()) {
    REQUIRE(list->size() == plain.children.size());
    for (size_t at = 0; at < list->size(); ++at) Check((*list)[at], plain.children[at]);
  } else if (const auto flag = value.Get<bool>()) {
    CheckBytes(plain, &*flag, 1);
  } else if (const auto narrow = value.Get<int32_t>()) {
    CheckBytes(plain, &*narrow, sizeof *narrow);
  } else if (const auto wide = value.Get<int64_t>()) {
    CheckBytes(plain, &*wide, sizeof *wide);
  } else if (const auto real = value.Get<double>()) {
    CheckBytes(plain, &*real, sizeof *real);
  } else {
    CheckBytes(plain, value.elements(), value.size() * ElementSize(value.kind()));
    REQUIRE(reinterpret_cast<uintptr_t>(value.elements()) % std::max<size_t>(ElementSize(value.kind()), 1) == 0);
  }
}

}  // namespace
}  // namespace vantro

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vantro;
  LocalArena memory;
  ByteBufferStreamReader reader(data, size, &memory);
  const EncodableValue value = StandardCodecSerializer::GetInstance().ReadValue(&reader);
  PlainDecoder decoder(data, size);
  const Plain plain = decoder.Read();
  REQUIRE(reader.failed() == decoder.failed());
  // A list that claims more than the message holds is refused as truncated before anything inside it is found too deep.
  REQUIRE(decoder.isTooDeep() || !reader.isRefused());
  if (!reader.isRefused()) Check(value, plain);
  return 0;
}
