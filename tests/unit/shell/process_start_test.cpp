// The start and the end of the process. A separate program, because it installs the process's filters and a shutdown
// can't be undone.
#include <gtest/gtest.h>
#include <windows.h>
// After windows.h.
#include <objbase.h>

#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "shell/crash_filter.h"
#include "tests/support/flag_names.h"
#include "tests/support/import_hook.h"
#include "tests/support/line_order.h"
#include "tests/support/line_states.h"
#include "tests/support/log_capture.h"
#include "tests/support/loopback.h"
#include "tests/support/message_queue.h"
#include "tests/support/scripted_vlc.h"
#include "tests/unit/shell/shell_fixture.h"

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int showCommand);

namespace vantro {
namespace {

using test::ImportHook;
using test::InOrder;
using test::Note;

HRESULT comResult = S_OK;
HANDLE mutex = nullptr;
bool anotherInstance = false;
std::vector<std::pair<int, MSG>> loopSteps;  // the results of GetMessageA, call by call

// The replacements of the system's functions. Each records its call and the arguments that the tests check.
bool EndsByTheFilter() { return std::get_terminate() == RaiseUncaughtException; }
LPTOP_LEVEL_EXCEPTION_FILTER WINAPI OnSetFilter(LPTOP_LEVEL_EXCEPTION_FILTER) {
  Note("SetUnhandledExceptionFilter");
  return nullptr;
}
HWND runningWindow = nullptr;
bool refusePost = false;
HWND WINAPI OnFindWindow(const wchar_t* name, const wchar_t* title) {
  const std::wstring wide = name ? name : L"any class";
  Note("FindWindowW " + std::string(wide.begin(), wide.end()) + (title ? " with a title" : ""));
  return runningWindow;
}
BOOL WINAPI OnPostMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  EXPECT_EQ(window, runningWindow);
  Note("PostMessageA " + std::to_string(message) + " " + std::to_string(wParam) + " " + std::to_string(lParam));
  return !refusePost;
}
HANDLE WINAPI OnCreateMutex(SECURITY_ATTRIBUTES* attributes, BOOL owned, const wchar_t* name) {
  const std::wstring wide = name;
  Note("CreateMutexW " + std::string(wide.begin(), wide.end()) + (owned ? " owned" : " unowned") +
       (attributes ? " with attributes" : ""));
  mutex = CreateEventA(nullptr, FALSE, FALSE, nullptr);  // an event, so that no mutex remains after the test
  SetLastError(anotherInstance ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS);
  return mutex;
}
BOOL WINAPI OnCloseHandle(HANDLE handle) {
  if (handle == mutex) Note("CloseHandle of the mutex");
  return TRUE;
}
HRESULT WINAPI OnCoInitialize(void*, DWORD flags) {
  Note("CoInitializeEx " + std::to_string(flags));
  return comResult;
}
void WINAPI OnCoUninitialize() { Note("CoUninitialize"); }
int WINAPI OnMessageBox(HWND owner, const char* text, const char* caption, UINT style) {
  Note(std::string("MessageBoxA ") + caption + ": " + text + " (" + std::to_string(style) + ")" +
       (owner ? " with an owner" : ""));
  return IDOK;
}
BOOL WINAPI OnShowWindow(HWND, int command) {
  Note("ShowWindow " + test::ShowCommand(command));
  return TRUE;
}
BOOL WINAPI OnUpdateWindow(HWND) {
  Note("UpdateWindow");
  return TRUE;
}
BOOL WINAPI OnGetMessage(MSG* message, HWND window, UINT first, UINT last) {
  EXPECT_EQ(window, nullptr);
  EXPECT_EQ(first, 0u);
  EXPECT_EQ(last, 0u);
  const auto [result, answer] = loopSteps.front();
  loopSteps.erase(loopSteps.begin());
  if (result != -1) *message = answer;
  Note("GetMessageA " + std::to_string(result));
  return result;
}
BOOL WINAPI OnTranslateMessage(const MSG* message) {
  Note("TranslateMessage " + std::to_string(message->message));
  return FALSE;
}
LRESULT WINAPI OnDispatchMessage(const MSG* message) {
  Note("DispatchMessageA " + std::to_string(message->message));
  return 0;
}

class Process : public testing::Test {
 protected:
  Process() {
    comResult = S_OK;
    anotherInstance = false;
    Hook("kernel32.dll", "SetUnhandledExceptionFilter", OnSetFilter);
    Hook("kernel32.dll", "CreateMutexW", OnCreateMutex);
    Hook("kernel32.dll", "CloseHandle", OnCloseHandle);
    Hook("ole32.dll", "CoInitializeEx", OnCoInitialize);
    Hook("ole32.dll", "CoUninitialize", OnCoUninitialize);
    Hook("user32.dll", "MessageBoxA", OnMessageBox);
  }
  ~Process() override {
    hooks_.clear();
    test::DrainQueue();
  }
  template <typename Function>
  void Hook(const char* library, const char* name, Function* replacement) {
    hooks_.push_back(std::make_unique<ImportHook>(library, name, replacement));
  }
  static int Run(int showCommand = SW_SHOWNORMAL) {
    return WinMain(GetModuleHandleA(nullptr), nullptr, nullptr, showCommand);
  }

