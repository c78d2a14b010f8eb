#include "devkit/libvlc/picture_placement.h"

#include <gtest/gtest.h>

namespace vantro::devlib {
namespace {

struct Row {
  const char* name;
  int areaWidth, areaHeight, pictureWidth, pictureHeight;
  float scale;
  Placement expected;
};

class PicturePlacement : public testing::TestWithParam<Row> {};

TEST_P(PicturePlacement, IsWhereLibvlcPutsIt) {
  const Row& row = GetParam();
  Placement place = PlacePicture(row.areaWidth, row.areaHeight, row.pictureWidth, row.pictureHeight, row.scale);
  EXPECT_EQ(place.x, row.expected.x);
  EXPECT_EQ(place.y, row.expected.y);
  EXPECT_EQ(place.width, row.expected.width);
  EXPECT_EQ(place.height, row.expected.height);
}

INSTANTIATE_TEST_SUITE_P(
    Table, PicturePlacement,
    testing::Values(Row{"SameShapeFillsTheArea", 1280, 720, 640, 360, 0.0f, {0, 0, 1280, 720}},
                    Row{"WideAreaGetsBarsAtTheSides", 1000, 360, 640, 360, 0.0f, {180, 0, 640, 360}},
                    Row{"HighAreaGetsBarsAboveAndBelow", 640, 460, 640, 360, 0.0f, {0, 50, 640, 360}},
                    Row{"ScaleCentresASmallerPicture", 640, 360, 640, 360, 0.5f, {160, 90, 320, 180}},
                    Row{"ScaleReachesBeyondTheArea", 640, 360, 640, 360, 2.0f, {-320, -180, 1280, 720}},
                    Row{"NothingBecomesThinnerThanAPixel", 10, 10, 4000, 2, 0.0f, {0, 4, 10, 1}},
                    Row{"HugeSizesDoNotOverflow", 30000, 30000, 30000, 30000, 0.0f, {0, 0, 30000, 30000}}),
    [](const testing::TestParamInfo<Row>& row) { return row.param.name; });

}  // namespace
}  // namespace vantro::devlib
