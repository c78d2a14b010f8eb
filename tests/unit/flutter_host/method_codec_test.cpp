// Method calls and envelopes.
#include <gtest/gtest.h>

#include <cstdlib>
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
using test::ListOf;
using test::MapOf;
using test::Value;

// Runs after the destruction of every static object that was constructed during main. libvlc's threads may still send
// then. If the codec were destroyed by that time, the sanitizers would report it, and mostly the comparison would fail.
void EncodeAtTheEnd() {
  ByteVector envelope;
  StandardMethodCodec::GetInstance().EncodeSuccessEnvelope(EncodableValue(true), &envelope);
  if (Bytes(envelope.data(), envelope.data() + envelope.size()) != Bytes{0, 1}) std::_Exit(EXIT_FAILURE);
}
const int registered = std::atexit(EncodeAtTheEnd);

const StandardMethodCodec& Codec() { return StandardMethodCodec::GetInstance(); }

// Returns the name and the arguments, or nothing if the bytes are not a call.
std::optional<std::pair<std::string, Value>> DecodeCall(const Bytes& bytes) {
  MethodCall call;
  if (!Codec().DecodeMethodCall(bytes.data(), bytes.size(), &call)) return std::nullopt;
  return std::pair(std::string(call.method_name()), call.KeepArguments());
}

Bytes EncodeCall(const char* name, const Value& arguments) {
  ByteVector message;
  Codec().EncodeMethodCall(MethodCall(name, arguments), &message);
  return Bytes(message.data(), message.data() + message.size());
}

Bytes SuccessEnvelope(const EncodableValue& value = EncodableValue()) {
  ByteVector envelope;
  Codec().EncodeSuccessEnvelope(value, &envelope);
  return Bytes(envelope.data(), envelope.data() + envelope.size());
}

Bytes ErrorEnvelope(const char* code, const char* message, const EncodableValue& details) {
  ByteVector envelope;
  Codec().EncodeErrorEnvelope(code, message, details, &envelope);
  return Bytes(envelope.data(), envelope.data() + envelope.size());
}

// Records the result as one line.
class RecordingResult : public MethodResult {
 public:
  std::string outcome;
  Value value;

 protected:
  void SuccessInternal(const EncodableValue& newValue) override { Record("success", newValue); }
  void ErrorInternal(std::string_view code, std::string_view message, const EncodableValue& details) override {
    Record("error " + std::string(code) + "/" + std::string(message), details);
  }
  void NotImplementedInternal() override { Record("not implemented", EncodableValue()); }

 private:
  void Record(const std::string& what, const EncodableValue& newValue) {
    outcome += what;
    value = Value(newValue);
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

TEST(MethodCallOnTheWire, IsNameThenArgumentsAlignedFromTheFirstByte) {
  const Bytes bytes = FromHex("07 02 61 62 06 00 00 00 00 00 00 00 00 00 f8 3f");
  EXPECT_EQ(EncodeCall("ab", Value(1.5)), bytes);

  const auto call = DecodeCall(bytes);
  ASSERT_TRUE(call);
  EXPECT_EQ(call->first, "ab");
  EXPECT_EQ(call->second, Value(1.5));
}

TEST(MethodCallOnTheWire, WithoutArgumentsCarriesNull) {
  const Bytes bytes = FromHex("07 04 70 6c 61 79 00");
  EXPECT_EQ(EncodeCall("play", Value()), bytes);
  const auto call = DecodeCall(bytes);
  ASSERT_TRUE(call);
  EXPECT_EQ(call->second, Value());
}

TEST(MethodCallOnTheWire, NameThatIsNoStringIsReportedAndRefused) {
  for (const char* hex : {"00", "03 01 00 00 00 00", "0c 00", "0d 00"}) {
    CapturedStderr errors;
    EXPECT_EQ(DecodeCall(FromHex(hex)), std::nullopt) << hex;
    EXPECT_EQ(errors.Take(), "Invalid method call; method name is not a string.\n") << hex;
  }
}

TEST(MethodCallOnTheWire, EmptyMessageIsRefused) {
  CapturedStderr errors;
  MethodCall call;
  EXPECT_FALSE(Codec().DecodeMethodCall(nullptr, 0, &call));
  EXPECT_EQ(errors.Take(),
            "Invalid read in StandardCodecByteStreamReader\nInvalid method call; method name is not a string.\n");
}

TEST(MethodCallOnTheWire, CutAtAnyOffsetNeverGivesAnotherName) {
  const Bytes whole = EncodeCall("setMedia", MapOf({{"URL", "http://host/a.ts"}, {Value(1), Value(2.5)}}));
  for (size_t length = 0; length < whole.size(); ++length) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length));
    CapturedStderr errors;
    const auto call = DecodeCall(cut);
    EXPECT_NE(errors.Take(), "") << length;
    if (call) {
      EXPECT_EQ(call->first, length < 10 ? "" : "setMedia") << length;
    }
  }
}

