// The stall watchdog over real timers, the scripted library and a clock of the test's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "tests/unit/player/grid_fixture.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kGaveUp[] = "onError:Playback issue detected. Please try again.";

ULONGLONG fakeNow = 0;
ULONGLONG WINAPI FakeClock() { return fakeNow; }

class WatchdogTest : public GridTest {
 protected:
  WatchdogTest() { fakeNow = 1'000'000; }

  void StartSingle() {
    StartWithEvents();
    ASSERT_TRUE(SetMedia("http://host/0"));
    Watchable(vlc_.Player());
    vlc_.ClearCalls();
  }
  // Plays a picture and sound, so that the counters are judged.
  void Watchable(libvlc_media_player_t* player) {
    vlc_.SetPlaying(player, true);
    vlc_.SetSize(player, 640, 360);
    vlc_.SetAudioTracks(player, {{-1, "Disable"}, {0, "Sound"}});
  }
  void Pass() {
    fakeNow += 1000;
    player_.RunStallPass(FakeClock);
  }
  // The counters of every media.
  void SetCounters(uint64_t displayed, uint64_t audio) { vlc_.SetStats(nullptr, displayed, audio); }
  // A pass that finds sound going on over a still picture.
  void WedgedPass() {
    audio_ += 40;
    SetCounters(displayed_, audio_);
    Pass();
  }
  void WedgedPasses(int count) {
    for (int i = 0; i < count; ++i) WedgedPass();
  }
  void HealthyPass() {
    displayed_ += 25;
    audio_ += 40;
    SetCounters(displayed_, audio_);
    Pass();
  }
  bool HasTimer(UINT_PTR id) { return KillTimer(parent_.get(), id) != FALSE; }
  UINT_PTR CheckTimerId() { return reinterpret_cast<UINT_PTR>(&player_); }
  static UINT_PTR ResumeTimerId(const void* player) { return reinterpret_cast<UINT_PTR>(player) ^ 0xFFFF; }

  uint64_t displayed_ = 0;
  uint64_t audio_ = 0;
};

// Starting and stopping.

TEST_F(WatchdogTest, BeginsOff) {
  EXPECT_FALSE(player_.stallWatchdogActive_);
  EXPECT_EQ(player_.stallTimerId_, 0u);
}

TEST_F(WatchdogTest, WithoutAPlayerAStartDoesNothing) {
  player_.parentWindow_ = parent_.get();
  player_.StartStallWatchdog();
  EXPECT_FALSE(player_.stallWatchdogActive_);
}

TEST_F(WatchdogTest, AStartRunsTheTimerOfItsAddress) {
  Start();
  player_.StartStallWatchdog();
  EXPECT_TRUE(player_.stallWatchdogActive_);
  EXPECT_NE(player_.stallTimerId_, 0u);
  EXPECT_TRUE(HasTimer(CheckTimerId()));
  const auto id = static_cast<UINT_PTR>(player_.stallTimerId_);
  EXPECT_TRUE(
      log_.Has("DEBUG [VLCPlayer] Started stall watchdog timer (id=" + PointerText(reinterpret_cast<void*>(id)) + ")"));
}

TEST_F(WatchdogTest, AStopKillsTheTimerAndClearsTheRecord) {
  Start();
  player_.StartStallWatchdog();
  const auto id = static_cast<UINT_PTR>(player_.stallTimerId_);
  player_.primaryStall_ = {1, 2, 2, 3, {4}};
  player_.StopStallWatchdog();
  EXPECT_FALSE(player_.stallWatchdogActive_);
  EXPECT_EQ(player_.stallTimerId_, 0u);
  EXPECT_FALSE(HasTimer(CheckTimerId()));
  EXPECT_TRUE(
      log_.Has("DEBUG [VLCPlayer] Stopped stall watchdog timer (id=" + PointerText(reinterpret_cast<void*>(id)) + ")"));
  EXPECT_EQ(player_.primaryStall_.stalledTicks, 0);
  EXPECT_EQ(player_.primaryStall_.lastNudgeTickMs, 0u);
  EXPECT_THAT(player_.primaryStall_.restartTicksMs, IsEmpty());
}

