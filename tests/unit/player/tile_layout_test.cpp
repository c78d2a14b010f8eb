#include "player/tile_layout.h"

#include <gtest/gtest.h>

#include <string>

namespace vantro {
namespace {

struct CellRow {
  int tiles;
  int index;
  Rect cell;
};

// A client area of odd size, so that the halves are rounded down: half the width is 400, half the height 300.
constexpr int kWidth = 801;
constexpr int kHeight = 601;

class TileRectTest : public testing::TestWithParam<CellRow> {};

TEST_P(TileRectTest, IsInItsCell) {
  EXPECT_EQ(GetTileRect(kWidth, kHeight, GetParam().tiles, GetParam().index), GetParam().cell);
}

INSTANTIATE_TEST_SUITE_P(Grid, TileRectTest,
                         testing::Values(CellRow{1, 0, {0, 0, 801, 601}}, CellRow{1, 7, {0, 0, 801, 601}},  //
                                         CellRow{2, 0, {0, 0, 395, 601}}, CellRow{2, 1, {405, 0, 801, 601}},
                                         CellRow{2, 5, {405, 0, 801, 601}}, CellRow{3, 0, {0, 0, 801, 295}},
                                         CellRow{3, 1, {0, 305, 395, 601}}, CellRow{3, 2, {405, 305, 801, 601}},
                                         CellRow{3, 9, {405, 305, 801, 601}}, CellRow{4, 0, {0, 0, 395, 295}},
                                         CellRow{4, 1, {405, 0, 801, 295}}, CellRow{4, 2, {0, 305, 395, 601}},
                                         CellRow{4, 3, {405, 305, 801, 601}}, CellRow{9, 0, {0, 0, 395, 295}},
                                         CellRow{9, 1, {405, 0, 801, 295}}, CellRow{9, 2, {0, 305, 395, 601}}),
                         [](const auto& row) {
                           return std::to_string(row.param.tiles) + "Tiles_" + std::to_string(row.param.index);
                         });

TEST(TileRect, AnOddWidthLeavesTheSparePixelToTheRight) {
  EXPECT_EQ(GetTileRect(801, 600, 2, 0).right, 395);
  EXPECT_EQ(GetTileRect(801, 600, 2, 1).left, 405);
  EXPECT_EQ(GetTileRect(801, 600, 2, 1).right, 801);
}

TEST(TileRect, AFifthTileAndLaterOnesShareTheFourthCell) {
  const Rect fourth = GetTileRect(800, 600, 5, 3);
  EXPECT_EQ(fourth, (Rect{405, 305, 800, 600}));
  EXPECT_EQ(GetTileRect(800, 600, 5, 4), fourth);
  EXPECT_EQ(GetTileRect(800, 600, 17, 16), fourth);
}

TEST(TileRect, AClientAreaUnderTheGapMakesCellsOfNegativeSize) {
  EXPECT_EQ(GetTileRect(8, 600, 2, 0).Width(), -1);
  EXPECT_EQ(GetTileRect(8, 600, 2, 1).Width(), -1);
  EXPECT_EQ(GetTileRect(0, 0, 4, 0).Height(), -5);
}

TEST(FitScale, TheWholePictureFitsTheCell) {
  EXPECT_EQ(FitScale(640, 360, 320, 360), 0.5f);
  EXPECT_EQ(FitScale(640, 360, 1280, 180), 0.5f);
  EXPECT_EQ(FitScale(1, 2, 1, 1), 0.5f);
  EXPECT_EQ(FitScale(640, 360, 1280, 720), 2.0f);
}

TEST(FitScale, IsComputedInSinglePrecision) { EXPECT_EQ(FitScale(3, 1, 1, 100), 1.0f / 3.0f); }

TEST(FitScale, IsZeroWhileASizeIsNotKnownOrNotPositive) {
  EXPECT_EQ(FitScale(0, 360, 320, 180), 0.0f);
  EXPECT_EQ(FitScale(640, 0, 320, 180), 0.0f);
  EXPECT_EQ(FitScale(640, 360, 0, 180), 0.0f);
  EXPECT_EQ(FitScale(640, 360, 320, 0), 0.0f);
  EXPECT_EQ(FitScale(640, 360, -1, 180), 0.0f);
}

}  // namespace
}  // namespace vantro
