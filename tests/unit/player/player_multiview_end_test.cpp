// The end of a session of several streams: by leaving, by a promotion, and with the player.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "common/log.h"
#include "tests/unit/player/grid_fixture.h"
#include "tests/unit/player/window_calls.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

using MultiViewEndTest = GridTest;

// Leaving.

TEST_F(MultiViewEndTest, LeavingKeepsTheOriginalStreamAndEndsAllOthers) {
  StartGrid(3);
  const HWND second = Tile(1).window;
  const HWND third = Tile(2).window;
  vlc_.SetVolume(TilePlayer(0), 30);
  player_.SetVolume(40);
  player_.SetActiveIndexSafe(2);
  EXPECT_TRUE(player_.DisableMultiView());
  EXPECT_FALSE(state_.isMultiViewMode_);
  EXPECT_EQ(state_.activeIndex_, 0);
  EXPECT_TRUE(state_.players_.empty());
  EXPECT_EQ(state_.mediaPlayer_.get(), vlc_.Player(1));
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_stop"),
              ElementsAre("libvlc_media_player_stop(player2)", "libvlc_media_player_stop(player3)"));
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_release"),
              ElementsAre("libvlc_media_player_release(player2)", "libvlc_media_player_release(player3)"));
  EXPECT_FALSE(IsWindow(second));
  EXPECT_FALSE(IsWindow(third));
  EXPECT_EQ(vlc_.Volume(vlc_.Player(1)), 100);
  EXPECT_EQ(state_.volume_, 100);
}

TEST_F(MultiViewEndTest, LeavingGivesTheOriginalWindowTheWholeClientArea) {
  StartGrid(2);
  ASSERT_NE(PlaceInParent(state_.vlcWindow_).right, 800);
  vlc_.SetSize(TilePlayer(0), 400, 400);
  vlc_.ClearCalls();
  player_.DisableMultiView();
  const RECT place = PlaceInParent(state_.vlcWindow_);
  EXPECT_EQ(place.left, 0);
  EXPECT_EQ(place.top, 0);
  EXPECT_EQ(place.right, 800);
  EXPECT_EQ(place.bottom, 600);
  EXPECT_THAT(vlc_.CallsOf("libvlc_video_set_scale"), ElementsAre("libvlc_video_set_scale(player1, 1.5)"));
  EXPECT_TRUE(
      log_.Has("DEBUG [DisableMultiView] Keeping original player in child window: " + PointerText(state_.vlcWindow_)));
  EXPECT_TRUE(log_.Has("DEBUG [DisableMultiView] Reset VLC scale to 1.500000 for full window 800x600 (video 400x400)"));
}

TEST_F(MultiViewEndTest, LeavingRepaintsTheOriginalWindow) {
  StartGrid(2);
  const WindowCalls calls({{state_.vlcWindow_, "video"}});
  player_.DisableMultiView();
  EXPECT_THAT(calls.Lines(), ElementsAre("MoveWindow video 0,0 800x600 repaint"));
}

TEST_F(MultiViewEndTest, LeavingWithoutAVideoSizeSetsTheScaleToAutomatic) {
  StartGrid(2);
  player_.DisableMultiView();
  EXPECT_THAT(vlc_.CallsOf("libvlc_video_set_scale"), ElementsAre("libvlc_video_set_scale(player1, 0)"));
  EXPECT_TRUE(log_.Has("DEBUG [DisableMultiView] Reset VLC scale to auto (0.0)"));
}

TEST_F(MultiViewEndTest, LeavingMovesTheOriginalWindowAlsoWhereItIsTheParent) {
  StartWithEvents();
  DestroyWindow(state_.vlcWindow_);
  state_.vlcWindow_ = parent_.get();
  player_.EnableMultiView();
  SetWindowPos(parent_.get(), nullptr, 50, 60, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  player_.DisableMultiView();
  RECT place{};
  GetWindowRect(parent_.get(), &place);
  EXPECT_EQ(place.left, 0);
  EXPECT_EQ(place.top, 0);
}

TEST_F(MultiViewEndTest, LeavingOutsideTheGridChangesNothing) {
  StartWithEvents();
  player_.SetVolume(40);
  vlc_.ClearCalls();
  EXPECT_TRUE(player_.DisableMultiView());
  EXPECT_EQ(state_.volume_, 40);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_TRUE(log_.Has("DEBUG [DisableMultiView] *** CALLED *** isMultiViewMode_=0, player count=0"));
  EXPECT_TRUE(log_.Has("WARNING [DisableMultiView] Already disabled, returning"));
}

TEST_F(MultiViewEndTest, LeavingAfterASwapMovedTheOriginalTileLeavesNoPlayer) {
  StartGrid(2);
  ASSERT_TRUE(player_.MvSwapTiles(0, 1));
  const HWND first = Tile(0).window;
  const RECT before = PlaceInParent(state_.vlcWindow_);
  vlc_.ClearCalls();
  EXPECT_TRUE(player_.DisableMultiView());
  EXPECT_FALSE(state_.mediaPlayer_);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_stop"), 0);
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_release"),
              ElementsAre("libvlc_media_player_release(player2)", "libvlc_media_player_release(player1)"));
  EXPECT_TRUE(IsWindow(first));
  EXPECT_TRUE(IsWindow(state_.vlcWindow_));
  const RECT after = PlaceInParent(state_.vlcWindow_);
  EXPECT_TRUE(EqualRect(&before, &after));
  EXPECT_FALSE(SetMedia("http://host/next"));
  EXPECT_TRUE(log_.Has("ERROR [VLCPlayer::SetMedia] ERROR: Missing mediaPlayer or vlcInstance"));
}

