// Play, pause, stop, volume, time and track lists of the single view.
#include <limits>
#include <utility>

#include "tests/unit/player/player_fixture.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Playing.

class PlayerPlay : public StartedPlayerTest {
 protected:
  void SetUp() override {
    StartedPlayerTest::SetUp();
    ASSERT_TRUE(SetMedia("http://host/a"));
    vlc_.ClearCalls();
  }
  std::string CalledLine(int volume) {
    return "INFO [VLCPlayer::Play] Called, mediaPlayer_.get()=" + PointerText(Player()) +
           ", volume_=" + std::to_string(volume) + ", isMultiViewMode_=0";
  }
  // The log lines of the last call of Play.
  std::vector<std::string> LastLines() {
    const std::vector<std::string> lines = LinesOf("[VLCPlayer::Play]");
    for (size_t index = lines.size(); index-- > 0;)
      if (lines[index].find("] Called, ") != std::string::npos)
        return {lines.begin() + static_cast<long>(index), lines.end()};
    return lines;
  }
};

TEST_F(PlayerPlay, CallsLibvlcAgainOnARunningStream) {
  player_.Play();
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_player_play(player1)", "libvlc_audio_get_volume(player1)",
                                        "libvlc_audio_get_mute(player1)"));
  EXPECT_THAT(
      LastLines(),
      ElementsAre(CalledLine(100), "INFO [VLCPlayer::Play] Called libvlc_media_player_play successfully",
                  "INFO [VLCPlayer::Play] VLC audio state: volume=100, muted=0 (-1=error, 0=unmuted, 1=muted)"));
}

TEST_F(PlayerPlay, WithoutAMediaIsIgnored) {
  state_.media_.reset();
  vlc_.ClearCalls();
  player_.Play();
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_EQ(log_.Lines().back(), "WARNING [VLCPlayer::Play] Ignoring play: no media set");
}

TEST_F(PlayerPlay, WithoutAPlayerIsAnError) {
  player_.Cleanup();
  player_.Play();
  EXPECT_EQ(log_.Lines().back(), "ERROR [VLCPlayer::Play] ERROR: mediaPlayer_.get() is null");
}

