// The Flutter view and the video's window.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "shell/vantro_window.h"
#include "tests/support/flag_names.h"
#include "tests/support/import_hook.h"
#include "tests/unit/channel/player_channel.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;

class ViewRequests : public PlayerChannelTest {
 protected:
  ViewRequests() {
    loopback_.SetViewObserver(
        [](int32_t, HWND, UINT message, WPARAM wParam, LPARAM, LRESULT*, void* userData) {
          const bool isExtendedStyle = static_cast<int>(static_cast<LONG_PTR>(wParam)) == GWL_EXSTYLE;
          if (message == WM_STYLECHANGED && isExtendedStyle) ++*static_cast<int*>(userData);
          return 0;
        },
        &styleChanges_);
  }

  HWND View() const { return engine_->flutterWindow_; }
  bool IsLayered() const { return (GetWindowLongA(View(), GWL_EXSTYLE) & WS_EX_LAYERED) != 0; }
  int Alpha() const {
    BYTE alpha = 0;
    DWORD flags = 0;
    return GetLayeredWindowAttributes(View(), nullptr, &alpha, &flags) && flags == LWA_ALPHA ? alpha : -1;
  }
  void SetLevel(const Value& level) { EXPECT_EQ(Ask("setAlphaFlutterView", MapOf({{"level", level}})), kTrue); }

  int styleChanges_ = 0;  // changes of the view's extended style
};

TEST_F(ViewRequests, HideAndShowSwitchTheViewInsideTheOverlay) {
  EXPECT_EQ(Ask("hideFlutterView"), kTrue);
  EXPECT_FALSE(engine_->visible_);
  EXPECT_FALSE(GetWindowLongA(View(), GWL_STYLE) & WS_VISIBLE);
  EXPECT_EQ(Ask("showFlutterView"), kTrue);
  EXPECT_TRUE(engine_->visible_);
  EXPECT_TRUE(GetWindowLongA(View(), GWL_STYLE) & WS_VISIBLE);
}

// Records the calls on the view's window, one line for each call. Each call is passed on to the system.
class ViewCalls {
 public:
  ViewCalls() { current = this; }
  ~ViewCalls() { current = nullptr; }
  ViewCalls(const ViewCalls&) = delete;
  ViewCalls& operator=(const ViewCalls&) = delete;
  const std::vector<std::string>& Lines() const { return lines_; }

 private:
  static BOOL WINAPI Show(HWND window, int command) {
    current->lines_.push_back("show " + ShowCommand(command));
    return current->show_.Original<decltype(&ShowWindow)>()(window, command);
  }
  static BOOL WINAPI SetLayered(HWND window, COLORREF key, BYTE alpha, DWORD flags) {
    current->lines_.push_back("key " + std::to_string(key) + " alpha " + std::to_string(alpha) +
                              (flags == LWA_ALPHA ? " LWA_ALPHA" : " other flags"));
    return current->setLayered_.Original<decltype(&SetLayeredWindowAttributes)>()(window, key, alpha, flags);
  }

  static ViewCalls* current;
  std::vector<std::string> lines_;
  ImportHook show_{"user32.dll", "ShowWindow", &Show};
  ImportHook setLayered_{"user32.dll", "SetLayeredWindowAttributes", &SetLayered};
};

ViewCalls* ViewCalls::current = nullptr;

TEST_F(ViewRequests, HideAndShowUseTheirOwnCommandsOfShowWindow) {
  const ViewCalls calls;
  Ask("hideFlutterView");
  Ask("showFlutterView");
  EXPECT_THAT(calls.Lines(), ElementsAre("show SW_HIDE", "show SW_SHOW"));
}

TEST_F(ViewRequests, AlphaIsSetWithoutAColourKeyAndOnlyBelowOne) {
  const ViewCalls calls;
  SetLevel(Value(0.5));
  SetLevel(Value(1.0));
  EXPECT_THAT(calls.Lines(), ElementsAre("key 0 alpha 127 LWA_ALPHA"));
}

TEST_F(ViewRequests, AlphaKeepsTheOtherExtendedStyles) {
  SetWindowLongA(View(), GWL_EXSTYLE, WS_EX_NOPARENTNOTIFY | WS_EX_DLGMODALFRAME);
  const LONG before = GetWindowLongA(View(), GWL_EXSTYLE);
  SetLevel(Value(0.5));
  EXPECT_EQ(GetWindowLongA(View(), GWL_EXSTYLE), before | WS_EX_LAYERED);
  SetLevel(Value(1.0));
  EXPECT_EQ(GetWindowLongA(View(), GWL_EXSTYLE), before);
}

