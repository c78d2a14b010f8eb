// The table of methods, the dispatch, and the requests that concern the whole program.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "channel/method_table.h"
#include "player/player_events.h"
#include "shell/vantro_window.h"
#include "tests/support/local_app_data.h"
#include "tests/unit/channel/channel_data.h"
#include "tests/unit/channel/player_channel.h"
#include "tests/unit/flutter_host/captured_stderr.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;

class Dispatch : public PlayerChannelTest {};

TEST(MethodTable, NamesEveryMethodInTheOrderOfComparison) {
  std::vector<std::string> names;
  for (const ChannelMethod& method : ChannelMethods()) names.emplace_back(method.name);
  EXPECT_THAT(names, testing::ElementsAreArray(kPlayerMethods));
}

TEST_F(Dispatch, EveryMethodOfTheTableAnswersExactlyOnce) {
  for (const ChannelMethod& method : ChannelMethods()) {
    const Answer answer = Ask(std::string(method.name));
    EXPECT_TRUE(answer.kind == Answer::Kind::kSuccess || answer.kind == Answer::Kind::kError)
        << method.name << ": " << answer;
  }
  EXPECT_EQ(loopback_.ReplyViolations(), 0);
  EXPECT_EQ(loopback_.PendingReplies(), 0);
}

TEST_F(Dispatch, RequestThatSucceedsGivesNoSecondAnswer) {
  const ScratchFolder appData;
  const LocalAppDataAt redirection(appData.path());
  LoadMedia();
  // Arguments that every method accepts. A method ignores those of the others.
  const Value arguments = MapOf({{"url", "http://host/1"}, {"id", Value(1)}, {"index", Value(0)}, {"from", Value(0)},
                                 {"to", Value(1)}, {"x", Value(0)}, {"y", Value(0)}, {"width", Value(64)},
                                 {"height", Value(36)}, {"size", Value(20)}, {"level", Value(1.0)},
                                 {"positionMs", Value(5)}, {"chunkType", "part"}});
  for (const ChannelMethod& method : ChannelMethods()) {
    int duplicates = -1;
    const Answer answer = AskCountingDuplicates(std::string(method.name), arguments, &duplicates);
    // The handler of this test has no window, which these two need.
    if (method.name == "requestProviderData" || method.name == "toggleFullscreen") continue;
    EXPECT_EQ(answer.kind, Answer::Kind::kSuccess) << method.name << ": " << answer;
    EXPECT_EQ(duplicates, 0) << method.name;
  }
}

TEST_F(Dispatch, RequestsDescribedAsAlwaysTrueAreTrueWithoutArguments) {
  for (const char* method : kAlwaysTrueMethods) EXPECT_EQ(Ask(method), Success(Value(true))) << method;
}

TEST(MethodTable, PlayerEventsAreThoseDescribedInTheOrderOfAttachment) {
  std::vector<std::string> names;
  for (const PlayerEvent& event : kPlayerEvents) names.emplace_back(event.method);
  EXPECT_THAT(names, testing::ElementsAreArray(kPlayerEventNames));
}

TEST_F(Dispatch, CallsThatRequestsMakeAreDescribed) {
  const std::vector<std::string> described(std::begin(kEvents), std::end(kEvents));
  for (const char* request : {"play", "getTracksInfo", "enableMultiView", "disableMultiView"}) Ask(request);
  EXPECT_EQ(interface_.Calls().size(), 5u);
  for (const std::string& name : interface_.CallNames()) EXPECT_THAT(described, testing::Contains(name));
}

TEST_F(Dispatch, UnknownMethodIsWrittenToTheMarkerAndNotImplemented) {
  EXPECT_EQ(Ask("noSuchMethod"), NotImplemented());
  EXPECT_TRUE(Marker().running);
  EXPECT_EQ(Marker().lastAction, "noSuchMethod");
}

TEST_F(Dispatch, MethodNameThatDiffersOnlyInCaseIsUnknown) {
  for (const char* name : {"Play", "PLAY", "play ", "pla", "plays", ""}) EXPECT_EQ(Ask(name), NotImplemented()) << name;
}

