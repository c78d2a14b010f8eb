// The player in a process without libvlc.dll. This file defines all the functions that the host imports directly, so
// that the program starts without the library. They count the releases; the others are not called.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include "player/vlc_player.h"
#include "tests/support/log_capture.h"
#include "tests/support/player_inspector.h"

namespace {

int releasedInstances = 0;
int releasedPlayers = 0;
int releasedMedia = 0;

}  // namespace

extern "C" {

void libvlc_release(libvlc_instance_t*) { ++releasedInstances; }
void libvlc_media_player_release(libvlc_media_player_t*) { ++releasedPlayers; }
void libvlc_media_release(libvlc_media_t*) { ++releasedMedia; }
bool libvlc_media_get_stats(libvlc_media_t*, libvlc_media_stats_t*) { return false; }

libvlc_instance_t* libvlc_new(int, const char* const*) { return nullptr; }
libvlc_media_player_t* libvlc_media_player_new(libvlc_instance_t*) { return nullptr; }
libvlc_media_t* libvlc_media_new_location(const char*) { return nullptr; }
int libvlc_media_player_play(libvlc_media_player_t*) { return -1; }
void libvlc_media_player_set_media(libvlc_media_player_t*, libvlc_media_t*) {}
int libvlc_media_player_set_time(libvlc_media_player_t*, libvlc_time_t, bool) { return -1; }
int libvlc_media_player_stop_async(libvlc_media_player_t*) { return -1; }
int libvlc_video_take_snapshot(libvlc_media_player_t*, unsigned, const char*, unsigned, unsigned) { return -1; }

}  // extern "C"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

char handles[3];

class PlayerWithoutLibVlc : public testing::Test {
 protected:
  PlayerWithoutLibVlc() { releasedInstances = releasedPlayers = releasedMedia = 0; }

  // Sets handles as if an instance and a player existed, so that the operations go on and load the table.
  void GiveHandles(VLCPlayer& player) {
    PlayerInspector(player).vlcInstance_.reset(reinterpret_cast<libvlc_instance_t*>(&handles[0]));
    PlayerInspector(player).mediaPlayer_.reset(reinterpret_cast<libvlc_media_player_t*>(&handles[1]));
    PlayerInspector(player).media_.reset(reinterpret_cast<libvlc_media_t*>(&handles[2]));
  }
  std::vector<std::string> Failures() {
    std::vector<std::string> lines = log_.Lines();
    std::erase_if(lines, [](const std::string& line) { return !line.starts_with("ERROR "); });
    return lines;
  }

  LogCapture log_;
  VLCPlayer player_;
  PlayerInspector state_{player_};
};

TEST_F(PlayerWithoutLibVlc, TheModuleIsNullAndTheTableNotLoaded) {
  EXPECT_EQ(GetLibVlcModule(), nullptr);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
  EXPECT_FALSE(GetLibVlcFunctions().loaded);
}

TEST_F(PlayerWithoutLibVlc, InitializeFailsAtTheLibraryAndKeepsTheChildWindow) {
  const HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr);
  EXPECT_FALSE(player_.Initialize(parent));
  EXPECT_EQ(log_.Lines().back(), "ERROR Failed to load libvlc.dll, error: 126");
  EXPECT_TRUE(IsWindow(state_.vlcWindow_));
  DestroyWindow(parent);
}

TEST_F(PlayerWithoutLibVlc, CleanupReleasesNothingAndTheHandlesReleaseThemselves) {
  {
    VLCPlayer player;
    GiveHandles(player);
    player.Cleanup();
    EXPECT_THAT(Failures(), ElementsAre("ERROR Failed to load VLC functions for cleanup"));
    EXPECT_NE(PlayerInspector(player).mediaPlayer_.get(), nullptr);
    EXPECT_EQ(releasedPlayers, 0);
  }
  EXPECT_EQ(releasedPlayers, 1);
  EXPECT_EQ(releasedMedia, 1);
  EXPECT_EQ(releasedInstances, 1);
}

TEST_F(PlayerWithoutLibVlc, CreateMediaFails) {
  EXPECT_EQ(player_.CreateMedia("http://host/a"), nullptr);
  EXPECT_THAT(Failures(), ElementsAre("ERROR Failed to load VLC functions for CreateMedia"));
}

TEST_F(PlayerWithoutLibVlc, SetMediaFailsAndChangesNothing) {
  GiveHandles(player_);
  EXPECT_FALSE(player_.SetMedia({"http://host/a", "", 0, 0, true, false, false}));
  EXPECT_THAT(Failures(), ElementsAre("ERROR Failed to load VLC functions for SetMedia"));
  EXPECT_EQ(state_.current_.url, "");
  EXPECT_NE(state_.media_.get(), nullptr);
}

TEST_F(PlayerWithoutLibVlc, PlayFails) {
  GiveHandles(player_);
  player_.Play();
  EXPECT_THAT(Failures(), ElementsAre("ERROR Failed to load VLC functions for Play",
                                      "ERROR [VLCPlayer::Play] ERROR: Failed to load VLC DLL"));
}

