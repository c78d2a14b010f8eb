// Leaves a minidump behind when the process faults.
#pragma once

#include <windows.h>

namespace vantro {

// For SetUnhandledExceptionFilter. Writes "Vantro_Crash.dmp" (a plain minidump, over the last one) into the current
// directory, tells the user in a box, and returns EXCEPTION_EXECUTE_HANDLER, so that the process ends with the
// exception's code. A dump that can't be written changes nothing else, the box's text included.
//
// Runs on the thread that faulted, whichever it is, on what is left of its stack: it takes no lock and, while the log
// is off, allocates nothing of its own.
LONG WINAPI UnhandledExceptionHandler(EXCEPTION_POINTERS* exceptionPointers);

// For std::set_terminate: hands a C++ exception that nothing catches to the filter above, under the code that such an
// exception has on Windows. Needed where the compiler's runtime library ends the process by itself instead.
[[noreturn]] void RaiseUncaughtException();

}  // namespace vantro
