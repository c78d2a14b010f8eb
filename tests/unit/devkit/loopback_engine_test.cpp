#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "flutter_host/embedding_api.h"
#include "tests/support/loopback.h"

namespace vantro::test {
namespace {

constexpr char kChannel[] = "a/channel";

FlutterDesktopEngineRef CreateEngine() {
  FlutterDesktopEngineProperties properties{};
  return FlutterDesktopEngineCreate(&properties);
}

// An engine with a view, created as by the host.
class LoopbackEngineTest : public testing::Test {
 protected:
  ~LoopbackEngineTest() override {
    if (controller_) FlutterDesktopViewControllerDestroy(controller_);
  }

  FlutterDesktopViewControllerRef Controller() {
    if (!controller_) controller_ = FlutterDesktopViewControllerCreate(320, 200, CreateEngine());
    return controller_;
  }
  FlutterDesktopMessengerRef Messenger() {
    return FlutterDesktopEngineGetMessenger(FlutterDesktopViewControllerGetEngine(Controller()));
  }
  void DestroyController() {
    FlutterDesktopViewControllerDestroy(controller_);
    controller_ = nullptr;
  }
  // Registers this listener and delivers one message to it.
  std::optional<Bytes> DeliverTo(FlutterDesktopMessageCallback listener, const Bytes& bytes = {1, 2, 3}) {
    FlutterDesktopMessengerSetCallback(Messenger(), kChannel, listener, this);
    return loopback_.Deliver(loopback_.NewestEngine(), kChannel, bytes);
  }

  Loopback loopback_;
  FlutterDesktopViewControllerRef controller_ = nullptr;
};

void Echo(FlutterDesktopMessengerRef messenger, const FlutterDesktopMessage* message, void*) {
  FlutterDesktopMessengerSendResponse(messenger, message->response_handle, message->message, message->message_size);
}

void AnswerTwice(FlutterDesktopMessengerRef messenger, const FlutterDesktopMessage* message, void* data) {
  Echo(messenger, message, data);
  Echo(messenger, message, data);
}

void AnswerNothing(FlutterDesktopMessengerRef, const FlutterDesktopMessage*, void*) {}

void AnswerEmpty(FlutterDesktopMessengerRef messenger, const FlutterDesktopMessage* message, void*) {
  FlutterDesktopMessengerSendResponse(messenger, message->response_handle, nullptr, 0);
}

TEST_F(LoopbackEngineTest, AnAnswerComesBackWithItsBytes) {
  EXPECT_EQ(DeliverTo(Echo, {9, 8, 7}), (Bytes{9, 8, 7}));
  EXPECT_EQ(loopback_.ReplyViolations(), 0);
}

TEST_F(LoopbackEngineTest, AnEmptyAnswerIsAnAnswer) { EXPECT_EQ(DeliverTo(AnswerEmpty), Bytes{}); }

TEST_F(LoopbackEngineTest, AChannelThatNobodyListensOnGivesNoAnswer) {
  DeliverTo(Echo);
  FlutterDesktopMessengerSetCallback(Messenger(), kChannel, nullptr, nullptr);
  EXPECT_FALSE(loopback_.HasListener(loopback_.NewestEngine(), kChannel));
  EXPECT_EQ(loopback_.Deliver(loopback_.NewestEngine(), kChannel, {1}), std::nullopt);
}

TEST_F(LoopbackEngineTest, ASecondAnswerIsAViolation) {
  EXPECT_TRUE(DeliverTo(AnswerTwice));
  EXPECT_EQ(loopback_.ReplyViolations(), 1);
}

TEST_F(LoopbackEngineTest, AMessageThatIsNeverAnsweredBecomesAViolationWhenItsEngineGoes) {
  EXPECT_EQ(DeliverTo(AnswerNothing), std::nullopt);
  EXPECT_EQ(loopback_.PendingReplies(), 1);
  EXPECT_EQ(loopback_.ReplyViolations(), 0);

  DestroyController();

  EXPECT_EQ(loopback_.PendingReplies(), 0);
  EXPECT_EQ(loopback_.ReplyViolations(), 1);
}

TEST_F(LoopbackEngineTest, AMessengerOutlivesItsEngineWhileReferencesAreHeld) {
  const auto messenger = FlutterDesktopMessengerAddRef(Messenger());
  const int references = loopback_.MessengerReferences();

  DestroyController();

  FlutterDesktopMessengerLock(messenger);
  EXPECT_FALSE(FlutterDesktopMessengerIsAvailable(messenger));
  FlutterDesktopMessengerUnlock(messenger);
  EXPECT_FALSE(FlutterDesktopMessengerSend(messenger, kChannel, nullptr, 0));
  EXPECT_EQ(loopback_.MessengerReferences(), references - 1);
  FlutterDesktopMessengerRelease(messenger);
  EXPECT_EQ(loopback_.MessengerReferences(), references - 2);
}

TEST_F(LoopbackEngineTest, SendsAreTakenFromAnyThread) {
  SentMessages sent;
  const auto messenger = Messenger();
  std::vector<std::thread> senders;
  for (uint8_t i = 0; i < 4; ++i) {
    senders.emplace_back([messenger, i] {
      for (int n = 0; n < 250; ++n) FlutterDesktopMessengerSend(messenger, kChannel, &i, 1);
    });
  }
  for (auto& sender : senders) sender.join();
  EXPECT_EQ(sent.Count(), 1000u);
}

TEST_F(LoopbackEngineTest, AReplyIsRefusedUntilAnAnswerIsSet) {
  Bytes answer;
  const auto take = [](const uint8_t* data, size_t size, void* to) {
    static_cast<Bytes*>(to)->assign(data, data + size);
  };
  EXPECT_FALSE(FlutterDesktopMessengerSendWithReply(Messenger(), kChannel, nullptr, 0, take, &answer));

  loopback_.SetSendAnswer({5, 6});

  EXPECT_TRUE(FlutterDesktopMessengerSendWithReply(Messenger(), kChannel, nullptr, 0, take, &answer));
  EXPECT_EQ(answer, (Bytes{5, 6}));
}

TEST_F(LoopbackEngineTest, EnginesDoNotShareTheirListeners) {
  DeliverTo(Echo);
  const int first = loopback_.NewestEngine();
  const auto other = CreateEngine();
  EXPECT_TRUE(loopback_.HasListener(first, kChannel));
  EXPECT_FALSE(loopback_.HasListener(loopback_.NewestEngine(), kChannel));
  EXPECT_EQ(loopback_.EngineCount(), 2);
  FlutterDesktopEngineDestroy(other);
  EXPECT_EQ(loopback_.EngineCount(), 1);
}

TEST_F(LoopbackEngineTest, TheViewIsAChildOfTheMessageOnlyWindowAndGoesWithItsController) {
  const HWND view = FlutterDesktopViewGetHWND(FlutterDesktopViewControllerGetView(Controller()));
  RECT client{};
  GetClientRect(view, &client);
  EXPECT_TRUE(GetWindowLongPtrW(view, GWL_STYLE) & WS_CHILD);
  EXPECT_NE(GetAncestor(view, GA_PARENT), GetDesktopWindow());
  EXPECT_EQ(client.right, 320);
  EXPECT_EQ(client.bottom, 200);

  DestroyController();

  EXPECT_FALSE(IsWindow(view));
}

TEST_F(LoopbackEngineTest, AViewWhoseParentGoesHasNoWindowAnyMore) {
  const auto viewRef = FlutterDesktopViewControllerGetView(Controller());
  const HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr);
  SetParent(FlutterDesktopViewGetHWND(viewRef), parent);

