// The wire format: bytes from the published format, encoded and decoded.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>

#include "flutter_host/standard_codec_serializer.h"
#include "tests/unit/flutter_host/bytes.h"
#include "tests/unit/flutter_host/captured_stderr.h"

namespace vantro {

// The value of the tests' codec extension.
class CustomEncodableValue {
 public:
  uint8_t number;
};

namespace {

using test::Bytes;
using test::Decode;
using test::Encode;
using test::FromHex;
using test::Join;
using test::ListOf;
using test::MapOf;
using test::Value;

struct Vector {
  const char* name;
  Value value;
  Bytes bytes;
};
void PrintTo(const Vector& vector, std::ostream* out) { *out << vector.name; }

const Vector kVectors[] = {
    {"Null", Value(), FromHex("00")},
    {"True", Value(true), FromHex("01")},
    {"False", Value(false), FromHex("02")},
    {"Int32", Value(int32_t{0x12345678}), FromHex("03 78 56 34 12")},
    {"Int32Negative", Value(int32_t{-2}), FromHex("03 fe ff ff ff")},
    {"Int64IsNotAligned", Value(int64_t{0x1234567890abcdef}), FromHex("04 ef cd ab 90 78 56 34 12")},
    {"Int64Smallest", Value(std::numeric_limits<int64_t>::min()), FromHex("04 00 00 00 00 00 00 00 80")},
    {"DoubleIsPaddedToEight", Value(3.14159265358979311599796346854),
     FromHex("06 00 00 00 00 00 00 00 18 2d 44 54 fb 21 09 40")},
    {"String", Value("hello world"), FromHex("07 0b 68 65 6c 6c 6f 20 77 6f 72 6c 64")},
    {"StringLengthCountsUtf8Bytes", Value("h\xe2\x98\xbaw"), FromHex("07 05 68 e2 98 ba 77")},
    {"StringBeyondTheBasicPlane", Value("h\xf0\x9f\x98\x82w"), FromHex("07 06 68 f0 9f 98 82 77")},
    {"StringWithZeroByte", Value(std::string("a\0b", 3)), FromHex("07 03 61 00 62")},
    {"EmptyString", Value(""), FromHex("07 00")},
    {"ByteList", Value(std::vector<uint8_t>{0xba, 0x5e, 0xba, 0x11}), FromHex("08 04 ba 5e ba 11")},
    {"EmptyByteList", Value(std::vector<uint8_t>{}), FromHex("08 00")},
    {"Int32List", Value(std::vector<int32_t>{0x12345678, -1}), FromHex("09 02 00 00 78 56 34 12 ff ff ff ff")},
    {"EmptyInt32ListIsPadded", Value(std::vector<int32_t>{}), FromHex("09 00 00 00")},
    {"Int64List", Value(std::vector<int64_t>{0x1234567890abcdef}),
     FromHex("0a 01 00 00 00 00 00 00 ef cd ab 90 78 56 34 12")},
    {"EmptyInt64ListIsPadded", Value(std::vector<int64_t>{}), FromHex("0a 00 00 00 00 00 00 00")},
    {"DoubleList", Value(std::vector<double>{1.0}), FromHex("0b 01 00 00 00 00 00 00 00 00 00 00 00 00 f0 3f")},
    {"EmptyDoubleListIsPadded", Value(std::vector<double>{}), FromHex("0b 00 00 00 00 00 00 00")},
    {"FloatList", Value(std::vector<float>{1.0f, -2.0f}), FromHex("0e 02 00 00 00 00 80 3f 00 00 00 c0")},
    {"EmptyFloatListIsPadded", Value(std::vector<float>{}), FromHex("0e 00 00 00")},
    {"EmptyList", ListOf({}), FromHex("0c 00")},
    {"ListOfOddities",
     ListOf({Value(), Value("hello"), Value(3.14), Value(int32_t{47}), MapOf({{Value(int32_t{42}), Value("nested")}})}),
     FromHex("0c 05 00 07 05 68 65 6c 6c 6f 06 00 00 00 00 00 1f 85 eb 51 b8 1e 09 40 03 2f 00 00 00 0d 01 03 2a 00 "
             "00 00 07 06 6e 65 73 74 65 64")},
    {"EmptyMap", MapOf({}), FromHex("0d 00")},
    {"MapWithAlignedValue", MapOf({{Value("a"), Value(1.0)}}),
     FromHex("0d 01 07 01 61 06 00 00 00 00 00 00 00 00 f0 3f")},
    {"MapIsWrittenInItsOrder",
     MapOf({{Value("b"), Value(true)}, {Value("a"), Value(false)}, {Value(int32_t{1}), Value()}}),
     FromHex("0d 03 03 01 00 00 00 00 07 01 61 02 07 01 62 01")},
};

class GoldenVector : public testing::TestWithParam<Vector> {};

TEST_P(GoldenVector, EncodesToItsBytes) { EXPECT_EQ(Encode(GetParam().value), GetParam().bytes); }

TEST_P(GoldenVector, DecodesFromItsBytes) {
  LocalArena memory;
  ByteBufferStreamReader reader(GetParam().bytes.data(), GetParam().bytes.size(), &memory);
  EXPECT_EQ(StandardCodecSerializer::GetInstance().ReadValue(&reader), GetParam().value.value());
  EXPECT_EQ(reader.position(), GetParam().bytes.size());
  EXPECT_FALSE(reader.failed());
}

INSTANTIATE_TEST_SUITE_P(Codec, GoldenVector, testing::ValuesIn(kVectors),
                         [](const auto& row) { return std::string(row.param.name); });

struct SizePrefix {
  size_t size;
  const char* prefix;
};

class SizeOfAByteList : public testing::TestWithParam<SizePrefix> {};

TEST_P(SizeOfAByteList, TakesTheShortestPrefixBothWays) {
  const Bytes content(GetParam().size, 0x5a);
  const Bytes bytes = Join(FromHex("08"), FromHex(GetParam().prefix), content);
  EXPECT_EQ(Encode(Value(content)), bytes);
  EXPECT_EQ(Decode(bytes), Value(content));
}

INSTANTIATE_TEST_SUITE_P(Codec, SizeOfAByteList,
                         testing::Values(SizePrefix{253, "fd"}, SizePrefix{254, "fe fe 00"},
                                         SizePrefix{255, "fe ff 00"}, SizePrefix{0xffff, "fe ff ff"},
                                         SizePrefix{0x10000, "ff 00 00 01 00"}),
                         [](const auto& row) { return std::to_string(row.param.size); });

TEST(Codec, LargeIntegerIsReadAsItsHexadecimalText) { EXPECT_EQ(Decode(FromHex("05 04 31 32 61 62")), Value("12ab")); }

TEST(Codec, MapWhoseKeysComeInAnyOrderIsInTheirOrder) {
  EXPECT_EQ(Decode(FromHex("0d 04 07 01 62 01 03 07 00 00 00 02 07 00 00 07 01 61 02")),
            MapOf({{Value(int32_t{7}), Value(false)}, {"", Value()}, {"a", Value(false)}, {"b", Value(true)}}));
}

// Typed lists are read from a copy of the message, which is aligned for any alignment of the sender's bytes.
TEST(Codec, TypedListsAreAlignedWhereverTheMessageLies) {
  const Bytes message = FromHex("0b 02 00 00 00 00 00 00 00 00 00 00 00 00 f0 3f 00 00 00 00 00 00 00 40");
  for (size_t offset = 0; offset < 9; ++offset) {
    const Bytes moved = Join(Bytes(offset), message);
    LocalArena memory;
    ByteBufferStreamReader reader(moved.data() + offset, message.size(), &memory);
    const auto list = StandardCodecSerializer::GetInstance().ReadValue(&reader).Get<std::span<const double>>();
    ASSERT_TRUE(list);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(list->data()) % alignof(double), 0u) << offset;
    EXPECT_EQ(list->back(), 2.0) << offset;
  }
}

TEST(Codec, DecodedValuesDoNotPointIntoTheMessage) {
  const Value sent = ListOf({Value("text"), Value(Bytes{1, 2, 3}), Value(std::vector<int32_t>{4, 5}),
                             Value(std::vector<double>{0.5}), MapOf({{"key", Value("value")}})});
  Bytes message = Encode(sent);
  const Value decoded = Decode(message);
  std::fill(message.begin(), message.end(), uint8_t{0xEE});
  EXPECT_EQ(decoded, sent);
}

TEST(Codec, LastOfTwoEqualKeysWins) {
  EXPECT_EQ(Decode(FromHex("0d 02 07 01 61 01 07 01 61 02")), MapOf({{Value("a"), Value(false)}}));
}

// Adds a type: the type byte 128 and one byte, decoded to a custom value.
class ExtendedSerializer : public StandardCodecSerializer {
 public:
  void WriteValue(const EncodableValue& value, ByteBufferStreamWriter* stream) const override {
    const auto custom = value.Get<const CustomEncodableValue*>();
    if (!custom) return StandardCodecSerializer::WriteValue(value, stream);
    stream->WriteByte(128);
    stream->WriteByte((*custom)->number);
  }
  EncodableValue ReadValueOfType(uint8_t type, ByteBufferStreamReader* stream) const override {
    if (type != 128) return StandardCodecSerializer::ReadValueOfType(type, stream);
    return EncodableValue(&kNumbers[stream->ReadByte() & 7]);
  }
  static constexpr CustomEncodableValue kNumbers[] = {{0}, {1}, {2}, {3}, {4}, {5}, {6}, {7}};
};

TEST(Codec, CustomValueIsReportedAndLeavesNoByte) {
  test::CapturedStderr errors;
  const Bytes bytes = Encode(ListOf({Value(true), Value(&ExtendedSerializer::kNumbers[1])}));
  EXPECT_EQ(errors.Take(),
            "Unhandled custom type in StandardCodecSerializer::WriteValue.\nCustom types require codec extensions.\n");
  EXPECT_EQ(bytes, FromHex("0c 02 01"));
}

TEST(ExtendedCodec, ServesItsTypeInsideContainers) {
  const ExtendedSerializer serializer;
  const Value value = MapOf({{"k", ListOf({Value(&ExtendedSerializer::kNumbers[7])})}});
  ByteVector bytes;
  ByteBufferStreamWriter writer(&bytes);
  serializer.WriteValue(value.value(), &writer);
  EXPECT_EQ(Bytes(bytes.data(), bytes.data() + bytes.size()), FromHex("0d 01 07 01 6b 0c 01 80 07"));

  LocalArena memory;
  ByteBufferStreamReader reader(bytes.data(), bytes.size(), &memory);
  EXPECT_EQ(serializer.ReadValue(&reader), value.value());
  EXPECT_FALSE(reader.failed());
}

}  // namespace
}  // namespace vantro
