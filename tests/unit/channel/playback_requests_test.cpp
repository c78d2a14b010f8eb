// Loading, transport and position.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/line_order.h"
#include "tests/unit/channel/player_channel.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PlaybackRequests : public PlayerChannelTest {};

TEST_F(PlaybackRequests, SetMediaReadsTheLowerCaseUrlWhenTheOtherIsEmpty) {
  EXPECT_EQ(Ask("setMedia", MapOf({{"URL", ""}, {"url", "http://lower"}})), kTrue);
  EXPECT_EQ(state_.current_.url, "http://lower");
  EXPECT_EQ(Ask("setMedia", MapOf({{"URL", "http://upper"}, {"url", "http://lower"}})), kTrue);
  EXPECT_EQ(state_.current_.url, "http://upper");
  EXPECT_EQ(Ask("setMedia", MapOf({{"URL", Value(5)}, {"url", "http://lower"}})), kTrue);
  EXPECT_EQ(state_.current_.url, "http://lower");
}

TEST_F(PlaybackRequests, SetMediaReadsTheCapitalTitleWhenTheOtherIsEmpty) {
  Ask("setMedia", MapOf({{"URL", kUrl}, {"Title", "Capital"}}));
  EXPECT_EQ(state_.current_.title, "Capital");
  Ask("setMedia", MapOf({{"URL", kUrl}, {"title", "small"}, {"Title", "Capital"}}));
  EXPECT_EQ(state_.current_.title, "small");
}

TEST_F(PlaybackRequests, SetMediaPlaysTheUrlWithItsBlanks) {
  EXPECT_EQ(Ask("setMedia", MapOf({{"URL", "  http://host/a b \t"}})), kTrue);
  EXPECT_EQ(state_.current_.url, "  http://host/a b \t");
  EXPECT_EQ(Ask("setMedia", MapOf({{"URL", " "}, {"url", "http://lower"}})), kTrue);
  EXPECT_EQ(state_.current_.url, " ");
}

TEST_F(PlaybackRequests, SetMediaWithoutAUrlIsAnErrorAndCallsNothing) {
  vlc_.ClearCalls();
  EXPECT_EQ(Ask("setMedia"), Failure("INVALID_ARGUMENT", "URL is required"));
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_THAT(interface_.Calls(), IsEmpty());
}

TEST_F(PlaybackRequests, SetMediaReadsAndLogsEveryKeyBeforeItAnswers) {
  const LogCapture log;
  Ask("setMedia", MapOf({{"initialSeekPositionMs", Value(1)},
                         {"playerProfile", "windows_fullscreen"},
                         {"localVodProxyEnabled", Value(true)}}));
  EXPECT_THAT(log.Lines(),
              ElementsAre("DEBUG [SetMedia] Received initialSeekPositionMs=1 - will seek before play",
                          "DEBUG [SetMedia] URL= isLive=1 supportsTimeshift=0 inTimeshiftMode=0",
                          "DEBUG [SetMedia] Player profile matches (windows_fullscreen)",
                          "DEBUG [SetMedia] Local proxy enabled flag set",
                          "DEBUG SetMedia: Final URL after parsing: ''", "DEBUG SetMedia: Using networkCacheMs: 5000"));
}

TEST_F(PlaybackRequests, SetMediaLogsNoPositionNoProfileAndNoProxyUnlessGiven) {
  const LogCapture log;
  Ask("setMedia", MapOf({{"initialSeekPositionMs", Value(0)}, {"playerProfile", ""}}));
  EXPECT_THAT(log.Lines(),
              ElementsAre("DEBUG [SetMedia] URL= isLive=1 supportsTimeshift=0 inTimeshiftMode=0",
                          "DEBUG SetMedia: Final URL after parsing: ''", "DEBUG SetMedia: Using networkCacheMs: 5000"));
}

