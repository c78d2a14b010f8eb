// How the stall watchdog handles a wedged stream: the nudge, its resume, the reload, and giving up.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "tests/unit/player/watchdog_fixture.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kGaveUp[] = "onError:Playback issue detected. Please try again.";

using RecoveryTest = WatchdogTest;

// The nudge and its resume.

TEST_F(RecoveryTest, TheFirstDetectionPausesAndArmsTheResume) {
  StartSingle();
  WedgedPasses(3);
  EXPECT_TRUE(log_.Has("INFO [StallDetector] primary wedge detected – performing cheap pause/resume nudge"));
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_pause"), ElementsAre("libvlc_media_player_pause(player1)"));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 0);
  EXPECT_EQ(state_.primaryStall_.lastNudgeTickMs, fakeNow);
  EXPECT_EQ(state_.nudgeTimers_.count(ResumeTimerId(vlc_.Player())), 1u);
}

TEST_F(RecoveryTest, TheResumePlaysOnceAndEndsItsTimer) {
  StartSingle();
  state_.NudgePlayer(vlc_.Player());
  vlc_.ClearCalls();
  EXPECT_TRUE(player_.HandleStallNudgeTimer(ResumeTimerId(vlc_.Player())));
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_player_play(player1)"));
  EXPECT_FALSE(HasTimer(ResumeTimerId(vlc_.Player())));
  EXPECT_FALSE(player_.HandleStallNudgeTimer(ResumeTimerId(vlc_.Player())));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 1);
}

TEST_F(RecoveryTest, TheResumeTimerFiresAfterThreeHundredMilliseconds) {
  StartSingle();
  player_.StopStallWatchdog();
  const ULONGLONG began = GetTickCount64();
  state_.NudgePlayer(vlc_.Player());
  MSG message{};
  while (message.message != WM_TIMER) ASSERT_GT(GetMessageA(&message, parent_.get(), WM_TIMER, WM_TIMER), 0);
  EXPECT_EQ(message.wParam, ResumeTimerId(vlc_.Player()));
  EXPECT_GE(GetTickCount64() - began, 280u);
}

TEST_F(RecoveryTest, ATimerOfAnotherIdIsNoResume) {
  StartSingle();
  EXPECT_FALSE(player_.HandleStallNudgeTimer(1003));
}

TEST_F(RecoveryTest, ASecondNudgeWhileAResumeIsPendingReusesItsTimer) {
  StartSingle();
  state_.NudgePlayer(vlc_.Player());
  state_.NudgePlayer(vlc_.Player());
  EXPECT_EQ(state_.nudgeTimers_.size(), 1u);
  EXPECT_TRUE(player_.HandleStallNudgeTimer(ResumeTimerId(vlc_.Player())));
  EXPECT_FALSE(HasTimer(ResumeTimerId(vlc_.Player())));
}

TEST_F(RecoveryTest, APendingResumeSurvivesAStop) {
  StartSingle();
  state_.NudgePlayer(vlc_.Player());
  player_.StopStallWatchdog();
  vlc_.ClearCalls();
  EXPECT_TRUE(player_.HandleStallNudgeTimer(ResumeTimerId(vlc_.Player())));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 1);
}

TEST_F(RecoveryTest, WithoutAParentWindowANudgePausesAndArmsNoResume) {
  StartSingle();
  state_.parentWindow_ = nullptr;
  vlc_.ClearCalls();
  state_.NudgePlayer(vlc_.Player());
  state_.parentWindow_ = parent_.get();
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_player_pause(player1)"));
  EXPECT_TRUE(state_.nudgeTimers_.empty());
}

TEST_F(RecoveryTest, WithoutThePlayFunctionAResumeOnlyEndsItsTimer) {
  StartSingle();
  state_.NudgePlayer(vlc_.Player());
  LibVlcFunctionTable().libvlc_media_player_play = nullptr;
  vlc_.ClearCalls();
  EXPECT_TRUE(player_.HandleStallNudgeTimer(ResumeTimerId(vlc_.Player())));
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_TRUE(state_.nudgeTimers_.empty());
  EXPECT_FALSE(HasTimer(ResumeTimerId(vlc_.Player())));
}

