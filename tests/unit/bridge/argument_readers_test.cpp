#include "bridge/argument_readers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>

namespace vantro {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr int32_t kMinInt = std::numeric_limits<int32_t>::min();
constexpr int32_t kMaxInt = std::numeric_limits<int32_t>::max();

MethodCall CallWith(EncodableValue arguments) {
  return MethodCall("method", std::make_unique<EncodableValue>(std::move(arguments)));
}

// A call whose arguments are a map of "key" and one other entry.
MethodCall CallWithKey(EncodableValue value) {
  return CallWith(EncodableValue(EncodableMap{
      {EncodableValue("key"), std::move(value)},
      {EncodableValue("other"), EncodableValue(int32_t{99})},
  }));
}

TEST(IntArgument, IsThe32BitIntegerAsItIs) {
  EXPECT_EQ(ReadIntArgument(CallWithKey(EncodableValue(int32_t{-7})), "key", 1), -7);
}

TEST(IntArgument, Cuts64BitIntegersToTheirLow32Bits) {
  const std::pair<int64_t, int32_t> rows[] = {
      {5, 5}, {-5, -5}, {0x100000000, 0}, {0x180000001, kMinInt + 1}, {0xFFFFFFFF, -1}, {INT64_MIN, 0}, {INT64_MAX, -1},
  };
  for (const auto& [wide, expected] : rows) {
    EXPECT_EQ(ReadIntArgument(CallWithKey(EncodableValue(wide)), "key", 1), expected) << wide;
  }
}

TEST(IntArgument, TruncatesDoublesTowardZero) {
  const std::pair<double, int32_t> rows[] = {
      {1500.9, 1500}, {-1500.9, -1500}, {0.99, 0}, {-0.99, 0}, {2147483647.5, kMaxInt}, {-2147483648.5, kMinInt},
  };
  for (const auto& [real, expected] : rows) {
    EXPECT_EQ(ReadIntArgument(CallWithKey(EncodableValue(real)), "key", 1), expected) << real;
  }
}

TEST(IntArgument, TakesTheNearestEndForADoubleOutOfRangeAndZeroForNan) {
  EXPECT_EQ(ReadIntArgument(CallWithKey(EncodableValue(1e300)), "key", 1), kMaxInt);
  EXPECT_EQ(ReadIntArgument(CallWithKey(EncodableValue(-1e300)), "key", 1), kMinInt);
  EXPECT_EQ(ReadIntArgument(CallWithKey(EncodableValue(kInfinity)), "key", 1), kMaxInt);
  EXPECT_EQ(ReadIntArgument(CallWithKey(EncodableValue(-kInfinity)), "key", 1), kMinInt);
  EXPECT_EQ(ReadIntArgument(CallWithKey(EncodableValue(kNan)), "key", 1), 0);
}

TEST(IntArgument, OfAnotherTypeCountsAsAbsent) {
  const EncodableValue others[] = {
      EncodableValue(),
      EncodableValue(true),
      EncodableValue("12"),
      EncodableValue(std::vector<int32_t>{12}),
      EncodableValue(EncodableList{EncodableValue(int32_t{12})}),
      EncodableValue(EncodableMap{}),
  };
  for (const EncodableValue& other : others) {
    EXPECT_EQ(ReadIntArgument(CallWithKey(other), "key", 42), 42) << "alternative " << other.index();
  }
}

TEST(BoolArgument, CountsOnlyABoolean) {
  EXPECT_FALSE(ReadBoolArgument(CallWithKey(EncodableValue(false)), "key", true));
  EXPECT_TRUE(ReadBoolArgument(CallWithKey(EncodableValue(true)), "key", false));
  EXPECT_TRUE(ReadBoolArgument(CallWithKey(EncodableValue(int32_t{0})), "key", true));
  EXPECT_FALSE(ReadBoolArgument(CallWithKey(EncodableValue(int64_t{1})), "key", false));
  EXPECT_FALSE(ReadBoolArgument(CallWithKey(EncodableValue("true")), "key", false));
}

TEST(StringArgument, CountsOnlyAString) {
  EXPECT_EQ(ReadStringArgument(CallWithKey(EncodableValue("text")), "key"), "text");
  EXPECT_EQ(ReadStringArgument(CallWithKey(EncodableValue(int32_t{5})), "key"), "");
  EXPECT_EQ(ReadStringArgument(CallWithKey(EncodableValue(std::vector<uint8_t>{'a'})), "key"), "");
}

TEST(StringArgument, KeepsZeroBytesAndBytesThatAreNoText) {
  const std::string odd("a\0\xFF", 3);
  EXPECT_EQ(ReadStringArgument(CallWithKey(EncodableValue(odd)), "key"), odd);
}

TEST(NumberArgument, TakesDoublesAndBothIntegers) {
  EXPECT_EQ(ReadNumberArgument(CallWithKey(EncodableValue(0.25)), "key", 1.0), 0.25);
  EXPECT_EQ(ReadNumberArgument(CallWithKey(EncodableValue(int32_t{-3})), "key", 1.0), -3.0);
  EXPECT_EQ(ReadNumberArgument(CallWithKey(EncodableValue(int64_t{1} << 40)), "key", 1.0), 1099511627776.0);
  EXPECT_TRUE(std::isnan(ReadNumberArgument(CallWithKey(EncodableValue(kNan)), "key", 1.0)));
}

TEST(NumberArgument, OfAnotherTypeCountsAsAbsent) {
  EXPECT_EQ(ReadNumberArgument(CallWithKey(EncodableValue("0.5")), "key", 1.0), 1.0);
  EXPECT_EQ(ReadNumberArgument(CallWithKey(EncodableValue(true)), "key", 1.0), 1.0);
}

TEST(Arguments, ThatAreAbsentOrNoMapGiveTheDefaults) {
  const MethodCall none("method", nullptr);
  const MethodCall list = CallWith(EncodableValue(EncodableList{EncodableValue("key")}));
  for (const MethodCall* call : {&none, &list}) {
    EXPECT_EQ(ReadIntArgument(*call, "key", 3), 3);
    EXPECT_TRUE(ReadBoolArgument(*call, "key", true));
    EXPECT_EQ(ReadStringArgument(*call, "key"), "");
    EXPECT_EQ(ReadNumberArgument(*call, "key", 1.5), 1.5);
  }
}

TEST(Arguments, MatchAKeyByLengthAndBytes) {
  const MethodCall call = CallWith(EncodableValue(EncodableMap{
      {EncodableValue("Key"), EncodableValue(int32_t{1})},
      {EncodableValue("key "), EncodableValue(int32_t{2})},
      {EncodableValue(std::string("key\0", 4)), EncodableValue(int32_t{3})},
  }));
  EXPECT_EQ(ReadIntArgument(call, "key", 42), 42);
}

TEST(Arguments, MatchNoKeyThatIsNotAString) {
  const MethodCall call = CallWith(EncodableValue(EncodableMap{
      {EncodableValue(std::vector<uint8_t>{'k', 'e', 'y'}), EncodableValue(int32_t{1})},
      {EncodableValue(), EncodableValue(int32_t{2})},
      {EncodableValue(int32_t{0}), EncodableValue(int32_t{3})},
  }));
  EXPECT_EQ(ReadIntArgument(call, "key", 42), 42);
  EXPECT_EQ(ReadIntArgument(call, "", 42), 42);
}

}  // namespace
}  // namespace vantro
