// The start and the changes of a session of several streams.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/support/import_hook.h"
#include "tests/unit/player/grid_fixture.h"
#include "tests/unit/player/window_calls.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

static_assert(!std::is_copy_constructible_v<MultiViewPlayer> && !std::is_copy_assignable_v<MultiViewPlayer>);

class MultiViewTest : public GridTest {
 protected:
  // A layout sets the window handle of every tile.
  void ExpectLayoutBeforeAudio() {
    std::vector<std::string> steps;
    for (const std::string& call : vlc_.Calls()) {
      if (call.find("set_hwnd(") != std::string::npos) steps.push_back("layout");
      if (call.find("set_mute(") != std::string::npos) steps.push_back("audio");
    }
    steps.erase(std::unique(steps.begin(), steps.end()), steps.end());
    EXPECT_THAT(steps, ElementsAre("layout", "audio"));
  }
};

TEST(MultiViewPlayerTest, MovingOntoARecordReleasesItsPlayer) {
  ScriptedVlc vlc;
  const VlcInstancePtr instance(libvlc_new(0, nullptr));
  MultiViewPlayer first;
  first.mediaPlayer.reset(libvlc_media_player_new(instance.get()));
  MultiViewPlayer second;
  second.mediaPlayer.reset(libvlc_media_player_new(instance.get()));
  second.name = "second";
  first = std::move(second);
  EXPECT_THAT(vlc.CallsOf("libvlc_media_player_release"), ElementsAre("libvlc_media_player_release(player1)"));
  EXPECT_EQ(first.mediaPlayer.get(), vlc.Player(2));
  EXPECT_FALSE(second.mediaPlayer);
  EXPECT_EQ(first.name, "second");
}

TEST(MultiViewPlayerTest, ARecordThatDiesReleasesItsPlayerAndKeepsItsWindow) {
  ScriptedVlc vlc;
  const ParentWindow window(100, 100);
  const VlcInstancePtr instance(libvlc_new(0, nullptr));
  {
    MultiViewPlayer record;
    record.window = window.get();
    record.mediaPlayer.reset(libvlc_media_player_new(instance.get()));
  }
  EXPECT_EQ(vlc.LivePlayers(), 0);
  EXPECT_TRUE(IsWindow(window.get()));
}

// Entering.

TEST_F(MultiViewTest, TheSingleViewBecomesTheFirstTileWithoutTouchingItsStream) {
  StartWithEvents();
  ASSERT_TRUE(SetMedia("http://host/0"));
  vlc_.ClearCalls();
  EXPECT_TRUE(player_.EnableMultiView());
  EXPECT_TRUE(state_.isMultiViewMode_);
  EXPECT_FALSE(state_.mediaPlayer_);
  ASSERT_EQ(state_.players_.size(), 1u);
  EXPECT_EQ(TilePlayer(0), vlc_.Player(1));
  EXPECT_EQ(Tile(0).window, state_.vlcWindow_);
  EXPECT_EQ(Tile(0).name, "Title");
  EXPECT_EQ(Tile(0).url, "http://host/0");
  EXPECT_TRUE(Tile(0).isOriginal);
  EXPECT_EQ(state_.activeIndex_, 0);
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_audio_set_mute(player1, 0)", "libvlc_audio_set_volume(player1, 100)"));
  EXPECT_TRUE(log_.Has("DEBUG [EnableMultiView] *** CALLED *** isMultiViewMode=0, existing players=0"));
  EXPECT_TRUE(log_.Has("DEBUG [EnableMultiView] Enabling multiview - clearing 0 existing players"));
  EXPECT_TRUE(log_.Has("DEBUG [EnableMultiView] Adding existing resizable player to multiview"));
}

