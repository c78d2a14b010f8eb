#include "tests/support/format.h"

#include <cstdarg>
#include <cstdio>

namespace vantro::test {

std::string Format(const char* format, ...) {
  char text[256];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  return text;
}

}  // namespace vantro::test
