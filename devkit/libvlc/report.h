// Messages of the development library to a developer, on standard error. Safe on every thread, because it does not call
// Windows.
#pragma once

namespace vantro::devlib {

// Prints a line for the developer of the development library, only with VANTRO_LIBVLC_LOG set.
void Trace(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Always prints a line.
void Warn(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Reports a call that is an error in the real library (a deadlock, a use of freed memory) but harmless in this one.
// Always printed; with VANTRO_LIBVLC_STRICT set the process aborts.
void Misuse(const char* function, const char* why);

}  // namespace vantro::devlib
