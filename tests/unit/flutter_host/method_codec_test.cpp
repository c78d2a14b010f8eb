// Method calls and envelopes.
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "flutter_host/standard_codec_serializer.h"
#include "flutter_host/standard_method_codec.h"
#include "tests/unit/flutter_host/allocation_meter.h"
#include "tests/unit/flutter_host/bytes.h"
#include "tests/unit/flutter_host/captured_stderr.h"

namespace vantro {
namespace {

using test::Bytes;
using test::CapturedStderr;
using test::FromHex;

const StandardMethodCodec& Codec() { return StandardMethodCodec::GetInstance(); }

std::unique_ptr<MethodCall> DecodeCall(const Bytes& bytes) {
  return Codec().DecodeMethodCall(bytes.data(), bytes.size());
}

// What a result was told, as one line.
class TellingResult : public MethodResult {
 public:
  std::string told;
  std::optional<EncodableValue> value;

 protected:
  void SuccessInternal(const EncodableValue* newValue) override { Tell("success", newValue); }
  void ErrorInternal(const std::string& code, const std::string& message, const EncodableValue* details) override {
    Tell("error " + code + "/" + message, details);
  }
  void NotImplementedInternal() override { Tell("not implemented", nullptr); }

 private:
  void Tell(const std::string& what, const EncodableValue* newValue) {
    told += what;
    if (newValue) value = *newValue;
  }
};

TEST(MethodCodec, HasOneInstancePerSerializer) {
  class OtherSerializer : public StandardCodecSerializer {};
  static const OtherSerializer other;
  EXPECT_EQ(&StandardMethodCodec::GetInstance(), &StandardMethodCodec::GetInstance(nullptr));
  EXPECT_EQ(&StandardMethodCodec::GetInstance(),
            &StandardMethodCodec::GetInstance(&StandardCodecSerializer::GetInstance()));
  EXPECT_EQ(&StandardMethodCodec::GetInstance(&other), &StandardMethodCodec::GetInstance(&other));
  EXPECT_NE(&StandardMethodCodec::GetInstance(&other), &StandardMethodCodec::GetInstance());
}

TEST(MethodCallOnTheWire, IsNameThenArgumentsAlignedFromTheFirstByteOfTheMessage) {
  const Bytes bytes = FromHex("07 02 61 62 06 00 00 00 00 00 00 00 00 00 f8 3f");
  EXPECT_EQ(*Codec().EncodeMethodCall(MethodCall("ab", std::make_unique<EncodableValue>(1.5))), bytes);

  const auto call = DecodeCall(bytes);
  ASSERT_TRUE(call);
  EXPECT_EQ(call->method_name(), "ab");
  EXPECT_EQ(*call->arguments(), EncodableValue(1.5));
}

TEST(MethodCallOnTheWire, WithoutArgumentsCarriesNull) {
  const Bytes bytes = FromHex("07 04 70 6c 61 79 00");
  EXPECT_EQ(*Codec().EncodeMethodCall(MethodCall("play", nullptr)), bytes);
  const auto call = DecodeCall(bytes);
  ASSERT_TRUE(call);
  EXPECT_TRUE(call->arguments()->IsNull());
}

TEST(MethodCallOnTheWire, NameThatIsNoStringIsReportedAndRefused) {
  for (const char* hex : {"00", "03 01 00 00 00 00", "0c 00", "0d 00"}) {
    CapturedStderr errors;
    EXPECT_EQ(DecodeCall(FromHex(hex)), nullptr) << hex;
    EXPECT_EQ(errors.Take(), "Invalid method call; method name is not a string.\n") << hex;
  }
}

TEST(MethodCallOnTheWire, EmptyMessageIsRefused) {
  CapturedStderr errors;
  EXPECT_EQ(Codec().DecodeMethodCall(nullptr, 0), nullptr);
  EXPECT_EQ(errors.Take(),
            "Invalid read in StandardCodecByteStreamReader\nInvalid method call; method name is not a string.\n");
}

TEST(MethodCallOnTheWire, CutAtAnyOffsetNeverGivesAnotherName) {
  EncodableMap map{{EncodableValue("URL"), EncodableValue("http://host/a.ts")},
                   {EncodableValue(1), EncodableValue(2.5)}};
  const auto whole = Codec().EncodeMethodCall(MethodCall("setMedia", std::make_unique<EncodableValue>(std::move(map))));
  for (size_t length = 0; length < whole->size(); ++length) {
    const Bytes cut(whole->begin(), whole->begin() + static_cast<ptrdiff_t>(length));
    CapturedStderr errors;
    const auto call = DecodeCall(cut);
    EXPECT_NE(errors.Take(), "") << length;
    if (call) {
      EXPECT_EQ(call->method_name(), length < 10 ? "" : "setMedia") << length;
    }
  }
}

struct Envelope {
  const char* name;
  Bytes bytes;
  std::string told;
  std::optional<EncodableValue> value;
};
void PrintTo(const Envelope& envelope, std::ostream* out) { *out << envelope.name; }

class UnderstoodEnvelope : public testing::TestWithParam<Envelope> {};

TEST_P(UnderstoodEnvelope, AnswersTheResult) {
  TellingResult result;
  EXPECT_TRUE(Codec().DecodeAndProcessResponseEnvelope(GetParam().bytes.data(), GetParam().bytes.size(), &result));
  EXPECT_EQ(result.told, GetParam().told);
  EXPECT_EQ(result.value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    MethodCodec, UnderstoodEnvelope,
    testing::Values(Envelope{"Null", FromHex("00 00"), "success", std::nullopt},
                    Envelope{"True", FromHex("00 01"), "success", EncodableValue(true)},
                    Envelope{"AlignedDouble", FromHex("00 06 00 00 00 00 00 00 00 00 00 00 00 00 f8 3f"), "success",
                             EncodableValue(1.5)},
                    Envelope{"Error", FromHex("01 07 01 45 07 01 6d 02"), "error E/m", EncodableValue(false)},
                    Envelope{"ErrorWithoutMessageAndDetails", FromHex("01 07 01 45 00 00"), "error E/", std::nullopt}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(Envelope, SuccessIsZeroThenTheValueAlignedFromTheEnvelopeByte) {
  const EncodableValue number(1.5);
  EXPECT_EQ(*Codec().EncodeSuccessEnvelope(&number), FromHex("00 06 00 00 00 00 00 00 00 00 00 00 00 00 f8 3f"));
}

TEST(Envelope, SuccessWithoutAValueCarriesNull) { EXPECT_EQ(*Codec().EncodeSuccessEnvelope(), FromHex("00 00")); }

TEST(Envelope, ErrorIsOneThenCodeMessageAndDetails) {
  const EncodableValue details(false);
  EXPECT_EQ(*Codec().EncodeErrorEnvelope("E", "m", &details), FromHex("01 07 01 45 07 01 6d 02"));
}

TEST(Envelope, ErrorWithoutMessageAndDetailsCarriesNullForThem) {
  EXPECT_EQ(*Codec().EncodeErrorEnvelope("E"), FromHex("01 07 01 45 00 00"));
}

TEST(Envelope, OfAnUnknownKindIsRefusedUnanswered) {
  TellingResult result;
  const Bytes bytes = FromHex("02 00");
  EXPECT_FALSE(Codec().DecodeAndProcessResponseEnvelope(bytes.data(), bytes.size(), &result));
  EXPECT_EQ(result.told, "");
}

TEST(Envelope, WithoutAByteIsRefusedUnanswered) {
  TellingResult result;
  CapturedStderr errors;
  EXPECT_FALSE(Codec().DecodeAndProcessResponseEnvelope(nullptr, 0, &result));
  EXPECT_EQ(result.told, "");
}

// Two for the message and its bytes; the name and the text are written where they stand.
TEST(SmallEvent, TakesTwoAllocationsAndNoneGrows) {
  const MethodCall call("providerDataReceivedByThisWindow",
                        std::make_unique<EncodableValue>("{\"position\":123456,\"duration\":7200000}"));
  size_t allocations = 0;
  {
    const test::AllocationMeter meter;
    const auto message = Codec().EncodeMethodCall(call);
    allocations = meter.count();
  }
  EXPECT_EQ(allocations, 2u);
}

TEST(LargeByteList, IsEncodedIntoOneBufferOfItsSize) {
  const EncodableValue value(Bytes(1 << 20, 7));
  size_t bytes = 0;
  {
    const test::AllocationMeter meter;
    const auto envelope = Codec().EncodeSuccessEnvelope(&value);
    bytes = meter.bytes();
  }
  EXPECT_LT(bytes, (1u << 20) + 1024);
}

}  // namespace
}  // namespace vantro