TEST_F(PlayerWithoutLibVlc, PauseFails) {
  GiveHandles(player_);
  player_.Pause();
  EXPECT_THAT(Failures(), ElementsAre("ERROR Failed to load VLC functions for Pause"));
}

TEST_F(PlayerWithoutLibVlc, IsPlayingIsFalse) {
  GiveHandles(player_);
  EXPECT_FALSE(player_.IsPlaying());
  EXPECT_THAT(Failures(), ElementsAre("ERROR Failed to load VLC functions for IsPlaying"));
}

TEST_F(PlayerWithoutLibVlc, StopInternalFailsAndTheWatchdogKeepsRunning) {
  GiveHandles(player_);
  state_.stallWatchdogActive_.TurnTo(true);
  player_.StopInternal(true);
  EXPECT_THAT(Failures(), ElementsAre("ERROR Failed to load VLC functions for StopInternal"));
  EXPECT_TRUE(state_.stallWatchdogActive_);
  EXPECT_FALSE(state_.suppressStoppedEvent_);
}

TEST_F(PlayerWithoutLibVlc, TheGridRefusesANewStreamAndAPromotionSilently) {
  state_.players_.resize(2);
  state_.players_[0].isOriginal = true;
  state_.players_[1].url = "http://host/1";
  state_.isMultiViewMode_ = true;
  state_.activeIndex_ = 1;
  EXPECT_FALSE(player_.MvReplaceActive("http://host/a", "A"));
  EXPECT_FALSE(player_.MvPromoteActiveAndExit());
  EXPECT_THAT(Failures(), IsEmpty());
  EXPECT_EQ(state_.players_[1].url, "http://host/1");
  state_.players_.clear();
}

TEST_F(PlayerWithoutLibVlc, SetVolumeFailsAndCachesTheVolume) {
  GiveHandles(player_);
  player_.SetVolume(20);
  EXPECT_THAT(Failures(), ElementsAre("ERROR Failed to load VLC functions for SetVolume",
                                      "ERROR [VLCPlayer::SetVolume] ERROR: Failed to load VLC DLL"));
  EXPECT_EQ(state_.volume_, 20);
}

TEST_F(PlayerWithoutLibVlc, SeekToIsFalse) {
  GiveHandles(player_);
  EXPECT_FALSE(player_.SeekTo(1000));
  EXPECT_THAT(Failures(), ElementsAre("ERROR Failed to load VLC functions for SeekTo"));
}

TEST_F(PlayerWithoutLibVlc, PositionAndDurationAreZero) {
  GiveHandles(player_);
  EXPECT_EQ(player_.GetPosition(), 0);
  EXPECT_EQ(player_.GetDuration(), 0);
  EXPECT_THAT(Failures(), ElementsAre("ERROR Failed to load VLC functions for GetPosition",
                                      "ERROR Failed to load VLC functions for GetDuration"));
}

TEST_F(PlayerWithoutLibVlc, TheTrackListsAreNotReadAndNothingIsLogged) {
  GiveHandles(player_);
  player_.RefreshSpuTracks();
  player_.RefreshAudioTracks();
  EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(PlayerWithoutLibVlc, ATileIsNotAddedAndItsWindowIsGone) {
  const HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr);
  state_.parentWindow_ = parent;
  EXPECT_FALSE(player_.MvAddStream("http://host/1", "Tile 1"));
  EXPECT_THAT(Failures(), ElementsAre("ERROR Failed to load VLC functions for MvAddStream"));
  EXPECT_THAT(state_.players_, IsEmpty());
  EXPECT_EQ(GetWindow(parent, GW_CHILD), nullptr);
  state_.parentWindow_ = nullptr;
  DestroyWindow(parent);
}

TEST_F(PlayerWithoutLibVlc, ATilesWindowStays) {
  MultiViewPlayer tile;
  tile.window = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr);
  state_.DestroyPlayerWindow(tile);
  EXPECT_THAT(Failures(), ElementsAre("ERROR Failed to load VLC functions for DestroyPlayerWindow"));
  EXPECT_TRUE(IsWindow(tile.window));
  DestroyWindow(tile.window);
}

TEST_F(PlayerWithoutLibVlc, NoStreamOfTheGridIsReplacedOrOpenedInTheSingleView) {
  ASSERT_TRUE(player_.EnableMultiView());
  EXPECT_FALSE(player_.MvReplaceActive("http://host/1", "Tile 1"));
  state_.players_.emplace_back().url = "http://host/1";
  state_.activeIndex_ = 1;
  EXPECT_FALSE(player_.MvPromoteActiveAndExit());
  EXPECT_TRUE(player_.IsMultiViewMode());
  EXPECT_EQ(state_.players_.front().url, "");
  EXPECT_THAT(Failures(), IsEmpty());
}

}  // namespace
}  // namespace vantro::test
