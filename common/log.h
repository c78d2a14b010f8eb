// The host's one text log.
//
// A line reads "[LEVEL] YYYY-MM-DD hh:mm:ss.mmm text". The file is "vantro_debug.log" in the working directory. It is
// opened for writing (truncated) once per process, at the first line. If it cannot be opened, all lines are dropped
// without a report. Each line is flushed at once. Any thread may write; all threads share one FILE.
#pragma once

#include <atomic>

// Checks the format by the rules of the C standard (%zu, %lld), which the build's own printf follows. clang has these
// rules under the plain name only.
#if defined(__clang__)
#define VANTRO_PRINTF_FORMAT(text, first) __attribute__((format(printf, text, first)))
#elif defined(__GNUC__)
#define VANTRO_PRINTF_FORMAT(text, first) __attribute__((format(gnu_printf, text, first)))
#else
#define VANTRO_PRINTF_FORMAT(text, first)
#endif

#ifdef _WIN32
#define VANTRO_EXPORTED __declspec(dllexport)
#else
#define VANTRO_EXPORTED
#endif

namespace vantro {

enum LogLevel : int {
  kLogInfo = 0,
  kLogWarning = 1,
  kLogError = 2,
  kLogDebug = 3,
};

// Turns the whole log on or off. It is false at start and nothing in the host sets it, so a shipped run writes no line
// and creates no file. The executable exports it under this name, so that a debugger or a support tool can turn the log
// on.
//
// It is inline because mingw-w64's compilers access a variable of another object file through a pointer, and each log
// statement would then need two loads instead of one.
extern "C" {
inline VANTRO_EXPORTED std::atomic<bool> debugLoggingEnabled{false};
}

// Returns whether the log is on. For code that makes system calls only to log their results.
inline bool IsLogOn() { return debugLoggingEnabled.load(std::memory_order_relaxed); }

// The word for a boolean in most log lines.
constexpr const char* YesOrNo(bool value) { return value ? "YES" : "NO"; }

// Writes one line. The text has no newline and must not be null. A level above 3 drops the line; a negative level
// prints "UNKNOWN". Does not test debugLoggingEnabled: callers use the macros below.
void WriteLog(int level, const char* text);

// Formats like printf and passes the result, of any length, to WriteLog.
void WriteLogFormatted(int level, const char* format, ...) VANTRO_PRINTF_FORMAT(2, 3);

}  // namespace vantro

// Tests the switch before it formats anything: while the log is off, a statement costs one load and one branch.
#define VANTRO_LOG(level, ...)                                                      \
  do {                                                                              \
    if (::vantro::debugLoggingEnabled.load(std::memory_order_relaxed)) [[unlikely]] \
      ::vantro::WriteLogFormatted(level, __VA_ARGS__);                              \
  } while (false)

#define LOG_INFO(...) VANTRO_LOG(::vantro::kLogInfo, __VA_ARGS__)
#define LOG_WARNING(...) VANTRO_LOG(::vantro::kLogWarning, __VA_ARGS__)
#define LOG_ERROR(...) VANTRO_LOG(::vantro::kLogError, __VA_ARGS__)
#define LOG_DEBUG(...) VANTRO_LOG(::vantro::kLogDebug, __VA_ARGS__)