TEST_F(PlaybackRequests, SetMediaIsLiveUnlessABooleanSaysOtherwise) {
  Ask("setMedia", MapOf({{"URL", kUrl}, {"isLiveStream", Value(0)}}));
  EXPECT_TRUE(state_.current_.isLive);
  Ask("setMedia", MapOf({{"URL", kUrl}, {"isLiveStream", Value(false)}}));
  EXPECT_FALSE(state_.current_.isLive);
  Ask("setMedia", MapOf({{"URL", kUrl}}));
  EXPECT_TRUE(state_.current_.isLive);
}

TEST_F(PlaybackRequests, SetMediaPassesTheTimeshiftFlagsOn) {
  Ask("setMedia", MapOf({{"URL", kUrl}, {"supportsTimeshift", Value(true)}, {"isInTimeshiftMode", Value(true)}}));
  EXPECT_TRUE(state_.current_.supportsTimeshift);
  EXPECT_TRUE(state_.current_.inTimeshiftMode);
  Ask("setMedia", MapOf({{"URL", kUrl}}));
  EXPECT_FALSE(state_.current_.supportsTimeshift);
  EXPECT_FALSE(state_.current_.inTimeshiftMode);
}

TEST_F(PlaybackRequests, SetMediaWithAnotherProfileStillPlays) {
  EXPECT_EQ(Ask("setMedia", MapOf({{"URL", kUrl}, {"playerProfile", "other"}})), kTrue);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 1);
  EXPECT_TRUE(log_.Has("DEBUG [SetMedia] Unexpected player profile 'other' (expected 'windows_fullscreen')"));
}

TEST_F(PlaybackRequests, SetMediaPassesACacheOf5000MillisecondsByDefault) {
  Ask("setMedia", MapOf({{"URL", kUrl}}));
  EXPECT_EQ(state_.current_.networkCacheMs, 5000);
  Ask("setMedia", MapOf({{"URL", kUrl}, {"networkCacheMs", Value(-1)}}));
  EXPECT_EQ(state_.current_.networkCacheMs, -1);
}

TEST_F(PlaybackRequests, SetMediaSeeksToTheInitialPositionBeforeItPlays) {
  vlc_.ClearCalls();
  Ask("setMedia", MapOf({{"URL", kUrl}, {"initialSeekPositionMs", Value(30000)}}));
  const auto calls = vlc_.Calls();
  const auto seek = std::find(calls.begin(), calls.end(), "libvlc_media_player_set_time(player1, 30000, 0)");
  const auto play = std::find(calls.begin(), calls.end(), "libvlc_media_player_play(player1)");
  EXPECT_NE(seek, calls.end());
  EXPECT_LT(seek - calls.begin(), play - calls.begin());
}

TEST_F(PlaybackRequests, SetMediaThatFailsRepliesFalseWithoutAToast) {
  for (const char* creator : {"libvlc_media_new_uri", "libvlc_media_new_location"}) vlc_.Fail(creator, 2);
  EXPECT_EQ(Ask("setMedia", MapOf({{"URL", kUrl}})), kFalse);
  EXPECT_TRUE(log_.Has("ERROR PLAYER_ERROR: Failed to set media"));
  EXPECT_THAT(interface_.Calls(), IsEmpty());
}

TEST_F(PlaybackRequests, ToastGoesOutBeforeTheFalse) {
  const auto pendingAtToast = [this](const char* method, const Value& arguments) {
    const PendingAtCalls pending(loopback_);
    EXPECT_EQ(Ask(method, arguments), kFalse) << method;
    return pending.Counts();
  };
  for (const char* method :
       {"play", "playPause", "seek", "seekTo", "seekToInitialPosition", "setSpu", "setAudioTrack", "setFontSize"}) {
    EXPECT_THAT(pendingAtToast(method, Value()), ElementsAre(1)) << method;
  }
  LoadMedia();
  const WithoutFunction setTime(LibVlcFunctionTable().libvlc_media_player_set_time);
  EXPECT_THAT(pendingAtToast("seek", Value()), ElementsAre(1));
  EXPECT_THAT(pendingAtToast("seekToInitialPosition", Value()), ElementsAre(1));
  EXPECT_THAT(pendingAtToast("setFontSize", MapOf({{"size", Value(0)}})), ElementsAre(1));
}

