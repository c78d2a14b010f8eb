// What a state was at the moment when each line of the log was written, for the order of a line and an effect that
// writes no line itself.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/import_hook.h"
#include "tests/support/log_capture.h"

namespace vantro::test {

// Only one object may exist at a time. The state is read on the thread that writes the line.
class LineStates {
 public:
  explicit LineStates(std::function<std::string()> state) : state_(std::move(state)) { current_ = this; }
  ~LineStates() { current_ = nullptr; }
  LineStates(const LineStates&) = delete;
  LineStates& operator=(const LineStates&) = delete;

  // Returns the state at the first line that contains the fragment. Fails the test if there is no such line.
  std::string At(const std::string& fragment) const {
    size_t written = 0;
    for (const std::string& line : log_.Lines()) {
      if (IsRestOfALine(line)) continue;
      if (line.find(fragment) != std::string::npos) return states_.at(written);
      ++written;
    }
    ADD_FAILURE() << "no line with: " << fragment;
    return {};
  }

 private:
  // Whether the text before it contains a newline.
  static bool IsRestOfALine(const std::string& line) {
    for (const char* level : {"INFO ", "WARNING ", "ERROR ", "DEBUG "}) {
      if (line.starts_with(level)) return false;
    }
    return true;
  }
  // The log asks for the time once for each line, just before it writes the line.
  static void WINAPI OnGetLocalTime(SYSTEMTIME* time) {
    current_->states_.push_back(current_->state_());
    current_->hook_.Original<decltype(&GetLocalTime)>()(time);
  }

  static inline LineStates* current_ = nullptr;
  std::function<std::string()> state_;
  std::vector<std::string> states_;
  LogCapture log_;
  ImportHook hook_{"kernel32.dll", "GetLocalTime", &OnGetLocalTime};
};

}  // namespace vantro::test
