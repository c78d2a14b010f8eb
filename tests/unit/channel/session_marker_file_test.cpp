// The session marker on disk, the report of a crash, and the toasts.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "tests/unit/channel/player_channel.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

InterfaceCall CrashEvent(const char* lastAction) {
  return {"appEvent", MapOf({{"type", "nativeCrashRecovered"}, {"platform", "windows"}, {"lastAction", lastAction}})};
}

class SessionMarkerFile : public PlayerChannelTest {
 protected:
  // Starts a session with the file of an earlier one.
  void StartOver(const std::string& leftBehind) {
    EndHandler();
    WriteFileBytes(MarkerFile(), leftBehind);
    interface_.ClearCalls();
    RestartHandler();
  }
};

TEST_F(SessionMarkerFile, IsThreeLinesEndedByCarriageReturnAndLineFeed) {
  handler_->WriteNativeMarker(true, "setMedia", 1770000000123);
  EXPECT_EQ(ReadFileBytes(MarkerFile()), "running=1\r\nlastAction=setMedia\r\nlastActionTs=1770000000123\r\n");
}

TEST_F(SessionMarkerFile, IsReadBackInTextMode) {
  handler_->WriteNativeMarker(true, "setMedia", 5);
  EXPECT_EQ(handler_->ReadNativeMarker(), (NativeMarkerState{true, "setMedia", 5}));
  WriteFileBytes(MarkerFile(), "lastAction=x\nrunning=true");
  EXPECT_EQ(handler_->ReadNativeMarker(), (NativeMarkerState{true, "x", 0}));
}

TEST_F(SessionMarkerFile, ReplacesALongerText) {
  handler_->WriteNativeMarker(true, std::string(5000, 'x'), 1);
  handler_->WriteNativeMarker(false, "shutdown", 2);
  EXPECT_EQ(ReadFileBytes(MarkerFile()), "running=0\r\nlastAction=shutdown\r\nlastActionTs=2\r\n");
}

// The system's own clock, in milliseconds since 1970.
int64_t SystemTimeMs() {
  constexpr int64_t k1970 = 116444736000000000;  // in the file time's 100 nanoseconds since 1601
  FILETIME time{};
  GetSystemTimePreciseAsFileTime(&time);
  return (static_cast<int64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime) / 10000 - k1970 / 10000;
}

TEST_F(SessionMarkerFile, SaysStartupAfterTheStartAndShutdownAfterTheEnd) {
  EXPECT_EQ(Marker().lastAction, "startup");
  EXPECT_TRUE(Marker().running);
  EndHandler();
  EXPECT_EQ(Marker().lastAction, "shutdown");
  EXPECT_FALSE(Marker().running);
}

TEST_F(SessionMarkerFile, HoldsTheCurrentTimeInMilliseconds) {
  // The two clocks differ by less than this.
  constexpr int64_t kTickMs = 16;
  const auto expectTimeOf = [this](const char* action, const std::function<void()>& act) {
    const int64_t before = SystemTimeMs();
    act();
    EXPECT_EQ(Marker().lastAction, action);
    EXPECT_GE(Marker().lastActionTs, before - kTickMs) << action;
    EXPECT_LE(Marker().lastActionTs, SystemTimeMs() + kTickMs) << action;
  };
  expectTimeOf("startup", [this] { StartOver("running=1\nlastActionTs=5\n"); });
  expectTimeOf("isPlaying", [this] { Ask("isPlaying"); });
  expectTimeOf("shutdown", [this] { EndHandler(); });
}

TEST_F(SessionMarkerFile, FirstStartAndStartAfterAnOrderlyEndReportNothing) {
  EndHandler();
  std::filesystem::remove(MarkerFile());
  RestartHandler();
  EXPECT_THAT(interface_.Calls(), IsEmpty());
  RestartHandler();
  EXPECT_THAT(interface_.Calls(), IsEmpty());
}

TEST_F(SessionMarkerFile, OfACrashedSessionGivesALongToastThenTheEvent) {
  StartOver("running=1\r\nlastAction=getPosition\r\nlastActionTs=5\r\n");
  EXPECT_THAT(interface_.Calls(),
              ElementsAre(Toast("Recovered from crash (last: getPosition)", "false"), CrashEvent("getPosition")));
}

TEST_F(SessionMarkerFile, ThatSaysTrueCountsAsRunning) {
  StartOver("running=true\nlastAction=seek\n");
  EXPECT_THAT(interface_.CallNames(), ElementsAre("showToast", "appEvent"));
}

TEST_F(SessionMarkerFile, ThatSaysAnythingElseCountsAsEnded) {
  for (const char* left : {"running=0\n", "running=\n", "running=yes\n", "running\n", "", "running=1", "garbage"}) {
    const bool runs = std::string(left) == "running=1";
    StartOver(left);
    EXPECT_EQ(interface_.Calls().empty(), !runs) << left;
  }
}

