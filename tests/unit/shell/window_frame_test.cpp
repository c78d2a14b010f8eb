// The main window's frame, the notifications of its controls, and the mouse buttons that a drag of the volume ignores.
#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

#include "shell/shell_ids.h"
#include "tests/support/import_hook.h"
#include "tests/support/player_inspector.h"
#include "tests/unit/shell/window_fixture.h"

namespace vantro {
namespace {

using test::ImportHook;
using test::Inside;
using test::WindowRectOf;

class MainWindowMessages : public test::WindowTest {
 protected:
  MainWindowMessages() : window_(OpenWindow()) {}
  LRESULT Send(UINT message, WPARAM wParam = 0) { return SendMessageA(window_.hwnd_, message, wParam, 0); }

  VantroWindow& window_;
};

// The frame.

RECT filled{};
HBRUSH filledWith = nullptr;
int fills = 0;
int WINAPI OnFillRect(HDC, const RECT* rect, HBRUSH brush) {
  filled = *rect;
  filledWith = brush;
  return ++fills;
}
int defaultPaintings = 0;
LRESULT WINAPI OnDefault(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCPAINT) ++defaultPaintings;
  return DefWindowProcW(window, message, wParam, lParam);
}

TEST_F(MainWindowMessages, FramePaintFillsAStripOfThreePixelsAndNothingElse) {
  const ImportHook fill("user32.dll", "FillRect", OnFillRect);
  const ImportHook rest("user32.dll", "DefWindowProcA", OnDefault);
  SetWindowPos(window_.hwnd_, nullptr, 50, 60, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  fills = defaultPaintings = 0;
  EXPECT_EQ(Send(WM_NCPAINT, 1), 0);
  const RECT outer = WindowRectOf(window_.hwnd_);
  EXPECT_EQ(fills, 1);
  EXPECT_EQ(filled.left, 0);
  EXPECT_EQ(filled.top, 0);
  EXPECT_EQ(filled.right, outer.right - outer.left);
  EXPECT_EQ(filled.bottom, 3);
  EXPECT_EQ(filledWith, Inside(window_).titleBarBrush_);
  EXPECT_EQ(defaultPaintings, 0);
}

HDC WINAPI NoDeviceContext(HWND) { return nullptr; }

TEST_F(MainWindowMessages, WithoutADeviceContextTheBarIsNotReportedAsPainted) {
  window_.ToggleFullscreen();
  Inside(window_).fullscreen_.ShowTitleBarControls();
  EXPECT_EQ(log_.CountContaining("Painted title bar background directly"), 1);
  Inside(window_).fullscreen_.HideTitleBarControls();
  const ImportHook context("user32.dll", "GetDC", NoDeviceContext);
  Inside(window_).fullscreen_.ShowTitleBarControls();
  EXPECT_EQ(log_.CountContaining("Painted title bar background directly"), 1);
}

// Messages that are left to the system.

struct LeftToTheSystem {
  HWND window;
  UINT message;
  WPARAM wParam;
  LPARAM lParam;

  bool operator==(const LeftToTheSystem&) const = default;
};

std::vector<LeftToTheSystem> leftToTheSystem;
LRESULT WINAPI Record(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  leftToTheSystem.push_back({window, message, wParam, lParam});
  return 77;
}

TEST_F(MainWindowMessages, TheSystemReceivesAMessageWithItsArgumentsAndGivesTheResult) {
  constexpr WPARAM kFirst = MK_CONTROL;
  constexpr LPARAM kSecond = MAKELPARAM(300, 200);
  const ImportHook rest("user32.dll", "DefWindowProcA", Record);
  for (const UINT message : {WM_SETFOCUS, WM_KILLFOCUS, WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_LBUTTONUP, WM_RBUTTONUP,
                             WM_MBUTTONUP, WM_LBUTTONDBLCLK, WM_RBUTTONDOWN, WM_RBUTTONDBLCLK, WM_MBUTTONDOWN,
                             WM_MBUTTONDBLCLK, WM_MOUSEWHEEL, WM_CLOSE, WM_APP + 77}) {
    leftToTheSystem.clear();
    EXPECT_EQ(SendMessageA(window_.hwnd_, message, kFirst, kSecond), 77) << message;
    const LeftToTheSystem expected{window_.hwnd_, message, kFirst, kSecond};
    EXPECT_NE(std::find(leftToTheSystem.begin(), leftToTheSystem.end(), expected), leftToTheSystem.end()) << message;
  }
}

TEST_F(MainWindowMessages, TheOverlayLeavesOtherMessagesToTheSystemWithTheirArguments) {
  const HWND overlay = Inside(window_).flutterHostWindow_;
  const ImportHook rest("user32.dll", "DefWindowProcA", Record);
  leftToTheSystem.clear();
  EXPECT_EQ(SendMessageA(overlay, WM_APP + 77, 5, 9), 77);
  EXPECT_THAT(leftToTheSystem, testing::ElementsAre(LeftToTheSystem{overlay, WM_APP + 77, 5, 9}));
}

TEST_F(MainWindowMessages, AClickOnTheSearchBoxIsLeftToTheSystemWithItsArguments) {
  const RECT box = WindowRectOf(Inside(window_).searchBox_);
  SetCursorPos(static_cast<int>(box.left + box.right) / 2, static_cast<int>(box.top + box.bottom) / 2);
  const ImportHook rest("user32.dll", "DefWindowProcA", Record);
  leftToTheSystem.clear();
  EXPECT_EQ(SendMessageA(window_.hwnd_, WM_LBUTTONDOWN, MK_LBUTTON, 9), 77);
  EXPECT_THAT(leftToTheSystem, testing::Contains(LeftToTheSystem{window_.hwnd_, WM_LBUTTONDOWN, MK_LBUTTON, 9}));
}

// Results.

TEST_F(MainWindowMessages, AMessageThatIsHandledReturns0) {
  MINMAXINFO limits{};
  struct Row {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
  };
  const ImportHook rest("user32.dll", "DefWindowProcA", Record);
  for (const Row& row :
       {Row{WM_CREATE, 0, 0}, Row{WM_MOVE, 0, 0}, Row{WM_SIZE, SIZE_RESTORED, MAKELPARAM(800, 600)},
        Row{WM_PAINT, 0, 0}, Row{WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits)}, Row{WM_NCPAINT, 1, 0},
        Row{WM_COMMAND, 4242, 0}, Row{WM_TIMER, 4242, 0}, Row{WM_VANTRO_NEW_WINDOW, 0, 0}, Row{WM_DESTROY, 0, 0}}) {
    EXPECT_EQ(SendMessageA(window_.hwnd_, row.message, row.wParam, row.lParam), 0) << row.message;
  }
}

// The timers of the player.

TEST_F(MainWindowMessages, TheWatchdogsTimerRunsACheckAndReturns0) {
  libvlc_media_player_t* const player = test::PlayerInspector(*window_.vlcPlayer_).mediaPlayer_.get();
  ASSERT_NE(player, nullptr);
  ASSERT_TRUE(window_.vlcPlayer_->SetMedia({"http://host/0", "Title", 1500, 0, true, false, false}));
  vlc_.SetPlaying(player, true);
  window_.vlcPlayer_->StartStallWatchdog();
  vlc_.ClearCalls();
  EXPECT_EQ(Send(WM_TIMER, reinterpret_cast<WPARAM>(window_.vlcPlayer_.get())), 0);
  EXPECT_GT(vlc_.CountOf("libvlc_media_player_is_playing"), 0);
}

TEST_F(MainWindowMessages, TheTimerOfAResumeResumesThePlayerAndReturns0) {
  test::PlayerInspector state(*window_.vlcPlayer_);
  state.NudgePlayer(state.mediaPlayer_.get());
  ASSERT_EQ(state.nudgeTimers_.size(), 1u);
  vlc_.ClearCalls();
  EXPECT_EQ(Send(WM_TIMER, state.nudgeTimers_.begin()->first), 0);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 1);
  EXPECT_TRUE(state.nudgeTimers_.empty());
}

