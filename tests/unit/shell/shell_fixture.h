// A real main window for tests, over the scripted libvlc, the loopback engine and a separate registry.
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

// Redirects HKEY_CURRENT_USER to an empty key of this process during the life of the object.
class ScratchRegistry {
 public:
  ScratchRegistry();
  ~ScratchRegistry();
  ScratchRegistry(const ScratchRegistry&) = delete;
  ScratchRegistry& operator=(const ScratchRegistry&) = delete;
};

// Dispatches the thread's messages until the condition is true. Returns false after five seconds.
bool PumpUntil(const std::function<bool()>& condition);

// Keeps the window class registered, which the last window of a process unregisters. Call it after the start of the
// first window and before its end.
void KeepWindowClass();

class ShellTest : public testing::Test {
 protected:
  ShellTest();
  ~ShellTest() override;

  // The first window, initialized, shown and registered as by the process.
  VantroWindow& Window() { return *window_; }
  // Adds a window as CreateNewWindow does.
  VantroWindow& AddWindow();
  // Creates a window that is initialized and shown, but not registered. The caller owns it.
  static std::unique_ptr<VantroWindow> MakeWindow();
  // The host's calls of the interface since the start of sent_, as "method" or, with a string argument, "method(text)".
  std::vector<std::string> CallsToInterface() const;
  // Sets the width of the client area and keeps its height.
  static void SetClientWidth(VantroWindow& window, int width);

  ScratchRegistry registry_;
  ScriptedVlc vlc_;
  Loopback loopback_;
  SentMessages sent_;

 private:
  VantroWindow* window_ = nullptr;
};

}  // namespace vantro::test
