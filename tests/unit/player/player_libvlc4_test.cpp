// The player over the exports of a current libvlc 4, which has no synchronous stop, no libvlc_media_new_uri and no
// track lists.
#include "tests/unit/player/player_fixture.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PlayerOnLibVlc4 : public PlayerTest {
 protected:
  void SetUp() override {
    Start();
    ASSERT_TRUE(SetMedia("http://host/a"));
  }
};

TEST_F(PlayerOnLibVlc4, MakesANetworkMediaFromItsLocation) {
  EXPECT_EQ(vlc_.Calls().front(), "libvlc_media_new_location(\"http://host/a\")");
}

TEST_F(PlayerOnLibVlc4, ReplacesTheStreamBySettingTheNextMedia) {
  vlc_.ClearCalls();
  ASSERT_TRUE(SetMedia("http://host/b"));
  EXPECT_THAT(vlc_.Calls(),
              ElementsAre("libvlc_media_new_location(\"http://host/b\")", "libvlc_media_release(media1)",
                          "libvlc_media_add_option(media2, \":no-video-title-show\")",
                          "libvlc_media_add_option(media2, \":network-caching=1500\")",
                          "libvlc_media_player_set_media(player1, media2)", "libvlc_media_player_play(player1)",
                          "libvlc_audio_get_volume(player1)", "libvlc_audio_get_mute(player1)"));
}

TEST_F(PlayerOnLibVlc4, SuppressesNoStoppedEvent) { EXPECT_FALSE(state_.suppressStoppedEvent_); }

TEST_F(PlayerOnLibVlc4, StopsOnlyTheWatchdog) {
  vlc_.ClearCalls();
  player_.StopInternal(false);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_FALSE(state_.stallWatchdogActive_);
}

TEST_F(PlayerOnLibVlc4, ReadsNoTrackLists) {
  int events = 0;
  state_.eventCallback_ = [&](const char*, const char*) { ++events; };
  vlc_.ClearCalls();
  player_.RefreshSpuTracks();
  player_.RefreshAudioTracks();
  EXPECT_EQ(events, 0);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(PlayerOnLibVlc4, CleanupReleasesWithoutAStop) {
  player_.Cleanup();
  EXPECT_FALSE(state_.suppressStoppedEvent_);
  EXPECT_EQ(vlc_.LivePlayers(), 0);
  EXPECT_EQ(vlc_.LiveMedia(), 0);
  EXPECT_EQ(vlc_.LiveInstances(), 0);
}

}  // namespace
}  // namespace vantro::test
