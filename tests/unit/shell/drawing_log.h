// Records as text lines, in order, the calls with which a painter draws. Each call is passed on to the system. While
// the log is captured, the calls are written into it too.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/support/import_hook.h"

namespace vantro::test {

// Only one object may exist at a time. Colours are in hexadecimal, as 0xBBGGRR.
class DrawingLog {
 public:
  DrawingLog();
  ~DrawingLog();
  DrawingLog(const DrawingLog&) = delete;
  DrawingLog& operator=(const DrawingLog&) = delete;

  // For example "FillRect 0,0-45,27 5F4646", "LineTo 17,8", "DrawTextW 'File' -1 3,4-38,24 flags=37" or "GetDC".
  const std::vector<std::string>& Calls() const { return calls_; }
  // The calls of one function.
  std::vector<std::string> Of(const std::string& function) const;

 private:
  friend struct DrawingCalls;

  std::vector<std::string> calls_;
  std::vector<std::unique_ptr<ImportHook>> hooks_;
};

}  // namespace vantro::test
