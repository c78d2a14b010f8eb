// The cells of the grid, and the scale of the pictures in them.
#pragma once

#include <cstdint>

#include "common/geometry.h"

namespace vantro {

// Returns the cell of a tile in a parent's client area of the given size, in client pixels. Two tiles are side by side.
// Three are one wide tile above two. Four are a square. The fifth tile and all later ones cover the fourth cell. If the
// client area is smaller than the gap, cells have a negative size.
Rect GetTileRect(int32_t width, int32_t height, int32_t tileCount, int32_t index);

// Returns the largest factor at which the whole picture fits into the cell; 0 if a size is unknown or not positive.
float FitScale(uint32_t videoWidth, uint32_t videoHeight, int32_t width, int32_t height);

}  // namespace vantro
