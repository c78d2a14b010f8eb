#include "runtime/log.h"

#include <windows.h>

#include <cstdarg>
#include <cstdio>
#include <string>

namespace vantro::runtime {
namespace {

constexpr wchar_t kVariable[] = L"VANTRO_RUNTIME_LOG";

// Null when the log is off or its file can't be opened. Never closed: libvlc's threads may outlive the statics.
FILE* Open() {
  std::wstring path(GetEnvironmentVariableW(kVariable, nullptr, 0), L'\0');
  if (path.empty()) return nullptr;
  GetEnvironmentVariableW(kVariable, path.data(), static_cast<DWORD>(path.size()));
  return _wfopen(path.c_str(), L"ab");
}

FILE* File() {
  static FILE* const file = Open();
  return file;
}

}  // namespace

bool LogIsOn() { return File() != nullptr; }

void WriteLog(const char* format, ...) {
  static const ULONGLONG start = GetTickCount64();
  char text[1024];
  va_list arguments;
  va_start(arguments, format);
  vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  // One call a line: the C library locks the file for each.
  fprintf(File(), "[%10.3f] [%5lu] %s\n", static_cast<double>(GetTickCount64() - start) / 1000, GetCurrentThreadId(),
          text);
  fflush(File());
}

}  // namespace vantro::runtime
