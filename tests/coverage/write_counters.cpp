// Linked into programs that are built for coverage. Writes the counters when a program ends without running exit
// handlers: at _Exit, at an unhandled exception, and when the launcher ends a host. The launcher asks for the counters
// through an event whose name contains the process id.
#include <windows.h>

// The runtime's header is not made for C++.
extern "C" {
#include <gcov.h>
}

#include <cstdio>
#include <cstdlib>

namespace {

constexpr UINT kTerminated = 0xDEAD;

LPTOP_LEVEL_EXCEPTION_FILTER programsFilter = nullptr;

LONG WINAPI FilterAndWrite(EXCEPTION_POINTERS* exception) {
  const LONG result = programsFilter ? programsFilter(exception) : EXCEPTION_CONTINUE_SEARCH;
  __gcov_dump();
  return result;
}

DWORD WINAPI WriteWhenAsked(void* asked) {
  WaitForSingleObject(asked, INFINITE);
  __gcov_dump();
  TerminateProcess(GetCurrentProcess(), kTerminated);
  return 0;
}

struct Listener {
  Listener() {
    char name[32];
    std::snprintf(name, sizeof name, "VantroCoverage-%lu", GetCurrentProcessId());
    if (const HANDLE asked = CreateEventA(nullptr, FALSE, FALSE, name)) {
      CreateThread(nullptr, 0, WriteWhenAsked, asked, 0, nullptr);
    }
  }
} listener;

}  // namespace

// The linker's --wrap redirects all of the program's calls of these functions here.
extern "C" {

[[noreturn]] void __real__Exit(int code);
extern decltype(&SetUnhandledExceptionFilter) __real___imp_SetUnhandledExceptionFilter;

[[noreturn]] void __wrap__Exit(int code) {
  __gcov_dump();
  __real__Exit(code);
}

static LPTOP_LEVEL_EXCEPTION_FILTER WINAPI SetFilter(LPTOP_LEVEL_EXCEPTION_FILTER filter) {
  const LPTOP_LEVEL_EXCEPTION_FILTER earlier = programsFilter;
  programsFilter = filter;
  __real___imp_SetUnhandledExceptionFilter(FilterAndWrite);
  return earlier;
}

extern decltype(&SetUnhandledExceptionFilter) __wrap___imp_SetUnhandledExceptionFilter;
decltype(&SetUnhandledExceptionFilter) __wrap___imp_SetUnhandledExceptionFilter = SetFilter;
}