TEST_F(WatchdogTest, APlayingEventWhileOnLeavesTheRecordAlone) {
  StartSingle();
  WedgedPasses(2);
  vlc_.Raise(vlc_.Player(), kPlaying);
  WedgedPass();
  EXPECT_TRUE(log_.Has("INFO [StallDetector] primary wedge detected (video_wedged) after 3 ticks"));
}

TEST_F(WatchdogTest, AStopWhileOffChangesNothing) {
  Start();
  player_.primaryStall_.stalledTicks = 2;
  player_.StopStallWatchdog();
  EXPECT_EQ(player_.primaryStall_.stalledTicks, 2);
  EXPECT_EQ(log_.CountContaining("Stopped stall watchdog timer"), 0);
}

TEST_F(WatchdogTest, StartAndStopClearTheRecordsOfTheTiles) {
  StartGrid(2);
  player_.StartStallWatchdog();
  Tile(1).stall.restartTicksMs = {1, 2};
  player_.StopStallWatchdog();
  EXPECT_THAT(Tile(1).stall.restartTicksMs, IsEmpty());
  Tile(1).stall.restartTicksMs = {1, 2};
  player_.StartStallWatchdog();
  EXPECT_THAT(Tile(1).stall.restartTicksMs, IsEmpty());
}

TEST_F(WatchdogTest, AStopOnLibvlcsThreadClearsTheRecordBeforeItIsUsedAgain) {
  StartSingle();
  WedgedPasses(2);
  vlc_.Raise(vlc_.Player(), kPaused);
  vlc_.Raise(vlc_.Player(), kPlaying);
  WedgedPasses(2);
  EXPECT_EQ(log_.CountContaining("wedge detected"), 0);
  WedgedPass();
  EXPECT_EQ(log_.Count("INFO [StallDetector] primary wedge detected (video_wedged) after 3 ticks"), 1);
}

TEST_F(WatchdogTest, WithoutAParentWindowAStartSetsTheFlagAndNoTimer) {
  Start();
  player_.parentWindow_ = nullptr;
  player_.StartStallWatchdog();
  EXPECT_TRUE(player_.stallWatchdogActive_);
  EXPECT_EQ(player_.stallTimerId_, 0u);
  EXPECT_EQ(log_.CountContaining("Started stall watchdog timer"), 0);
  player_.parentWindow_ = parent_.get();
  EXPECT_FALSE(HasTimer(CheckTimerId()));
}

TEST_F(WatchdogTest, TheWindowGetsACheckEachSecond) {
  Start();
  const ULONGLONG began = GetTickCount64();
  player_.StartStallWatchdog();
  MSG message{};
  while (message.message != WM_TIMER) ASSERT_GT(GetMessageA(&message, parent_.get(), WM_TIMER, WM_TIMER), 0);
  EXPECT_EQ(message.wParam, CheckTimerId());
  EXPECT_GE(GetTickCount64() - began, 950u);
}

// A pass.

