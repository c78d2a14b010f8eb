// What the pointer's place does to the title bar in fullscreen, as a decision over plain values.
//
// A timer and the mouse moves of two windows report the pointer. The timer is the one that carries the feature: the
// Flutter view covers nearly everything, so most moves reach neither of the two windows.
#pragma once

#include <cstdint>

namespace vantro {

// Depth of the area at the top of the window that calls the title bar back in fullscreen, in pixels.
constexpr int TOP_AREA_THRESHOLD = 50;

// Who reports where the pointer is: the three differ in their log lines and in one rule.
enum class TopAreaCaller { kTrackingTimer, kMainWindow, kOverlay };

// What is to be done with the bar and its auto-hide timer, in the order that the names give.
enum class TopAreaAction {
  kNone,
  kStartAutoHide,        // the pointer left the area
  kShowAndStopAutoHide,  // the pointer entered the area
  kStopAutoHide,         // the pointer rests in the area
};

struct TopAreaStep {
  bool isMouseInTopArea;
  TopAreaAction action;

  bool operator==(const TopAreaStep&) const = default;
};

// y in client coordinates of the main window. A pointer above the window, on a monitor stacked over this one, has a
// negative y and is outside.
constexpr bool IsInTopArea(int y) { return static_cast<uint32_t>(y) <= uint32_t{TOP_AREA_THRESHOLD}; }

TopAreaStep DecideTopAreaStep(int y, bool wasInTopArea, bool isTitleBarVisible, TopAreaCaller caller);

}  // namespace vantro
