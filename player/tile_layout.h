// Where the tiles of the grid lie, and how large their pictures are.
#pragma once

#include <cstdint>

namespace vantro {

// Pixels in the client area of the parent window; right and bottom lie outside. A client area under the gap's width
// makes cells of negative size.
struct TileRect {
  int32_t left;
  int32_t top;
  int32_t right;
  int32_t bottom;

  int32_t Width() const { return right - left; }
  int32_t Height() const { return bottom - top; }
  bool operator==(const TileRect&) const = default;
};

// The cell of a tile in a client area of the given size. Two tiles stand side by side, three are one wide tile over
// two, four are a square; a fifth tile and later ones lie on the fourth cell.
TileRect GetTileRect(int32_t width, int32_t height, int32_t tileCount, int32_t index);

// The factor by which the whole picture just fits the cell; 0 while a size is not known, or not positive.
float FitScale(uint32_t videoWidth, uint32_t videoHeight, int32_t width, int32_t height);

}  // namespace vantro
