#include "player/tile_layout.h"

#include <algorithm>

namespace vantro {
namespace {

constexpr int32_t kHalfGap = 5;

}  // namespace

Rect GetTileRect(int32_t width, int32_t height, int32_t tileCount, int32_t index) {
  const int32_t leftEnd = width / 2 - kHalfGap;
  const int32_t rightBegin = width / 2 + kHalfGap;
  const int32_t upperEnd = height / 2 - kHalfGap;
  const int32_t lowerBegin = height / 2 + kHalfGap;

  if (tileCount <= 1) return {0, 0, width, height};
  if (tileCount == 2) return index <= 0 ? Rect{0, 0, leftEnd, height} : Rect{rightBegin, 0, width, height};
  if (tileCount == 3) {
    if (index <= 0) return {0, 0, width, upperEnd};
    if (index == 1) return {0, lowerBegin, leftEnd, height};
    return {rightBegin, lowerBegin, width, height};
  }
  if (index <= 0) return {0, 0, leftEnd, upperEnd};
  if (index == 1) return {rightBegin, 0, width, upperEnd};
  if (index == 2) return {0, lowerBegin, leftEnd, height};
  return {rightBegin, lowerBegin, width, height};
}

float FitScale(uint32_t videoWidth, uint32_t videoHeight, int32_t width, int32_t height) {
  if (width <= 0 || height <= 0 || videoWidth == 0 || videoHeight == 0) return 0.0f;
  return std::min(static_cast<float>(height) / static_cast<float>(videoHeight),
                  static_cast<float>(width) / static_cast<float>(videoWidth));
}

}  // namespace vantro
