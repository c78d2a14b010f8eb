#include "services/snapshot_request.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace vod_thumbnail {
namespace {

TEST(SnapshotFile, IsNamedByMediaAndWholeSecond) {
  EXPECT_EQ(SnapshotFileName("123", 42.7), "vantro_thumb_123_42.jpg");
  EXPECT_EQ(SnapshotFileName("", 0.0), "vantro_thumb__0.jpg");
  EXPECT_EQ(SnapshotFileName("a_b", -1.5), "vantro_thumb_a_b_-1.jpg");
}

TEST(SnapshotFile, IsTheSameForTwoFramesOfOneSecond) {
  EXPECT_EQ(SnapshotFileName("7", 3.001), SnapshotFileName("7", 3.999));
}

TEST(SnapshotFile, TakesTheNearest32BitSecondForATimeOutOfRange) {
  EXPECT_EQ(SnapshotFileName("7", 1e12), "vantro_thumb_7_2147483647.jpg");
  EXPECT_EQ(SnapshotFileName("7", -1e12), "vantro_thumb_7_-2147483648.jpg");
  EXPECT_EQ(SnapshotFileName("7", std::numeric_limits<double>::quiet_NaN()), "vantro_thumb_7_0.jpg");
}

TEST(SeekTarget, IsTheTimeInWholeMilliseconds) {
  EXPECT_EQ(SeekTargetMs(0.0), 0);
  EXPECT_EQ(SeekTargetMs(42.7), 42700);
  EXPECT_EQ(SeekTargetMs(1.2345), 1234);
  EXPECT_EQ(SeekTargetMs(-1.2345), -1234);
}

TEST(SeekTarget, TakesTheNearest64BitTimeForOneOutOfRange) {
  EXPECT_EQ(SeekTargetMs(std::numeric_limits<double>::infinity()), INT64_MAX);
  EXPECT_EQ(SeekTargetMs(-1e300), INT64_MIN);
  EXPECT_EQ(SeekTargetMs(std::numeric_limits<double>::quiet_NaN()), 0);
}

}  // namespace
}  // namespace vod_thumbnail
