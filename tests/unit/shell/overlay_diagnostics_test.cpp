// The window that the log names as the receiver of the overlay's input.
#include "shell/overlay_diagnostics.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "common/log.h"
#include "tests/support/format.h"
#include "tests/support/import_hook.h"
#include "tests/support/log_capture.h"

namespace vantro {
namespace {

// A visible topmost window at a known position.
class Popup {
 public:
  explicit Popup(int x)
      : window_(CreateWindowExW(WS_EX_TOPMOST, L"STATIC", L"", WS_POPUP | WS_VISIBLE | SS_NOTIFY, x, 100, 80, 80,
                                nullptr, nullptr, nullptr, nullptr)) {}
  ~Popup() { DestroyWindow(window_); }
  Popup(const Popup&) = delete;
  Popup& operator=(const Popup&) = delete;

  HWND Get() const { return window_; }
  void PointAtIt() const {
    RECT rect{};
    GetWindowRect(window_, &rect);
    SetCursorPos(rect.left + 10, rect.top + 10);
  }

 private:
  HWND window_;
};

struct NamedWindow {
  const char* name;
  HWND StackedWindows::*window;  // null for a window of another program
  const char* line;
};
void PrintTo(const NamedWindow& row, std::ostream* out) { *out << row.name; }

class WindowUnderTheCursor : public testing::TestWithParam<NamedWindow> {};

TEST_P(WindowUnderTheCursor, IsNamed) {
  const Popup overlay(100);
  const Popup pointed(300);
  pointed.PointAtIt();
  StackedWindows windows{nullptr, overlay.Get(), nullptr};
  if (GetParam().window) windows.*GetParam().window = pointed.Get();
  const test::LogCapture log;
  LogOverlayInput(windows, 0);
  EXPECT_TRUE(log.Has(std::string("DEBUG EnableOverlayMouseInput: Intercepting window ") + GetParam().line));
}

INSTANTIATE_TEST_SUITE_P(Rows, WindowUnderTheCursor,
                         testing::Values(NamedWindow{"Overlay", &StackedWindows::overlay, "IS our overlay window!"},
                                         NamedWindow{"Main", &StackedWindows::mainWindow, "IS our main window!"},
                                         NamedWindow{"Flutter", &StackedWindows::flutterChild,
                                                     "IS our Flutter window!"},
                                         NamedWindow{"Unknown", nullptr, "is UNKNOWN - not one of ours!"}),
                         [](const auto& row) { return row.param.name; });

HWND WINAPI NoWindow(POINT) { return nullptr; }

TEST(WindowUnderThePoint, IsUnknownAndHasNeitherClassNorTitleWhereThereIsNone) {
  const Popup overlay(100);
  const test::ImportHook hook("user32.dll", "WindowFromPoint", NoWindow);
  const test::LogCapture log;
  LogOverlayInput({overlay.Get(), overlay.Get(), nullptr}, 0);
  EXPECT_EQ(log.CountContaining(": " + test::Format("%p", nullptr) + ", class '', title ''"), 2);
  EXPECT_EQ(log.Count("DEBUG EnableOverlayMouseInput: Intercepting window is UNKNOWN - not one of ours!"), 2);
}

// The texts that are asked for, each with the capacity of its buffer.
std::vector<std::string> asked;
int WINAPI ClassOfLetters(HWND, char* name, int capacity) {
  asked.push_back("class " + std::to_string(capacity));
  return std::snprintf(name, static_cast<size_t>(capacity), "Letters");
}
int WINAPI TitleOfDigits(HWND, char* title, int capacity) {
  asked.push_back("title " + std::to_string(capacity));
  return std::snprintf(title, static_cast<size_t>(capacity), "123");
}

TEST(WindowUnderThePoint, IsLoggedWithItsClassAndItsTitle) {
  const Popup overlay(300);
  overlay.PointAtIt();
  const test::ImportHook className("user32.dll", "GetClassNameA", ClassOfLetters);
  const test::ImportHook title("user32.dll", "GetWindowTextA", TitleOfDigits);
  asked.clear();
  const test::LogCapture log;
  LogOverlayInput({nullptr, overlay.Get(), nullptr}, 0);
  EXPECT_THAT(asked, testing::ElementsAre("class 256", "title 256", "class 256", "title 256"));
  const std::string handle = test::Format("%p", static_cast<void*>(overlay.Get()));
  EXPECT_TRUE(log.Has("DEBUG EnableOverlayMouseInput: Window at the cursor (310,110): " + handle +
                      ", class 'Letters', title '123'"));
  EXPECT_TRUE(log.Has("DEBUG EnableOverlayMouseInput: Window at the overlay's centre (340,140): " + handle +
                      ", class 'Letters', title '123'"));
}

TEST(WindowAtTheOverlaysCentre, IsTheOverlayWhereNothingCoversIt) {
  const Popup overlay(300);
  const test::LogCapture log;
  LogOverlayInput({nullptr, overlay.Get(), nullptr}, 0);
  EXPECT_EQ(log.CountContaining("Window at the overlay's centre (340,140): "), 1);
  EXPECT_EQ(log.Lines().back(), "DEBUG EnableOverlayMouseInput: Intercepting window IS our overlay window!");
}

TEST(OverlayDiagnostics, OfACreationHaveTheWindowItsClientAreaAndTheHeightAboveTheOverlay) {
  const HWND window =
      CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_BORDER, 40, 50, 302, 202, nullptr, nullptr, nullptr, nullptr);
  const test::LogCapture log;
  LogOverlayCreation(window, {40, 83, 342, 252});
  EXPECT_EQ(log.Lines(), (std::vector<std::string>{"DEBUG CreateFlutterOverlay: Window rectangle: 40,50 to 342,252",
                                                   "DEBUG CreateFlutterOverlay: Client area: 300x200",
                                                   "DEBUG CreateFlutterOverlay: Title bar height: 33"}));
  DestroyWindow(window);
}

TEST(OverlayDiagnostics, OfItsInputHaveItsPlaceItsStylesAndTheDesktopsTopWindow) {
  const Popup overlay(300);
  const test::LogCapture log;
  LogOverlayInput({nullptr, overlay.Get(), nullptr}, 0x28);
  EXPECT_TRUE(log.Has("DEBUG EnableOverlayMouseInput: Overlay rectangle: 300,100 to 380,180"));
  EXPECT_TRUE(log.Has("DEBUG EnableOverlayMouseInput: Extended style before: 0x00000028, after: 0x00000008"));
  char top[120];
  std::snprintf(top, sizeof top, "DEBUG EnableOverlayMouseInput: Overlay visible: YES, desktop's top window: %p",
                static_cast<void*>(GetTopWindow(GetDesktopWindow())));
  EXPECT_THAT(log.Lines(), testing::Contains(top));
}

HWND WINAPI FailOnWindowFromPoint(POINT) {
  ADD_FAILURE() << "asked for the window at a point";
  return nullptr;
}
int WINAPI FailOnGetWindowText(HWND, char*, int) {
  ADD_FAILURE() << "asked for a window's text";
  return 0;
}
BOOL WINAPI FailOnGetWindowRect(HWND, RECT*) {
  ADD_FAILURE() << "asked for a window's rectangle";
  return FALSE;
}

TEST(OverlayDiagnostics, AskTheSystemNothingWhileTheLogIsOff) {
  const Popup overlay(300);
  const test::ImportHook atPoint("user32.dll", "WindowFromPoint", FailOnWindowFromPoint);
  const test::ImportHook text("user32.dll", "GetWindowTextA", FailOnGetWindowText);
  const test::ImportHook rect("user32.dll", "GetWindowRect", FailOnGetWindowRect);
  ASSERT_FALSE(debugLoggingEnabled);
  LogOverlayInput({nullptr, overlay.Get(), nullptr}, 0);
  LogOverlayCreation(overlay.Get(), {});
}

}  // namespace
}  // namespace vantro
