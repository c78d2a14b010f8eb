// start_time ROUNDS CLASS EXE [CLASS EXE ...]: starts each program in turn, ROUNDS times, and prints for each start the
// milliseconds from CreateProcess until a window of the class is shown. A start begins at a line of standard input. The
// process is ended at the next line, and then "ended" is printed. In between, the reader can ask the system for the
// cost of the start.
//
// The same observer measures all programs, so its own cost is the same for all.
#include <windows.h>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr double kTimeoutMs = 60000;

double Now() {
  LARGE_INTEGER count, frequency;
  QueryPerformanceCounter(&count);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(count.QuadPart) * 1000.0 / static_cast<double>(frequency.QuadPart);
}

// A running start, which has to be ended.
struct Start {
  PROCESS_INFORMATION process{};
  double took = -1;  // milliseconds; below 0 when no window was shown
};

Start TimeStart(const char* windowClass, char* executable) {
  Start result;
  STARTUPINFOA start{};
  start.cb = sizeof start;
  const double began = Now();
  if (!CreateProcessA(executable, executable, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &result.process))
    return result;
  while (result.took < 0 && Now() - began < kTimeoutMs &&
         WaitForSingleObject(result.process.hProcess, 1) == WAIT_TIMEOUT) {
    const HWND window = FindWindowA(windowClass, nullptr);
    if (window && IsWindowVisible(window)) result.took = Now() - began;
  }
  return result;
}

void End(const PROCESS_INFORMATION& process, const char* windowClass) {
  TerminateProcess(process.hProcess, 0);
  WaitForSingleObject(process.hProcess, INFINITE);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  // The next start must not find this one's window.
  while (FindWindowA(windowClass, nullptr)) Sleep(1);
}

void Print(const char* text) {
  std::printf("%s\n", text);
  std::fflush(stdout);
}

// The end of the input counts as a line.
void WaitForLine() {
  char line[16];
  static_cast<void>(std::fgets(line, sizeof line, stdin));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) return std::fprintf(stderr, "usage: start_time ROUNDS CLASS EXE [CLASS EXE ...]\n"), 2;
  for (int round = 0; round < std::atoi(argv[1]); ++round) {
    for (int index = 2; index + 1 < argc; index += 2) {
      WaitForLine();
      const Start start = TimeStart(argv[index], argv[index + 1]);
      if (start.took < 0) return std::fprintf(stderr, "%s showed no %s\n", argv[index + 1], argv[index]), 1;
      char text[256];
      std::snprintf(text, sizeof text, "%s %.3f", argv[index], start.took);
      Print(text);
      WaitForLine();
      End(start.process, argv[index]);
      Print("ended");
    }
  }
  return 0;
}
