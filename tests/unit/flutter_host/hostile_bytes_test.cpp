// Bytes that no honest interface sends.
#include <gtest/gtest.h>

#include <string>

#include "flutter_host/standard_codec_serializer.h"
#include "tests/unit/flutter_host/allocation_meter.h"
#include "tests/unit/flutter_host/bytes.h"
#include "tests/unit/flutter_host/captured_stderr.h"

namespace vantro {
namespace {

using test::AllocationMeter;
using test::Bytes;
using test::CapturedStderr;
using test::Decode;
using test::Encode;
using test::FromHex;
using test::Join;

constexpr char kInvalidRead[] = "Invalid read in StandardCodecByteStreamReader\n";

EncodableValue OneOfEveryReadableType() {
  return EncodableValue(EncodableList{
      EncodableValue(), EncodableValue(true), EncodableValue(int32_t{1}), EncodableValue(int64_t{2}),
      EncodableValue(1.5), EncodableValue("text"), EncodableValue(Bytes{1, 2, 3}),
      EncodableValue(std::vector<int32_t>{1, 2}), EncodableValue(std::vector<int64_t>{3}),
      EncodableValue(std::vector<double>{0.5}), EncodableValue(std::vector<float>{0.25f}),
      EncodableValue(EncodableMap{{EncodableValue("key"), EncodableValue(EncodableList{EncodableValue("deep")})}})});
}

TEST(ReaderBeyondItsEnd, YieldsZeroForAByteAndReportsIt) {
  ByteBufferStreamReader reader(nullptr, 0);
  CapturedStderr errors;
  EXPECT_EQ(reader.ReadByte(), 0);
  EXPECT_EQ(errors.Take(), kInvalidRead);
}

TEST(ReaderBeyondItsEnd, CopiesNothingAndReportsIt) {
  const Bytes bytes{1, 2, 3};
  ByteBufferStreamReader reader(bytes.data(), bytes.size());
  uint8_t buffer[4] = {9, 9, 9, 9};
  CapturedStderr errors;
  reader.ReadBytes(buffer, sizeof buffer);
  EXPECT_EQ(errors.Take(), kInvalidRead);
  EXPECT_EQ(Bytes(buffer, buffer + 4), Bytes({9, 9, 9, 9}));
}

TEST(ReaderBeyondItsEnd, StaysFailed) {
  const Bytes bytes{1, 2, 3};
  ByteBufferStreamReader reader(bytes.data(), bytes.size());
  uint8_t buffer[4] = {};
  CapturedStderr errors;
  reader.ReadBytes(buffer, sizeof buffer);
  EXPECT_EQ(reader.ReadByte(), 0);
  EXPECT_TRUE(reader.failed());
}

TEST(ReaderBeyondItsEnd, ReadsNothingWithoutFailing) {
  ByteBufferStreamReader reader(nullptr, 0);
  reader.ReadBytes(nullptr, 0);
  reader.ReadAlignment(8);
  EXPECT_FALSE(reader.failed());
}

TEST(ReaderBeyondItsEnd, FailsInThePadding) {
  const Bytes bytes{6, 0, 0};
  CapturedStderr errors;
  EXPECT_EQ(Decode(bytes), EncodableValue(0.0));
  EXPECT_EQ(errors.Take(), kInvalidRead);
}

TEST(TruncatedMessage, IsReportedOnceAtEveryOffset) {
  const Bytes whole = Encode(OneOfEveryReadableType());
  for (size_t length = 0; length < whole.size(); ++length) {
    // A block of its own size, so that a sanitizer sees any read beyond it.
    const Bytes cut(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length));
    CapturedStderr errors;
    const EncodableValue value = Decode(cut);
    EXPECT_EQ(errors.Take(), kInvalidRead) << "cut to " << length;
    if (const auto* list = std::get_if<EncodableList>(&value)) {
      EXPECT_LT(list->size(), 12u) << "cut to " << length;
    }
  }
}

TEST(TruncatedMessage, ListHoldsWhatStoodCompleteBefore) {
  CapturedStderr errors;
  EXPECT_EQ(Decode(FromHex("0c 03 01 03 05 00 00 00 03 06")),
            EncodableValue(EncodableList{EncodableValue(true), EncodableValue(int32_t{5})}));
}

TEST(TruncatedMessage, MapHoldsWhatStoodCompleteBefore) {
  CapturedStderr errors;
  EXPECT_EQ(Decode(FromHex("0d 02 07 01 61 01 07 01 62 03 01")),
            EncodableValue(EncodableMap{{EncodableValue("a"), EncodableValue(true)}}));
}

struct Truncation {
  const char* name;
  const char* bytes;
  EncodableValue value;
};

class TruncatedValue : public testing::TestWithParam<Truncation> {};

TEST_P(TruncatedValue, IsZeroOrEmpty) {
  CapturedStderr errors;
  const EncodableValue value = Decode(FromHex(GetParam().bytes));
  EXPECT_EQ(errors.Take(), kInvalidRead);
  EXPECT_EQ(value, GetParam().value);
}

const Truncation kTruncations[] = {
    {"NothingAtAll", "", EncodableValue()},
    {"Int32", "03 01 02 03", EncodableValue(int32_t{0})},
    {"Int64", "04 01 02 03 04 05 06 07", EncodableValue(int64_t{0})},
    {"Double", "06 00 00 00 00 00 00 00 01", EncodableValue(0.0)},
    {"String", "07 03 61 62", EncodableValue("")},
    {"SizeOfAString", "07", EncodableValue("")},
    {"TwoByteSize", "07 fe 01", EncodableValue("")},
    {"FourByteSize", "08 ff 01 00 00", EncodableValue(Bytes{})},
    {"LargeInteger", "05 09 31", EncodableValue("")},
    {"ByteList", "08 03 01 02", EncodableValue(Bytes{})},
    {"Int32List", "09 01 00 00 01", EncodableValue(std::vector<int32_t>{})},
    {"Int64List", "0a 01 00 00 00 00 00 00 01", EncodableValue(std::vector<int64_t>{})},
    {"DoubleList", "0b 01 00", EncodableValue(std::vector<double>{})},
    {"FloatList", "0e 02 00 00 01 02 03 04", EncodableValue(std::vector<float>{})},
    {"List", "0c 02", EncodableValue(EncodableList{})},
    {"Map", "0d 02", EncodableValue(EncodableMap{})},
};

INSTANTIATE_TEST_SUITE_P(HostileBytes, TruncatedValue, testing::ValuesIn(kTruncations),
                         [](const auto& row) { return std::string(row.param.name); });

class UnknownType : public testing::TestWithParam<int> {};

TEST_P(UnknownType, IsReportedWithItsByteAndYieldsNull) {
  CapturedStderr errors;
  const EncodableValue value = Decode({static_cast<uint8_t>(GetParam()), 1, 2, 3});
  EXPECT_EQ(errors.Take(),
            "Unknown type in StandardCodecSerializer::ReadValueOfType: " + std::to_string(GetParam()) + "\n");
  EXPECT_TRUE(value.IsNull());
}

INSTANTIATE_TEST_SUITE_P(HostileBytes, UnknownType, testing::Values(15, 16, 127, 128, 254, 255));

TEST(UnknownType, InsideAListLeavesTheRestReadable) {
  CapturedStderr errors;
  EXPECT_EQ(Decode(FromHex("0c 03 01 0f 02")),
            EncodableValue(EncodableList{EncodableValue(true), EncodableValue(), EncodableValue(false)}));
}

// Four thousand million claimed elements in a handful of bytes.
class ClaimedLength : public testing::TestWithParam<const char*> {};

TEST_P(ClaimedLength, TakesNoMoreMemoryThanTheBytesThatArrived) {
  const Bytes bytes = FromHex(GetParam());
  CapturedStderr errors;
  size_t allocated = 0;
  {
    const AllocationMeter meter;
    Decode(bytes);
    allocated = meter.bytes();
  }
  EXPECT_LE(allocated, 4096u);
  EXPECT_EQ(errors.Take(), kInvalidRead);
}

INSTANTIATE_TEST_SUITE_P(HostileBytes, ClaimedLength,
                         testing::Values("07 ff ff ff ff ff 01 01 01 01 01 01", "08 ff ff ff ff ff 01 01 01 01 01 01",
                                         "09 ff ff ff ff ff 01 01 01 01 01 01", "0a ff ff ff ff ff 01 01 01 01 01 01",
                                         "0b ff ff ff ff ff 01 01 01 01 01 01", "0c ff ff ff ff ff 01 01 01 01 01 01",
                                         "0d ff ff ff ff ff 01 01 02 02 00 00", "0e ff ff ff ff ff 01 01 01 01 01 01"));

TEST(ClaimedLength, OfListsInListsReservesTheMessageOnceInAll) {
  Bytes bytes;
  for (int depth = 0; depth < 200; ++depth) bytes = Join(bytes, FromHex("0c ff ff ff ff ff"));
  bytes.resize(64 * 1024, 1);
  CapturedStderr errors;
  size_t allocated = 0;
  {
    const AllocationMeter meter;
    Decode(bytes);
    allocated = meter.bytes();
  }
  EXPECT_LE(allocated, 4 * bytes.size() * sizeof(EncodableValue));
}

Bytes NestedLists(int depth) {
  Bytes bytes;
  for (int level = 0; level < depth; ++level) bytes = Join(bytes, FromHex("0c 01"));
  return Join(bytes, FromHex("00"));
}

TEST(DeepNesting, UpToTheBoundIsReadWhole) {
  const Bytes bytes = NestedLists(ByteStreamReader::kMaximumNesting);
  EXPECT_EQ(Encode(Decode(bytes)), bytes);
}

TEST(DeepNesting, BeyondTheBoundFailsTheMessage) {
  CapturedStderr errors;
  const EncodableValue value = Decode(NestedLists(ByteStreamReader::kMaximumNesting + 1));
  EXPECT_EQ(errors.Take(), "Value nested too deeply in StandardCodecSerializer::ReadValueOfType\n");
  EXPECT_EQ(value, EncodableValue(EncodableList{})) << "no list inside stood complete";
}

TEST(DeepNesting, OfThousandsOfLevelsKeepsTheStack) {
  CapturedStderr errors;
  Decode(NestedLists(20000));
  Bytes maps;
  for (int level = 0; level < 20000; ++level) maps = Join(maps, FromHex("0d 01"));
  Decode(maps);
  EXPECT_NE(errors.Take(), "");
}

// A map of two equal keys, each of which is such a map, and so on: the comparison of the keys must not double with each
// level. What is more than linear does not end within the watchdog's time.
TEST(DeepNesting, OfMapsAsKeysOfMapsIsComparedInOneWalk) {
  EncodableValue value;
  for (int level = 0; level < 200; ++level) value = EncodableValue(EncodableMap{{value, EncodableValue()}});
  const Bytes key = Encode(value);
  const Bytes bytes = Join(FromHex("0d 02"), key, FromHex("01"), key, FromHex("02"));
  EXPECT_EQ(Decode(bytes), EncodableValue(EncodableMap{{value, EncodableValue(false)}}));
}

TEST(WideNesting, IsNotTakenForDeepNesting) {
  const EncodableValue value(EncodableList(1000, EncodableValue(EncodableList{})));
  EXPECT_EQ(Decode(Encode(value)), value);
}

}  // namespace
}  // namespace vantro
