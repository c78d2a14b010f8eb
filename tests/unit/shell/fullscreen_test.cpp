// Fullscreen and its automatic title bar, on a real window.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "shell/shell_ids.h"
#include "tests/unit/shell/call_log.h"
#include "tests/unit/shell/shell_fixture.h"

namespace vantro {
namespace {

using test::CallLog;
using test::Inside;
using test::LogCapture;
using test::PumpUntil;
using Lines = std::vector<std::string>;

// The three flags of the state.
struct BarState {
  bool isFullscreen;
  bool isTitleBarVisible;
  bool isMouseInTopArea;

  bool operator==(const BarState&) const = default;
};
constexpr BarState kNormal{false, true, false};
constexpr BarState kBarHidden{true, false, false};
constexpr BarState kPointerAtTop{true, true, true};
constexpr BarState kCountingDown{true, true, false};

class Fullscreen : public test::ShellTest {
 protected:
  Fullscreen() {
    GetWindowRect(Window().hwnd_, &normalRect_);
    monitor_ = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    // Far from the top, so that a real tick of the tracking timer changes nothing.
    SetCursorPos(monitor_.right / 2, monitor_.bottom - 10);
  }

  BarState State() {
    return {Inside(Window()).isFullscreen_, Inside(Window()).isTitleBarVisible_, Inside(Window()).isMouseInTopArea_};
  }
  bool Tracks() { return Inside(Window()).mouseTrackingTimer_ != 0; }
  bool CountsDown() { return Inside(Window()).titleBarAutoHideTimer_ != 0; }
  void PointerAt(int y) { Inside(Window()).fullscreen_.RunTopAreaStep(y, TopAreaCaller::kTrackingTimer); }
  void Tick(UINT_PTR timer) { SendMessageA(Window().hwnd_, WM_TIMER, timer, 0); }

  static RECT RectOf(HWND window) {
    RECT rect{};
    GetWindowRect(window, &rect);
    return rect;
  }
  static DWORD StyleOf(HWND window) { return static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE)); }
  // Converts a point of the main window's client area to screen coordinates.
  POINT OnScreen(int x, int y) {
    POINT point{x, y};
    ClientToScreen(Window().hwnd_, &point);
    return point;
  }

  RECT normalRect_{};
  RECT monitor_{};
};

#define EXPECT_RECT(actual, expectedLeft, expectedTop, expectedRight, expectedBottom) \
  do {                                                                                \
    const RECT rect_ = (actual);                                                      \
    EXPECT_EQ(rect_.left, expectedLeft);                                              \
    EXPECT_EQ(rect_.top, expectedTop);                                                \
    EXPECT_EQ(rect_.right, expectedRight);                                            \
    EXPECT_EQ(rect_.bottom, expectedBottom);                                          \
  } while (false)

TEST_F(Fullscreen, CoversTheMonitorAsABorderlessPopup) {
  Window().ToggleFullscreen();
  EXPECT_RECT(RectOf(Window().hwnd_), monitor_.left, monitor_.top, monitor_.right, monitor_.bottom);
  EXPECT_EQ(StyleOf(Window().hwnd_) & ~WS_CLIPSIBLINGS, 0x90000000u);
}

TEST_F(Fullscreen, SavesRectangleAndStylesOnEntering) {
  const DWORD style = StyleOf(Window().hwnd_);
  const auto exStyle = static_cast<DWORD>(GetWindowLongA(Window().hwnd_, GWL_EXSTYLE));
  Window().ToggleFullscreen();
  EXPECT_RECT(Inside(Window()).savedWindowRect_, normalRect_.left, normalRect_.top, normalRect_.right,
              normalRect_.bottom);
  EXPECT_EQ(Inside(Window()).savedStyle_, style);
  EXPECT_EQ(Inside(Window()).savedExStyle_, exStyle);
}

TEST_F(Fullscreen, LeavingRestoresRectangleAndStyles) {
  const DWORD style = StyleOf(Window().hwnd_);
  Window().ToggleFullscreen();
  Window().ToggleFullscreen();
  EXPECT_RECT(RectOf(Window().hwnd_), normalRect_.left, normalRect_.top, normalRect_.right, normalRect_.bottom);
  EXPECT_EQ(StyleOf(Window().hwnd_), style);
}

