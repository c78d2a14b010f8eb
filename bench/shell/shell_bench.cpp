// How long the window's chrome takes, and whether it holds on to handles. Prints Markdown tables.
//
//   bench_shell [SECONDS]   at most so many for each line, 60 if not told
//
// The speaker's share stands beside the whole repaint: it looks for picture files in four places on every paint.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "shell/shell_ids.h"
#include "shell/vantro_window.h"
#include "tests/support/process_resources.h"

namespace {

using vantro::VantroWindow;
using Clock = std::chrono::steady_clock;

// A menu's modal loop runs timers: this one closes the menu as soon as it stands.
void CALLBACK CloseMenu(HWND, UINT, UINT_PTR, DWORD) {
  if (FindWindowW(L"#32768", nullptr)) EndMenu();
}

struct Resources {
  size_t handles = vantro::test::HandleCount();
  size_t gdiObjects = vantro::test::GdiObjectCount();
};

struct Result {
  const char* name;
  std::vector<double> microseconds;  // sorted
  Resources before;
  Resources after;

  double At(double share) const {
    return microseconds[static_cast<size_t>(share * static_cast<double>(microseconds.size() - 1))];
  }
};

template <typename Action>
Result Measure(const char* name, size_t rounds, double seconds, Action action) {
  Result result{.name = name, .microseconds = {}, .before = {}, .after = {}};
  const auto limit = Clock::now() + std::chrono::duration<double>(seconds);
  do {
    const auto began = Clock::now();
    action();
    result.microseconds.push_back(std::chrono::duration<double, std::micro>(Clock::now() - began).count());
  } while (result.microseconds.size() < rounds && Clock::now() < limit);
  result.after = {};
  std::sort(result.microseconds.begin(), result.microseconds.end());
  return result;
}

void PrintTimes(const std::vector<Result>& results) {
  std::printf("| What | Rounds | Median | 99 of 100 within |\n|---|---:|---:|---:|\n");
  for (const Result& result : results) {
    std::printf("| %s | %zu | %.0f us | %.0f us |\n", result.name, result.microseconds.size(), result.At(0.5),
                result.At(0.99));
  }
}

long long Difference(size_t before, size_t after) {
  return static_cast<long long>(after) - static_cast<long long>(before);
}

void PrintResources(const std::vector<Result>& results) {
  std::printf("\n| More or fewer after | Rounds | Handles | GDI objects |\n|---|---:|---:|---:|\n");
  for (const Result& result : results) {
    std::printf("| %s | %zu | %+lld | %+lld |\n", result.name, result.microseconds.size(),
                Difference(result.before.handles, result.after.handles),
                Difference(result.before.gdiObjects, result.after.gdiObjects));
  }
}

}  // namespace

int main(int argc, char** argv) {
  const double seconds = argc > 1 ? std::atof(argv[1]) : 60;
  VantroWindow window(GetModuleHandleW(nullptr));
  if (!window.Initialize()) return std::fprintf(stderr, "the window did not come up\n"), 1;
  ShowWindow(window.hwnd_, SW_SHOWNORMAL);
  UpdateWindow(window.hwnd_);

  const auto repaint = [](HWND control) {
    RedrawWindow(control, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  };
  const auto openMenu = [&] {
    const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, CloseMenu);
    SendMessageA(window.hwnd_, WM_COMMAND, vantro::kFileButtonId, 0);
    KillTimer(nullptr, timer);
  };
  // What is made once and kept, such as GDI+ and the menu's font, does not count as held on to.
  repaint(window.hwnd_);
  window.ToggleFullscreen();
  window.ToggleFullscreen();
  openMenu();

  std::vector<Result> results;
  results.push_back(
      Measure("repaint of the bar with all its controls", 10000, seconds, [&] { repaint(window.hwnd_); }));
  results.push_back(Measure("of it, the speaker without files", 1000, seconds,
                            [&] { repaint(GetDlgItem(window.hwnd_, vantro::kSpeakerIconId)); }));
  results.push_back(Measure("of it, the volume slider", 1000, seconds,
                            [&] { repaint(GetDlgItem(window.hwnd_, vantro::kVolumeControlId)); }));
  results.push_back(Measure("of it, the close button", 1000, seconds,
                            [&] { repaint(GetDlgItem(window.hwnd_, vantro::kCloseButtonId)); }));
  results.push_back(
      Measure("fullscreen or back until the overlay stands", 1000, seconds, [&] { window.ToggleFullscreen(); }));
  results.push_back(Measure("File menu opened, and closed by a timer of 10 ms", 50, seconds, openMenu));
  PrintTimes(results);
  PrintResources(results);
  DestroyWindow(window.hwnd_);
  return 0;
}
