// The scripted library itself, which the other tests of the player use.
#include "tests/support/scripted_vlc.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

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

// Runs this program as a child process with one test, and returns its exit code and errors.
constexpr char kChildVariable[] = "VANTRO_SCRIPTED_TEST_CHILD";
constexpr char kErrorFile[] = "scripted_child_errors.txt";

bool IsChild() { return GetEnvironmentVariableA(kChildVariable, nullptr, 0) > 0; }

struct Environment {
  const char* name;
  const char* value;
};

struct ChildEnd {
  DWORD code = 0;
  std::string errors;  // the child's standard error
};

HANDLE CreateInheritedFile(const char* name) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  return CreateFileA(name, GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

ChildEnd RunAsChild(const std::string& test, const std::vector<Environment>& environment) {
  SetEnvironmentVariableA(kChildVariable, "1");
  for (const auto& [name, value] : environment) SetEnvironmentVariableA(name, value);
  char program[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, program, MAX_PATH);
  std::string command = std::string("\"") + program + "\" --gtest_filter=" + test;
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdError = CreateInheritedFile(kErrorFile);
  PROCESS_INFORMATION child{};
  const BOOL started =
      CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &child);
  SetEnvironmentVariableA(kChildVariable, nullptr);
  for (const auto& [name, value] : environment) SetEnvironmentVariableA(name, nullptr);
  CloseHandle(startup.hStdError);
  EXPECT_TRUE(started);
  ChildEnd end;
  WaitForSingleObject(child.hProcess, INFINITE);
  GetExitCodeProcess(child.hProcess, &end.code);
  CloseHandle(child.hProcess);
  CloseHandle(child.hThread);
  std::ifstream errors(kErrorFile);
  end.errors.assign(std::istreambuf_iterator<char>(errors), {});
  return end;
}

// The lock of a player during its events. A child process causes each deadlock.

class DeadlockTest : public ScriptedVlcTest {
 protected:
  using Action = std::function<void()>;

  void Listen(libvlc_media_player_t* player, Action* action) {
    functions_.libvlc_event_attach(
        functions_.libvlc_media_player_event_manager(player), 0x104,
        [](const libvlc_event_t*, void* userData) { (*static_cast<Action*>(userData))(); }, action);
  }
  // Runs the action inside an event of the first player.
  void DoInEvent(Action action) {
    Listen(first_.get(), &action);
    EXPECT_EQ(vlc_.Raise(first_.get(), 0x104), 1);
  }
  void ExpectAbort(const std::string& message) {
    const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
    const ChildEnd end = RunAsChild(std::string("DeadlockTest.") + test->name(), {});
    EXPECT_EQ(end.code, 3u);
    EXPECT_THAT(end.errors, testing::HasSubstr("scripted libvlc: DEADLOCK: " + message));
  }

  const LibVlcFunctions functions_ = GetLibVlcFunctions();
  const VlcInstancePtr instance_{libvlc_new(0, nullptr)};
  const VlcMediaPlayerPtr first_{libvlc_media_player_new(instance_.get())};
  const VlcMediaPlayerPtr second_{libvlc_media_player_new(instance_.get())};
};

TEST_F(DeadlockTest, AStopInsideAnEventOfItsPlayerAborts) {
  if (IsChild()) return DoInEvent([&] { functions_.libvlc_media_player_stop(first_.get()); });
  ExpectAbort("libvlc_media_player_stop(player1) waits inside an event of the same player");
}

TEST_F(DeadlockTest, AReleaseInsideAnEventOfItsPlayerAborts) {
  if (IsChild()) return DoInEvent([&] { libvlc_media_player_release(first_.get()); });
  ExpectAbort("libvlc_media_player_release(player1) waits inside an event of the same player");
}

TEST_F(DeadlockTest, ACallOnAPlayerInsideAnEventOfAnotherAborts) {
  if (IsChild()) return DoInEvent([&] { libvlc_media_player_play(second_.get()); });
  ExpectAbort("libvlc_media_player_play(player2) takes the player's lock inside an event of another player");
}

TEST_F(DeadlockTest, ACallThatWaitsForAWaitingCallbackAborts) {
  if (!IsChild()) return ExpectAbort("libvlc_media_player_play(player1) waits for a callback that doesn't return");
  std::atomic<bool> inside{false};
  std::atomic<bool> played{false};
  std::thread event([&] {
    DoInEvent([&] {
      inside = true;
      while (!played) SwitchToThread();
    });
  });
  while (!inside) SwitchToThread();
  libvlc_media_player_play(first_.get());
  played = true;
  event.join();
}