TEST_F(SessionMarkerFile, WithoutALastActionGivesUnknown) {
  StartOver("running=1\n");
  EXPECT_THAT(interface_.Calls(),
              ElementsAre(Toast("Recovered from crash (last: unknown)", "false"), CrashEvent("unknown")));
}

TEST_F(SessionMarkerFile, KeepsTheEqualsSignsOfItsLastAction) {
  StartOver("running=1\nlastAction=a=b\n");
  EXPECT_THAT(interface_.Calls(), testing::Contains(CrashEvent("a=b")));
}

TEST_F(SessionMarkerFile, IsReadToItsEnd) {
  StartOver("other=" + std::string(5000, 'x') + "\nrunning=1\nlastAction=seek\n");
  EXPECT_THAT(interface_.Calls(), testing::Contains(CrashEvent("seek")));
  // Each byte may be the last one, also behind a whole block.
  for (size_t size : {1023u, 1024u, 1025u, 2049u}) {
    WriteFileBytes(MarkerFile(), "lastAction=" + std::string(size - 11, 'x'));
    EXPECT_EQ(handler_->ReadNativeMarker().lastAction.size(), size - 11);
  }
}

TEST_F(SessionMarkerFile, CrashIsReportedOnceUnlessTheSessionCrashesAgain) {
  StartOver("running=1\nlastAction=seek\n");
  EXPECT_EQ(Marker().lastAction, "startup");
  RestartHandler();  // ends the first session normally
  interface_.ClearCalls();
  RestartHandler();
  EXPECT_THAT(interface_.Calls(), IsEmpty());
  // A session that crashed at once: "shutdown" was not written.
  StartOver("running=1\nlastAction=startup\n");
  EXPECT_THAT(interface_.Calls(), testing::Contains(CrashEvent("startup")));
}

TEST_F(SessionMarkerFile, ReportGoesOutBeforeTheChannelListens) {
  EndHandler();
  WriteFileBytes(MarkerFile(), "running=1\n");
  struct Seen {
    Loopback* loopback;
    int engine;
    int sends = 0;
    bool listening = false;
  } seen{&loopback_, engineNumber_};
  loopback_.SetSendObserver(
      [](int32_t, const char*, const uint8_t*, size_t, void* userData) {
        auto* state = static_cast<Seen*>(userData);
        ++state->sends;
        state->listening = state->listening || state->loopback->HasListener(state->engine, kPlayerChannel);
      },
      &seen);
  RestartHandler();
  loopback_.SetSendObserver(nullptr, nullptr);
  EXPECT_EQ(seen.sends, 2);
  EXPECT_FALSE(seen.listening);
}

TEST_F(SessionMarkerFile, SecondWindowReportsTheFirstOnesActionToItselfAlone) {
  Ask("getDuration");
  FlutterEngine secondEngine;
  ASSERT_TRUE(secondEngine.Initialize(parent_.get()));
  VLCPlayer secondPlayer;
  const int second = loopback_.NewestEngine();
  MethodChannelHandler secondHandler(&secondEngine, &secondPlayer, false, nullptr);
  EXPECT_THAT(interface_.Calls(second),
              ElementsAre(Toast("Recovered from crash (last: getDuration)", "false"), CrashEvent("getDuration")));
  EXPECT_THAT(interface_.Calls(engineNumber_), IsEmpty());
}

TEST_F(SessionMarkerFile, EndOfOneWindowEndsTheMarkerUntilTheNextCall) {
  FlutterEngine secondEngine;
  ASSERT_TRUE(secondEngine.Initialize(parent_.get()));
  VLCPlayer secondPlayer;
  { MethodChannelHandler secondHandler(&secondEngine, &secondPlayer, false, nullptr); }
  EXPECT_FALSE(Marker().running);
  Ask("isPlaying");
  EXPECT_TRUE(Marker().running);
  EXPECT_EQ(Marker().lastAction, "isPlaying");
}

TEST_F(SessionMarkerFile, ThatCannotBeWrittenLeavesTheSessionWorking) {
  EndHandler();
  std::filesystem::remove(MarkerFile());
  std::filesystem::create_directory(MarkerFile());  // a folder instead of the file, so the file can't be opened
  RestartHandler();
  EXPECT_THAT(interface_.Calls(), IsEmpty());
  EXPECT_EQ(Ask("setMedia", MapOf({{"URL", kUrl}})), Success(Value(true)));
  EXPECT_EQ(Ask("play"), Success(Value(true)));
  EndHandler();
  EXPECT_TRUE(std::filesystem::is_directory(MarkerFile()));
}

TEST_F(SessionMarkerFile, ToastCarriesItsFlagAsAWord) {
  handler_->ShowToast("now", true);
  handler_->ShowToast("later", false);
  EXPECT_THAT(interface_.Calls(), ElementsAre(Toast("now", "true"), Toast("later", "false")));
}

}  // namespace
}  // namespace vantro::test
