// Writes a minidump when the process crashes.
#pragma once

#include <windows.h>

namespace vantro {

// For SetUnhandledExceptionFilter. Writes "Vantro_Crash.dmp" (a plain minidump, replacing the last one) into the
// current directory, shows a message box, and returns EXCEPTION_EXECUTE_HANDLER, so that the process ends with the
// exception's code. If the dump cannot be written, the box still appears with the same text.
//
// Runs on the thread that crashed, which can be any thread, and on what is left of its stack. It takes no lock and,
// while the log is off, allocates no memory itself.
LONG WINAPI UnhandledExceptionHandler(EXCEPTION_POINTERS* exceptionPointers);

// For std::set_terminate. Raises an uncaught C++ exception as a Windows exception with the code that C++ exceptions
// have on Windows, so that the filter above runs. Needed with compilers whose runtime library would end the process
// itself.
[[noreturn]] void RaiseUncaughtException();

}  // namespace vantro
