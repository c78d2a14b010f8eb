// The arithmetic of the volume slider, over plain numbers. Pixels and percent.
#pragma once

#include <array>

namespace vantro {

// The slider's fixed size. A click is measured against this width, not against the control's.
constexpr int kVolumeControlWidth = 80;
constexpr int kVolumeControlHeight = 20;
constexpr int kFullVolume = 100;

struct VolumePoint {
  int x;
  int y;

  bool operator==(const VolumePoint&) const = default;
};

struct VolumeRect {
  int left;
  int top;
  int right;
  int bottom;

  bool operator==(const VolumeRect&) const = default;
};

// The volume, 0 to 100, of a click x pixels right of the slider's left edge; beyond the ends it is clamped.
int VolumeFromX(int x);

// The outline: a closed triangle that rises to the right, its first point repeated at the end.
std::array<VolumePoint, 4> VolumeOutline(const VolumeRect& control);

// Width in pixels of the filled part; at 0 nothing is filled.
int VolumeFillWidth(int controlWidth, int volume);

// The filled triangle. Its third point lies on the slope. Only for a fill width above 0.
std::array<VolumePoint, 3> VolumeFill(const VolumeRect& control, int volume);

// A picture's place: a centred square, 2 pixels inside the control's shorter side.
VolumeRect SpeakerPictureSquare(const VolumeRect& control);

}  // namespace vantro
