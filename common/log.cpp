#include "common/log.h"

#include <windows.h>

#include <cstdarg>
#include <cstdio>
#include <map>
#include <string>

namespace vantro {

namespace {

constexpr char kLogFileName[] = "vantro_debug.log";
constexpr int kHighestLevel = kLogDebug;

const std::map<int, const char*> kLevelWords = {
    {kLogInfo, "INFO"},
    {kLogWarning, "WARNING"},
    {kLogError, "ERROR"},
    {kLogDebug, "DEBUG"},
};

const char* LevelWord(int level) {
  const auto word = kLevelWords.find(level);
  return word == kLevelWords.end() ? "UNKNOWN" : word->second;
}

// Opened at the first line and never closed. Each line is flushed, so that a crash loses none.
FILE* LogFile() {
  static FILE* const file = std::fopen(kLogFileName, "w");
  return file;
}

}  // namespace

void WriteLog(int level, const char* text) {
  if (level > kHighestLevel) return;
  FILE* const file = LogFile();
  if (!file) return;
  SYSTEMTIME now;
  GetLocalTime(&now);
  std::fprintf(file, "[%s] %04d-%02d-%02d %02d:%02d:%02d.%03d %s\n", LevelWord(level), now.wYear, now.wMonth, now.wDay,
               now.wHour, now.wMinute, now.wSecond, now.wMilliseconds, text);
  std::fflush(file);
}

void WriteLogFormatted(int level, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  va_list measured;
  va_copy(measured, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, measured);
  va_end(measured);
  if (length >= 0) {
    std::string text(static_cast<size_t>(length), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, arguments);
    WriteLog(level, text.c_str());
  }
  va_end(arguments);
}

}  // namespace vantro