TEST_F(MultiViewEndTest, LeavingReleasesAPlayerThatWasSetDuringTheGrid) {
  StartGrid(1);
  libvlc_media_player_t* const original = TilePlayer(0);
  libvlc_media_player_t* const set = GetLibVlcFunctions().libvlc_media_player_new(state_.vlcInstance_.get());
  state_.mediaPlayer_.reset(set);
  state_.NudgePlayer(set);
  bool toldBefore = false;
  vlc_.OnCall("libvlc_media_player_release",
              [&] { toldBefore = log_.CountContaining("Keeping original player in child window") == 1; });
  ASSERT_TRUE(player_.DisableMultiView());
  vlc_.OnCall("libvlc_media_player_release", nullptr);
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_release"), ElementsAre("libvlc_media_player_release(player2)"));
  EXPECT_TRUE(toldBefore);
  EXPECT_THAT(state_.nudgeTimers_, IsEmpty());
  EXPECT_EQ(state_.mediaPlayer_.get(), original);
}

TEST_F(MultiViewEndTest, WhileTheGridIsOnTransportFindsNoPlayer) {
  StartGrid(2);
  player_.Play();
  player_.Pause();
  player_.SetVolume(30);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_EQ(state_.volume_, 30);
}

// Promoting.

TEST_F(MultiViewEndTest, APromotedUrlIsOpenedAgainOnTheOriginalPlayer) {
  StartGrid(2);
  player_.SetActiveIndexSafe(1);
  vlc_.ClearCalls();
  EXPECT_TRUE(player_.MvPromoteActiveAndExit());
  std::vector<std::string> calls = vlc_.Calls();
  calls.resize(6);
  EXPECT_THAT(calls, ElementsAre("libvlc_media_player_stop(player1)", "libvlc_media_new_uri(\"http://host/1\")",
                                 "libvlc_media_player_set_media(player1, media3)", "libvlc_media_release(media3)",
                                 "libvlc_media_player_play(player1)", "libvlc_media_player_stop(player2)"));
  EXPECT_EQ(state_.mediaPlayer_.get(), vlc_.Player(1));
  EXPECT_EQ(vlc_.LivePlayers(), 1);
  EXPECT_FALSE(state_.isMultiViewMode_);
}

TEST_F(MultiViewEndTest, AfterAPromotionAReloadBringsTheOldStreamBack) {
  StartGrid(2);
  player_.SetActiveIndexSafe(1);
  player_.MvPromoteActiveAndExit();
  EXPECT_EQ(state_.current_.url, "http://host/0");
  EXPECT_EQ(state_.current_.title, "Title");
  vlc_.ClearCalls();
  player_.RestartMediaPreservingTime();
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_new_uri"), ElementsAre("libvlc_media_new_uri(\"http://host/0\")"));
}

TEST_F(MultiViewEndTest, PromotingTheFirstTileJustLeaves) {
  StartGrid(2);
  EXPECT_TRUE(player_.MvPromoteActiveAndExit());
  EXPECT_FALSE(state_.isMultiViewMode_);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_new_uri"), 0);
}

TEST_F(MultiViewEndTest, PromotingDoesNotNeedThePlayFunction) {
  StartGrid(2);
  player_.SetActiveIndexSafe(1);
  LibVlcFunctionTable().libvlc_media_player_play = nullptr;
  EXPECT_TRUE(player_.MvPromoteActiveAndExit());
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_media"), 1);
  EXPECT_FALSE(state_.isMultiViewMode_);
}

TEST_F(MultiViewEndTest, PromotingATileWithoutAUrlChangesNothing) {
  StartGrid(2);
  player_.SetActiveIndexSafe(1);
  Tile(1).url.clear();
  EXPECT_FALSE(player_.MvPromoteActiveAndExit());
  EXPECT_TRUE(log_.Has("ERROR [VLCPlayer::MvPromoteActiveAndExit] ERROR: URL is empty."));
  EXPECT_TRUE(state_.isMultiViewMode_);
}

TEST_F(MultiViewEndTest, PromotingAfterASwapMovedTheOriginalTileLeavesNoPlayer) {
  StartGrid(3);
  ASSERT_TRUE(player_.MvSwapTiles(0, 2));
  player_.SetActiveIndexSafe(1);
  vlc_.ClearCalls();
  EXPECT_TRUE(player_.MvPromoteActiveAndExit());
  EXPECT_EQ(vlc_.CountOf("libvlc_media_new_uri"), 0);
  EXPECT_FALSE(state_.mediaPlayer_);
}

