// printf into a string, for expected log lines and records of calls.
#pragma once

#include <string>

#include "common/log.h"

namespace vantro::test {

// At most 255 characters; the rest is cut.
std::string Format(const char* format, ...) VANTRO_PRINTF_FORMAT(1, 2);

}  // namespace vantro::test
