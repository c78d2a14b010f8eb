// The list of windows: its entries, the place of a new window, the receivers of a broadcast, and closing.
#include "shell/window_manager.h"

#include <algorithm>
#include <stdexcept>

#include "flutter_host/encodable_value.h"
#include "shell/shell_ids.h"
#include "tests/support/import_hook.h"
#include "tests/support/interface_end.h"
#include "tests/unit/shell/window_fixture.h"

namespace vantro {
namespace {

using test::DrainQueue;
using test::ImportHook;
using test::Inside;
using test::InterfaceCall;
using test::WindowRectOf;
using test::operator==;

class Windows : public test::WindowTest {
 protected:
  static void Close(VantroWindow& window) { SendMessageA(window.hwnd_, WM_CLOSE, 0, 0); }
};

TEST_F(Windows, AreInTheOrderOfTheirRegistration) {
  VantroWindow& first = OpenWindow();
  VantroWindow& second = OpenWindow();
  ASSERT_EQ(GetWindowRegistry().size(), 2u);
  EXPECT_EQ(GetWindowRegistry()[0].get(), &first);
  EXPECT_EQ(GetWindowRegistry()[1].get(), &second);
}

TEST_F(Windows, ClosedWindowStaysInItsPlaceWithoutItsNativeWindows) {
  VantroWindow& first = OpenWindow();
  VantroWindow& second = OpenWindow();
  Close(first);
  EXPECT_EQ(GetWindowRegistry()[0].get(), &first);
  EXPECT_TRUE(first.isClosing_);
  EXPECT_FALSE(IsWindow(first.hwnd_));
  EXPECT_FALSE(IsWindow(Inside(first).flutterHostWindow_));
  EXPECT_NE(first.methodChannelHandler_, nullptr);
  EXPECT_TRUE(IsWindow(second.hwnd_));
  EXPECT_FALSE(second.methodChannelHandler_->isMasterWindow_);
}

TEST_F(Windows, QuitGoesOutOnceOnTheLastClose) {
  VantroWindow& first = OpenWindow();
  VantroWindow& second = OpenWindow();
  VantroWindow& third = OpenWindow();
  Close(second);
  Close(first);
  EXPECT_EQ(DrainQueue(), 0);
  EXPECT_TRUE(log_.Has("INFO WM_CLOSE: 2 active windows remain - not exiting application"));
  EXPECT_TRUE(log_.Has("INFO WM_CLOSE: Total windows: 3, Active windows after marking this as closing: 1"));
  Close(third);
  EXPECT_EQ(DrainQueue(), 1);
  EXPECT_EQ(log_.Count("INFO WM_CLOSE: No active windows remain - exiting application"), 1);
}

TEST_F(Windows, RequestToAClientStillGoesToAClosedMaster) {
  VantroWindow& master = OpenWindow();
  OpenWindow();
  const int masterEngine = 1 + loopback_.NewestEngine() - 2;
  Close(master);
  test::InterfaceEnd interface(loopback_);
  GetWindowRegistry()[0]->methodChannelHandler_->SendChannelEvent("ping", "x");
  EXPECT_EQ(interface.Calls(masterEngine), (std::vector<InterfaceCall>{{"ping", OwnedValue("x")}}));
}

TEST_F(Windows, TheMastersHandlerIsThatOfTheFirstEntryAndNoneWithoutAnEntry) {
  auto& registry = GetWindowRegistry();
  EXPECT_EQ(MasterHandler(), nullptr);
  VantroWindow& master = OpenWindow();
  OpenWindow();
  EXPECT_EQ(MasterHandler(), master.methodChannelHandler_.get());
  registry.insert(registry.begin(), nullptr);
  EXPECT_EQ(MasterHandler(), nullptr);
  registry.erase(registry.begin());
}

// Broadcasts.

TEST_F(Windows, BroadcastWithOneWindowSendsNothing) {
  OpenWindow();
  test::InterfaceEnd interface(loopback_);
  BroadcastEncodableToClientWindows("changed", OwnedValue("v"));
  EXPECT_TRUE(interface.Calls().empty());
  EXPECT_TRUE(log_.Has("INFO BroadcastEncodableToClientWindows: Broadcasting 'changed' to 1 windows"));
}

TEST_F(Windows, BroadcastReachesEveryClientClosedOnesTooAndNeverTheMaster) {
  OpenWindow();
  const int master = loopback_.NewestEngine();
  VantroWindow& closed = OpenWindow();
  const int closedClient = loopback_.NewestEngine();
  OpenWindow();
  const int openClient = loopback_.NewestEngine();
  Close(closed);
  test::InterfaceEnd interface(loopback_);
  BroadcastEncodableToClientWindows("changed", OwnedValue("v"));
  const std::vector<InterfaceCall> once{{"changed", OwnedValue("v")}};
  EXPECT_TRUE(interface.Calls(master).empty());
  EXPECT_EQ(interface.Calls(closedClient), once);
  EXPECT_EQ(interface.Calls(openClient), once);
}

TEST_F(Windows, BroadcastSkipsAnEmptyEntryAndAWindowWithoutAHandler) {
  OpenWindow();
  OpenWindow();
  auto& registry = GetWindowRegistry();
  registry.insert(registry.begin() + 1, nullptr);
  registry.insert(registry.begin() + 1, std::make_unique<VantroWindow>(GetModuleHandleW(nullptr)));
  BroadcastEncodableToClientWindows("changed", OwnedValue("v"));
  EXPECT_EQ(log_.CountContaining("Sending to client window"), 1);
  EXPECT_TRUE(log_.Has("INFO BroadcastEncodableToClientWindows: Sending to client window 3"));
  registry.erase(registry.begin() + 2);
}

// New windows.

TEST_F(Windows, NewWindowIsPlacedShownAndRegistered) {
  VantroWindow& reference = OpenWindow();
  CreateNewWindow(reference);
  ASSERT_EQ(GetWindowRegistry().size(), 2u);
  VantroWindow& added = *GetWindowRegistry()[1];
  EXPECT_TRUE(IsWindowVisible(added.hwnd_));
  EXPECT_TRUE(log_.Has("INFO CreateNewWindow: New window created and shown successfully"));
}

TEST_F(Windows, NewWindowGoesBelowTheReferenceWhereThatFits) {
  VantroWindow& reference = OpenWindow();
  RECT work;
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
  // Too wide for a window beside it, but low enough for one below. The minimum size of a window is 640 by 360.
  SetWindowPos(reference.hwnd_, nullptr, 10, 0, work.right - 100, 362, SWP_NOZORDER);
  Inside(reference).height_ = 200;
  CreateNewWindow(reference);
  const RECT placed = WindowRectOf(GetWindowRegistry()[1]->hwnd_);
  const RECT from = WindowRectOf(reference.hwnd_);
  const int gap = std::clamp((static_cast<int>(work.bottom - work.top) - 200) / 6, 60, 150);
  EXPECT_EQ(placed.left, from.left);
  EXPECT_EQ(placed.top, from.bottom + gap);
}

TEST_F(Windows, NewWindowGoesToTheRightOfTheReferenceWhereThatFits) {
  VantroWindow& reference = OpenWindow();
  SetWindowPos(reference.hwnd_, nullptr, 0, 20, 640, 362, SWP_NOZORDER);
  Inside(reference).width_ = 200;
  CreateNewWindow(reference);
  const RECT placed = WindowRectOf(GetWindowRegistry().at(1)->hwnd_);
  EXPECT_EQ(placed.top, 20);
  EXPECT_TRUE(log_.Has("INFO CreateNewWindow: Placing window to the right with " + std::to_string(placed.left - 640) +
                       "px gap"));
}

TEST_F(Windows, NewWindowGoesLeftOfAReferenceAtTheRightEdge) {
  VantroWindow& reference = OpenWindow();
  RECT work;
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
  SetWindowPos(reference.hwnd_, nullptr, work.right - 640, 20, 640, 362, SWP_NOZORDER);
  Inside(reference).width_ = 200;
  CreateNewWindow(reference);
  const RECT placed = WindowRectOf(GetWindowRegistry().at(1)->hwnd_);
  EXPECT_EQ(placed.top, 20);
  const long gap = work.right - 640 - 200 - placed.left;
  EXPECT_TRUE(log_.Has("INFO CreateNewWindow: Placing window to the left with " + std::to_string(gap) + "px gap"));
}

TEST_F(Windows, WindowThatGoesWhileItIsRegisteredIsForgottenButNotDestroyed) {
  VantroWindow& first = OpenWindow();
  VantroWindow& second = OpenWindow();
  UnregisterWindow(&first);
  const std::unique_ptr<VantroWindow> owner(&first);
  ASSERT_EQ(GetWindowRegistry().size(), 1u);
  EXPECT_EQ(GetWindowRegistry()[0].get(), &second);
  EXPECT_TRUE(IsWindow(owner->hwnd_));
  EXPECT_TRUE(log_.Has("INFO UnregisterWindow: Window removed. Total windows now: 1"));
  DestroyWindow(owner->hwnd_);
}

TEST_F(Windows, ReferenceInFullscreenGivesTheLargeOffset) {
  VantroWindow& reference = OpenWindow();
  reference.ToggleFullscreen();
  CreateNewWindow(reference);
  RECT work;
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
  const RECT placed = WindowRectOf(GetWindowRegistry()[1]->hwnd_);
  EXPECT_EQ(log_.CountContaining("CreateNewWindow: Using large offset positioning (100px, 80px)"), 1);
  EXPECT_EQ(placed.left, work.left + 50);
  EXPECT_EQ(placed.top, work.top + 50);
}

// Returns the number of this process's windows of the main window class, in the list or not. Other test programs may
// have windows on the same desktop.
int CountMainWindows() {
  int count = 0;
  HWND window = nullptr;
  while ((window = FindWindowExW(nullptr, window, L"VantroWindowClass", nullptr))) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId()) ++count;
  }
  return count;
}