// Looks at the player at each allocation, also at those inside the publication of the tiles.
class PlayerWatch {
 public:
  explicit PlayerWatch(PlayerInspector& state) : state_(state) {
    original = hook_.Original<decltype(original)>();
    current = this;
  }
  ~PlayerWatch() { current = nullptr; }
  PlayerWatch(const PlayerWatch&) = delete;
  PlayerWatch& operator=(const PlayerWatch&) = delete;

  int looks = 0;
  bool lostThePlayer = false;  // neither the single view nor the tiles had it

 private:
  static void* Allocate(size_t size) {
    if (current) {
      ++current->looks;
      if (!current->state_.mediaPlayer_ && !current->state_.HasTiles()) current->lostThePlayer = true;
    }
    return original(size);
  }
  static inline PlayerWatch* current = nullptr;
  static inline void* (*original)(size_t) = nullptr;
  PlayerInspector& state_;
  ImportHook hook_{"msvcrt.dll", "malloc", &Allocate};
};

TEST_F(MultiViewTest, EnteringNeverLeavesAnEventWithoutThePlayer) {
  StartWithEvents();
  ASSERT_TRUE(SetMedia("http://host/0"));
  const PlayerWatch watch(state_);
  ASSERT_TRUE(player_.EnableMultiView());
  EXPECT_GT(watch.looks, 0);
  EXPECT_FALSE(watch.lostThePlayer);
}

TEST_F(MultiViewTest, EnteringTwiceChangesNothingTheSecondTime) {
  StartGrid(2);
  player_.SetActiveIndexSafe(1);
  EXPECT_TRUE(player_.EnableMultiView());
  EXPECT_THAT(Urls(), ElementsAre("http://host/0", "http://host/1"));
  EXPECT_EQ(state_.activeIndex_, 1);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_TRUE(log_.Has("WARNING [EnableMultiView] Already in multiview mode - ignoring duplicate call"));
}

TEST_F(MultiViewTest, EnteringWithoutAPlayerStillMakesTheFirstRecord) {
  EXPECT_TRUE(player_.EnableMultiView());
  ASSERT_EQ(state_.players_.size(), 1u);
  EXPECT_FALSE(Tile(0).mediaPlayer);
  EXPECT_TRUE(Tile(0).isOriginal);
}

TEST_F(MultiViewTest, EnteringNeitherStopsNorStartsTheWatchdog) {
  StartWithEvents();
  player_.EnableMultiView();
  EXPECT_FALSE(state_.stallWatchdogActive_);
  player_.DisableMultiView();
  player_.StartStallWatchdog();
  player_.EnableMultiView();
  EXPECT_TRUE(state_.stallWatchdogActive_);
}

// Adding.

TEST_F(MultiViewTest, AnAddedStreamPlaysSilentlyInItsOwnWindow) {
  StartGrid(1);
  ASSERT_TRUE(Add(1));
  const std::string window = PointerText(Tile(1).window);
  std::vector<std::string> calls = vlc_.Calls();
  calls.resize(9);
  EXPECT_THAT(calls,
              ElementsAre("libvlc_media_player_new(instance1)", "libvlc_media_player_set_hwnd(player2, " + window + ")",
                          "libvlc_media_new_uri(\"http://host/1\")", "libvlc_media_player_set_media(player2, media2)",
                          "libvlc_media_release(media2)", "libvlc_audio_set_volume(player2, 0)",
                          "libvlc_media_player_play(player2)", "libvlc_media_player_event_manager(player2)",
                          "libvlc_event_attach(player2, MediaPlayerPlaying)"));
  EXPECT_EQ(Tile(1).name, "Tile 1");
  EXPECT_FALSE(Tile(1).isOriginal);
  EXPECT_EQ(state_.activeIndex_, 0);
  EXPECT_EQ(vlc_.Mute(TilePlayer(1)), 1);
  EXPECT_EQ(vlc_.Volume(TilePlayer(1)), 0);
}