TEST_F(ViewRequests, WithoutAViewWindowOnlyTheFieldsChange) {
  const HWND view = engine_->flutterWindow_;
  engine_->flutterWindow_ = nullptr;
  EXPECT_EQ(Ask("hideFlutterView"), kTrue);
  SetLevel(Value(0.5));
  EXPECT_FALSE(engine_->visible_);
  EXPECT_EQ(engine_->alpha_, 0.5);
  engine_->flutterWindow_ = view;
  EXPECT_FALSE(IsLayered());
}

TEST_F(ViewRequests, AlphaBelowOneLayersTheViewWithTheTruncatedByte) {
  SetLevel(Value(0.5));
  EXPECT_EQ(engine_->alpha_, 0.5);
  EXPECT_TRUE(IsLayered());
  EXPECT_EQ(Alpha(), 127);
}

TEST_F(ViewRequests, AlphaOfALayeredViewSetsNoStyleAgain) {
  SetLevel(Value(0.5));
  ASSERT_EQ(styleChanges_, 1);
  SetLevel(Value(0.25));
  EXPECT_EQ(styleChanges_, 1);
  EXPECT_EQ(Alpha(), 63);
}

TEST_F(ViewRequests, AlphaOfTheIntegerOneRemovesTheLayeredStyle) {
  SetLevel(Value(0.5));
  SetLevel(Value(1));
  EXPECT_FALSE(IsLayered());
  EXPECT_EQ(engine_->alpha_, 1.0);
}

TEST_F(ViewRequests, AlphaOfOneOnAnOpaqueViewTouchesNoStyle) {
  SetLevel(Value(1.0));
  SetLevel(Value(int64_t{7}));
  EXPECT_EQ(styleChanges_, 0);
  EXPECT_EQ(engine_->alpha_, 7.0);
}

TEST_F(ViewRequests, AlphaThatIsAStringBehavesAsOne) {
  SetLevel(Value(0.5));
  SetLevel(Value("0.5"));
  EXPECT_FALSE(IsLayered());
  EXPECT_EQ(engine_->alpha_, 1.0);
}

TEST_F(ViewRequests, AlphaIsNotClampedAndWrapsInTheByte) {
  const std::pair<Value, int> rows[] = {
      {Value(0), 0},
      {Value(0.999), 254},
      {Value(-0.5), 256 - 127},
      {Value(-1), 1},
      {Value(-2.0), 512 - 510},
      {Value(-1e300), 0},
      {Value(int64_t{-3}), 768 - 765},
  };
  for (const auto& [level, byte] : rows) {
    SetLevel(level);
    EXPECT_EQ(Alpha(), byte) << Describe(level);
  }
}

TEST_F(ViewRequests, ResizeWithoutArgumentsResizesToFourZeros) {
  EXPECT_EQ(
      Ask("resizeVLC", MapOf({{"x", Value(10)}, {"y", Value(20)}, {"width", Value(300)}, {"height", Value(200)}})),
      kTrue);
  RECT rect = VideoRect();
  EXPECT_TRUE(rect.left == 10 && rect.top == 20 && rect.right == 310 && rect.bottom == 220);

  EXPECT_EQ(Ask("resizeVLC"), kTrue);

  rect = VideoRect();
  EXPECT_TRUE(rect.left == 0 && rect.top == 0 && rect.right == 0 && rect.bottom == 0);
  EXPECT_TRUE(log_.Has("INFO [Resize] Called with 0x0 isMultiViewMode=0"));
}

TEST_F(ViewRequests, ResizeFullFillsTheClientAreaBelowTheTitleBar) {
  EXPECT_EQ(Ask("resizeVLCFull"), kTrue);
  const RECT rect = VideoRect();
  EXPECT_EQ(rect.left, 0);
  EXPECT_EQ(rect.top, TITLE_BAR_HEIGHT);
  EXPECT_EQ(rect.right, kParentWidth);
  EXPECT_EQ(rect.bottom, kParentHeight);
}

TEST_F(ViewRequests, FrontAndBackBothRestoreTheStacking) {
  for (const char* method : {"vlcViewFront", "vlcViewBack"}) {
    LogCapture log;
    EXPECT_EQ(Ask(method), kTrue);
    EXPECT_EQ(log.CountContaining("EnsureZOrder: parent="), 1) << method;
  }
}

}  // namespace
}  // namespace vantro::test