TEST_F(Dispatch, WritesTheMarkerBeforeTheMethodRuns) {
  LoadMedia();
  std::string during;
  vlc_.OnCall("libvlc_media_player_get_time", [&] { during = Marker().lastAction; });
  Ask("getPosition");
  EXPECT_EQ(during, "getPosition");
}

TEST_F(Dispatch, PlayerEventCarriesItsTextOrNoArgument) {
  state_.eventCallback_("onTimeChanged", "1500");
  state_.eventCallback_("onPlaying", "");
  EXPECT_THAT(interface_.Calls(),
              ElementsAre(InterfaceCall{"onTimeChanged", Value("1500")}, InterfaceCall{"onPlaying", Value()}));
}

TEST_F(Dispatch, PlayerEventWithNullTextsIsReadAsEmpty) {
  state_.eventCallback_(nullptr, nullptr);
  EXPECT_THAT(interface_.Calls(), ElementsAre(InterfaceCall{"", Value()}));
}

TEST_F(Dispatch, LibvlcEventGoesOutOnLibvlcsThread) {
  LoadMedia();
  SentMessages sent;
  vlc_.RaiseTime(MediaPlayer(), 40);
  ASSERT_EQ(sent.Count(), 1u);
  EXPECT_NE(sent.All()[0].thread, GetCurrentThreadId());
}

// One row of the table of errors: the request, its answer, and the number of dropped second answers.
struct ErrorRow {
  const char* method;
  Value arguments;
  Answer answer;
  int duplicates;
};

TEST_F(Dispatch, ErrorsOfRequestsWithoutArgumentsAreAsDescribed) {
  for (const BareError& error : kBareErrors) {
    int duplicates = -1;
    EXPECT_EQ(AskCountingDuplicates(error.method, Value(), &duplicates),
              Failure(error.code, error.message, error.detailsAreFalse ? Value(false) : Value()))
        << error.method;
    EXPECT_EQ(duplicates, error.declines ? 1 : 0) << error.method;
  }
}

TEST_F(Dispatch, ErrorsOfWrongArgumentsDropTheirSecondAnswer) {
  const ErrorRow rows[] = {
      {"mvSetActiveIndex", MapOf({{"index", Value(-1)}}), Failure("INVALID_ARGUMENT", "Invalid index"), 1},
      {"mvSwapTiles", MapOf({{"from", Value(-1)}, {"to", Value(0)}}), Failure("INVALID_ARGUMENT", "Invalid indices"),
       1},
      {"sendProviderData", MapOf({}), Failure("INVALID_CHUNK", "Chunk type is missing", Value(false)), 1},
  };
  for (const ErrorRow& row : rows) {
    int duplicates = -1;
    EXPECT_EQ(AskCountingDuplicates(row.method, row.arguments, &duplicates), row.answer) << row.method;
    EXPECT_EQ(duplicates, row.duplicates) << row.method;
  }
}

TEST_F(Dispatch, ViewRequestsWithoutAnEngineFailWithoutASecondAnswer) {
  handler_->flutterEngine_ = nullptr;
  for (const char* method : {"showFlutterView", "hideFlutterView", "setAlphaFlutterView"}) {
    int duplicates = -1;
    EXPECT_EQ(AskCountingDuplicates(method, Value(), &duplicates),
              Failure("ENGINE_ERROR", "Flutter engine not available"))
        << method;
    EXPECT_EQ(duplicates, 0) << method;
  }
}

TEST_F(Dispatch, GridRequestsWithoutAPlayerDropTheirSecondAnswer) {
  handler_->vlcPlayer_ = nullptr;
  for (const char* method :
       {"enableMultiView", "disableMultiView", "mvAddStream", "mvReplaceActive", "mvSetActiveIndex", "mvRemoveActive",
        "mvSwapTiles", "mvPromoteActiveAndExit", "mvExitFullscreen"}) {
    int duplicates = -1;
    EXPECT_EQ(AskCountingDuplicates(method, Value(), &duplicates), Failure("VLC_ERROR", "VLC player not available"))
        << method;
    EXPECT_EQ(duplicates, 1) << method;
  }
}