TEST_F(Fullscreen, EnteringTakesItsEffectsInOrder) {
  LogCapture log;
  CallLog calls(Window());
  Window().ToggleFullscreen();
  EXPECT_EQ(calls.Calls(), (Lines{
                               "SetWindowLongA main GWL_STYLE WS_POPUP|WS_VISIBLE",
                               "SetWindowPos main after=HWND_TOP 0,0 1024x768 SWP_FRAMECHANGED|SWP_SHOWWINDOW",
                               "SetWindowPos overlay after=HWND_TOP 0,0 1024x768 SWP_SHOWWINDOW",
                               "SetWindowPos view after=HWND_TOP 0,0 1024x768 SWP_NOACTIVATE|SWP_SHOWWINDOW",
                               "SetFocus view",
                               "ShowWindow close SW_HIDE",
                               "ShowWindow maximize SW_HIDE",
                               "ShowWindow minimize SW_HIDE",
                               "ShowWindow search SW_HIDE",
                               "ShowWindow file SW_HIDE",
                               "ShowWindow help SW_HIDE",
                               "ShowWindow volume SW_HIDE",
                               "ShowWindow speaker SW_HIDE",
                               "ShowWindow icon SW_HIDE",
                               "ShowWindow title SW_HIDE",
                               "SetWindowPos overlay after=HWND_TOP 0,0 1024x768 SWP_NOACTIVATE|SWP_SHOWWINDOW",
                               "SetWindowPos view after=HWND_TOP 0,0 1024x768 SWP_NOACTIVATE|SWP_SHOWWINDOW",
                               "InvalidateRect main 0,0-1024,30 erase",
                               "UpdateWindow main",
                               "SetTimer main 1002 100ms",
                               "InvalidateRect maximize all erase",
                           }));
  const Lines lines = log.Lines();
  EXPECT_EQ(lines.front(), "INFO ToggleFullscreen: Entering fullscreen mode");
  EXPECT_TRUE(lines[1].starts_with("DEBUG ToggleFullscreen: Saved window state - pos:("));
  EXPECT_EQ(lines[2], "INFO ToggleFullscreen: Monitor rect: 0,0 to 1024,768");
  EXPECT_TRUE(log.Has("DEBUG HideTitleBarControls: Hiding title bar controls in fullscreen"));
  EXPECT_TRUE(log.Has("INFO HideTitleBarControls: Repositioned overlay to cover full screen (1024x768 at 0,0)"));
  EXPECT_TRUE(log.Has("DEBUG HideTitleBarControls: Invalidated and updated title bar area"));
  EXPECT_EQ(lines[lines.size() - 2], "INFO Started mouse tracking timer for fullscreen mode");
  EXPECT_EQ(lines.back(), "INFO Entered fullscreen mode - title bar will auto-hide");
}

