// Reads back the host's log lines that are written while the capture exists. Switches the log on for that time.
#pragma once

#include <string>
#include <vector>

namespace vantro::test {

class LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  // Returns the lines since the capture began, each as "LEVEL text" without the time.
  std::vector<std::string> Lines() const;
  // Returns whether a line equals "LEVEL text", and how many do.
  bool Has(const std::string& levelAndText) const { return Count(levelAndText) > 0; }
  int Count(const std::string& levelAndText) const;
  // Returns how many lines contain the fragment.
  int CountContaining(const std::string& fragment) const;

 private:
  long start_;
};

}  // namespace vantro::test
