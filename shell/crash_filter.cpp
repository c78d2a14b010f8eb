#include "shell/crash_filter.h"

#include <dbghelp.h>

#include <cstdlib>

#include "common/log.h"

namespace vantro {

namespace {

constexpr DWORD kCppException = 0xE06D7363;
constexpr wchar_t kDumpFile[] = L"Vantro_Crash.dmp";
constexpr wchar_t kCaption[] = L"Fatal Error";
constexpr wchar_t kText[] =
    L"Vantro has encountered a fatal error and needs to close. A crash report (Vantro_Crash.dmp) has been generated.";

void WriteDump(EXCEPTION_POINTERS* exceptionPointers) {
  const HANDLE file =
      CreateFileW(kDumpFile, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    LOG_ERROR("Failed to create minidump file");
    return;
  }
  MINIDUMP_EXCEPTION_INFORMATION exception;
  exception.ThreadId = GetCurrentThreadId();
  exception.ExceptionPointers = exceptionPointers;
  exception.ClientPointers = TRUE;
  MiniDumpWriteDump(GetCurrentProcess(), GetCurrentProcessId(), file, MiniDumpNormal, &exception, nullptr, nullptr);
  CloseHandle(file);
  LOG_ERROR("Minidump generated: Vantro_Crash.dmp");
}

}  // namespace

LONG WINAPI UnhandledExceptionHandler(EXCEPTION_POINTERS* exceptionPointers) {
  LOG_ERROR("CRASH DETECTED! Generating minidump...");
  WriteDump(exceptionPointers);
  MessageBoxW(nullptr, kText, kCaption, MB_ICONERROR);
  return EXCEPTION_EXECUTE_HANDLER;
}

void RaiseUncaughtException() {
  RaiseException(kCppException, EXCEPTION_NONCONTINUABLE, 0, nullptr);
  std::abort();  // not reached
}

}  // namespace vantro
