// An answer of the interface, whole or broken, either answers a result once or is refused. An accepted answer is
// encoded to an envelope that decodes to the same answer.
#include "flutter_host/standard_method_codec.h"
#include "tests/fuzz/require.h"

namespace vantro {
namespace {

class ReEncodingResult : public MethodResult {
 public:
  int answers = 0;
  ByteVector envelope;

 protected:
  void SuccessInternal(const EncodableValue& value) override {
    ++answers;
    Codec().EncodeSuccessEnvelope(value, &envelope);
  }
  void ErrorInternal(std::string_view code, std::string_view message, const EncodableValue& details) override {
    ++answers;
    Codec().EncodeErrorEnvelope(code, message, details, &envelope);
  }
  void NotImplementedInternal() override { ++answers; }

 private:
  static const MethodCodec& Codec() { return StandardMethodCodec::GetInstance(); }
};

}  // namespace
}  // namespace vantro

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vantro;
  const StandardMethodCodec& codec = StandardMethodCodec::GetInstance();
  ReEncodingResult first;
  const bool isUnderstood = codec.DecodeAndProcessResponseEnvelope(data, size, &first);
  REQUIRE(first.answers == (isUnderstood ? 1 : 0));
  if (!isUnderstood) return 0;

  ReEncodingResult second;
  REQUIRE(codec.DecodeAndProcessResponseEnvelope(first.envelope.data(), first.envelope.size(), &second));
  REQUIRE(second.answers == 1);
  REQUIRE(first.envelope.size() == second.envelope.size());
  REQUIRE(std::memcmp(first.envelope.data(), second.envelope.data(), first.envelope.size()) == 0);
  return 0;
}
