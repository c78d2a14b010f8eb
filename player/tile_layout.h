// Where the tiles of the grid lie, and how large their pictures are.
#pragma once

#include <cstdint>

#include "common/geometry.h"

namespace vantro {

// The cell of a tile in a parent's client area of the given size, in its client pixels. Two tiles stand side by side,
// three are one wide tile over two, four are a square; a fifth tile and later ones lie on the fourth cell. A client
// area under the gap's width makes cells of negative size.
Rect GetTileRect(int32_t width, int32_t height, int32_t tileCount, int32_t index);

// The factor by which the whole picture just fits the cell; 0 while a size is not known, or not positive.
float FitScale(uint32_t videoWidth, uint32_t videoHeight, int32_t width, int32_t height);

}  // namespace vantro
