// The player in a process that finds libvlc.dll but no libvlccore.dll.
#include "tests/unit/player/player_fixture.h"

namespace vantro::test {
namespace {

TEST_F(PlayerTest, WithoutTheCoreLibraryIsNotStartedOnAnyTry) {
  for (int attempt = 0; attempt < 2; ++attempt) {
    EXPECT_FALSE(player_.Initialize(parent_.get()));
    EXPECT_EQ(log_.Lines().back(), "ERROR Failed to load libvlccore.dll, error: 126");
    EXPECT_TRUE(IsWindow(state_.vlcWindow_));
    player_.Cleanup();
  }
  EXPECT_EQ(log_.CountContaining("Successfully loaded"), 0);
  EXPECT_EQ(vlc_.CountOf("libvlc_new"), 0);
}

}  // namespace
}  // namespace vantro::test