TEST_F(Dispatch, BuildTimeIsTheCompilersDateAndTime) {
  const Answer answer = Ask("getBuildTime");
  const auto text = answer.value.value().Get<std::string_view>();
  ASSERT_TRUE(text) << answer;
  EXPECT_TRUE(std::regex_match(std::string(*text), std::regex(R"([A-Z][a-z]{2} [ 123]\d \d{4} \d{2}:\d{2}:\d{2})")))
      << answer;
}

TEST_F(Dispatch, DebugInputLatencyIsAcceptedWhateverItSays) {
  EXPECT_EQ(Ask("debugInputLatency", MapOf({{"enable", Value(true)}})), Success(Value(true)));
  EXPECT_EQ(Ask("debugInputLatency"), Success(Value(true)));
}

TEST_F(Dispatch, DatabaseKeyIsTheSame32BytesAtEveryRequest) {
  const ScratchFolder appData;
  const LocalAppDataAt redirection(appData.path());
  const Answer key = Ask("getDatabaseEncryptionKey");
  const auto bytes = key.value.value().Get<std::span<const uint8_t>>();
  ASSERT_TRUE(bytes) << key;
  EXPECT_EQ(bytes->size(), 32u);
  EXPECT_EQ(Ask("getDatabaseEncryptionKey"), key);
}

TEST_F(Dispatch, DatabaseKeyIsNeverLogged) {
  const ScratchFolder appData;
  const LocalAppDataAt redirection(appData.path());
  const LogCapture log;
  CapturedStderr errors;
  Ask("getDatabaseEncryptionKey");
  Ask("getDatabaseEncryptionKey");
  EXPECT_EQ(errors.Take(), "");
  EXPECT_THAT(log.Lines(), ElementsAre("INFO DatabaseKeyStore: Key saved successfully",
                                       "INFO DatabaseKeyStore: Key loaded successfully"));
}

TEST_F(Dispatch, DatabaseKeyThatCannotBeSavedIsAnError) {
  const LocalAppDataAt redirection(scratch_ / "no such folder");
  int duplicates = -1;
  EXPECT_EQ(AskCountingDuplicates("getDatabaseEncryptionKey", Value(), &duplicates),
            Failure("DB_KEY_ERROR", "Failed to load database encryption key", Value(false)));
  EXPECT_EQ(duplicates, 0);
}

TEST_F(Dispatch, ToggleFullscreenTogglesItsWindow) {
  VantroWindow window(GetModuleHandleW(nullptr));
  handler_->window_ = &window;
  EXPECT_EQ(Ask("toggleFullscreen"), Success(Value(true)));
  EXPECT_TRUE(window.isFullscreen());
  EXPECT_EQ(Ask("toggleFullscreen"), Success(Value(true)));
  EXPECT_FALSE(window.isFullscreen());
  handler_->window_ = nullptr;
}

TEST_F(Dispatch, WakelockHoldsForTheThreadAndItsFlagForOneWindow) {
  FlutterEngine otherEngine;
  ASSERT_TRUE(otherEngine.Initialize(parent_.get()));
  const int otherNumber = loopback_.NewestEngine();
  VLCPlayer otherPlayer;
  MethodChannelHandler otherHandler(&otherEngine, &otherPlayer, false, nullptr);

  EXPECT_EQ(Ask("enableNativeWakelock"), Success(Value(true)));

  EXPECT_EQ(Ask("isNativeWakelockEnabled"), Success(Value(true)));
  EXPECT_EQ(interface_.Ask(otherNumber, kPlayerChannel, "isNativeWakelockEnabled"), Success(Value(false)));
  // The call returns the state that was set before.
  EXPECT_EQ(SetThreadExecutionState(ES_CONTINUOUS), 0x80000003u);
}

TEST_F(Dispatch, DisablingTheWakelockReleasesIt) {
  Ask("enableNativeWakelock");
  EXPECT_EQ(Ask("disableNativeWakelock"), Success(Value(true)));
  EXPECT_EQ(Ask("isNativeWakelockEnabled"), Success(Value(false)));
  EXPECT_EQ(SetThreadExecutionState(ES_CONTINUOUS), 0x80000000u);
}

}  // namespace
}  // namespace vantro::test
