// The scripted library itself: what the other tests of the player lean on.
#include "tests/support/scripted_vlc.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>

#include "player/libvlc_functions.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;

class ScriptedVlcTest : public testing::Test {
 protected:
  template <typename Function>
  Function* Find(const char* name) {
    return reinterpret_cast<Function*>(GetProcAddress(GetModuleHandleA("libvlc.dll"), name));
  }

  ScriptedVlc vlc_;
};

struct Received {
  std::atomic<int> calls{0};
  std::atomic<DWORD> threadId{0};
  libvlc_event_t last{};
};

void Receive(const libvlc_event_t* event, void* userData) {
  auto* const received = static_cast<Received*>(userData);
  received->last = *event;
  received->threadId = GetCurrentThreadId();
  ++received->calls;
}

TEST_F(ScriptedVlcTest, RecordsCallsInOrderWithTheirArgumentsAndThread) {
  const char* const arguments[] = {"--intf=dummy"};
  const VlcInstancePtr instance(libvlc_new(1, arguments));
  const VlcMediaPlayerPtr player(libvlc_media_player_new(instance.get()));
  libvlc_media_player_set_time(player.get(), 5000, false);
  EXPECT_THAT(vlc_.Calls(),
              ElementsAre("libvlc_new(1, \"--intf=dummy\")", "libvlc_media_player_new(instance1)",
                          "libvlc_media_player_set_time(player1, 5000, 0)"));
  EXPECT_THAT(vlc_.ThreadsOf("libvlc_new"), ElementsAre(GetCurrentThreadId()));
}

TEST_F(ScriptedVlcTest, ResultsFollowCallByCallAndTheLastGoesOn) {
  const VlcInstancePtr instance(libvlc_new(0, nullptr));
  const VlcMediaPlayerPtr player(libvlc_media_player_new(instance.get()));
  vlc_.SetResults("libvlc_media_player_play", {7, 8});
  EXPECT_EQ(libvlc_media_player_play(player.get()), 7);
  EXPECT_EQ(libvlc_media_player_play(player.get()), 8);
  EXPECT_EQ(libvlc_media_player_play(player.get()), 8);
}

TEST_F(ScriptedVlcTest, FailuresComeFirstAndEnd) {
  vlc_.Fail("libvlc_new", 2);
  EXPECT_EQ(libvlc_new(0, nullptr), nullptr);
  EXPECT_EQ(libvlc_new(0, nullptr), nullptr);
  const VlcInstancePtr instance(libvlc_new(0, nullptr));
  EXPECT_NE(instance, nullptr);
}

TEST_F(ScriptedVlcTest, ThePlayerKeepsItsMediaAliveUntilItGoes) {
  const VlcInstancePtr instance(libvlc_new(0, nullptr));
  VlcMediaPlayerPtr player(libvlc_media_player_new(instance.get()));
  VlcMediaPtr media(libvlc_media_new_location("http://host/a"));
  libvlc_media_player_set_media(player.get(), media.get());
  media.reset();
  EXPECT_EQ(vlc_.LiveMedia(), 1);
  player.reset();
  EXPECT_EQ(vlc_.LiveMedia(), 0);
}

TEST_F(ScriptedVlcTest, ACallWithADeadHandleIsAViolation) {
  libvlc_media_t* const media = libvlc_media_new_location("http://host/a");
  libvlc_media_release(media);
  libvlc_media_release(media);
  EXPECT_THAT(vlc_.Violations(), ElementsAre("libvlc_media_release(media1): not a live handle"));
  vlc_.Reset();
}

TEST_F(ScriptedVlcTest, AnObjectLeftAliveIsCounted) {
  const VlcMediaPtr media(libvlc_media_new_location("http://host/a"));
  EXPECT_EQ(vlc_.LiveMedia(), 1);
}

TEST_F(ScriptedVlcTest, EventsArriveOnAThreadOfTheLibrary) {
  const VlcInstancePtr instance(libvlc_new(0, nullptr));
  const VlcMediaPlayerPtr player(libvlc_media_player_new(instance.get()));
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  Received received;
  vlc.libvlc_event_attach(vlc.libvlc_media_player_event_manager(player.get()), 0x10C, Receive, &received);
  EXPECT_EQ(vlc_.Raise(player.get(), 0x10C, 0.25), 1);
  EXPECT_EQ(vlc_.Raise(player.get(), 0x104), 0);
  EXPECT_EQ(received.last.type, 0x10C);
  EXPECT_EQ(received.last.p_obj, player.get());
  EXPECT_EQ(received.last.u.position, 0.25);
  EXPECT_NE(received.threadId, GetCurrentThreadId());
}

TEST_F(ScriptedVlcTest, AStormDeliversUntilItIsStopped) {
  const VlcInstancePtr instance(libvlc_new(0, nullptr));
  const VlcMediaPlayerPtr player(libvlc_media_player_new(instance.get()));
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  Received received;
  vlc.libvlc_event_attach(vlc.libvlc_media_player_event_manager(player.get()), 0x10B, Receive, &received);
  vlc_.StartStorm(player.get(), 2, {0x10B, 0x104});
  while (received.calls < 100) SwitchToThread();
  const int64_t delivered = vlc_.StopStorms();
  EXPECT_EQ(delivered, received.calls);
  EXPECT_GE(delivered, 100);
}

TEST_F(ScriptedVlcTest, AnActionRunsInsideTheCall) {
  bool ran = false;
  vlc_.OnCall("libvlc_new", [&] { ran = vlc_.LiveInstances() == 0; });
  const VlcInstancePtr instance(libvlc_new(0, nullptr));
  EXPECT_TRUE(ran);
}

TEST_F(ScriptedVlcTest, StatisticsArriveInTheProductsLayout) {
  const VlcMediaPtr media(libvlc_media_new_location("http://host/a"));
  vlc_.SetStats(media.get(), 3'000'000'001, 7);
  libvlc_media_stats_t stats{};
  ASSERT_TRUE(libvlc_media_get_stats(media.get(), &stats));
  EXPECT_EQ(stats.i_displayed_pictures, 3'000'000'001u);
  EXPECT_EQ(stats.i_played_abuffers, 7u);
}

}  // namespace
}  // namespace vantro::test