TEST_F(DeadlockTest, ADetachThatWaitsForAWaitingCallbackAborts) {
  if (!IsChild()) return ExpectAbort("libvlc_event_detach waits for a callback that doesn't return");
  std::atomic<bool> inside{false};
  std::atomic<bool> detached{false};
  std::thread event([&] {
    DoInEvent([&] {
      inside = true;
      while (!detached) SwitchToThread();
    });
  });
  libvlc_event_manager_t* const events = functions_.libvlc_media_player_event_manager(first_.get());
  while (!inside) SwitchToThread();
  functions_.libvlc_event_detach(events, 0x104, Receive, nullptr);
  detached = true;
  event.join();
}

TEST_F(DeadlockTest, OtherCallsInsideAnEventReturn) {
  bool returned = false;
  DoInEvent([&] {
    functions_.libvlc_media_player_pause(first_.get());
    libvlc_media_player_set_time(first_.get(), 5000, false);
    functions_.libvlc_video_get_width(second_.get());
    functions_.libvlc_video_set_scale(second_.get(), 1.0f);
    functions_.libvlc_audio_set_volume(second_.get(), 50);
    returned = true;
  });
  EXPECT_TRUE(returned);
}

TEST_F(DeadlockTest, ACallWaitsUntilTheCallbackHasReturned) {
  std::atomic<bool> inside{false};
  std::atomic<bool> left{false};
  std::thread event([&] {
    DoInEvent([&] {
      inside = true;
      Sleep(50);
      left = true;
    });
  });
  while (!inside) SwitchToThread();
  libvlc_media_player_play(first_.get());
  EXPECT_TRUE(left);
  event.join();
}

TEST_F(ScriptedVlcTest, AReleasedPlayerDeliversNoEvent) {
  const VlcInstancePtr instance(libvlc_new(0, nullptr));
  VlcMediaPlayerPtr player(libvlc_media_player_new(instance.get()));
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  Received received;
  vlc.libvlc_event_attach(vlc.libvlc_media_player_event_manager(player.get()), 0x10B, Receive, &received);
  vlc_.StartStorm(player.get(), 1, {0x10B});
  while (received.calls == 0) SwitchToThread();
  player.reset();
  const int calls = received.calls;
  Sleep(20);
  vlc_.StopStorms();
  EXPECT_EQ(received.calls, calls);
}

// Scripting by the environment, for a program that is tested from outside.

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

constexpr char kCallsFile[] = "scripted_calls.txt";

TEST(ScriptedEnvironment, ScriptsAProgramFromOutside) {
  if (IsChild()) return BehaveAsTheScriptedProgram();
  DeleteFileA(kCallsFile);
  const ChildEnd end = RunAsChild("ScriptedEnvironment.ScriptsAProgramFromOutside",
                                  {{"VANTRO_SCRIPTED_CALLS", kCallsFile},
                                   {"VANTRO_SCRIPTED_FAIL", "libvlc_new:1"},
                                   {"VANTRO_SCRIPTED_RESULTS", "libvlc_media_player_get_time=11,22"},
                                   {"VANTRO_SCRIPTED_EVENTS", "libvlc_media_player_play=0x102,0x103:50"}});
  EXPECT_EQ(end.code, 0u);
  std::ifstream calls(kCallsFile);
  std::string first;
  std::getline(calls, first);
  EXPECT_EQ(first, "libvlc_new(0, null)");
}

void StopInsideAnEvent(const libvlc_event_t* event, void*) {
  GetLibVlcFunctions().libvlc_media_player_stop(static_cast<libvlc_media_player_t*>(event->p_obj));
}

TEST(ScriptedEnvironment, TurnsStrictModeOn) {
  if (!IsChild()) {
    const ChildEnd end =
        RunAsChild("ScriptedEnvironment.TurnsStrictModeOn",
                   {{"VANTRO_SCRIPTED_STRICT", "1"}, {"VANTRO_SCRIPTED_EVENTS", "libvlc_media_player_play=0x104"}});
    EXPECT_EQ(end.code, 3u);
    EXPECT_THAT(end.errors, testing::HasSubstr("libvlc_media_player_stop(player1)"));
    return;
  }
  const VlcInstancePtr instance(libvlc_new(0, nullptr));
  const VlcMediaPlayerPtr player(libvlc_media_player_new(instance.get()));
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  vlc.libvlc_event_attach(vlc.libvlc_media_player_event_manager(player.get()), 0x104, StopInsideAnEvent, nullptr);
  libvlc_media_player_play(player.get());
  Sleep(10000);
}

}  // namespace
}  // namespace vantro::test
