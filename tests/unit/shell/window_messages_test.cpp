// The main window's messages: their effects, their results, and the focus.
#include "shell/shell_ids.h"
#include "shell/window_manager.h"
#include "tests/support/import_hook.h"
#include "tests/support/interface_end.h"
#include "tests/support/line_states.h"
#include "tests/support/player_inspector.h"
#include "tests/unit/shell/window_fixture.h"

namespace vantro {
namespace {

using test::DrainQueue;
using test::ImportHook;
using test::Inside;
using test::SeenMessage;
using test::WindowRectOf;
using test::operator==;

constexpr WPARAM kKey = 'A';

class MainWindow : public test::WindowTest {
 protected:
  void Open() { window_ = &OpenWindow(); }
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendMessageA(window_->hwnd_, message, wParam, lParam);
  }
  HWND Child() const { return FlutterChild(window_->flutterEngine_); }
  void LoseTheView() { DestroyWindow(Child()); }
  void PointAt(int x, int y) {
    POINT point{x, y};
    ClientToScreen(window_->hwnd_, &point);
    ASSERT_TRUE(SetCursorPos(static_cast<int>(point.x), static_cast<int>(point.y)));
  }
  void PointAtMiddleOf(HWND control) {
    const RECT rect = WindowRectOf(control);
    ASSERT_TRUE(
        SetCursorPos(static_cast<int>(rect.left + rect.right) / 2, static_cast<int>(rect.top + rect.bottom) / 2));
  }

  VantroWindow* window_ = nullptr;
};

TEST_F(MainWindow, CreateDoesNothing) {
  Open();
  const test::LogCapture log;
  // The system reads this structure while it delivers the message, and drops a message without one.
  CREATESTRUCTA create{};
  create.lpszName = create.lpszClass = "";
  EXPECT_EQ(Send(WM_CREATE, 0, reinterpret_cast<LPARAM>(&create)), 0);
  EXPECT_EQ(log.Lines(), std::vector<std::string>{"DEBUG WindowProc: WM_CREATE received"});
  EXPECT_TRUE(EngineOffered(WM_CREATE).empty());
}

TEST_F(MainWindow, DestroyStopsThePlayerAndPostsNoQuit) {
  Open();
  DrainQueue();
  EXPECT_EQ(Send(WM_DESTROY), 0);
  EXPECT_TRUE(log_.Has("INFO Stopping VLC playback for closing window"));
  EXPECT_EQ(DrainQueue(), 0);
}

TEST_F(MainWindow, StopOfAClosingWindowIsReportedToTheInterface) {
  Open();
  test::InterfaceEnd interface(loopback_);
  EXPECT_EQ(Send(WM_DESTROY), 0);
  vlc_.Raise(test::PlayerInspector(*window_->vlcPlayer_).mediaPlayer_.get(), 0x106);
  EXPECT_EQ(interface.Calls(), (std::vector<test::InterfaceCall>{{"onStopped", OwnedValue()}}));
}

TEST_F(MainWindow, SizeOfAnOlderWindowPlacesItsOverlay) {
  Open();
  OpenWindow();
  const HWND overlay = Inside(*window_).flutterHostWindow_;
  MoveWindow(overlay, 1, 2, 3, 4, FALSE);
  Send(WM_SIZE);
  RECT below = test::ClientRectOnScreen(window_->hwnd_);
  below.top += 30;
  EXPECT_TRUE(WindowRectOf(overlay) == below);
}

TEST_F(MainWindow, SizeTakesTheClientAreaNotTheMessagesSize) {
  Open();
  RECT client;
  GetClientRect(window_->hwnd_, &client);
  Inside(*window_).width_ = Inside(*window_).height_ = 0;
  EXPECT_EQ(Send(WM_SIZE, SIZE_RESTORED, MAKELPARAM(111, 222)), 0);
  EXPECT_EQ(Inside(*window_).width_, client.right);
  EXPECT_EQ(Inside(*window_).height_, client.bottom);
}

TEST_F(MainWindow, SizePutsTheVideoBelowTheTitleBarInFullscreenToo) {
  Open();
  for (const bool fullscreen : {false, true}) {
    if (fullscreen) window_->ToggleFullscreen();
    Send(WM_SIZE);
    RECT client;
    GetClientRect(window_->hwnd_, &client);
    RECT video = WindowRectOf(test::PlayerInspector(*window_->vlcPlayer_).vlcWindow_);
    MapWindowPoints(HWND_DESKTOP, window_->hwnd_, reinterpret_cast<POINT*>(&video), 2);
    EXPECT_EQ(video.left, 0);
    EXPECT_EQ(video.top, 30);
    EXPECT_EQ(video.right, client.right);
    EXPECT_EQ(video.bottom, client.bottom);
  }
}

TEST_F(MainWindow, MinimumTrackingSizeIsSetAndTheMaximumLeftAlone) {
  Open();
  MINMAXINFO limits{};
  limits.ptMaxTrackSize = {12345, 6789};
  const test::LineStates states([&] { return std::to_string(limits.ptMinTrackSize.x); });
  EXPECT_EQ(Send(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits)), 0);
  EXPECT_EQ(states.At("DEBUG WM_GETMINMAXINFO: Set minimum window size to 640x360"), "640");
  EXPECT_EQ(limits.ptMinTrackSize.x, 640);
  EXPECT_EQ(limits.ptMinTrackSize.y, 360);
  EXPECT_EQ(limits.ptMaxTrackSize.x, 12345);
  EXPECT_EQ(limits.ptMaxTrackSize.y, 6789);
}

