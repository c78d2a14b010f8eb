// Records as text lines, in order, the calls with which the shell changes windows, timers and focus. Each call is
// passed on to the system. Only direct calls of the code under test are recorded. A call is not recorded if a window
// procedure makes it during another recorded call.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/import_hook.h"

namespace vantro {
class VantroWindow;
}

namespace vantro::test {

// Only one object may exist at a time. Windows appear by their role in the given window: "main", "overlay", "view",
// "close", "search" and so on.
class CallLog {
 public:
  explicit CallLog(VantroWindow& window);
  ~CallLog();
  CallLog(const CallLog&) = delete;
  CallLog& operator=(const CallLog&) = delete;

  // For example "SetWindowPos close after=HWND_TOP 1235,3 45x27 SWP_NOZORDER" or "SetTimer main 1002 100ms".
  const std::vector<std::string>& Calls() const { return calls_; }
  // The calls of one function.
  std::vector<std::string> Of(const std::string& function) const;
  void Clear() { calls_.clear(); }
  // From now on writes each call into the log too, as "(call) SetFocus view" and the text that state returns.
  void WriteToLog(std::function<std::string()> state = [] { return std::string(); }) { state_ = std::move(state); }

 private:
  friend struct RecordedCalls;
  const char* NameOf(HWND window) const;
  void Add(const std::string& call);

  VantroWindow& window_;
  std::vector<std::string> calls_;
  std::function<std::string()> state_;  // empty while the calls are not written to the log
  int depth_ = 0;
  std::vector<std::unique_ptr<ImportHook>> hooks_;
};

}  // namespace vantro::test
