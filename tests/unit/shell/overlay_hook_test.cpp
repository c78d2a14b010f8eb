// The hook that follows the newest window: its installation, the messages that it acts on, and the chain of hooks.
#include <string>
#include <utility>
#include <vector>

#include "shell/window_manager.h"
#include "tests/support/import_hook.h"
#include "tests/unit/shell/call_log.h"
#include "tests/unit/shell/window_fixture.h"

namespace vantro {
namespace {

using test::ImportHook;
using test::Inside;

class OverlayHook : public test::WindowTest {};

struct HookCall {
  int kind;
  HOOKPROC procedure;
  HINSTANCE module;
  DWORD thread;
};
HookCall hookCall{};
HHOOK WINAPI RecordSetHook(int kind, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
  hookCall = {kind, procedure, module, thread};
  return reinterpret_cast<HHOOK>(&hookCall);
}
std::vector<HHOOK> removedHooks;
BOOL WINAPI RecordUnhook(HHOOK hook) {
  removedHooks.push_back(hook);
  return TRUE;
}

TEST_F(OverlayHook, IsForTheSentMessagesOfThisThreadAndRemovedOnce) {
  const HWND window = nullptr;
  const std::unique_ptr<FlutterEngine> engine;
  FlutterOverlay overlay(window, engine);
  const ImportHook set("user32.dll", "SetWindowsHookExA", RecordSetHook);
  const ImportHook unhook("user32.dll", "UnhookWindowsHookEx", RecordUnhook);
  removedHooks.clear();
  overlay.RemoveWindowHook();
  EXPECT_TRUE(removedHooks.empty());
  overlay.InstallWindowHook();
  EXPECT_EQ(hookCall.kind, WH_CALLWNDPROC);
  EXPECT_EQ(hookCall.procedure, &FlutterOverlay::WindowSyncHookProc);
  EXPECT_EQ(hookCall.module, GetModuleHandleA(nullptr));
  EXPECT_EQ(hookCall.thread, GetCurrentThreadId());
  overlay.RemoveWindowHook();
  overlay.RemoveWindowHook();
  EXPECT_EQ(removedHooks, std::vector<HHOOK>{reinterpret_cast<HHOOK>(&hookCall)});
}

int SyncsLogged(const test::LogCapture& log) {
  return log.CountContaining("SyncFlutterOverlayPosition: Updated overlay to client area");
}

TEST_F(OverlayHook, MovingTheNewestWindowSyncsTwice) {
  VantroWindow& window = OpenWindow();
  const int before = SyncsLogged(log_);
  SendMessageA(window.hwnd_, WM_MOVE, 0, 0);
  EXPECT_EQ(SyncsLogged(log_) - before, 2);
}

TEST_F(OverlayHook, ResizingTheNewestWindowSyncsTwice) {
  VantroWindow& window = OpenWindow();
  const int before = SyncsLogged(log_);
  SendMessageA(window.hwnd_, WM_SIZE, SIZE_RESTORED, 0);
  EXPECT_EQ(SyncsLogged(log_) - before, 2);
}

TEST_F(OverlayHook, MovingTheNewestOfSeveralWindowsSyncsTwiceToo) {
  OpenWindow();
  OpenWindow();
  VantroWindow& newest = OpenWindow();
  const int before = SyncsLogged(log_);
  SendMessageA(newest.hwnd_, WM_MOVE, 0, 0);
  EXPECT_EQ(SyncsLogged(log_) - before, 2);
}

TEST_F(OverlayHook, MovingAnOlderWindowSyncsOnceThroughItsHandler) {
  VantroWindow& older = OpenWindow();
  OpenWindow();
  const int before = SyncsLogged(log_);
  SendMessageA(older.hwnd_, WM_MOVE, 0, 0);
  EXPECT_EQ(SyncsLogged(log_) - before, 1);
}

TEST_F(OverlayHook, ShowingReachesTheNewestWindowOnly) {
  VantroWindow& older = OpenWindow();
  VantroWindow& newest = OpenWindow();
  int before = SyncsLogged(log_);
  SendMessageA(older.hwnd_, WM_SHOWWINDOW, TRUE, 0);
  EXPECT_EQ(SyncsLogged(log_), before);
  before = SyncsLogged(log_);
  SendMessageA(newest.hwnd_, WM_SHOWWINDOW, TRUE, 0);
  EXPECT_EQ(SyncsLogged(log_) - before, 1);
}

// A hook of another program that passes on a copy of the message.
LRESULT CALLBACK PassACopyOn(int code, WPARAM wParam, LPARAM lParam) {
  CWPSTRUCT copy = *reinterpret_cast<const CWPSTRUCT*>(lParam);
  return CallNextHookEx(nullptr, code, wParam, reinterpret_cast<LPARAM>(&copy));
}

TEST_F(OverlayHook, SyncsOnceAMessageEvenIfTheChainPassesACopyOn) {
  OpenWindow();
  const HHOOK between = SetWindowsHookExA(WH_CALLWNDPROC, PassACopyOn, nullptr, GetCurrentThreadId());
  ASSERT_TRUE(between);
  VantroWindow& newest = OpenWindow();
  const int before = SyncsLogged(log_);
  SendMessageA(newest.hwnd_, WM_SHOWWINDOW, TRUE, 0);
  EXPECT_EQ(SyncsLogged(log_) - before, 1);
  UnhookWindowsHookEx(between);
}

TEST_F(OverlayHook, SameMessageSentTwiceSyncsTwice) {
  VantroWindow& window = OpenWindow();
  const int before = SyncsLogged(log_);
  SendMessageA(window.hwnd_, WM_SHOWWINDOW, TRUE, 0);
  SendMessageA(window.hwnd_, WM_SHOWWINDOW, TRUE, 0);
  EXPECT_EQ(SyncsLogged(log_) - before, 2);
}

struct Activation {
  WPARAM wParam;
  bool raises;
};

class OverlayActivation : public test::WindowTest, public testing::WithParamInterface<Activation> {};

TEST_P(OverlayActivation, RaisesForPlainActivationOnly) {
  VantroWindow& window = OpenWindow();
  CWPSTRUCT sent{0, GetParam().wParam, WM_ACTIVATE, window.hwnd_};
  const HWND other =
      CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
  SetWindowPos(other, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  const test::CallLog calls(window);
  FlutterOverlay::WindowSyncHookProc(0, 0, reinterpret_cast<LPARAM>(&sent));
  EXPECT_EQ(calls.Of("SetWindowPos").size(), GetParam().raises ? 1u : 0u);
  DestroyWindow(other);
}

INSTANTIATE_TEST_SUITE_P(EachKind, OverlayActivation,
                         testing::Values(Activation{WA_INACTIVE, false}, Activation{WA_ACTIVE, true},
                                         Activation{WA_CLICKACTIVE, true}, Activation{MAKEWPARAM(WA_ACTIVE, 1), false},
                                         Activation{MAKEWPARAM(WA_CLICKACTIVE, 1), false}));

TEST_F(OverlayHook, HookWithANegativeCodePassesOnWithoutLooking) {
  VantroWindow& window = OpenWindow();
  CWPSTRUCT sent{0, 0, WM_MOVE, window.hwnd_};
  const int before = SyncsLogged(log_);
  FlutterOverlay::WindowSyncHookProc(-1, 0, reinterpret_cast<LPARAM>(&sent));
  EXPECT_EQ(SyncsLogged(log_), before);
}

TEST_F(OverlayHook, HookIgnoresAMissingStructureAndOtherWindows) {
  VantroWindow& window = OpenWindow();
  CWPSTRUCT sent{0, 0, WM_MOVE, Inside(window).flutterHostWindow_};
  const int before = SyncsLogged(log_);
  FlutterOverlay::WindowSyncHookProc(0, 0, 0);
  FlutterOverlay::WindowSyncHookProc(0, 0, reinterpret_cast<LPARAM>(&sent));
  EXPECT_EQ(SyncsLogged(log_), before);
}

struct PassedOn {
  HHOOK hook;
  int code;
  WPARAM wParam;
  LPARAM lParam;

  bool operator==(const PassedOn&) const = default;
};
PassedOn passedOn{};
LRESULT WINAPI RecordNextHook(HHOOK hook, int code, WPARAM wParam, LPARAM lParam) {
  passedOn = {hook, code, wParam, lParam};
  return 4711;
}

TEST_F(OverlayHook, HookPassesOnWithTheNewestWindowsHook) {
  VantroWindow& window = OpenWindow();
  const ImportHook hook("user32.dll", "CallNextHookEx", RecordNextHook);
  EXPECT_EQ(FlutterOverlay::WindowSyncHookProc(-3, 5, 7), 4711);
  EXPECT_EQ(passedOn, (PassedOn{Inside(window).windowHook_, -3, 5, 7}));
}

TEST_F(OverlayHook, HookWithoutANewestWindowPassesOnWithNone) {
  OpenWindow();
  VantroWindow* const newest = std::exchange(VantroWindow::instance_, nullptr);
  const ImportHook hook("user32.dll", "CallNextHookEx", RecordNextHook);
  EXPECT_EQ(FlutterOverlay::WindowSyncHookProc(2, 5, 7), 4711);
  EXPECT_EQ(passedOn, (PassedOn{nullptr, 2, 5, 7}));
  VantroWindow::instance_ = newest;
}

TEST_F(OverlayHook, AfterTheNewestWindowClosedTheHookMatchesNoLiveWindow) {
  VantroWindow& older = OpenWindow();
  VantroWindow& newest = OpenWindow();
  SendMessageA(newest.hwnd_, WM_CLOSE, 0, 0);
  ASSERT_EQ(VantroWindow::instance_, &newest);
  const int before = SyncsLogged(log_);
  SendMessageA(older.hwnd_, WM_SHOWWINDOW, TRUE, 0);
  EXPECT_EQ(SyncsLogged(log_), before);
}

}  // namespace
}  // namespace vantro
