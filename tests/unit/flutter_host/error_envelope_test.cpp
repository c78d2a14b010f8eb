// What a result receives for an error whose code or message is not a string.
#include <gtest/gtest.h>

#include <string>

#include "flutter_host/method_result.h"
#include "flutter_host/standard_method_codec.h"
#include "tests/unit/flutter_host/bytes.h"

namespace vantro {
namespace {

class ErrorResult : public MethodResult {
 public:
  std::string code = "none", message = "none";

 protected:
  void SuccessInternal(const EncodableValue&) override { ADD_FAILURE(); }
  void ErrorInternal(std::string_view newCode, std::string_view newMessage, const EncodableValue&) override {
    code = newCode;
    message = newMessage;
  }
  void NotImplementedInternal() override { ADD_FAILURE(); }
};

struct Error {
  std::string code, message;
};
Error Decoded(const test::Bytes& envelope) {
  ErrorResult result;
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

TEST(ErrorEnvelope, HasItsCodeAndItsMessage) {
  const Error error = Decoded(test::FromHex("01 07 01 63 07 01 6d 00"));
  EXPECT_EQ(error.code, "c");
  EXPECT_EQ(error.message, "m");
}

}  // namespace
}  // namespace vantro
