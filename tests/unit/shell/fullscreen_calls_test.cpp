// The monitor of fullscreen, the offsets of the overlay during the change, the immediate painting of the bar, and the
// order of calls, log lines and changes of state.
#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include "shell/shell_ids.h"
#include "tests/support/flag_names.h"
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
using test::Note;
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
  const ImportHook from("user32.dll", "MonitorFromWindow", OnMonitorFromWindow);
  const ImportHook info("user32.dll", "GetMonitorInfoA", OnGetMonitorInfo);
  const CallLog calls(Window());
  const test::LogCapture log;
  Window().ToggleFullscreen();
  EXPECT_TRUE(log.Has("INFO ToggleFullscreen: Monitor rect: -3000,-200 to -1000,900"));
  EXPECT_TRUE(
      log.Has("INFO HideTitleBarControls: Repositioned overlay to cover full screen (2000x1100 at -3000,-200)"));
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
  const ImportHook update("user32.dll", "UpdateWindow", NoUpdate);
  const ImportHook fill("user32.dll", "FillRect", OnFillRect);
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
  const ImportHook hook("user32.dll", "GetClientRect", NoClientRect);
  CallLog calls(Window());
  Inside(Window()).fullscreen_.HideTitleBarControls();
  EXPECT_EQ(calls.Of("InvalidateRect"), (Lines{"InvalidateRect main 0,0-777,30 erase"}));
  calls.Clear();
  Inside(Window()).fullscreen_.ShowTitleBarControls();
  EXPECT_EQ(calls.Of("InvalidateRect"), (Lines{"InvalidateRect main 0,0-777,30 keep"}));
}

// The order of calls, log lines and changes of state.

class FullscreenOrder : public test::ShellTest {
 protected:
  FullscreenOrder() {
    SetCursorPos(300, 700);  // far from the top, so that a real tick of the tracking timer changes nothing
  }
  ~FullscreenOrder() override { entering_ = nullptr; }

  // Returns the state as " [FBTmh]": fullscreen, bar shown, pointer at the top, mouse tracking timer, auto-hide timer.
  // A dash is in the place of what does not apply.
  std::string State() {
    const auto inside = Inside(Window());
    std::string state = " [FBTmh]";
    const bool flags[] = {inside.isFullscreen_, inside.isTitleBarVisible_, inside.isMouseInTopArea_,
                          inside.mouseTrackingTimer_ != 0, inside.titleBarAutoHideTimer_ != 0};
    for (size_t i = 0; i < std::size(flags); ++i) {
      if (!flags[i]) state[2 + i] = '-';
    }
    return state;
  }
  // Runs an operation and returns its calls, each with the state, and its log lines. The places of windows are cut off,
  // because other tests check them.
  Lines StepsOf(const std::function<void()>& operation) {
    const test::LogCapture log;
    CallLog calls(Window());
    calls.WriteToLog([this] { return State(); });
    entering_ = &calls;
    operation();
    entering_ = nullptr;
    Lines lines = test::LinesWith(log, {"ToggleFullscreen: ", "TitleBarControls: ", "AutoHideTimer: ", "mouse tracking",
                                        "fullscreen mode", "WM_TIMER: ", "MAIN WINDOW", "(call) "});
    for (std::string& line : lines) {
      line = std::regex_replace(line, std::regex(" (after=|- pos:|0,0-)[^\\[]*( \\[|$)"), "$2");
    }
    return lines;
  }
  static void AppendControls(Lines& lines, const std::string& commandAndState) {
    for (const char* control :
         {"close", "maximize", "minimize", "search", "file", "help", "volume", "speaker", "icon", "title"}) {
      lines.push_back(std::string("DEBUG (call) ShowWindow ") + control + " " + commandAndState);
    }
  }

  // Reads of the window's rectangle and styles, before the first change of the window.
  static void NoteRead(const std::string& call) {
    if (entering_ && entering_->Calls().empty()) Note(call);
  }
  static BOOL WINAPI OnGetWindowRect(HWND window, RECT* rect) {
    NoteRead("GetWindowRect");
    return reinterpret_cast<decltype(&GetWindowRect)>(GetProcAddress(GetModuleHandleA("user32.dll"), "GetWindowRect"))(
        window, rect);
  }
  static LONG WINAPI OnGetWindowLong(HWND window, int index) {
    NoteRead("GetWindowLongA " + test::WindowLongName(index) + " with the width " +
             std::to_string(Inside(*VantroWindow::instance_).width_));
    return reinterpret_cast<decltype(&GetWindowLongA)>(
        GetProcAddress(GetModuleHandleA("user32.dll"), "GetWindowLongA"))(window, index);
  }

  static inline const CallLog* entering_ = nullptr;
};