TEST_F(MultiViewEndTest, AnEmptyUrlIsRefusedBeforeTheOriginalTileIsLookedFor) {
  StartGrid(3);
  ASSERT_TRUE(player_.MvSwapTiles(0, 2));
  player_.SetActiveIndexSafe(1);
  Tile(1).url.clear();
  EXPECT_FALSE(player_.MvPromoteActiveAndExit());
  EXPECT_TRUE(log_.Has("ERROR [VLCPlayer::MvPromoteActiveAndExit] ERROR: URL is empty."));
  EXPECT_TRUE(state_.isMultiViewMode_);
}

TEST_F(MultiViewEndTest, PromotingIsRefusedOutsideTheGridAndForAWrongIndex) {
  StartWithEvents();
  EXPECT_FALSE(player_.MvPromoteActiveAndExit());
  player_.EnableMultiView();
  state_.activeIndex_ = 3;
  EXPECT_FALSE(player_.MvPromoteActiveAndExit());
}

TEST_F(MultiViewEndTest, AFirstTileWithoutAPlayerTakesOnlyTheNameAndUrl) {
  StartGrid(2);
  Tile(0).mediaPlayer.reset();
  vlc_.ClearCalls();
  EXPECT_TRUE(player_.MvReplaceActive("http://host/new", "New"));
  EXPECT_EQ(Tile(0).url, "http://host/new");
  player_.SetActiveIndexSafe(1);
  EXPECT_TRUE(player_.MvPromoteActiveAndExit());
  EXPECT_FALSE(state_.mediaPlayer_);
}

// The end.

TEST_F(MultiViewEndTest, FiveHundredRoundsLeaveNoPlayerMediaOrWindowBehind) {
  StartWithEvents();
  ASSERT_TRUE(SetMedia("http://host/0"));
  debugLoggingEnabled = false;  // avoids half a million lines
  for (int round = 0; round < 500; ++round) {
    player_.EnableMultiView();
    ASSERT_TRUE(Add(1));
    ASSERT_TRUE(Add(2));
    ASSERT_TRUE(player_.MvSwapTiles(1, 2));
    player_.SetActiveIndexSafe(1);
    ASSERT_TRUE(player_.MvPromoteActiveAndExit());
    vlc_.ClearCalls();
  }
  EXPECT_EQ(vlc_.LivePlayers(), 1);
  EXPECT_EQ(parent_.ChildCount(), 1);
}

TEST_F(MultiViewEndTest, DisablingFitsTheVideoIntoTheWholeWindow) {
  StartGrid(2);
  vlc_.SetSize(TilePlayer(0), 1600, 300);
  ASSERT_TRUE(player_.DisableMultiView());
  EXPECT_TRUE(
      log_.Has("DEBUG [DisableMultiView] Reset VLC scale to 0.500000 for full window 800x600 (video 1600x300)"));
}

TEST_F(MultiViewEndTest, DisablingWithoutAPlayerSetsNoScale) {
  StartGrid(2);
  state_.players_[0].mediaPlayer.reset();
  ASSERT_TRUE(player_.DisableMultiView());
  EXPECT_EQ(log_.CountContaining("Reset VLC scale"), 0);
}

TEST_F(MultiViewEndTest, TheDestructorReleasesTheTilesThatAreLeftAfterTheInstance) {
  ParentWindow parent(800, 600);
  vlc_.ClearCalls();
  {
    VLCPlayer player;
    ASSERT_TRUE(player.Initialize(parent.get()));
    player.EnableMultiView();
    ASSERT_TRUE(player.MvAddStream("http://host/1", "Tile"));
    EXPECT_EQ(vlc_.LivePlayers(), 2);
  }
  EXPECT_EQ(vlc_.LivePlayers(), 0);
  std::vector<std::string> releases = vlc_.Calls();
  std::erase_if(releases, [](const std::string& call) {
    return !call.starts_with("libvlc_release(") && !call.starts_with("libvlc_media_player_release(");
  });
  EXPECT_THAT(releases, ElementsAre(StartsWith("libvlc_release("), StartsWith("libvlc_media_player_release("),
                                    StartsWith("libvlc_media_player_release(")));
}

// An event that comes during the release must not find the tile.
TEST_F(MultiViewEndTest, TheDestructorEmptiesTheGridBeforeItReleasesTheTiles) {
  ParentWindow parent(800, 600);
  std::vector<size_t> tilesAtRelease;
  {
    VLCPlayer player;
    ASSERT_TRUE(player.Initialize(parent.get()));
    player.EnableMultiView();
    ASSERT_TRUE(player.MvAddStream("http://host/1", "Tile"));
    const PlayerInspector state(player);
    vlc_.OnCall("libvlc_media_player_release", [&] { tilesAtRelease.push_back(state.players_.size()); });
  }
  vlc_.OnCall("libvlc_media_player_release", nullptr);
  EXPECT_THAT(tilesAtRelease, ElementsAre(0u, 0u));
}

}  // namespace
}  // namespace vantro::test
