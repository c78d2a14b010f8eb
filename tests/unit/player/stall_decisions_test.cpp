// The watchdog's verdicts, its ladder and its restore rule over plain values, with times that the tests set.
#include "player/stall_decisions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vantro {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

StallSample Sample(int displayed, int audio) { return {displayed, audio, true, true}; }

// One check of the state, as in the watchdog.
bool Check(StallState& state, const StallSample& sample) {
  return RecordStallCheck(state, sample, JudgeStall(state, sample));
}

TEST(StallState, BeginsWithoutCountersAndTimes) {
  const StallState state;
  EXPECT_EQ(state.lastDisplayed, 0);
  EXPECT_EQ(state.lastAudio, 0);
  EXPECT_EQ(state.stalledTicks, 0);
  EXPECT_EQ(state.lastNudgeTickMs, 0u);
}

TEST(StallState, IsAsAtFirstAfterItIsCleared) {
  StallState state{1, 2, 3, 4, {5}};
  state.Clear();
  EXPECT_EQ(state.lastDisplayed, 0);
  EXPECT_EQ(state.lastAudio, 0);
  EXPECT_EQ(state.stalledTicks, 0);
  EXPECT_EQ(state.lastNudgeTickMs, 0u);
  EXPECT_TRUE(state.restartTicksMs.empty());
}

StallState Counters(int displayed, int audio, int ticks = 0) {
  StallState state;
  state.lastDisplayed = displayed;
  state.lastAudio = audio;
  state.stalledTicks = ticks;
  return state;
}

struct VerdictRow {
  const char* name;
  StallSample sample;
  StallVerdict verdict;
};

// Compares with a last check of 100 pictures and 200 buffers.
class StallVerdictTest : public testing::TestWithParam<VerdictRow> {};

TEST_P(StallVerdictTest, FollowsFromTheCounters) {
  const StallState state = Counters(100, 200);
  EXPECT_EQ(JudgeStall(state, GetParam().sample), GetParam().verdict);
}

