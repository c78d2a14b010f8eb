// process_tool fault PID [ADDRESS]: starts a thread in the process at an address without code, or at this one with a null
// argument, so that it faults on a thread
// other than the main thread.
// process_tool answer TITLE: waits for a message box with this title and presses its OK.
// process_tool handles PID: prints the number of kernel handles that the process holds.
// process_tool windows PID: prints "watching", then prints the class of each visible top-level window of the process
// once, when it is first seen, until its standard input ends.
// process_tool hold MUTEX: makes the named mutex, prints "held", and holds it until its standard input ends.
#include <windows.h>
#include <winternl.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

namespace {

constexpr ULONGLONG kAnswerLimitMs = 20000;
constexpr DWORD kLookMs = 20;
constexpr uintptr_t kNoCode = 0x10;  // in the first page, which is never mapped

int Fault(DWORD processId, uintptr_t code) {
  const HANDLE process = OpenProcess(PROCESS_ALL_ACCESS, FALSE, processId);
  if (!process) return 3;
  const auto start = reinterpret_cast<LPTHREAD_START_ROUTINE>(code);
  return CreateRemoteThread(process, nullptr, 0, start, nullptr, 0, nullptr) ? 0 : 4;
}

int Answer(const wchar_t* title) {
  for (const ULONGLONG limit = GetTickCount64() + kAnswerLimitMs; GetTickCount64() < limit; Sleep(kLookMs)) {
    if (const HWND box = FindWindowW(L"#32770", title)) return PostMessageA(box, WM_COMMAND, IDOK, 0) ? 0 : 6;
  }
  return 7;
}

// Counts in the list of all handles of the system, because Wine does not count those of one process
// (GetProcessHandleCount is 0).
int Handles(DWORD processId) {
  struct Entry {
    ULONG owner;
    UCHAR type;
    UCHAR flags;
    USHORT handle;
    void* object;
    ULONG access;
  };
  struct List {
    ULONG count;
    Entry entries[1];
  };
  constexpr auto kSystemHandleInformation = static_cast<SYSTEM_INFORMATION_CLASS>(16);
  std::vector<List> lists(4096);
  ULONG needed = 0;
  NTSTATUS status;
  while ((status = NtQuerySystemInformation(kSystemHandleInformation, lists.data(),
                                            static_cast<ULONG>(lists.size() * sizeof(List)), &needed)) < 0) {
    if (status != static_cast<NTSTATUS>(0xC0000004)) return 8;  // any status but "the list is too short"
    lists.resize(lists.size() * 2);
  }
  const List& list = lists.front();
  std::printf("%d\n", static_cast<int>(std::count_if(list.entries, list.entries + list.count,
                                                     [&](const Entry& entry) { return entry.owner == processId; })));
  return 0;
}

void WaitForEndOfInput() {
  char byte;
  DWORD read = 0;
  while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), &byte, 1, &read, nullptr) && read > 0) {
  }
}

void Say(const char* word) {
  std::puts(word);
  std::fflush(stdout);
}

struct Watched {
  DWORD processId;
  std::set<HWND> seen;
};

BOOL CALLBACK Look(HWND window, LPARAM parameter) {
  auto* const watched = reinterpret_cast<Watched*>(parameter);
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  if (owner != watched->processId || !IsWindowVisible(window) || !watched->seen.insert(window).second) return TRUE;
  char name[256] = "";
  GetClassNameA(window, name, sizeof name);
  Say(name);
  return TRUE;
}

int Windows(DWORD processId) {
  Watched watched{processId, {}};
  const auto wait = [](void*) -> DWORD { return WaitForEndOfInput(), 0; };
  const HANDLE end = CreateThread(nullptr, 0, wait, nullptr, 0, nullptr);
  EnumWindows(Look, reinterpret_cast<LPARAM>(&watched));
  Say("watching");
  while (WaitForSingleObject(end, kLookMs) == WAIT_TIMEOUT) EnumWindows(Look, reinterpret_cast<LPARAM>(&watched));
  return 0;
}

int Hold(const wchar_t* name) {
  if (!CreateMutexW(nullptr, FALSE, name)) return 5;
  Say("held");
  WaitForEndOfInput();
  return 0;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  const std::wstring verb = argc >= 3 ? argv[1] : L"";
  if (verb == L"fault") {
    return Fault(std::wcstoul(argv[2], nullptr, 10), argc == 4 ? std::wcstoull(argv[3], nullptr, 0) : kNoCode);
  }
  if (verb == L"answer") return Answer(argv[2]);
  if (verb == L"handles") return Handles(std::wcstoul(argv[2], nullptr, 10));
  if (verb == L"windows") return Windows(std::wcstoul(argv[2], nullptr, 10));
  if (verb == L"hold") return Hold(argv[2]);
  std::fprintf(stderr, "usage: process_tool fault PID | answer TITLE | handles PID | windows PID | hold MUTEX\n");
  return 2;
}