TEST(MethodCallOnTheWire, BytesAfterTheArgumentsAreIgnored) {
  Bytes bytes = EncodeCall("play", Value(int32_t{1}));
  bytes.insert(bytes.end(), {7, 4, 0xFF});
  CapturedStderr errors;
  EXPECT_EQ(DecodeCall(bytes), (std::pair<std::string, Value>("play", Value(int32_t{1}))));
  EXPECT_EQ(errors.Take(), "");
}

TEST(MethodCallOnTheWire, NestedTooDeeplyIsRefusedAsAWhole) {
  Bytes arguments;
  for (int level = 0; level <= ByteBufferStreamReader::kMaximumNesting; ++level) {
    arguments = test::Join(arguments, FromHex("0c 01"));
  }
  CapturedStderr errors;
  EXPECT_EQ(DecodeCall(test::Join(FromHex("07 01 6d"), arguments, FromHex("00"))), std::nullopt);
  EXPECT_EQ(errors.Take(), "Value nested too deeply in StandardCodecSerializer::ReadValueOfType\n");
  EXPECT_NE(DecodeCall(test::Join(FromHex("07 01 6d"), Bytes(arguments.begin() + 2, arguments.end()), FromHex("00"))),
            std::nullopt);
}

TEST(MethodCallOnTheWire, AnswerThatIsNestedTooDeeplyIsRefusedUnanswered) {
  Bytes value;
  for (int level = 0; level <= ByteBufferStreamReader::kMaximumNesting; ++level) {
    value = test::Join(value, FromHex("0c 01"));
  }
  for (const char* beginning : {"00", "01 07 01 45 07 01 6d"}) {
    const Bytes bytes = test::Join(test::Join(FromHex(beginning), value), FromHex("00"));
    RecordingResult result;
    CapturedStderr errors;
    EXPECT_FALSE(Codec().DecodeAndProcessResponseEnvelope(bytes.data(), bytes.size(), &result)) << beginning;
    EXPECT_EQ(result.outcome, "");
  }
}

struct Envelope {
  const char* name;
  Bytes bytes;
  std::string outcome;
  Value value;
};
void PrintTo(const Envelope& envelope, std::ostream* out) { *out << envelope.name; }

class UnderstoodEnvelope : public testing::TestWithParam<Envelope> {};

