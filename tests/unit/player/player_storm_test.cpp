// libvlc's threads raise events at full speed while the main thread changes everything that they read. The scripted
// library reports each call with a handle that is no longer alive.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "common/log.h"
#include "tests/unit/player/grid_fixture.h"

namespace vantro::test {
namespace {

using testing::IsEmpty;

constexpr ULONGLONG kStormMs = 1500;

class StormTest : public GridTest {
 protected:
  // The log is off, because writing it would take most of the storm's time.
  StormTest() { debugLoggingEnabled = false; }

  void StartStorm(libvlc_media_player_t* player, int threads) {
    vlc_.StartStorm(player, threads, {0x104, 0x10B, 0x100, 0x10C, 0x105, 0x103, 0x106, 0x10D, 5, 0x10A});
  }
  // Repeats the action while a storm is running.
  template <typename Action>
  void Weather(const Action& action) {
    const ULONGLONG end = GetTickCount64() + kStormMs;
    do {
      action();
      state_.RunStallPass(GetTickCount64);
      // The library records every call, so the record would grow without limit.
      vlc_.ClearCalls();
    } while (GetTickCount64() < end);
    EXPECT_GT(vlc_.StopStorms(), 0);
  }
  void MakeWatchable(int player) {
    libvlc_media_player_t* const handle = vlc_.Player(player);
    vlc_.SetPlaying(handle, true);
    vlc_.SetSize(handle, 640, 360);
    vlc_.SetAudioTracks(handle, {{0, "Sound"}});
  }
};

TEST_F(StormTest, TilesComeGoAndSwapUnderEventsFromFourThreads) {
  StartGrid(3);
  state_.eventCallback_ = [](const char*, const char*) {};
  for (const int player : {1, 2, 3}) MakeWatchable(player);
  StartStorm(vlc_.Player(1), 2);
  StartStorm(vlc_.Player(2), 1);
  StartStorm(vlc_.Player(3), 1);
  int round = 0;
  Weather([&] {
    ASSERT_TRUE(Add(++round));
    vlc_.SetSize(Tile(static_cast<int>(state_.players_.size()) - 1).mediaPlayer.get(), 640, 360);
    player_.MvSwapTiles(1, static_cast<int>(state_.players_.size()) - 1);
    player_.SetActiveIndexSafe(1);
    ASSERT_TRUE(player_.MvRemoveActive());
    player_.UpdateGridLayout();
  });
  EXPECT_THAT(vlc_.Violations(), IsEmpty());
  EXPECT_EQ(vlc_.LivePlayers(), 3);
}

TEST_F(StormTest, TheGridBeginsAndEndsUnderEvents) {
  StartWithEvents();
  state_.eventCallback_ = [](const char*, const char*) {};
  ASSERT_TRUE(SetMedia("http://host/0"));
  MakeWatchable(1);
  StartStorm(vlc_.Player(1), 4);
  Weather([&] {
    player_.EnableMultiView();
    ASSERT_TRUE(Add(1));
    ASSERT_TRUE(Add(2));
    player_.SetActiveIndexSafe(2);
    ASSERT_TRUE(player_.MvPromoteActiveAndExit());
  });
  EXPECT_THAT(vlc_.Violations(), IsEmpty());
  EXPECT_EQ(vlc_.LivePlayers(), 1);
}

TEST_F(StormTest, SetMediaStopAndSeekRunUnderEvents) {
  StartWithEvents();
  state_.eventCallback_ = [](const char*, const char*) {};
  MakeWatchable(1);
  StartStorm(vlc_.Player(1), 4);
  Weather([&] {
    ASSERT_TRUE(SetMedia("http://host/0", 1000));
    player_.SeekTo(5000);
    state_.primaryStall_.restartTicksMs.push_back(1);
    player_.StopInternal(false);
  });
  EXPECT_THAT(vlc_.Violations(), IsEmpty());
  EXPECT_EQ(vlc_.LiveMedia(), 1);
}

TEST_F(StormTest, AReplacedCallbackIsNeverCalledAfterItsReplacement) {
  StartWithEvents();
  StartStorm(vlc_.Player(1), 4);
  std::atomic<int> calledWhenDead{0};
  Weather([&] {
    const auto alive = std::make_shared<std::atomic<bool>>(true);
    state_.eventCallback_ = [alive, &calledWhenDead](const char*, const char*) {
      if (!*alive) ++calledWhenDead;
    };
    state_.eventCallback_ = nullptr;
    *alive = false;
  });
  EXPECT_EQ(calledWhenDead, 0);
}

TEST_F(StormTest, APlayerMayBeDestroyedUnderItsOwnEvents) {
  for (int round = 0; round < 30; ++round) {
    auto player = std::make_unique<VLCPlayer>();
    ASSERT_TRUE(player->Initialize(parent_.get()));
    std::atomic<int> events{0};
    PlayerInspector(*player).eventCallback_ = [&](const char*, const char*) { ++events; };
    StartStorm(PlayerInspector(*player).mediaPlayer_.get(), 2);
    while (events == 0) SwitchToThread();
    player.reset();
    vlc_.StopStorms();
    vlc_.ClearCalls();
  }
  EXPECT_EQ(vlc_.LivePlayers(), 0);
}

// Threads that each do their work once in a round, at the same time.
class Rounds {
 public:
  explicit Rounds(std::vector<std::function<void()>> works) : running_(works.size()) {
    for (auto& work : works) {
      threads_.emplace_back([this, work = std::move(work)] {
        for (int round = 1;; ++round) {
          while (round_ < round) YieldProcessor();
          if (ended_) return;
          work();
          --running_;
        }
      });
    }
  }
  ~Rounds() {
    ended_ = true;
    ++round_;
    for (std::thread& thread : threads_) thread.join();
  }
  Rounds(const Rounds&) = delete;
  Rounds& operator=(const Rounds&) = delete;