TEST_F(MainWindow, HitTestTakesSignedScreenCoordinates) {
  Open();
  SetWindowPos(window_->hwnd_, nullptr, -200, -100, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  POINT caption{500, 15};
  ClientToScreen(window_->hwnd_, &caption);
  POINT corner{1, 1};
  ClientToScreen(window_->hwnd_, &corner);
  EXPECT_EQ(Send(WM_NCHITTEST, 0, MAKELPARAM(caption.x, caption.y)), HTCAPTION);
  EXPECT_EQ(Send(WM_NCHITTEST, 0, MAKELPARAM(corner.x, corner.y)), HTTOPLEFT);
}

TEST_F(MainWindow, PaintFillsTheTitleBarWithItsColour) {
  Open();
  InvalidateRect(window_->hwnd_, nullptr, TRUE);
  UpdateWindow(window_->hwnd_);
  const HDC dc = GetDC(window_->hwnd_);
  EXPECT_EQ(GetPixel(dc, 500, 15), kTitleBarColor);
  ReleaseDC(window_->hwnd_, dc);
  EXPECT_GT(log_.CountContaining("WM_PAINT: Painting title bar - isFullscreen=0, isTitleBarVisible=1, rect=0,-2 to "),
            0);
}

TEST_F(MainWindow, PaintSkipsTheHiddenTitleBarInFullscreen) {
  Open();
  window_->ToggleFullscreen();
  InvalidateRect(window_->hwnd_, nullptr, TRUE);
  UpdateWindow(window_->hwnd_);
  EXPECT_GT(log_.CountContaining("WM_PAINT: Skipping title bar paint - isFullscreen=1, isTitleBarVisible=0"), 0);
}

HDC WINAPI NoWindowDC(HWND) { return nullptr; }

TEST_F(MainWindow, FramePaintGivesUpWithoutADeviceContext) {
  Open();
  const ImportHook hook("user32.dll", "GetWindowDC", NoWindowDC);
  EXPECT_EQ(Send(WM_NCPAINT, 1), 0);
  EXPECT_TRUE(EngineOffered(WM_NCPAINT).empty());
}

class ControlColour : public MainWindow, public testing::WithParamInterface<UINT> {};

TEST_P(ControlColour, IsWhiteOnTheTitleBarsColour) {
  Open();
  const HDC dc = GetDC(nullptr);
  EXPECT_EQ(Send(GetParam(), reinterpret_cast<WPARAM>(dc)), reinterpret_cast<LRESULT>(Inside(*window_).titleBarBrush_));
  EXPECT_EQ(GetTextColor(dc), 0xFFFFFFu);
  EXPECT_EQ(GetBkColor(dc), 6243910u);
  ReleaseDC(nullptr, dc);
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, ControlColour,
                         testing::Values(WM_CTLCOLOREDIT, WM_CTLCOLORBTN, WM_CTLCOLORSTATIC));

// Default handling.

TEST_F(MainWindow, UnservedMessageIsOfferedToTheEngineFirst) {
  Open();
  loopback_.SetTopLevelResult(WM_APP + 7, true, 42);
  EXPECT_EQ(Send(WM_APP + 7, 3), 42);
  EXPECT_EQ(EngineOffered(WM_APP + 7), (std::vector<SeenMessage>{{window_->hwnd_, WM_APP + 7, 3}}));
}

TEST_F(MainWindow, EraseActivationAndSizeCalculationGetTheDefaultHandling) {
  Open();
  for (const UINT message : {WM_ACTIVATE, WM_NCCALCSIZE, WM_ERASEBKGND}) {
    loopback_.SetTopLevelResult(message, true, 42);
    EXPECT_EQ(Send(message), 42) << message;
  }
}

class UnofferedMouse : public MainWindow, public testing::WithParamInterface<UINT> {};

TEST_P(UnofferedMouse, GoesStraightToTheSystem) {
  Open();
  Forget();
  Send(GetParam());
  DrainQueue();
  EXPECT_TRUE(EngineOffered(GetParam()).empty());
  EXPECT_TRUE(ViewSaw(GetParam()).empty());
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, UnofferedMouse,
                         testing::Values(WM_LBUTTONDBLCLK, WM_RBUTTONDOWN, WM_RBUTTONDBLCLK, WM_MBUTTONDOWN,
                                         WM_MBUTTONDBLCLK, WM_MOUSEWHEEL));

// Key down.

TEST_F(MainWindow, F11AndEscapeAreCaught) {
  Open();
  EXPECT_EQ(Send(WM_KEYDOWN, VK_F11), 0);
  EXPECT_TRUE(Inside(*window_).isFullscreen_);
  EXPECT_EQ(Send(WM_KEYDOWN, VK_ESCAPE), 0);
  EXPECT_FALSE(Inside(*window_).isFullscreen_);
  EXPECT_TRUE(EngineOffered(WM_KEYDOWN).empty());
}

TEST_F(MainWindow, EscapeOutsideFullscreenIsAKeyLikeOthers) {
  Open();
  loopback_.SetTopLevelResult(WM_KEYDOWN, true, 6);
  EXPECT_EQ(Send(WM_KEYDOWN, VK_ESCAPE), 6);
}

TEST_F(MainWindow, KeyIsOfferedWithTheViewsHandleAndLeavesTheFocus) {
  Open();
  SetFocus(window_->hwnd_);
  loopback_.SetTopLevelResult(WM_KEYDOWN, true, 21);
  EXPECT_EQ(Send(WM_KEYDOWN, kKey), 21);
  EXPECT_EQ(EngineOffered(WM_KEYDOWN), (std::vector<SeenMessage>{{Child(), WM_KEYDOWN, kKey}}));
  EXPECT_EQ(GetFocus(), window_->hwnd_);
}

TEST_F(MainWindow, UntakenKeyIsSentToTheViewAndItsResultCounts) {
  Open();
  AnswerInView(WM_KEYDOWN, 13);
  EXPECT_EQ(Send(WM_KEYDOWN, kKey), 13);
  EXPECT_EQ(ViewSaw(WM_KEYDOWN), (std::vector<SeenMessage>{{Child(), WM_KEYDOWN, kKey}}));
  EXPECT_EQ(log_.CountContaining("Trying Flutter overlay window as fallback"), 0);
}

TEST_F(MainWindow, KeyThatTheViewLeavesAtZeroGoesThroughTheOverlay) {
  Open();
  SetFocus(window_->hwnd_);
  EXPECT_EQ(Send(WM_KEYDOWN, kKey), 1);
  EXPECT_EQ(
      EngineOffered(WM_KEYDOWN),
      (std::vector<SeenMessage>{{Child(), WM_KEYDOWN, kKey}, {Inside(*window_).flutterHostWindow_, WM_KEYDOWN, kKey}}));
  EXPECT_EQ(GetFocus(), Child()) << "the overlay's rule";
  DrainQueue();
  EXPECT_EQ(ViewSaw(WM_KEYDOWN).size(), 2u) << "sent by the window, posted by the overlay";
}

TEST_F(MainWindow, KeyWithoutAnOverlayEndsWithZero) {
  Open();
  const HWND dead = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
  DestroyWindow(dead);
  const HWND overlay = Inside(*window_).flutterHostWindow_;
  for (const HWND missing : {HWND{nullptr}, dead}) {
    Inside(*window_).flutterHostWindow_ = missing;
    EXPECT_EQ(Send(WM_KEYDOWN, kKey), 0);
    EXPECT_EQ(ViewSaw(WM_KEYDOWN).size(), 1u);
    Forget();
  }
  Inside(*window_).flutterHostWindow_ = overlay;
  EXPECT_EQ(log_.CountContaining("Trying Flutter overlay window as fallback"), 0);
}

TEST_F(MainWindow, KeyWithoutAnEngineIsSwallowed) {
  Open();
  auto engine = std::move(window_->flutterEngine_);
  EXPECT_EQ(Send(WM_KEYDOWN, kKey), 0);
  EXPECT_TRUE(log_.Has("ERROR MainWindow: flutterEngine_ is NULL - cannot forward keyboard events!"));
  window_->flutterEngine_ = std::move(engine);
}

TEST_F(MainWindow, KeyWithADeadOrMissingViewIsSwallowed) {
  Open();
  LoseTheView();
  EXPECT_EQ(Send(WM_KEYDOWN, kKey), 0);
  EXPECT_EQ(log_.CountContaining("ERROR MainWindow: Invalid Flutter window - flutterWindow="), 1);
  EXPECT_EQ(log_.CountContaining(", IsWindow=false"), 1);
  window_->flutterEngine_->flutterWindow_ = nullptr;
  EXPECT_EQ(Send(WM_KEYDOWN, kKey), 0);
  EXPECT_EQ(log_.CountContaining(", IsWindow=null"), 1);
}

// The other keys.

class OtherKey : public MainWindow, public testing::WithParamInterface<UINT> {};

TEST_P(OtherKey, IsOfferedWithTheViewsHandle) {
  Open();
  loopback_.SetTopLevelResult(GetParam(), true, 8);
  EXPECT_EQ(Send(GetParam(), kKey), 8);
  EXPECT_EQ(EngineOffered(GetParam()), (std::vector<SeenMessage>{{Child(), GetParam(), kKey}}));
}

TEST_P(OtherKey, UntakenIsSentToTheViewAndNoFurther) {
  Open();
  EXPECT_EQ(Send(GetParam(), kKey), 0);
  EXPECT_EQ(ViewSaw(GetParam()), (std::vector<SeenMessage>{{Child(), GetParam(), kKey}}));
  EXPECT_EQ(EngineOffered(GetParam()).size(), 1u) << "the overlay would have offered it again";
}

TEST_P(OtherKey, WithoutAViewNeverReachesTheSystem) {
  Open();
  LoseTheView();
  EXPECT_EQ(Send(GetParam(), VK_MENU), 0);
  EXPECT_EQ(log_.CountContaining("ERROR MainWindow: Invalid Flutter window for message "), 1);
}

TEST_P(OtherKey, WithoutAnEngineIsSwallowed) {
  Open();
  auto engine = std::move(window_->flutterEngine_);
  EXPECT_EQ(Send(GetParam(), kKey), 0);
  EXPECT_EQ(log_.CountContaining("ERROR MainWindow: flutterEngine_ is NULL - cannot forward keyboard message "), 1);
  window_->flutterEngine_ = std::move(engine);
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, OtherKey, testing::Values(WM_KEYUP, WM_CHAR, WM_SYSKEYDOWN, WM_SYSKEYUP));

// Commands and the focus.

TEST_F(MainWindow, CommandRedirectsTheFocusToTheView) {
  Open();
  SetFocus(Inside(*window_).fileButton_);
  EXPECT_EQ(Send(WM_COMMAND, MAKEWPARAM(4242, 0)), 0);
  EXPECT_EQ(GetFocus(), Child());
}

TEST_F(MainWindow, CommandLeavesTheFocusOfTheSearchBox) {
  Open();
  SetFocus(Inside(*window_).searchBox_);
  DrainQueue();
  SetFocus(Inside(*window_).searchBox_);
  EXPECT_EQ(Send(WM_COMMAND, MAKEWPARAM(4242, 0)), 0);
  EXPECT_EQ(GetFocus(), Inside(*window_).searchBox_);
}

TEST_F(MainWindow, FocusTakenFromTheSearchBoxGoesToTheView) {
  Open();
  SetFocus(Inside(*window_).searchBox_);
  SetFocus(Inside(*window_).helpButton_);
  EXPECT_EQ(GetFocus(), Child()) << "whatever takes the focus from the box loses it";
}

TEST_F(MainWindow, ChangedTextLeavesTheFocusAndStartsTheTimer) {
  Open();
  SetFocus(Inside(*window_).fileButton_);
  EXPECT_EQ(Send(WM_COMMAND, MAKEWPARAM(kSearchBoxId, EN_CHANGE)), 0);
  EXPECT_EQ(GetFocus(), Inside(*window_).fileButton_);
  EXPECT_NE(Inside(*window_).searchDebounceTimer_, 0u);
}

TEST_F(MainWindow, PlainNotificationOfTheSearchBoxIsAnUnknownCommand) {
  Open();
  const test::LogCapture capture;
  EXPECT_EQ(Send(WM_COMMAND, MAKEWPARAM(kSearchBoxId, 0)), 0);
  EXPECT_EQ(Inside(*window_).searchDebounceTimer_, 0u);
  EXPECT_TRUE(capture.Has("DEBUG HandleMenuCommand: Unknown command 104"));
}

TEST_F(MainWindow, MovingWhileTypingTakesTheFocusAndKeepsTextAndTimer) {
  Open();
  SetFocus(Inside(*window_).searchBox_);
  SetWindowTextW(Inside(*window_).searchBox_, L"news");
  ASSERT_NE(Inside(*window_).searchDebounceTimer_, 0u);
  SetWindowPos(window_->hwnd_, nullptr, 77, 66, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  wchar_t text[16];
  GetWindowTextW(Inside(*window_).searchBox_, text, 16);
  EXPECT_STREQ(text, L"news");
  EXPECT_EQ(GetFocus(), Child());
  EXPECT_NE(Inside(*window_).searchDebounceTimer_, 0u);
}

TEST_F(MainWindow, TypingRestartsTheWaitAndOnlyTheLastTextIsSent) {
  Open();
  test::InterfaceEnd interface(loopback_);
  SetWindowTextW(Inside(*window_).searchBox_, L"n");
  SetWindowTextW(Inside(*window_).searchBox_, L"ne");
  SetWindowTextW(Inside(*window_).searchBox_, L"news");
  EXPECT_EQ(log_.CountContaining("HandleSearchInput: Debounce timer set (500ms)"), 3);
  ASSERT_TRUE(test::PumpUntil([&] { return !interface.Calls().empty(); }));
  EXPECT_EQ(interface.Calls(), (std::vector<test::InterfaceCall>{{"search_query_changed", OwnedValue("news")}}));
  EXPECT_EQ(Inside(*window_).searchDebounceTimer_, 0u);
}

TEST_F(MainWindow, ClearedSearchBoxSendsNoArgument) {
  Open();
  test::InterfaceEnd interface(loopback_);
  SetWindowTextW(Inside(*window_).searchBox_, L"");
  Send(WM_TIMER, kSearchDebounceTimerId);
  EXPECT_EQ(interface.Calls(), (std::vector<test::InterfaceCall>{{"search_query_changed", OwnedValue()}}));
}

// Timers.

TEST_F(MainWindow, StrayTicksOutsideFullscreenDoNothingAndKillNothing) {
  Open();
  SetTimer(window_->hwnd_, kMouseTrackingTimerId, 60000, nullptr);
  SetTimer(window_->hwnd_, kTitleBarAutoHideTimerId, 60000, nullptr);
  EXPECT_EQ(Send(WM_TIMER, kMouseTrackingTimerId), 0);
  EXPECT_EQ(Send(WM_TIMER, kTitleBarAutoHideTimerId), 0);
  EXPECT_TRUE(Inside(*window_).isTitleBarVisible_);
  EXPECT_EQ(log_.CountContaining("WM_TIMER: Title bar auto-hide timer fired"), 0);
  EXPECT_TRUE(KillTimer(window_->hwnd_, kMouseTrackingTimerId));
  EXPECT_TRUE(KillTimer(window_->hwnd_, kTitleBarAutoHideTimerId));
}

TEST_F(MainWindow, AutoHideTickHidesTheTitleBarInFullscreen) {
  Open();
  window_->ToggleFullscreen();
  Inside(*window_).fullscreen_.ShowTitleBarControls();
  Send(WM_TIMER, kTitleBarAutoHideTimerId);
  EXPECT_FALSE(Inside(*window_).isTitleBarVisible_);
}

TEST_F(MainWindow, TrackingTickAtTheTopShowsTheTitleBarInFullscreen) {
  Open();
  window_->ToggleFullscreen();
  PointAt(300, 5);
  Send(WM_TIMER, kMouseTrackingTimerId);
  EXPECT_TRUE(Inside(*window_).isTitleBarVisible_);
  EXPECT_TRUE(log_.Has("INFO WM_TIMER: Mouse entered top area (y=5) - showing title bar"));
}

// The mouse.

TEST_F(MainWindow, MouseMoveAtTheTopInFullscreenShowsTheTitleBar) {
  Open();
  window_->ToggleFullscreen();
  PointAt(300, 7);
  Send(WM_MOUSEMOVE);
  EXPECT_TRUE(Inside(*window_).isTitleBarVisible_);
  EXPECT_TRUE(log_.Has("DEBUG MAIN WINDOW WM_MOUSEMOVE in fullscreen: pt.y=7, isNowInTopArea=1"));
}

TEST_F(MainWindow, PressOnTheVolumeControlDragsUntilTheRelease) {
  Open();
  PointAtMiddleOf(Inside(*window_).volumeControl_);
  EXPECT_EQ(Send(WM_LBUTTONDOWN), 0);
  EXPECT_TRUE(Inside(*window_).isVolumeDragging_);
  EXPECT_TRUE(Inside(*window_).showVolumePercent_);
  EXPECT_EQ(GetCapture(), window_->hwnd_);
  const RECT slider = WindowRectOf(Inside(*window_).volumeControl_);
  SetCursorPos(static_cast<int>(slider.left) - 300, static_cast<int>(slider.top));
  EXPECT_EQ(Send(WM_MOUSEMOVE), 0);
  EXPECT_EQ(Inside(*window_).volume_, 0);
  Send(WM_LBUTTONUP);
  EXPECT_FALSE(Inside(*window_).isVolumeDragging_);
  EXPECT_FALSE(Inside(*window_).showVolumePercent_);
  EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(MainWindow, PressOnTheVolumeControlsFarEdgeIsFoundByHand) {
  Open();
  const RECT slider = WindowRectOf(Inside(*window_).volumeControl_);
  SetCursorPos(static_cast<int>(slider.right), static_cast<int>(slider.bottom));
  EXPECT_EQ(Send(WM_LBUTTONDOWN), 0);
  EXPECT_TRUE(Inside(*window_).isVolumeDragging_);
  EXPECT_EQ(log_.CountContaining("WM_LBUTTONDOWN: Manual volume control hit test succeeded at ("), 1);
  Send(WM_LBUTTONUP);
}

TEST_F(MainWindow, PressOnTheSearchBoxIsNoted) {
  Open();
  PointAtMiddleOf(Inside(*window_).searchBox_);
  Send(WM_LBUTTONDOWN);
  EXPECT_TRUE(Inside(*window_).searchBoxClicked_);
  PointAt(500, 15);
  Send(WM_LBUTTONDOWN);
  EXPECT_FALSE(Inside(*window_).searchBoxClicked_);
}

class ButtonUp : public MainWindow, public testing::WithParamInterface<UINT> {};

TEST_P(ButtonUp, OutsideTheControlsTakesTheFocusToTheView) {
  Open();
  SetFocus(Inside(*window_).fileButton_);
  PointAt(500, 15);
  Send(GetParam());
  EXPECT_EQ(GetFocus(), Child());
}

TEST_P(ButtonUp, OverTheSearchBoxOrTheVolumeControlLeavesTheFocus) {
  Open();
  for (const HWND control : {Inside(*window_).searchBox_, Inside(*window_).volumeControl_}) {
    SetFocus(Inside(*window_).fileButton_);
    PointAtMiddleOf(control);
    Send(GetParam());
    EXPECT_EQ(GetFocus(), Inside(*window_).fileButton_);
  }
  EXPECT_EQ(log_.CountContaining("MainWindow: Mouse up on search box - maintaining focus on search"), 2);
}

TEST_P(ButtonUp, WhileTheSearchBoxHasTheFocusLeavesIt) {
  Open();
  SetFocus(Inside(*window_).searchBox_);
  DrainQueue();
  SetFocus(Inside(*window_).searchBox_);
  PointAt(500, 15);
  Send(GetParam());
  EXPECT_EQ(GetFocus(), Inside(*window_).searchBox_);
}

INSTANTIATE_TEST_SUITE_P(OfEachButton, ButtonUp, testing::Values(WM_LBUTTONUP, WM_RBUTTONUP, WM_MBUTTONUP));

TEST_F(MainWindow, NewWindowRequestOpensOneMoreWindow) {
  Open();
  constexpr UINT kPostedByASecondLaunch = 1025;  // of any version
  EXPECT_EQ(Send(kPostedByASecondLaunch), 0);
  EXPECT_EQ(GetWindowRegistry().size(), 2u);
  EXPECT_TRUE(log_.Has("INFO Current window count before: 1"));
  EXPECT_TRUE(log_.Has("INFO Current window count after: 2"));
}

}  // namespace
}  // namespace vantro
