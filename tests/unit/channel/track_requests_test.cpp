// Selecting and reading tracks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/channel/player_channel.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TrackRequests : public PlayerChannelTest {};

TEST_F(TrackRequests, TrackIsTheIndexOrElseTheIdOrElseZero) {
  LoadMedia();
  const std::pair<const char*, const char*> rows[] = {{"setSpu", "libvlc_video_set_spu"},
                                                      {"setAudioTrack", "libvlc_audio_set_track"}};
  for (const auto& [method, function] : rows) {
    const std::string call = std::string(function) + "(player1, ";
    EXPECT_EQ(Ask(method, MapOf({{"id", Value(3)}})), kTrue);
    EXPECT_EQ(Ask(method, MapOf({{"id", Value(3)}, {"index", Value(5)}})), kTrue);
    EXPECT_EQ(Ask(method), kTrue);
    EXPECT_THAT(vlc_.CallsOf(function), ElementsAre(call + "3)", call + "5)", call + "0)"));
  }
}

TEST_F(TrackRequests, TrackWithoutItsFunctionIsStillTrue) {
  LoadMedia();
  const WithoutFunction spu(LibVlcFunctionTable().libvlc_video_set_spu);
  const WithoutFunction audio(LibVlcFunctionTable().libvlc_audio_set_track);
  EXPECT_EQ(Ask("setSpu", MapOf({{"id", Value(3)}})), kTrue);
  EXPECT_EQ(Ask("setAudioTrack", MapOf({{"id", Value(3)}})), kTrue);
}

TEST_F(TrackRequests, FontSizeIsOnlyChecked) {
  LoadMedia();
  EXPECT_EQ(Ask("setFontSize"), kTrue);
  EXPECT_EQ(Ask("setFontSize", MapOf({{"size", Value(1)}})), kTrue);
  EXPECT_THAT(interface_.Calls(), IsEmpty());
  for (int size : {0, -1}) {
    interface_.ClearCalls();
    EXPECT_EQ(Ask("setFontSize", MapOf({{"size", Value(size)}})), kFalse);
    EXPECT_THAT(interface_.Calls(), ElementsAre(Toast("Invalid font size", "true"))) << size;
  }
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(TrackRequests, FontSizeAsksForTheMediaBeforeItsSize) {
  EXPECT_EQ(Ask("setFontSize", MapOf({{"size", Value(0)}})), kFalse);
  EXPECT_THAT(interface_.Calls(), ElementsAre(kNotReady));
}

TEST_F(TrackRequests, SubtitleTracksAreReadReleasedAndReportedWithoutNames) {
  vlc_.SetSpuTracks(MediaPlayer(), {{1, "English"}, {2, "German"}});
  for (const char* method : {"getSpuTracks", "showAvailableSubtitles"}) {
    interface_.ClearCalls();
    EXPECT_EQ(Ask(method), kTrue);
    EXPECT_THAT(interface_.Calls(), ElementsAre(InterfaceCall{"spuTracks", Value()})) << method;
  }
  EXPECT_EQ(vlc_.CountOf("libvlc_track_description_list_release"), 2);
}

TEST_F(TrackRequests, EmptyTrackListIsStillReleasedAndReported) {
  EXPECT_EQ(Ask("getSpuTracks"), kTrue);
  EXPECT_EQ(vlc_.CountOf("libvlc_track_description_list_release"), 1);
  EXPECT_THAT(interface_.CallNames(), ElementsAre("spuTracks"));
}

TEST_F(TrackRequests, TracksInfoReportsSubtitlesThenAudio) {
  EXPECT_EQ(Ask("getTracksInfo"), kTrue);
  EXPECT_THAT(interface_.Calls(),
              ElementsAre(InterfaceCall{"spuTracks", Value()}, InterfaceCall{"audioTracks", Value()}));
}

TEST_F(TrackRequests, TracksWithoutAPlayerHandleRaiseNothingAndReplyTrue) {
  player_->Cleanup();
  interface_.ClearCalls();
  EXPECT_EQ(Ask("getSpuTracks"), kTrue);
  EXPECT_EQ(Ask("getTracksInfo"), kTrue);
  EXPECT_THAT(interface_.Calls(), IsEmpty());
}

}  // namespace
}  // namespace vantro::test
