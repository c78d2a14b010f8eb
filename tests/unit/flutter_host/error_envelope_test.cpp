// What a result receives for an error whose code or message is not a string.
#include <gtest/gtest.h>

#include <string>

#include "flutter_host/method_result.h"
#include "flutter_host/standard_method_codec.h"
#include "tests/unit/flutter_host/bytes.h"

namespace vantro {
namespace {

class ToldError : public MethodResult {
 public:
  std::string code = "none", message = "none";

 protected:
  void SuccessInternal(const EncodableValue&) override { ADD_FAILURE(); }
  void ErrorInternal(std::string_view toldCode, std::string_view toldMessage, const EncodableValue&) override {
    code = toldCode;
    message = toldMessage;
  }
  void NotImplementedInternal() override { ADD_FAILURE(); }
};

struct Told {
  std::string code, message;
};
Told Decoded(const test::Bytes& envelope) {
  ToldError result;
  EXPECT_TRUE(
      StandardMethodCodec::GetInstance().DecodeAndProcessResponseEnvelope(envelope.data(), envelope.size(), &result));
  return {result.code, result.message};
}

TEST(ErrorEnvelope, WithoutATextForItsCodeHasAnEmptyCode) {
  EXPECT_EQ(Decoded(test::FromHex("01 00 07 01 6d 00")).code, "");
  EXPECT_EQ(Decoded(test::FromHex("01 03 05 00 00 00 07 01 6d 00")).code, "");
}

TEST(ErrorEnvelope, WithoutATextForItsMessageHasAnEmptyMessage) {
  EXPECT_EQ(Decoded(test::FromHex("01 07 01 63 00 00")).message, "");
  EXPECT_EQ(Decoded(test::FromHex("01 07 01 63 01 00")).message, "");
}

TEST(ErrorEnvelope, TellsItsCodeAndItsMessage) {
  const Told told = Decoded(test::FromHex("01 07 01 63 07 01 6d 00"));
  EXPECT_EQ(told.code, "c");
  EXPECT_EQ(told.message, "m");
}

}  // namespace
}  // namespace vantro
