// How an event of libvlc changes the player, and what it sends to the interface.
#include "player/player_events.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <string>

#include "tests/unit/player/grid_fixture.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PlayerEventsTest : public GridTest {
 protected:
  void SetUp() override { StartWithEvents(); }
  // Raises an event of the single view's player on a thread of the library.
  int Raise(int type, double value = 0) { return vlc_.Raise(vlc_.Player(), type, value); }
};

struct EventRow {
  int type;
  double value;
  const char* reported;
  bool stopsWatchdog;
};

class EventRowTest : public PlayerEventsTest, public testing::WithParamInterface<EventRow> {};

TEST_P(EventRowTest, ReportsTheEventAndStopsTheWatchdogWhereListed) {
  player_.StartStallWatchdog();
  EXPECT_EQ(Raise(GetParam().type, GetParam().value), 1);
  EXPECT_THAT(events_.Take(), ElementsAre(GetParam().reported));
  EXPECT_EQ(state_.stallWatchdogActive_.IsOn(), !GetParam().stopsWatchdog);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, EventRowTest,
    testing::Values(EventRow{0x102, 0, "onOpening", false}, EventRow{0x103, 100, "onBuffering:100.000000", false},
                    EventRow{0x104, 0, "onPlaying", false}, EventRow{0x100, 0, "onMediaChanged", false},
                    EventRow{0x105, 0, "onPaused", true}, EventRow{0x106, 0, "onStopped", true},
                    EventRow{5, 0, "onEndReached", true},
                    EventRow{0x10A, 0, "onError:Media player encountered an error", true},
                    EventRow{0x10C, 0.5, "onPositionChanged:0.500000", false},
                    EventRow{0x10B, 0, "onTimeChanged:0", false}, EventRow{0x10D, 1, "onSeekableChanged:true", false}));

TEST_F(PlayerEventsTest, NullUserDataIsIgnored) {
  const libvlc_event_t event{kPlaying, nullptr, {}};
  VLCPlayer::VlcEventCallback(&event, nullptr);
  EXPECT_THAT(events_.Take(), IsEmpty());
}

TEST_F(PlayerEventsTest, UserDataIsThePlayerThatTheEventGoesTo) {
  const libvlc_event_t event{kPlaying, nullptr, {}};
  VLCPlayer::VlcEventCallback(&event, &player_);
  EXPECT_THAT(events_.Take(), ElementsAre("onPlaying"));
}

TEST_F(PlayerEventsTest, ASuppressedStopIsNotReportedAndTheNextOneIs) {
  player_.StartStallWatchdog();
  state_.suppressStoppedEvent_ = true;
  Raise(kStopped);
  EXPECT_THAT(events_.Take(), IsEmpty());
  EXPECT_FALSE(state_.suppressStoppedEvent_);
  EXPECT_FALSE(state_.stallWatchdogActive_);
  Raise(kStopped);
  EXPECT_THAT(events_.Take(), ElementsAre("onStopped"));
}

TEST_F(PlayerEventsTest, OtherEventsLeaveTheSuppressionAlone) {
  state_.suppressStoppedEvent_ = true;
  Raise(kPaused);
  EXPECT_TRUE(state_.suppressStoppedEvent_);
}

TEST_F(PlayerEventsTest, AnErrorCarriesItsFixedTextAndNeverLibvlcs) {
  vlc_.SetText("libvlc_errmsg", "disk on fire");
  Raise(0x10A);
  EXPECT_THAT(events_.Take(), ElementsAre("onError:Media player encountered an error"));
  EXPECT_EQ(vlc_.CountOf("libvlc_errmsg"), 0);
}

TEST_F(PlayerEventsTest, EventsSwitchTheWatchdogWithoutACallback) {
  state_.eventCallback_ = nullptr;
  Raise(kPlaying);
  EXPECT_TRUE(state_.stallWatchdogActive_);
  Raise(kPaused);
  EXPECT_FALSE(state_.stallWatchdogActive_);
}

TEST_F(PlayerEventsTest, WithoutACallbackTheSuppressionIsStillSpent) {
  state_.eventCallback_ = nullptr;
  state_.suppressStoppedEvent_ = true;
  Raise(kStopped);
  EXPECT_FALSE(state_.suppressStoppedEvent_);
}

TEST_F(PlayerEventsTest, ForwardBackwardAndStoppingAreIgnored) {
  player_.StartStallWatchdog();
  for (const int type : {0x107, 0x108, 0x109}) {
    const libvlc_event_t event{type, nullptr, {}};
    player_.ProcessVLCEvent(&event);
  }
  EXPECT_THAT(events_.Take(), IsEmpty());
  EXPECT_TRUE(state_.stallWatchdogActive_);
}

TEST_F(PlayerEventsTest, ATimeOfZeroHasAnArgument) {
  vlc_.RaiseTime(vlc_.Player(), 0);
  EXPECT_THAT(events_.Take(), ElementsAre("onTimeChanged:0"));
}

TEST_F(PlayerEventsTest, ANegativeTimeHasALeadingMinus) {
  vlc_.RaiseTime(vlc_.Player(), -1500);
  EXPECT_THAT(events_.Take(), ElementsAre("onTimeChanged:-1500"));
}

TEST_F(PlayerEventsTest, EveryTimeEventIsReported) {
  for (int i = 0; i < 50; ++i) vlc_.RaiseTime(vlc_.Player(), i);
  EXPECT_EQ(events_.Take().size(), 50u);
}

