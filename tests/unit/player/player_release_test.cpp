// A libvlc object that the player drops while an event is being handled is released before the operation returns.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "tests/unit/player/grid_fixture.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;

constexpr int kTimeChanged = 0x10B;

class ReleaseTest : public GridTest {
 protected:
  ~ReleaseTest() override {
    if (event_.joinable()) event_.join();
  }

  // Raises an event on the player on a new thread. Returns when that thread is in the event callback, where it runs the
  // given work, by default a short sleep.
  template <typename Work>
  void BeginEvent(libvlc_media_player_t* player, int type, const Work& work) {
    state_.eventCallback_ = [this, work](const char*, const char*) {
      entered_ = true;
      work();
      left_ = true;
    };
    event_ = std::thread([this, player, type] { vlc_.Raise(player, type); });
    while (!entered_) SwitchToThread();
  }
  void BeginEvent(libvlc_media_player_t* player, int type) {
    BeginEvent(player, type, [] { Sleep(50); });
  }

  std::thread event_;
  std::atomic<bool> entered_{false};
  std::atomic<bool> left_{false};
};

TEST_F(ReleaseTest, ARemovedTileIsReleasedWhileAnotherTilesEventRuns) {
  StartGrid(3);
  player_.SetActiveIndexSafe(1);
  BeginEvent(TilePlayer(0), kTimeChanged);
  ASSERT_TRUE(player_.MvRemoveActive());
  EXPECT_TRUE(left_);
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_release"), ElementsAre("libvlc_media_player_release(player2)"));
}

TEST_F(ReleaseTest, LeavingReleasesTilesWhileAnotherTilesEventRuns) {
  StartGrid(3);
  BeginEvent(TilePlayer(0), kTimeChanged);
  ASSERT_TRUE(player_.DisableMultiView());
  EXPECT_TRUE(left_);
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_release"),
              ElementsAre("libvlc_media_player_release(player2)", "libvlc_media_player_release(player3)"));
}

TEST_F(ReleaseTest, LeavingReleasesTheTilesWhileTheGridIsOn) {
  StartGrid(2);
  bool wasOn = false;
  vlc_.OnCall("libvlc_media_player_release", [&] { wasOn = player_.IsMultiViewMode(); });
  ASSERT_TRUE(player_.DisableMultiView());
  vlc_.OnCall("libvlc_media_player_release", nullptr);
  EXPECT_TRUE(wasOn);
}

TEST_F(ReleaseTest, TheTilesAreReleasedBeforeTheVolumeComesBack) {
  StartGrid(2);
  BeginEvent(TilePlayer(0), kTimeChanged);
  ASSERT_TRUE(player_.DisableMultiView());
  const std::vector<std::string> calls = vlc_.Calls();
  const auto release = std::find(calls.begin(), calls.end(), "libvlc_media_player_release(player2)");
  EXPECT_NE(std::find(release, calls.end(), "libvlc_audio_set_volume(player1, 100)"), calls.end());
}

TEST_F(ReleaseTest, TilesLeftFromOutsideTheGridAreReleasedWhenAGridBegins) {
  StartWithEvents();
  ASSERT_TRUE(Add(1));
  BeginEvent(vlc_.Player(1), kTimeChanged);
  bool wasOn = false;
  vlc_.OnCall("libvlc_media_player_release", [&] { wasOn = player_.IsMultiViewMode(); });
  ASSERT_TRUE(player_.EnableMultiView());
  vlc_.OnCall("libvlc_media_player_release", nullptr);
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_release"), ElementsAre("libvlc_media_player_release(player2)"));
  EXPECT_TRUE(wasOn);
}

TEST_F(ReleaseTest, CleanupReleasesPlayerMediaAndInstanceInOrderWhileAnEventRuns) {
  StartWithEvents();
  ASSERT_TRUE(SetMedia("http://host/0"));
  ASSERT_TRUE(Add(1));
  BeginEvent(vlc_.Player(2), kPlaying);
  vlc_.ClearCalls();
  bool hadEnded = false;
  vlc_.OnCall("libvlc_media_player_release", [&] { hadEnded = left_; });
  player_.Cleanup();
  vlc_.OnCall("libvlc_media_player_release", nullptr);
  EXPECT_TRUE(hadEnded);
  std::vector<std::string> releases = vlc_.Calls();
  std::erase_if(releases, [](const std::string& call) { return call.find("_release(") == std::string::npos; });
  EXPECT_THAT(releases, ElementsAre("libvlc_media_player_release(player1)", "libvlc_media_release(media1)",
                                    "libvlc_release(instance1)"));
}

// A video output of libvlc sends messages to its window.
TEST_F(ReleaseTest, SentMessagesAreAnsweredWhileAnEventIsWaitedFor) {
  StartGrid(3);
  player_.SetActiveIndexSafe(1);
  std::atomic<LRESULT> answered{0};
  BeginEvent(TilePlayer(0), kTimeChanged, [&] {
    Sleep(20);
    DWORD_PTR result = 0;
    answered = SendMessageTimeoutA(parent_.get(), WM_NULL, 0, 0, SMTO_NORMAL, 5000, &result);
  });
  ASSERT_TRUE(player_.MvRemoveActive());
  EXPECT_NE(answered, 0);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_release"), 1);
}

TEST_F(ReleaseTest, PostedMessagesAndTimersStayQueuedWhileAnEventIsWaitedFor) {
  StartGrid(2);
  player_.SetActiveIndexSafe(1);
  PostMessageA(parent_.get(), WM_APP, 0, 0);
  SetTimer(parent_.get(), 77, 10, nullptr);
  BeginEvent(TilePlayer(0), kTimeChanged);
  ASSERT_TRUE(player_.MvRemoveActive());
  MSG message{};
  EXPECT_TRUE(PeekMessageA(&message, parent_.get(), WM_APP, WM_APP, PM_REMOVE));
  EXPECT_TRUE(PeekMessageA(&message, parent_.get(), WM_TIMER, WM_TIMER, PM_REMOVE));
  KillTimer(parent_.get(), 77);
}

}  // namespace
}  // namespace vantro::test