TEST_F(FullscreenOrder, OfEntering) {
  Inside(Window()).width_ = 0;
  Inside(Window()).isMouseInTopArea_ = true;
  Inside(Window()).mouseTrackingTimer_ = kMouseTrackingTimerId;  // as if the timer already ran
  const ImportHook rect("user32.dll", "GetWindowRect", OnGetWindowRect);
  const ImportHook style("user32.dll", "GetWindowLongA", OnGetWindowLong);
  Lines expected = {"INFO ToggleFullscreen: Entering fullscreen mode",
                    "DEBUG (call) GetWindowRect",
                    "DEBUG (call) GetWindowLongA GWL_STYLE with the width 0",
                    "DEBUG (call) GetWindowLongA GWL_EXSTYLE with the width 0",
                    "DEBUG ToggleFullscreen: Saved window state",
                    "INFO ToggleFullscreen: Monitor rect: 0,0 to 1024,768",
                    "DEBUG (call) SetWindowLongA main GWL_STYLE WS_POPUP|WS_VISIBLE [-BTm-]",
                    "DEBUG (call) SetWindowPos main [-BTm-]",
                    "DEBUG (call) SetWindowPos overlay [FBTm-]",
                    "DEBUG (call) SetWindowPos view [FBTm-]",
                    "DEBUG (call) SetFocus view [FBTm-]",
                    "DEBUG HideTitleBarControls: Hiding title bar controls in fullscreen"};
  AppendControls(expected, "SW_HIDE [FBTm-]");
  expected.insert(
      expected.end(),
      {"DEBUG (call) SetWindowPos overlay [F-Tm-]", "DEBUG (call) SetWindowPos view [F-Tm-]",
       "INFO HideTitleBarControls: Repositioned overlay to cover full screen (1024x768 at 0,0)",
       "DEBUG (call) InvalidateRect main [F-Tm-]", "DEBUG (call) UpdateWindow main [F-Tm-]",
       "DEBUG HideTitleBarControls: Invalidated and updated title bar area", "DEBUG (call) KillTimer main 1002 [F--m-]",
       "DEBUG (call) SetTimer main 1002 100ms [F--m-]", "INFO Started mouse tracking timer for fullscreen mode",
       "DEBUG (call) InvalidateRect maximize all erase [F--m-]",
       "INFO Entered fullscreen mode - title bar will auto-hide"});
  EXPECT_EQ(StepsOf([this] { Window().ToggleFullscreen(); }), expected);
}

TEST_F(FullscreenOrder, OfLeaving) {
  Window().ToggleFullscreen();
  Inside(Window()).fullscreen_.StartTitleBarAutoHideTimer();
  Inside(Window()).isMouseInTopArea_ = true;
  Inside(Window()).savedWindowRect_ = {40, 30, 940, 630};
  Inside(Window()).savedStyle_ = WS_THICKFRAME;
  Inside(Window()).savedExStyle_ = WS_EX_WINDOWEDGE;
  Lines expected = {"INFO ToggleFullscreen: Exiting fullscreen mode",
                    "DEBUG ToggleFullscreen: Restoring window",
                    "DEBUG (call) SetWindowLongA main GWL_STYLE WS_VISIBLE|WS_THICKFRAME [F-Tmh]",
                    "DEBUG (call) SetWindowLongA main GWL_EXSTYLE WS_EX_WINDOWEDGE [F-Tmh]",
                    "DEBUG (call) ShowWindow main SW_SHOW [F-Tmh]",
                    "DEBUG (call) SetWindowPos main [F-Tmh]",
                    "DEBUG (call) KillTimer main 1002 [F-Tmh]",
                    "INFO Stopped mouse tracking timer",
                    "DEBUG (call) SetWindowPos overlay [--T-h]",
                    "DEBUG (call) SetWindowPos view [--T-h]",
                    "DEBUG (call) SetFocus view [--T-h]",
                    "DEBUG ShowTitleBarControls: Showing title bar controls in fullscreen"};
  AppendControls(expected, "SW_SHOW [--T-h]");
  expected.insert(
      expected.end(),
      {"DEBUG ShowTitleBarControls: Painted title bar background directly", "DEBUG (call) InvalidateRect main [-BT-h]",
       "DEBUG (call) UpdateWindow main [-BT-h]",
       "DEBUG ShowTitleBarControls: Title bar background painted and invalidated",
       "DEBUG (call) KillTimer main 1003 [-BT-h]", "DEBUG StopTitleBarAutoHideTimer: Stopped auto-hide timer",
       "DEBUG (call) InvalidateRect maximize all erase [-B---]", "DEBUG (call) InvalidateRect main all erase [-B---]",
       "INFO Exited fullscreen mode - title bar controls restored"});
  EXPECT_EQ(StepsOf([this] { Window().ToggleFullscreen(); }), expected);
}

