// start_time ROUNDS CLASS EXE [CLASS EXE ...]: starts each program in turn, ROUNDS times, and prints for each start the
// milliseconds from CreateProcess until a window of the class is shown. The window's process is ended then.
//
// One observer for all: what its asking costs, all pay alike.
#include <windows.h>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr double kPatienceMs = 60000;

double Now() {
  LARGE_INTEGER count, frequency;
  QueryPerformanceCounter(&count);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(count.QuadPart) * 1000.0 / static_cast<double>(frequency.QuadPart);
}

// Below 0 when no window was shown.
double TimeStart(const char* windowClass, char* executable) {
  STARTUPINFOA start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION process{};
  const double began = Now();
  if (!CreateProcessA(executable, executable, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process))
    return -1;
  double took = -1;
  while (took < 0 && Now() - began < kPatienceMs && WaitForSingleObject(process.hProcess, 1) == WAIT_TIMEOUT) {
    const HWND window = FindWindowA(windowClass, nullptr);
    if (window && IsWindowVisible(window)) took = Now() - began;
  }
  TerminateProcess(process.hProcess, 0);
  WaitForSingleObject(process.hProcess, INFINITE);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  // The next start must not find the window of this one.
  while (FindWindowA(windowClass, nullptr)) Sleep(1);
  return took;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) return std::fprintf(stderr, "usage: start_time ROUNDS CLASS EXE [CLASS EXE ...]\n"), 2;
  for (int round = 0; round < std::atoi(argv[1]); ++round) {
    for (int index = 2; index + 1 < argc; index += 2) {
      const double took = TimeStart(argv[index], argv[index + 1]);
      if (took < 0) return std::fprintf(stderr, "%s showed no %s\n", argv[index + 1], argv[index]), 1;
      std::printf("%s %.3f\n", argv[index], took);
      std::fflush(stdout);
    }
  }
  return 0;
}
