// The calls with which the host takes the view's window: their arguments, and the log lines before them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdarg>
#include <cstdio>
#include <string>
#include <vector>

#include "common/log.h"
#include "flutter_host/embedding_api.h"
#include "flutter_host/flutter_engine.h"
#include "tests/support/import_hook.h"
#include "tests/support/log_capture.h"
#include "tests/support/loopback.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;

constexpr char kFirstLine[] = "INFO FlutterViewController created successfully";

// The host's calls and log lines in order, starting with the line about the view.
class Steps {
 public:
  Steps() { current = this; }
  ~Steps() { current = nullptr; }
  Steps(const Steps&) = delete;
  Steps& operator=(const Steps&) = delete;

  std::vector<std::string> Take() {
    TakeLines();
    return steps_;
  }

 private:
  static HWND ViewWindow(FlutterDesktopViewRef view) {
    current->Note("FlutterDesktopViewGetHWND");
    return current->viewWindow_.Original<decltype(&FlutterDesktopViewGetHWND)>()(view);
  }
  static HWND WINAPI Reparent(HWND window, HWND parent) {
    const HWND former = current->parent_.Original<decltype(&SetParent)>()(window, parent);
    current->Note("SetParent %p %p", window, parent);
    return former;
  }
  static LONG_PTR WINAPI ChangeLong(HWND window, int index, LONG_PTR value) {
    const LONG_PTR former = current->long_.Original<decltype(&SetWindowLongPtrA)>()(window, index, value);
    current->Note("SetWindowLongPtrA %p %d adds %#llx, removes %#llx", window, index, value & ~former, former & ~value);
    return former;
  }
  static BOOL WINAPI Place(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
    current->Note("SetWindowPos %p after %p %d,%d %dx%d flags %u", window, after, x, y, width, height, flags);
    return current->position_.Original<decltype(&SetWindowPos)>()(window, after, x, y, width, height, flags);
  }
  static BOOL WINAPI Show(HWND window, int command) {
    current->Note("ShowWindow %p %d", window, command);
    return current->show_.Original<decltype(&ShowWindow)>()(window, command);
  }

  VANTRO_PRINTF_FORMAT(2, 3) void Note(const char* format, ...) {
    TakeLines();
    char text[160];
    va_list values;
    va_start(values, format);
    vsnprintf(text, sizeof text, format, values);
    va_end(values);
    steps_.push_back(text);
  }
  void TakeLines() {
    const std::vector<std::string> lines = log_.Lines();
    for (; linesTaken_ < lines.size(); ++linesTaken_) {
      if (lines[linesTaken_] == kFirstLine) steps_.clear();
      steps_.push_back(lines[linesTaken_]);
    }
  }

  static Steps* current;
  LogCapture log_;
  size_t linesTaken_ = 0;
  std::vector<std::string> steps_;
  ImportHook viewWindow_{"flutter_windows.dll", "FlutterDesktopViewGetHWND", &ViewWindow};
  ImportHook parent_{"user32.dll", "SetParent", &Reparent};
  ImportHook long_{"user32.dll", "SetWindowLongPtrA", &ChangeLong};
  ImportHook position_{"user32.dll", "SetWindowPos", &Place};
  ImportHook show_{"user32.dll", "ShowWindow", &Show};
};

Steps* Steps::current = nullptr;

class ViewCalls : public testing::Test {
 protected:
  ~ViewCalls() override { DestroyWindow(parent_); }
  // Replaces the first %p by the view's handle and the second by the parent's.
  std::string With(std::string text) const {
    for (const HWND window : {engine_.flutterWindow_, parent_}) {
      char handle[24];
      std::snprintf(handle, sizeof handle, "%p", static_cast<void*>(window));
      const size_t at = text.find("%p");
      if (at != std::string::npos) text.replace(at, 2, handle);
    }
    return text;
  }

  Loopback loopback_;
  HWND parent_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 640, 480, nullptr, nullptr, nullptr, nullptr);
  FlutterEngine engine_;
};

TEST_F(ViewCalls, ViewIsReparentedStyledPlacedAndShownInThisOrder) {
  Steps steps;
  ASSERT_TRUE(engine_.Initialize(parent_));
  EXPECT_THAT(steps.Take(), ElementsAre(kFirstLine, "FlutterDesktopViewGetHWND",
                                        With("INFO Successfully got Flutter window handle: %p"),
                                        With("SetParent %p %p"), With("SetWindowLongPtrA %p -16 adds 0, removes 0"),
                                        "INFO Flutter child window configured for DWM composition",
                                        With("SetWindowPos %p after 0000000000000000 0,0 800x600 flags 64"),
                                        "INFO Flutter window positioned and styled as child window",
                                        With("ShowWindow %p 5"), "INFO Flutter view set to visible",
                                        "INFO ==== Flutter Engine Initialization Completed Successfully ===="));
}

TEST_F(ViewCalls, WithoutAParentTheViewIsNotReparented) {
  Steps steps;
  ASSERT_TRUE(engine_.Initialize(nullptr));
  for (const std::string& step : steps.Take()) EXPECT_FALSE(step.starts_with("SetParent")) << step;
}

TEST_F(ViewCalls, ViewWithoutAWindowIsNotTouched) {
  LoopbackFaults faults{};
  faults.no_view_window = 1;
  loopback_.SetFaults(faults);
  Steps steps;
  ASSERT_TRUE(engine_.Initialize(parent_));
  EXPECT_THAT(steps.Take(),
              ElementsAre(kFirstLine, "FlutterDesktopViewGetHWND",
                          "WARNING WARNING: Could not get Flutter window handle", "INFO Flutter view set to visible",
                          "INFO ==== Flutter Engine Initialization Completed Successfully ===="));
}

// Returns a view window without the child style.
HWND WINAPI PopupInsteadOfView(void*) {
  static const HWND window =
      CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_BORDER, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
  return window;
}

TEST_F(ViewCalls, ChildStyleIsAddedToTheStylesThatThereAre) {
  const ImportHook hook("flutter_windows.dll", "FlutterDesktopViewGetHWND", PopupInsteadOfView);
  ASSERT_TRUE(engine_.Initialize(nullptr));
  const LONG_PTR style = GetWindowLongPtrA(engine_.flutterWindow_, GWL_STYLE);
  EXPECT_EQ(style & (WS_CHILD | WS_BORDER), WS_CHILD | WS_BORDER);
}

}  // namespace
}  // namespace vantro::test