TEST_F(MultiViewTest, AnAddedTilesEventsGoToThisPlayer) {
  StartGrid(2);
  const std::vector<ScriptedAttachment> attached = vlc_.Attached(TilePlayer(1));
  ASSERT_EQ(attached.size(), 2u);
  EXPECT_EQ(attached[0].type, 260);
  EXPECT_EQ(attached[1].type, 256);
  for (const ScriptedAttachment& attachment : attached) {
    EXPECT_EQ(attachment.userData, &player_);
    EXPECT_EQ(attachment.callback, reinterpret_cast<void*>(&VLCPlayer::VlcEventCallback));
  }
}

TEST_F(MultiViewTest, AnAddedTilesWindowIsAChildOfTheParent) {
  StartGrid(2);
  const HWND window = Tile(1).window;
  char className[64] = "";
  GetClassNameA(window, className, sizeof className);
  char title[64] = "";
  GetWindowTextA(window, title, sizeof title);
  EXPECT_STREQ(className, "VantroVlcHostWindow");
  EXPECT_STREQ(title, "VLC Player Window");
  EXPECT_EQ(GetParent(window), parent_.get());
  EXPECT_EQ(GetWindowLongPtrA(window, GWL_STYLE) & 0x56000000, 0x56000000);
  EXPECT_EQ(GetWindowLongPtrA(window, GWL_EXSTYLE) & WS_EX_NOPARENTNOTIFY, WS_EX_NOPARENTNOTIFY);
}

TEST_F(MultiViewTest, AnAddedTilesWindowIsMadeAt100And100With100By100Pixels) {
  StartGrid(1);
  const WindowCalls calls;
  ASSERT_TRUE(Add(1));
  ASSERT_FALSE(calls.Lines().empty());
  EXPECT_EQ(calls.Lines().front(),
            "CreateWindowExW window 100,100 100x100 "
            "WS_CHILD|WS_VISIBLE|WS_CLIPSIBLINGS|WS_CLIPCHILDREN WS_EX_NOPARENTNOTIFY of this program");
}

TEST_F(MultiViewTest, AnAddIsLogged) {
  StartGrid(1);
  ASSERT_TRUE(Add(1));
  EXPECT_TRUE(log_.Has(
      "DEBUG [MvAddStream] *** CALLED *** url=http://host/1, name=Tile 1, isMultiViewMode=1, current player count=1"));
  EXPECT_TRUE(log_.Has("DEBUG [MvAddStream] Created window: " + PointerText(Tile(1).window)));
  EXPECT_TRUE(log_.Has("DEBUG [MvAddStream] Created VLC player: " + PointerText(TilePlayer(1))));
  EXPECT_TRUE(log_.Has("DEBUG [AttachEventsToPlayer] Attached events to player " + PointerText(TilePlayer(1))));
  EXPECT_TRUE(log_.Has("DEBUG [MvAddStream] Attached events to new player"));
  EXPECT_TRUE(log_.Has("DEBUG [MvAddStream] Added player, total count now: 2"));
  EXPECT_EQ(log_.Lines().back(), "INFO [MvAddStream] *** SUCCESS *** Final player count: 2");
}

TEST_F(MultiViewTest, AnAddLaysOutThenSetsTheAudioThenRescales) {
  StartGrid(1);
  ASSERT_TRUE(Add(1));
  const std::vector<std::string> lines = log_.Lines();
  const auto at = [&](const std::string& fragment) {
    return std::find_if(lines.rbegin(), lines.rend(),
                        [&](const std::string& line) { return line.find(fragment) != std::string::npos; })
        .base();
  };
  EXPECT_LT(at("[UpdateGridLayout] Parent size"), at("[UpdateActiveAudio] *** CALLED ***"));
  EXPECT_LT(at("[UpdateActiveAudio] *** CALLED ***"), at("[UpdateMultiViewScaling] ***"));
}

