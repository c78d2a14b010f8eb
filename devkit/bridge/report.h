// What the bridge says to a developer, on standard error. Safe on every thread: it uses nothing of Windows.
#pragma once

namespace vantro::vlc_bridge {

// A line for the developer of the bridge; printed only with VANTRO_BRIDGE_LOG set.
void Trace(const char* format, ...) __attribute__((format(printf, 1, 2)));

// A line that is always printed.
void Warn(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Tells of a call that the real library punishes (a deadlock, a use of freed memory) and that the bridge survives.
// Always printed; with VANTRO_BRIDGE_STRICT set the process aborts.
void Misuse(const char* function, const char* why);

}  // namespace vantro::vlc_bridge
