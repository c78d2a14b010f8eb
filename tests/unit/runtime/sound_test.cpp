// The adapter keeps the volume and mute of a player, because the library forgets them.
#include "tests/unit/runtime/adapter.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SoundTest : public AdapterTest {
 protected:
  void SetVolume(int volume) { EXPECT_EQ(vlc().libvlc_audio_set_volume(player_, volume), 0); }
  void SetMute(int mute) { vlc().libvlc_audio_set_mute(player_, mute); }
  int VolumesSet() { return static_cast<int>(published::CallsOf("libvlc_audio_set_volume").size()); }
};
OVER_BOTH_VARIANTS(SoundTest);

TEST_P(SoundTest, WhatIsSetReachesTheLibraryAtOnce) {
  SetVolume(40);
  SetMute(1);
  EXPECT_EQ(published::Volume(real_), 40);
  EXPECT_EQ(published::Mute(real_), 1);
}

TEST_P(SoundTest, ReadingBackGivesWhatWasSet) {
  SetVolume(40);
  SetMute(3);
  published::SetResult("libvlc_audio_get_volume", 99);
  published::SetResult("libvlc_audio_get_mute", -1);
  EXPECT_EQ(vlc().libvlc_audio_get_volume(player_), 40);
  EXPECT_EQ(vlc().libvlc_audio_get_mute(player_), 1);
}

TEST_P(SoundTest, AVolumeAboveZeroEndsAMute) {
  SetMute(1);
  SetVolume(0);
  EXPECT_EQ(published::Mute(real_), 1);
  EXPECT_EQ(vlc().libvlc_audio_get_mute(player_), 1);
  SetVolume(1);
  EXPECT_EQ(published::Mute(real_), 0);
  EXPECT_EQ(vlc().libvlc_audio_get_mute(player_), 0);
}

TEST_P(SoundTest, AVolumeIsKeptEvenIfTheLibraryHasNoOutputForIt) {
  published::SetResult("libvlc_audio_set_volume", -1);
  SetVolume(40);
  EXPECT_EQ(vlc().libvlc_audio_get_volume(player_), 40);
}

TEST_P(SoundTest, ANegativeVolumeIsPassedToTheLibraryAndNotKept) {
  SetVolume(40);
  published::SetResult("libvlc_audio_set_volume", -1);
  EXPECT_EQ(vlc().libvlc_audio_set_volume(player_, -5), -1);
  EXPECT_EQ(vlc().libvlc_audio_get_volume(player_), 40);
}

// The library forgets values that are set before its sound output starts.
TEST_P(SoundTest, IsSetAgainWhenPlaybackBegins) {
  SetVolume(40);
  SetMute(1);
  published::ClearCalls();
  Reach(kPlaying);
  EXPECT_THAT(published::CallsOf("libvlc_audio_set_volume"), ElementsAre("libvlc_audio_set_volume(player1, 40)"));
  EXPECT_THAT(published::CallsOf("libvlc_audio_set_mute"), ElementsAre("libvlc_audio_set_mute(player1, 1)"));
}

TEST_P(SoundTest, IsSetAgainBeforeTheHostsCallback) {
  SetVolume(40);
  published::ClearCalls();
  int setBefore = 0;
  Action count = [&] { setBefore = VolumesSet(); };
  Attach(kPlaying, RunAction, &count);
  Reach(kPlaying);
  EXPECT_EQ(setBefore, 1);
}

TEST_P(SoundTest, IsSetAgainWithANewMediaAnAudioTrackAndAFullBuffer) {
  SetVolume(40);
  published::ClearCalls();
  ReportMediaChanged();
  EXPECT_EQ(VolumesSet(), 1);
  ReportTrackSelected(published::kAudio);
  EXPECT_EQ(VolumesSet(), 2);
  ReportTrackSelected(published::kVideo);
  ReportBuffering(50);
  EXPECT_EQ(VolumesSet(), 2);
  ReportBuffering(100);
  EXPECT_EQ(VolumesSet(), 3);
}

TEST_P(SoundTest, IsSetAgainWithTheFirstTimesAndThenLeftAlone) {
  SetVolume(40);
  Reach(kPlaying);
  published::ClearCalls();
  for (int i = 0; i < 100; ++i) ReportTime(i * 250);
  EXPECT_EQ(VolumesSet(), 8);
  published::ClearCalls();
  ReportTime(60'000);
  EXPECT_EQ(VolumesSet(), 0);
}

TEST_P(SoundTest, IsNotSetAgainWithATimeBeforeAnyPlayback) {
  SetVolume(40);
  published::ClearCalls();
  ReportTime(0);
  EXPECT_EQ(VolumesSet(), 0);
}

TEST_P(SoundTest, IsNotTouchedWhileNothingWasSet) {
  Reach(kPlaying);
  ReportTime(0);
  ReportBuffering(100);
  EXPECT_THAT(published::Calls(), testing::Not(testing::Contains(testing::StartsWith("libvlc_audio"))));
}

TEST_P(SoundTest, OnlyWhatWasSetIsSetAgain) {
  SetVolume(0);
  published::ClearCalls();
  Reach(kPlaying);
  EXPECT_THAT(published::CallsOf("libvlc_audio_set_volume"), ElementsAre("libvlc_audio_set_volume(player1, 0)"));
  EXPECT_THAT(published::CallsOf("libvlc_audio_set_mute"), IsEmpty());
}

TEST_P(SoundTest, BelongsToOnePlayer) {
  libvlc_media_player_t* const other = vlc().libvlc_media_player_new(instance_);
  SetVolume(40);
  vlc().libvlc_audio_set_volume(other, 70);
  Reach(kPlaying);
  Reach(published::Player(2), kPlaying);
  EXPECT_EQ(published::Volume(real_), 40);
  EXPECT_EQ(published::Volume(published::Player(2)), 70);
  published::SetState(published::Player(2), published::kStopped);
  vlc().libvlc_media_player_release(other);
}

// The host sets a volume while the adapter's call that sets the stored volume is running.
TEST_P(SoundTest, TheHostsLastVolumeWinsOverTheKeptOneThatIsBeingSet) {
  SetVolume(40);
  published::OnCall("libvlc_audio_set_volume", [&] {
    published::OnCall("libvlc_audio_set_volume", {});
    SetVolume(60);
  });
  published::OnLibraryThread([&] { Reach(kPlaying); });
  EXPECT_EQ(published::Volume(real_), 60);
  EXPECT_EQ(vlc().libvlc_audio_get_volume(player_), 60);
}

TEST_P(SoundTest, TheHostsLastMuteWinsOverTheKeptOneThatIsBeingSet) {
  SetMute(0);
  published::OnCall("libvlc_audio_set_mute", [&] {
    published::OnCall("libvlc_audio_set_mute", {});
    SetMute(1);
  });
  published::OnLibraryThread([&] { Reach(kPlaying); });
  EXPECT_EQ(published::Mute(real_), 1);
  EXPECT_EQ(vlc().libvlc_audio_get_mute(player_), 1);
}

TEST_P(SoundTest, VolumesOfTwoThreadsNeitherBlockNorGetLost) {
  std::atomic<bool> end{false};
  published::Later(0, [&] {
    while (!end) Reach(kPlaying), SwitchToThread();
  });
  for (int volume = 1; volume <= 200; ++volume) {
    SetVolume(volume);
    ASSERT_EQ(vlc().libvlc_audio_get_volume(player_), volume);
  }
  end = true;
  published::JoinThreads();
  EXPECT_EQ(published::Volume(real_), 200);
}

}  // namespace
}  // namespace vantro::test
