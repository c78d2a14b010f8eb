// process_tool fault PID: starts a thread in the process whose first instruction is not there, so that it faults on a
// thread that is not the main one.
// process_tool answer TITLE: waits for a message box of this title and presses its OK.
// process_tool hold MUTEX: makes the named mutex, says "held", and holds it until its standard input ends.
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr ULONGLONG kAnswerLimitMs = 20000;
constexpr DWORD kLookMs = 20;
constexpr uintptr_t kNoCode = 0x10;  // in the first page, which is never mapped

int Fault(DWORD processId) {
  const HANDLE process = OpenProcess(PROCESS_ALL_ACCESS, FALSE, processId);
  if (!process) return 3;
  const auto start = reinterpret_cast<LPTHREAD_START_ROUTINE>(kNoCode);
  return CreateRemoteThread(process, nullptr, 0, start, nullptr, 0, nullptr) ? 0 : 4;
}

int Answer(const wchar_t* title) {
  for (const ULONGLONG limit = GetTickCount64() + kAnswerLimitMs; GetTickCount64() < limit; Sleep(kLookMs)) {
    if (const HWND box = FindWindowW(L"#32770", title)) return PostMessageA(box, WM_COMMAND, IDOK, 0) ? 0 : 6;
  }
  return 7;
}

int Hold(const wchar_t* name) {
  if (!CreateMutexW(nullptr, FALSE, name)) return 5;
  std::puts("held");
  std::fflush(stdout);
  char byte;
  DWORD read = 0;
  while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), &byte, 1, &read, nullptr) && read > 0) {
  }
  return 0;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  const std::wstring verb = argc == 3 ? argv[1] : L"";
  if (verb == L"fault") return Fault(std::wcstoul(argv[2], nullptr, 10));
  if (verb == L"answer") return Answer(argv[2]);
  if (verb == L"hold") return Hold(argv[2]);
  std::fprintf(stderr, "usage: process_tool fault PID | answer TITLE | hold MUTEX\n");
  return 2;
}
