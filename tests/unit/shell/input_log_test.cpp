// The log lines of the keyboard, the mouse and the overlay's input, in their order and with their values.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/flag_names.h"
#include "tests/support/format.h"
#include "tests/support/import_hook.h"
#include "tests/support/line_order.h"
#include "tests/unit/shell/call_log.h"
#include "tests/unit/shell/window_fixture.h"

namespace vantro {
namespace {

using test::CallLog;
using test::Format;
using test::InOrder;
using test::Inside;
using test::Note;
using test::WindowRectOf;
using testing::ElementsAre;
using testing::ElementsAreArray;
using Lines = std::vector<std::string>;

constexpr WPARAM kKey = 'A';  // 65

class InputLog : public test::WindowTest {
 protected:
  InputLog() : window_(OpenWindow()) {}

  HWND Main() const { return window_.hwnd_; }
  HWND Overlay() { return Inside(window_).flutterHostWindow_; }
  HWND View() { return FlutterChild(window_.flutterEngine_); }
  // Sends a message and returns the log lines that it causes and that contain one of the fragments.
  Lines Sent(HWND window, UINT message, WPARAM wParam, const std::vector<std::string>& fragments) {
    const test::LogCapture log;
    SendMessageA(window, message, wParam, 0);
    return test::LinesWith(log, fragments);
  }
  // A line that ends with a window's handle, or has it between two texts.
  static std::string Pointer(const std::string& before, HWND window, const std::string& after = "") {
    return Format("DEBUG %s%p%s", before.c_str(), static_cast<void*>(window), after.c_str());
  }

