#include "shell/hit_test.h"

#include <gtest/gtest.h>

#include <ostream>

namespace vantro {
namespace {

constexpr int kWidth = 1000;
constexpr Size kClientArea{kWidth, 600};

struct Case {
  const char* name;
  int x;
  int y;
  HitCode code;
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.name << " at " << c.x << "," << c.y; }

class HitTestZone : public testing::TestWithParam<Case> {};

TEST_P(HitTestZone, HasItsCode) {
  EXPECT_EQ(HitTest({GetParam().x, GetParam().y}, kClientArea), GetParam().code);
}

INSTANTIATE_TEST_SUITE_P(Corners, HitTestZone, testing::Values(
    Case{"top left, first", 0, 0, HitCode::kTopLeft}, Case{"top left, last", 7, 7, HitCode::kTopLeft},
    Case{"right of top left", 8, 2, HitCode::kTop}, Case{"below top left", 7, 8, HitCode::kLeft},
    Case{"top right, first", 992, 7, HitCode::kTopRight}, Case{"left of top right", 991, 2, HitCode::kTop},
    Case{"below top right", 992, 8, HitCode::kRight}, Case{"bottom left, first", 7, 592, HitCode::kBottomLeft},
    Case{"above bottom left", 7, 591, HitCode::kLeft}, Case{"right of bottom left", 8, 592, HitCode::kBottom},
    Case{"bottom right, first", 992, 592, HitCode::kBottomRight},
    Case{"above bottom right", 992, 591, HitCode::kRight},
    Case{"left of bottom right", 991, 592, HitCode::kBottom}));

INSTANTIATE_TEST_SUITE_P(Edges, HitTestZone, testing::Values(
    Case{"left, last", 7, 300, HitCode::kLeft}, Case{"inside left", 8, 300, HitCode::kClient},
    Case{"right, first", 992, 300, HitCode::kRight}, Case{"inside right", 991, 300, HitCode::kClient},
    Case{"bottom, first", 500, 592, HitCode::kBottom}, Case{"inside bottom", 500, 591, HitCode::kClient},
    Case{"top, last", 500, 2, HitCode::kTop}, Case{"inside top", 500, 3, HitCode::kCaption}));

INSTANTIATE_TEST_SUITE_P(TitleBar, HitTestZone, testing::Values(
    Case{"last row", 500, 30, HitCode::kCaption}, Case{"below the bar", 500, 31, HitCode::kClient},
    Case{"icon", 8, 15, HitCode::kClient}, Case{"title, last", 82, 15, HitCode::kClient},
    Case{"right of title", 83, 15, HitCode::kCaption}, Case{"left of File", 89, 15, HitCode::kCaption},
    Case{"File, first", 90, 15, HitCode::kClient}, Case{"File, last", 125, 15, HitCode::kClient},
    Case{"between File and Help", 126, 15, HitCode::kCaption}, Case{"Help, first", 135, 15, HitCode::kClient},
    Case{"Help, last", 170, 15, HitCode::kClient}, Case{"right of Help", 171, 15, HitCode::kCaption},
    Case{"speaker icon", 600, 15, HitCode::kCaption}, Case{"volume control", 650, 15, HitCode::kCaption},
    Case{"left of search", 704, 15, HitCode::kCaption}, Case{"search, first", 705, 15, HitCode::kClient},
    Case{"search, last", 855, 15, HitCode::kClient}, Case{"right of search", 856, 15, HitCode::kCaption},
    Case{"left of buttons", 864, 15, HitCode::kCaption}, Case{"buttons, first", 865, 15, HitCode::kClient},
    Case{"buttons, before the edge", 991, 15, HitCode::kClient}));

INSTANTIATE_TEST_SUITE_P(OutsideTheClientArea, HitTestZone, testing::Values(
    Case{"left of it", -5, 300, HitCode::kLeft}, Case{"above it", 500, -5, HitCode::kTop},
    Case{"right of it", 1005, 300, HitCode::kRight}, Case{"below it", 500, 605, HitCode::kBottom}));

TEST(HitTest, TopThreePixelsUnderTheWindowButtonsAreTheEdge) {
  for (int y = 0; y < 3; ++y) EXPECT_EQ(HitTest({kWidth - 60, y}, kClientArea), HitCode::kTop) << y;
  EXPECT_EQ(HitTest({kWidth - 60, 3}, kClientArea), HitCode::kClient);
}

// The numbers are the system's, which acts on them.
TEST(HitTest, CodesAreTheSystemsNumbers) {
  const auto numberAt = [](int x, int y) { return static_cast<int>(HitTest({x, y}, kClientArea)); };
  EXPECT_EQ(numberAt(500, 300), 1);   // HTCLIENT
  EXPECT_EQ(numberAt(500, 15), 2);    // HTCAPTION
  EXPECT_EQ(numberAt(0, 300), 10);    // HTLEFT
  EXPECT_EQ(numberAt(999, 300), 11);  // HTRIGHT
  EXPECT_EQ(numberAt(500, 0), 12);    // HTTOP
  EXPECT_EQ(numberAt(0, 0), 13);      // HTTOPLEFT
  EXPECT_EQ(numberAt(999, 0), 14);    // HTTOPRIGHT
  EXPECT_EQ(numberAt(500, 599), 15);  // HTBOTTOM
  EXPECT_EQ(numberAt(0, 599), 16);    // HTBOTTOMLEFT
  EXPECT_EQ(numberAt(999, 599), 17);  // HTBOTTOMRIGHT
}

TEST(HitTest, WindowWithoutClientAreaIsAllCorner) { EXPECT_EQ(HitTest({0, 0}, {0, 0}), HitCode::kTopLeft); }

}  // namespace
}  // namespace vantro
