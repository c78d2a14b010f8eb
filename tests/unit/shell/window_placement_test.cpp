#include "shell/window_placement.h"

#include <gtest/gtest.h>

#include <ostream>

#include "shell/overlay_geometry.h"

namespace vantro {

void PrintTo(const WindowPlacement& p, std::ostream* out) {
  *out << "rule " << static_cast<int>(p.rule) << " at " << p.x << "," << p.y << " by " << p.dx << "," << p.dy;
}

namespace {

constexpr Rect kWorkArea{0, 0, 1920, 1040};

constexpr Rect RectAt(int x, int y, int width, int height) { return vantro::RectAt(x, y, {width, height}); }

struct Case {
  const char* name;
  Rect reference;
  Size size;
  Rect workArea;
  WindowPlacement expected;
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

class NewWindow : public testing::TestWithParam<Case> {};

TEST_P(NewWindow, GoesWhereTheFirstFittingRulePutsIt) {
  const Case& c = GetParam();
  EXPECT_EQ(PlaceNewWindow(c.reference, c.size, c.workArea), c.expected);
}

// The gap to the right and left is an eighth of the free width, between 50 and 200.
INSTANTIATE_TEST_SUITE_P(Right, NewWindow, testing::Values(
    Case{"with an eighth of the free width", RectAt(10, 20, 800, 500), {800, 500}, kWorkArea,
         {PlacementRule::kRight, 950, 20, 140, 0}},
    Case{"with at most 200", RectAt(0, 0, 100, 100), {100, 100}, kWorkArea, {PlacementRule::kRight, 300, 0, 200, 0}},
    Case{"with at least 50", RectAt(0, 0, 300, 500), {1600, 500}, {0, 0, 1960, 1040},
         {PlacementRule::kRight, 350, 0, 50, 0}},
    Case{"touching the work area's edge", RectAt(20, 0, 800, 500), {800, 500}, {0, 0, 1737, 1040},
         {PlacementRule::kRight, 937, 0, 117, 0}},
    Case{"on a monitor left of the primary one", RectAt(-1900, 5, 800, 500), {800, 500}, {-1920, 0, 0, 1040},
         {PlacementRule::kRight, -960, 5, 140, 0}}));

INSTANTIATE_TEST_SUITE_P(Left, NewWindow, testing::Values(
    Case{"when the right has no room", RectAt(961, 7, 800, 500), {800, 500}, kWorkArea,
         {PlacementRule::kLeft, 21, 7, 140, 0}},
    Case{"touching the work area's edge", RectAt(1027, 7, 900, 500), {900, 500}, kWorkArea,
         {PlacementRule::kLeft, 0, 7, 127, 0}}));

// The gap below is a sixth of the free height, between 60 and 150.
INSTANTIATE_TEST_SUITE_P(Below, NewWindow, testing::Values(
    Case{"when neither side has room", RectAt(300, 10, 1300, 300), {1300, 300}, kWorkArea,
         {PlacementRule::kBelow, 300, 433, 0, 123}},
    Case{"with at most 150", RectAt(300, 0, 1300, 100), {1300, 100}, kWorkArea, {PlacementRule::kBelow, 300, 250, 0, 150}},
    Case{"with at least 60", RectAt(300, 0, 1300, 100), {1300, 800}, kWorkArea, {PlacementRule::kBelow, 300, 160, 0, 60}},
    Case{"touching the work area's edge", RectAt(300, 0, 1300, 180), {1300, 800}, kWorkArea,
         {PlacementRule::kBelow, 300, 240, 0, 60}}));

INSTANTIATE_TEST_SUITE_P(LargeOffset, NewWindow, testing::Values(
    Case{"with quarters of the free space", RectAt(300, 200, 1000, 600), {1000, 600}, kWorkArea,
         {PlacementRule::kLargeOffset, 530, 310, 230, 110}},
    Case{"with at most 400 by 300", RectAt(0, 0, 3840, 2160), {100, 100}, {0, 0, 3840, 2160},
         {PlacementRule::kLargeOffset, 400, 300, 400, 300}},
    Case{"touching the work area's edges", RectAt(690, 330, 1000, 600), {1000, 600}, kWorkArea,
         {PlacementRule::kLargeOffset, 920, 440, 230, 110}},
    Case{"wrapping to the left only", RectAt(900, 100, 1000, 600), {1000, 600}, kWorkArea,
         {PlacementRule::kLargeOffset, 50, 210, 230, 110}},
    Case{"wrapping to the top only", RectAt(300, 400, 1000, 600), {1000, 600}, kWorkArea,
         {PlacementRule::kLargeOffset, 530, 50, 230, 110}}));

TEST(NewWindow, ReferenceThatFillsTheWorkAreaWrapsItFiftyPixelsInside) {
  const Rect workArea{100, 40, 1124, 808};
  EXPECT_EQ(PlaceNewWindow(workArea, {1024, 768}, workArea),
            (WindowPlacement{PlacementRule::kLargeOffset, 150, 90, 100, 80}));
}

TEST(NewWindow, FullscreenReferenceLandsItByTheLargeOffset) {
  const Rect monitor{0, 0, 1920, 1080};
  EXPECT_EQ(PlaceNewWindow(monitor, {1920, 1080}, kWorkArea),
            (WindowPlacement{PlacementRule::kLargeOffset, 50, 50, 100, 80}));
}

TEST(NewWindow, ReferenceWiderThanTheWorkAreaGivesTheLowerBounds) {
  const Rect reference = RectAt(-400, 0, 300, 1200);
  EXPECT_EQ(PlaceNewWindow(reference, {2500, 1200}, kWorkArea),
            (WindowPlacement{PlacementRule::kLargeOffset, 50, 50, 100, 80}));
  // The place to the right fits only because of the position of the reference. The gap is the minimum.
  EXPECT_EQ(PlaceNewWindow(RectAt(-1400, 0, 300, 400), {2500, 1200}, kWorkArea),
            (WindowPlacement{PlacementRule::kRight, -1050, 0, 50, 0}));
}

TEST(OverlayPlace, LeavesTheTitleBarFreeOutsideFullscreenOnly) {
  EXPECT_EQ(OverlayTopOffset(false, 30), 30);
  EXPECT_EQ(OverlayTopOffset(true, 30), 0);
}

TEST(OverlayPlace, MinimizedWindowGivesANegativeHeight) {
  EXPECT_EQ(OverlayRectFor({-32000, -32000}, {0, 0}, 30), RectAt(-32000, -31970, 0, -30));
}

}  // namespace
}  // namespace vantro
