// The stall watchdog over real timers, the scripted library and a clock that the test sets: its start, its stop, its
// passes and their verdicts.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/import_hook.h"
#include "tests/unit/player/watchdog_fixture.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Starting and stopping.

TEST_F(WatchdogTest, BeginsOff) {
  EXPECT_FALSE(state_.stallWatchdogActive_);
  EXPECT_EQ(state_.stallTimerId_, 0u);
}

TEST_F(WatchdogTest, WithoutAPlayerAStartDoesNothing) {
  state_.parentWindow_ = parent_.get();
  player_.StartStallWatchdog();
  EXPECT_FALSE(state_.stallWatchdogActive_);
}

TEST_F(WatchdogTest, AfterAGridWithoutAFirstPlayerAStartDoesNothing) {
  StartWithEvents();
  state_.mediaPlayer_.reset();
  ASSERT_TRUE(player_.EnableMultiView());
  ASSERT_TRUE(Add(1));
  ASSERT_TRUE(player_.DisableMultiView());
  player_.StartStallWatchdog();
  EXPECT_FALSE(state_.stallWatchdogActive_);
}

TEST_F(WatchdogTest, AStartRunsTheTimerOfItsAddress) {
  Start();
  player_.StartStallWatchdog();
  EXPECT_TRUE(state_.stallWatchdogActive_);
  EXPECT_NE(state_.stallTimerId_, 0u);
  EXPECT_TRUE(HasTimer(CheckTimerId()));
  const auto id = static_cast<UINT_PTR>(state_.stallTimerId_);
  EXPECT_TRUE(
      log_.Has("DEBUG [VLCPlayer] Started stall watchdog timer (id=" + PointerText(reinterpret_cast<void*>(id)) + ")"));
}

TEST_F(WatchdogTest, TheFirstStartClearsTheRecord) {
  Start();
  state_.primaryStall_.stalledTicks = 2;
  player_.StartStallWatchdog();
  EXPECT_EQ(state_.primaryStall_.stalledTicks, 0);
}