  // Runs one round. Returns when all threads have done their work once.
  void Run() {
    running_ = threads_.size();
    ++round_;
    while (running_ != 0) SwitchToThread();
  }

 private:
  std::atomic<int> round_{0};
  std::atomic<size_t> running_;
  std::atomic<bool> ended_{false};
  std::vector<std::thread> threads_;
};

class MeetingTest : public StormTest {
 protected:
  // Returns whether the watchdog is on. Fails unless its timer runs exactly then. Ends the timer.
  bool IsOnWithItsTimer() {
    const bool isOn = state_.stallWatchdogActive_.IsOn();
    const bool hasTimer = KillTimer(parent_.get(), reinterpret_cast<UINT_PTR>(&player_)) != FALSE;
    EXPECT_EQ(hasTimer, isOn);
    EXPECT_EQ(state_.stallTimerId_ != 0, isOn);
    return isOn;
  }
};

TEST_F(MeetingTest, WhenAStartMeetsAStopTheTimerRunsOnlyIfTheWatchdogIsOn) {
  Start();
  Rounds meeting({[this] { player_.StartStallWatchdog(); }, [this] { player_.StopStallWatchdog(); }});
  int leftOn = 0;
  for (int round = 0; round < 2000 && !HasFailure(); ++round) {
    if (round % 2 == 0) player_.StartStallWatchdog();
    meeting.Run();
    if (IsOnWithItsTimer()) ++leftOn;
    player_.StopStallWatchdog();
  }
  EXPECT_GT(leftOn, 0);
  EXPECT_LT(leftOn, 2000);
}

TEST_F(MeetingTest, ManyMeetingStartsAndStopsAreCarriedOutInTurn) {
  Start();
  const auto startAndStop = [this] {
    for (int i = 0; i < 20; ++i) {
      player_.StartStallWatchdog();
      player_.StopStallWatchdog();
    }
  };
  const auto stopAndStart = [this] {
    for (int i = 0; i < 20; ++i) {
      player_.StopStallWatchdog();
      player_.StartStallWatchdog();
    }
  };
  Rounds meeting({startAndStop, stopAndStart, startAndStop, stopAndStart});
  for (int round = 0; round < 100 && !HasFailure(); ++round) {
    meeting.Run();
    IsOnWithItsTimer();
    player_.StopStallWatchdog();
  }
}

TEST_F(MeetingTest, TheLogHasStartsAndStopsInTurn) {
  debugLoggingEnabled = true;
  Start();
  player_.StartStallWatchdog();
  Rounds meeting({[this] { player_.StartStallWatchdog(); }, [this] { player_.StopStallWatchdog(); }});
  for (int round = 0; round < 200; ++round) meeting.Run();
  std::string order;
  for (const std::string& line : log_.Lines()) {
    if (line.find("Started stall watchdog timer") != std::string::npos) order += '+';
    if (line.find("Stopped stall watchdog timer") != std::string::npos) order += '-';
  }
  EXPECT_GT(order.size(), 2u);
  EXPECT_EQ(order.find("++"), std::string::npos) << order;
  EXPECT_EQ(order.find("--"), std::string::npos) << order;
  EXPECT_EQ(order.back() == '+', static_cast<bool>(state_.stallWatchdogActive_));
}

}  // namespace
}  // namespace vantro::test
