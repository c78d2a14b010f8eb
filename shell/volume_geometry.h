// The arithmetic of the volume slider, over plain numbers. Pixels and percent.
#pragma once

#include <array>

#include "common/geometry.h"

namespace vantro {

// The slider's fixed size. A click is measured against this width, not against the control's.
constexpr int kVolumeControlWidth = 80;
constexpr int kVolumeControlHeight = 20;

// The volume, 0 to 100, of a click x pixels right of the slider's left edge; beyond the ends it is clamped.
int VolumeFromX(int x);

// The outline: a closed triangle that rises to the right, its first point repeated at the end.
std::array<Point, 4> VolumeOutline(const Rect& control);

// Width in pixels of the filled part; at 0 nothing is filled.
int VolumeFillWidth(int controlWidth, int volume);

// The filled triangle. Its third point lies on the slope. Only for a fill width above 0.
std::array<Point, 3> VolumeFill(const Rect& control, int volume);

// A picture's place: a centred square, 2 pixels inside the control's shorter side.
Rect SpeakerPictureSquare(const Rect& control);

}  // namespace vantro
