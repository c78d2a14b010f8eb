// The watchdog's pass over the tiles of the grid, and the intervals of its timers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include "tests/support/import_hook.h"
#include "tests/unit/player/watchdog_fixture.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;

using TileWatchTest = WatchdogTest;

TEST_F(TileWatchTest, ATileThatDoesNotPlayLosesOnlyItsStalledTicks) {
  StartGrid(2);
  Tile(1).stall = {5, 6, 2, 7, {8}};
  Pass();
  EXPECT_EQ(Tile(1).stall.stalledTicks, 0);
  EXPECT_EQ(Tile(1).stall.lastDisplayed, 5);
  EXPECT_EQ(Tile(1).stall.lastAudio, 6);
  EXPECT_EQ(Tile(1).stall.lastNudgeTickMs, 7u);
  EXPECT_THAT(Tile(1).stall.restartTicksMs, ElementsAre(8u));
}

TEST_F(TileWatchTest, ATileAddedOutsideTheGridDoesNotChangeThePass) {
  StartSingle();
  ASSERT_TRUE(Add(1));
  Watchable(vlc_.Player(2));
  vlc_.ClearCalls();
  Pass();
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_is_playing"), ElementsAre("libvlc_media_player_is_playing(player1)"));
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_get_stats"), ElementsAre("libvlc_media_get_stats(media1)"));
}

TEST_F(TileWatchTest, APlayingTileWithoutMediaIsSkipped) {
  StartGrid(2);
  Watchable(TilePlayer(1));
  Tile(1).stall.stalledTicks = 2;
  vlc_.SetResult("libvlc_media_player_get_media", 0);
  vlc_.ClearCalls();
  WedgedPass();
  EXPECT_EQ(vlc_.CountOf("libvlc_media_get_stats"), 0);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_release"), 0);
  EXPECT_EQ(Tile(1).stall.stalledTicks, 2);
}

TEST_F(TileWatchTest, ATileWithoutAPlayerIsSkipped) {
  StartGrid(3);
  Watchable(TilePlayer(2));
  Tile(1).mediaPlayer.reset();
  Tile(1).stall.stalledTicks = 2;
  vlc_.ClearCalls();
  Pass();
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_get_stats"), ElementsAre("libvlc_media_get_stats(media3)"));
  EXPECT_EQ(Tile(1).stall.stalledTicks, 2);
}

UINT lastPeriod = 0;
decltype(&SetTimer) realSetTimer = nullptr;
UINT_PTR WINAPI RecordPeriod(HWND window, UINT_PTR id, UINT period, TIMERPROC procedure) {
  lastPeriod = period;
  return realSetTimer(window, id, period, procedure);
}

TEST_F(TileWatchTest, ChecksComeEverySecondAndAResumeAfter300Milliseconds) {
  Start();
  const ImportHook hook("user32.dll", "SetTimer", RecordPeriod);
  realSetTimer = hook.Original<decltype(realSetTimer)>();
  player_.StartStallWatchdog();
  EXPECT_EQ(lastPeriod, 1000u);
  state_.NudgePlayer(vlc_.Player());
  EXPECT_EQ(lastPeriod, 300u);
}

}  // namespace
}  // namespace vantro::test
