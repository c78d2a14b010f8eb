// The scripted library itself: what the other tests of the player lean on.
#include "tests/support/scripted_vlc.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <fstream>
#include <string>

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
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_new(1, \"--intf=dummy\")", "libvlc_media_player_new(instance1)",
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

// Scripting by the environment, as a program sees it that is tested from outside: this program again, as a child that
// knows itself by its environment.

constexpr char kCallsFile[] = "scripted_calls.txt";
constexpr char kCallsVariable[] = "VANTRO_SCRIPTED_CALLS";

void BehaveAsTheScriptedProgram() {
  EXPECT_EQ(libvlc_new(0, nullptr), nullptr);
  const VlcInstancePtr instance(libvlc_new(0, nullptr));
  const VlcMediaPlayerPtr player(libvlc_media_player_new(instance.get()));
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  EXPECT_EQ(vlc.libvlc_media_player_get_time(player.get()), 11);
  EXPECT_EQ(vlc.libvlc_media_player_get_time(player.get()), 22);
  Received received;
  vlc.libvlc_event_attach(vlc.libvlc_media_player_event_manager(player.get()), 0x103, Receive, &received);
  libvlc_media_player_play(player.get());
  while (received.calls == 0) SwitchToThread();
  EXPECT_EQ(received.last.u.cache, 50.0f);
  vlc.libvlc_event_detach(vlc.libvlc_media_player_event_manager(player.get()), 0x103, Receive, &received);
}

TEST(ScriptedEnvironment, ScriptsAProgramFromOutside) {
  if (GetEnvironmentVariableA(kCallsVariable, nullptr, 0) > 0) return BehaveAsTheScriptedProgram();
  DeleteFileA(kCallsFile);
  SetEnvironmentVariableA(kCallsVariable, kCallsFile);
  SetEnvironmentVariableA("VANTRO_SCRIPTED_FAIL", "libvlc_new:1");
  SetEnvironmentVariableA("VANTRO_SCRIPTED_RESULTS", "libvlc_media_player_get_time=11,22");
  SetEnvironmentVariableA("VANTRO_SCRIPTED_EVENTS", "libvlc_media_player_play=0x102,0x103:50");
  char program[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, program, MAX_PATH);
  std::string command =
      std::string("\"") + program + "\" --gtest_filter=ScriptedEnvironment.ScriptsAProgramFromOutside";
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION child{};
  ASSERT_TRUE(CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &child));
  for (const char* name : {"CALLS", "FAIL", "RESULTS", "EVENTS"})
    SetEnvironmentVariableA((std::string("VANTRO_SCRIPTED_") + name).c_str(), nullptr);
  WaitForSingleObject(child.hProcess, INFINITE);
  DWORD code = 1;
  GetExitCodeProcess(child.hProcess, &code);
  CloseHandle(child.hProcess);
  CloseHandle(child.hThread);
  EXPECT_EQ(code, 0u);
  std::ifstream calls(kCallsFile);
  std::string first;
  std::getline(calls, first);
  EXPECT_EQ(first, "libvlc_new(0, null)");
}

}  // namespace
}  // namespace vantro::test
