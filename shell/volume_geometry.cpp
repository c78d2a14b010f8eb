#include "shell/volume_geometry.h"

#include <algorithm>
#include <cstdint>

namespace vantro {

int VolumeFromX(int x) {
  const int64_t volume = int64_t{x} * kFullVolume / kVolumeControlWidth;
  return static_cast<int>(std::clamp<int64_t>(volume, 0, kFullVolume));
}

std::array<VolumePoint, 4> VolumeOutline(const VolumeRect& control) {
  const VolumePoint tip{control.left + 1, control.bottom - 1};
  return {{tip, {control.right - 1, control.bottom - 1}, {control.right - 1, control.top + 1}, tip}};
}

int VolumeFillWidth(int controlWidth, int volume) { return (controlWidth - 4) * volume / kFullVolume; }

std::array<VolumePoint, 3> VolumeFill(const VolumeRect& control, int volume) {
  const int width = control.right - control.left;
  const int height = control.bottom - control.top;
  const int fill = VolumeFillWidth(width, volume);
  const int slope = (width - 4 - fill) * (height - 4) / (width - 4);
  const int right = control.left + 2 + fill;
  return {{{control.left + 2, control.bottom - 2}, {right, control.bottom - 2}, {right, control.top + 2 + slope}}};
}

VolumeRect SpeakerPictureSquare(const VolumeRect& control) {
  const int width = control.right - control.left;
  const int height = control.bottom - control.top;
  const int side = std::min(width, height) - 4;
  const int left = control.left + (width - side) / 2;
  const int top = control.top + (height - side) / 2;
  return {left, top, left + side, top + side};
}

}  // namespace vantro