TEST_F(FullscreenOrder, OfThePointerThatEntersTheTopArea) {
  Window().ToggleFullscreen();
  Inside(Window()).fullscreen_.StartTitleBarAutoHideTimer();  // as if it still ran
  SetCursorPos(300, 7);
  Lines expected = {"DEBUG MAIN WINDOW WM_MOUSEMOVE in fullscreen: pt.y=7, isNowInTopArea=1",
                    "DEBUG ShowTitleBarControls: Showing title bar controls in fullscreen"};
  AppendControls(expected, "SW_SHOW [F-Tmh]");
  expected.insert(
      expected.end(),
      {"DEBUG (call) SetWindowPos overlay [FBTmh]", "DEBUG (call) SetWindowPos view [FBTmh]",
       "INFO ShowTitleBarControls: Repositioned overlay below title bar (1024x738 at 0,30)",
       "DEBUG ShowTitleBarControls: Painted title bar background directly", "DEBUG (call) InvalidateRect main [FBTmh]",
       "DEBUG (call) UpdateWindow main [FBTmh]",
       "DEBUG ShowTitleBarControls: Title bar background painted and invalidated",
       "DEBUG (call) KillTimer main 1003 [FBTmh]", "DEBUG StopTitleBarAutoHideTimer: Stopped auto-hide timer",
       "INFO MAIN WINDOW: Mouse entered top area - SHOWING TITLE BAR"});
  EXPECT_EQ(StepsOf([this] { SendMessageA(Window().hwnd_, WM_MOUSEMOVE, 0, 0); }), expected);
}

TEST_F(FullscreenOrder, OfThePointerThatLeavesTheTopArea) {
  Window().ToggleFullscreen();
  Inside(Window()).fullscreen_.RunTopAreaStep(7, TopAreaCaller::kTrackingTimer);
  EXPECT_EQ(StepsOf([this] { Inside(Window()).fullscreen_.RunTopAreaStep(77, TopAreaCaller::kTrackingTimer); }),
            (Lines{"DEBUG (call) SetTimer main 1003 3000ms [FB-m-]",
                   "DEBUG StartTitleBarAutoHideTimer: Started auto-hide timer",
                   "INFO WM_TIMER: Mouse left top area (y=77) - starting auto-hide timer"}));
}

TEST_F(FullscreenOrder, OfTheEndOfTheCountdown) {
  Window().ToggleFullscreen();
  Inside(Window()).fullscreen_.ShowTitleBarControls();
  Inside(Window()).fullscreen_.StartTitleBarAutoHideTimer();
  const Lines steps = StepsOf([this] { SendMessageA(Window().hwnd_, WM_TIMER, kTitleBarAutoHideTimerId, 0); });
  ASSERT_GE(steps.size(), 5u);
  EXPECT_EQ(Lines(steps.begin(), steps.begin() + 5),
            (Lines{"DEBUG WM_TIMER: Title bar auto-hide timer fired", "DEBUG (call) KillTimer main 1003 [FB-mh]",
                   "DEBUG StopTitleBarAutoHideTimer: Stopped auto-hide timer",
                   "DEBUG HideTitleBarControls: Hiding title bar controls in fullscreen",
                   "DEBUG (call) ShowWindow close SW_HIDE [FB-m-]"}));
}

TEST_F(FullscreenOrder, OfAPointerThatRestsAtTheTopIsTheEndOfTheCountdown) {
  Window().ToggleFullscreen();
  Inside(Window()).fullscreen_.RunTopAreaStep(7, TopAreaCaller::kTrackingTimer);
  Inside(Window()).fullscreen_.StartTitleBarAutoHideTimer();
  EXPECT_EQ(
      StepsOf([this] { Inside(Window()).fullscreen_.RunTopAreaStep(8, TopAreaCaller::kTrackingTimer); }),
      (Lines{"DEBUG (call) KillTimer main 1003 [FBTmh]", "DEBUG StopTitleBarAutoHideTimer: Stopped auto-hide timer"}));
}

// Fails, and still fills in a point at the top.
BOOL WINAPI NoCursor(POINT* point) {
  *point = {300, 7};
  return FALSE;
}

TEST_F(FullscreenOrder, UnknownPointerPositionChangesAndLogsNothing) {
  Window().ToggleFullscreen();
  const ImportHook hook("user32.dll", "GetCursorPos", NoCursor);
  EXPECT_EQ(StepsOf([this] { SendMessageA(Window().hwnd_, WM_MOUSEMOVE, 0, 0); }), Lines{});
  EXPECT_EQ(StepsOf([this] { SendMessageA(Window().hwnd_, WM_TIMER, kMouseTrackingTimerId, 0); }), Lines{});
}

TEST_F(FullscreenOrder, BarWithoutAnOverlayMovesNone) {
  Window().ToggleFullscreen();
  DestroyWindow(Inside(Window()).flutterHostWindow_);
  const test::LogCapture log;
  const CallLog calls(Window());
  Inside(Window()).fullscreen_.ShowTitleBarControls();
  Inside(Window()).fullscreen_.HideTitleBarControls();
  EXPECT_EQ(calls.Of("SetWindowPos"), Lines{});
  EXPECT_EQ(log.CountContaining("Repositioned overlay"), 0);
}

}  // namespace
}  // namespace vantro