TEST_F(MultiViewTest, AnAddOutsideTheGridLeavesItsWindowUnplacedAndSilent) {
  StartWithEvents();
  ASSERT_TRUE(Add(1));
  ASSERT_EQ(state_.players_.size(), 1u);
  const HWND window = Tile(0).window;
  const RECT place = PlaceInParent(window);
  EXPECT_EQ(place.left, 100);
  EXPECT_EQ(place.top, 100);
  EXPECT_EQ(place.right - place.left, 100);
  EXPECT_EQ(place.bottom - place.top, 100);
  EXPECT_EQ(vlc_.Volume(TilePlayer(0)), 0);
  player_.EnableMultiView();
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_release"), ElementsAre("libvlc_media_player_release(player2)"));
  EXPECT_TRUE(IsWindow(window));
  EXPECT_EQ(state_.players_.size(), 1u);
}

TEST_F(MultiViewTest, AFifthTileAndLaterOnesAreAccepted) {
  StartGrid(7);
  EXPECT_EQ(state_.players_.size(), 7u);
}

TEST_F(MultiViewTest, AnAddWithoutAUrlIsRefused) {
  StartGrid(1);
  EXPECT_FALSE(player_.MvAddStream("", "Name"));
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_TRUE(log_.Has("ERROR [VLCPlayer::MvAddStream] ERROR: URL is empty."));
}

TEST_F(MultiViewTest, AnAddWithoutAWindowIsRefused) {
  StartGrid(1);
  state_.parentWindow_ = nullptr;
  EXPECT_FALSE(Add(1));
  EXPECT_TRUE(log_.Has("ERROR [MvAddStream] FAILED to create player window"));
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  state_.parentWindow_ = parent_.get();
}

TEST_F(MultiViewTest, AnAddWhosePlayerCannotBeMadeLeavesNoWindow) {
  StartGrid(1);
  vlc_.Fail("libvlc_media_player_new");
  EXPECT_FALSE(Add(1));
  EXPECT_TRUE(log_.Has("ERROR [MvAddStream] FAILED to create VLC media player"));
  EXPECT_EQ(state_.players_.size(), 1u);
  EXPECT_EQ(parent_.ChildCount(), 1);
}

TEST_F(MultiViewTest, AnAddWhoseMediaCannotBeMadeIsNoFailure) {
  StartGrid(1);
  vlc_.SetResult("libvlc_media_new_uri", 0);
  vlc_.SetResult("libvlc_media_new_location", 0);
  EXPECT_TRUE(Add(1));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_media"), 0);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 1);
  EXPECT_EQ(Tile(1).url, "http://host/1");
}

TEST_F(MultiViewTest, AnAddDoesNotNeedTheVolumeFunction) {
  StartGrid(1);
  LibVlcFunctionTable().libvlc_audio_set_volume = nullptr;
  EXPECT_TRUE(Add(1));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 1);
}

TEST_F(MultiViewTest, AttachingNeedsAPlayerAndTheFunctions) {
  StartGrid(1);
  state_.AttachEventsToPlayer(nullptr);
  vlc_.SetResult("libvlc_media_player_event_manager", 0);
  state_.AttachEventsToPlayer(TilePlayer(0));
  LibVlcFunctionTable().libvlc_event_attach = nullptr;
  state_.AttachEventsToPlayer(TilePlayer(0));
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_player_event_manager(player1)"));
}

// Replacing.

TEST_F(MultiViewTest, AReplacedStreamKeepsItsTile) {
  StartGrid(2);
  player_.SetActiveIndexSafe(1);
  const HWND window = Tile(1).window;
  Tile(1).stall.lastAudio = 7;
  vlc_.ClearCalls();
  EXPECT_TRUE(player_.MvReplaceActive("http://host/new", "New"));
  EXPECT_THAT(vlc_.Calls(),
              ElementsAre("libvlc_media_player_stop(player2)", "libvlc_media_new_uri(\"http://host/new\")",
                          "libvlc_media_player_set_media(player2, media3)", "libvlc_media_release(media3)",
                          "libvlc_media_player_play(player2)", "libvlc_audio_set_mute(player1, 1)",
                          "libvlc_audio_set_volume(player1, 0)", "libvlc_audio_set_mute(player2, 0)",
                          "libvlc_audio_set_volume(player2, 100)"));
  EXPECT_EQ(Tile(1).window, window);
  EXPECT_EQ(Tile(1).url, "http://host/new");
  EXPECT_EQ(Tile(1).name, "New");
  EXPECT_FALSE(Tile(1).isOriginal);
  EXPECT_EQ(Tile(1).stall.lastAudio, 7);
}