TEST_F(WatchdogTest, AUsersPauseLeavesTheWatchdogOffAndThePlayerIsNotJudged) {
  StartSingle();
  player_.Pause();
  vlc_.Raise(vlc_.Player(), kPaused);
  vlc_.ClearCalls();
  WedgedPasses(3);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(WatchdogTest, AUsersStopLeavesTheWatchdogOff) {
  StartSingle();
  player_.StopInternal(false);
  vlc_.Raise(vlc_.Player(), kStopped);
  EXPECT_FALSE(player_.stallWatchdogActive_);
}

TEST_F(WatchdogTest, WhileOffAPassAsksNothing) {
  Start();
  player_.OnStallWatchdogTick();
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(WatchdogTest, WithoutIsPlayingAPassAsksNothing) {
  StartSingle();
  LibVlcFunctionTable().libvlc_media_player_is_playing = nullptr;
  player_.OnStallWatchdogTick();
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(WatchdogTest, ASinglePassReadsTheCountersOfTheMediaThatIsSet) {
  StartSingle();
  player_.OnStallWatchdogTick();
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_player_is_playing(player1)", "libvlc_media_get_stats(media1)",
                                        "libvlc_video_get_width(player1)", "libvlc_video_get_height(player1)",
                                        "libvlc_audio_get_track_description(player1)",
                                        testing::StartsWith("libvlc_track_description_list_release(")));
}

TEST_F(WatchdogTest, WithoutAMediaOfItsOwnAPassAsksThePlayerForItAndReleasesIt) {
  StartSingle();
  player_.media_.reset();
  vlc_.ClearCalls();
  player_.OnStallWatchdogTick();
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_get_media"), 1);
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_release"), ElementsAre("libvlc_media_release(media1)"));
}

TEST_F(WatchdogTest, APlayerWithoutAnyMediaIsNotJudged) {
  Start();
  Watchable(vlc_.Player());
  player_.StartStallWatchdog();
  vlc_.ClearCalls();
  player_.OnStallWatchdogTick();
  EXPECT_EQ(vlc_.CountOf("libvlc_media_get_stats"), 0);
}

TEST_F(WatchdogTest, APlayerThatDoesNotPlayOnOneCheckLosesItsCountAndKeepsItsCounters) {
  StartSingle();
  HealthyPass();
  WedgedPasses(2);
  vlc_.SetPlaying(vlc_.Player(), false);
  Pass();
  EXPECT_EQ(player_.primaryStall_.stalledTicks, 0);
  EXPECT_EQ(player_.primaryStall_.lastDisplayed, static_cast<int>(displayed_));
  EXPECT_EQ(player_.primaryStall_.lastAudio, static_cast<int>(audio_));
}

TEST_F(WatchdogTest, StatisticsThatFailLeaveTheRecordAsItIs) {
  StartSingle();
  HealthyPass();
  WedgedPasses(2);
  vlc_.Fail("libvlc_media_get_stats");
  Pass();
  EXPECT_EQ(player_.primaryStall_.stalledTicks, 2);
}

TEST_F(WatchdogTest, CountersAreTheirLowHalvesWithASign) {
  StartSingle();
  SetCounters(0x1'0000'0007, 0xFFFF'FFFF);
  Pass();
  EXPECT_EQ(player_.primaryStall_.lastDisplayed, 7);
  EXPECT_EQ(player_.primaryStall_.lastAudio, -1);
}

TEST_F(WatchdogTest, WhileTheGridIsOnWithoutTilesThePassTakesTheSinglePath) {
  StartSingle();
  player_.isMultiViewMode_ = true;
  player_.OnStallWatchdogTick();
  EXPECT_EQ(vlc_.CountOf("libvlc_media_get_stats"), 1);
  player_.isMultiViewMode_ = false;
}

TEST_F(WatchdogTest, AGridPassJudgesEachPlayingTileAndReleasesItsMedia) {
  StartGrid(3);
  Watchable(TilePlayer(0));
  Watchable(TilePlayer(2));
  Tile(1).stall.stalledTicks = 2;
  vlc_.ClearCalls();
  Pass();
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_get_stats"),
              ElementsAre("libvlc_media_get_stats(media1)", "libvlc_media_get_stats(media3)"));
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_release"),
              ElementsAre("libvlc_media_release(media1)", "libvlc_media_release(media3)"));
  EXPECT_EQ(Tile(1).stall.stalledTicks, 0);
}

