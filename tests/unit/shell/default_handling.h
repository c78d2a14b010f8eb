// Replaces the system's default handling of messages while it exists. Each call is recorded and returns 4711.
#pragma once

#include <windows.h>

#include <vector>

#include "tests/support/import_hook.h"

namespace vantro::test {

// Only one object may exist at a time.
class DefaultHandling {
 public:
  static constexpr LRESULT kResult = 4711;

  struct Call {
    HWND window;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;

    bool operator==(const Call&) const = default;
  };

  DefaultHandling() : hook_("user32.dll", "DefWindowProcA", reinterpret_cast<void*>(Record)) { calls_.clear(); }

  const std::vector<Call>& Calls() const { return calls_; }

 private:
  static LRESULT WINAPI Record(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    calls_.push_back({window, message, wParam, lParam});
    return kResult;
  }

  static inline std::vector<Call> calls_;
  ImportHook hook_;
};

}  // namespace vantro::test
