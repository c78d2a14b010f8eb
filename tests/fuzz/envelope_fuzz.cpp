// An answer of the interface, whole or broken, answers a result once or is refused; what was understood is encoded to
// an envelope that is understood in the same way.
#include <memory>

#include "flutter_host/standard_method_codec.h"
#include "tests/fuzz/encoded.h"
#include "tests/fuzz/require.h"

namespace vantro {
namespace {

class ReEncodingResult : public MethodResult {
 public:
  int answers = 0;
  std::vector<uint8_t> envelope;

 protected:
  void SuccessInternal(const EncodableValue* value) override { Take(*Codec().EncodeSuccessEnvelope(value)); }
  void ErrorInternal(const std::string& code, const std::string& message, const EncodableValue* details) override {
    Take(*Codec().EncodeErrorEnvelope(code, message, details));
  }
  void NotImplementedInternal() override { Take({}); }

 private:
  static const MethodCodec& Codec() { return StandardMethodCodec::GetInstance(); }
  void Take(const std::vector<uint8_t>& bytes) {
    ++answers;
    envelope = bytes;
  }
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
  REQUIRE(first.envelope == second.envelope);
  return 0;
}
