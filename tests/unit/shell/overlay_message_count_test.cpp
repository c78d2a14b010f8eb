// A separate program, because the process has one message count.
#include "tests/unit/shell/window_fixture.h"

namespace vantro {
namespace {

using test::Inside;

class OverlayMessageLog : public test::WindowTest {};

TEST_F(OverlayMessageLog, StopsAfterFiftyMessagesOfAllOverlaysTogether) {
  VantroWindow& first = OpenWindow();
  VantroWindow& second = OpenWindow();
  for (int i = 0; i < 40; ++i) {
    SendMessageA(Inside(first).flutterHostWindow_, WM_NULL, 0, 0);
    SendMessageA(Inside(second).flutterHostWindow_, WM_NULL, 0, 0);
  }
  EXPECT_EQ(log_.CountContaining("OverlayWindowProc: Message "), 50);
  EXPECT_EQ(log_.CountContaining("OverlayWindowProc: Message 50 = "), 1);
  EXPECT_EQ(log_.CountContaining("OverlayWindowProc: Message 51 = "), 0);
}

}  // namespace
}  // namespace vantro