TEST_F(WatchdogTest, AGridPassNeedsTheMediaFunctions) {
  StartGrid(2);
  LibVlcFunctionTable().libvlc_media_player_get_media = nullptr;
  player_.OnStallWatchdogTick();
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

// The log of a check.

TEST_F(WatchdogTest, ChecksAreLoggedWithTheirReason) {
  StartSingle();
  HealthyPass();
  WedgedPass();
  HealthyPass();
  displayed_ += 25;
  SetCounters(displayed_, audio_);
  Pass();
  vlc_.SetSize(vlc_.Player(), 0, 360);
  Pass();
  const auto lines = log_.Lines();
  std::vector<std::string> told;
  for (const std::string& line : lines)
    if (line.find("[StallDetector]") != std::string::npos) told.push_back(line);
  EXPECT_THAT(
      told,
      ElementsAre("DEBUG [StallDetector] primary wedge tick (video_wedged): displayed=25 audio=80 stalledTicks=1",
                  "DEBUG [StallDetector] primary wedge reset (displayed=50, audio=120)",
                  "DEBUG [StallDetector] primary wedge tick (audio_wedged): displayed=75 audio=120 stalledTicks=1",
                  "DEBUG [StallDetector] primary wedge reset (no video track)"));
}

TEST_F(WatchdogTest, WithoutTheVideoSizeFunctionsTheWatchdogNeverActs) {
  StartSingle();
  LibVlcFunctionTable().libvlc_video_get_width = nullptr;
  WedgedPasses(10);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_pause"), 0);
  EXPECT_EQ(player_.primaryStall_.stalledTicks, 0);
}

TEST_F(WatchdogTest, WithoutTheVideoHeightFunctionTheWatchdogNeverActs) {
  StartSingle();
  LibVlcFunctionTable().libvlc_video_get_height = nullptr;
  WedgedPasses(10);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_pause"), 0);
}

TEST_F(WatchdogTest, AnAudioOnlyStreamIsLeftAlone) {
  StartSingle();
  vlc_.SetSize(vlc_.Player(), 0, 0);
  WedgedPasses(10);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_pause"), 0);
}

TEST_F(WatchdogTest, ATrackListOfOnlyDisableIsNoAudio) {
  StartSingle();
  vlc_.SetAudioTracks(vlc_.Player(), {{-1, "Disable"}});
  for (int i = 0; i < 5; ++i) {
    displayed_ += 25;
    SetCounters(displayed_, 0);
    Pass();
  }
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_pause"), 0);
}

// The nudge and its resume.

TEST_F(WatchdogTest, TheFirstDetectionPausesAndArmsTheResume) {
  StartSingle();
  WedgedPasses(3);
  EXPECT_TRUE(log_.Has("INFO [StallDetector] primary wedge detected – performing cheap pause/resume nudge"));
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_pause"), ElementsAre("libvlc_media_player_pause(player1)"));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 0);
  EXPECT_EQ(player_.primaryStall_.lastNudgeTickMs, fakeNow);
  EXPECT_EQ(player_.nudgeTimers_.count(ResumeTimerId(vlc_.Player())), 1u);
}

TEST_F(WatchdogTest, TheResumePlaysOnceAndEndsItsTimer) {
  StartSingle();
  player_.NudgePlayer(vlc_.Player());
  vlc_.ClearCalls();
  EXPECT_TRUE(player_.HandleStallNudgeTimer(ResumeTimerId(vlc_.Player())));
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_player_play(player1)"));
  EXPECT_FALSE(HasTimer(ResumeTimerId(vlc_.Player())));
  EXPECT_FALSE(player_.HandleStallNudgeTimer(ResumeTimerId(vlc_.Player())));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 1);
}

TEST_F(WatchdogTest, TheResumeTimerFiresAfterThreeHundredMilliseconds) {
  StartSingle();
  player_.StopStallWatchdog();
  const ULONGLONG began = GetTickCount64();
  player_.NudgePlayer(vlc_.Player());
  MSG message{};
  while (message.message != WM_TIMER) ASSERT_GT(GetMessageA(&message, parent_.get(), WM_TIMER, WM_TIMER), 0);
  EXPECT_EQ(message.wParam, ResumeTimerId(vlc_.Player()));
  EXPECT_GE(GetTickCount64() - began, 280u);
}

