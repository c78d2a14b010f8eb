// The monitor of fullscreen, the offsets of the overlay during the change, and the immediate painting of the bar.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "tests/support/import_hook.h"
#include "tests/support/line_order.h"
#include "tests/unit/shell/call_log.h"
#include "tests/unit/shell/shell_fixture.h"

namespace vantro {
namespace {

using test::CallLog;
using test::ImportHook;
using test::InOrder;
using test::Inside;
using Lines = std::vector<std::string>;

class FullscreenCalls : public test::ShellTest {};

DWORD askedFlags = 0;
HMONITOR WINAPI OnMonitorFromWindow(HWND, DWORD flags) {
  askedFlags = flags;
  return nullptr;
}
BOOL WINAPI OnGetMonitorInfo(HMONITOR, MONITORINFO* info) {
  info->rcMonitor = {-3000, -200, -1000, 900};
  info->rcWork = {-2900, -100, -1100, 800};
  return TRUE;
}

TEST_F(FullscreenCalls, TakeTheWholeMonitorOfTheWindowOrElseThePrimaryOne) {
  const ImportHook from("user32.dll", "MonitorFromWindow", reinterpret_cast<void*>(OnMonitorFromWindow));
  const ImportHook info("user32.dll", "GetMonitorInfoA", reinterpret_cast<void*>(OnGetMonitorInfo));
  const CallLog calls(Window());
  Window().ToggleFullscreen();
  EXPECT_EQ(askedFlags, DWORD{MONITOR_DEFAULTTOPRIMARY});
  EXPECT_EQ(calls.Of("SetWindowPos").front(),
            "SetWindowPos main after=HWND_TOP -3000,-200 2000x1100 SWP_FRAMECHANGED|SWP_SHOWWINDOW");
}

// Returns the log line of a sync that moves the overlay over the main window's client area below an offset.
std::string SyncLine(HWND window, int offset) {
  RECT client{};
  GetClientRect(window, &client);
  POINT corner{};
  ClientToScreen(window, &corner);
  return "SyncFlutterOverlayPosition: Updated overlay to client area " + std::to_string(corner.x) + "," +
         std::to_string(corner.y + offset) + " " + std::to_string(client.right) + "x" +
         std::to_string(client.bottom - offset);
}

TEST_F(FullscreenCalls, MoveIntoFullscreenStillSyncsBelowTheBarAndIsRepaired) {
  const test::LogCapture log;
  Window().ToggleFullscreen();
  EXPECT_TRUE(InOrder(log, {SyncLine(Window().hwnd_, 30), SyncLine(Window().hwnd_, 0)}));
}

TEST_F(FullscreenCalls, MoveOutOfFullscreenStillSyncsOverTheBarAndIsRepaired) {
  Window().ToggleFullscreen();
  const test::LogCapture log;
  Window().ToggleFullscreen();
  EXPECT_TRUE(InOrder(log, {SyncLine(Window().hwnd_, 0), SyncLine(Window().hwnd_, 30)}));
}

// The bar.

std::vector<RECT> filledStrips;
HBRUSH stripBrush = nullptr;
int WINAPI OnFillRect(HDC, const RECT* rect, HBRUSH brush) {
  if (rect->top == 0 && rect->bottom > 0) {  // in a paint message the rectangle starts above 0
    filledStrips.push_back(*rect);
    stripBrush = brush;
  }
  return 1;
}
BOOL WINAPI NoUpdate(HWND) { return TRUE; }

TEST_F(FullscreenCalls, ShowingTheBarFillsItWithoutWaitingForAPaintMessage) {
  Window().ToggleFullscreen();
  const ImportHook update("user32.dll", "UpdateWindow", reinterpret_cast<void*>(NoUpdate));
  const ImportHook fill("user32.dll", "FillRect", reinterpret_cast<void*>(OnFillRect));
  filledStrips.clear();
  Inside(Window()).fullscreen_.ShowTitleBarControls();
  RECT client{};
  GetClientRect(Window().hwnd_, &client);
  ASSERT_FALSE(filledStrips.empty());
  const RECT strip{0, 0, client.right, 30};
  for (const RECT& filled : filledStrips) EXPECT_TRUE(EqualRect(&filled, &strip)) << filled.bottom;
  EXPECT_EQ(stripBrush, Inside(Window()).titleBarBrush_);
}

BOOL WINAPI NoClientRect(HWND, RECT*) { return FALSE; }

TEST_F(FullscreenCalls, BarWithoutAClientAreaIsRedrawnInTheKeptWidth) {
  Inside(Window()).width_ = 777;
  const ImportHook hook("user32.dll", "GetClientRect", reinterpret_cast<void*>(NoClientRect));
  CallLog calls(Window());
  Inside(Window()).fullscreen_.HideTitleBarControls();
  EXPECT_EQ(calls.Of("InvalidateRect"), (Lines{"InvalidateRect main 0,0-777,30 erase"}));
  calls.Clear();
  Inside(Window()).fullscreen_.ShowTitleBarControls();
  EXPECT_EQ(calls.Of("InvalidateRect"), (Lines{"InvalidateRect main 0,0-777,30 keep"}));
}

}  // namespace
}  // namespace vantro
