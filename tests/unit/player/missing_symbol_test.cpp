// Start-up over a libvlc without one of the five functions that the player cannot start without. The program is built
// once for each of them. VANTRO_MISSING_SYMBOL is the name of the function in the log.
#include "tests/unit/player/player_fixture.h"

namespace vantro::test {
namespace {

std::string ExpectedLine() {
  std::string line = "ERROR Missing required libvlc symbols (";
  std::string separator;
  for (const std::string name : {"new", "player_new", "set_hwnd", "event_manager", "event_attach"}) {
    line += separator + name + (name == VANTRO_MISSING_SYMBOL ? "=0" : "=1");
    separator = ", ";
  }
  return line + ")";
}

TEST_F(PlayerTest, WithoutARequiredSymbolIsNotStartedAndNothingIsMade) {
  EXPECT_FALSE(player_.Initialize(parent_.get()));
  EXPECT_EQ(log_.Lines().back(), ExpectedLine());
  EXPECT_EQ(vlc_.CountOf("libvlc_new"), 0);
  EXPECT_EQ(state_.vlcInstance_.get(), nullptr);
  EXPECT_EQ(state_.mediaPlayer_.get(), nullptr);
}

TEST_F(PlayerTest, WithoutARequiredSymbolKeepsItsChildWindowUntilCleanup) {
  ASSERT_FALSE(player_.Initialize(parent_.get()));
  const HWND child = state_.vlcWindow_;
  EXPECT_TRUE(IsWindow(child));
  player_.Cleanup();
  EXPECT_FALSE(IsWindow(child));
}

TEST_F(PlayerTest, WithoutARequiredSymbolRefusesAMedia) {
  ASSERT_FALSE(player_.Initialize(parent_.get()));
  EXPECT_FALSE(SetMedia("http://host/a"));
  EXPECT_TRUE(log_.Has("ERROR [VLCPlayer::SetMedia] ERROR: Missing mediaPlayer or vlcInstance"));
}

}  // namespace
}  // namespace vantro::test
