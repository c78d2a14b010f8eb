#include "shell/fullscreen_placement.h"

#include <gtest/gtest.h>

namespace vantro {
namespace {

constexpr FullscreenPlacement kDefaults{{100, 100, 1380, 820}, true};

TEST(PlacementAfterFullscreen, GoesBackToTheSavedRectangle) {
  EXPECT_EQ(PlacementAfterFullscreen({30, 40, 1330, 860}), (FullscreenPlacement{{30, 40, 1330, 860}, false}));
}

TEST(PlacementAfterFullscreen, AcceptsTheSmallestWindow) {
  EXPECT_EQ(PlacementAfterFullscreen({0, 0, 640, 360}), (FullscreenPlacement{{0, 0, 640, 360}, false}));
}

TEST(PlacementAfterFullscreen, KeepsAPlaceOnAMonitorToTheLeft) {
  EXPECT_EQ(PlacementAfterFullscreen({-1900, -50, -1000, 550}), (FullscreenPlacement{{-1900, -50, -1000, 550}, false}));
}

TEST(PlacementAfterFullscreen, TakesTheDefaultsForATooNarrowOrTooLowRectangle) {
  EXPECT_EQ(PlacementAfterFullscreen({30, 40, 30 + 639, 40 + 360}), kDefaults);
  EXPECT_EQ(PlacementAfterFullscreen({30, 40, 30 + 640, 40 + 359}), kDefaults);
}

TEST(PlacementAfterFullscreen, TakesTheDefaultsForARectangleThatWasNeverSaved) {
  EXPECT_EQ(PlacementAfterFullscreen({0, 0, 0, 0}), kDefaults);
}

}  // namespace
}  // namespace vantro
