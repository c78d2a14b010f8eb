// A separate program, because a shutdown can't be undone.
#include "shell/window_manager.h"
#include "tests/unit/shell/window_fixture.h"

namespace vantro {
namespace {

using test::DrainQueue;

class Shutdown : public test::WindowTest {};

TEST_F(Shutdown, DestroysOpenAndClosedWindowsInOrderAndTakesNoMore) {
  const VantroWindow* const first = &OpenWindow();
  const VantroWindow* const closed = &OpenWindow();
  const VantroWindow* const third = &OpenWindow();
  SendMessageA(closed->hwnd_, WM_CLOSE, 0, 0);
  auto late = BringUp();
  const HWND natives[] = {first->hwnd_, third->hwnd_, late->hwnd_};
  EXPECT_FALSE(IsShuttingDown());
  DrainQueue();
  const test::LogCapture shutdown;
  std::vector<bool> ownEntry;  // whether the list contains the window whose player is released
  vlc_.OnCall("libvlc_media_player_release",
              [&] { ownEntry.push_back(GetWindowRegistry()[ownEntry.size()] != nullptr); });

  ShutdownWindowManager();

  vlc_.OnCall("libvlc_media_player_release", {});
  EXPECT_EQ(ownEntry, std::vector<bool>(3, false));

  EXPECT_TRUE(IsShuttingDown());
  EXPECT_TRUE(GetWindowRegistry().empty());
  std::vector<std::string> ends;
  for (const auto& line : shutdown.Lines()) {
    if (line.find("~VantroWindow: Destructor called for window ") != std::string::npos) ends.push_back(line);
  }
  std::vector<std::string> expected;
  for (const VantroWindow* const window : {first, closed, third}) {
    char line[96];
    std::snprintf(line, sizeof line, "INFO ~VantroWindow: Destructor called for window %p",
                  static_cast<const void*>(window));
    expected.push_back(line);
  }
  EXPECT_EQ(ends, expected);
  EXPECT_EQ(shutdown.CountContaining("UnregisterWindow"), 0);
  EXPECT_EQ(DrainQueue(), 0) << "no quit message once the flag is up";

  RegisterWindow(std::move(late));
  EXPECT_TRUE(GetWindowRegistry().empty());
  EXPECT_EQ(VantroWindow::instance_, nullptr);
  UnregisterWindow(nullptr);
  EXPECT_EQ(shutdown.CountContaining("UnregisterWindow"), 0);
  for (const HWND native : natives) DestroyWindow(native);
}

}  // namespace
}  // namespace vantro
