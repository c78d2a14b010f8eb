#include "shell/volume_geometry.h"

#include <gtest/gtest.h>

#include <climits>

namespace vantro {
namespace {

constexpr Rect kSlider{0, 0, 80, 20};

struct Click {
  int x;
  int volume;
};
class VolumeOfAClick : public testing::TestWithParam<Click> {};

TEST_P(VolumeOfAClick, FollowsThePlaceOnTheSliderAndIsClamped) {
  EXPECT_EQ(VolumeFromX(GetParam().x), GetParam().volume);
}

INSTANTIATE_TEST_SUITE_P(Slider, VolumeOfAClick,
                         testing::Values(Click{0, 0}, Click{1, 1}, Click{8, 10}, Click{40, 50}, Click{79, 98},
                                         Click{80, 100}, Click{81, 100}, Click{1000, 100}, Click{-1, 0},
                                         Click{-1000, 0}, Click{INT_MAX, 100}, Click{INT_MIN, 0}),
                         [](const auto& click) {
                           const int x = click.param.x;
                           return x < 0 ? "Minus" + std::to_string(-static_cast<long long>(x)) : std::to_string(x);
                         });

TEST(VolumeOutline, IsARightTriangleThatRisesToTheRightOnePixelInside) {
  const std::array<Point, 4> expected{{{11, 24}, {89, 24}, {89, 6}, {11, 24}}};
  EXPECT_EQ(VolumeOutline({10, 5, 90, 25}), expected);
}

TEST(VolumeFill, HasNoWidthAtVolumeZero) { EXPECT_EQ(VolumeFillWidth(80, 0), 0); }

TEST(VolumeFill, RoundsItsWidthTowardsZero) {
  EXPECT_EQ(VolumeFillWidth(80, 1), 0);
  EXPECT_EQ(VolumeFillWidth(80, 2), 1);
  EXPECT_EQ(VolumeFillWidth(80, 99), 75);
}

TEST(VolumeFill, AtFullVolumeIs76WideAndReachesTheTop) {
  EXPECT_EQ(VolumeFillWidth(80, 100), 76);
  const std::array<Point, 3> expected{{{2, 18}, {78, 18}, {78, 2}}};
  EXPECT_EQ(VolumeFill(kSlider, 100), expected);
}

TEST(VolumeFill, EndsOnTheSlopeAtHalfVolume) {
  const std::array<Point, 3> expected{{{2, 18}, {40, 18}, {40, 10}}};
  EXPECT_EQ(VolumeFill(kSlider, 50), expected);
}

TEST(VolumeFill, RoundsTheSlopeTowardsZero) {
  // 69 * 16 / 76 is 14.5, and 54 * 16 / 76 is 11.4.
  EXPECT_EQ(VolumeFill(kSlider, 10)[2], (Point{9, 16}));
  EXPECT_EQ(VolumeFill(kSlider, 30)[2], (Point{24, 13}));
}

TEST(VolumeFill, FollowsTheControlsPlace) {
  const std::array<Point, 3> expected{{{12, 23}, {50, 23}, {50, 15}}};
  EXPECT_EQ(VolumeFill({10, 5, 90, 25}, 50), expected);
}

TEST(SpeakerPicture, IsACentredSquareTwoPixelsInsideTheShorterSide) {
  EXPECT_EQ(SpeakerPictureSquare({0, 0, 20, 20}), (Rect{2, 2, 18, 18}));
  EXPECT_EQ(SpeakerPictureSquare({10, 0, 50, 20}), (Rect{22, 2, 38, 18}));
  EXPECT_EQ(SpeakerPictureSquare({0, 10, 20, 50}), (Rect{2, 22, 18, 38}));
}

}  // namespace
}  // namespace vantro