// One row of the table of failures without a media.
struct NoMediaRow {
  const char* method;
  const char* log;
};

TEST_F(PlaybackRequests, RequestsThatNeedAMediaToastAndReplyFalse) {
  const NoMediaRow rows[] = {
      {"play", "WARNING Play ignored: no media set"},
      {"playPause", "WARNING PlayPause ignored: no media set"},
      {"seek", "WARNING Seek ignored: no media set"},
      {"seekTo", "WARNING Seek ignored: no media set"},
      {"seekToInitialPosition", "WARNING SeekToInitialPosition ignored: no media set"},
      {"setSpu", nullptr},
      {"setAudioTrack", nullptr},
      {"setFontSize", nullptr},
  };
  for (const NoMediaRow& row : rows) {
    interface_.ClearCalls();
    LogCapture log;
    EXPECT_EQ(Ask(row.method), kFalse) << row.method;
    EXPECT_THAT(interface_.Calls(), ElementsAre(kNotReady)) << row.method;
    if (row.log) {
      EXPECT_TRUE(log.Has(row.log)) << row.method;
    } else {
      EXPECT_EQ(log.CountContaining("ignored"), 0) << row.method;
    }
  }
}

TEST_F(PlaybackRequests, RequestsThatNeedNoMediaAnswerWithoutOne) {
  for (const char* method : {"pause", "stop", "onStopped", "getTracksInfo", "getSpuTracks"}) {
    EXPECT_EQ(Ask(method), kTrue) << method;
  }
  EXPECT_EQ(Ask("isPlaying"), kFalse);
  EXPECT_THAT(interface_.CallNames(), testing::Not(testing::Contains("showToast")));
}

TEST_F(PlaybackRequests, PlayWithAMediaRepliesTrueWhateverLibvlcReturns) {
  LoadMedia();
  vlc_.SetResult("libvlc_media_player_play", -1);
  EXPECT_EQ(Ask("play"), kTrue);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 1);
}

TEST_F(PlaybackRequests, PausePausesWithAndWithoutAMedia) {
  EXPECT_EQ(Ask("pause"), kTrue);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_pause"), 1);
  LoadMedia();
  EXPECT_EQ(Ask("pause"), kTrue);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_pause"), 1);
}

TEST_F(PlaybackRequests, PlayPausePausesWhatPlays) {
  LoadMedia();
  vlc_.SetPlaying(MediaPlayer(), true);
  EXPECT_EQ(Ask("playPause"), kTrue);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_pause"), 1);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 0);
}

TEST_F(PlaybackRequests, PlayPausePausesWhatPlaysAlsoWithoutAMedia) {
  vlc_.SetPlaying(MediaPlayer(), true);
  EXPECT_EQ(Ask("playPause"), kTrue);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_pause"), 1);
  EXPECT_THAT(interface_.Calls(), IsEmpty());
}

TEST_F(PlaybackRequests, PlayPauseWhilePausedPlaysAndRepliesTrue) {
  LoadMedia();
  vlc_.SetPlaying(MediaPlayer(), false);
  EXPECT_EQ(Ask("playPause"), kTrue);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 1);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_pause"), 0);
}

TEST_F(PlaybackRequests, StopAndOnStoppedLeaveTheStoppedEventToTheInterface) {
  for (const char* method : {"stop", "onStopped"}) {
    LoadMedia();
    // setMedia stops the player itself and suppresses the next stopped event. This is that event.
    vlc_.Raise(MediaPlayer(), 0x106);
    interface_.ClearCalls();
    EXPECT_EQ(Ask(method), kTrue);
    EXPECT_EQ(vlc_.CountOf("libvlc_media_player_stop"), 1) << method;
    vlc_.Raise(MediaPlayer(), 0x106);
    EXPECT_THAT(interface_.CallNames(), ElementsAre("onStopped")) << method;
  }
}

