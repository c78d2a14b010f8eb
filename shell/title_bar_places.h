// The places of the title bar's controls, as plain values. The bar creates and lays out its controls by them, and the
// hit test takes its zones from them. Client pixels of the main window.
#pragma once

#include "common/geometry.h"
#include "common/measures.h"
#include "shell/volume_geometry.h"

namespace vantro {

// Height of the window's top sizing edge. The window buttons start right below it.
constexpr int kTopEdge = 3;

constexpr Rect kAppIconPlace = RectAt(8, 7, {16, 16});
constexpr Rect kTitlePlace = RectAt(32, 6, {50, 18});
constexpr Rect kFileButtonPlace = RectAt(90, 5, {35, 20});
constexpr Rect kHelpButtonPlace = RectAt(135, 5, {35, 20});

// A place at a fixed distance from the client area's right edge.
struct RightAlignedPlace {
  int fromRight;  // from that edge to the control's left edge
  int y;
  Size size;

  constexpr Rect In(int clientWidth) const { return RectAt(clientWidth - fromRight, y, size); }
};

constexpr Size kWindowButtonSize{45, TITLE_BAR_HEIGHT - kTopEdge};
constexpr Size kSearchBoxSize{150, 20};
constexpr Size kSpeakerIconSize{20, 20};
constexpr Size kVolumeControlSize{kVolumeControlWidth, kVolumeControlHeight};

constexpr RightAlignedPlace kCloseButtonPlace{45, kTopEdge, kWindowButtonSize};
constexpr RightAlignedPlace kMaximizeButtonPlace{90, kTopEdge, kWindowButtonSize};
constexpr RightAlignedPlace kMinimizeButtonPlace{135, kTopEdge, kWindowButtonSize};
constexpr RightAlignedPlace kSearchBoxPlace{295, 5, kSearchBoxSize};
constexpr RightAlignedPlace kVolumeControlPlace{385, 5, kVolumeControlSize};
constexpr RightAlignedPlace kSpeakerIconPlace{410, 5, kSpeakerIconSize};

}  // namespace vantro
