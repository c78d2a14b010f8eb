#include "report.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace vantro::devlib {
namespace {

void Print(const char* format, va_list arguments) {
  char text[1024];
  vsnprintf(text, sizeof text, format, arguments);
  fprintf(stderr, "development libvlc: %s\n", text);
}

}  // namespace

void Trace(const char* format, ...) {
  static const bool on = getenv("VANTRO_LIBVLC_LOG") != nullptr;
  if (!on) return;
  va_list arguments;
  va_start(arguments, format);
  Print(format, arguments);
  va_end(arguments);
}

void Warn(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Print(format, arguments);
  va_end(arguments);
}

void Misuse(const char* function, const char* why) {
  Warn("FORBIDDEN CALL of %s: %s", function, why);
  if (getenv("VANTRO_LIBVLC_STRICT")) abort();
}

}  // namespace vantro::devlib