TEST_F(MultiViewTest, AReplaceWithoutAMediaStillTakesNameAndUrl) {
  StartGrid(1);
  vlc_.SetResult("libvlc_media_new_uri", 0);
  vlc_.SetResult("libvlc_media_new_location", 0);
  EXPECT_TRUE(player_.MvReplaceActive("http://host/new", "New"));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_media"), 0);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 1);
  EXPECT_EQ(Tile(0).url, "http://host/new");
}

TEST_F(MultiViewTest, AReplaceIsRefusedWithoutUrlGridOrValidIndex) {
  StartWithEvents();
  EXPECT_FALSE(player_.MvReplaceActive("", "New"));
  EXPECT_TRUE(log_.Has("ERROR [VLCPlayer::MvReplaceActive] ERROR: URL is empty."));
  const size_t lines = log_.Lines().size();
  EXPECT_FALSE(player_.MvReplaceActive("http://host/new", "New"));
  EXPECT_EQ(log_.Lines().size(), lines);
  player_.EnableMultiView();
  state_.activeIndex_ = 1;
  EXPECT_FALSE(player_.MvReplaceActive("http://host/new", "New"));
  state_.activeIndex_ = -1;
  EXPECT_FALSE(player_.MvReplaceActive("http://host/new", "New"));
}

// Removing.

TEST_F(MultiViewTest, ARemovedTileIsStoppedItsWindowDestroyedAndItsPlayerReleased) {
  StartGrid(3);
  player_.SetActiveIndexSafe(2);
  const HWND window = Tile(2).window;
  vlc_.ClearCalls();
  EXPECT_TRUE(player_.MvRemoveActive());
  std::vector<std::string> calls = vlc_.Calls();
  calls.resize(2);
  EXPECT_THAT(calls, ElementsAre("libvlc_media_player_stop(player3)", "libvlc_media_player_release(player3)"));
  EXPECT_FALSE(IsWindow(window));
  EXPECT_THAT(Urls(), ElementsAre("http://host/0", "http://host/1"));
  EXPECT_EQ(state_.activeIndex_, 1);
  EXPECT_TRUE(log_.Has("DEBUG [MvRemoveActive] *** CALLED *** isMultiViewMode=1, player count=3, activeIndex=2"));
  EXPECT_TRUE(log_.Has("DEBUG [MvRemoveActive] Need to adjust active index from 2 to 1"));
}

TEST_F(MultiViewTest, RemovingTheSecondTileMakesTheFirstActiveAndClosesTheGap) {
  StartGrid(3);
  player_.SetActiveIndexSafe(1);
  EXPECT_TRUE(player_.MvRemoveActive());
  EXPECT_EQ(state_.activeIndex_, 0);
  EXPECT_THAT(Urls(), ElementsAre("http://host/0", "http://host/2"));
  EXPECT_EQ(vlc_.Mute(TilePlayer(0)), 0);
  EXPECT_EQ(vlc_.Mute(TilePlayer(1)), 1);
}

TEST_F(MultiViewTest, ARemovedTileIsStoppedBeforeItsWindowGoes) {
  StartGrid(2);
  player_.SetActiveIndexSafe(1);
  const HWND window = Tile(1).window;
  bool isThere = false;
  vlc_.OnCall("libvlc_media_player_stop", [&] { isThere = IsWindow(window) != FALSE; });
  EXPECT_TRUE(player_.MvRemoveActive());
  vlc_.OnCall("libvlc_media_player_stop", nullptr);
  EXPECT_TRUE(isThere);
}

