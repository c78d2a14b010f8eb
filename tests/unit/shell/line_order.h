// The order of lines in the log, of calls noted among them included.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/log.h"
#include "tests/support/log_capture.h"

namespace vantro::test {

// Writes a call into the log, so that one look tells its place among the host's own lines.
inline void Note(const std::string& call) { WriteLog(kLogDebug, ("(call) " + call).c_str()); }

// Whether all the fragments are there, each in a line after the one before.
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

}  // namespace vantro::test