TEST_F(PlayerEventsTest, AnEventIsReportedOnLibvlcsThread) {
  std::atomic<DWORD> thread{0};
  state_.eventCallback_ = [&](const char*, const char*) { thread = GetCurrentThreadId(); };
  Raise(kPlaying);
  EXPECT_NE(thread, 0u);
  EXPECT_NE(thread, GetCurrentThreadId());
}

TEST_F(PlayerEventsTest, AnEventIsReportedBeforeTheWatchdogStarts) {
  std::atomic<int> activeDuringCall{-1};
  state_.eventCallback_ = [&](const char*, const char*) { activeDuringCall = state_.stallWatchdogActive_ ? 1 : 0; };
  Raise(kPlaying);
  EXPECT_EQ(activeDuringCall, 0);
  EXPECT_TRUE(state_.stallWatchdogActive_);
}

TEST_F(PlayerEventsTest, OutsideTheGridPlayingRescalesNothing) {
  vlc_.SetSize(vlc_.Player(), 640, 360);
  vlc_.ClearCalls();
  Raise(kPlaying);
  Raise(kMediaChanged);
  EXPECT_EQ(vlc_.CountOf("libvlc_video_set_scale"), 0);
  EXPECT_EQ(log_.CountContaining("calling UpdateMultiViewScaling"), 0);
}

TEST_F(PlayerEventsTest, AfterCleanupNoEventArrives) {
  libvlc_media_player_t* const player = vlc_.Player();
  player_.Cleanup();
  EXPECT_EQ(vlc_.Raise(player, kPlaying), 0);
}

class TileEventsTest : public GridTest {};

TEST_F(TileEventsTest, AnAddedTileReportsOnlyPlayingAndMediaChanged) {
  StartGrid(2);
  EXPECT_THAT(vlc_.AttachedTypes(TilePlayer(1)), ElementsAre(kPlaying, kMediaChanged));
  EXPECT_EQ(vlc_.Raise(TilePlayer(1), kPlaying), 1);
  EXPECT_EQ(vlc_.Raise(TilePlayer(1), kMediaChanged), 1);
  EXPECT_EQ(vlc_.Raise(TilePlayer(1), kPaused), 0);
  EXPECT_THAT(events_.Take(), ElementsAre("onPlaying", "onMediaChanged"));
}

TEST_F(TileEventsTest, TheOriginalTileKeepsItsFullSet) {
  StartGrid(2);
  EXPECT_EQ(vlc_.AttachedTypes(TilePlayer(0)).size(), kPlayerEvents.size());
  vlc_.Raise(TilePlayer(0), kPaused);
  EXPECT_THAT(events_.Take(), ElementsAre("onPaused"));
}

TEST_F(TileEventsTest, PlayingRescalesTheTilesOnLibvlcsThreadAndStartsTheWatchdog) {
  StartGrid(2);
  player_.StopStallWatchdog();
  vlc_.SetSize(TilePlayer(1), 640, 360);
  vlc_.Raise(TilePlayer(1), kPlaying);
  EXPECT_TRUE(log_.Has("DEBUG [ProcessVLCEvent] Playing event - calling UpdateMultiViewScaling"));
  ASSERT_EQ(vlc_.CountOf("libvlc_video_set_scale"), 1);
  EXPECT_NE(vlc_.ThreadsOf("libvlc_video_set_scale").front(), GetCurrentThreadId());
  EXPECT_TRUE(state_.stallWatchdogActive_);
}

TEST_F(TileEventsTest, PlayingRescalesBeforeTheWatchdogStarts) {
  StartGrid(2);
  player_.StopStallWatchdog();
  vlc_.SetSize(TilePlayer(1), 640, 360);
  std::atomic<int> activeAtScale{-1};
  vlc_.OnCall("libvlc_video_set_scale", [&] { activeAtScale = state_.stallWatchdogActive_ ? 1 : 0; });
  vlc_.Raise(TilePlayer(1), kPlaying);
  vlc_.OnCall("libvlc_video_set_scale", nullptr);
  EXPECT_EQ(activeAtScale, 0);
  EXPECT_TRUE(state_.stallWatchdogActive_);
}

TEST_F(TileEventsTest, PlayingRescalesATileThatIsAlone) {
  StartGrid(1);
  vlc_.SetSize(TilePlayer(0), 400, 300);
  vlc_.Raise(TilePlayer(0), kPlaying);
  EXPECT_THAT(vlc_.CallsOf("libvlc_video_set_scale"), ElementsAre("libvlc_video_set_scale(player1, 2)"));
}

TEST_F(TileEventsTest, MediaChangedRescalesTheTilesAndLeavesTheWatchdog) {
  StartGrid(2);
  player_.StopStallWatchdog();
  vlc_.SetSize(TilePlayer(1), 640, 360);
  vlc_.Raise(TilePlayer(1), kMediaChanged);
  EXPECT_TRUE(log_.Has("DEBUG [ProcessVLCEvent] MediaChanged event - calling UpdateMultiViewScaling"));
  EXPECT_EQ(vlc_.CountOf("libvlc_video_set_scale"), 1);
  EXPECT_FALSE(state_.stallWatchdogActive_);
}

}  // namespace
}  // namespace vantro::test
