// What the constructor and the destructor of a handler do, and in which order.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <utility>

#include "flutter_host/embedding_api.h"
#include "tests/support/import_hook.h"
#include "tests/unit/channel/player_channel.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Runs an action before each registration of a channel at the engine. The argument of the action is true if a callback
// is registered and false if it is removed.
class AtRegistration {
 public:
  explicit AtRegistration(std::function<void(bool registers)> action) : action_(std::move(action)) { current = this; }
  ~AtRegistration() { current = nullptr; }
  AtRegistration(const AtRegistration&) = delete;
  AtRegistration& operator=(const AtRegistration&) = delete;

 private:
  static void SetCallback(FlutterDesktopMessengerRef messenger, const char* channel,
                          FlutterDesktopMessageCallback callback, void* userData) {
    current->action_(callback != nullptr);
    current->hook_.Original<decltype(&FlutterDesktopMessengerSetCallback)>()(messenger, channel, callback, userData);
  }

  static AtRegistration* current;
  std::function<void(bool)> action_;
  ImportHook hook_{"flutter_windows.dll", "FlutterDesktopMessengerSetCallback", &SetCallback};
};

AtRegistration* AtRegistration::current = nullptr;

class HandlerLife : public PlayerChannelTest {};

TEST_F(HandlerLife, EventCallbackIsInstalledAfterTheMethodCallHandler) {
  EndHandler();
  const AtRegistration probe([this](bool registers) {
    if (registers) state_.eventCallback_("tooEarly", "");
  });
  RestartHandler();
  state_.eventCallback_("onPlaying", "");
  EXPECT_THAT(interface_.CallNames(), ElementsAre("onPlaying"));
}

TEST_F(HandlerLife, EndWritesTheMarkerBeforeTheChannelIsSilenced) {
  std::string lastAction;
  const AtRegistration probe([&](bool) { lastAction = Marker().lastAction; });
  EndHandler();
  EXPECT_EQ(lastAction, "shutdown");
}

TEST_F(HandlerLife, EndSilencesTheChannelBeforeThePlayersCallback) {
  const AtRegistration probe([this](bool) { state_.eventCallback_("lastEvent", ""); });
  EndHandler();
  state_.eventCallback_("tooLate", "");
  EXPECT_THAT(interface_.CallNames(), ElementsAre("lastEvent"));
}

TEST_F(HandlerLife, EndLeavesACallbackInThePlayerThatDoesNothing) {
  EndHandler();
  EXPECT_TRUE(state_.eventCallback_);
  state_.eventCallback_("onPlaying", "1");
  EXPECT_THAT(interface_.Calls(), IsEmpty());
}

TEST_F(HandlerLife, EndKeepsTheChannelUntilARunningEventReturns) {
  struct Event {
    std::atomic<bool> sending = false;
    std::atomic<bool> ending = false;
    std::atomic<bool> channelIsThere = false;
    const std::unique_ptr<MethodChannel>* channel = nullptr;
  } event;
  event.channel = &handler_->methodChannel_;
  loopback_.SetSendObserver(
      [](int32_t, const char*, const uint8_t*, size_t, void* userData) {
        auto* state = static_cast<Event*>(userData);
        state->sending = true;
        while (!state->ending) std::this_thread::yield();
        Sleep(50);  // gives a wrong order time to show
        state->channelIsThere = *state->channel != nullptr;
      },
      &event);
  const AtRegistration probe([&](bool) { event.ending = true; });
  std::thread sender([this] { state_.eventCallback_("onPlaying", ""); });
  while (!event.sending) std::this_thread::yield();

  EndHandler();

  sender.join();
  loopback_.SetSendObserver(nullptr, nullptr);
  EXPECT_TRUE(event.channelIsThere);
}

TEST_F(HandlerLife, EndKeepsTheWakelock) {
  Ask("enableNativeWakelock");
  EndHandler();
  EXPECT_EQ(SetThreadExecutionState(ES_CONTINUOUS), 0x80000003u);
}

TEST_F(HandlerLife, HandlerThatEndsSilencesChannelAndPlayer) {
  EndHandler();
  state_.eventCallback_("onPlaying", "");
  EXPECT_FALSE(loopback_.HasListener(engineNumber_, kPlayerChannel));
  EXPECT_EQ(Ask("play"), NoAnswer());
  EXPECT_TRUE(interface_.Calls().empty());
}

TEST_F(HandlerLife, HandlerWithoutAPlayerRegistersNothingAndWritesNoMarker) {
  EndHandler();
  std::filesystem::remove(MarkerFile());
  {
    MethodChannelHandler handler(engine_.get(), nullptr, true, nullptr);
    EXPECT_FALSE(loopback_.HasListener(engineNumber_, kPlayerChannel));
    EXPECT_EQ(Ask("play"), NoAnswer());
    handler.SendChannelEvent("onPlaying", "");
    handler.ShowToast("message", true);
  }
  EXPECT_FALSE(std::filesystem::exists(MarkerFile()));
  EXPECT_TRUE(interface_.Calls().empty());
  EXPECT_TRUE(log_.Has("ERROR MethodChannelHandler: Invalid engine or player"));
}

int openedFiles = 0;
FILE* CountOpenedFile(const char*, const char*) {
  ++openedFiles;
  return nullptr;
}

// Windows ends a program that opens a file with an empty name.
TEST_F(HandlerLife, HandlerWithoutAMarkerOpensNoFile) {
  const ImportHook hook("msvcrt.dll", "fopen", CountOpenedFile);
  openedFiles = 0;
  handler_->markerPath_.clear();
  handler_->HandleStartupMarker();
  Ask("isPlaying");
  EndHandler();
  EXPECT_EQ(openedFiles, 0);
}

TEST_F(HandlerLife, HandlerWithoutAnEngineRegistersNothing) {
  EndHandler();
  MethodChannelHandler handler(nullptr, player_.get(), true, nullptr);
  EXPECT_FALSE(handler.methodChannel_);
  EXPECT_TRUE(handler.markerPath_.empty());
  EXPECT_TRUE(log_.Has("ERROR MethodChannelHandler: Invalid engine or player"));
}

TEST_F(HandlerLife, HandlerWithoutAMessengerRegistersNothing) {
  EndHandler();
  FlutterEngine engineThatDoesNotRun;
  MethodChannelHandler handler(&engineThatDoesNotRun, player_.get(), true, nullptr);
  EXPECT_FALSE(handler.methodChannel_);
  EXPECT_TRUE(handler.markerPath_.empty());
  EXPECT_TRUE(log_.Has("ERROR MethodChannelHandler: Binary messenger not available"));
}

}  // namespace
}  // namespace vantro::test