TEST_F(PlaybackRequests, PositionAndDurationAreLibvlcs64BitMilliseconds) {
  vlc_.SetTime(MediaPlayer(), int64_t{5} << 32);
  vlc_.SetLength(MediaPlayer(), 7200000);
  EXPECT_EQ(Ask("getPosition"), Success(Value(int64_t{5} << 32)));
  EXPECT_EQ(Ask("getDuration"), Success(Value(int64_t{7200000})));
}

TEST_F(PlaybackRequests, PositionAndDurationOfMinusOnePassThrough) {
  vlc_.SetTime(MediaPlayer(), -1);
  vlc_.SetLength(MediaPlayer(), -1);
  EXPECT_EQ(Ask("getPosition"), Success(Value(int64_t{-1})));
  EXPECT_EQ(Ask("getDuration"), Success(Value(int64_t{-1})));
}

TEST_F(PlaybackRequests, PositionAndDurationWithoutAPlayerHandleAreZero) {
  player_->Cleanup();
  EXPECT_EQ(Ask("getPosition"), Success(Value(int64_t{0})));
  EXPECT_EQ(Ask("getDuration"), Success(Value(int64_t{0})));
}

TEST_F(PlaybackRequests, PositionAndDurationWithoutTheirFunctionAreZero) {
  const WithoutFunction time(LibVlcFunctionTable().libvlc_media_player_get_time);
  const WithoutFunction length(LibVlcFunctionTable().libvlc_media_player_get_length);
  vlc_.SetTime(MediaPlayer(), 5);
  EXPECT_EQ(Ask("getPosition"), Success(Value(int64_t{0})));
  EXPECT_EQ(Ask("getDuration"), Success(Value(int64_t{0})));
}

TEST_F(PlaybackRequests, SeekWithoutAPositionSeeksToZero) {
  LoadMedia();
  EXPECT_EQ(Ask("seek"), kTrue);
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_set_time"), ElementsAre("libvlc_media_player_set_time(player1, 0, 0)"));
}

TEST_F(PlaybackRequests, SeekTruncatesADoubleAndTakesAStringForZero) {
  LoadMedia();
  Ask("seek", MapOf({{"positionMs", Value(1500.9)}}));
  Ask("seekTo", MapOf({{"positionMs", Value(-1500.9)}}));
  Ask("seekToInitialPosition", MapOf({{"positionMs", "1500"}}));
  EXPECT_THAT(
      vlc_.CallsOf("libvlc_media_player_set_time"),
      ElementsAre("libvlc_media_player_set_time(player1, 1500, 0)", "libvlc_media_player_set_time(player1, -1500, 0)",
                  "libvlc_media_player_set_time(player1, 0, 0)"));
}

TEST_F(PlaybackRequests, SeekCutsA64BitPositionToItsLow32Bits) {
  LoadMedia();
  const std::pair<int64_t, const char*> rows[] = {
      {(int64_t{1} << 32) + 5, "5"}, {0xFFFFFFFF, "-1"}, {int64_t{1} << 31, "-2147483648"}};
  for (const char* method : {"seek", "seekTo", "seekToInitialPosition"}) {
    for (const auto& [position, sought] : rows) {
      vlc_.ClearCalls();
      EXPECT_EQ(Ask(method, MapOf({{"positionMs", Value(position)}})), kTrue);
      EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_set_time"),
                  ElementsAre("libvlc_media_player_set_time(player1, " + std::string(sought) + ", 0)"));
    }
  }
}

