#include "common/saturated_cast.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace vantro {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Converts at run time. The compiler converts a constant out of range to the nearest end by itself.
template <typename Int>
Int Converted(double value) {
  const volatile double atRunTime = value;
  return SaturatedCast<Int>(atRunTime);
}

TEST(SaturatedCast, LosesTheFractionTowardsZero) {
  EXPECT_EQ(Converted<int32_t>(2.9), 2);
  EXPECT_EQ(Converted<int32_t>(-2.9), -2);
  EXPECT_EQ(Converted<int32_t>(0.0), 0);
  EXPECT_EQ(Converted<int64_t>(4294967296.5), int64_t{4294967296});
}

TEST(SaturatedCast, KeepsTheEndsOfTheRange) {
  EXPECT_EQ(Converted<int32_t>(2147483647.0), INT32_MAX);
  EXPECT_EQ(Converted<int32_t>(-2147483648.0), INT32_MIN);
  EXPECT_EQ(Converted<int32_t>(2147483646.0), INT32_MAX - 1);
  EXPECT_EQ(Converted<int32_t>(-2147483647.0), INT32_MIN + 1);
}

TEST(SaturatedCast, TakesTheNearestEndBeyondTheRange) {
  EXPECT_EQ(Converted<int32_t>(2147483648.0), INT32_MAX);
  EXPECT_EQ(Converted<int32_t>(-2147483649.0), INT32_MIN);
  EXPECT_EQ(Converted<int64_t>(9223372036854775808.0), INT64_MAX);
  EXPECT_EQ(Converted<int64_t>(-1e300), INT64_MIN);
  EXPECT_EQ(Converted<int64_t>(kInfinity), INT64_MAX);
  EXPECT_EQ(Converted<int64_t>(-kInfinity), INT64_MIN);
}

TEST(SaturatedCast, MakesZeroOfNotANumber) { EXPECT_EQ(Converted<int32_t>(std::nan("")), 0); }

}  // namespace
}  // namespace vantro
