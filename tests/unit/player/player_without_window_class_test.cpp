// The player in a process in which the class of its child window can't be registered, because the name is in use.
#include "tests/unit/player/player_fixture.h"

namespace vantro::test {
namespace {

class PlayerWithoutWindowClass : public PlayerTest {
 protected:
  static void SetUpTestSuite() {
    WNDCLASSW taken{};
    taken.lpfnWndProc = DefWindowProcW;
    taken.hInstance = GetModuleHandleW(nullptr);
    taken.lpszClassName = kVlcHostWindowClass;
    ASSERT_NE(RegisterClassW(&taken), 0);
  }
};

TEST_F(PlayerWithoutWindowClass, TheRegistrationGives0) { EXPECT_EQ(RegisterVlcHostWindowClass(), 0); }

TEST_F(PlayerWithoutWindowClass, StartsWithoutAChildWindow) {
  state_.vlcWindow_ = parent_.get();
  EXPECT_TRUE(player_.Initialize(parent_.get()));
  EXPECT_EQ(state_.vlcWindow_, nullptr);
  EXPECT_EQ(GetWindow(parent_.get(), GW_CHILD), nullptr);
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_set_hwnd"),
              testing::ElementsAre("libvlc_media_player_set_hwnd(player1, null)"));
}

TEST_F(PlayerWithoutWindowClass, ResizesNothing) {
  Start();
  player_.Resize(0, 30, 640, 360);
  EXPECT_EQ(log_.Lines().back(), "INFO [Resize] Called with 640x360 isMultiViewMode=0");
}

}  // namespace
}  // namespace vantro::test
