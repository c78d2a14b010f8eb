// Captures the standard error stream during the life of the object.
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace vantro::test {

class CapturedStderr {
 public:
  CapturedStderr() { testing::internal::CaptureStderr(); }
  ~CapturedStderr() {
    if (!isTaken_) testing::internal::GetCapturedStderr();
  }
  CapturedStderr(const CapturedStderr&) = delete;
  CapturedStderr& operator=(const CapturedStderr&) = delete;

  // Ends the capture.
  std::string Take() {
    isTaken_ = true;
    return testing::internal::GetCapturedStderr();
  }

 private:
  bool isTaken_ = false;
};

}  // namespace vantro::test
