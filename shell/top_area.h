// Decides over plain values how the pointer's position changes the title bar in fullscreen.
//
// A timer and the mouse moves of two windows report the pointer. The timer is the main source: the Flutter view covers
// nearly the whole window, so most mouse moves reach neither of the two windows.
#pragma once

#include <cstdint>

namespace vantro {

// Height in pixels of the area at the top of the window where the pointer shows the title bar in fullscreen.
constexpr int TOP_AREA_THRESHOLD = 50;

// The source of a pointer report. The three differ in their log lines and in one rule.
enum class TopAreaCaller { kTrackingTimer, kMainWindow, kOverlay };

// What to do with the bar and its auto-hide timer, in the order of the names.
enum class TopAreaAction {
  kNone,
  kStartAutoHide,        // the pointer left the area
  kShowAndStopAutoHide,  // the pointer entered the area
  kStopAutoHide,         // the pointer stays in the area
};

struct TopAreaStep {
  bool isMouseInTopArea;
  TopAreaAction action;

  bool operator==(const TopAreaStep&) const = default;
};

// Returns whether y, in client coordinates of the main window, is in the area. A pointer above the window, on a monitor
// above this one, has a negative y and is outside.
constexpr bool IsInTopArea(int y) { return static_cast<uint32_t>(y) <= uint32_t{TOP_AREA_THRESHOLD}; }

// Decides the next step for a pointer at y. While the pointer stays in the area, the tracking timer stops the auto-hide
// timer only if the bar is visible; the other sources always stop it.
TopAreaStep DecideTopAreaStep(int y, bool wasInTopArea, bool isTitleBarVisible, TopAreaCaller caller);

}  // namespace vantro
