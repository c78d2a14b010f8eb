// The geometry of the volume slider, as functions over plain values. Pixels and percent.
#pragma once

#include <array>

#include "common/geometry.h"

namespace vantro {

// The slider's fixed size. The volume of a click is computed from this width, not from the control's.
constexpr int kVolumeControlWidth = 80;
constexpr int kVolumeControlHeight = 20;

// Returns the volume, 0 to 100, for a click x pixels to the right of the slider's left edge. A click beyond the ends is
// clamped.
int VolumeFromX(int x);

// Returns the outline: a closed triangle that rises to the right, with its first point repeated at the end.
std::array<Point, 4> VolumeOutline(const Rect& control);

// Returns the width in pixels of the filled part. At 0 nothing is filled.
int VolumeFillWidth(int controlWidth, int volume);

// Returns the filled triangle. Its third point is on the slope. Only for a fill width above 0.
std::array<Point, 3> VolumeFill(const Rect& control, int volume);

// Returns the place of a picture: a centred square, 4 pixels smaller than the control's shorter side.
Rect SpeakerPictureSquare(const Rect& control);

}  // namespace vantro
