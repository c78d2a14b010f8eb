// What the development library says to a developer, on standard error. Safe on every thread: it uses nothing of
// Windows.
#pragma once

namespace vantro::devlib {

// A line for the developer of the development library; printed only with VANTRO_LIBVLC_LOG set.
void Trace(const char* format, ...) __attribute__((format(printf, 1, 2)));

// A line that is always printed.
void Warn(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Tells of a call that the real library punishes (a deadlock, a use of freed memory) and that this one survives.
// Always printed; with VANTRO_LIBVLC_STRICT set the process aborts.
void Misuse(const char* function, const char* why);

}  // namespace vantro::devlib
