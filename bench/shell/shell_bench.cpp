// Measures the times of the window's chrome, and whether it leaks handles. Prints Markdown tables.
//
//   bench_shell [SECONDS]          at most so many seconds for each line, 60 by default
//   bench_shell chrome SECONDS     prints only the medians that start_floor also prints, in microseconds, such as
//                                  "host repaint 1.0"
//
// The speaker's share is listed beside the whole repaint, because it looks for picture files in four places on every
// paint.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "bench/shell/timing.h"
#include "shell/shell_ids.h"
#include "shell/vantro_window.h"
#include "tests/support/process_resources.h"

namespace {

using vantro::VantroWindow;

// A menu's modal loop runs timers. This one closes the menu as soon as it is open.
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
  result.microseconds = vantro::bench::SortedMicroseconds(rounds, seconds, action);
  result.after = {};
  return result;
}

void PrintTimes(const std::vector<Result>& results) {
  std::printf("| What | Rounds | Median | 99th percentile |\n|---|---:|---:|---:|\n");
  for (const Result& result : results) {
    std::printf("| %s | %zu | %.0f us | %.0f us |\n", result.name, result.microseconds.size(), result.At(0.5),
                result.At(0.99));
  }
}

long long Difference(size_t before, size_t after) {
  return static_cast<long long>(after) - static_cast<long long>(before);
}

void PrintResources(const std::vector<Result>& results) {
  std::printf("\n| Change after all rounds | Rounds | Handles | GDI objects |\n|---|---:|---:|---:|\n");
  for (const Result& result : results) {
    std::printf("| %s | %zu | %+lld | %+lld |\n", result.name, result.microseconds.size(),
                Difference(result.before.handles, result.after.handles),
                Difference(result.before.gdiObjects, result.after.gdiObjects));
  }
}

}  // namespace

int main(int argc, char** argv) {
  const bool isBrief = argc > 2 && std::strcmp(argv[1], "chrome") == 0;
  const double seconds = argc > 1 ? std::atof(argv[argc - 1]) : 60;
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
  // Objects that are made once and kept, such as GDI+ and the menu's font, do not count as leaks.
  repaint(window.hwnd_);
  window.ToggleFullscreen();
  window.ToggleFullscreen();
  openMenu();

  const auto changeFullscreen = [&] { window.ToggleFullscreen(); };
  if (isBrief) {
    const auto repaintAll = [&] { repaint(window.hwnd_); };
    std::printf("host repaint %.1f\n", Measure("", 10000, seconds, repaintAll).At(0.5));
    std::printf("host fullscreen %.1f\n", Measure("", 10000, seconds, changeFullscreen).At(0.5));
    DestroyWindow(window.hwnd_);
    return 0;
  }

  std::vector<Result> results;
  results.push_back(
      Measure("repaint of the bar with all its controls", 10000, seconds, [&] { repaint(window.hwnd_); }));
  results.push_back(Measure("repaint of the speaker alone, without its files", 1000, seconds,
                            [&] { repaint(GetDlgItem(window.hwnd_, vantro::kSpeakerIconId)); }));
  results.push_back(Measure("repaint of the volume slider alone", 1000, seconds,
                            [&] { repaint(GetDlgItem(window.hwnd_, vantro::kVolumeControlId)); }));
  results.push_back(Measure("repaint of the close button alone", 1000, seconds,
                            [&] { repaint(GetDlgItem(window.hwnd_, vantro::kCloseButtonId)); }));
  results.push_back(Measure("fullscreen or back until the overlay is placed", 1000, seconds, changeFullscreen));
  results.push_back(Measure("File menu opened, and closed by a timer of 10 ms", 50, seconds, openMenu));
  PrintTimes(results);
  PrintResources(results);
  DestroyWindow(window.hwnd_);
  return 0;
}
