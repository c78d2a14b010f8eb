// The adapter's log, for someone who looks for a fault on one machine.
//
// With VANTRO_RUNTIME_LOG=FILE in the environment each line is appended to FILE: "[seconds since the first line]
// [thread] text". Without the variable a line costs one test of a Boolean.
#pragma once

namespace vantro::runtime {

// True when the log is on. Read once a process, at the first call. Any thread.
bool LogIsOn();

// Writes one line. Any thread; lines of several threads stay whole.
void WriteLog(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace vantro::runtime

// Formats its arguments only when the log is on.
#define RUNTIME_LOG(...) \
  (::vantro::runtime::LogIsOn() ? ::vantro::runtime::WriteLog(__VA_ARGS__) : static_cast<void>(0))