TEST_F(WatchdogTest, AStopKillsTheTimerAndClearsTheRecord) {
  Start();
  player_.StartStallWatchdog();
  const auto id = static_cast<UINT_PTR>(state_.stallTimerId_);
  state_.primaryStall_ = {1, 2, 2, 3, {4}};
  player_.StopStallWatchdog();
  EXPECT_FALSE(state_.stallWatchdogActive_);
  EXPECT_EQ(state_.stallTimerId_, 0u);
  EXPECT_FALSE(HasTimer(CheckTimerId()));
  EXPECT_TRUE(
      log_.Has("DEBUG [VLCPlayer] Stopped stall watchdog timer (id=" + PointerText(reinterpret_cast<void*>(id)) + ")"));
  EXPECT_EQ(state_.primaryStall_.stalledTicks, 0);
  EXPECT_EQ(state_.primaryStall_.lastNudgeTickMs, 0u);
  EXPECT_THAT(state_.primaryStall_.restartTicksMs, IsEmpty());
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
  state_.primaryStall_.stalledTicks = 2;
  player_.StopStallWatchdog();
  EXPECT_EQ(state_.primaryStall_.stalledTicks, 2);
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

TEST_F(WatchdogTest, AStopOnLibvlcsThreadClearsTheRecordBeforeItsNextUse) {
  StartSingle();
  WedgedPasses(2);
  vlc_.Raise(vlc_.Player(), kPaused);
  vlc_.Raise(vlc_.Player(), kPlaying);
  WedgedPasses(2);
  EXPECT_EQ(log_.CountContaining("wedge detected"), 0);
  WedgedPass();
  EXPECT_EQ(log_.Count("INFO [StallDetector] primary wedge detected (video_wedged) after 3 ticks"), 1);
}

TEST_F(WatchdogTest, AStopOnLibvlcsThreadLeavesTheRecordToTheMainThread) {
  StartSingle();
  state_.primaryStall_ = {1, 2, 2, 3, {4}};
  vlc_.Raise(vlc_.Player(), kPaused);
  EXPECT_FALSE(state_.stallWatchdogActive_);
  EXPECT_EQ(state_.primaryStall_.stalledTicks, 2);
  EXPECT_THAT(state_.primaryStall_.restartTicksMs, ElementsAre(4u));
}

TEST_F(WatchdogTest, AStopDuringAPassClearsTheRecordBeforeItsCheck) {
  StartSingle();
  WedgedPasses(2);
  vlc_.OnCall("libvlc_media_player_is_playing", [this] {
    vlc_.Raise(vlc_.Player(), kPaused);
    vlc_.Raise(vlc_.Player(), kPlaying);
  });
  WedgedPass();
  vlc_.OnCall("libvlc_media_player_is_playing", nullptr);
  EXPECT_EQ(log_.CountContaining("wedge detected"), 0);
}

decltype(&KillTimer) realKillTimer = nullptr;
std::function<void()> afterNextKill;
BOOL WINAPI KillTimerAndWork(HWND window, UINT_PTR id) {
  const BOOL killed = realKillTimer(window, id);
  if (const auto work = std::exchange(afterNextKill, nullptr)) work();
  return killed;
}

TEST_F(WatchdogTest, APlayingEventDuringTheStopOfASetMediaDoesNotKeepItOn) {
  StartSingle();
  const ImportHook kill("user32.dll", "KillTimer", &KillTimerAndWork);
  realKillTimer = kill.Original<decltype(realKillTimer)>();
  afterNextKill = [this] { vlc_.Raise(vlc_.Player(), kPlaying); };
  bool onAtTheStop = false;
  bool onAtTheMedia = true;
  vlc_.OnCall("libvlc_media_player_stop", [&] { onAtTheStop = state_.stallWatchdogActive_.IsOn(); });
  vlc_.OnCall("libvlc_media_new_uri", [&] { onAtTheMedia = state_.stallWatchdogActive_.IsOn(); });
  ASSERT_TRUE(SetMedia("http://host/1"));
  vlc_.OnCall("libvlc_media_player_stop", nullptr);
  vlc_.OnCall("libvlc_media_new_uri", nullptr);
  EXPECT_TRUE(onAtTheStop);
  EXPECT_FALSE(onAtTheMedia);
  EXPECT_TRUE(state_.stallWatchdogActive_);
}

TEST_F(WatchdogTest, AStartDuringTheEndOfTheTimerRunsTheTimerAgain) {
  StartSingle();
  const ImportHook kill("user32.dll", "KillTimer", &KillTimerAndWork);
  realKillTimer = kill.Original<decltype(realKillTimer)>();
  afterNextKill = [this] { player_.StartStallWatchdog(); };
  const int started = log_.CountContaining("Started stall watchdog timer");
  player_.StopStallWatchdog();
  EXPECT_EQ(log_.CountContaining("Started stall watchdog timer"), started + 1);
  EXPECT_EQ(log_.CountContaining("Stopped stall watchdog timer"), 1);
  EXPECT_TRUE(state_.stallWatchdogActive_);
  EXPECT_EQ(state_.stallTimerId_, CheckTimerId());
  EXPECT_TRUE(HasTimer(CheckTimerId()));
}

TEST_F(WatchdogTest, ATimerThatCouldNotBeSetIsNotKilled) {
  Start();
  const ImportHook set(
      "user32.dll", "SetTimer", +[](HWND, UINT_PTR, UINT, TIMERPROC) -> UINT_PTR { return 0; });
  const ImportHook kill("user32.dll", "KillTimer", &KillTimerAndWork);
  realKillTimer = kill.Original<decltype(realKillTimer)>();
  bool killed = false;
  afterNextKill = [&killed] { killed = true; };
  player_.StartStallWatchdog();
  player_.StopStallWatchdog();
  afterNextKill = nullptr;
  EXPECT_FALSE(killed);
  EXPECT_EQ(log_.CountContaining("Stopped stall watchdog timer"), 0);
}

TEST_F(WatchdogTest, WithoutAParentWindowAStartSetsTheFlagAndNoTimer) {
  Start();
  state_.parentWindow_ = nullptr;
  player_.StartStallWatchdog();
  EXPECT_TRUE(state_.stallWatchdogActive_);
  EXPECT_EQ(state_.stallTimerId_, 0u);
  EXPECT_EQ(log_.CountContaining("Started stall watchdog timer"), 0);
  state_.parentWindow_ = parent_.get();
  EXPECT_FALSE(HasTimer(CheckTimerId()));
}

TEST_F(WatchdogTest, WithoutAParentWindowAStopForgetsItsTimerAllTheSame) {
  Start();
  player_.StartStallWatchdog();
  state_.parentWindow_ = nullptr;
  player_.StopStallWatchdog();
  EXPECT_EQ(state_.stallTimerId_, 0u);
  EXPECT_EQ(log_.CountContaining("Stopped stall watchdog timer"), 0);
  state_.parentWindow_ = parent_.get();
  EXPECT_TRUE(HasTimer(CheckTimerId()));
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

TEST_F(WatchdogTest, AfterAUsersPauseThePlayerIsNotJudged) {
  StartSingle();
  player_.Pause();
  vlc_.Raise(vlc_.Player(), kPaused);
  vlc_.ClearCalls();
  WedgedPasses(3);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(WatchdogTest, AfterAUsersStopTheWatchdogIsOff) {
  StartSingle();
  player_.StopInternal(false);
  vlc_.Raise(vlc_.Player(), kStopped);
  EXPECT_FALSE(state_.stallWatchdogActive_);
}

TEST_F(WatchdogTest, WhileOffAPassAsksNothing) {
  Start();
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

TEST_F(WatchdogTest, APassReleasesTheMediaThatItAsksThePlayerFor) {
  StartSingle();
  state_.media_.reset();
  vlc_.ClearCalls();
  player_.OnStallWatchdogTick();
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_get_media"), 1);
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_get_stats"), ElementsAre("libvlc_media_get_stats(media1)"));
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_release"), ElementsAre("libvlc_media_release(media1)"));
}

TEST_F(WatchdogTest, APassWithoutAPlayerCallsNothing) {
  StartSingle();
  state_.mediaPlayer_.reset();
  vlc_.ClearCalls();
  player_.OnStallWatchdogTick();
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(WatchdogTest, AVideoOfOnePixelIsJudged) {
  StartSingle();
  vlc_.SetSize(vlc_.Player(), 1, 1);
  HealthyPass();
  WedgedPass();
  EXPECT_EQ(state_.primaryStall_.stalledTicks, 1);
}

TEST_F(WatchdogTest, AStreamThatNeverHadVideoLogsNoReset) {
  StartSingle();
  vlc_.SetSize(vlc_.Player(), 0, 0);
  WedgedPasses(2);
  EXPECT_EQ(log_.CountContaining("wedge reset"), 0);
}

TEST_F(WatchdogTest, APlayerWithoutAnyMediaIsNotJudged) {
  Start();
  Watchable(vlc_.Player());
  player_.StartStallWatchdog();
  vlc_.ClearCalls();
  player_.OnStallWatchdogTick();
  EXPECT_EQ(vlc_.CountOf("libvlc_media_get_stats"), 0);
}

TEST_F(WatchdogTest, APlayerThatDoesNotPlayLosesOnlyItsStalledTicks) {
  StartSingle();
  HealthyPass();
  WedgedPasses(2);
  vlc_.SetPlaying(vlc_.Player(), false);
  Pass();
  EXPECT_EQ(state_.primaryStall_.stalledTicks, 0);
  EXPECT_EQ(state_.primaryStall_.lastDisplayed, static_cast<int>(displayed_));
  EXPECT_EQ(state_.primaryStall_.lastAudio, static_cast<int>(audio_));
}

TEST_F(WatchdogTest, StatisticsThatFailLeaveTheRecordAsItIs) {
  StartSingle();
  HealthyPass();
  WedgedPasses(2);
  vlc_.Fail("libvlc_media_get_stats");
  Pass();
  EXPECT_EQ(state_.primaryStall_.stalledTicks, 2);
}

TEST_F(WatchdogTest, CountersAreTheirLowHalvesWithASign) {
  StartSingle();
  SetCounters(0x1'0000'0007, 0xFFFF'FFFF);
  Pass();
  EXPECT_EQ(state_.primaryStall_.lastDisplayed, 7);
  EXPECT_EQ(state_.primaryStall_.lastAudio, -1);
}

TEST_F(WatchdogTest, AGridWithoutTilesIsWatchedAsASingleView) {
  StartSingle();
  state_.isMultiViewMode_ = true;
  player_.OnStallWatchdogTick();
  EXPECT_EQ(vlc_.CountOf("libvlc_media_get_stats"), 1);
  state_.isMultiViewMode_ = false;
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
  std::vector<std::string> stallLines;
  for (const std::string& line : lines)
    if (line.find("[StallDetector]") != std::string::npos) stallLines.push_back(line);
  EXPECT_THAT(
      stallLines,
      ElementsAre("DEBUG [StallDetector] primary wedge tick (video_wedged): displayed=25 audio=80 stalledTicks=1",
                  "DEBUG [StallDetector] primary wedge reset (displayed=50, audio=120)",
                  "DEBUG [StallDetector] primary wedge tick (audio_wedged): displayed=75 audio=120 stalledTicks=1",
                  "DEBUG [StallDetector] primary wedge reset (no video track)"));
}

TEST_F(WatchdogTest, AnAudioOnlyStreamIsLeftAlone) {
  StartSingle();
  vlc_.SetSize(vlc_.Player(), 0, 0);
  WedgedPasses(10);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_pause"), 0);
}

TEST_F(WatchdogTest, AListWithOnlyTheEntryDisableIsNoAudio) {
  StartSingle();
  vlc_.SetAudioTracks(vlc_.Player(), {{-1, "Disable"}});
  for (int i = 0; i < 5; ++i) {
    displayed_ += 25;
    SetCounters(displayed_, 0);
    Pass();
  }
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_pause"), 0);
}

}  // namespace
}  // namespace vantro::test