TEST_F(Windows, FailedNewWindowLeavesNoNativeWindowBehind) {
  VantroWindow& reference = OpenWindow();
  const int before = CountMainWindows();
  ASSERT_GE(before, 1);
  vlc_.Fail("libvlc_new", 100);
  CreateNewWindow(reference);
  EXPECT_EQ(CountMainWindows(), before);
  EXPECT_TRUE(IsWindow(reference.hwnd_));
  EXPECT_EQ(log_.CountContaining("WM_DESTROY: Window "), 0) << "the object ends first";
}

TEST_F(Windows, FailedNewWindowIsSilentAndLeavesNoNewestWindow) {
  VantroWindow& reference = OpenWindow();
  vlc_.Fail("libvlc_new", 100);
  CreateNewWindow(reference);
  EXPECT_EQ(GetWindowRegistry().size(), 1u);
  EXPECT_EQ(VantroWindow::instance_, nullptr);
  EXPECT_TRUE(log_.Has("ERROR CreateNewWindow: Failed to initialize new window"));
  EXPECT_EQ(log_.CountContaining("not found in registry"), 1);
  EXPECT_EQ(DrainQueue(), 0);
}

BOOL WINAPI ThrowOnUpdate(HWND) { throw std::runtime_error("no more of this"); }

TEST_F(Windows, ExceptionInANewWindowIsLoggedAndGoesNoFurther) {
  VantroWindow& reference = OpenWindow();
  const int before = CountMainWindows();
  const ImportHook hook("user32.dll", "UpdateWindow", ThrowOnUpdate);
  EXPECT_NO_THROW(CreateNewWindow(reference));
  EXPECT_TRUE(log_.Has("ERROR CreateNewWindow: Exception creating new window: no more of this"));
  EXPECT_EQ(CountMainWindows(), before);
  EXPECT_EQ(GetWindowRegistry().size(), 1u);
  EXPECT_TRUE(IsWindow(reference.hwnd_));
}

BOOL WINAPI ThrowANumber(HWND) { throw 7; }

TEST_F(Windows, UnknownExceptionInANewWindowIsLoggedAndGoesNoFurther) {
  VantroWindow& reference = OpenWindow();
  const ImportHook hook("user32.dll", "UpdateWindow", ThrowANumber);
  EXPECT_NO_THROW(CreateNewWindow(reference));
  EXPECT_TRUE(log_.Has("ERROR CreateNewWindow: Unknown exception creating new window"));
}

TEST_F(Windows, PostedRequestAndDirectCallDoTheSame) {
  VantroWindow& reference = OpenWindow();
  CreateNewWindow(reference);
  PostMessageA(reference.hwnd_, WM_VANTRO_NEW_WINDOW, 0, 0);
  ASSERT_TRUE(test::PumpUntil([] { return GetWindowRegistry().size() == 3; }));
  EXPECT_TRUE(WindowRectOf(GetWindowRegistry()[1]->hwnd_) == WindowRectOf(GetWindowRegistry()[2]->hwnd_));
}

}  // namespace
}  // namespace vantro