  test::ScratchRegistry registry_;
  test::ScriptedVlc vlc_;
  test::Loopback loopback_;
  test::LogCapture log_;
  std::vector<std::unique_ptr<ImportHook>> hooks_;
};

TEST_F(Process, WithoutComShowsABoxAndEndsWith1) {
  comResult = E_OUTOFMEMORY;
  EXPECT_EQ(Run(), 1);
  EXPECT_TRUE(InOrder(
      log_, {"ERROR Failed to initialize COM: 0x8007000E", "(call) MessageBoxA Error: Failed to initialize COM (16)"}));
  EXPECT_EQ(log_.CountContaining("Window instance created"), 0);
  EXPECT_EQ(log_.CountContaining("CoUninitialize"), 0);
  EXPECT_EQ(log_.CountContaining(" with an owner"), 0);
}

TEST_F(Process, LeavesComBeforeAWindowThatFailedToStartGoes) {
  vlc_.Fail("libvlc_new", 100);
  EXPECT_EQ(Run(), 1);
  EXPECT_TRUE(InOrder(log_, {"ERROR Failed to initialize application window",
                             "(call) MessageBoxA Error: Failed to initialize application (16)", "(call) CoUninitialize",
                             "~VantroWindow: Destructor called for window "}));
  EXPECT_EQ(log_.CountContaining("CloseHandle of the mutex"), 0) << "it guards until the process has gone";
  EXPECT_EQ(log_.CountContaining("(call) ShowWindow"), 0);
}

TEST_F(Process, AsASecondInstanceTouchesNoComAndClosesTheMutex) {
  anotherInstance = true;
  EXPECT_EQ(Run(), 0);
  EXPECT_TRUE(InOrder(log_, {"(call) CreateMutexW", "INFO Vantro instance already running - requesting new window",
                             "(call) CloseHandle of the mutex"}));
  EXPECT_EQ(log_.CountContaining("CoInitializeEx"), 0);
}

TEST_F(Process, AsASecondInstancePostsARequestToAnyWindowOfTheRunningOne) {
  anotherInstance = true;
  Hook("user32.dll", "FindWindowW", OnFindWindow);
  Hook("user32.dll", "PostMessageA", OnPostMessage);
  runningWindow = GetDesktopWindow();
  for (const bool refused : {false, true}) {
    refusePost = refused;
    const test::LogCapture log;
    EXPECT_EQ(Run(), 0);
    EXPECT_TRUE(InOrder(
        log, {"INFO Vantro instance already running - requesting new window", "(call) FindWindowW VantroWindowClass",
              "INFO Found existing Vantro window: ", "(call) PostMessageA 1025 0 0",
              refused ? "INFO PostMessage result: FAILED" : "INFO PostMessage result: SUCCESS",
              "(call) CloseHandle of the mutex"}));
    EXPECT_EQ(log.CountContaining(" with a title"), 0);
  }
}

TEST_F(Process, AsASecondInstanceWithoutAWindowToAskPostsNothing) {
  anotherInstance = true;
  Hook("user32.dll", "FindWindowW", OnFindWindow);
  Hook("user32.dll", "PostMessageA", OnPostMessage);
  runningWindow = nullptr;
  EXPECT_EQ(Run(), 0);
  EXPECT_TRUE(InOrder(log_, {"(call) FindWindowW VantroWindowClass",
                             "WARNING Could not find existing Vantro window - no instance running?",
                             "(call) CloseHandle of the mutex"}));
  EXPECT_EQ(log_.CountContaining("PostMessage"), 0);
}

TEST_F(Process, FiltersCrashesThenUncaughtExceptionsBeforeItsFirstLine) {
  std::set_terminate(std::abort);
  anotherInstance = true;
  const test::LineStates states([] { return std::string(EndsByTheFilter() ? "by the filter" : "by itself"); });
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(states.At("(call) SetUnhandledExceptionFilter"), "by itself");
  EXPECT_EQ(states.At("INFO Vantro Initialization Started"), "by the filter");
}

// This test is the last one, because a shutdown can't be undone.
TEST_F(Process, RunsItsStepsInOrderFromTheCrashFilterToTheMutex) {
  Hook("user32.dll", "ShowWindow", OnShowWindow);
  Hook("user32.dll", "UpdateWindow", OnUpdateWindow);
  Hook("user32.dll", "GetMessageA", OnGetMessage);
  Hook("user32.dll", "TranslateMessage", OnTranslateMessage);
  Hook("user32.dll", "DispatchMessageA", OnDispatchMessage);
  MSG message{}, quit{};
  message.message = WM_APP;
  quit.message = WM_QUIT;
  quit.wParam = 7;
  // A failure (-1) is handled like a message, so the previous message is dispatched again.
  loopSteps = {{1, message}, {-1, {}}, {0, quit}};

  EXPECT_EQ(Run(SW_SHOWMINNOACTIVE), 7);

  const std::string served = std::to_string(WM_APP);
  EXPECT_TRUE(InOrder(log_, {
                                "(call) SetUnhandledExceptionFilter",
                                "INFO Vantro Initialization Started",
                                "(call) CreateMutexW Vantro_SingleInstance_Mutex unowned",
                                "(call) CoInitializeEx 0",
                                "INFO COM initialized successfully",
                                "INFO Window instance created",
                                "INFO Window initialized successfully",
                                "(call) ShowWindow SW_SHOWMINNOACTIVE",
                                "(call) UpdateWindow",
                                "INFO Window shown",
                                "INFO RegisterWindow: Total windows now: 1",
                                "INFO Initial window registered with window manager",
                                "(call) GetMessageA 1",
                                "(call) TranslateMessage " + served,
                                "(call) DispatchMessageA " + served,
                                "(call) GetMessageA -1",
                                "(call) TranslateMessage " + served,
                                "(call) DispatchMessageA " + served,
                                "(call) GetMessageA 0",
                                "INFO ShutdownWindowManager: Setting shutdown flag and clearing all windows",
                                "INFO ~VantroWindow: IsShuttingDown() = true",
                                "(call) CoUninitialize",
                                "(call) CloseHandle of the mutex",
                                "INFO Application terminated",
                            }));
  EXPECT_EQ(log_.CountContaining(" with attributes"), 0);
  EXPECT_EQ(log_.CountContaining("(call) DispatchMessageA"), 2);
  EXPECT_EQ(log_.Lines().back(), "INFO Application terminated");
}

}  // namespace
}  // namespace vantro