TEST_F(PlaybackRequests, SetMediaLogsEachFlagInItsPlace) {
  const std::pair<const char*, const char*> rows[] = {
      {"isLiveStream", "DEBUG [SetMedia] URL= isLive=1 supportsTimeshift=0 inTimeshiftMode=0"},
      {"supportsTimeshift", "DEBUG [SetMedia] URL= isLive=0 supportsTimeshift=1 inTimeshiftMode=0"},
      {"isInTimeshiftMode", "DEBUG [SetMedia] URL= isLive=0 supportsTimeshift=0 inTimeshiftMode=1"},
  };
  for (const auto& [flag, line] : rows) {
    const LogCapture log;
    Ask("setMedia", std::string(flag) == "isLiveStream" ? MapOf({{flag, Value(true)}})
                                                        : MapOf({{"isLiveStream", Value(false)}, {flag, Value(true)}}));
    EXPECT_TRUE(log.Has(line)) << flag;
  }
}

TEST_F(PlaybackRequests, SeekThatFailsIsLoggedBeforeItsToastAndAnsweredLast) {
  LoadMedia();
  const WithoutFunction setTime(LibVlcFunctionTable().libvlc_media_player_set_time);
  const NotedMessages messages;
  EXPECT_EQ(Ask("seek", MapOf({{"positionMs", Value(9)}})), kFalse);
  EXPECT_TRUE(InOrder(log_, {"ERROR PLAYER_ERROR: Failed to seek", "(call) call of the interface", "(call) answer"}));
}

TEST_F(PlaybackRequests, SeekThatFailsLogsToastsLongAndRepliesFalse) {
  LoadMedia();
  const WithoutFunction setTime(LibVlcFunctionTable().libvlc_media_player_set_time);
  const std::pair<const char*, const char*> rows[] = {
      {"seek", "ERROR PLAYER_ERROR: Failed to seek"},
      {"seekTo", "ERROR PLAYER_ERROR: Failed to seek"},
      {"seekToInitialPosition", "ERROR PLAYER_ERROR: Failed to seek to initial position"},
  };
  for (const auto& [method, line] : rows) {
    interface_.ClearCalls();
    LogCapture log;
    EXPECT_EQ(Ask(method, MapOf({{"positionMs", Value(5)}})), kFalse) << method;
    EXPECT_THAT(interface_.Calls(), ElementsAre(Toast("Seek failed", "false"))) << method;
    EXPECT_TRUE(log.Has(line)) << method;
  }
}

TEST_F(PlaybackRequests, UserAgentIsStoredTwiceAndNeverUsed) {
  EXPECT_EQ(Ask("setUserAgent", MapOf({{"UA", "Agent/1.0"}})), kTrue);
  EXPECT_EQ(handler_->userAgent_, "Agent/1.0");
  EXPECT_EQ(state_.userAgent_, "Agent/1.0");
  Ask("setMedia", MapOf({{"URL", kUrl}}));
  for (const std::string& call : vlc_.Calls()) EXPECT_EQ(call.find("Agent"), std::string::npos) << call;
  Ask("setUserAgent");
  EXPECT_EQ(handler_->userAgent_, "");
  EXPECT_EQ(state_.userAgent_, "");
}

TEST_F(PlaybackRequests, MediaTitleIsStoredInTheHandlerAlone) {
  EXPECT_EQ(Ask("setMediaTitle", MapOf({{"title", "News"}})), kTrue);
  EXPECT_EQ(handler_->mediaTitle_, "News");
  EXPECT_EQ(state_.current_.title, "");
}

TEST_F(PlaybackRequests, AbsentMediaTitleIsStoredEmpty) {
  for (const Value& arguments : {Value(), MapOf({}), MapOf({{"title", Value(5)}})}) {
    Ask("setMediaTitle", MapOf({{"title", "News"}}));
    EXPECT_EQ(Ask("setMediaTitle", arguments), kTrue);
    EXPECT_EQ(handler_->mediaTitle_, "") << Describe(arguments);
  }
}

}  // namespace
}  // namespace vantro::test