TEST_P(UnderstoodEnvelope, AnswersTheResult) {
  RecordingResult result;
  EXPECT_TRUE(Codec().DecodeAndProcessResponseEnvelope(GetParam().bytes.data(), GetParam().bytes.size(), &result));
  EXPECT_EQ(result.outcome, GetParam().outcome);
  EXPECT_EQ(result.value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    MethodCodec, UnderstoodEnvelope,
    testing::Values(Envelope{"Null", FromHex("00 00"), "success", Value()},
                    Envelope{"True", FromHex("00 01"), "success", Value(true)},
                    Envelope{"AlignedDouble", FromHex("00 06 00 00 00 00 00 00 00 00 00 00 00 00 f8 3f"), "success",
                             Value(1.5)},
                    Envelope{"Error", FromHex("01 07 01 45 07 01 6d 02"), "error E/m", Value(false)},
                    Envelope{"ErrorWithoutMessageAndDetails", FromHex("01 07 01 45 00 00"), "error E/", Value()}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(Envelope, SuccessIsZeroThenTheAlignedValue) {
  EXPECT_EQ(SuccessEnvelope(EncodableValue(1.5)), FromHex("00 06 00 00 00 00 00 00 00 00 00 00 00 00 f8 3f"));
}

TEST(Envelope, SuccessWithoutAValueCarriesNull) { EXPECT_EQ(SuccessEnvelope(), FromHex("00 00")); }

TEST(Envelope, ErrorIsOneThenCodeMessageAndDetails) {
  EXPECT_EQ(ErrorEnvelope("E", "m", EncodableValue(false)), FromHex("01 07 01 45 07 01 6d 02"));
}

TEST(Envelope, ErrorWithoutMessageAndDetailsCarriesNullForThem) {
  EXPECT_EQ(ErrorEnvelope("E", "", EncodableValue()), FromHex("01 07 01 45 00 00"));
}

TEST(Envelope, BytesAfterTheValueAreIgnored) {
  RecordingResult result;
  const Bytes bytes = FromHex("00 01 FF FF");
  EXPECT_TRUE(Codec().DecodeAndProcessResponseEnvelope(bytes.data(), bytes.size(), &result));
  EXPECT_EQ(result.outcome, "success");
  EXPECT_EQ(result.value, Value(true));
}

TEST(Envelope, OfAnUnknownKindIsRefusedUnanswered) {
  RecordingResult result;
  const Bytes bytes = FromHex("02 00");
  EXPECT_FALSE(Codec().DecodeAndProcessResponseEnvelope(bytes.data(), bytes.size(), &result));
  EXPECT_EQ(result.outcome, "");
}

TEST(Envelope, WithoutAByteIsRefusedUnanswered) {
  RecordingResult result;
  CapturedStderr errors;
  EXPECT_FALSE(Codec().DecodeAndProcessResponseEnvelope(nullptr, 0, &result));
  EXPECT_EQ(result.outcome, "");
}

TEST(Envelope, NestedTooDeeplyIsRefusedUnanswered) {
  Bytes bytes = FromHex("00");
  for (int level = 0; level <= ByteBufferStreamReader::kMaximumNesting; ++level) {
    bytes = test::Join(bytes, FromHex("0c 01"));
  }
  RecordingResult result;
  CapturedStderr errors;
  EXPECT_FALSE(Codec().DecodeAndProcessResponseEnvelope(bytes.data(), bytes.size(), &result));
  EXPECT_EQ(result.outcome, "");
}

TEST(ShortCall, IsDecodedWithoutAnAllocation) {
  const Bytes bytes = EncodeCall("setAlphaFlutterView", MapOf({{"level", Value(0.5)}, {"by", "the interface"}}));
  const test::AllocationMeter meter;
  MethodCall call;
  EXPECT_TRUE(Codec().DecodeMethodCall(bytes.data(), bytes.size(), &call));
  EXPECT_EQ(meter.count(), 0u);
  EXPECT_EQ(call.method_name(), "setAlphaFlutterView");
}

TEST(ShortCall, IsEncodedWithoutAnAllocation) {
  const test::AllocationMeter meter;
  const MethodCall call("onTimeChanged", EncodableValue("{\"position\":123456,\"duration\":7200000}"));
  ByteVector message;
  Codec().EncodeMethodCall(call, &message);
  EXPECT_EQ(meter.count(), 0u);
}

Value LargeArguments() {
  return MapOf({{"text", Value(std::string(5000, 'x'))}, {"list", ListOf(std::vector<Value>(100, Value(1)))}});
}

TEST(LargeCall, IsDecodedIntoOneFurtherBlock) {
  const Bytes bytes = EncodeCall("m", LargeArguments());
  const test::AllocationMeter meter;
  MethodCall call;
  EXPECT_TRUE(Codec().DecodeMethodCall(bytes.data(), bytes.size(), &call));
  EXPECT_EQ(meter.count(), 2u);
}

TEST(LargeCall, PassesItsArgumentsOnWithoutACopy) {
  const Bytes bytes = EncodeCall("m", LargeArguments());
  Value kept;
  {
    MethodCall call;
    ASSERT_TRUE(Codec().DecodeMethodCall(bytes.data(), bytes.size(), &call));
    const test::AllocationMeter meter;
    kept = call.KeepArguments();
    const MethodCall relayed("m", kept);
    EXPECT_EQ(meter.count(), 0u);
    EXPECT_EQ(relayed.arguments().elements(), call.arguments().elements());
  }
  EXPECT_EQ(kept, LargeArguments()) << "it outlives the call";
}

TEST(ShortCall, PassesOnArgumentsThatOutliveIt) {
  const Bytes bytes = EncodeCall("m", MapOf({{"a", "text"}}));
  Value kept;
  {
    MethodCall call;
    ASSERT_TRUE(Codec().DecodeMethodCall(bytes.data(), bytes.size(), &call));
    kept = call.KeepArguments();
  }
  EXPECT_EQ(kept, MapOf({{"a", "text"}}));
}

TEST(MethodCall, OwnsACopyOfItsNameAndItsArguments) {
  std::string name = "name", text = "text";
  const MethodCall call(name, EncodableValue(text));
  name = text = "gone";
  EXPECT_EQ(call.method_name(), "name");
  EXPECT_EQ(call.arguments(), EncodableValue("text"));
}

TEST(LargeByteList, IsEncodedIntoOneBufferOfItsSize) {
  const Bytes list(1 << 20, 7);
  const test::AllocationMeter meter;
  ByteVector envelope;
  Codec().EncodeSuccessEnvelope(EncodableValue(list), &envelope);
  EXPECT_EQ(meter.count(), 1u);
  EXPECT_LT(meter.bytes(), (1u << 20) + 1024);
}

}  // namespace
}  // namespace vantro
