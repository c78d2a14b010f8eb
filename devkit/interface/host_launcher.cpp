// host_launcher STATUSFILE PROGRAM [ARGUMENT ...]: starts the program, writes its process id to the status file, waits
// until it ends and adds its whole exit code, which Wine would cut to eight bits:
//
//   pid 264
//   exit 0xC0000005
//
// When its own standard input ends, it terminates the program with 0xDEAD, so that no program outlives the one that
// started it. A program that counts its lines (tests/coverage/write_counters.cpp) first gets time to write its
// counters.
//
// host_launcher --keep: keeps the prefix's services and desktop alive until its standard input ends. Wine closes an
// unused desktop after a second, and a program that starts at that moment fails with 0xC0000142.
#include <windows.h>

#include <cstdio>
#include <string>

namespace {

constexpr UINT kTerminated = 0xDEAD;
constexpr DWORD kCounterLimitMs = 8000;
constexpr int kStartAttempts = 5;

void Append(const wchar_t* path, const char* line) {
  if (FILE* file = _wfopen(path, L"ab")) {
    std::fputs(line, file);
    std::fclose(file);
  }
}

void WaitForEndOfInput() {
  char byte;
  DWORD read = 0;
  while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), &byte, 1, &read, nullptr) && read > 0) {
  }
}

void LetCountersBeWritten(HANDLE process) {
  char name[32];
  std::snprintf(name, sizeof name, "VantroCoverage-%lu", GetProcessId(process));
  const HANDLE asked = OpenEventA(EVENT_MODIFY_STATE, FALSE, name);
  if (!asked) return;
  SetEvent(asked);
  WaitForSingleObject(process, kCounterLimitMs);
}

DWORD WINAPI TerminateAtEndOfInput(void* process) {
  WaitForEndOfInput();
  LetCountersBeWritten(process);
  TerminateProcess(process, kTerminated);
  return 0;
}

// Quotes the arguments so that CommandLineToArgvW splits them the same way. Tests use no arguments with quotes.
std::wstring CommandLine(int argc, wchar_t** argv) {
  std::wstring line;
  for (int i = 2; i < argc; ++i) {
    if (i > 2) line += L' ';
    line += L'"';
    line += argv[i];
    line += L'"';
  }
  return line;
}

// Under load Wine sometimes reports ERROR_INTERNAL_ERROR, before any code of the program runs. The start is then tried
// again.
bool Start(const wchar_t* program, std::wstring line, PROCESS_INFORMATION* process) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  for (int attempt = 1;; ++attempt) {
    if (CreateProcessW(program, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, process))
      return true;
    const DWORD error = GetLastError();
    std::fprintf(stderr, "host_launcher: can't start %ls: %lu\n", program, error);
    if (error != ERROR_INTERNAL_ERROR || attempt == kStartAttempts) return false;
  }
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc == 2 && std::wstring(argv[1]) == L"--keep") {
    GetDesktopWindow();  // opens the desktop
    std::puts("kept");
    std::fflush(stdout);
    WaitForEndOfInput();
    return 0;
  }
  if (argc < 3) {
    std::fprintf(stderr, "usage: host_launcher STATUSFILE PROGRAM [ARGUMENT ...] | --keep\n");
    return 2;
  }
  PROCESS_INFORMATION process{};
  if (!Start(argv[2], CommandLine(argc, argv), &process)) return 3;
  char status[64];
  std::snprintf(status, sizeof status, "pid %lu\n", process.dwProcessId);
  Append(argv[1], status);
  CreateThread(nullptr, 0, TerminateAtEndOfInput, process.hProcess, 0, nullptr);
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(process.hProcess, &code);
  std::snprintf(status, sizeof status, "exit 0x%08lX\n", code);
  Append(argv[1], status);
  return 0;
}
