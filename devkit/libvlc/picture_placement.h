// Computes the place of a picture in its window, as libvlc does.
#pragma once

#include <algorithm>
#include <cstdint>

namespace vantro::devlib {

struct Placement {
  int x, y, width, height;
};

// Returns the rectangle of a picture in a client area. With a scale of 0 the picture is as large as fits the area in
// its own proportions. With another scale it is that many times its size and may be larger than the area. It is centred
// in both cases. All sizes are in pixels and above 0.
inline Placement PlacePicture(int areaWidth, int areaHeight, int pictureWidth, int pictureHeight, float scale) {
  int width, height;
  if (scale > 0.0f) {
    width = static_cast<int>(static_cast<float>(pictureWidth) * scale + 0.5f);
    height = static_cast<int>(static_cast<float>(pictureHeight) * scale + 0.5f);
  } else if (int64_t{areaWidth} * pictureHeight > int64_t{areaHeight} * pictureWidth) {
    height = areaHeight;
    width = static_cast<int>(int64_t{areaHeight} * pictureWidth / pictureHeight);
  } else {
    width = areaWidth;
    height = static_cast<int>(int64_t{areaWidth} * pictureHeight / pictureWidth);
  }
  width = std::max(width, 1);
  height = std::max(height, 1);
  return {(areaWidth - width) / 2, (areaHeight - height) / 2, width, height};
}

}  // namespace vantro::devlib
