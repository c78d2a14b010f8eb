// Each operation of the grid and the watchdog without one of the functions that it needs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "player/video_scale.h"
#include "tests/unit/player/watchdog_fixture.h"

namespace vantro::test {
namespace {

using testing::IsEmpty;
using testing::Values;

void EmptySlot(const std::string& name) {
  const auto slots = LibVlcSlots();
  const auto slot = std::find_if(slots.begin(), slots.end(), [&](const LibVlcSlot& row) { return name == row.name; });
  ASSERT_NE(slot, slots.end());
  void* const none = nullptr;
  std::memcpy(reinterpret_cast<char*>(&LibVlcFunctionTable()) + slot->offset, &none, sizeof none);
}

struct Missing {
  const char* function;
  const char* line;  // the log line, or null if nothing is logged
};

std::string FunctionName(const testing::TestParamInfo<Missing>& row) { return row.param.function; }

class MissingFunctionTest : public WatchdogTest, public testing::WithParamInterface<Missing> {
 protected:
  // Empties the function's slot and clears the recorded calls.
  void LoseTheFunction() {
    EmptySlot(GetParam().function);
    vlc_.ClearCalls();
  }
  void ExpectNoCallAndTheLine() {
    EXPECT_THAT(vlc_.Calls(), IsEmpty());
    if (GetParam().line) {
      EXPECT_TRUE(log_.Has(GetParam().line));
    }
  }
};

class AddWithout : public MissingFunctionTest {};
TEST_P(AddWithout, LeavesNoWindowAndNoTile) {
  StartGrid(1);
  LoseTheFunction();
  EXPECT_FALSE(Add(1));
  ExpectNoCallAndTheLine();
  EXPECT_EQ(parent_.ChildCount(), 1);
  EXPECT_EQ(state_.players_.size(), 1u);
}
#define LINE "ERROR [MvAddStream] Missing required libvlc function pointers "
INSTANTIATE_TEST_SUITE_P(
    Table, AddWithout,
    Values(Missing{"libvlc_media_player_new", LINE "(new=0, set_hwnd=1, set_media=1, play=1)"},
           Missing{"libvlc_media_player_set_hwnd", LINE "(new=1, set_hwnd=0, set_media=1, play=1)"},
           Missing{"libvlc_media_player_set_media", LINE "(new=1, set_hwnd=1, set_media=0, play=1)"},
           Missing{"libvlc_media_player_play", LINE "(new=1, set_hwnd=1, set_media=1, play=0)"}),
    FunctionName);
#undef LINE

class ReplaceWithout : public MissingFunctionTest {};
TEST_P(ReplaceWithout, ChangesNothing) {
  StartGrid(1);
  LoseTheFunction();
  EXPECT_FALSE(player_.MvReplaceActive("http://host/new", "New"));
  ExpectNoCallAndTheLine();
  EXPECT_EQ(Tile(0).url, "http://host/0");
}
#define LINE "ERROR [MvReplaceActive] Missing libvlc functions "
INSTANTIATE_TEST_SUITE_P(Table, ReplaceWithout,
                         Values(Missing{"libvlc_media_player_stop", LINE "(stop=0, set_media=1, play=1)"},
                                Missing{"libvlc_media_player_set_media", LINE "(stop=1, set_media=0, play=1)"},
                                Missing{"libvlc_media_player_play", LINE "(stop=1, set_media=1, play=0)"}),
                         FunctionName);
#undef LINE

class PromoteWithout : public MissingFunctionTest {};
TEST_P(PromoteWithout, ChangesNothing) {
  StartGrid(2);
  player_.SetActiveIndexSafe(1);
  LoseTheFunction();
  EXPECT_FALSE(player_.MvPromoteActiveAndExit());
  ExpectNoCallAndTheLine();
  EXPECT_EQ(Tile(0).url, "http://host/0");
  EXPECT_TRUE(state_.isMultiViewMode_);
}
#define LINE "ERROR [MvPromoteActiveAndExit] Missing VLC functions "
INSTANTIATE_TEST_SUITE_P(Table, PromoteWithout,
                         Values(Missing{"libvlc_media_player_stop", LINE "(stop=0, set_media=1)"},
                                Missing{"libvlc_media_player_set_media", LINE "(stop=1, set_media=0)"}),
                         FunctionName);
#undef LINE

class AttachWithout : public MissingFunctionTest {};
TEST_P(AttachWithout, DoesNothing) {
  StartGrid(1);
  LoseTheFunction();
  state_.AttachEventsToPlayer(TilePlayer(0));
  ExpectNoCallAndTheLine();
}
INSTANTIATE_TEST_SUITE_P(Table, AttachWithout,
                         Values(Missing{"libvlc_media_player_event_manager", nullptr},
                                Missing{"libvlc_event_attach", nullptr}),
                         FunctionName);

class AudioWithout : public MissingFunctionTest {};
TEST_P(AudioWithout, SetsNothing) {
  StartGrid(1);
  LoseTheFunction();
  player_.UpdateActiveAudio();
  ExpectNoCallAndTheLine();
}
#define LINE "ERROR [UpdateActiveAudio] ERROR: Could not get VLC audio function pointers"
INSTANTIATE_TEST_SUITE_P(Table, AudioWithout,
                         Values(Missing{"libvlc_audio_set_volume", LINE}, Missing{"libvlc_audio_set_mute", LINE}),
                         FunctionName);
#undef LINE

class ScaleWithout : public MissingFunctionTest {};
TEST_P(ScaleWithout, IsUnknown) {
  StartGrid(1);
  vlc_.SetSize(TilePlayer(0), 400, 300);
  LoseTheFunction();
  EXPECT_EQ(FitVideoScale(TilePlayer(0), 800, 600), 0.0f);
  ExpectNoCallAndTheLine();
}
INSTANTIATE_TEST_SUITE_P(Table, ScaleWithout,
                         Values(Missing{"libvlc_video_get_width", nullptr},
                                Missing{"libvlc_video_get_height", nullptr}),
                         FunctionName);

class GridPassWithout : public MissingFunctionTest {};
TEST_P(GridPassWithout, AsksNothing) {
  StartGrid(2);
  LoseTheFunction();
  Pass();
  ExpectNoCallAndTheLine();
}
INSTANTIATE_TEST_SUITE_P(Table, GridPassWithout,
                         Values(Missing{"libvlc_media_player_is_playing", nullptr},
                                Missing{"libvlc_media_player_get_media", nullptr},
                                Missing{"libvlc_media_release", nullptr}),
                         FunctionName);

class PassWithoutAMediaWithout : public MissingFunctionTest {};
TEST_P(PassWithoutAMediaWithout, OnlyAsksWhetherItPlays) {
  Start();
  player_.StartStallWatchdog();
  vlc_.SetPlaying(vlc_.Player(), true);
  LoseTheFunction();
  Pass();
  EXPECT_THAT(vlc_.Calls(), testing::ElementsAre("libvlc_media_player_is_playing(player1)"));
}
INSTANTIATE_TEST_SUITE_P(Table, PassWithoutAMediaWithout, Values(Missing{"libvlc_media_player_get_media", nullptr}),
                         FunctionName);

class NudgeWithout : public MissingFunctionTest {};
TEST_P(NudgeWithout, NeitherPausesNorArmsAResume) {
  StartSingle();
  LoseTheFunction();
  state_.NudgePlayer(vlc_.Player());
  ExpectNoCallAndTheLine();
  EXPECT_TRUE(state_.nudgeTimers_.empty());
}
INSTANTIATE_TEST_SUITE_P(Table, NudgeWithout,
                         Values(Missing{"libvlc_media_player_pause", nullptr},
                                Missing{"libvlc_media_player_play", nullptr}),
                         FunctionName);

class RestartWithout : public MissingFunctionTest {};
TEST_P(RestartWithout, LeavesOnlyItsEntry) {
  StartGrid(2);
  Watchable(TilePlayer(1));
  HealthyPass();
  Tile(1).stall.lastNudgeTickMs = fakeNow;
  Tile(1).stall.stalledTicks = 2;
  LoseTheFunction();
  WedgedPass();
  EXPECT_THAT(Tile(1).stall.restartTicksMs, testing::ElementsAre(fakeNow));
  for (const char* function :
       {"libvlc_media_player_stop", "libvlc_media_player_set_media", "libvlc_media_player_play"}) {
    EXPECT_EQ(vlc_.CountOf(function), 0) << function;
  }
}
INSTANTIATE_TEST_SUITE_P(Table, RestartWithout,
                         Values(Missing{"libvlc_media_player_stop", nullptr},
                                Missing{"libvlc_media_player_set_media", nullptr},
                                Missing{"libvlc_media_player_play", nullptr}),
                         FunctionName);

class RestartInPlaceWithout : public MissingFunctionTest {};
TEST_P(RestartInPlaceWithout, PlaysTheOriginalTileFromItsBeginning) {
  StartGrid(2);
  Watchable(TilePlayer(0));
  vlc_.SetTime(TilePlayer(0), 42000);
  HealthyPass();
  Tile(0).stall.lastNudgeTickMs = fakeNow;
  Tile(0).stall.stalledTicks = 2;
  LoseTheFunction();
  WedgedPass();
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 1);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_time"), 0);
}
INSTANTIATE_TEST_SUITE_P(Table, RestartInPlaceWithout,
                         Values(Missing{"libvlc_media_player_get_time", nullptr},
                                Missing{"libvlc_media_player_set_time", nullptr}),
                         FunctionName);

class VideoWatchWithout : public MissingFunctionTest {};
TEST_P(VideoWatchWithout, NeverCountsAWedge) {
  StartSingle();
  LoseTheFunction();
  WedgedPasses(10);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_pause"), 0);
  EXPECT_EQ(state_.primaryStall_.stalledTicks, 0);
}
INSTANTIATE_TEST_SUITE_P(Table, VideoWatchWithout,
                         Values(Missing{"libvlc_video_get_width", nullptr},
                                Missing{"libvlc_video_get_height", nullptr}),
                         FunctionName);

class AudioWatchWithout : public MissingFunctionTest {};
TEST_P(AudioWatchWithout, CountsNoSilentPicture) {
  StartSingle();
  LoseTheFunction();
  for (int pass = 1; pass <= 5; ++pass) {
    SetCounters(static_cast<uint64_t>(25 * pass), 0);
    Pass();
  }
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_pause"), 0);
  EXPECT_EQ(state_.primaryStall_.stalledTicks, 0);
}
INSTANTIATE_TEST_SUITE_P(Table, AudioWatchWithout,
                         Values(Missing{"libvlc_audio_get_track_description", nullptr},
                                Missing{"libvlc_track_description_list_release", nullptr}),
                         FunctionName);

class SetMediaWithout : public MissingFunctionTest {};
TEST_P(SetMediaWithout, ChangesNothing) {
  StartSingle();
  LoseTheFunction();
  EXPECT_FALSE(SetMedia("http://host/new"));
  ExpectNoCallAndTheLine();
  EXPECT_EQ(state_.current_.url, "http://host/0");
  EXPECT_TRUE(state_.stallWatchdogActive_);
}
#define LINE "ERROR Failed to get one or more VLC function pointers for SetMedia "
INSTANTIATE_TEST_SUITE_P(Table, SetMediaWithout,
                         Values(Missing{"libvlc_media_add_option", LINE "(set_media=1, add_option=0)"},
                                Missing{"libvlc_media_player_set_media", LINE "(set_media=0, add_option=1)"}),
                         FunctionName);
#undef LINE

class RepairWithout : public MissingFunctionTest {};
TEST_P(RepairWithout, LeavesASilentPlayerAlone) {
  StartSingle();
  vlc_.SetVolume(vlc_.Player(), 0);
  LoseTheFunction();
  player_.Play();
  EXPECT_EQ(vlc_.CountOf("libvlc_audio_set_mute"), 0);
  EXPECT_EQ(vlc_.CountOf("libvlc_audio_set_volume"), 0);
}
INSTANTIATE_TEST_SUITE_P(Table, RepairWithout,
                         Values(Missing{"libvlc_audio_set_mute", nullptr}, Missing{"libvlc_audio_set_volume", nullptr}),
                         FunctionName);

}  // namespace
}  // namespace vantro::test
