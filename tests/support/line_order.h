// The order of lines in the log, and of calls that tests write into it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "common/log.h"
#include "tests/support/log_capture.h"

namespace vantro::test {

// Writes a call into the log, so that its position among the host's lines can be checked.
inline void Note(const std::string& call) { WriteLog(kLogDebug, ("(call) " + call).c_str()); }

// Returns whether the log contains all fragments, each in a line after the previous one.
inline testing::AssertionResult InOrder(const LogCapture& log, const std::vector<std::string>& fragments) {
  const std::vector<std::string> lines = log.Lines();
  size_t from = 0;
  for (const auto& fragment : fragments) {
    while (from < lines.size() && lines[from].find(fragment) == std::string::npos) ++from;
    if (from == lines.size()) return testing::AssertionFailure() << "not there in this order: " << fragment;
    ++from;
  }
  return testing::AssertionSuccess();
}

// Returns the lines of the log that contain one of the fragments.
inline std::vector<std::string> LinesWith(const LogCapture& log, const std::vector<std::string>& fragments) {
  std::vector<std::string> lines = log.Lines();
  std::erase_if(lines, [&](const std::string& line) {
    return std::none_of(fragments.begin(), fragments.end(),
                        [&](const std::string& fragment) { return line.find(fragment) != std::string::npos; });
  });
  return lines;
}

}  // namespace vantro::test