  VantroWindow& window_;
};

// The focus of the main window.

TEST_F(InputLog, AFocusThatComesNamesTheWindows) {
  SetFocus(Inside(window_).fileButton_);
  EXPECT_THAT(
      Sent(Main(), WM_SETFOCUS, 0, {"WM_SETFOCUS"}),
      ElementsAre(
          Pointer("WM_SETFOCUS: Main window got focus, current focus window: ", Inside(window_).fileButton_),
          Format("DEBUG WM_SETFOCUS: Search box: %p, File button: %p, Help button: %p",
                 static_cast<void*>(Inside(window_).searchBox_), static_cast<void*>(Inside(window_).fileButton_),
                 static_cast<void*>(Inside(window_).helpButton_)),
          Pointer("WM_SETFOCUS: Flutter overlay: ", Overlay()),
          Pointer("WM_SETFOCUS: Flutter engine window: ", View())));
}

TEST_F(InputLog, AFocusThatGoesNamesTheNextWindow) {
  EXPECT_THAT(Sent(Main(), WM_KILLFOCUS, reinterpret_cast<WPARAM>(View()), {"WM_KILLFOCUS"}),
              ElementsAre(Pointer("WM_KILLFOCUS: Main window lost focus, new focus window: ", View()),
                          Format("DEBUG WM_KILLFOCUS: Search box: %p, File button: %p, Help button: %p",
                                 static_cast<void*>(Inside(window_).searchBox_),
                                 static_cast<void*>(Inside(window_).fileButton_),
                                 static_cast<void*>(Inside(window_).helpButton_)),
                          Pointer("WM_KILLFOCUS: Flutter overlay: ", Overlay()),
                          Pointer("WM_KILLFOCUS: Flutter engine window: ", View())));
}

// Keys at the main window.

class KeyAtTheMainWindow : public InputLog {
 protected:
  Lines Begin(const char* focusIsMain) {
    return {"DEBUG MAIN_WINDOW_HANDLER: Received WM_KEYDOWN, key=65",
            Pointer("MainWindow: Overlay window handle: ", Overlay()),
            Pointer("MainWindow: Current focus when keydown received: ", GetFocus()),
            std::string("DEBUG MainWindow: Is current focus == main window? ") + focusIsMain,
            Pointer("MainWindow: flutterEngine exists, flutterWindow = ", View())};
  }
  // The lines before a key is offered to the engine.
  Lines Offer(const char* focusIsMain) {
    Lines lines = Begin(focusIsMain);
    char className[64] = "";
    GetClassNameA(View(), className, sizeof className);
    lines.push_back(Format("DEBUG MainWindow: Flutter window info - Class: %s, ProcessId: %lu, IsVisible: %s",
                           className, GetCurrentProcessId(), IsWindowVisible(View()) ? "true" : "false"));
    lines.emplace_back("DEBUG MainWindow: Forwarding keyboard event directly to Flutter (no focus change)");
    return lines;
  }
  Lines KeyDown() { return Sent(Main(), WM_KEYDOWN, kKey, {"MainWindow: ", "MAIN_WINDOW_HANDLER"}); }
};

TEST_F(KeyAtTheMainWindow, ThatTheEngineTakes) {
  loopback_.SetTopLevelResult(WM_KEYDOWN, true, 77);
  SetFocus(Main());
  Lines expected = Offer(GetFocus() == Main() ? "YES" : "NO");
  expected.emplace_back("DEBUG MainWindow: Flutter engine handled keyboard, result: 77");
  EXPECT_THAT(KeyDown(), ElementsAreArray(expected));
}

TEST_F(KeyAtTheMainWindow, ThatTheViewTakes) {
  AnswerInView(WM_KEYDOWN, 5);
  SetFocus(Inside(window_).searchBox_);
  Lines expected = Offer("NO");
  expected.emplace_back("DEBUG MainWindow: Flutter engine did NOT handle keyboard event");
  expected.emplace_back("DEBUG MainWindow: MAIN_WINDOW_FALLBACK - sending keyboard directly to Flutter window");
  expected.emplace_back("DEBUG MainWindow: Direct SendMessage result: 5");
  EXPECT_THAT(KeyDown(), ElementsAreArray(expected));
}

TEST_F(KeyAtTheMainWindow, ThatNeitherTakes) {
  ShowWindow(View(), SW_HIDE);
  SetFocus(Inside(window_).searchBox_);
  Lines expected = Offer("NO");
  expected.emplace_back("DEBUG MainWindow: Flutter engine did NOT handle keyboard event");
  expected.emplace_back("DEBUG MainWindow: MAIN_WINDOW_FALLBACK - sending keyboard directly to Flutter window");
  expected.emplace_back("DEBUG MainWindow: Direct SendMessage result: 0");
  expected.push_back(Pointer("MainWindow: Trying Flutter overlay window as fallback: ", Overlay()));
  expected.emplace_back("DEBUG MainWindow: Overlay SendMessage result: 1");
  EXPECT_THAT(KeyDown(), ElementsAreArray(expected));
}

TEST_F(KeyAtTheMainWindow, WithoutALiveView) {
  DestroyWindow(View());
  SetFocus(Inside(window_).searchBox_);
  Lines expected = Begin("NO");
  expected.push_back(Format("ERROR MainWindow: Invalid Flutter window - flutterWindow=%p, IsWindow=false",
                            static_cast<void*>(View())));
  EXPECT_THAT(KeyDown(), ElementsAreArray(expected));
}

// Leave the class name and the process id as they are.
int WINAPI NoClassName(HWND, char*, int size) {
  Note("GetClassNameA " + std::to_string(size));
  return 0;
}
DWORD WINAPI NoProcessId(HWND, DWORD*) {
  Note("GetWindowThreadProcessId");
  return 0;
}

TEST_F(KeyAtTheMainWindow, WithAViewOfUnknownClassAndProcess) {
  const test::ImportHook className("user32.dll", "GetClassNameA", NoClassName);
  const test::ImportHook process("user32.dll", "GetWindowThreadProcessId", NoProcessId);
  const test::LogCapture log;
  SendMessageA(Main(), WM_KEYDOWN, kKey, 0);
  EXPECT_TRUE(InOrder(log, {"(call) GetClassNameA 256", "(call) GetWindowThreadProcessId",
                            "MainWindow: Flutter window info - Class: , ProcessId: 0, IsVisible: "}));
}

int WINAPI FailOnGetClassName(HWND, char*, int) {
  ADD_FAILURE() << "asked for the class of the view";
  return 0;
}

TEST_F(KeyAtTheMainWindow, AsksNothingAboutTheViewWhileTheLogIsOff) {
  const test::ImportHook hook("user32.dll", "GetClassNameA", FailOnGetClassName);
  debugLoggingEnabled = false;
  SendMessageA(Main(), WM_KEYDOWN, kKey, 0);
  debugLoggingEnabled = true;
}

bool saysDead = false;
BOOL WINAPI DeadAtTheFirstQuestion(HWND window) {
  if (std::exchange(saysDead, false)) return FALSE;
  return reinterpret_cast<decltype(&IsWindow)>(GetProcAddress(GetModuleHandleA("user32.dll"), "IsWindow"))(window);
}

TEST_F(KeyAtTheMainWindow, WithAViewThatIsAliveAgainWhenTheLineIsWritten) {
  const test::ImportHook hook("user32.dll", "IsWindow", DeadAtTheFirstQuestion);
  saysDead = true;
  EXPECT_EQ(KeyDown().back(), Format("ERROR MainWindow: Invalid Flutter window - flutterWindow=%p, IsWindow=true",
                                     static_cast<void*>(View())));
}

TEST_F(InputLog, AnotherKeyMessageThatTheEngineTakes) {
  loopback_.SetTopLevelResult(WM_CHAR, true, 8);
  EXPECT_THAT(Sent(Main(), WM_CHAR, kKey, {"MainWindow: "}),
              ElementsAre("DEBUG MainWindow: Received keyboard message 258, key=65",
                          "DEBUG MainWindow: Forwarding keyboard message 258 directly to Flutter",
                          "DEBUG MainWindow: Flutter handled keyboard message 258, result: 8"));
}

TEST_F(InputLog, AnotherKeyMessageThatTheEngineLeaves) {
  AnswerInView(WM_KEYUP, 6);
  EXPECT_THAT(Sent(Main(), WM_KEYUP, kKey, {"MainWindow: "}),
              ElementsAre("DEBUG MainWindow: Received keyboard message 257, key=65",
                          "DEBUG MainWindow: Forwarding keyboard message 257 directly to Flutter",
                          "DEBUG MainWindow: Flutter engine did NOT handle keyboard message 257",
                          "DEBUG MainWindow: MAIN_WINDOW_FALLBACK2 - sending keyboard message 257 directly to Flutter "
                          "window",
                          "DEBUG MainWindow: Direct SendMessage result for message 257: 6"));
}

// Clicks at the main window.

TEST_F(InputLog, AClickNamesItsPlaceAndTheWindowThere) {
  const RECT box = WindowRectOf(Inside(window_).searchBox_);
  POINT point{box.left + 10, box.top + 5};
  SetCursorPos(static_cast<int>(point.x), static_cast<int>(point.y));
  ScreenToClient(Main(), &point);
  EXPECT_THAT(Sent(Main(), WM_LBUTTONDOWN, 0, {"WM_LBUTTONDOWN"}),
              ElementsAre(Format("DEBUG WM_LBUTTONDOWN: Click at (%d, %d), hit window: %p", static_cast<int>(point.x),
                                 static_cast<int>(point.y), static_cast<void*>(Inside(window_).searchBox_)),
                          Pointer("WM_LBUTTONDOWN: Search box window: ", Inside(window_).searchBox_),
                          "DEBUG WM_LBUTTONDOWN: Click on search box - ensuring it gets focus"));
}

TEST_F(InputLog, ADragOfTheVolumeHasItsBeginningAndItsEnd) {
  const RECT slider = WindowRectOf(Inside(window_).volumeControl_);
  SetCursorPos(static_cast<int>(slider.left) + 20, static_cast<int>(slider.top) + 7);
  const test::LogCapture log;
  SendMessageA(Main(), WM_LBUTTONDOWN, 0, 0);
  EXPECT_TRUE(InOrder(log, {"DEBUG WM_LBUTTONDOWN: Click on volume control",
                            "DEBUG WM_LBUTTONDOWN: Volume control clicked at relative position (20, 7)"}));
  EXPECT_THAT(Sent(Main(), WM_LBUTTONUP, 0, {"Volume control mouse up"}),
              ElementsAre("DEBUG WM_LBUTTONUP: Volume control mouse up - hiding percentage"));
}

TEST_F(InputLog, ADragFromTheVolumesFarEdgeHasItsBeginning) {
  const RECT slider = WindowRectOf(Inside(window_).volumeControl_);
  POINT corner{slider.right, slider.bottom};
  SetCursorPos(static_cast<int>(corner.x), static_cast<int>(corner.y));
  ScreenToClient(Main(), &corner);
  const test::LogCapture log;
  SendMessageA(Main(), WM_LBUTTONDOWN, 0, 0);
  EXPECT_TRUE(InOrder(
      log, {Format("DEBUG WM_LBUTTONDOWN: Manual volume control hit test succeeded at (%ld, %ld)", corner.x, corner.y),
            "WM_LBUTTONDOWN: Volume control clicked at relative position (80, 20)"}));
  SendMessageA(Main(), WM_LBUTTONUP, 0, 0);
}

TEST_F(InputLog, AButtonThatGoesUpMovesTheFocusAndThenSaysSo) {
  SetCursorPos(0, 0);
  SetFocus(Inside(window_).fileButton_);
  const test::LogCapture log;
  CallLog calls(window_);
  calls.WriteToLog();
  SendMessageA(Main(), WM_LBUTTONUP, 0, 0);
  EXPECT_TRUE(InOrder(log, {"(call) SetFocus view", "MainWindow: Mouse up - restored focus to Flutter"}));
}

TEST_F(InputLog, AButtonThatGoesUpSaysWhereTheFocusIs) {
  SetCursorPos(0, 0);
  SetFocus(Inside(window_).searchBox_);
  EXPECT_THAT(Sent(Main(), WM_LBUTTONUP, 0, {"MainWindow: "}),
              ElementsAre("DEBUG MainWindow: Search box has focus, not stealing it"));
  SetFocus(Inside(window_).fileButton_);
  EXPECT_THAT(Sent(Main(), WM_LBUTTONUP, 0, {"MainWindow: "}),
              ElementsAre("DEBUG MainWindow: Mouse up - restored focus to Flutter"));
}

// Input at the overlay.

const std::vector<std::string> kOverlayLines = {
    "OverlayWindowProc: F", "OverlayWindowProc: H", "OverlayWindowProc: P",   "OverlayWindowProc: S",
    "OverlayWindowProc: T", "OverlayWindowProc: O", "OVERLAY_WINDOW_HANDLER", "Overlay style"};

TEST_F(InputLog, AKeyAtTheOverlayThatTheEngineTakes) {
  loopback_.SetTopLevelResult(WM_KEYDOWN, true, 77);
  EXPECT_THAT(Sent(Overlay(), WM_KEYDOWN, kKey, kOverlayLines),
              ElementsAre("DEBUG OVERLAY_WINDOW_HANDLER: WM_KEYDOWN key=65",
                          Pointer("OverlayWindowProc: Handling keydown on overlay window ", Overlay()),
                          "DEBUG OverlayWindowProc: Flutter engine handled keydown -> 77"));
}

TEST_F(InputLog, AKeyAtTheOverlayThatTheViewGets) {
  SetFocus(Inside(window_).searchBox_);
  EXPECT_THAT(Sent(Overlay(), WM_KEYDOWN, kKey, kOverlayLines),
              ElementsAre("DEBUG OVERLAY_WINDOW_HANDLER: WM_KEYDOWN key=65",
                          Pointer("OverlayWindowProc: Handling keydown on overlay window ", Overlay()),
                          "DEBUG OverlayWindowProc: Setting focus to Flutter window for keyboard",
                          "DEBUG OverlayWindowProc: PostMessage keydown to Flutter window"));
}

TEST_F(InputLog, TheFocusMovesAfterItsLineAndBeforeThePost) {
  for (const UINT message : {WM_KEYDOWN, WM_KEYUP}) {
    SetFocus(Inside(window_).searchBox_);
    const test::LogCapture log;
    CallLog calls(window_);
    calls.WriteToLog();
    SendMessageA(Overlay(), message, kKey, 7);
    EXPECT_TRUE(InOrder(log, {"OverlayWindowProc: Setting focus to Flutter window for keyboard", "(call) SetFocus view",
                              message == WM_KEYDOWN ? "OverlayWindowProc: PostMessage keydown to Flutter window"
                                                    : "OverlayWindowProc: Trying PostMessage to Flutter window",
                              "(call) PostMessageA view " + test::MessageName(message) + " 65 7"}));
  }
}

TEST_F(InputLog, F11AtTheOverlay) {
  EXPECT_THAT(Sent(Overlay(), WM_KEYDOWN, VK_F11, {"OverlayWindowProc: F11"}),
              ElementsAre("INFO OverlayWindowProc: F11 pressed - toggling fullscreen"));
}

TEST_F(InputLog, InputAtTheOverlayThatTheEngineTakes) {
  loopback_.SetTopLevelResult(WM_CHAR, true, 9);
  EXPECT_THAT(Sent(Overlay(), WM_CHAR, kKey, kOverlayLines),
              ElementsAre("DEBUG OVERLAY_WINDOW_HANDLER: REAL INPUT MESSAGE! 258 (key=65)",
                          "DEBUG  [Overlay style: CAPTURES_INPUT]",
                          "DEBUG OverlayWindowProc: Flutter engine handled message 258 on overlay -> 9"));
}

TEST_F(InputLog, InputAtTheOverlayThatTheViewGets) {
  SetFocus(Inside(window_).searchBox_);
  EXPECT_THAT(Sent(Overlay(), WM_KEYUP, kKey, kOverlayLines),
              ElementsAre("DEBUG OVERLAY_WINDOW_HANDLER: REAL INPUT MESSAGE! 257 (key=65)",
                          "DEBUG  [Overlay style: CAPTURES_INPUT]",
                          "DEBUG OverlayWindowProc: Flutter engine did NOT handle message 257 on overlay",
                          "DEBUG OverlayWindowProc: Setting focus to Flutter window for keyboard input",
                          Pointer("OverlayWindowProc: Trying PostMessage to Flutter window ", View()),
                          "DEBUG OverlayWindowProc: PostMessage result: SUCCESS"));
}

BOOL WINAPI RefusePost(HWND, UINT, WPARAM, LPARAM) { return FALSE; }

TEST_F(InputLog, InputAtTheOverlayThatCannotBePosted) {
  const test::ImportHook post("user32.dll", "PostMessageA", RefusePost);
  const Lines lines = Sent(Overlay(), WM_LBUTTONDOWN, 0, kOverlayLines);
  ASSERT_GE(lines.size(), 2u);
  EXPECT_EQ(lines[lines.size() - 2], "DEBUG OverlayWindowProc: PostMessage result: FAILED");
  EXPECT_EQ(lines.back(), "DEBUG OverlayWindowProc: Overlay window processed keyboard input message 513");
}

TEST_F(InputLog, InputAtTheOverlayWithoutAnEngine) {
  auto engine = std::move(window_.flutterEngine_);
  const test::LogCapture log;
  SendMessageA(Overlay(), WM_KEYUP, kKey, 0);
  EXPECT_THAT(log.Lines(), testing::Contains(Format("ERROR OverlayWindowProc: instance_=%p or flutterEngine_ is NULL!",
                                                    static_cast<void*>(&window_))));
  window_.flutterEngine_ = std::move(engine);
}

TEST_F(InputLog, TheWheelAtTheOverlay) {
  AnswerInView(WM_MOUSEWHEEL, 33);
  EXPECT_THAT(
      Sent(Overlay(), WM_MOUSEWHEEL, MAKEWPARAM(0, 120), kOverlayLines),
      ElementsAre("DEBUG OVERLAY_WINDOW_HANDLER: MOUSE WHEEL MESSAGE 522 - forwarding to Flutter window",
                  Pointer("OverlayWindowProc: Forwarding WM_MOUSEWHEEL to Flutter window ", View(), " via SendMessage"),
                  "DEBUG OverlayWindowProc: SendMessage returned 33"));
}

}  // namespace
}  // namespace vantro
