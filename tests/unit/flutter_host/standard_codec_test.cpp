// The wire format: bytes known from the published format, in both directions.
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "flutter_host/standard_codec_serializer.h"
#include "tests/unit/flutter_host/bytes.h"
#include "tests/unit/flutter_host/captured_stderr.h"

namespace vantro {
namespace {

using test::Bytes;
using test::Decode;
using test::Encode;
using test::FromHex;
using test::Join;

struct Vector {
  const char* name;
  EncodableValue value;
  Bytes bytes;
};
void PrintTo(const Vector& vector, std::ostream* out) { *out << vector.name; }

EncodableValue List(EncodableList list) { return EncodableValue(std::move(list)); }

const Vector kVectors[] = {
    {"Null", EncodableValue(), FromHex("00")},
    {"True", EncodableValue(true), FromHex("01")},
    {"False", EncodableValue(false), FromHex("02")},
    {"Int32", EncodableValue(int32_t{0x12345678}), FromHex("03 78 56 34 12")},
    {"Int32Negative", EncodableValue(int32_t{-2}), FromHex("03 fe ff ff ff")},
    {"Int64IsNotAligned", EncodableValue(int64_t{0x1234567890abcdef}), FromHex("04 ef cd ab 90 78 56 34 12")},
    {"Int64Smallest", EncodableValue(std::numeric_limits<int64_t>::min()), FromHex("04 00 00 00 00 00 00 00 80")},
    {"DoubleIsPaddedToEight", EncodableValue(3.14159265358979311599796346854),
     FromHex("06 00 00 00 00 00 00 00 18 2d 44 54 fb 21 09 40")},
    {"String", EncodableValue("hello world"), FromHex("07 0b 68 65 6c 6c 6f 20 77 6f 72 6c 64")},
    {"StringLengthCountsUtf8Bytes", EncodableValue("h\xe2\x98\xbaw"), FromHex("07 05 68 e2 98 ba 77")},
    {"StringBeyondTheBasicPlane", EncodableValue("h\xf0\x9f\x98\x82w"), FromHex("07 06 68 f0 9f 98 82 77")},
    {"StringWithZeroByte", EncodableValue(std::string("a\0b", 3)), FromHex("07 03 61 00 62")},
    {"EmptyString", EncodableValue(""), FromHex("07 00")},
    {"ByteList", EncodableValue(std::vector<uint8_t>{0xba, 0x5e, 0xba, 0x11}), FromHex("08 04 ba 5e ba 11")},
    {"EmptyByteList", EncodableValue(std::vector<uint8_t>{}), FromHex("08 00")},
    {"Int32List", EncodableValue(std::vector<int32_t>{0x12345678, -1}), FromHex("09 02 00 00 78 56 34 12 ff ff ff ff")},
    {"EmptyInt32ListIsPadded", EncodableValue(std::vector<int32_t>{}), FromHex("09 00 00 00")},
    {"Int64List", EncodableValue(std::vector<int64_t>{0x1234567890abcdef}),
     FromHex("0a 01 00 00 00 00 00 00 ef cd ab 90 78 56 34 12")},
    {"EmptyInt64ListIsPadded", EncodableValue(std::vector<int64_t>{}), FromHex("0a 00 00 00 00 00 00 00")},
    {"DoubleList", EncodableValue(std::vector<double>{1.0}),
     FromHex("0b 01 00 00 00 00 00 00 00 00 00 00 00 00 f0 3f")},
    {"EmptyDoubleListIsPadded", EncodableValue(std::vector<double>{}), FromHex("0b 00 00 00 00 00 00 00")},
    {"FloatList", EncodableValue(std::vector<float>{1.0f, -2.0f}), FromHex("0e 02 00 00 00 00 80 3f 00 00 00 c0")},
    {"EmptyFloatListIsPadded", EncodableValue(std::vector<float>{}), FromHex("0e 00 00 00")},
    {"EmptyList", List({}), FromHex("0c 00")},
    {"ListOfOddities",
     List({EncodableValue(), EncodableValue("hello"), EncodableValue(3.14), EncodableValue(int32_t{47}),
           EncodableValue(EncodableMap{{EncodableValue(int32_t{42}), EncodableValue("nested")}})}),
     FromHex("0c 05 00 07 05 68 65 6c 6c 6f 06 00 00 00 00 00 1f 85 eb 51 b8 1e 09 40 03 2f 00 00 00 0d 01 03 2a 00 "
             "00 00 07 06 6e 65 73 74 65 64")},
    {"EmptyMap", EncodableValue(EncodableMap{}), FromHex("0d 00")},
    {"MapWithAlignedValue", EncodableValue(EncodableMap{{EncodableValue("a"), EncodableValue(1.0)}}),
     FromHex("0d 01 07 01 61 06 00 00 00 00 00 00 00 00 f0 3f")},
    {"MapIsWrittenInItsOrder",
     EncodableValue(EncodableMap{{EncodableValue("b"), EncodableValue(true)},
                                 {EncodableValue("a"), EncodableValue(false)},
                                 {EncodableValue(int32_t{1}), EncodableValue()}}),
     FromHex("0d 03 03 01 00 00 00 00 07 01 61 02 07 01 62 01")},
};

class GoldenVector : public testing::TestWithParam<Vector> {};

TEST_P(GoldenVector, EncodesToItsBytes) { EXPECT_EQ(Encode(GetParam().value), GetParam().bytes); }

TEST_P(GoldenVector, DecodesFromItsBytes) {
  ByteBufferStreamReader reader(GetParam().bytes.data(), GetParam().bytes.size());
  EXPECT_EQ(StandardCodecSerializer::GetInstance().ReadValue(&reader), GetParam().value);
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
  EXPECT_EQ(Encode(EncodableValue(content)), bytes);
  EXPECT_EQ(Decode(bytes), EncodableValue(content));
}

INSTANTIATE_TEST_SUITE_P(Codec, SizeOfAByteList,
                         testing::Values(SizePrefix{253, "fd"}, SizePrefix{254, "fe fe 00"},
                                         SizePrefix{255, "fe ff 00"}, SizePrefix{0xffff, "fe ff ff"},
                                         SizePrefix{0x10000, "ff 00 00 01 00"}),
                         [](const auto& row) { return std::to_string(row.param.size); });

TEST(Codec, LargeIntegerIsReadAsItsHexadecimalText) {
  EXPECT_EQ(Decode(FromHex("05 04 31 32 61 62")), EncodableValue("12ab"));
}

TEST(Codec, LastOfTwoEqualKeysWins) {
  EXPECT_EQ(Decode(FromHex("0d 02 07 01 61 01 07 01 61 02")),
            EncodableValue(EncodableMap{{EncodableValue("a"), EncodableValue(false)}}));
}

TEST(Codec, CustomValueIsReportedAndLeavesNoByte) {
  test::CapturedStderr errors;
  const Bytes bytes = Encode(List({EncodableValue(true), EncodableValue(CustomEncodableValue(1))}));
  EXPECT_EQ(errors.Take(),
            "Unhandled custom type in StandardCodecSerializer::WriteValue.\nCustom types require codec extensions.\n");
  EXPECT_EQ(bytes, FromHex("0c 02 01"));
}

// A type of its own: 128 before one byte, carried as a custom value.
class ExtendedSerializer : public StandardCodecSerializer {
 public:
  void WriteValue(const EncodableValue& value, ByteStreamWriter* stream) const override {
    const auto* custom = std::get_if<CustomEncodableValue>(&value);
    if (!custom) return StandardCodecSerializer::WriteValue(value, stream);
    stream->WriteByte(128);
    stream->WriteByte(std::any_cast<uint8_t>(custom->value()));
  }
  EncodableValue ReadValueOfType(uint8_t type, ByteStreamReader* stream) const override {
    if (type != 128) return StandardCodecSerializer::ReadValueOfType(type, stream);
    return EncodableValue(CustomEncodableValue(stream->ReadByte()));
  }
};

TEST(ExtendedCodec, ServesItsTypeInsideContainers) {
  const ExtendedSerializer serializer;
  const EncodableValue value(
      EncodableMap{{EncodableValue("k"), List({EncodableValue(CustomEncodableValue(uint8_t{7}))})}});
  Bytes bytes;
  ByteBufferStreamWriter writer(&bytes);
  serializer.WriteValue(value, &writer);
  EXPECT_EQ(bytes, FromHex("0d 01 07 01 6b 0c 01 80 07"));

  ByteBufferStreamReader reader(bytes.data(), bytes.size());
  const EncodableValue read = serializer.ReadValue(&reader);
  const auto& list = std::get<EncodableList>(std::get<EncodableMap>(read).begin()->second);
  EXPECT_EQ(std::any_cast<uint8_t>(std::get<CustomEncodableValue>(list.at(0)).value()), 7);
}

// Streams without a buffer to look into.
class ListWriter : public ByteStreamWriter {
 public:
  void WriteByte(uint8_t byte) override { bytes.push_back(byte); }
  void WriteBytes(const uint8_t* more, size_t length) override { bytes.insert(bytes.end(), more, more + length); }
  void WriteAlignment(uint8_t alignment) override {
    while (bytes.size() % alignment != 0) bytes.push_back(0);
  }
  Bytes bytes;
};

class ListReader : public ByteStreamReader {
 public:
  explicit ListReader(Bytes bytes) : bytes_(std::move(bytes)) {}
  uint8_t ReadByte() override {
    uint8_t byte = 0;
    ReadBytes(&byte, 1);
    return byte;
  }
  void ReadBytes(uint8_t* buffer, size_t length) override {
    if (failed() || length > bytes_.size() - position_) return Fail();
    std::copy_n(bytes_.begin() + static_cast<ptrdiff_t>(position_), length, buffer);
    position_ += length;
  }
  void ReadAlignment(uint8_t alignment) override {
    while (!failed() && position_ % alignment != 0) ReadByte();
  }

 private:
  Bytes bytes_;
  size_t position_ = 0;
};

TEST(StreamOfAnotherKind, CarriesEveryVectorBothWays) {
  for (const Vector& vector : kVectors) {
    ListWriter writer;
    StandardCodecSerializer::GetInstance().WriteValue(vector.value, &writer);
    EXPECT_EQ(writer.bytes, vector.bytes) << vector.name;
    ListReader reader(vector.bytes);
    EXPECT_EQ(StandardCodecSerializer::GetInstance().ReadValue(&reader), vector.value) << vector.name;
  }
}

TEST(StreamOfAnotherKind, CarriesAListLongerThanABlock) {
  const EncodableValue value(std::vector<int32_t>(10000, 7));
  ListReader reader(Encode(value));
  EXPECT_EQ(StandardCodecSerializer::GetInstance().ReadValue(&reader), value);
}

TEST(StreamOfAnotherKind, ALengthBeyondItsEndGivesAnEmptyValue) {
  ListReader reader(FromHex("08 ff ff ff ff ff 01 02"));
  EXPECT_EQ(StandardCodecSerializer::GetInstance().ReadValue(&reader), EncodableValue(Bytes{}));
  EXPECT_TRUE(reader.failed());
}

}  // namespace
}  // namespace vantro