TEST_F(WatchdogTest, AForeignTimerIsNoResume) {
  StartSingle();
  EXPECT_FALSE(player_.HandleStallNudgeTimer(1003));
}

TEST_F(WatchdogTest, ASecondNudgeWhileAResumeIsPendingReusesItsTimer) {
  StartSingle();
  player_.NudgePlayer(vlc_.Player());
  player_.NudgePlayer(vlc_.Player());
  EXPECT_EQ(player_.nudgeTimers_.size(), 1u);
  EXPECT_TRUE(player_.HandleStallNudgeTimer(ResumeTimerId(vlc_.Player())));
  EXPECT_FALSE(HasTimer(ResumeTimerId(vlc_.Player())));
}

TEST_F(WatchdogTest, APendingResumeSurvivesAStop) {
  StartSingle();
  player_.NudgePlayer(vlc_.Player());
  player_.StopStallWatchdog();
  vlc_.ClearCalls();
  EXPECT_TRUE(player_.HandleStallNudgeTimer(ResumeTimerId(vlc_.Player())));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 1);
}

TEST_F(WatchdogTest, ANudgeNeedsPauseAndPlay) {
  StartSingle();
  LibVlcFunctionTable().libvlc_media_player_play = nullptr;
  player_.NudgePlayer(vlc_.Player());
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_TRUE(player_.nudgeTimers_.empty());
}

