// Malformed messages.
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
using test::ListOf;
using test::MapOf;
using test::Value;

constexpr char kInvalidRead[] = "Invalid read in StandardCodecByteStreamReader\n";

Value OneOfEveryReadableType() {
  return ListOf({Value(), Value(true), Value(int32_t{1}), Value(int64_t{2}), Value(1.5), Value("text"),
                 Value(Bytes{1, 2, 3}), Value(std::vector<int32_t>{1, 2}), Value(std::vector<int64_t>{3}),
                 Value(std::vector<double>{0.5}), Value(std::vector<float>{0.25f}),
                 MapOf({{"key", ListOf({Value("deep")})}})});
}

TEST(ReaderBeyondItsEnd, YieldsZeroForAByteAndReportsIt) {
  LocalArena memory;
  ByteBufferStreamReader reader(nullptr, 0, &memory);
  CapturedStderr errors;
  EXPECT_EQ(reader.ReadByte(), 0);
  EXPECT_EQ(errors.Take(), kInvalidRead);
}

TEST(ReaderBeyondItsEnd, CopiesNothingAndReportsIt) {
  LocalArena memory;
  const Bytes bytes{1, 2, 3};
  ByteBufferStreamReader reader(bytes.data(), bytes.size(), &memory);
  uint8_t buffer[4] = {9, 9, 9, 9};
  CapturedStderr errors;
  reader.ReadBytes(buffer, sizeof buffer);
  EXPECT_EQ(errors.Take(), kInvalidRead);
  EXPECT_EQ(Bytes(buffer, buffer + 4), Bytes({9, 9, 9, 9}));
}

TEST(ReaderBeyondItsEnd, StaysFailed) {
  LocalArena memory;
  const Bytes bytes{1, 2, 3};
  ByteBufferStreamReader reader(bytes.data(), bytes.size(), &memory);
  uint8_t buffer[4] = {};
  CapturedStderr errors;
  reader.ReadBytes(buffer, sizeof buffer);
  EXPECT_EQ(reader.ReadByte(), 0);
  EXPECT_TRUE(reader.failed());
}

TEST(ReaderBeyondItsEnd, ReadsNothingWithoutFailing) {
  LocalArena memory;
  ByteBufferStreamReader reader(nullptr, 0, &memory);
  reader.ReadBytes(nullptr, 0);
  reader.ReadAlignment(8);
  EXPECT_FALSE(reader.failed());
}

TEST(ReaderBeyondItsEnd, FailsInThePadding) {
  const Bytes bytes{6, 0, 0};
  CapturedStderr errors;
  EXPECT_EQ(Decode(bytes), Value(0.0));
  EXPECT_EQ(errors.Take(), kInvalidRead);
}

TEST(TruncatedMessage, IsReportedOnceAtEveryOffset) {
  const Bytes whole = Encode(OneOfEveryReadableType());
  for (size_t length = 0; length < whole.size(); ++length) {
    // A block of exactly this size, so that a sanitizer reports any read beyond it.
    const Bytes cut(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length));
    CapturedStderr errors;
    const Value value = Decode(cut);
    EXPECT_EQ(errors.Take(), kInvalidRead) << "cut to " << length;
    if (const auto list = value.value().Get<EncodableList>()) {
      EXPECT_LT(list->size(), 12u) << "cut to " << length;
    }
  }
}

TEST(TruncatedMessage, ListHasTheCompleteElementsBeforeTheCut) {
  CapturedStderr errors;
  EXPECT_EQ(Decode(FromHex("0c 03 01 03 05 00 00 00 03 06")), ListOf({Value(true), Value(int32_t{5})}));
}

TEST(TruncatedMessage, MapHasTheCompleteEntriesBeforeTheCut) {
  CapturedStderr errors;
  EXPECT_EQ(Decode(FromHex("0d 02 07 01 61 01 07 01 62 03 01")), MapOf({{"a", Value(true)}}));
}

TEST(TruncatedMessage, CutEntryKeepsTheCompleteOneOfItsKey) {
  CapturedStderr errors;
  EXPECT_EQ(Decode(FromHex("0d 02 07 01 61 01 07 01 61 03 01")), MapOf({{"a", Value(true)}}));
}

struct Truncation {
  const char* name;
  const char* bytes;
  Value value;
};

class TruncatedValue : public testing::TestWithParam<Truncation> {};

TEST_P(TruncatedValue, IsZeroOrEmpty) {
  CapturedStderr errors;
  const Value value = Decode(FromHex(GetParam().bytes));
  EXPECT_EQ(errors.Take(), kInvalidRead);
  EXPECT_EQ(value, GetParam().value);
}

const Truncation kTruncations[] = {
    {"NothingAtAll", "", Value()},
    {"Int32", "03 01 02 03", Value(int32_t{0})},
    {"Int64", "04 01 02 03 04 05 06 07", Value(int64_t{0})},
    {"Double", "06 00 00 00 00 00 00 00 01", Value(0.0)},
    {"String", "07 03 61 62", Value("")},
    {"SizeOfAString", "07", Value("")},
    {"TwoByteSize", "07 fe 01", Value("")},
    {"FourByteSize", "08 ff 01 00 00", Value(Bytes{})},
    {"LargeInteger", "05 09 31", Value("")},
    {"ByteList", "08 03 01 02", Value(Bytes{})},
    {"Int32List", "09 01 00 00 01", Value(std::vector<int32_t>{})},
    {"Int64List", "0a 01 00 00 00 00 00 00 01", Value(std::vector<int64_t>{})},
    {"DoubleList", "0b 01 00", Value(std::vector<double>{})},
    {"FloatList", "0e 02 00 00 01 02 03 04", Value(std::vector<float>{})},
    {"List", "0c 02", ListOf({})},
    {"Map", "0d 02", MapOf({})},
};