TEST_F(MultiViewTest, WithoutTheStopFunctionARemovedTileStillGoes) {
  StartGrid(2);
  player_.SetActiveIndexSafe(1);
  LibVlcFunctionTable().libvlc_media_player_stop = nullptr;
  EXPECT_TRUE(player_.MvRemoveActive());
  EXPECT_EQ(parent_.ChildCount(), 1);
  EXPECT_EQ(vlc_.LivePlayers(), 1);
}

TEST_F(MultiViewTest, ARemovalLaysOutBeforeItSetsTheAudio) {
  StartGrid(3);
  player_.SetActiveIndexSafe(1);
  vlc_.ClearCalls();
  ASSERT_TRUE(player_.MvRemoveActive());
  ExpectLayoutBeforeAudio();
}

TEST_F(MultiViewTest, TheFirstTileCannotBeRemoved) {
  StartGrid(2);
  EXPECT_FALSE(player_.MvRemoveActive());
  EXPECT_EQ(state_.players_.size(), 2u);
  EXPECT_TRUE(log_.Has("WARNING [MvRemoveActive] Cannot remove - conditions not met"));
}

TEST_F(MultiViewTest, ARemovalNeedsTheGridTwoTilesAndAValidIndex) {
  StartWithEvents();
  EXPECT_FALSE(player_.MvRemoveActive());
  player_.EnableMultiView();
  state_.activeIndex_ = 1;
  EXPECT_FALSE(player_.MvRemoveActive());
  EXPECT_EQ(log_.Count("WARNING [MvRemoveActive] Cannot remove - conditions not met"), 2);
  ASSERT_TRUE(Add(1));
  state_.activeIndex_ = 5;
  EXPECT_FALSE(player_.MvRemoveActive());
  EXPECT_EQ(log_.Count("WARNING [MvRemoveActive] Cannot remove - conditions not met"), 2);
  EXPECT_EQ(state_.players_.size(), 2u);
}

TEST_F(MultiViewTest, RemovingASwappedOriginalTileReleasesItsPlayerAndKeepsItsWindow) {
  StartGrid(2);
  ASSERT_TRUE(player_.MvSwapTiles(0, 1));
  ASSERT_EQ(state_.activeIndex_, 1);
  vlc_.ClearCalls();
  EXPECT_TRUE(player_.MvRemoveActive());
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_stop"), 0);
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_release"), ElementsAre("libvlc_media_player_release(player1)"));
  EXPECT_TRUE(IsWindow(state_.vlcWindow_));
}

// Swapping.

TEST_F(MultiViewTest, ASwapExchangesTheRecordsWhole) {
  StartGrid(2);
  const HWND second = Tile(1).window;
  Tile(1).stall.lastAudio = 7;
  EXPECT_TRUE(player_.MvSwapTiles(0, 1));
  EXPECT_THAT(Urls(), ElementsAre("http://host/1", "http://host/0"));
  EXPECT_EQ(TilePlayer(0), vlc_.Player(2));
  EXPECT_EQ(Tile(0).window, second);
  EXPECT_EQ(Tile(0).stall.lastAudio, 7);
  EXPECT_FALSE(Tile(0).isOriginal);
  EXPECT_TRUE(Tile(1).isOriginal);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_release"), 0);
}

struct SwapRow {
  int active;
  int from;
  int to;
  int activeAfter;
};

class SwapTest : public MultiViewTest, public testing::WithParamInterface<SwapRow> {};

