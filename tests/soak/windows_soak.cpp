// windows_soak [WINDOWS [MOVES]]: opens and closes windows one after the other, keeps eight open at once, then moves
// and resizes one with its overlay. Prints the cost of a closed window, because its object is kept until the process
// ends. Fails when an overlay is ever misplaced, or when closed windows keep handles, or GDI objects other than their
// brushes. psapi.h needs windows.h before it.
// clang-format off
#include <windows.h>
#include <psapi.h>
// clang-format on

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

#include "shell/vantro_window.h"
#include "shell/window_manager.h"
#include "tests/support/message_queue.h"
#include "tests/support/process_resources.h"

namespace vantro {
namespace {

constexpr int kShortWindows = 16;
constexpr int kShortMoves = 400;
constexpr int kWindowsAtOnce = 8;
constexpr unsigned kSeed = 4;
constexpr size_t kBrushesOfAWindow = 2;  // the object of a closed window is kept, and its brushes too
constexpr size_t kSlack = 4;             // handles or objects that the system may make meanwhile

struct Usage {
  size_t handles;  // of the kernel
  size_t gdiObjects;
  size_t committedBytes;
};

Usage Measure() {
  Usage usage{};
  PROCESS_MEMORY_COUNTERS memory{};
  GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
  usage.committedBytes = memory.PagefileUsage;
  usage.handles = test::HandleCount();
  usage.gdiObjects = test::GdiObjectCount();
  return usage;
}

double SecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

[[noreturn]] void Fail(const char* what) {
  std::printf("FAILED: %s\n", what);
  std::fflush(stdout);
  std::_Exit(1);
}

// Returns whether the overlay covers exactly the client area below the title bar.
bool OverlayIsInPlace(const VantroWindow& window) {
  RECT expected{};
  GetClientRect(window.hwnd_, &expected);
  MapWindowPoints(window.hwnd_, HWND_DESKTOP, reinterpret_cast<POINT*>(&expected), 2);
  expected.top += TITLE_BAR_HEIGHT;
  RECT actual{};
  GetWindowRect(window.flutterHostWindow(), &actual);
  return EqualRect(&expected, &actual);
}

VantroWindow& OpenFirst() {
  auto first = std::make_unique<VantroWindow>(GetModuleHandleA(nullptr));
  if (!first->Initialize()) Fail("the first window does not come up");
  ShowWindow(first->hwnd_, SW_SHOWNORMAL);
  VantroWindow& window = *first;
  RegisterWindow(std::move(first));
  return window;
}

VantroWindow& OpenAnother(VantroWindow& reference) {
  const size_t before = GetWindowRegistry().size();
  CreateNewWindow(reference);
  if (GetWindowRegistry().size() != before + 1) Fail("a window does not come up");
  test::DrainQueue();
  return *GetWindowRegistry().back();
}

void Close(const VantroWindow& window) {
  SendMessageA(window.hwnd_, WM_CLOSE, 0, 0);
  if (IsWindow(window.hwnd_) || IsWindow(window.flutterHostWindow()))
    Fail("a closed window still has its native windows");
}

void OpenAndCloseOneByOne(VantroWindow& first, int count) {
  Close(OpenAnother(first));  // what the first window loads is not counted
  test::DrainQueue();
  const Usage before = Measure();
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < count; ++i) {
    Close(OpenAnother(first));
    if (test::DrainQueue() != 0) Fail("a quit message while a window is open");
  }
  const double seconds = SecondsSince(start);
  const Usage after = Measure();
  std::printf("in use at the end: %zu handles, %zu GDI objects, %zu KiB\n", after.handles, after.gdiObjects,
              after.committedBytes / 1024);
  std::printf(
      "%d windows opened and closed: %.1f ms each; kept by each closed window: %.2f handles, %.2f GDI objects, "
      "%.1f KiB\n",
      count, seconds * 1000 / count, (static_cast<double>(after.handles) - static_cast<double>(before.handles)) / count,
      (static_cast<double>(after.gdiObjects) - static_cast<double>(before.gdiObjects)) / count,
      (static_cast<double>(after.committedBytes) - static_cast<double>(before.committedBytes)) / 1024 / count);
  if (after.handles > before.handles + kSlack) Fail("closed windows keep handles");
  const size_t brushes = kBrushesOfAWindow * static_cast<size_t>(count);
  if (after.gdiObjects > before.gdiObjects + brushes + kSlack)
    Fail("closed windows keep more GDI objects than their brushes");
}

void OpenManyAtOnce(VantroWindow& first) {
  const auto start = std::chrono::steady_clock::now();
  std::vector<VantroWindow*> open;
  for (int i = 1; i < kWindowsAtOnce; ++i) open.push_back(&OpenAnother(first));
  for (const VantroWindow* window : open) {
    SetWindowPos(window->hwnd_, nullptr, 30, 40, 700, 500, SWP_NOZORDER);
    if (!OverlayIsInPlace(*window)) Fail("an overlay is not in its place while eight windows are open");
  }
  for (const VantroWindow* window : open) Close(*window);
  test::DrainQueue();
  std::printf("%d windows at once: opened, moved and closed in %.2f s\n", kWindowsAtOnce, SecondsSince(start));
}

void MoveAndResize(VantroWindow& window, int count) {
  std::mt19937 random(kSeed);
  std::uniform_int_distribution<int> position(-300, 900);
  std::uniform_int_distribution<int> width(kMinimumWindowWidth, 1600);
  std::uniform_int_distribution<int> height(kMinimumWindowHeight, 1000);
  const Usage before = Measure();
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < count; ++i) {
    SetWindowPos(window.hwnd_, nullptr, position(random), position(random), width(random), height(random),
                 SWP_NOZORDER);
    if (!OverlayIsInPlace(window)) Fail("an overlay did not follow its window");
    if (i % 16 == 0) test::DrainQueue();
  }
  const double seconds = SecondsSince(start);
  const Usage after = Measure();
  std::printf("%d moves and resizes, each with its overlay in place: %.3f ms each; handles %+ld, memory %+.1f KiB\n",
              count, seconds * 1000 / count, static_cast<long>(after.handles) - static_cast<long>(before.handles),
              (static_cast<double>(after.committedBytes) - static_cast<double>(before.committedBytes)) / 1024);
}

int Run(int windows, int moves) {
  Measure();  // memory that counting itself keeps is not counted
  VantroWindow& first = OpenFirst();
  MoveAndResize(first, moves);
  OpenManyAtOnce(first);
  OpenAndCloseOneByOne(first, windows);
  Close(first);
  if (test::DrainQueue() != 1) Fail("not exactly one quit message for the last window");
  const auto start = std::chrono::steady_clock::now();
  const size_t objects = GetWindowRegistry().size();
  ShutdownWindowManager();
  std::printf("%zu window objects destroyed at the end in %.2f s\n", objects, SecondsSince(start));
  std::fflush(stdout);
  return 0;
}

}  // namespace
}  // namespace vantro

int main(int argc, char** argv) {
  const int windows = argc > 1 ? std::atoi(argv[1]) : vantro::kShortWindows;
  const int moves = argc > 2 ? std::atoi(argv[2]) : vantro::kShortMoves;
  if (windows < 1 || moves < 1) {
    std::fprintf(stderr, "usage: windows_soak [WINDOWS [MOVES]]\n");
    return 2;
  }
  return vantro::Run(windows, moves);
}