INSTANTIATE_TEST_SUITE_P(HostileBytes, TruncatedValue, testing::ValuesIn(kTruncations),
                         [](const auto& row) { return std::string(row.param.name); });

class UnknownType : public testing::TestWithParam<int> {};

TEST_P(UnknownType, IsReportedWithItsByteAndYieldsNull) {
  CapturedStderr errors;
  const Value value = Decode({static_cast<uint8_t>(GetParam()), 1, 2, 3});
  EXPECT_EQ(errors.Take(),
            "Unknown type in StandardCodecSerializer::ReadValueOfType: " + std::to_string(GetParam()) + "\n");
  EXPECT_TRUE(value.value().IsNull());
}

INSTANTIATE_TEST_SUITE_P(HostileBytes, UnknownType, testing::Values(15, 16, 127, 128, 254, 255));

TEST(UnknownType, InsideAListLeavesTheRestReadable) {
  CapturedStderr errors;
  EXPECT_EQ(Decode(FromHex("0c 03 01 0f 02")), ListOf({Value(true), Value(), Value(false)}));
}

// A few bytes that claim four thousand million elements.
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

// For any claimed lengths, the values take at most 16 bytes for each byte of the message for the outermost list or map,
// and 16 bytes for everything inside it. The message is copied once.
class ClaimsInsideClaims : public testing::TestWithParam<const char*> {};

TEST_P(ClaimsInsideClaims, TakeAtMost33BytesAByte) {
  Bytes bytes;
  for (int depth = 0; depth < 200; ++depth) bytes = Join(bytes, FromHex(GetParam()));
  bytes.resize(64 * 1024, 1);
  CapturedStderr errors;
  size_t allocated = 0;
  {
    const AllocationMeter meter;
    Decode(bytes);
    allocated = meter.bytes();
  }
  EXPECT_LE(allocated, 33 * bytes.size() + 128 * 1024) << "what is set aside at first comes on top";
}

INSTANTIATE_TEST_SUITE_P(HostileBytes, ClaimsInsideClaims,
                         testing::Values("0c ff ff ff ff ff", "0d ff ff ff ff ff", "0c fe 00 f0", "0d fe 00 70",
                                         "0c ff ff ff 00 00", "0d 02 0c fe 00 10"));

TEST(ClaimedLength, BeyondTheEndKeepsTheCompleteElementsBeforeIt) {
  CapturedStderr errors;
  // A list that claims four thousand million elements. It contains a complete list, a complete map and a truncated
  // list.
  EXPECT_EQ(Decode(FromHex("0c ff ff ff ff ff 0c 02 01 02 0d 01 07 01 61 0c 01 00 0c fe 00 01 01")),
            ListOf({ListOf({Value(true), Value(false)}), MapOf({{"a", ListOf({Value()})}})}));
  EXPECT_EQ(errors.Take(), kInvalidRead);
}

Bytes NestedLists(int depth) {
  Bytes bytes;
  for (int level = 0; level < depth; ++level) bytes = Join(bytes, FromHex("0c 01"));
  return Join(bytes, FromHex("00"));
}

TEST(DeepNesting, UpToTheBoundIsReadWhole) {
  const Bytes bytes = NestedLists(ByteBufferStreamReader::kMaximumNesting);
  EXPECT_EQ(Encode(Decode(bytes)), bytes);
}

TEST(DeepNesting, BeyondTheBoundRefusesTheMessage) {
  const Bytes bytes = NestedLists(ByteBufferStreamReader::kMaximumNesting + 1);
  LocalArena memory;
  ByteBufferStreamReader reader(bytes.data(), bytes.size(), &memory);
  CapturedStderr errors;
  StandardCodecSerializer::GetInstance().ReadValue(&reader);
  EXPECT_EQ(errors.Take(), "Value nested too deeply in StandardCodecSerializer::ReadValueOfType\n");
  EXPECT_TRUE(reader.isRefused());
}

TEST(DeepNesting, OfThousandsOfLevelsKeepsTheStack) {
  CapturedStderr errors;
  Decode(NestedLists(20000));
  Bytes maps;
  for (int level = 0; level < 20000; ++level) maps = Join(maps, FromHex("0d 01"));
  Decode(maps);
  EXPECT_NE(errors.Take(), "");
}

// A map with two equal keys, each of which is again such a map: the time of the comparison must not double with each
// level. If the time is exponential, the watchdog ends the test.
TEST(DeepNesting, OfMapsAsKeysOfMapsIsComparedInOneWalk) {
  Value value;
  for (int level = 0; level < 200; ++level) value = MapOf({{value, Value()}});
  const Bytes key = Encode(value);
  const Bytes bytes = Join(FromHex("0d 02"), key, FromHex("01"), key, FromHex("02"));
  EXPECT_EQ(Decode(bytes), MapOf({{value, Value(false)}}));
}

TEST(WideNesting, IsNotTakenForDeepNesting) {
  const Value value = ListOf(std::vector<Value>(1000, ListOf({})));
  EXPECT_EQ(Decode(Encode(value)), value);
}

}  // namespace
}  // namespace vantro
