// The painting of the title bar's strip: its calls, their order, and the end of its brush.
#include <gtest/gtest.h>
#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "shell/title_bar.h"
#include "tests/support/format.h"
#include "tests/support/import_hook.h"
#include "tests/support/line_order.h"
#include "tests/unit/shell/call_log.h"
#include "tests/unit/shell/drawing_log.h"
#include "tests/unit/shell/picture.h"
#include "tests/unit/shell/shell_fixture.h"

namespace vantro {
namespace {

using test::CallLog;
using test::DrawingLog;
using test::Format;
using test::ImportHook;
using test::InOrder;
using test::Inside;
using Lines = std::vector<std::string>;

class TitleBarStrip : public test::ShellTest {
 protected:
  TitleBarStrip() { SetClientWidth(Window(), 900); }
  TitleBar& Bar() { return Inside(Window()).titleBar_; }
};

TEST_F(TitleBarStrip, IsPaintedUnlessItIsHiddenInFullscreen) {
  for (const auto& [isFullscreen, isVisible] : {std::pair{false, true}, {false, false}, {true, true}}) {
    const test::LogCapture log;
    const DrawingLog drawing;
    Bar().Paint(isFullscreen, isVisible);
    EXPECT_EQ(drawing.Calls(), (Lines{"BeginPaint", "FillRect 0,-2-900,30 5F4646", "EndPaint"}));
    EXPECT_TRUE(InOrder(log, {Format("DEBUG WM_PAINT: Painting title bar - isFullscreen=%d, isTitleBarVisible=%d, "
                                     "rect=0,-2 to 900,30",
                                     isFullscreen, isVisible),
                              "(call) FillRect"}));
  }
  const DrawingLog drawing;
  Bar().Paint(true, false);
  EXPECT_EQ(drawing.Calls(), (Lines{"BeginPaint", "EndPaint"}));
}

TEST_F(TitleBarStrip, EachDeviceContextIsReleasedAfterTheFill) {
  RECT window{};
  GetWindowRect(Window().hwnd_, &window);
  const DrawingLog drawing;
  Bar().PaintFrameEdge();
  EXPECT_TRUE(Bar().PaintNow());
  EXPECT_EQ(drawing.Calls(), (Lines{"GetWindowDC", Format("FillRect 0,0-%ld,3 5F4646", window.right - window.left),
                                    "ReleaseDC", "GetDC", "FillRect 0,0-900,30 5F4646", "ReleaseDC"}));
}

HDC WINAPI NoDeviceContext(HWND) { return nullptr; }

TEST_F(TitleBarStrip, WithoutADeviceContextNothingIsDrawn) {
  const DrawingLog drawing;
  const ImportHook windowDc("user32.dll", "GetWindowDC", NoDeviceContext);
  const ImportHook clientDc("user32.dll", "GetDC", NoDeviceContext);
  Bar().PaintFrameEdge();
  EXPECT_FALSE(Bar().PaintNow());
  EXPECT_EQ(drawing.Calls(), Lines{});
}

LONG clientHeight = 0;
BOOL WINAPI GiveClientRect(HWND, RECT* rect) {
  *rect = {0, 0, 500, clientHeight};
  return TRUE;
}

TEST_F(TitleBarStrip, IsInvalidatedInAtMostThirtyPixelsAndThenUpdated) {
  const ImportHook client("user32.dll", "GetClientRect", GiveClientRect);
  for (const auto& [height, strip] : {std::pair{20, 20}, {29, 29}, {30, 30}, {31, 30}, {700, 30}}) {
    clientHeight = height;
    const CallLog calls(Window());
    Bar().Repaint(false, 1);
    EXPECT_EQ(calls.Calls(), (Lines{Format("InvalidateRect main 0,0-500,%d keep", strip), "UpdateWindow main"}));
  }
}

TEST_F(TitleBarStrip, GivesAControlItsTextColourThenItsBackground) {
  const test::Canvas canvas(10, 10);
  const DrawingLog drawing;
  EXPECT_EQ(Bar().ColorControl(canvas.Dc()), Bar().Brush());
  EXPECT_EQ(drawing.Calls(), (Lines{"SetTextColor FFFFFF", "SetBkColor 5F4646"}));
}

// The brush.

std::vector<HGDIOBJ> deleted;
BOOL WINAPI OnDeleteObject(HGDIOBJ object) {
  deleted.push_back(object);
  return TRUE;
}

TEST(TitleBarBrush, IsDeletedOnceWithOrWithoutAnEndOfDrawing) {
  const ImportHook hook("gdi32.dll", "DeleteObject", OnDeleteObject);
  const auto original = hook.Original<decltype(&DeleteObject)>();
  const HWND none = nullptr;
  for (const int ends : {0, 1, 2}) {
    deleted.clear();
    std::optional<TitleBar> bar(std::in_place, none);
    const HBRUSH brush = bar->Brush();
    for (int i = 0; i < ends; ++i) bar->EndDrawing();
    bar.reset();
    EXPECT_EQ(deleted, std::vector<HGDIOBJ>{brush}) << ends;
    original(brush);
  }
}

}  // namespace
}  // namespace vantro
