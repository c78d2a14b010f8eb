// For tests that bring up windows one by one: records what the Flutter views and the engines are offered, and takes
// everything down again. For a test that works with one window that is simply there, see shell_fixture.h.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "tests/support/message_queue.h"
#include "tests/unit/shell/shell_fixture.h"

namespace vantro::test {

// A message as a view's procedure or an engine's top-level hook saw it.
struct SeenMessage {
  HWND window;
  UINT message;
  WPARAM wParam;

  bool operator==(const SeenMessage&) const = default;
};

RECT WindowRectOf(HWND window);
// The client area on the screen.
RECT ClientRectOnScreen(HWND window);
bool operator==(const RECT& a, const RECT& b);

class WindowTest : public testing::Test {
 protected:
  WindowTest();
  ~WindowTest() override;

  // A window that came up, was shown and registered, as the process does it.
  VantroWindow& OpenWindow();
  // A window that came up and nothing more.
  static std::unique_ptr<VantroWindow> BringUp();
  // Ends the object, then what is left of its native window.
  static void Destroy(std::unique_ptr<VantroWindow> window);

  // What reached the views, and what the engines were offered, since the last Forget.
  std::vector<SeenMessage> ViewSaw(UINT message) const;
  std::vector<SeenMessage> EngineOffered(UINT message) const;
  void Forget();
  // The answer of every view's procedure to this message from now on.
  void AnswerInView(UINT message, LRESULT result) { viewAnswer_ = {message, result}; }

  ScratchRegistry registry_;
  LogCapture log_;
  ScriptedVlc vlc_;
  Loopback loopback_;

 private:
  static int32_t OnViewMessage(int32_t engine, HWND view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result,
                               void* self);
  static void OnOffered(int32_t engine, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, void* self);

  std::vector<SeenMessage> viewMessages_;
  std::vector<SeenMessage> offeredMessages_;
  std::optional<std::pair<UINT, LRESULT>> viewAnswer_;
};

}  // namespace vantro::test
