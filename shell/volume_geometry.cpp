#include "shell/volume_geometry.h"

#include <algorithm>
#include <cstdint>

#include "common/measures.h"

namespace vantro {

int VolumeFromX(int x) {
  const int64_t volume = int64_t{x} * kFullVolume / kVolumeControlWidth;
  return static_cast<int>(std::clamp<int64_t>(volume, 0, kFullVolume));
}

std::array<Point, 4> VolumeOutline(const Rect& control) {
  const Point tip{control.left + 1, control.bottom - 1};
  return {{tip, {control.right - 1, control.bottom - 1}, {control.right - 1, control.top + 1}, tip}};
}

int VolumeFillWidth(int controlWidth, int volume) { return (controlWidth - 4) * volume / kFullVolume; }

std::array<Point, 3> VolumeFill(const Rect& control, int volume) {
  const int width = control.Width();
  const int height = control.Height();
  const int fill = VolumeFillWidth(width, volume);
  const int slope = (width - 4 - fill) * (height - 4) / (width - 4);
  const int right = control.left + 2 + fill;
  return {{{control.left + 2, control.bottom - 2}, {right, control.bottom - 2}, {right, control.top + 2 + slope}}};
}

Rect SpeakerPictureSquare(const Rect& control) {
  const int width = control.Width();
  const int height = control.Height();
  const int side = std::min(width, height) - 4;
  const int left = control.left + (width - side) / 2;
  const int top = control.top + (height - side) / 2;
  return RectAt(left, top, {side, side});
}

}  // namespace vantro
