#include "shell/window_placement.h"

#include <algorithm>

namespace vantro {

namespace {

// A gap is a fraction of the space that the window leaves free, within bounds. A negative space results in the lower
// bound.
struct GapRule {
  int divisor;
  int least;
  int most;

  constexpr int Gap(int available) const { return std::clamp(available / divisor, least, most); }
};

constexpr GapRule kHorizontalGap{8, 50, 200};
constexpr GapRule kVerticalGap{6, 60, 150};
constexpr GapRule kLargeHorizontalOffset{4, 100, 400};
constexpr GapRule kLargeVerticalOffset{4, 80, 300};
// A large offset that would cross the work area's edge restarts at this distance from the area's top left corner.
constexpr int kWrapInset = 50;

}  // namespace

WindowPlacement PlaceNewWindow(const Rect& reference, Size size, const Rect& workArea) {
  const auto [width, height] = size;
  const int availableX = workArea.Width() - width;
  const int availableY = workArea.Height() - height;

  const int gapX = kHorizontalGap.Gap(availableX);
  if (width + gapX + reference.right <= workArea.right) {
    return {PlacementRule::kRight, reference.right + gapX, reference.top, gapX, 0};
  }
  if (reference.left - width - gapX >= workArea.left) {
    return {PlacementRule::kLeft, reference.left - width - gapX, reference.top, gapX, 0};
  }
  const int gapY = kVerticalGap.Gap(availableY);
  if (height + gapY + reference.bottom <= workArea.bottom) {
    return {PlacementRule::kBelow, reference.left, reference.bottom + gapY, 0, gapY};
  }

  const int dx = kLargeHorizontalOffset.Gap(availableX);
  const int dy = kLargeVerticalOffset.Gap(availableY);
  const int x = reference.left + dx;
  const int y = reference.top + dy;
  return {PlacementRule::kLargeOffset, x + width > workArea.right ? workArea.left + kWrapInset : x,
          y + height > workArea.bottom ? workArea.top + kWrapInset : y, dx, dy};
}

}  // namespace vantro