TEST_P(SwapTest, TheActiveIndexFollowsItsTile) {
  const SwapRow& row = GetParam();
  StartGrid(3);
  player_.SetActiveIndexSafe(row.active);
  const std::string url = Tile(row.active).url;
  EXPECT_TRUE(player_.MvSwapTiles(row.from, row.to));
  EXPECT_EQ(state_.activeIndex_, row.activeAfter);
  EXPECT_EQ(Tile(state_.activeIndex_).url, url);
  EXPECT_EQ(vlc_.Mute(TilePlayer(row.activeAfter)), 0);
  EXPECT_TRUE(log_.Has("DEBUG [MvSwapTiles] Swapped " + std::to_string(row.from) + " <-> " + std::to_string(row.to) +
                       ", activeIndex needs to change from " + std::to_string(row.active) + " to " +
                       std::to_string(row.activeAfter)));
}

INSTANTIATE_TEST_SUITE_P(Rows, SwapTest,
                         testing::Values(SwapRow{0, 0, 2, 2}, SwapRow{2, 0, 2, 0}, SwapRow{1, 0, 2, 1}));

TEST_F(MultiViewTest, ASwapOutsideTheGridIsRefused) {
  StartWithEvents();
  EXPECT_FALSE(player_.MvSwapTiles(0, 1));
}

TEST_F(MultiViewTest, ASwapLaysOutBeforeItSetsTheAudio) {
  StartGrid(2);
  ASSERT_TRUE(player_.MvSwapTiles(0, 1));
  ExpectLayoutBeforeAudio();
}

TEST_F(MultiViewTest, ASwapOfWrongIndicesChangesNothing) {
  StartGrid(2);
  const size_t lines = log_.Lines().size();
  for (const auto& [from, to] : std::vector<std::pair<int, int>>{{-1, 0}, {0, -1}, {0, 2}, {2, 0}, {1, 1}})
    EXPECT_FALSE(player_.MvSwapTiles(from, to));
  EXPECT_EQ(log_.Lines().size(), lines);
  EXPECT_THAT(Urls(), ElementsAre("http://host/0", "http://host/1"));
}

// The active index.

TEST_F(MultiViewTest, AnActiveIndexOutOfRangeIsLoggedAndKept) {
  StartGrid(2);
  for (const int index : {-1, 2}) {
    player_.SetActiveIndexSafe(index);
    EXPECT_TRUE(log_.Has("ERROR [SetActiveIndexSafe] ERROR: Invalid index " + std::to_string(index) +
                         " (valid range: 0-1), keeping current 0 - CURRENT PLAYER COUNT: 2"));
  }
  EXPECT_EQ(log_.Count("DEBUG [SetActiveIndexSafe] Player 1: window=" + PointerText(Tile(1).window) +
                       " player=" + PointerText(TilePlayer(1)) + " name=Tile 1"),
            2);
  EXPECT_EQ(log_.CountContaining("DEBUG [SetActiveIndexSafe] Player 0: "), 2);
  EXPECT_EQ(log_.CountContaining("DEBUG [SetActiveIndexSafe] Player "), 4);
  EXPECT_EQ(state_.activeIndex_, 0);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(MultiViewTest, TheSameActiveIndexIsNoChange) {
  StartGrid(2);
  player_.SetActiveIndexSafe(0);
  EXPECT_TRUE(log_.Has("DEBUG [SetActiveIndexSafe] activeIndex already 0 (no change)"));
}

TEST_F(MultiViewTest, ANewActiveIndexIsStoredWithoutTouchingTheAudio) {
  StartGrid(2);
  player_.SetActiveIndexSafe(1);
  EXPECT_EQ(state_.activeIndex_, 1);
  EXPECT_TRUE(log_.Has("DEBUG [SetActiveIndexSafe] Changing activeIndex from 0 to 1"));
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(MultiViewTest, OutsideTheGridTheActiveIndexStays) {
  StartWithEvents();
  player_.SetActiveIndexSafe(1);
  EXPECT_EQ(state_.activeIndex_, 0);
  EXPECT_TRUE(log_.Has("WARNING [SetActiveIndexSafe] Ignoring - not in multiview mode"));
}

}  // namespace
}  // namespace vantro::test