  DestroyWindow(parent);

  EXPECT_EQ(FlutterDesktopViewGetHWND(viewRef), nullptr);
}

TEST_F(LoopbackEngineTest, EveryFaultHappensAsOftenAsAskedFor) {
  LoopbackFaults faults{};
  faults.fail_engine_create = 1;
  faults.fail_view_controller_create = 1;
  faults.no_view = 1;
  faults.no_view_window = 1;
  faults.no_messenger = 1;
  loopback_.SetFaults(faults);

  EXPECT_EQ(CreateEngine(), nullptr);
  EXPECT_EQ(FlutterDesktopViewControllerCreate(10, 10, CreateEngine()), nullptr);
  EXPECT_EQ(loopback_.EngineCount(), 0);
  EXPECT_EQ(FlutterDesktopViewControllerGetView(Controller()), nullptr);
  EXPECT_EQ(Messenger(), nullptr);
  DestroyController();
  EXPECT_EQ(FlutterDesktopViewGetHWND(FlutterDesktopViewControllerGetView(Controller())), nullptr);
  EXPECT_NE(Messenger(), nullptr);
}

TEST_F(LoopbackEngineTest, ThePropertiesAreCopied) {
  const char* arguments[] = {"one", "two"};
  FlutterDesktopEngineProperties properties{};
  properties.assets_path = L"data\\flutter_assets";
  properties.dart_entrypoint_argc = 2;
  properties.dart_entrypoint_argv = arguments;
  const auto engine = FlutterDesktopEngineCreate(&properties);

  const auto seen = loopback_.NewestProperties();

  EXPECT_STREQ(seen.assets_path, L"data\\flutter_assets");
  EXPECT_EQ(seen.argument_count, 2);
  EXPECT_STREQ(seen.arguments[1], "two");
  EXPECT_FALSE(seen.has_entrypoint);
  FlutterDesktopEngineDestroy(engine);
}

TEST_F(LoopbackEngineTest, ATopLevelMessageIsHandledOnlyWhenATestSaysSo) {
  LRESULT result = 0;
  EXPECT_FALSE(FlutterDesktopViewControllerHandleTopLevelWindowProc(Controller(), nullptr, WM_CHAR, 0, 0, &result));

  loopback_.SetTopLevelResult(WM_CHAR, true, 42);

  EXPECT_TRUE(FlutterDesktopViewControllerHandleTopLevelWindowProc(Controller(), nullptr, WM_CHAR, 0, 0, &result));
  EXPECT_EQ(result, 42);
}

}  // namespace
}  // namespace vantro::test
