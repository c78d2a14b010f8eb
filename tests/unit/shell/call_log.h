// Records, as readable lines and in order, the calls by which the shell changes windows, timers and focus, while it
// lives. Each call goes on to the system. Only calls that the code under test makes itself are recorded: a call made
// from a window procedure that another recorded call entered is not.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/unit/shell/import_hook.h"

namespace vantro {
class VantroWindow;
}

namespace vantro::test {

// One at a time. Windows read by their place in the given window: "main", "overlay", "view", "close", "search"...
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

 private:
  friend struct RecordedCalls;
  const char* NameOf(HWND window) const;

  VantroWindow& window_;
  std::vector<std::string> calls_;
  int depth_ = 0;
  std::vector<std::unique_ptr<ImportHook>> hooks_;
};

}  // namespace vantro::test