TEST_F(RecoveryTest, RemovingATileForgetsItsResume) {
  StartGrid(2);
  libvlc_media_player_t* const tile = TilePlayer(1);
  state_.NudgePlayer(tile);
  player_.SetActiveIndexSafe(1);
  ASSERT_TRUE(player_.MvRemoveActive());
  vlc_.ClearCalls();
  EXPECT_FALSE(HasTimer(ResumeTimerId(tile)));
  EXPECT_FALSE(player_.HandleStallNudgeTimer(ResumeTimerId(tile)));
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(RecoveryTest, LeavingForgetsTheResumesOfTilesThatGo) {
  StartGrid(2);
  libvlc_media_player_t* const original = TilePlayer(0);
  libvlc_media_player_t* const tile = TilePlayer(1);
  state_.NudgePlayer(original);
  state_.NudgePlayer(tile);
  player_.DisableMultiView();
  EXPECT_FALSE(player_.HandleStallNudgeTimer(ResumeTimerId(tile)));
  EXPECT_TRUE(player_.HandleStallNudgeTimer(ResumeTimerId(original)));
}

TEST_F(RecoveryTest, AResumePendingAtCleanupIsForgotten) {
  StartSingle();
  const UINT_PTR id = ResumeTimerId(vlc_.Player());
  state_.NudgePlayer(vlc_.Player());
  player_.Cleanup();
  EXPECT_FALSE(player_.HandleStallNudgeTimer(id));
  EXPECT_FALSE(HasTimer(id));
}

TEST_F(RecoveryTest, ANudgeAnsweredWithPausedRestartsTheLadder) {
  StartSingle();
  vlc_.OnCall("libvlc_media_player_pause", [this] { vlc_.Raise(vlc_.Player(), kPaused); });
  WedgedPasses(3);
  EXPECT_THAT(events_.Take(), ElementsAre("onPaused"));
  EXPECT_FALSE(state_.stallWatchdogActive_);
  ASSERT_TRUE(player_.HandleStallNudgeTimer(ResumeTimerId(vlc_.Player())));
  vlc_.Raise(vlc_.Player(), kPlaying);
  EXPECT_THAT(events_.Take(), ElementsAre("onPlaying"));
  WedgedPasses(3);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_pause"), 2);
  EXPECT_EQ(log_.CountContaining("restarting media"), 0);
}

// The reload of the single view.

TEST_F(RecoveryTest, ADetectionAfterANudgeReloadsTheStreamWithACleanRecord) {
  StartSingle();
  WedgedPasses(3);
  vlc_.ClearCalls();
  WedgedPasses(3);
  EXPECT_TRUE(log_.Has("INFO [StallDetector] primary wedge persisted after cheap nudge – restarting media"));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_media"), 1);
  EXPECT_TRUE(state_.stallWatchdogActive_);
  EXPECT_EQ(state_.primaryStall_.lastNudgeTickMs, 0u);
  EXPECT_THAT(state_.primaryStall_.restartTicksMs, IsEmpty());
  EXPECT_EQ(state_.current_.title, "Title");
}

TEST_F(RecoveryTest, ASingleStreamIsReloadedWithoutEnd) {
  StartSingle();
  WedgedPasses(60);
  EXPECT_EQ(log_.CountContaining("restart budget exceeded"), 0);
  EXPECT_GE(vlc_.CountOf("libvlc_media_player_set_media"), 5);
}

TEST_F(RecoveryTest, ReloadsThatNeverStopThePlayerRunOutOfBudget) {
  StartSingle();
  LibVlcFunctionTable().libvlc_media_player_get_time = nullptr;
  WedgedPasses(18);
  EXPECT_TRUE(log_.Has("WARNING [StallDetector] primary restart budget exceeded – disabling stall watchdog"));
  EXPECT_THAT(events_.Take(), ElementsAre(kGaveUp));
  EXPECT_FALSE(state_.stallWatchdogActive_);
}

TEST_F(RecoveryTest, TheWatchdogIsOffWhenItsErrorGoesOut) {
  StartSingle();
  LibVlcFunctionTable().libvlc_media_player_get_time = nullptr;
  int activeWhenReported = -1;
  state_.eventCallback_ = [&](const char*, const char*) { activeWhenReported = state_.stallWatchdogActive_ ? 1 : 0; };
  WedgedPasses(18);
  EXPECT_EQ(activeWhenReported, 0);
}

TEST_F(RecoveryTest, WithoutACallbackTheWatchdogGivesUpSilently) {
  StartSingle();
  state_.eventCallback_ = nullptr;
  LibVlcFunctionTable().libvlc_media_player_get_time = nullptr;
  WedgedPasses(18);
  EXPECT_FALSE(state_.stallWatchdogActive_);
}

TEST_F(RecoveryTest, AReloadWithoutAUrlIsAborted) {
  StartSingle();
  state_.current_.url.clear();
  vlc_.ClearCalls();
  player_.RestartMediaPreservingTime();
  EXPECT_TRUE(log_.Has("WARNING [StallDetector] RestartMediaPreservingTime aborted – missing URL"));
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(RecoveryTest, AReloadTakesTheFallbackWhereThereIsNoUrl) {
  StartSingle();
  state_.current_.url.clear();
  state_.fallbackUrl_ = "http://host/fallback";
  player_.RestartMediaPreservingTime();
  EXPECT_EQ(state_.current_.url, "http://host/fallback");
}

TEST_F(RecoveryTest, AReloadWithoutAPlayerDoesNothing) {
  StartSingle();
  player_.Cleanup();
  vlc_.ClearCalls();
  player_.RestartMediaPreservingTime();
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(RecoveryTest, AReloadOfARecordingSeeksBackToItsTime) {
  StartSingle();
  ASSERT_TRUE(player_.SetMedia({"http://host/film", "Film", 0, 0, false, false, false}));
  vlc_.SetTime(vlc_.Player(), 73000);
  vlc_.ClearCalls();
  player_.RestartMediaPreservingTime();
  EXPECT_TRUE(
      log_.Has("INFO [StallDetector] Restarting media (isLive=0, supportsTimeshift=0, inTimeshiftMode=0, "
               "shouldRestorePosition=1) lastTime=73000ms URL=http://host/film"));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_time"), 1);
  EXPECT_EQ(state_.current_.networkCacheMs, 5000);
}

TEST_F(RecoveryTest, AReloadOfALiveStreamDoesNotSeek) {
  StartSingle();
  vlc_.SetTime(vlc_.Player(), 73000);
  vlc_.ClearCalls();
  player_.RestartMediaPreservingTime();
  EXPECT_TRUE(
      log_.Has("INFO [StallDetector] Restarting media (isLive=1, supportsTimeshift=0, inTimeshiftMode=0, "
               "shouldRestorePosition=0) lastTime=73000ms URL=http://host/0"));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_time"), 0);
  EXPECT_EQ(state_.current_.networkCacheMs, 1500);
}

// Tiles.

class TileRecoveryTest : public WatchdogTest {
 protected:
  // Two tiles. The second one plays and can wedge.
  void SetUp() override {
    StartGrid(2);
    Watchable(TilePlayer(1));
    vlc_.ClearCalls();
  }
};

TEST_F(TileRecoveryTest, AWedgedTileRunsItsTimetable) {
  std::vector<std::pair<int, std::string>> course;
  for (int second = 1; second <= 18; ++second) {
    vlc_.ClearCalls();
    WedgedPass();
    if (vlc_.CountOf("libvlc_media_player_pause")) course.emplace_back(second, "nudge");
    if (vlc_.CountOf("libvlc_media_player_stop")) course.emplace_back(second, "restart");
    if (!state_.stallWatchdogActive_) course.emplace_back(second, "given up");
  }
  constexpr int T = 3;
  EXPECT_THAT(course,
              ElementsAre(std::pair(T, "nudge"), std::pair(T + 3, "restart"), std::pair(T + 6, "restart"),
                          std::pair(T + 9, "restart"), std::pair(T + 12, "nudge"), std::pair(T + 15, "given up")));
  EXPECT_THAT(events_.Take(), ElementsAre(kGaveUp));
  EXPECT_TRUE(log_.Has("WARNING [StallDetector] mv_Tile 1 restart budget exceeded – disabling stall watchdog"));
}

TEST_F(TileRecoveryTest, ARestartStopsOpensAndPlaysTheTilesUrl) {
  WedgedPasses(5);
  vlc_.ClearCalls();
  WedgedPass();
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_get_time"), IsEmpty());
  std::vector<std::string> calls = vlc_.Calls();
  const auto stop = std::find(calls.begin(), calls.end(), "libvlc_media_player_stop(player2)");
  ASSERT_NE(stop, calls.end());
  EXPECT_THAT(std::vector<std::string>(stop, calls.end()),
              ElementsAre("libvlc_media_player_stop(player2)", "libvlc_media_new_uri(\"http://host/1\")",
                          "libvlc_media_player_set_media(player2, media3)", "libvlc_media_release(media3)",
                          "libvlc_media_player_play(player2)", "libvlc_media_release(media2)"));
  EXPECT_NE(Tile(1).stall.lastNudgeTickMs, 0u);
  EXPECT_THAT(Tile(1).stall.restartTicksMs, ElementsAre(fakeNow));
}

TEST_F(TileRecoveryTest, ARestartWhoseMediaCannotBeMadePlaysTheOldOne) {
  WedgedPasses(5);
  vlc_.SetResult("libvlc_media_new_uri", 0);
  vlc_.SetResult("libvlc_media_new_location", 0);
  vlc_.ClearCalls();
  WedgedPass();
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_media"), 0);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 1);
}

TEST_F(TileRecoveryTest, ATileWithoutAUrlIsNotRestarted) {
  Tile(1).url.clear();
  WedgedPasses(6);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_stop"), 0);
  EXPECT_EQ(Tile(1).stall.restartTicksMs.size(), 1u);
}

TEST_F(TileRecoveryTest, TheOriginalTileGoesBackToItsTimeAfterThePlay) {
  vlc_.SetPlaying(TilePlayer(1), false);
  Watchable(TilePlayer(0));
  vlc_.SetTime(TilePlayer(0), 42000);
  WedgedPasses(5);
  vlc_.ClearCalls();
  WedgedPass();
  std::vector<std::string> calls = vlc_.Calls();
  const auto play = std::find(calls.begin(), calls.end(), "libvlc_media_player_play(player1)");
  ASSERT_NE(play, calls.end());
  EXPECT_EQ(*(play + 1), "libvlc_media_player_set_time(player1, 42000, 0)");
  EXPECT_TRUE(log_.Has("INFO [StallDetector] mv_primary wedge persisted after cheap nudge – restarting media"));
}

TEST_F(TileRecoveryTest, ARestartReadsTheTimeBeforeTheStop) {
  vlc_.SetPlaying(TilePlayer(1), false);
  Watchable(TilePlayer(0));
  WedgedPasses(5);
  vlc_.ClearCalls();
  WedgedPass();
  std::vector<std::string> calls = vlc_.Calls();
  std::erase_if(calls, [](const std::string& call) {
    return call.find("_time(") == std::string::npos && call.find("stop(") == std::string::npos;
  });
  EXPECT_THAT(calls, ElementsAre("libvlc_media_player_get_time(player1)", "libvlc_media_player_stop(player1)"));
}

TEST_F(TileRecoveryTest, WhenATileGivesUpThePassGoesOnAndIsTheLast) {
  ASSERT_TRUE(Add(2));
  Watchable(TilePlayer(2));
  HealthyPass();
  Tile(1).stall.lastNudgeTickMs = fakeNow;
  Tile(1).stall.restartTicksMs = {fakeNow, fakeNow, fakeNow};
  Tile(1).stall.stalledTicks = 2;
  Tile(2).stall.stalledTicks = 2;
  vlc_.ClearCalls();
  WedgedPass();
  EXPECT_FALSE(state_.stallWatchdogActive_);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_get_stats"), 2);
  EXPECT_EQ(Tile(2).stall.stalledTicks, 0);
  EXPECT_EQ(Tile(2).stall.lastAudio, static_cast<int>(audio_));
  vlc_.ClearCalls();
  WedgedPass();
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(TileRecoveryTest, TheBudgetBelongsToEachTile) {
  ASSERT_TRUE(Add(2));
  Watchable(TilePlayer(2));
  HealthyPass();
  for (const int tile : {1, 2}) {
    Tile(tile).stall.lastNudgeTickMs = fakeNow;
    Tile(tile).stall.stalledTicks = 2;
  }
  Tile(1).stall.restartTicksMs = {fakeNow, fakeNow};
  WedgedPass();
  EXPECT_EQ(Tile(1).stall.restartTicksMs.size(), 3u);
  EXPECT_EQ(Tile(2).stall.restartTicksMs.size(), 1u);
  EXPECT_TRUE(state_.stallWatchdogActive_);
}

}  // namespace
}  // namespace vantro::test
