// The messenger over the embedding. The loopback engine plays the part of the interface.
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "flutter_host/binary_messenger_impl.h"
#include "flutter_host/flutter_view_controller.h"
#include "flutter_host/method_channel.h"
#include "flutter_host/standard_method_codec.h"
#include "tests/support/import_hook.h"
#include "tests/support/loopback.h"
#include "tests/unit/flutter_host/bytes.h"
#include "tests/unit/flutter_host/captured_stderr.h"

namespace vantro {
namespace {

using test::Bytes;
using test::CapturedStderr;

constexpr char kChannel[] = "a/channel";

class BinaryMessengerTest : public testing::Test {
 protected:
  BinaryMessenger& Messenger() { return *controller_->messenger(); }
  std::optional<Bytes> Deliver(const Bytes& bytes, const std::string& channel = kChannel) {
    return loopback_.Deliver(engine_, channel, bytes);
  }
  // Keeps the reply of the next message and does not call it.
  void KeepTheReply() {
    Messenger().SetMessageHandler(kChannel,
                                  [this](const uint8_t*, size_t, BinaryReply reply) { kept_ = std::move(reply); });
  }

  test::Loopback loopback_;
  std::unique_ptr<FlutterViewController> controller_ = FlutterViewController::Create(320, 200, DartProject{});
  int engine_ = loopback_.NewestEngine();
  int references_ = loopback_.MessengerReferences();
  BinaryReply kept_;
};

TEST_F(BinaryMessengerTest, SendPassesTheBytesAndRequestsNoReply) {
  test::SentMessages sent;
  const Bytes bytes{1, 2, 3};
  Messenger().Send(kChannel, bytes.data(), bytes.size());
  ASSERT_EQ(sent.Count(), 1u);
  EXPECT_EQ(sent.All()[0].engine, engine_);
  EXPECT_EQ(sent.All()[0].channel, kChannel);
  EXPECT_EQ(sent.All()[0].bytes, bytes);
}

TEST_F(BinaryMessengerTest, ReplyOfTheInterfaceReachesTheSender) {
  loopback_.SetSendAnswer({7, 8});
  Bytes answer;
  Messenger().Send(kChannel, nullptr, 0,
                   [&](const uint8_t* reply, size_t size) { answer = Bytes(reply, reply + size); });
  EXPECT_EQ(answer, Bytes({7, 8}));
}

TEST_F(BinaryMessengerTest, SendThatIsRefusedDestroysItsReplyUncalled) {
  bool isCalled = false;
  auto witness = std::make_shared<int>();
  Messenger().Send(kChannel, nullptr, 0, [&isCalled, witness](const uint8_t*, size_t) { isCalled = true; });
  EXPECT_FALSE(isCalled);
  EXPECT_EQ(witness.use_count(), 1);
}

// Accepts each send with a reply, and keeps the reply for later.
struct LateAnswer {
  static bool Send(FlutterDesktopMessengerRef, const char*, const uint8_t*, size_t, FlutterDesktopBinaryReply newReply,
                   void* newUserData) {
    reply = newReply;
    userData = newUserData;
    return true;
  }
  static inline FlutterDesktopBinaryReply reply = nullptr;
  static inline void* userData = nullptr;
};

TEST_F(BinaryMessengerTest, ReplyThatComesLaterFindsItsFunctionAndDestroysIt) {
  const test::ImportHook hook("flutter_windows.dll", "FlutterDesktopMessengerSendWithReply", &LateAnswer::Send);
  Bytes answer;
  auto witness = std::make_shared<int>();
  Messenger().Send(kChannel, nullptr, 0,
                   [&answer, witness](const uint8_t* reply, size_t size) { answer = Bytes(reply, reply + size); });
  ASSERT_EQ(witness.use_count(), 2);
  const uint8_t bytes[] = {7, 8};
  LateAnswer::reply(bytes, sizeof bytes, LateAnswer::userData);
  EXPECT_EQ(answer, Bytes({7, 8}));
  EXPECT_EQ(witness.use_count(), 1);
}

TEST_F(BinaryMessengerTest, MessageReachesTheHandlerAndItsReplyTheInterface) {
  Bytes received;
  Messenger().SetMessageHandler(kChannel, [&](const uint8_t* message, size_t size, BinaryReply reply) {
    received = Bytes(message, message + size);
    const uint8_t answer[] = {4, 5};
    reply(answer, sizeof answer);
  });
  EXPECT_EQ(Deliver({1, 2, 3}), Bytes({4, 5}));
  EXPECT_EQ(received, Bytes({1, 2, 3}));
}

TEST_F(BinaryMessengerTest, EmptyReplyReachesTheInterfaceAsSizeZero) {
  Messenger().SetMessageHandler(kChannel, [](const uint8_t*, size_t, BinaryReply reply) { reply(nullptr, 0); });
  EXPECT_EQ(Deliver({1}), Bytes());
}

TEST_F(BinaryMessengerTest, SecondReplyIsReportedAndNotSent) {
  Messenger().SetMessageHandler(kChannel, [](const uint8_t*, size_t, BinaryReply reply) {
    const BinaryReply copy = reply;
    reply(nullptr, 0);
    copy(nullptr, 0);
  });
  CapturedStderr errors;
  Deliver({1});
  EXPECT_EQ(errors.Take(), "Error: Response can be set only once. Ignoring duplicate response.\n");
  EXPECT_EQ(loopback_.ReplyViolations(), 0);
}

TEST_F(BinaryMessengerTest, PendingReplyHoldsOneReferenceUntilItsLastCopyIsDestroyed) {
  KeepTheReply();
  Deliver({1});
  EXPECT_EQ(loopback_.MessengerReferences(), references_ + 1);
  BinaryReply copy = kept_;
  kept_ = nullptr;
  EXPECT_EQ(loopback_.MessengerReferences(), references_ + 1);
  copy = nullptr;
  EXPECT_EQ(loopback_.MessengerReferences(), references_);
}

TEST_F(BinaryMessengerTest, LateReplyIsSent) {
  KeepTheReply();
  Deliver({1});
  EXPECT_EQ(loopback_.PendingReplies(), 1);
  kept_(nullptr, 0);
  EXPECT_EQ(loopback_.PendingReplies(), 0);
}

TEST_F(BinaryMessengerTest, ReplyToAnEngineThatIsGoneIsDroppedSilently) {
  KeepTheReply();
  Deliver({1});
  controller_.reset();
  const int violations = loopback_.ReplyViolations();
  CapturedStderr errors;
  kept_(nullptr, 0);
  kept_(nullptr, 0);
  EXPECT_EQ(errors.Take(), "");
  EXPECT_EQ(loopback_.ReplyViolations(), violations);
}

TEST_F(BinaryMessengerTest, MessengerIsFreedWithTheLastReply) {
  const int others = references_ - 2;  // the engine's reference and the messenger's own
  KeepTheReply();
  Deliver({1});
  controller_.reset();
  EXPECT_EQ(loopback_.MessengerReferences(), others + 1);
  kept_ = nullptr;
  EXPECT_EQ(loopback_.MessengerReferences(), others);
}

TEST_F(BinaryMessengerTest, EmptyHandlerUnregistersTheChannelAlone) {
  const BinaryMessageHandler silent = [](const uint8_t*, size_t, BinaryReply) {};
  Messenger().SetMessageHandler(kChannel, silent);
  Messenger().SetMessageHandler("another", silent);
  EXPECT_TRUE(loopback_.HasListener(engine_, kChannel));
  Messenger().SetMessageHandler(kChannel, nullptr);
  EXPECT_FALSE(loopback_.HasListener(engine_, kChannel));
  EXPECT_TRUE(loopback_.HasListener(engine_, "another"));
}

TEST_F(BinaryMessengerTest, LaterHandlerReplacesTheFormer) {
  Messenger().SetMessageHandler(kChannel, [](const uint8_t*, size_t, BinaryReply) { ADD_FAILURE(); });
  Messenger().SetMessageHandler(kChannel, [](const uint8_t*, size_t, BinaryReply reply) { reply(nullptr, 0); });
  EXPECT_EQ(Deliver({1}), Bytes());
}

TEST_F(BinaryMessengerTest, HandlersStayReachableWhileOthersComeAndGo) {
  Messenger().SetMessageHandler(kChannel, [](const uint8_t*, size_t, BinaryReply reply) { reply(nullptr, 0); });
  const BinaryMessageHandler silent = [](const uint8_t*, size_t, BinaryReply) {};
  // Names that sort before and after the channel's name.
  for (char other = '0'; other <= 'z'; ++other) Messenger().SetMessageHandler(std::string(1, other), silent);
  for (char other = '0'; other <= 'z'; other += 2) Messenger().SetMessageHandler(std::string(1, other), nullptr);
  EXPECT_EQ(Deliver({1}), Bytes());
}

TEST_F(BinaryMessengerTest, HandlerMayUnregisterItselfWhileItRuns) {
  auto witness = std::make_shared<int>(7);
  Messenger().SetMessageHandler(kChannel, [this, witness](const uint8_t*, size_t, BinaryReply reply) {
    Messenger().SetMessageHandler(kChannel, nullptr);
    const uint8_t answer = static_cast<uint8_t>(*witness);
    reply(&answer, 1);
  });
  EXPECT_EQ(Deliver({1}), Bytes({7}));
  EXPECT_FALSE(loopback_.HasListener(engine_, kChannel));
}

TEST_F(BinaryMessengerTest, MethodCallIsAnsweredThroughTheEngine) {
  MethodChannel channel(&Messenger(), kChannel, &StandardMethodCodec::GetInstance());
  channel.SetMethodCallHandler([](const MethodCall& call, std::unique_ptr<MethodResult> result) {
    result->Success(EncodableValue(call.method_name()));
  });
  EXPECT_EQ(Deliver(test::FromHex("07 01 6d 00")), test::FromHex("00 07 01 6d"));
}

TEST_F(BinaryMessengerTest, ResultThatIsNeverAnsweredSendsNothing) {
  MethodChannel channel(&Messenger(), kChannel, &StandardMethodCodec::GetInstance());
  channel.SetMethodCallHandler([](const MethodCall&, std::unique_ptr<MethodResult>) {});
  CapturedStderr errors;
  EXPECT_EQ(Deliver(test::FromHex("07 01 6d 00")), std::nullopt);
  EXPECT_EQ(errors.Take(), "Warning: Failed to respond to a message. This is a memory leak.\n");
}

TEST_F(BinaryMessengerTest, ChannelThatOutlivesItsEngineIsInert) {
  MethodChannel channel(&Messenger(), kChannel, &StandardMethodCodec::GetInstance());
  channel.SetMethodCallHandler([](const MethodCall&, std::unique_ptr<MethodResult>) {});
  controller_.reset();
  test::SentMessages sent;
  channel.InvokeMethod("m");
  channel.SetMethodCallHandler(nullptr);
  EXPECT_EQ(sent.Count(), 0u);
}

}  // namespace
}  // namespace vantro
