#include "common/saturated_cast.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace vantro {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(SaturatedCast, LosesTheFractionTowardsZero) {
  EXPECT_EQ(SaturatedCast<int32_t>(2.9), 2);
  EXPECT_EQ(SaturatedCast<int32_t>(-2.9), -2);
  EXPECT_EQ(SaturatedCast<int32_t>(0.0), 0);
  EXPECT_EQ(SaturatedCast<int64_t>(4294967296.5), int64_t{4294967296});
}

TEST(SaturatedCast, KeepsTheEndsOfTheRange) {
  EXPECT_EQ(SaturatedCast<int32_t>(2147483647.0), INT32_MAX);
  EXPECT_EQ(SaturatedCast<int32_t>(-2147483648.0), INT32_MIN);
  EXPECT_EQ(SaturatedCast<int32_t>(2147483646.0), INT32_MAX - 1);
  EXPECT_EQ(SaturatedCast<int32_t>(-2147483647.0), INT32_MIN + 1);
}

TEST(SaturatedCast, TakesTheNearestEndBeyondTheRange) {
  EXPECT_EQ(SaturatedCast<int32_t>(2147483648.0), INT32_MAX);
  EXPECT_EQ(SaturatedCast<int32_t>(-2147483649.0), INT32_MIN);
  EXPECT_EQ(SaturatedCast<int64_t>(9223372036854775808.0), INT64_MAX);
  EXPECT_EQ(SaturatedCast<int64_t>(-1e300), INT64_MIN);
  EXPECT_EQ(SaturatedCast<int64_t>(kInfinity), INT64_MAX);
  EXPECT_EQ(SaturatedCast<int64_t>(-kInfinity), INT64_MIN);
}

TEST(SaturatedCast, MakesZeroOfNotANumber) { EXPECT_EQ(SaturatedCast<int32_t>(std::nan("")), 0); }

}  // namespace
}  // namespace vantro
