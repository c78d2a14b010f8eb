// The log lines of windows that come and go, of the overlay's moves, and of commands, with their values.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "shell/shell_ids.h"
#include "shell/window_manager.h"
#include "tests/support/format.h"
#include "tests/support/import_hook.h"
#include "tests/support/line_order.h"
#include "tests/support/line_states.h"
#include "tests/unit/shell/window_fixture.h"

namespace vantro {
namespace {

using test::ClientRectOnScreen;
using test::Format;
using test::Inside;
using test::LinesWith;
using testing::ElementsAre;
using testing::IsSupersetOf;
using Lines = std::vector<std::string>;

class WindowLog : public test::WindowTest {};

TEST_F(WindowLog, ARegisteredWindowIsNamedWithTheNumberOfWindows) {
  auto window = BringUp();
  const void* const address = window.get();
  const test::LogCapture log;
  RegisterWindow(std::move(window));
  EXPECT_THAT(log.Lines(), ElementsAre(Format("INFO RegisterWindow: Registering window %p", address),
                                       "INFO RegisterWindow: Total windows now: 1"));
}

TEST_F(WindowLog, ARequestForAWindowHasTheNumbersBeforeAndAfter) {
  VantroWindow& window = OpenWindow();
  const test::LogCapture log;
  ServeNewWindowRequest(window);
  EXPECT_THAT(LinesWith(log, {"NEW_WINDOW", "NEW WINDOW", "Message received", "Current window count",
                              "CreateNewWindow: C", "CreateNewWindow: N", "RegisterWindow: T"}),
              ElementsAre("INFO === RECEIVED WM_VANTRO_NEW_WINDOW MESSAGE ===",
                          Format("INFO Message received on window: %p", static_cast<void*>(&window)),
                          "INFO Current window count before: 1", "INFO CreateNewWindow: Creating new window instance",
                          "INFO RegisterWindow: Total windows now: 2",
                          "INFO CreateNewWindow: New window created and shown successfully",
                          "INFO Current window count after: 2", "INFO === NEW WINDOW REQUEST COMPLETED ==="));
}

TEST_F(WindowLog, ACloseHasTheNumberOfWindowsThatRemain) {
  OpenWindow();
  VantroWindow& window = OpenWindow();
  const test::LogCapture log;
  BeginClosing(window);
  EXPECT_THAT(log.Lines(),
              ElementsAre(Format("INFO WM_CLOSE: Window %p close requested", static_cast<void*>(&window)),
                          "INFO WM_CLOSE: Total windows: 2, Active windows after marking this as closing: 1",
                          "INFO WM_CLOSE: 1 active windows remain - not exiting application"));
}

void WINAPI OnPostQuit(int exitCode) { test::Note("PostQuitMessage " + std::to_string(exitCode)); }

TEST_F(WindowLog, TheCloseOfTheLastWindowIsLoggedBeforeItEndsTheLoopWithoutAnError) {
  VantroWindow& window = OpenWindow();
  const test::ImportHook hook("user32.dll", "PostQuitMessage", OnPostQuit);
  const test::LineStates states([&] { return std::string(window.isClosing_ ? "closing" : "open"); });
  BeginClosing(window);
  EXPECT_EQ(states.At("close requested"), "open");
  EXPECT_EQ(states.At("INFO WM_CLOSE: Total windows: 1, Active windows after marking this as closing: 0"), "closing");
  EXPECT_TRUE(test::InOrder(
      log_, {"INFO WM_CLOSE: No active windows remain - exiting application", "(call) PostQuitMessage 0"}));
}

TEST_F(WindowLog, TheEndOfAWindowHasTheNumberBeforeAndAfter) {
  OpenWindow();
  OpenWindow();
  VantroWindow* const ended = GetWindowRegistry().back().get();
  const std::string address = Format("%p", static_cast<void*>(ended));
  const HWND overlay = Inside(*ended).flutterHostWindow_;
  const test::LogCapture log;
  delete ended;  // the registry gives the entry up while the destructor runs
  EXPECT_THAT(LinesWith(log, {"~VantroWindow", "UnregisterWindow", "Destroying overlay"}),
              ElementsAre("INFO ~VantroWindow: Destructor called for window " + address,
                          "INFO ~VantroWindow: IsShuttingDown() = false",
                          "INFO ~VantroWindow: Current window count before unregister: 2",
                          "INFO UnregisterWindow: Unregistering window " + address,
                          "INFO UnregisterWindow: Window removed. Total windows now: 1",
                          "INFO ~VantroWindow: Window unregistered, remaining windows: 1",
                          Format("DEBUG Destructor: Destroying overlay window: %p", static_cast<void*>(overlay))));
}

TEST_F(WindowLog, ABroadcastNamesEachClientWindow) {
  OpenWindow();
  OpenWindow();
  OpenWindow();
  const test::LogCapture log;
  BroadcastEncodableToClientWindows("name", OwnedValue(EncodableValue("text")));
  EXPECT_THAT(LinesWith(log, {"Broadcast"}),
              ElementsAre("INFO BroadcastEncodableToClientWindows: Broadcasting 'name' to 3 windows",
                          "INFO BroadcastEncodableToClientWindows: Sending to client window 1",
                          "INFO BroadcastEncodableToClientWindows: Sending to client window 2"));
}

TEST_F(WindowLog, AnOverlayThatIsMadeNamesItsWindow) {
  const auto window = BringUp();
  const std::string handle = Format("%p", static_cast<void*>(Inside(*window).flutterHostWindow_));
  EXPECT_THAT(log_.Lines(),
              IsSupersetOf({std::string("INFO CreateFlutterOverlay: Starting Flutter overlay creation"),
                            "INFO CreateFlutterOverlay: Created overlay window: " + handle,
                            std::string("INFO CreateFlutterOverlay: UpdateLayeredWindow setup completed"),
                            std::string("INFO CreateFlutterOverlay: Initial state is click-through "
                                        "(WS_EX_TRANSPARENT)"),
                            std::string("INFO CreateFlutterOverlay: Successfully created Flutter overlay"),
                            "INFO CreateFlutterOverlay: Final verification - handle is: " + handle}));
  DestroyWindow(window->hwnd_);
}

TEST_F(WindowLog, AnOverlayThatMovesHasItsPlaceAndItsView) {
  VantroWindow& window = OpenWindow();
  const RECT client = ClientRectOnScreen(window.hwnd_);
  const int width = static_cast<int>(client.right - client.left);
  const int height = static_cast<int>(client.bottom - client.top) - 30;
  const test::LogCapture log;
  Inside(window).overlay_.SyncFlutterOverlayPosition(false);
  EXPECT_THAT(LinesWith(log, {"SyncFlutterOverlayPosition"}),
              ElementsAre(Format("DEBUG SyncFlutterOverlayPosition: Checking overlay window: %p",
                                 static_cast<void*>(Inside(window).flutterHostWindow_)),
                          Format("DEBUG SyncFlutterOverlayPosition: Set focus to Flutter engine window: %p",
                                 static_cast<void*>(FlutterChild(window.flutterEngine_))),
                          Format("DEBUG SyncFlutterOverlayPosition: Resized Flutter window to %dx%d", width, height),
                          Format("DEBUG SyncFlutterOverlayPosition: Updated overlay to client area %ld,%ld %dx%d",
                                 client.left, client.top + 30, width, height)));
}

TEST_F(WindowLog, ACommandNamesTheControl) {
  VantroWindow& window = OpenWindow();
  const HWND button = Inside(window).helpButton_;
  SetFocus(button);
  const test::LogCapture log;
  const test::LineStates states([&] { return std::string(GetFocus() == button ? "on the button" : "in the view"); });
  SendMessageA(window.hwnd_, WM_COMMAND, MAKEWPARAM(4242, 7), reinterpret_cast<LPARAM>(button));
  EXPECT_EQ(states.At("DEBUG HandleMenuCommand: Unknown command 4242"), "on the button");
  EXPECT_EQ(states.At("DEBUG WM_COMMAND: Redirected focus back to Flutter window"), "in the view");
  EXPECT_THAT(LinesWith(log, {"WM_COMMAND"}),
              ElementsAre(Format("DEBUG WM_COMMAND: Control interaction - ID: 4242, Handle: %p, Type: 7",
                                 static_cast<void*>(button)),
                          Format("DEBUG WM_COMMAND: Redirected focus back to Flutter window %p",
                                 static_cast<void*>(FlutterChild(window.flutterEngine_)))));
  SetFocus(Inside(window).searchBox_);
  const test::LogCapture later;
  SendMessageA(window.hwnd_, WM_COMMAND, MAKEWPARAM(4242, 0), 0);
  EXPECT_EQ(later.Count("DEBUG WM_COMMAND: Search box has focus, not stealing it"), 1);
}

TEST_F(WindowLog, AStartNamesTheWindowAndTheOverlay) {
  const auto window = BringUp();
  const std::string handle = Format("%p", static_cast<void*>(window->hwnd_));
  const std::string overlay = Format("%p", static_cast<void*>(Inside(*window).flutterHostWindow_));
  EXPECT_THAT(log_.Lines(),
              IsSupersetOf({"INFO Window created successfully with HWND: " + handle,
                            Format("INFO Set this pointer in GWLP_USERDATA: %p", static_cast<void*>(window.get())),
                            "DEBUG Window handle (HWND): " + handle,
                            "INFO Initializing Flutter with SEPARATE window: " + overlay,
                            "DEBUG InitializeFlutter: Checking overlay handle: " + overlay,
                            "DEBUG After Flutter init - overlay handle: " + overlay,
                            std::string("DEBUG After Flutter init - IsWindow check: VALID")}));
  DestroyWindow(window->hwnd_);
}

TEST_F(WindowLog, AFlutterStartOnADeadOverlayNamesItsHandle) {
  auto window = std::make_unique<VantroWindow>(GetModuleHandleA(nullptr));
  ASSERT_TRUE(RoomPeer::InitializeWindow(*window));
  ASSERT_TRUE(Inside(*window).overlay_.CreateFlutterOverlay(GetModuleHandleW(nullptr)));
  const HWND overlay = Inside(*window).flutterHostWindow_;
  DestroyWindow(overlay);
  EXPECT_FALSE(RoomPeer::InitializeFlutter(*window));
  EXPECT_EQ(log_.Lines().back(), Format("ERROR ERROR: Handle %p is invalid!", static_cast<void*>(overlay)));
  Destroy(std::move(window));
}

}  // namespace
}  // namespace vantro