TEST_F(WatchdogTest, AResumeOfATileThatIsGoneTouchesNothing) {
  StartGrid(2);
  libvlc_media_player_t* const tile = TilePlayer(1);
  player_.NudgePlayer(tile);
  player_.SetActiveIndexSafe(1);
  ASSERT_TRUE(player_.MvRemoveActive());
  vlc_.ClearCalls();
  EXPECT_FALSE(HasTimer(ResumeTimerId(tile)));
  EXPECT_FALSE(player_.HandleStallNudgeTimer(ResumeTimerId(tile)));
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(WatchdogTest, AResumePendingAtTheEndOfTheGridGoesWithItsTile) {
  StartGrid(2);
  libvlc_media_player_t* const original = TilePlayer(0);
  libvlc_media_player_t* const tile = TilePlayer(1);
  player_.NudgePlayer(original);
  player_.NudgePlayer(tile);
  player_.DisableMultiView();
  EXPECT_FALSE(player_.HandleStallNudgeTimer(ResumeTimerId(tile)));
  EXPECT_TRUE(player_.HandleStallNudgeTimer(ResumeTimerId(original)));
}

TEST_F(WatchdogTest, AResumePendingAtCleanupIsForgotten) {
  StartSingle();
  const UINT_PTR id = ResumeTimerId(vlc_.Player());
  player_.NudgePlayer(vlc_.Player());
  player_.Cleanup();
  EXPECT_FALSE(player_.HandleStallNudgeTimer(id));
  EXPECT_FALSE(HasTimer(id));
}

TEST_F(WatchdogTest, ANudgeAnsweredWithPausedBeginsTheLadderAnew) {
  StartSingle();
  vlc_.OnCall("libvlc_media_player_pause", [this] { vlc_.Raise(vlc_.Player(), kPaused); });
  WedgedPasses(3);
  EXPECT_THAT(events_.Take(), ElementsAre("onPaused"));
  EXPECT_FALSE(player_.stallWatchdogActive_);
  ASSERT_TRUE(player_.HandleStallNudgeTimer(ResumeTimerId(vlc_.Player())));
  vlc_.Raise(vlc_.Player(), kPlaying);
  EXPECT_THAT(events_.Take(), ElementsAre("onPlaying"));
  WedgedPasses(3);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_pause"), 2);
  EXPECT_EQ(log_.CountContaining("restarting media"), 0);
}

// The reload of the single view.

TEST_F(WatchdogTest, ADetectionAfterANudgeReloadsTheStreamAndStartsWithACleanRecord) {
  StartSingle();
  WedgedPasses(3);
  vlc_.ClearCalls();
  WedgedPasses(3);
  EXPECT_TRUE(log_.Has("INFO [StallDetector] primary wedge persisted after cheap nudge – restarting media"));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_media"), 1);
  EXPECT_TRUE(player_.stallWatchdogActive_);
  EXPECT_EQ(player_.primaryStall_.lastNudgeTickMs, 0u);
  EXPECT_THAT(player_.primaryStall_.restartTicksMs, IsEmpty());
  EXPECT_EQ(player_.currentTitle_, "Title");
}

TEST_F(WatchdogTest, ASingleStreamThatWedgesOnAndOnIsNudgedAndReloadedWithoutEnd) {
  StartSingle();
  WedgedPasses(60);
  EXPECT_EQ(log_.CountContaining("restart budget exceeded"), 0);
  EXPECT_GE(vlc_.CountOf("libvlc_media_player_set_media"), 5);
}

TEST_F(WatchdogTest, ReloadsThatNeverStopThePlayerRunOutOfBudget) {
  StartSingle();
  LibVlcFunctionTable().libvlc_media_player_get_time = nullptr;
  WedgedPasses(18);
  EXPECT_TRUE(log_.Has("WARNING [StallDetector] primary restart budget exceeded – disabling stall watchdog"));
  EXPECT_THAT(events_.Take(), ElementsAre(kGaveUp));
  EXPECT_FALSE(player_.stallWatchdogActive_);
}

TEST_F(WatchdogTest, WithoutACallbackTheWatchdogGivesUpInSilence) {
  StartSingle();
  player_.eventCallback_ = nullptr;
  LibVlcFunctionTable().libvlc_media_player_get_time = nullptr;
  WedgedPasses(18);
  EXPECT_FALSE(player_.stallWatchdogActive_);
}

TEST_F(WatchdogTest, AReloadWithoutAUrlIsAborted) {
  StartSingle();
  player_.currentUrl_.clear();
  vlc_.ClearCalls();
  player_.RestartMediaPreservingTime();
  EXPECT_TRUE(log_.Has("WARNING [StallDetector] RestartMediaPreservingTime aborted – missing URL"));
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(WatchdogTest, AReloadTakesTheFallbackWhereThereIsNoUrl) {
  StartSingle();
  player_.currentUrl_.clear();
  player_.fallbackUrl_ = "http://host/fallback";
  player_.RestartMediaPreservingTime();
  EXPECT_EQ(player_.currentUrl_, "http://host/fallback");
}

TEST_F(WatchdogTest, AReloadWithoutAPlayerDoesNothing) {
  StartSingle();
  player_.Cleanup();
  vlc_.ClearCalls();
  player_.RestartMediaPreservingTime();
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(WatchdogTest, AReloadOfARecordingSeeksBackToItsTime) {
  StartSingle();
  ASSERT_TRUE(player_.SetMedia("http://host/film", "Film", 0, 0, false, false, false));
  vlc_.SetTime(vlc_.Player(), 73000);
  vlc_.ClearCalls();
  player_.RestartMediaPreservingTime();
  EXPECT_TRUE(
      log_.Has("INFO [StallDetector] Restarting media (isLive=0, supportsTimeshift=0, inTimeshiftMode=0, "
               "shouldRestorePosition=1) lastTime=73000ms URL=http://host/film"));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_time"), 1);
  EXPECT_EQ(player_.networkCacheMs_, 5000);
}

TEST_F(WatchdogTest, AReloadOfALiveStreamDoesNotSeek) {
  StartSingle();
  vlc_.SetTime(vlc_.Player(), 73000);
  vlc_.ClearCalls();
  player_.RestartMediaPreservingTime();
  EXPECT_TRUE(
      log_.Has("INFO [StallDetector] Restarting media (isLive=1, supportsTimeshift=0, inTimeshiftMode=0, "
               "shouldRestorePosition=0) lastTime=73000ms URL=http://host/0"));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_time"), 0);
  EXPECT_EQ(player_.networkCacheMs_, 1500);
}

// Tiles.

class TileWatchdogTest : public WatchdogTest {
 protected:
  // Two tiles; the second one plays and wedges on every pass.
  void SetUp() override {
    StartGrid(2);
    Watchable(TilePlayer(1));
    vlc_.ClearCalls();
  }
};

TEST_F(TileWatchdogTest, AWedgedTileRunsItsTimetable) {
  std::vector<std::pair<int, std::string>> course;
  for (int second = 1; second <= 18; ++second) {
    vlc_.ClearCalls();
    WedgedPass();
    if (vlc_.CountOf("libvlc_media_player_pause")) course.emplace_back(second, "nudge");
    if (vlc_.CountOf("libvlc_media_player_stop")) course.emplace_back(second, "restart");
    if (!player_.stallWatchdogActive_) course.emplace_back(second, "given up");
  }
  constexpr int T = 3;
  EXPECT_THAT(course,
              ElementsAre(std::pair(T, "nudge"), std::pair(T + 3, "restart"), std::pair(T + 6, "restart"),
                          std::pair(T + 9, "restart"), std::pair(T + 12, "nudge"), std::pair(T + 15, "given up")));
  EXPECT_THAT(events_.Take(), ElementsAre(kGaveUp));
  EXPECT_TRUE(log_.Has("WARNING [StallDetector] mv_Tile 1 restart budget exceeded – disabling stall watchdog"));
}

TEST_F(TileWatchdogTest, ARestartStopsOpensAndPlaysTheTilesUrl) {
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

TEST_F(TileWatchdogTest, ARestartWhoseMediaCannotBeMadePlaysTheOldOne) {
  WedgedPasses(5);
  vlc_.SetResult("libvlc_media_new_uri", 0);
  vlc_.SetResult("libvlc_media_new_location", 0);
  vlc_.ClearCalls();
  WedgedPass();
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_media"), 0);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 1);
}

TEST_F(TileWatchdogTest, WithoutStopARestartLeavesOnlyItsEntry) {
  LibVlcFunctionTable().libvlc_media_player_stop = nullptr;
  WedgedPasses(3);
  vlc_.ClearCalls();
  WedgedPasses(3);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_media"), 0);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 0);
  EXPECT_THAT(Tile(1).stall.restartTicksMs, ElementsAre(fakeNow));
}

TEST_F(TileWatchdogTest, ATileWithoutAUrlIsNotRestarted) {
  Tile(1).url.clear();
  WedgedPasses(6);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_stop"), 0);
  EXPECT_EQ(Tile(1).stall.restartTicksMs.size(), 1u);
}

TEST_F(TileWatchdogTest, TheOriginalTileGoesBackToItsTimeAfterThePlay) {
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

TEST_F(TileWatchdogTest, WhenOneTileGivesUpThePassGoesOnAndNoneFollows) {
  ASSERT_TRUE(Add(2));
  Watchable(TilePlayer(2));
  HealthyPass();
  Tile(1).stall.lastNudgeTickMs = fakeNow;
  Tile(1).stall.restartTicksMs = {fakeNow, fakeNow, fakeNow};
  Tile(1).stall.stalledTicks = 2;
  Tile(2).stall.stalledTicks = 2;
  vlc_.ClearCalls();
  WedgedPass();
  EXPECT_FALSE(player_.stallWatchdogActive_);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_get_stats"), 2);
  EXPECT_EQ(Tile(2).stall.stalledTicks, 0);
  EXPECT_EQ(Tile(2).stall.lastAudio, static_cast<int>(audio_));
  vlc_.ClearCalls();
  WedgedPass();
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(TileWatchdogTest, TheBudgetBelongsToEachTile) {
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
  EXPECT_TRUE(player_.stallWatchdogActive_);
}

}  // namespace
}  // namespace vantro::test