TEST_F(Fullscreen, SavedStateIsLoggedWithPositionSizeAndStyles) {
  SetWindowPos(Window().hwnd_, nullptr, 60, 45, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  GetWindowRect(Window().hwnd_, &normalRect_);
  ASSERT_EQ(normalRect_.left, 60);
  ASSERT_EQ(normalRect_.top, 45);
  const auto exStyle = static_cast<DWORD>(GetWindowLongA(Window().hwnd_, GWL_EXSTYLE));
  char expected[200];
  std::snprintf(expected, sizeof expected,
                "DEBUG ToggleFullscreen: Saved window state - pos:(%ld,%ld) size:%ldx%ld style:0x%08lX exStyle:0x%08lX",
                normalRect_.left, normalRect_.top, normalRect_.right - normalRect_.left,
                normalRect_.bottom - normalRect_.top, StyleOf(Window().hwnd_), exStyle);
  LogCapture log;
  Window().ToggleFullscreen();
  EXPECT_TRUE(log.Has(expected)) << expected;
}

TEST_F(Fullscreen, LeavingTakesItsEffectsInOrder) {
  Window().ToggleFullscreen();
  Inside(Window()).savedWindowRect_ = {40, 30, 940, 630};
  Inside(Window()).savedStyle_ = WS_THICKFRAME | WS_CLIPSIBLINGS;  // without WS_VISIBLE, which the host adds
  Inside(Window()).savedExStyle_ = WS_EX_WINDOWEDGE;
  PointerAt(10);
  PointerAt(100);
  ASSERT_EQ(State(), kCountingDown);
  Inside(Window()).isTitleBarVisible_ = false;
  LogCapture log;
  CallLog calls(Window());
  Window().ToggleFullscreen();
  const Lines& made = calls.Calls();
  ASSERT_GE(made.size(), 9u);
  EXPECT_EQ(Lines(made.begin(), made.begin() + 5),
            (Lines{
                "SetWindowLongA main GWL_STYLE WS_VISIBLE|WS_CLIPSIBLINGS|WS_THICKFRAME",
                "SetWindowLongA main GWL_EXSTYLE WS_EX_WINDOWEDGE",
                "ShowWindow main SW_SHOW",
                "SetWindowPos main after=HWND_NOTOPMOST 40,30 900x600 SWP_FRAMECHANGED|SWP_SHOWWINDOW",
                "KillTimer main 1002",
            }));
  // The overlay is below the bar again, after one move. The bar moves the overlay itself only in fullscreen.
  EXPECT_EQ(calls.Of("SetWindowPos").size(), 3u);
  EXPECT_TRUE(made[5].starts_with("SetWindowPos overlay after=HWND_TOP "));
  EXPECT_TRUE(made[5].ends_with(" SWP_SHOWWINDOW"));
  EXPECT_TRUE(made[6].starts_with("SetWindowPos view after=HWND_TOP 0,0 "));
  EXPECT_EQ(Lines(made.begin() + 7, made.begin() + 18),
            (Lines{"SetFocus view", "ShowWindow close SW_SHOW", "ShowWindow maximize SW_SHOW",
                   "ShowWindow minimize SW_SHOW", "ShowWindow search SW_SHOW", "ShowWindow file SW_SHOW",
                   "ShowWindow help SW_SHOW", "ShowWindow volume SW_SHOW", "ShowWindow speaker SW_SHOW",
                   "ShowWindow icon SW_SHOW", "ShowWindow title SW_SHOW"}));
  EXPECT_TRUE(made[18].ends_with(",30 keep")) << made[18];
  EXPECT_EQ(Lines(made.begin() + 19, made.end()),
            (Lines{"UpdateWindow main", "KillTimer main 1003", "InvalidateRect maximize all erase",
                   "InvalidateRect main all erase"}));
  EXPECT_EQ(log.Lines().front(), "INFO ToggleFullscreen: Exiting fullscreen mode");
  EXPECT_EQ(log.Lines()[1], "DEBUG ToggleFullscreen: Restoring window - pos:(40,30) size:900x600 style:0x04040000");
  EXPECT_TRUE(log.Has("INFO Stopped mouse tracking timer"));
  EXPECT_TRUE(log.Has("DEBUG StopTitleBarAutoHideTimer: Stopped auto-hide timer"));
  EXPECT_EQ(log.CountContaining("Repositioned overlay"), 0);
  EXPECT_EQ(log.Lines().back(), "INFO Exited fullscreen mode - title bar controls restored");
}

TEST_F(Fullscreen, TooSmallSavedRectangleYieldsTheDefaultPlaceAndAWarning) {
  Window().ToggleFullscreen();
  Inside(Window()).savedWindowRect_ = {10, 20, 10 + 639, 20 + 400};
  LogCapture log;
  CallLog calls(Window());
  Window().ToggleFullscreen();
  EXPECT_TRUE(log.Has("WARNING ToggleFullscreen: Invalid saved dimensions (639x400), using defaults"));
  EXPECT_EQ(calls.Of("SetWindowPos").front(),
            "SetWindowPos main after=HWND_NOTOPMOST 100,100 1280x720 SWP_FRAMECHANGED|SWP_SHOWWINDOW");
  EXPECT_RECT(Inside(Window()).savedWindowRect_, 100, 100, 10 + 639, 20 + 400);
}

TEST_F(Fullscreen, OverlayCoversTheScreenWhileTheBarIsHidden) {
  Window().ToggleFullscreen();
  EXPECT_RECT(RectOf(Inside(Window()).flutterHostWindow_), 0, 0, monitor_.right, monitor_.bottom);
  EXPECT_RECT(RectOf(Window().flutterEngine_->flutterWindow_), 0, 0, monitor_.right, monitor_.bottom);
}

TEST_F(Fullscreen, OverlayLeavesTheBarFreeWhileItShows) {
  Window().ToggleFullscreen();
  LogCapture log;
  PointerAt(10);
  EXPECT_RECT(RectOf(Inside(Window()).flutterHostWindow_), 0, 30, monitor_.right, monitor_.bottom);
  EXPECT_RECT(RectOf(Window().flutterEngine_->flutterWindow_), 0, 30, monitor_.right, monitor_.bottom);
  EXPECT_TRUE(log.Has("INFO ShowTitleBarControls: Repositioned overlay below title bar (1024x738 at 0,30)"));
}

TEST_F(Fullscreen, AMoveWhileTheBarShowsPutsTheOverlayOverItAgain) {
  Window().ToggleFullscreen();
  PointerAt(10);
  SendMessageA(Window().hwnd_, WM_MOVE, 0, 0);
  EXPECT_RECT(RectOf(Inside(Window()).flutterHostWindow_), 0, 0, monitor_.right, monitor_.bottom);
}

TEST_F(Fullscreen, OverlayIsBackBelowTheBarAfterLeaving) {
  Window().ToggleFullscreen();
  Window().ToggleFullscreen();
  const POINT below = OnScreen(0, 30);
  EXPECT_EQ(RectOf(Inside(Window()).flutterHostWindow_).left, below.x);
  EXPECT_EQ(RectOf(Inside(Window()).flutterHostWindow_).top, below.y);
}

TEST_F(Fullscreen, HidesAllTenControlsAndShowsThemWithTheBar) {
  const HWND controls[] = {Inside(Window()).closeButton_,    Inside(Window()).maximizeButton_,
                           Inside(Window()).minimizeButton_, Inside(Window()).searchBox_,
                           Inside(Window()).fileButton_,     Inside(Window()).helpButton_,
                           Inside(Window()).volumeControl_,  Inside(Window()).speakerIcon_,
                           Inside(Window()).appIconStatic_,  Inside(Window()).titleStatic_};
  Window().ToggleFullscreen();
  for (const HWND control : controls) EXPECT_FALSE(IsWindowVisible(control));
  PointerAt(0);
  for (const HWND control : controls) EXPECT_TRUE(IsWindowVisible(control));
}

TEST_F(Fullscreen, AMissingControlIsSkipped) {
  Inside(Window()).searchBox_ = nullptr;
  CallLog calls(Window());
  Window().ToggleFullscreen();
  EXPECT_EQ(calls.Of("ShowWindow").size(), 9u);
}

TEST_F(Fullscreen, ShowingTwiceAndHidingTwiceDoNothingTheSecondTime) {
  CallLog calls(Window());
  Inside(Window()).fullscreen_.ShowTitleBarControls();
  EXPECT_TRUE(calls.Calls().empty());
  Inside(Window()).fullscreen_.HideTitleBarControls();
  calls.Clear();
  Inside(Window()).fullscreen_.HideTitleBarControls();
  EXPECT_TRUE(calls.Calls().empty());
}

TEST_F(Fullscreen, ShowingTheBarPaintsItAtOnce) {
  Window().ToggleFullscreen();
  LogCapture log;
  CallLog calls(Window());
  PointerAt(10);
  EXPECT_EQ(calls.Of("InvalidateRect"), (Lines{"InvalidateRect main 0,0-1024,30 keep"}));
  EXPECT_TRUE(log.Has("DEBUG ShowTitleBarControls: Showing title bar controls in fullscreen"));
  EXPECT_TRUE(log.Has("DEBUG ShowTitleBarControls: Painted title bar background directly"));
  EXPECT_TRUE(log.Has("DEBUG ShowTitleBarControls: Title bar background painted and invalidated"));
  const HDC dc = GetDC(Window().hwnd_);
  EXPECT_EQ(GetPixel(dc, 300, 15), RGB(70, 70, 95));
  ReleaseDC(Window().hwnd_, dc);
}

// The reachable states, one transition in each test.

TEST_F(Fullscreen, StartsNormalWithoutTimers) {
  EXPECT_EQ(State(), kNormal);
  EXPECT_FALSE(Tracks());
  EXPECT_FALSE(CountsDown());
}

TEST_F(Fullscreen, EnteringHidesTheBarAndTracksThePointer) {
  Window().ToggleFullscreen();
  EXPECT_EQ(State(), kBarHidden);
  EXPECT_TRUE(Tracks());
  EXPECT_FALSE(CountsDown());
}

TEST_F(Fullscreen, PointerEnteringTheTopAreaBringsTheBar) {
  Window().ToggleFullscreen();
  LogCapture log;
  PointerAt(50);
  EXPECT_EQ(State(), kPointerAtTop);
  EXPECT_FALSE(CountsDown());
  EXPECT_EQ(log.Lines().back(), "INFO WM_TIMER: Mouse entered top area (y=50) - showing title bar");
}

TEST_F(Fullscreen, PointerLeavingTheTopAreaStartsTheCountdown) {
  Window().ToggleFullscreen();
  PointerAt(50);
  LogCapture log;
  CallLog calls(Window());
  PointerAt(51);
  EXPECT_EQ(State(), kCountingDown);
  EXPECT_TRUE(CountsDown());
  EXPECT_EQ(calls.Calls(), (Lines{"SetTimer main 1003 3000ms"}));
  EXPECT_EQ(log.Lines(), (Lines{"DEBUG StartTitleBarAutoHideTimer: Started auto-hide timer",
                                "INFO WM_TIMER: Mouse left top area (y=51) - starting auto-hide timer"}));
}

TEST_F(Fullscreen, PointerReturningDuringTheCountdownStopsIt) {
  Window().ToggleFullscreen();
  PointerAt(10);
  PointerAt(100);
  CallLog calls(Window());
  PointerAt(10);
  EXPECT_EQ(State(), kPointerAtTop);
  EXPECT_EQ(calls.Calls(), (Lines{"KillTimer main 1003"}));
  EXPECT_FALSE(CountsDown());
}

TEST_F(Fullscreen, EndOfTheCountdownHidesTheBar) {
  Window().ToggleFullscreen();
  PointerAt(10);
  PointerAt(100);
  Tick(kTitleBarAutoHideTimerId);
  EXPECT_EQ(State(), kBarHidden);
  EXPECT_FALSE(CountsDown());
  EXPECT_TRUE(Tracks());
}

TEST_F(Fullscreen, ToggleLeavesFromEveryFullscreenState) {
  const auto leave = [this] {
    Window().ToggleFullscreen();
    EXPECT_EQ(State(), kNormal);
    EXPECT_FALSE(Tracks());
    EXPECT_FALSE(CountsDown());
    Window().ToggleFullscreen();
  };
  Window().ToggleFullscreen();
  leave();  // the bar is hidden
  PointerAt(10);
  leave();  // the pointer is at the top
  PointerAt(10);
  PointerAt(100);
  leave();  // the hide timer is running
}

TEST_F(Fullscreen, RestartedCountdownReplacesTheRunningOne) {
  Window().ToggleFullscreen();
  Inside(Window()).fullscreen_.StartTitleBarAutoHideTimer();
  CallLog calls(Window());
  Inside(Window()).fullscreen_.StartTitleBarAutoHideTimer();
  EXPECT_EQ(calls.Calls(), (Lines{"KillTimer main 1003", "SetTimer main 1003 3000ms"}));
}

TEST_F(Fullscreen, StoppingWithoutACountdownDoesNothing) {
  LogCapture log;
  CallLog calls(Window());
  Inside(Window()).fullscreen_.StopTitleBarAutoHideTimer();
  EXPECT_TRUE(calls.Calls().empty());
  EXPECT_TRUE(log.Lines().empty());
}

struct CallerLines {
  TopAreaCaller caller;
  const char* entered;
  const char* left;
};
class TopAreaCallers : public Fullscreen, public testing::WithParamInterface<CallerLines> {};

TEST_P(TopAreaCallers, LogTheirOwnTexts) {
  Window().ToggleFullscreen();
  LogCapture log;
  Inside(Window()).fullscreen_.RunTopAreaStep(7, GetParam().caller);
  Inside(Window()).fullscreen_.RunTopAreaStep(77, GetParam().caller);
  EXPECT_TRUE(log.Has(GetParam().entered));
  EXPECT_TRUE(log.Has(GetParam().left));
}

INSTANTIATE_TEST_SUITE_P(
    Fullscreen, TopAreaCallers,
    testing::Values(
        CallerLines{TopAreaCaller::kTrackingTimer, "INFO WM_TIMER: Mouse entered top area (y=7) - showing title bar",
                    "INFO WM_TIMER: Mouse left top area (y=77) - starting auto-hide timer"},
        CallerLines{TopAreaCaller::kMainWindow, "INFO MAIN WINDOW: Mouse entered top area - SHOWING TITLE BAR",
                    "INFO MAIN WINDOW: Mouse left top area - starting auto-hide timer"},
        CallerLines{TopAreaCaller::kOverlay, "INFO OverlayWindowProc: Mouse entered top area - SHOWING TITLE BAR",
                    "INFO OverlayWindowProc: Mouse left top area - starting auto-hide timer"}));

TEST_F(Fullscreen, TogglingTwiceQuicklyLeavesTheBarShownAndNoTimer) {
  Window().ToggleFullscreen();
  Window().ToggleFullscreen();
  EXPECT_EQ(State(), kNormal);
  EXPECT_FALSE(Tracks());
  EXPECT_FALSE(CountsDown());
  EXPECT_TRUE(IsWindowVisible(Inside(Window()).searchBox_));
}

TEST_F(Fullscreen, PointerAtTheTopBringsTheBarBackAtTheNextTick) {
  SetCursorPos(500, 5);
  Window().ToggleFullscreen();
  ASSERT_EQ(State(), kBarHidden);
  EXPECT_TRUE(PumpUntil([this] { return State() == kPointerAtTop; }));
}

TEST_F(Fullscreen, BarComesWithTheRealPointerAndGoesThreeSecondsLater) {
  Window().ToggleFullscreen();
  SetCursorPos(500, 5);
  ASSERT_TRUE(PumpUntil([this] { return State() == kPointerAtTop; }));
  SetCursorPos(500, 400);
  ASSERT_TRUE(PumpUntil([this] { return State() == kCountingDown; }));
  const DWORD began = GetTickCount();
  ASSERT_TRUE(PumpUntil([this] { return State() == kBarHidden; }));
  EXPECT_NEAR(GetTickCount() - began, 3000, 500);
}

TEST_F(Fullscreen, StrayTicksAfterLeavingDoNothing) {
  Window().ToggleFullscreen();
  Window().ToggleFullscreen();
  SetCursorPos(500, OnScreen(0, 5).y);
  CallLog calls(Window());
  Tick(kMouseTrackingTimerId);
  Tick(kTitleBarAutoHideTimerId);
  EXPECT_TRUE(calls.Calls().empty());
  EXPECT_EQ(State(), kNormal);
}

TEST_F(Fullscreen, LeavingDropsAlwaysOnTopWhoseSettingStaysOn) {
  Inside(Window()).commands_.HandleMenuCommand(kAlwaysOnTopCommand);
  Window().ToggleFullscreen();
  CallLog calls(Window());
  Window().ToggleFullscreen();
  EXPECT_TRUE(calls.Of("SetWindowPos").front().starts_with("SetWindowPos main after=HWND_NOTOPMOST "));
  EXPECT_FALSE(GetWindowLongA(Window().hwnd_, GWL_EXSTYLE) & WS_EX_TOPMOST);
  EXPECT_TRUE(Inside(Window()).alwaysOnTop_);
}

TEST_F(Fullscreen, WindowOnNoMonitorOpensOnThePrimaryOne) {
  SetWindowPos(Window().hwnd_, nullptr, 5000, 5000, 800, 500, SWP_NOZORDER);
  Window().ToggleFullscreen();
  EXPECT_RECT(RectOf(Window().hwnd_), 0, 0, monitor_.right, monitor_.bottom);
}

TEST_F(Fullscreen, GlyphOfTheMaximizeButtonShowsTheState) {
  const auto glyphAt = [this](int dx, int dy) {
    RECT area{};
    GetClientRect(Inside(Window()).maximizeButton_, &area);
    UpdateWindow(Inside(Window()).maximizeButton_);
    const HDC dc = GetDC(Inside(Window()).maximizeButton_);
    const COLORREF color = GetPixel(dc, area.right / 2 + dx, area.bottom / 2 + dy);
    ReleaseDC(Inside(Window()).maximizeButton_, dc);
    return color;
  };
  constexpr COLORREF kWhite = RGB(255, 255, 255);
  // The front square of the two has an edge 3 pixels right of the centre, where the single square has none.
  UpdateWindow(Inside(Window()).maximizeButton_);
  EXPECT_NE(glyphAt(3, 0), kWhite);
  Window().ToggleFullscreen();
  PointerAt(10);
  EXPECT_EQ(glyphAt(3, 0), kWhite);
  Window().ToggleFullscreen();
  EXPECT_NE(glyphAt(3, 0), kWhite);
  EXPECT_EQ(glyphAt(5, 0), kWhite);
}

TEST_F(Fullscreen, TogglingADeadWindowIsHarmless) {
  DestroyWindow(Window().hwnd_);
  Window().ToggleFullscreen();
  Window().ToggleFullscreen();
  EXPECT_EQ(State(), kNormal);
}

}  // namespace
}  // namespace vantro
