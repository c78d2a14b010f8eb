// Compares each title bar button in each state with a reviewed picture.
#include "shell/button_painter.h"

#include <gtest/gtest.h>

#include <string>

#include "shell/shell_ids.h"
#include "shell/vantro_window.h"
#include "tests/unit/shell/picture.h"

namespace vantro {
namespace {

constexpr int kButtonWidth = 45;
constexpr int kButtonHeight = 27;

class ButtonPainter : public testing::Test {
 protected:
  ~ButtonPainter() override { DeleteObject(titleBarBrush_); }

  DRAWITEMSTRUCT Item(const test::Canvas& canvas, UINT id, UINT state) const {
    DRAWITEMSTRUCT item{};
    item.CtlType = ODT_BUTTON;
    item.CtlID = id;
    item.itemState = state;
    item.hDC = canvas.Dc();
    item.rcItem = canvas.Area();
    return item;
  }

  void Paint(const test::Canvas& canvas, UINT id, UINT state, bool isFullscreen = false) const {
    PaintTitleBarButton(Item(canvas, id, state), isFullscreen, titleBarBrush_);
  }

  HBRUSH titleBarBrush_ = CreateSolidBrush(kTitleBarColor);
};

struct PaintedButton {
  const char* picture;
  UINT id;
  UINT state;
  bool isFullscreen;
};
class PaintedButtons : public ButtonPainter, public testing::WithParamInterface<PaintedButton> {};

TEST_P(PaintedButtons, EqualTheirPicture) {
  const PaintedButton& button = GetParam();
  const test::Canvas canvas(kButtonWidth, kButtonHeight);
  Paint(canvas, button.id, button.state, button.isFullscreen);
  EXPECT_EQ(canvas.Count(test::Canvas::kUntouched), 0);
  canvas.ExpectEqualsPicture(button.picture);
}

INSTANTIATE_TEST_SUITE_P(TitleBar, PaintedButtons,
                         testing::Values(PaintedButton{"close", kCloseButtonId, 0, false},
                                         PaintedButton{"close_pressed", kCloseButtonId, ODS_SELECTED, false},
                                         PaintedButton{"close_hot", kCloseButtonId, ODS_HOTLIGHT, false},
                                         PaintedButton{"maximize", kMaximizeButtonId, 0, false},
                                         PaintedButton{"maximize_pressed", kMaximizeButtonId, ODS_SELECTED, false},
                                         PaintedButton{"maximize_hot", kMaximizeButtonId, ODS_HOTLIGHT, false},
                                         PaintedButton{"maximize_fullscreen", kMaximizeButtonId, 0, true},
                                         PaintedButton{"minimize", kMinimizeButtonId, 0, false},
                                         PaintedButton{"minimize_pressed", kMinimizeButtonId, ODS_SELECTED, false},
                                         PaintedButton{"minimize_hot", kMinimizeButtonId, ODS_HOTLIGHT, false}),
                         [](const auto& button) { return std::string(button.param.picture); });

TEST_F(ButtonPainter, PressedColourWinsOverTheCloseButtonsHotRed) {
  const test::Canvas canvas(kButtonWidth, kButtonHeight);
  Paint(canvas, kCloseButtonId, ODS_SELECTED | ODS_HOTLIGHT);
  EXPECT_EQ(canvas.Pixel(0, 0), RGB(55, 55, 80));
  EXPECT_EQ(canvas.Count(RGB(200, 50, 50)), 0);
}

struct StateColour {
  const char* name;
  UINT id;
  UINT state;
  COLORREF color;
};
class StateColours : public ButtonPainter, public testing::WithParamInterface<StateColour> {};

TEST_P(StateColours, FillTheWholeItem) {
  const test::Canvas canvas(kButtonWidth, kButtonHeight);
  Paint(canvas, GetParam().id, GetParam().state);
  const COLORREF corners[] = {canvas.Pixel(0, 0), canvas.Pixel(kButtonWidth - 1, 0), canvas.Pixel(0, kButtonHeight - 1),
                              canvas.Pixel(kButtonWidth - 1, kButtonHeight - 1)};
  for (const COLORREF corner : corners) EXPECT_EQ(corner, GetParam().color);
}

INSTANTIATE_TEST_SUITE_P(TitleBar, StateColours,
                         testing::Values(StateColour{"Normal", kMinimizeButtonId, 0, RGB(70, 70, 95)},
                                         StateColour{"Pressed", kMinimizeButtonId, ODS_SELECTED, RGB(55, 55, 80)},
                                         StateColour{"ClosePressed", kCloseButtonId, ODS_SELECTED, RGB(55, 55, 80)},
                                         StateColour{"Hot", kMinimizeButtonId, ODS_HOTLIGHT, RGB(65, 65, 90)},
                                         StateColour{"CloseHot", kCloseButtonId, ODS_HOTLIGHT, RGB(200, 50, 50)},
                                         StateColour{"FilePressed", kFileButtonId, ODS_SELECTED, RGB(55, 55, 80)},
                                         StateColour{"Focused", kMinimizeButtonId, ODS_FOCUS, RGB(70, 70, 95)}),
                         [](const auto& colour) { return std::string(colour.param.name); });

// The number of painted pixels. Text uses the system's font, so it can't be compared pixel by pixel.
int InkOf(const test::Canvas& canvas) { return canvas.Width() * canvas.Height() - canvas.Count(kTitleBarColor); }

TEST_F(ButtonPainter, DrawsTheTextOfFileAndHelp) {
  const test::Canvas file(35, 20), help(35, 20);
  Paint(file, kFileButtonId, 0);
  Paint(help, kHelpButtonId, 0);
  EXPECT_GT(InkOf(file), 20);
  EXPECT_GT(InkOf(help), InkOf(file));
  EXPECT_GT(file.Count(RGB(255, 255, 255)), 0);
  EXPECT_GT(help.Count(RGB(255, 255, 255)), 0);
}

TEST_F(ButtonPainter, LeavesAnUnknownButtonToItsBackground) {
  const test::Canvas canvas(kButtonWidth, kButtonHeight);
  Paint(canvas, 12345, 0);
  EXPECT_EQ(canvas.Count(kTitleBarColor), kButtonWidth * kButtonHeight);
}

TEST_F(ButtonPainter, CentresTheGlyphInAnItemThatDoesNotBeginAtZero) {
  const test::Canvas canvas(100, 60);
  DRAWITEMSTRUCT item = Item(canvas, kMinimizeButtonId, 0);
  item.rcItem = {20, 10, 65, 37};
  PaintTitleBarButton(item, false, titleBarBrush_);
  // The line is 11 pixels long, from 5 left of the centre to 5 right of it.
  EXPECT_EQ(canvas.Count(RGB(255, 255, 255)), 11);
  EXPECT_EQ(canvas.Pixel(37, 23), RGB(255, 255, 255));
  EXPECT_EQ(canvas.Pixel(47, 23), RGB(255, 255, 255));
  EXPECT_EQ(canvas.Pixel(19, 23), test::Canvas::kUntouched);
}

TEST_F(ButtonPainter, RestoresThePenOfTheDeviceContext) {
  const test::Canvas canvas(kButtonWidth, kButtonHeight);
  const HGDIOBJ pen = GetCurrentObject(canvas.Dc(), OBJ_PEN);
  Paint(canvas, kCloseButtonId, 0);
  EXPECT_EQ(GetCurrentObject(canvas.Dc(), OBJ_PEN), pen);
}

}  // namespace
}  // namespace vantro
