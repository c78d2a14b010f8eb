// For tests that start windows one by one. Records the messages that the Flutter views and the engines receive, and
// destroys everything at the end. For tests with one window that already exists, see shell_fixture.h.
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

// A message that a view's procedure or an engine's top-level hook received.
struct SeenMessage {
  HWND window;
  UINT message;
  WPARAM wParam;

  bool operator==(const SeenMessage&) const = default;
};

RECT WindowRectOf(HWND window);
// Returns the client area in screen coordinates.
RECT ClientRectOnScreen(HWND window);
bool operator==(const RECT& a, const RECT& b);

class WindowTest : public testing::Test {
 protected:
  WindowTest();
  ~WindowTest() override;

  // Starts, shows and registers a window, as the process does.
  VantroWindow& OpenWindow();
  // Starts a window that is neither shown nor registered.
  static std::unique_ptr<VantroWindow> BringUp();
  // Destroys the object, and then its native window if that still exists.
  static void Destroy(std::unique_ptr<VantroWindow> window);

  // The messages that the views and the engines have received since the last Forget.
  std::vector<SeenMessage> ViewSaw(UINT message) const;
  std::vector<SeenMessage> EngineOffered(UINT message) const;
  void Forget();
  // Sets the result of every view's procedure for this message.
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