TEST_F(PlayerPlay, WithoutTheFunctionIsAnError) {
  LibVlcFunctionTable().libvlc_media_player_play = nullptr;
  player_.Play();
  EXPECT_EQ(log_.Lines().back(), "ERROR [VLCPlayer::Play] ERROR: Could not get vlc_media_player_play function");
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(PlayerPlay, WithoutEitherAudioGetterEndsAfterThePlay) {
  LibVlcFunctions& table = LibVlcFunctionTable();
  const auto getMute = std::exchange(table.libvlc_audio_get_mute, nullptr);
  player_.Play();
  table.libvlc_audio_get_mute = getMute;
  table.libvlc_audio_get_volume = nullptr;
  player_.Play();
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_player_play(player1)", "libvlc_media_player_play(player1)"));
}

TEST_F(PlayerPlay, WithoutAnAudioOutputTriesVolume100Once) {
  vlc_.SetVolume(Player(), -1);
  vlc_.SetMute(Player(), -1);
  vlc_.SetResult("libvlc_audio_set_volume", -1);
  player_.Play();
  EXPECT_THAT(vlc_.CallsOf("libvlc_audio_set_volume"), ElementsAre("libvlc_audio_set_volume(player1, 100)"));
  EXPECT_EQ(vlc_.CountOf("libvlc_audio_set_mute"), 0);
  EXPECT_THAT(
      LastLines(),
      ElementsAre(CalledLine(100), "INFO [VLCPlayer::Play] Called libvlc_media_player_play successfully",
                  "INFO [VLCPlayer::Play] VLC audio state: volume=-1, muted=-1 (-1=error, 0=unmuted, 1=muted)",
                  "ERROR [VLCPlayer::Play] ERROR: VLC audio subsystem not working (both volume and mute return -1)",
                  "WARNING [VLCPlayer::Play] Possible causes: No audio devices, VLC audio module failed, or VLC built "
                  "without audio",
                  "INFO [VLCPlayer::Play] Attempted to force volume=100, result=-1"));
}

TEST_F(PlayerPlay, WithoutAnAudioOutputAndWithoutTheVolumeFunctionTriesNothing) {
  vlc_.SetVolume(Player(), -1);
  vlc_.SetMute(Player(), -1);
  LibVlcFunctionTable().libvlc_audio_set_volume = nullptr;
  player_.Play();
  EXPECT_EQ(log_.CountContaining("Attempted to force volume"), 0);
  EXPECT_EQ(log_.CountContaining("Possible causes"), 1);
}

struct AudioRow {
  const char* name;
  int volume;
  int mute;
  bool repaired;
};

class AudioState : public PlayerPlay, public testing::WithParamInterface<AudioRow> {};

TEST_P(AudioState, IsRepairedWhereItWouldBeSilent) {
  vlc_.SetVolume(Player(), GetParam().volume);
  vlc_.SetMute(Player(), GetParam().mute);
  player_.Play();
  if (GetParam().repaired) {
    EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_player_play(player1)", "libvlc_audio_get_volume(player1)",
                                          "libvlc_audio_get_mute(player1)", "libvlc_audio_set_mute(player1, 0)",
                                          "libvlc_audio_set_volume(player1, 100)"));
    EXPECT_EQ(LastLines().back(), "INFO [VLCPlayer::Play] FIXED: Unmuted and set volume to 100");
  } else {
    EXPECT_EQ(vlc_.CountOf("libvlc_audio_set_mute"), 0);
    EXPECT_EQ(vlc_.CountOf("libvlc_audio_set_volume"), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Table, AudioState,
                         testing::Values(AudioRow{"Muted", 50, 1, true}, AudioRow{"Silent", 0, 0, true},
                                         AudioRow{"SilentWithUnknownMute", 0, -1, true},
                                         AudioRow{"MutedWithUnknownVolume", -1, 1, true},
                                         AudioRow{"Heard", 1, 0, false}, AudioRow{"UnknownMute", 50, -1, false},
                                         AudioRow{"UnknownVolume", -1, 0, false}),
                         [](const testing::TestParamInfo<AudioRow>& row) { return row.param.name; });

TEST_F(PlayerPlay, WithoutTheMuteFunctionLeavesASilentPlayerAlone) {
  vlc_.SetVolume(Player(), 0);
  LibVlcFunctionTable().libvlc_audio_set_mute = nullptr;
  player_.Play();
  EXPECT_EQ(vlc_.CountOf("libvlc_audio_set_volume"), 0);
}

TEST_F(PlayerPlay, AfterVolume0EndsWithLibvlcAt100AndTheCachedVolumeAt0) {
  player_.SetVolume(0);
  player_.Play();
  EXPECT_EQ(vlc_.Volume(Player()), 100);
  EXPECT_EQ(state_.volume_, 0);
}

// Pausing, querying, stopping.

TEST_F(StartedPlayerTest, PauseToggles) {
  player_.Pause();
  player_.Pause();
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_player_pause(player1)", "libvlc_media_player_pause(player1)"));
}

TEST_F(StartedPlayerTest, PauseWithoutTheSlotDoesNothing) {
  LibVlcFunctionTable().libvlc_media_player_pause = nullptr;
  vlc_.ClearCalls();
  player_.Pause();
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(StartedPlayerTest, IsPlayingIsLibvlcsResult) {
  EXPECT_FALSE(player_.IsPlaying());
  vlc_.SetPlaying(Player(), true);
  EXPECT_TRUE(player_.IsPlaying());
  LibVlcFunctionTable().libvlc_media_player_is_playing = nullptr;
  EXPECT_FALSE(player_.IsPlaying());
}

TEST_F(StartedPlayerTest, StopInternalStopsThePlayerAndTheWatchdogAndKeepsTheMedia) {
  ASSERT_TRUE(SetMedia("http://host/a"));
  state_.suppressStoppedEvent_ = false;
  vlc_.ClearCalls();
  player_.StopInternal(false);
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_player_stop(player1)"));
  EXPECT_FALSE(state_.suppressStoppedEvent_);
  EXPECT_FALSE(state_.stallWatchdogActive_);
  EXPECT_NE(state_.media_.get(), nullptr);
}

TEST_F(StartedPlayerTest, StopInternalSuppressesBeforeItStops) {
  bool suppressed = false;
  vlc_.OnCall("libvlc_media_player_stop", [&] { suppressed = state_.suppressStoppedEvent_; });
  player_.StopInternal(true);
  vlc_.OnCall("libvlc_media_player_stop", nullptr);  // the player's destructor stops again
  EXPECT_TRUE(suppressed);
}

TEST_F(StartedPlayerTest, StopInternalWithoutTheSlotOnlyStopsTheWatchdog) {
  ASSERT_TRUE(SetMedia("http://host/a"));
  state_.suppressStoppedEvent_ = false;
  LibVlcFunctionTable().libvlc_media_player_stop = nullptr;
  vlc_.ClearCalls();
  player_.StopInternal(true);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_FALSE(state_.suppressStoppedEvent_);
  EXPECT_FALSE(state_.stallWatchdogActive_);
}

// Volume and time.

TEST_F(StartedPlayerTest, SetVolumePassesAnyValueOn) {
  for (const int volume : {0, 100, 250, -7}) player_.SetVolume(volume);
  EXPECT_THAT(vlc_.Calls(),
              ElementsAre("libvlc_audio_set_volume(player1, 0)", "libvlc_audio_set_volume(player1, 100)",
                          "libvlc_audio_set_volume(player1, 250)", "libvlc_audio_set_volume(player1, -7)"));
  EXPECT_EQ(state_.volume_, -7);
}

TEST_F(StartedPlayerTest, SetVolumeKeepsTheVolumeThatLibvlcRefuses) {
  vlc_.SetResult("libvlc_audio_set_volume", -1);
  player_.SetVolume(40);
  EXPECT_EQ(state_.volume_, 40);
  EXPECT_EQ(log_.Lines().back(), "INFO [VLCPlayer::SetVolume] libvlc_audio_set_volume result=-1 (0=success, -1=error)");
}

TEST_F(StartedPlayerTest, SetVolumeWithoutTheSlotKeepsTheVolume) {
  LibVlcFunctionTable().libvlc_audio_set_volume = nullptr;
  player_.SetVolume(40);
  EXPECT_EQ(state_.volume_, 40);
  EXPECT_EQ(log_.Lines().back(), "ERROR [VLCPlayer::SetVolume] ERROR: Could not get vlc_audio_set_volume function");
}

TEST_F(PlayerTest, SetVolumeBeforeInitializeCachesTheValueAndMakesNoCall) {
  player_.SetVolume(40);
  EXPECT_EQ(state_.volume_, 40);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_THAT(log_.Lines(), ElementsAre("INFO [VLCPlayer::SetVolume] Called with volume=40, current volume_=100, "
                                        "mediaPlayer_.get()=" +
                                            PointerText(nullptr) + ", isMultiViewMode_=0",
                                        "INFO [VLCPlayer::SetVolume] No mediaPlayer_.get(), just caching volume"));
}

TEST_F(PlayerTest, TheOperationsBeforeInitializeDoNothing) {
  player_.Pause();
  player_.StopInternal(true);
  player_.RefreshSpuTracks();
  player_.RefreshAudioTracks();
  EXPECT_FALSE(player_.IsPlaying());
  EXPECT_FALSE(player_.SeekTo(1));
  EXPECT_FALSE(state_.suppressStoppedEvent_);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_THAT(log_.Lines(), IsEmpty());
}

// No other test of this program has a grid.
TEST_F(StartedPlayerTest, TheFirstSoundOfAGridInTheProcessIsCallOne) {
  player_.EnableMultiView();
  EXPECT_TRUE(log_.Has("DEBUG [UpdateActiveAudio] Call count: 1"));
  player_.DisableMultiView();
}

TEST_F(StartedPlayerTest, SeekToPassesTheTimeOnWhateverLibvlcAnswers) {
  vlc_.SetResult("libvlc_media_player_set_time", -1);
  EXPECT_TRUE(player_.SeekTo(std::numeric_limits<int64_t>::max()));
  EXPECT_TRUE(player_.SeekTo(-1));
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_player_set_time(player1, 9223372036854775807, 0)",
                                        "libvlc_media_player_set_time(player1, -1, 0)"));
}

