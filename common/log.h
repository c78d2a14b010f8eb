// The host's one text log.
//
// A line reads "[LEVEL] YYYY-MM-DD hh:mm:ss.mmm text". The file is "vantro_debug.log" in the working directory, opened
// for writing (truncated) once per process at the first line; if it cannot be opened, lines are dropped in silence.
// Each line is flushed at once. Any thread may write; the lines of several threads go through one FILE.
#pragma once

#include <atomic>

// Checks the format as the standard's printf has it (%zu, %lld), which is what the build's own printf takes. clang
// knows the form by the plain name only.
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

// Switches the whole log. False at start, and nothing in the host sets it: a shipped run writes no line and creates no
// file. The executable exports it under this name, so that a debugger or a support tool can switch the log on.
// Inline, because mingw-w64's compilers reach the variable of another object file through a pointer, which would make
// two loads of each statement's one.
extern "C" {
inline VANTRO_EXPORTED std::atomic<bool> debugLoggingEnabled{false};
}

// Whether lines are written at present. For code that asks the system for what it logs and for nothing else.
inline bool IsLogOn() { return debugLoggingEnabled.load(std::memory_order_relaxed); }

// A truth value's word in most of the log's lines.
constexpr const char* YesOrNo(bool value) { return value ? "YES" : "NO"; }

// Writes one line. A level above 3 is dropped; a negative one prints "UNKNOWN". Does not test debugLoggingEnabled:
// callers come through the macros below. The text is one line without its newline, and may not be null.
void WriteLog(int level, const char* text);

// Formats like printf and hands the result, of any length, to WriteLog.
void WriteLogFormatted(int level, const char* format, ...) VANTRO_PRINTF_FORMAT(2, 3);

}  // namespace vantro

// The switch is tested before anything is formatted: while the log is off a statement costs a load and a branch.
#define VANTRO_LOG(level, ...)                                                      \
  do {                                                                              \
    if (::vantro::debugLoggingEnabled.load(std::memory_order_relaxed)) [[unlikely]] \
      ::vantro::WriteLogFormatted(level, __VA_ARGS__);                              \
  } while (false)

#define LOG_INFO(...) VANTRO_LOG(::vantro::kLogInfo, __VA_ARGS__)
#define LOG_WARNING(...) VANTRO_LOG(::vantro::kLogWarning, __VA_ARGS__)
#define LOG_ERROR(...) VANTRO_LOG(::vantro::kLogError, __VA_ARGS__)
#define LOG_DEBUG(...) VANTRO_LOG(::vantro::kLogDebug, __VA_ARGS__)
