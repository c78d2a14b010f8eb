#include "channel/argument_readers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>

#include "tests/support/values.h"

namespace vantro {
namespace {

using test::ListOf;
using test::MapOf;
using test::Value;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr int32_t kMinInt = std::numeric_limits<int32_t>::min();
constexpr int32_t kMaxInt = std::numeric_limits<int32_t>::max();

MethodCall CallWith(const Value& arguments) { return MethodCall("method", arguments); }

// A call whose arguments are a map of "key" and one other entry.
MethodCall CallWithKey(Value value) {
  return CallWith(MapOf({
      {Value("key"), std::move(value)},
      {Value("other"), Value(int32_t{99})},
  }));
}

TEST(IntArgument, IsThe32BitIntegerAsItIs) {
  EXPECT_EQ(ReadIntArgument(CallWithKey(Value(int32_t{-7})), "key", 1), -7);
}

TEST(IntArgument, Cuts64BitIntegersToTheirLow32Bits) {
  const std::pair<int64_t, int32_t> rows[] = {
      {5, 5}, {-5, -5}, {0x100000000, 0}, {0x180000001, kMinInt + 1}, {0xFFFFFFFF, -1}, {INT64_MIN, 0}, {INT64_MAX, -1},
  };
  for (const auto& [wide, expected] : rows) {
    EXPECT_EQ(ReadIntArgument(CallWithKey(Value(wide)), "key", 1), expected) << wide;
  }
}

TEST(IntArgument, TruncatesDoublesTowardZero) {
  const std::pair<double, int32_t> rows[] = {
      {1500.9, 1500}, {-1500.9, -1500}, {0.99, 0}, {-0.99, 0}, {2147483647.5, kMaxInt}, {-2147483648.5, kMinInt},
  };
  for (const auto& [real, expected] : rows) {
    EXPECT_EQ(ReadIntArgument(CallWithKey(Value(real)), "key", 1), expected) << real;
  }
}

TEST(IntArgument, OfADoubleOutOfRangeIsTheNearestEnd) {
  EXPECT_EQ(ReadIntArgument(CallWithKey(Value(1e300)), "key", 1), kMaxInt);
  EXPECT_EQ(ReadIntArgument(CallWithKey(Value(-1e300)), "key", 1), kMinInt);
  EXPECT_EQ(ReadIntArgument(CallWithKey(Value(kInfinity)), "key", 1), kMaxInt);
  EXPECT_EQ(ReadIntArgument(CallWithKey(Value(-kInfinity)), "key", 1), kMinInt);
  EXPECT_EQ(ReadIntArgument(CallWithKey(Value(kNan)), "key", 1), 0);
}

TEST(IntArgument, OfAnotherTypeCountsAsAbsent) {
  const Value others[] = {
      Value(), Value(true), Value("12"), Value(std::vector<int32_t>{12}), ListOf({Value(12)}), MapOf({}),
  };
  for (const Value& other : others) {
    EXPECT_EQ(ReadIntArgument(CallWithKey(other), "key", 42), 42) << test::Describe(other);
  }
}

TEST(BoolArgument, CountsOnlyABoolean) {
  EXPECT_FALSE(ReadBoolArgument(CallWithKey(Value(false)), "key", true));
  EXPECT_TRUE(ReadBoolArgument(CallWithKey(Value(true)), "key", false));
  EXPECT_TRUE(ReadBoolArgument(CallWithKey(Value(int32_t{0})), "key", true));
  EXPECT_FALSE(ReadBoolArgument(CallWithKey(Value(int64_t{1})), "key", false));
  EXPECT_FALSE(ReadBoolArgument(CallWithKey(Value("true")), "key", false));
}

TEST(StringArgument, CountsOnlyAString) {
  EXPECT_EQ(ReadStringArgument(CallWithKey(Value("text")), "key"), "text");
  EXPECT_EQ(ReadStringArgument(CallWithKey(Value(int32_t{5})), "key"), "");
  EXPECT_EQ(ReadStringArgument(CallWithKey(Value(std::vector<uint8_t>{'a'})), "key"), "");
}

TEST(StringArgument, KeepsZeroBytesAndBytesThatAreNoText) {
  const std::string odd("a\0\xFF", 3);
  EXPECT_EQ(ReadStringArgument(CallWithKey(Value(odd)), "key"), odd);
}

TEST(NumberArgument, TakesDoublesAndBothIntegers) {
  EXPECT_EQ(ReadNumberArgument(CallWithKey(Value(0.25)), "key", 1.0), 0.25);
  EXPECT_EQ(ReadNumberArgument(CallWithKey(Value(int32_t{-3})), "key", 1.0), -3.0);
  EXPECT_EQ(ReadNumberArgument(CallWithKey(Value(int64_t{1} << 40)), "key", 1.0), 1099511627776.0);
  EXPECT_TRUE(std::isnan(ReadNumberArgument(CallWithKey(Value(kNan)), "key", 1.0)));
}

TEST(NumberArgument, OfAnotherTypeCountsAsAbsent) {
  EXPECT_EQ(ReadNumberArgument(CallWithKey(Value("0.5")), "key", 1.0), 1.0);
  EXPECT_EQ(ReadNumberArgument(CallWithKey(Value(true)), "key", 1.0), 1.0);
}

TEST(Arguments, AbsentOrNoMapGiveTheDefaults) {
  const MethodCall none("method", Value());
  const MethodCall list = CallWith(ListOf({Value("key")}));
  for (const MethodCall* call : {&none, &list}) {
    EXPECT_EQ(ReadIntArgument(*call, "key", 3), 3);
    EXPECT_TRUE(ReadBoolArgument(*call, "key", true));
    EXPECT_EQ(ReadStringArgument(*call, "key"), "");
    EXPECT_EQ(ReadNumberArgument(*call, "key", 1.5), 1.5);
  }
}

TEST(Arguments, MatchAKeyByLengthAndBytes) {
  const MethodCall call = CallWith(MapOf({
      {Value("Key"), Value(int32_t{1})},
      {Value("key "), Value(int32_t{2})},
      {Value(std::string("key\0", 4)), Value(int32_t{3})},
  }));
  EXPECT_EQ(ReadIntArgument(call, "key", 42), 42);
}

TEST(Arguments, MatchNoKeyThatIsNotAString) {
  const MethodCall call = CallWith(MapOf({
      {Value(std::vector<uint8_t>{'k', 'e', 'y'}), Value(int32_t{1})},
      {Value(), Value(int32_t{2})},
      {Value(int32_t{0}), Value(int32_t{3})},
  }));
  EXPECT_EQ(ReadIntArgument(call, "key", 42), 42);
  EXPECT_EQ(ReadIntArgument(call, "", 42), 42);
}

}  // namespace
}  // namespace vantro