TEST_F(StartedPlayerTest, SeekToWithoutTheSlotIsFalse) {
  LibVlcFunctionTable().libvlc_media_player_set_time = nullptr;
  EXPECT_FALSE(player_.SeekTo(5));
}

TEST_F(StartedPlayerTest, PositionAndDurationAreLibvlcsResults) {
  vlc_.SetTime(Player(), 73000);
  vlc_.SetLength(Player(), -1);
  EXPECT_EQ(player_.GetPosition(), 73000);
  EXPECT_EQ(player_.GetDuration(), -1);
}

TEST_F(StartedPlayerTest, PositionAndDurationAreZeroWithoutTheirFunctions) {
  LibVlcFunctionTable().libvlc_media_player_get_time = nullptr;
  LibVlcFunctionTable().libvlc_media_player_get_length = nullptr;
  EXPECT_EQ(player_.GetPosition(), 0);
  EXPECT_EQ(player_.GetDuration(), 0);
}

TEST_F(PlayerTest, PositionAndDurationBeforeInitializeAreZero) {
  EXPECT_EQ(player_.GetPosition(), 0);
  EXPECT_EQ(player_.GetDuration(), 0);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

// Selecting a track.

TEST_F(StartedPlayerTest, ATrackIsChosenByItsId) {
  player_.SetSpuTrack(3);
  player_.SetAudioTrack(-1);
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_video_set_spu(player1, 3)", "libvlc_audio_set_track(player1, -1)"));
}

TEST_F(StartedPlayerTest, NoTrackIsChosenWithoutTheFunctions) {
  LibVlcFunctionTable().libvlc_video_set_spu = nullptr;
  LibVlcFunctionTable().libvlc_audio_set_track = nullptr;
  player_.SetSpuTrack(3);
  player_.SetAudioTrack(3);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(PlayerTest, NoTrackIsChosenBeforeInitialize) {
  player_.SetSpuTrack(3);
  player_.SetAudioTrack(3);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

// Track lists.

class TrackLists : public StartedPlayerTest {
 protected:
  void SetUp() override {
    StartedPlayerTest::SetUp();
    state_.eventCallback_ = [this](const char* name, const char* argument) {
      events_.push_back(std::string(name) + "=" + argument);
    };
  }
  std::vector<std::string> events_;
};

TEST_F(TrackLists, AreReadReleasedAndReportedWithoutTheirElements) {
  vlc_.SetSpuTracks(Player(), {{-1, "Disable"}, {3, "English"}});
  vlc_.SetAudioTracks(Player(), {{-1, "Disable"}, {1, "Stereo"}});
  player_.RefreshSpuTracks();
  player_.RefreshAudioTracks();
  EXPECT_THAT(
      vlc_.Calls(),
      ElementsAre("libvlc_video_get_spu_description(player1)", "libvlc_track_description_list_release(list)",
                  "libvlc_audio_get_track_description(player1)", "libvlc_track_description_list_release(list)"));
  EXPECT_THAT(events_, ElementsAre("spuTracks=", "audioTracks="));
  EXPECT_EQ(vlc_.Live().track_lists, 0);
}

TEST_F(TrackLists, ThatAreEmptyAreReportedToo) {
  player_.RefreshSpuTracks();
  player_.RefreshAudioTracks();
  EXPECT_THAT(events_, ElementsAre("spuTracks=", "audioTracks="));
}

TEST_F(TrackLists, AreReadWithoutACallback) {
  state_.eventCallback_ = nullptr;
  player_.RefreshSpuTracks();
  EXPECT_EQ(vlc_.CountOf("libvlc_video_get_spu_description"), 1);
}

TEST_F(TrackLists, AreNotReadWithoutTheReleaseFunction) {
  LibVlcFunctionTable().libvlc_track_description_list_release = nullptr;
  player_.RefreshSpuTracks();
  player_.RefreshAudioTracks();
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_THAT(events_, IsEmpty());
}

TEST_F(TrackLists, AreNotReadWithoutTheirOwnFunction) {
  LibVlcFunctionTable().libvlc_video_get_spu_description = nullptr;
  LibVlcFunctionTable().libvlc_audio_get_track_description = nullptr;
  player_.RefreshSpuTracks();
  player_.RefreshAudioTracks();
  EXPECT_THAT(events_, IsEmpty());
}

}  // namespace
}  // namespace vantro::test
