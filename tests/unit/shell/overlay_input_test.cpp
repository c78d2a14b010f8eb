// How the overlay handles each kind of input: the messages for the engine and for the view, the focus, and the result.
#include "shell/overlay_input.h"

#include "shell/input_state.h"
#include "shell/window_manager.h"
#include "tests/support/import_hook.h"
#include "tests/unit/shell/window_fixture.h"

namespace vantro {
namespace {

using test::DrainQueue;
using test::ImportHook;
using test::Inside;
using test::SeenMessage;

constexpr WPARAM kKey = 'A';

// The mouse button that is down, which the test sets.
int heldButton = 0;
SHORT WINAPI SaidKeyState(int key) { return key == heldButton ? -1 : 0; }

class OverlayInput : public test::WindowTest {
 protected:
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendMessageA(Inside(*window_).flutterHostWindow_, message, wParam, lParam);
  }
  void Open() { window_ = &OpenWindow(); }
  HWND Child() const { return FlutterChild(window_->flutterEngine_); }
  // Destroys the view's window, as if the engine had lost it.
  void LoseTheView() { DestroyWindow(Child()); }

  VantroWindow* window_ = nullptr;
};

TEST_F(OverlayInput, CloseHidesItOnly) {
  Open();
  EXPECT_EQ(Send(WM_CLOSE), 0);
  EXPECT_TRUE(IsWindow(Inside(*window_).flutterHostWindow_));
  EXPECT_FALSE(IsWindowVisible(Inside(*window_).flutterHostWindow_));
}

TEST_F(OverlayInput, EveryPointIsClient) {
  Open();
  EXPECT_EQ(Send(WM_NCHITTEST, 0, MAKELPARAM(0, 0)), HTCLIENT);
  EXPECT_EQ(Send(WM_NCHITTEST, 0, MAKELPARAM(-500, 3000)), HTCLIENT);
}

TEST_F(OverlayInput, DestroyPostsNoQuit) {
  Open();
  DrainQueue();
  EXPECT_EQ(OverlayWindowProc(Inside(*window_).flutterHostWindow_, WM_DESTROY, 0, 0), 0);
  EXPECT_EQ(DrainQueue(), 0);
}

TEST_F(OverlayInput, ExtraButtonsGetTheDefaultHandling) {
  Open();
  for (const UINT message : {WM_XBUTTONDOWN, WM_XBUTTONUP, WM_XBUTTONDBLCLK}) {
    Send(message, MAKEWPARAM(0, XBUTTON1));
    DrainQueue();
    EXPECT_TRUE(EngineOffered(message).empty()) << message;
    EXPECT_TRUE(ViewSaw(message).empty()) << message;
  }
}

LRESULT WINAPI DefaultResult(HWND, UINT, WPARAM, LPARAM) { return 4711; }

TEST_F(OverlayInput, InputWithoutANewestWindowOrItsEngineGetsTheDefaultHandling) {
  Open();
  const HWND overlay = Inside(*window_).flutterHostWindow_;
  auto engine = std::move(window_->flutterEngine_);
  const ImportHook hook("user32.dll", "DefWindowProcA", DefaultResult);
  for (const UINT message : {WM_KEYDOWN, WM_KEYUP, WM_MOUSEMOVE, WM_MOUSEWHEEL}) {
    VantroWindow::instance_ = window_;
    EXPECT_EQ(OverlayWindowProc(overlay, message, kKey, 0), 4711) << message << " without an engine";
    VantroWindow::instance_ = nullptr;
    EXPECT_EQ(OverlayWindowProc(overlay, message, kKey, 0), 4711) << message << " without a window";
  }
  VantroWindow::instance_ = window_;
  window_->flutterEngine_ = std::move(engine);
}

// Key down.

TEST_F(OverlayInput, F11TogglesFullscreen) {
  Open();
  EXPECT_EQ(Send(WM_KEYDOWN, VK_F11), 0);
  EXPECT_TRUE(Inside(*window_).isFullscreen_);
  EXPECT_EQ(Send(WM_KEYDOWN, VK_F11), 0);
  EXPECT_FALSE(Inside(*window_).isFullscreen_);
  EXPECT_TRUE(EngineOffered(WM_KEYDOWN).empty());
}

TEST_F(OverlayInput, EscapeLeavesFullscreen) {
  Open();
  window_->ToggleFullscreen();
  EXPECT_EQ(Send(WM_KEYDOWN, VK_ESCAPE), 0);
  EXPECT_FALSE(Inside(*window_).isFullscreen_);
  EXPECT_EQ(log_.CountContaining("OverlayWindowProc: Escape pressed in fullscreen - exiting"), 1);
}

TEST_F(OverlayInput, EscapeOutsideFullscreenGoesToFlutterLikeOtherKeys) {
  Open();
  EXPECT_EQ(Send(WM_KEYDOWN, VK_ESCAPE), 1);
  DrainQueue();
  EXPECT_FALSE(Inside(*window_).isFullscreen_);
  EXPECT_EQ(EngineOffered(WM_KEYDOWN),
            (std::vector<SeenMessage>{{Inside(*window_).flutterHostWindow_, WM_KEYDOWN, VK_ESCAPE}}));
  EXPECT_EQ(ViewSaw(WM_KEYDOWN), (std::vector<SeenMessage>{{Child(), WM_KEYDOWN, VK_ESCAPE}}));
}

TEST_F(OverlayInput, KeyThatTheEngineTakesReturnsItsResultAndGoesNoFurther) {
  Open();
  loopback_.SetTopLevelResult(WM_KEYDOWN, true, 77);
  EXPECT_EQ(Send(WM_KEYDOWN, kKey), 77);
  DrainQueue();
  EXPECT_TRUE(ViewSaw(WM_KEYDOWN).empty());
}

TEST_F(OverlayInput, KeyThatTheEngineLeavesTakesTheFocusAlongToTheView) {
  Open();
  SetFocus(Inside(*window_).searchBox_);
  EXPECT_EQ(Send(WM_KEYDOWN, kKey), 1);
  EXPECT_EQ(GetFocus(), Child());
  EXPECT_TRUE(ViewSaw(WM_KEYDOWN).empty()) << "posted, not sent";
  DrainQueue();
  EXPECT_EQ(ViewSaw(WM_KEYDOWN), (std::vector<SeenMessage>{{Child(), WM_KEYDOWN, kKey}}));
}

TEST_F(OverlayInput, KeyWithNoViewAvailableReturnsOneAndIsLost) {
  Open();
  LoseTheView();
  EXPECT_EQ(Send(WM_KEYDOWN, kKey), 1);
  DrainQueue();
  EXPECT_TRUE(ViewSaw(WM_KEYDOWN).empty());
  EXPECT_TRUE(log_.Has("DEBUG OverlayWindowProc: Overlay processed keydown"));
}

TEST_F(OverlayInput, KeyWithoutAnEngineGetsTheDefaultHandling) {
  Open();
  auto engine = std::move(window_->flutterEngine_);
  EXPECT_EQ(Send(WM_KEYDOWN, kKey), 0);
  EXPECT_TRUE(EngineOffered(WM_KEYDOWN).empty());
  EXPECT_EQ(log_.CountContaining("OverlayWindowProc: Handling keydown"), 0);
  window_->flutterEngine_ = std::move(engine);
}

// Key up, characters, buttons.

class OverlayInputMessage : public OverlayInput, public testing::WithParamInterface<UINT> {};

TEST_P(OverlayInputMessage, IsOfferedToTheEngineThenPostedToTheView) {
  Open();
  const UINT message = GetParam();
  EXPECT_EQ(Send(message, kKey), 1);
  EXPECT_EQ(EngineOffered(message), (std::vector<SeenMessage>{{Inside(*window_).flutterHostWindow_, message, kKey}}));
  EXPECT_TRUE(ViewSaw(message).empty()) << "posted, not sent";
  DrainQueue();
  EXPECT_EQ(ViewSaw(message), (std::vector<SeenMessage>{{Child(), message, kKey}}));
}

TEST_P(OverlayInputMessage, ThatTheEngineTakesReturnsItsResult) {
  Open();
  loopback_.SetTopLevelResult(GetParam(), true, -5);
  EXPECT_EQ(Send(GetParam(), kKey), -5);
  DrainQueue();
  EXPECT_TRUE(ViewSaw(GetParam()).empty());
}

TEST_P(OverlayInputMessage, WithNoViewAvailableReturnsOne) {
  Open();
  LoseTheView();
  EXPECT_EQ(Send(GetParam(), kKey), 1);
}

TEST_P(OverlayInputMessage, MovesTheFocusOnlyForAKey) {
  Open();
  const ImportHook hook("user32.dll", "GetKeyState", SaidKeyState);
  heldButton = 0;
  SetFocus(Inside(*window_).searchBox_);
  Send(GetParam(), kKey);
  const bool isKey = GetParam() == WM_KEYUP || GetParam() == WM_CHAR;
  EXPECT_EQ(GetFocus(), isKey ? Child() : Inside(*window_).searchBox_);
}

INSTANTIATE_TEST_SUITE_P(EachKind, OverlayInputMessage,
                         testing::Values(WM_KEYUP, WM_CHAR, WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK,
                                         WM_RBUTTONDOWN, WM_RBUTTONUP, WM_RBUTTONDBLCLK, WM_MBUTTONDOWN, WM_MBUTTONUP,
                                         WM_MBUTTONDBLCLK));

TEST_F(OverlayInput, KeyUpWhileTheLeftOrTheRightButtonIsHeldLeavesTheFocus) {
  Open();
  const ImportHook hook("user32.dll", "GetKeyState", SaidKeyState);
  for (const int button : {VK_LBUTTON, VK_RBUTTON, VK_MBUTTON}) {
    heldButton = button;
    SetFocus(Inside(*window_).searchBox_);
    EXPECT_EQ(Send(WM_KEYUP, kKey), 1);
    EXPECT_EQ(GetFocus(), button == VK_MBUTTON ? Child() : Inside(*window_).searchBox_) << button;
  }
}

TEST(KeyMessages, AreTheKeysAndTheCharacterWithoutTheDeadOne) {
  std::vector<UINT> keys;
  for (UINT message = 0; message < WM_USER; ++message) {
    if (IsKeyMessage(message)) keys.push_back(message);
  }
  EXPECT_EQ(keys, (std::vector<UINT>{WM_KEYDOWN, WM_KEYUP, WM_CHAR, WM_SYSKEYDOWN, WM_SYSKEYUP}));
}

TEST_F(OverlayInput, LogStatesWhetherTheOverlayCaptures) {
  Open();
  Send(WM_LBUTTONDOWN);
  EXPECT_EQ(log_.Count("DEBUG  [Overlay style: CAPTURES_INPUT]"), 1);
  SetWindowLongPtrA(Inside(*window_).flutterHostWindow_, GWL_EXSTYLE,
                    GetWindowLongPtrA(Inside(*window_).flutterHostWindow_, GWL_EXSTYLE) | WS_EX_TRANSPARENT);
  Send(WM_LBUTTONDOWN);
  EXPECT_EQ(log_.Count("DEBUG  [Overlay style: CLICK_THROUGH]"), 1);
}

// The mouse.

TEST_F(OverlayInput, MoveIsOfferedToTheEngineThenPostedToTheView) {
  Open();
  Forget();
  EXPECT_EQ(Send(WM_MOUSEMOVE, MK_SHIFT), 1);
  EXPECT_EQ(EngineOffered(WM_MOUSEMOVE).size(), 1u);
  DrainQueue();
  EXPECT_EQ(ViewSaw(WM_MOUSEMOVE), (std::vector<SeenMessage>{{Child(), WM_MOUSEMOVE, MK_SHIFT}}));
}

TEST_F(OverlayInput, MoveThatTheEngineTakesReturnsItsResult) {
  Open();
  loopback_.SetTopLevelResult(WM_MOUSEMOVE, true, 9);
  EXPECT_EQ(Send(WM_MOUSEMOVE), 9);
}

TEST_F(OverlayInput, MoveWithNoViewAvailableReturnsOne) {
  Open();
  LoseTheView();
  EXPECT_EQ(Send(WM_MOUSEMOVE), 1);
}

TEST_F(OverlayInput, MoveAtTheTopInFullscreenShowsTheTitleBar) {
  Open();
  window_->ToggleFullscreen();
  POINT top{200, 10};
  ClientToScreen(window_->hwnd_, &top);
  SetCursorPos(static_cast<int>(top.x), static_cast<int>(top.y));
  Send(WM_MOUSEMOVE);
  EXPECT_TRUE(Inside(*window_).isTitleBarVisible_);
  EXPECT_TRUE(
      log_.Has("DEBUG OverlayWindowProc: FULLSCREEN MOUSEMOVE - pt.y=10, isNowInTopArea=1, isMouseInTopArea_=0"));
}

TEST_F(OverlayInput, MoveAtTheTopShowsTheTitleBarWithoutAnEngineToo) {
  Open();
  window_->ToggleFullscreen();
  auto engine = std::move(window_->flutterEngine_);
  POINT top{200, 10};
  ClientToScreen(window_->hwnd_, &top);
  SetCursorPos(static_cast<int>(top.x), static_cast<int>(top.y));
  Send(WM_MOUSEMOVE);
  EXPECT_TRUE(Inside(*window_).isTitleBarVisible_);
  window_->flutterEngine_ = std::move(engine);
}

class OverlayWheel : public OverlayInput, public testing::WithParamInterface<UINT> {};

TEST_P(OverlayWheel, IsSentToTheViewWithoutAskingTheEngine) {
  Open();
  AnswerInView(GetParam(), 33);
  EXPECT_EQ(Send(GetParam(), MAKEWPARAM(0, 120)), 33);
  EXPECT_EQ(ViewSaw(GetParam()), (std::vector<SeenMessage>{{Child(), GetParam(), MAKEWPARAM(0, 120)}}));
  EXPECT_TRUE(EngineOffered(GetParam()).empty());
}

TEST_P(OverlayWheel, WithNoViewAvailableGetsTheDefaultHandling) {
  Open();
  LoseTheView();
  Send(GetParam(), MAKEWPARAM(0, 120));
  EXPECT_TRUE(ViewSaw(GetParam()).empty());
  EXPECT_EQ(log_.CountContaining("via SendMessage"), 0);
}

INSTANTIATE_TEST_SUITE_P(BothDirections, OverlayWheel, testing::Values(WM_MOUSEWHEEL, WM_MOUSEHWHEEL));

// Which window the overlays work with.

TEST_F(OverlayInput, F11OnAnOlderOverlayTogglesTheNewestWindow) {
  Open();
  VantroWindow& newest = OpenWindow();
  EXPECT_EQ(Send(WM_KEYDOWN, VK_F11), 0);
  EXPECT_TRUE(Inside(newest).isFullscreen_);
  EXPECT_FALSE(Inside(*window_).isFullscreen_);
}

TEST_F(OverlayInput, KeyOnAnOlderOverlayReachesTheNewestView) {
  Open();
  const VantroWindow& newest = OpenWindow();
  Forget();
  EXPECT_EQ(Send(WM_KEYDOWN, kKey), 1);
  DrainQueue();
  EXPECT_EQ(ViewSaw(WM_KEYDOWN), (std::vector<SeenMessage>{{FlutterChild(newest.flutterEngine_), WM_KEYDOWN, kKey}}));
}

TEST_F(OverlayInput, KeyAfterAFailedNewWindowGetsTheDefaultHandling) {
  Open();
  LoopbackFaults faults{};
  faults.fail_engine_create = 1;
  loopback_.SetFaults(faults);
  CreateNewWindow(*window_);
  ASSERT_EQ(VantroWindow::instance_, nullptr);
  EXPECT_EQ(Send(WM_KEYDOWN, VK_F11), 0);
  EXPECT_EQ(Send(WM_KEYUP, kKey), 0);
  EXPECT_FALSE(Inside(*window_).isFullscreen_);
  EXPECT_TRUE(EngineOffered(WM_KEYDOWN).empty());
}

TEST_F(OverlayInput, AfterTheNewestWindowClosedItsEngineServesAnOlderOverlaysKey) {
  Open();
  VantroWindow& newest = OpenWindow();
  SendMessageA(newest.hwnd_, WM_CLOSE, 0, 0);
  loopback_.SetTopLevelResult(WM_KEYDOWN, true, 5);
  EXPECT_EQ(Send(WM_KEYDOWN, kKey), 5);
  EXPECT_EQ(EngineOffered(WM_KEYDOWN).size(), 1u);
}

TEST_F(OverlayInput, AfterTheNewestWindowClosedF11ActsOnItsDeadHandle) {
  Open();
  VantroWindow& newest = OpenWindow();
  SendMessageA(newest.hwnd_, WM_CLOSE, 0, 0);
  EXPECT_EQ(Send(WM_KEYDOWN, VK_F11), 0);
  EXPECT_TRUE(Inside(newest).isFullscreen_);
  EXPECT_FALSE(Inside(*window_).isFullscreen_);
}

}  // namespace
}  // namespace vantro