TEST_F(MainWindowMessages, AControlThatIsDrawnReturnsTrue) {
  const HDC dc = GetDC(window_.hwnd_);
  DRAWITEMSTRUCT item{};
  item.CtlType = ODT_BUTTON;
  item.CtlID = kHelpButtonId;
  item.hDC = dc;
  item.rcItem = {0, 0, 35, 20};
  EXPECT_EQ(SendMessageA(window_.hwnd_, WM_DRAWITEM, kHelpButtonId, reinterpret_cast<LPARAM>(&item)), TRUE);
  ReleaseDC(window_.hwnd_, dc);
}

// Notifications.

BOOL WINAPI RefuseMenu(HMENU, UINT, int, int, int, HWND, const RECT*) { return FALSE; }

TEST_F(MainWindowMessages, OtherNotificationsReachTheMenuCommandsAndOpenNoMenu) {
  const ImportHook menu("user32.dll", "TrackPopupMenu", RefuseMenu);
  const test::LogCapture log;
  Send(WM_COMMAND, MAKEWPARAM(kFileButtonId, BN_SETFOCUS));
  Send(WM_COMMAND, MAKEWPARAM(kHelpButtonId, BN_KILLFOCUS));
  Send(WM_COMMAND, MAKEWPARAM(kSearchBoxId, EN_UPDATE));
  Send(WM_COMMAND, MAKEWPARAM(4242, EN_CHANGE));
  for (const char* id : {"40010", "40011", "104", "4242"}) {
    EXPECT_TRUE(log.Has(std::string("DEBUG HandleMenuCommand: Unknown command ") + id)) << id;
  }
  EXPECT_EQ(log.CountContaining("popup menu"), 0);
}

TEST_F(MainWindowMessages, AnyNotificationOfTheMinimizeButtonMinimizes) {
  Send(WM_COMMAND, MAKEWPARAM(kMinimizeButtonId, BN_DOUBLECLICKED));
  EXPECT_TRUE(IsIconic(window_.hwnd_));
}

// The drag.

TEST_F(MainWindowMessages, OnlyTheLeftButtonEndsADragOfTheVolume) {
  const RECT slider = WindowRectOf(Inside(window_).volumeControl_);
  SetCursorPos(static_cast<int>(slider.left + slider.right) / 2, static_cast<int>(slider.top + slider.bottom) / 2);
  Send(WM_LBUTTONDOWN);
  ASSERT_TRUE(Inside(window_).isVolumeDragging_);
  for (const UINT button : {WM_RBUTTONUP, WM_MBUTTONUP}) {
    Send(button);
    EXPECT_TRUE(Inside(window_).isVolumeDragging_) << button;
    EXPECT_TRUE(Inside(window_).showVolumePercent_) << button;
    EXPECT_EQ(GetCapture(), window_.hwnd_) << button;
  }
  Send(WM_LBUTTONUP);
  EXPECT_FALSE(Inside(window_).isVolumeDragging_);
}

}  // namespace
}  // namespace vantro
