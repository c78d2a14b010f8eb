// The system calls of a new window, and a new window during a broadcast.
#include <algorithm>
#include <string>

#include "flutter_host/embedding_api.h"
#include "shell/window_manager.h"
#include "tests/support/import_hook.h"
#include "tests/support/interface_end.h"
#include "tests/support/line_states.h"
#include "tests/unit/shell/call_log.h"
#include "tests/unit/shell/window_fixture.h"

namespace vantro {
namespace {

using test::ImportHook;
using test::InterfaceCall;
using test::WindowRectOf;

class NewWindow : public test::WindowTest {};

size_t Placements(const test::CallLog& calls) {
  const auto& made = calls.Calls();
  return static_cast<size_t>(std::count_if(made.begin(), made.end(), [](const std::string& call) {
    return call.starts_with("SetWindowPos other") && call.ends_with(" 0x0 SWP_NOSIZE|SWP_NOZORDER");
  }));
}

TEST_F(NewWindow, IsPlacedWithoutSizeAndOrderThenShownNormalThenUpdated) {
  VantroWindow& reference = OpenWindow();
  const test::CallLog calls(reference);
  const test::LineStates states([&] { return std::string(Placements(calls) == 0 ? "not placed" : "placed"); });
  CreateNewWindow(reference);
  EXPECT_EQ(states.At("INFO CreateNewWindow: Using large offset positioning ("), "not placed");
  ASSERT_EQ(GetWindowRegistry().size(), 2u);
  const RECT placed = WindowRectOf(GetWindowRegistry()[1]->hwnd_);
  const std::string place = std::to_string(placed.left) + "," + std::to_string(placed.top);
  const auto& made = calls.Calls();
  ASSERT_GE(made.size(), 3u);
  EXPECT_EQ(std::vector<std::string>(made.end() - 3, made.end()),
            (std::vector<std::string>{"SetWindowPos other after=HWND_TOP " + place + " 0x0 SWP_NOSIZE|SWP_NOZORDER",
                                      "ShowWindow other SW_SHOWNORMAL", "UpdateWindow other"}));
}

HWND askedWindow = nullptr;
DWORD askedFlags = 0;
HMONITOR WINAPI OnMonitorFromWindow(HWND window, DWORD flags) {
  askedWindow = window;
  askedFlags = flags;
  return reinterpret_cast<HMONITOR>(4711);
}
HMONITOR describedMonitor = nullptr;
BOOL WINAPI OnGetMonitorInfo(HMONITOR monitor, MONITORINFO* info) {
  describedMonitor = monitor;
  EXPECT_EQ(info->cbSize, sizeof *info);
  info->rcMonitor = {-4000, -4000, 4000, 4000};
  info->rcWork = {3000, 200, 3900, 900};
  return TRUE;
}

TEST_F(NewWindow, GoesByTheWorkAreaOfTheMonitorNearestToTheReference) {
  VantroWindow& reference = OpenWindow();
  const ImportHook from("user32.dll", "MonitorFromWindow", OnMonitorFromWindow);
  const ImportHook info("user32.dll", "GetMonitorInfoA", OnGetMonitorInfo);
  // The reference is over the right and the lower edge of that area, so the new window goes to its upper left corner.
  SetWindowPos(reference.hwnd_, nullptr, 3800, 800, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  CreateNewWindow(reference);
  EXPECT_EQ(askedWindow, reference.hwnd_);
  EXPECT_EQ(askedFlags, static_cast<DWORD>(MONITOR_DEFAULTTONEAREST));
  EXPECT_EQ(describedMonitor, reinterpret_cast<HMONITOR>(4711));
  const RECT placed = WindowRectOf(GetWindowRegistry().at(1)->hwnd_);
  EXPECT_EQ(placed.left, 3050);
  EXPECT_EQ(placed.top, 250);
}

std::function<void()> onFirstSend;
decltype(&FlutterDesktopMessengerSend) realSend = nullptr;
bool SendAndRun(FlutterDesktopMessengerRef messenger, const char* channel, const uint8_t* message, size_t size) {
  if (const auto action = std::exchange(onFirstSend, nullptr)) action();
  return realSend(messenger, channel, message, size);
}

TEST_F(NewWindow, OpenedDuringABroadcastReceivesItToo) {
  OpenWindow();
  OpenWindow();
  const ImportHook hook("flutter_windows.dll", "FlutterDesktopMessengerSend", SendAndRun);
  realSend = hook.Original<decltype(realSend)>();
  test::InterfaceEnd interface(loopback_);
  int opened = 0;
  onFirstSend = [&] {
    OpenWindow();
    opened = loopback_.NewestEngine();
    interface.ClearCalls();
  };
  BroadcastEncodableToClientWindows("changed", OwnedValue("v"));
  EXPECT_EQ(interface.Calls(opened), (std::vector<InterfaceCall>{{"changed", OwnedValue("v")}}));
}

}  // namespace
}  // namespace vantro