INSTANTIATE_TEST_SUITE_P(
    Counters, StallVerdictTest,
    testing::Values(VerdictRow{"BothRise", {125, 240, true, true}, StallVerdict::kHealthy},
                    VerdictRow{"NothingMoves", {100, 200, true, true}, StallVerdict::kHealthy},
                    VerdictRow{"PictureStopsWhileSoundContinues", {100, 240, true, true}, StallVerdict::kVideoWedged},
                    VerdictRow{"PictureStopsWithoutAnAudioTrack", {100, 240, true, false}, StallVerdict::kVideoWedged},
                    VerdictRow{"SoundStopsWhilePicturesContinue", {125, 200, true, true}, StallVerdict::kAudioWedged},
                    VerdictRow{"SoundStopsWithoutAnAudioTrack", {125, 200, true, false}, StallVerdict::kHealthy},
                    VerdictRow{"BothFall", {3, 4, true, true}, StallVerdict::kHealthy},
                    VerdictRow{"PicturesFallWhileSoundRises", {3, 240, true, true}, StallVerdict::kHealthy},
                    VerdictRow{"SoundFallsWhilePicturesStop", {100, 4, true, true}, StallVerdict::kHealthy},
                    VerdictRow{"NoVideo", {100, 240, false, true}, StallVerdict::kNoVideo},
                    VerdictRow{"NegativeCountersCompareSigned", {100, -5, true, true}, StallVerdict::kHealthy}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(StallReason, HasAWordForEachWedgeAndOneForNone) {
  EXPECT_STREQ(WedgeReason(StallVerdict::kVideoWedged), "video_wedged");
  EXPECT_STREQ(WedgeReason(StallVerdict::kAudioWedged), "audio_wedged");
  EXPECT_STREQ(WedgeReason(StallVerdict::kHealthy), "unknown");
  EXPECT_STREQ(WedgeReason(StallVerdict::kNoVideo), "unknown");
}

TEST(StallCheck, AStreamOnWhichNothingMovesIsNotWedged) {
  StallState state = Counters(100, 200, 2);
  EXPECT_FALSE(Check(state, Sample(100, 200)));
  EXPECT_EQ(state.stalledTicks, 0);
}

TEST(StallCheck, AnAudioOnlyStreamIsNeverWedged) {
  StallState state;
  for (int second = 1; second <= 10; ++second) {
    EXPECT_FALSE(Check(state, {0, 40 * second, false, true}));
    EXPECT_EQ(state.stalledTicks, 0);
  }
}

TEST(StallCheck, AStillAudioCounterIsNoWedgeWithoutAnAudioTrack) {
  StallState state;
  for (int second = 1; second <= 10; ++second) EXPECT_FALSE(Check(state, {25 * second, 0, true, false}));
  for (int second = 1; second <= 10; ++second) EXPECT_FALSE(Check(state, {250, 0, true, false}));
}

TEST(StallCheck, FallingCountersAreNoWedgeAndAreStored) {
  StallState state = Counters(1000, 2000, 2);
  EXPECT_FALSE(Check(state, Sample(5, 10)));
  EXPECT_EQ(state.stalledTicks, 0);
  EXPECT_EQ(state.lastDisplayed, 5);
  EXPECT_EQ(state.lastAudio, 10);
}

TEST(StallCheck, TwoWedgeChecksAHealthyOneAndTwoMoreDetectNothing) {
  StallState state = Counters(100, 0);
  EXPECT_FALSE(Check(state, Sample(100, 40)));
  EXPECT_FALSE(Check(state, Sample(100, 80)));
  EXPECT_FALSE(Check(state, Sample(125, 120)));
  EXPECT_FALSE(Check(state, Sample(125, 160)));
  EXPECT_FALSE(Check(state, Sample(125, 200)));
}

TEST(StallCheck, TheThirdWedgeCheckInARowDetects) {
  StallState state = Counters(100, 0);
  EXPECT_FALSE(Check(state, Sample(100, 40)));
  EXPECT_EQ(state.stalledTicks, 1);
  EXPECT_FALSE(Check(state, Sample(100, 80)));
  EXPECT_EQ(state.stalledTicks, 2);
  EXPECT_TRUE(Check(state, Sample(100, 120)));
}

TEST(StallCheck, NoVideoEndsACountAndStoresTheCounters) {
  StallState state = Counters(100, 200, 2);
  EXPECT_FALSE(Check(state, {101, 240, false, true}));
  EXPECT_EQ(state.stalledTicks, 0);
  EXPECT_EQ(state.lastDisplayed, 101);
  EXPECT_EQ(state.lastAudio, 240);
}

constexpr uint64_t kNow = 5'000'000;

StallState AtDetection(uint64_t lastNudge, std::vector<uint64_t> restarts = {}) {
  StallState state;
  state.stalledTicks = 3;
  state.lastNudgeTickMs = lastNudge;
  state.restartTicksMs = std::move(restarts);
  return state;
}

TEST(StallLadder, BeginsWithANudge) {
  StallState state = AtDetection(0);
  EXPECT_EQ(ClimbStallLadder(state, kNow), StallRung::kNudge);
  EXPECT_EQ(state.lastNudgeTickMs, kNow);
  EXPECT_EQ(state.stalledTicks, 0);
  EXPECT_THAT(state.restartTicksMs, IsEmpty());
}

TEST(StallLadder, BeginsWithANudgeAlsoSoonAfterTheStartOfTheMachine) {
  StallState state = AtDetection(0);
  EXPECT_EQ(ClimbStallLadder(state, 5000), StallRung::kNudge);
}

TEST(StallLadder, ANudgeExactlyTenSecondsAgoIsFollowedByANudge) {
  StallState state = AtDetection(kNow - 10000);
  EXPECT_EQ(ClimbStallLadder(state, kNow), StallRung::kNudge);
  EXPECT_EQ(state.lastNudgeTickMs, kNow);
}

TEST(StallLadder, ANudgeUnderTenSecondsAgoIsFollowedByARestart) {
  StallState state = AtDetection(kNow - 9999);
  EXPECT_EQ(ClimbStallLadder(state, kNow), StallRung::kRestart);
  EXPECT_EQ(state.lastNudgeTickMs, kNow - 9999);
  EXPECT_THAT(state.restartTicksMs, ElementsAre(kNow));
  EXPECT_EQ(state.stalledTicks, 0);
}

TEST(StallLadder, ARestartExactlyAMinuteOldNoLongerCounts) {
  StallState state = AtDetection(kNow - 3000, {kNow - 60000, kNow - 59999, kNow - 20000});
  EXPECT_EQ(ClimbStallLadder(state, kNow), StallRung::kRestart);
  EXPECT_THAT(state.restartTicksMs, ElementsAre(kNow - 59999, kNow - 20000, kNow));
}

TEST(StallLadder, ThreeRestartsWithinTheMinuteGiveUp) {
  StallState state = AtDetection(kNow - 3000, {kNow - 59999, kNow - 20000, kNow - 5000});
  EXPECT_EQ(ClimbStallLadder(state, kNow), StallRung::kGiveUp);
  EXPECT_THAT(state.restartTicksMs, ElementsAre(kNow - 59999, kNow - 20000, kNow - 5000));
  EXPECT_EQ(state.stalledTicks, 0);
}

// There is one check a second, and each finds a wedge.
TEST(StallLadder, AWedgedTileIsNudgedReloadedThreeTimesNudgedAndGivenUp) {
  StallState state = Counters(100, 0);
  std::vector<std::pair<int, StallRung>> course;
  for (int second = 1; second <= 18; ++second) {
    if (Check(state, Sample(100, 40 * second))) {
      course.emplace_back(second, ClimbStallLadder(state, kNow + 1000u * static_cast<unsigned>(second)));
    }
  }
  constexpr int T = 3;
  EXPECT_THAT(course, ElementsAre(std::pair(T, StallRung::kNudge), std::pair(T + 3, StallRung::kRestart),
                                  std::pair(T + 6, StallRung::kRestart), std::pair(T + 9, StallRung::kRestart),
                                  std::pair(T + 12, StallRung::kNudge), std::pair(T + 15, StallRung::kGiveUp)));
}

TEST(StallState, ClearEmptiesEverything) {
  StallState state = AtDetection(7, {1, 2});
  state.lastDisplayed = 3;
  state.lastAudio = 4;
  state.Clear();
  EXPECT_EQ(state.lastDisplayed, 0);
  EXPECT_EQ(state.lastAudio, 0);
  EXPECT_EQ(state.stalledTicks, 0);
  EXPECT_EQ(state.lastNudgeTickMs, 0u);
  EXPECT_THAT(state.restartTicksMs, IsEmpty());
}

struct RestoreRow {
  bool isLive;
  bool supportsTimeshift;
  bool inTimeshiftMode;
  bool restores;
};

class RestorePositionTest : public testing::TestWithParam<RestoreRow> {};

TEST_P(RestorePositionTest, FollowsTheThreeFlags) {
  const RestoreRow& row = GetParam();
  EXPECT_EQ(ShouldRestorePosition(row.isLive, row.supportsTimeshift, row.inTimeshiftMode), row.restores);
}

INSTANTIATE_TEST_SUITE_P(Flags, RestorePositionTest,
                         testing::Values(RestoreRow{false, false, false, true}, RestoreRow{false, false, true, false},
                                         RestoreRow{false, true, false, false}, RestoreRow{false, true, true, false},
                                         RestoreRow{true, false, false, false}, RestoreRow{true, false, true, false},
                                         RestoreRow{true, true, false, false}, RestoreRow{true, true, true, true}));

TEST(Restart, TakesTheCacheOfTheStreamOrFiveSeconds) {
  EXPECT_EQ(RestartCacheMs(1), 1);
  EXPECT_EQ(RestartCacheMs(0), 5000);
  EXPECT_EQ(RestartCacheMs(-1), 5000);
}

TEST(Restart, SeeksOnlyWhereThePositionIsRestoredAndKnown) {
  EXPECT_EQ(RestartSeekMs(true, 1234), 1234);
  EXPECT_EQ(RestartSeekMs(true, 1), 1);
  EXPECT_EQ(RestartSeekMs(true, 0), 0);
  EXPECT_EQ(RestartSeekMs(true, -1), 0);
  EXPECT_EQ(RestartSeekMs(false, 1234), 0);
  EXPECT_EQ(RestartSeekMs(true, 0x1'0000'0005), 5);
}

TEST(StallLabel, NamesATileByItsOriginOrItsName) {
  EXPECT_EQ(TileStallLabel(true, "News"), "mv_primary");
  EXPECT_EQ(TileStallLabel(false, "News"), "mv_News");
  EXPECT_EQ(TileStallLabel(false, ""), "mv_");
}

}  // namespace
}  // namespace vantro
