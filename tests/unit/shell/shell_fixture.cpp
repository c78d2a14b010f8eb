#include "tests/unit/shell/shell_fixture.h"

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "flutter_host/standard_method_codec.h"
#include "shell/window_manager.h"
#include "tests/support/message_queue.h"

namespace vantro::test {

namespace {

std::wstring ScratchKeyPath() { return L"Software\\VantroTest\\" + std::to_wstring(GetCurrentProcessId()); }

}  // namespace

ScratchRegistry::ScratchRegistry() {
  HKEY key = nullptr;
  EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, ScratchKeyPath().c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                            nullptr),
            ERROR_SUCCESS);
  EXPECT_EQ(RegOverridePredefKey(HKEY_CURRENT_USER, key), ERROR_SUCCESS);
  RegCloseKey(key);
}

ScratchRegistry::~ScratchRegistry() {
  RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
  RegDeleteTreeW(HKEY_CURRENT_USER, ScratchKeyPath().c_str());
}

bool PumpUntil(const std::function<bool()>& condition) {
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > limit) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
    DrainQueue();
  }
  return true;
}

// A window's destructor unregisters the class. That fails while another window of the class exists, and the process
// registers the class only once. So one extra window keeps the class for the next test.
void KeepWindowClass() {
  static const HWND keeper = CreateWindowExW(0, L"VantroWindowClass", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                             GetModuleHandleW(nullptr), nullptr);
  EXPECT_NE(keeper, nullptr);
}

ShellTest::ShellTest() {
  auto window = MakeWindow();
  window_ = window.get();
  RegisterWindow(std::move(window));
}

ShellTest::~ShellTest() {
  // Removed from the list first, because the destructors search the list for their window.
  std::vector<std::unique_ptr<VantroWindow>> windows = std::exchange(GetWindowRegistry(), {});
  for (const auto& window : windows) {
    if (IsWindow(window->hwnd_)) DestroyWindow(window->hwnd_);
  }
  windows.clear();
  // The destructor of the last window posts a quit message. It must not reach the message loop of the next test.
  DrainQueue();
}

VantroWindow& ShellTest::AddWindow() {
  auto window = MakeWindow();
  VantroWindow& added = *window;
  RegisterWindow(std::move(window));
  return added;
}

std::unique_ptr<VantroWindow> ShellTest::MakeWindow() {
  auto window = std::make_unique<VantroWindow>(GetModuleHandleW(nullptr));
  EXPECT_TRUE(window->Initialize());
  KeepWindowClass();
  ShowWindow(window->hwnd_, SW_SHOWNORMAL);
  UpdateWindow(window->hwnd_);
  DrainQueue();
  return window;
}

std::vector<std::string> ShellTest::CallsToInterface() const {
  std::vector<std::string> calls;
  const StandardMethodCodec& codec = StandardMethodCodec::GetInstance();
  for (const SentMessages::Message& message : sent_.All()) {
    MethodCall call;
    if (!codec.DecodeMethodCall(message.bytes.data(), message.bytes.size(), &call)) continue;
    const auto text = call.arguments().Get<std::string_view>();
    calls.emplace_back(call.method_name());
    if (text) calls.back().append("(").append(*text).append(")");
  }
  return calls;
}

void ShellTest::SetClientWidth(VantroWindow& window, int width) {
  RECT outer{}, client{};
  GetWindowRect(window.hwnd_, &outer);
  GetClientRect(window.hwnd_, &client);
  const int frame = (outer.right - outer.left) - client.right;
  // Without WM_WINDOWPOSCHANGING, which would limit the window to the screen's size.
  SetWindowPos(window.hwnd_, nullptr, 0, 0, width + frame, outer.bottom - outer.top,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOSENDCHANGING);
}

}  // namespace vantro::test
