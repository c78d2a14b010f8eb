#include "common/standard_error.h"

#include <cstdio>
#include <string>

namespace vantro {

void ReportLine(std::string_view text, std::string_view more) {
  std::string line;
  line.reserve(text.size() + more.size() + 1);
  line.append(text).append(more).append(1, '\n');
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fflush(stderr);
}

}  // namespace vantro
