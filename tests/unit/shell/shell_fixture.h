// A live main window for tests: real Win32, the scripted libvlc, the loopback engine, a registry of its own.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "shell/vantro_window.h"
#include "tests/support/log_capture.h"
#include "tests/support/loopback.h"
#include "tests/support/scripted_vlc.h"
#include "tests/unit/shell/inside.h"

namespace vantro::test {

// Sends everything under HKEY_CURRENT_USER to an empty key of this process while it lives.
class ScratchRegistry {
 public:
  ScratchRegistry();
  ~ScratchRegistry();
  ScratchRegistry(const ScratchRegistry&) = delete;
  ScratchRegistry& operator=(const ScratchRegistry&) = delete;
};

// Dispatches the thread's messages until the condition holds; false after five seconds.
bool PumpUntil(const std::function<bool()>& condition);

// To be called once a window has come up, before the first one dies: keeps the windows' class, which the last window of
// a process takes along.
void KeepWindowClass();

class ShellTest : public testing::Test {
 protected:
  ShellTest();
  ~ShellTest() override;

  // The first window: initialized, shown and registered, as the process has it.
  VantroWindow& Window() { return *window_; }
  // One more, as CreateNewWindow makes it.
  VantroWindow& AddWindow();
  // Initialized and shown, with the caller as its owner and not registered.
  static std::unique_ptr<VantroWindow> MakeWindow();
  // What the host called on the interface since sent_ began, as "method" or, with a string argument, "method(text)".
  std::vector<std::string> CallsToInterface() const;
  // The client area gets this width; its height stays.
  static void SetClientWidth(VantroWindow& window, int width);

  ScratchRegistry registry_;
  ScriptedVlc vlc_;
  Loopback loopback_;
  SentMessages sent_;

 private:
  VantroWindow* window_ = nullptr;
};

}  // namespace vantro::test
