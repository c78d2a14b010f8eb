// How long a stop waits, on a scripted clock.
#include "tests/unit/runtime/system_calls.h"

namespace vantro::test {
namespace {

using testing::IsEmpty;

class StopClockTest : public SystemCallsTest {
 protected:
  void SetUp() override {
    calls_.clock = 1000;
    WaitsTakeTheirTime();
    MakePlayer();
    published::SetResult("libvlc_media_player_stop_async", 0);
  }
  // Also at the end, when the player is released.
  void TearDown() override { WaitsTakeTheirTime(); }
  // Each wait takes the 10 ms that it asks for.
  void WaitsTakeTheirTime() {
    calls_.waitsFor = [this] {
      *calls_.clock += 10;
      return DWORD{WAIT_TIMEOUT};
    };
  }
  // Milliseconds.
  ULONGLONG Stop() {
    const ULONGLONG before = *calls_.clock;
    vlc().libvlc_media_player_stop(player_);
    return *calls_.clock - before;
  }
};

TEST_F(StopClockTest, OfAPlayerThatNeverStopsIsGivenUpAfterFiveSeconds) {
  published::SetState(published::Player(1), published::kPlaying);
  EXPECT_EQ(Stop(), 5000u);
}

TEST_F(StopClockTest, OfAQuietStartWaitsAQuarterOfASecond) {
  vlc().libvlc_media_player_play(player_);
  EXPECT_EQ(Stop(), 250u);
}

TEST_F(StopClockTest, InAMessageServedDuringItAReleaseLeavesThePlayerAlone) {
  published::SetState(published::Player(1), published::kPlaying);
  calls_.waitsFor = [this] {
    *calls_.clock += 10;
    published::SetState(published::Player(1), published::kStopped);
    vlc().libvlc_media_player_release(std::exchange(player_, nullptr));
    return DWORD{WAIT_TIMEOUT};
  };
  EXPECT_EQ(Stop(), 10u);
  EXPECT_THAT(published::Violations(), IsEmpty());
}

TEST_F(StopClockTest, ReturnsAfterTheStoppedWhoseCallbackPlaysAgain) {
  Action play = [this] { vlc().libvlc_media_player_play(player_); };
  vlc().libvlc_event_attach(vlc().libvlc_media_player_event_manager(player_), kStopped, RunAction, &play);
  void* const real = published::Player(1);
  published::SetState(real, published::kPlaying);
  calls_.waitsFor = [this, real] {
    *calls_.clock += 10;
    published::SetState(real, published::kOpening);
    if (*calls_.clock == 1010) published::Raise(real, kStopped);
    return DWORD{WAIT_TIMEOUT};
  };
  EXPECT_EQ(Stop(), 10u);
}

// The library's thread is still inside the signal, with the player's lock held.
TEST_F(StopClockTest, ReturnsAtTheSignalOfTheStoppedEvent) {
  void* const real = published::Player(1);
  published::SetState(real, published::kPlaying);
  std::atomic<bool> returned{false};
  bool returnedDuringTheSignal = false;
  calls_.afterSignal = [&] {
    for (int i = 0; i < 200 && !returned; ++i) Sleep(10);
    returnedDuringTheSignal = returned;
  };
  std::atomic<bool> waits{false};
  calls_.waitsFor = [&] {
    waits = true;
    return WaitForSingleObject(calls_.event, 5000);
  };
  published::Later(0, [&] {
    while (!waits) Sleep(1);
    published::Raise(real, kStopped);
  });
  vlc().libvlc_media_player_stop(player_);
  returned = true;
  published::JoinThreads();
  EXPECT_TRUE(returnedDuringTheSignal);
}

class EventAfterPlay : public StopClockTest, public testing::WithParamInterface<int> {};
class EventThatEndsAStart : public EventAfterPlay {};
class EventThatEndsNoStart : public EventAfterPlay {};

TEST_P(EventThatEndsAStart, LetsAStopReturnAtOnce) {
  vlc().libvlc_media_player_play(player_);
  ASSERT_EQ(published::Raise(published::Player(1), GetParam()), 1);
  EXPECT_EQ(Stop(), 0u);
}
INSTANTIATE_TEST_SUITE_P(Is, EventThatEndsAStart, testing::Values(kOpening, kPlaying, kEncounteredError, kStopped));

TEST_P(EventThatEndsNoStart, LetsAStopWait) {
  vlc().libvlc_media_player_play(player_);
  published::Raise(published::Player(1), GetParam());
  EXPECT_EQ(Stop(), 250u);
}
INSTANTIATE_TEST_SUITE_P(Is, EventThatEndsNoStart,
                         testing::Values(kMediaChanged, kNothingSpecial, kBuffering, kPaused, kStopping, kTimeChanged,
                                         kPositionChanged, kSeekableChanged));

}  // namespace
}  // namespace vantro::test
