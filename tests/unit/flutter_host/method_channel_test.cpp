// Method channels over a fake messenger: outgoing calls, incoming calls, and the guard against a second reply.
#include "flutter_host/method_channel.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>

#include "flutter_host/byte_stream.h"
#include "flutter_host/engine_method_result.h"
#include "flutter_host/standard_codec_serializer.h"
#include "flutter_host/standard_method_codec.h"
#include "tests/unit/flutter_host/allocation_meter.h"
#include "tests/unit/flutter_host/bytes.h"
#include "tests/unit/flutter_host/captured_stderr.h"

namespace vantro {
namespace {

using test::Bytes;
using test::CapturedStderr;
using test::FromHex;
using test::Value;

constexpr char kDuplicate[] =
    "Error: Only one of Success, Error, or NotImplemented can be called, and it can be called exactly once. Ignoring "
    "duplicate result.\n";
constexpr char kUnanswered[] = "Warning: Failed to respond to a message. This is a memory leak.\n";

const StandardMethodCodec& Codec() { return StandardMethodCodec::GetInstance(); }

class FakeMessenger : public BinaryMessenger {
 public:
  void Send(const std::string& channel, const uint8_t* message, size_t size, BinaryReply reply) override {
    sentOn = channel;
    sent = Bytes(message, message + size);
    sentReply = std::move(reply);
    ++sends;
  }
  void SetMessageHandler(const std::string& channel, BinaryMessageHandler handler) override {
    if (handler) {
      handlers[channel] = std::move(handler);
    } else {
      handlers.erase(channel);
    }
  }
  // Returns the reply to a message of the interface: empty bytes for an empty reply, nothing without a reply.
  std::optional<Bytes> Deliver(const std::string& channel, const Bytes& message) {
    std::optional<Bytes> answer;
    handlers.at(channel)(message.data(), message.size(), [&answer](const uint8_t* reply, size_t size) {
      answer = size == 0 ? Bytes() : Bytes(reply, reply + size);
    });
    return answer;
  }

  std::string sentOn;
  Bytes sent;
  BinaryReply sentReply;
  int sends = 0;
  std::map<std::string, BinaryMessageHandler> handlers;
};

class MethodChannelTest : public testing::Test {
 protected:
  // Sends a call of "m" without arguments to this handler and returns the reply.
  std::optional<Bytes> Call(MethodCallHandler handler) {
    channel_.SetMethodCallHandler(std::move(handler));
    return messenger_.Deliver("a/channel", FromHex("07 01 6d 00"));
  }

  FakeMessenger messenger_;
  MethodChannel channel_{&messenger_, "a/channel", &Codec()};
};

TEST_F(MethodChannelTest, InvokeMethodSendsTheCallAndRequestsNoReply) {
  channel_.InvokeMethod("m", EncodableValue("x"));
  EXPECT_EQ(messenger_.sentOn, "a/channel");
  EXPECT_EQ(messenger_.sent, FromHex("07 01 6d 07 01 78"));
  EXPECT_FALSE(messenger_.sentReply);
}

TEST_F(MethodChannelTest, TextOfAnyLengthIsSentWhole) {
  for (const size_t length : {0, 1, 253, 254, 255, 256, 257, 5000, 70000}) {
    const std::string text(length, 'x');
    channel_.InvokeMethod("m", EncodableValue(text));
    EXPECT_EQ(messenger_.sent, test::Join(FromHex("07 01 6d"), test::Encode(Value(text)))) << length;
  }
}

TEST_F(MethodChannelTest, ValueWithItsMemoryIsSentAsItIs) {
  const Value value = test::ListOf({Value("x"), Value(std::string(5000, 'y'))});
  channel_.InvokeMethod("m", value);
  EXPECT_EQ(messenger_.sent, test::Join(FromHex("07 01 6d"), test::Encode(value)));
}

TEST(Event, AllocatesNothingWhileItIsShort) {
  class CountingMessenger : public BinaryMessenger {
   public:
    void Send(const std::string&, const uint8_t*, size_t, BinaryReply) override { ++sends; }
    void SetMessageHandler(const std::string&, BinaryMessageHandler) override {}
    int sends = 0;
  } messenger;
  MethodChannel channel(&messenger, "a/channel", &Codec());
  const test::AllocationMeter meter;
  channel.InvokeMethod("onTimeChanged", EncodableValue("1234567"));
  EXPECT_EQ(meter.count(), 0u);
  EXPECT_EQ(messenger.sends, 1);
}

TEST(ByteVector, AllocatesWhenItExceeds256Bytes) {
  const uint8_t piece[256] = {};
  ByteVector bytes;
  ByteBufferStreamWriter writer(&bytes);
  const test::AllocationMeter meter;
  writer.WriteBytes(piece, sizeof piece);
  EXPECT_EQ(meter.count(), 0u);
  writer.WriteByte(1);
  EXPECT_EQ(meter.count(), 1u);
}

TEST(ByteVector, KeepsItsBytesWhenTheyExceedItsInlineBuffer) {
  for (size_t before = 240; before < 270; ++before) {
    ByteVector bytes;
    ByteBufferStreamWriter writer(&bytes);
    Bytes expected;
    for (size_t at = 0; at < before; ++at) {
      writer.WriteByte(static_cast<uint8_t>(at));
      expected.push_back(static_cast<uint8_t>(at));
    }
    writer.WriteAlignment(16);
    expected.resize((before + 15) / 16 * 16);
    const uint8_t tail[] = {1, 2, 3};
    writer.WriteBytes(tail, sizeof tail);
    expected.insert(expected.end(), tail, tail + sizeof tail);
    EXPECT_EQ(Bytes(bytes.data(), bytes.data() + bytes.size()), expected) << before;
  }
}

TEST_F(MethodChannelTest, InvokeMethodWithoutArgumentsSendsNull) {
  channel_.InvokeMethod("m");
  EXPECT_EQ(messenger_.sent, FromHex("07 01 6d 00"));
}

TEST_F(MethodChannelTest, HandlerGetsTheCallAndItsAnswerGoesBack) {
  const auto reply = Call([](const MethodCall& call, std::unique_ptr<MethodResult> result) {
    EXPECT_EQ(call.method_name(), "m");
    result->Success(EncodableValue(true));
  });
  EXPECT_EQ(reply, FromHex("00 01"));
}

TEST_F(MethodChannelTest, SuccessWithoutAValueAnswersNull) {
  EXPECT_EQ(Call([](const MethodCall&, std::unique_ptr<MethodResult> result) { result->Success(); }), FromHex("00 00"));
}

TEST(Answer, AllocatesNothingWhileItIsShort) {
  size_t answered = 0;
  EngineMethodResult result([&answered](const uint8_t*, size_t size) { answered = size; }, &Codec());
  const EncodableValue position(int64_t{1234567});
  const test::AllocationMeter meter;
  result.Success(position);
  EXPECT_EQ(meter.count(), 0u);
  EXPECT_EQ(answered, 10u);
}

TEST(Answer, OfALargeByteListTakesOneBuffer) {
  size_t answered = 0;
  EngineMethodResult result([&answered](const uint8_t*, size_t size) { answered = size; }, &Codec());
  const Bytes bytes(1 << 20, 7);
  const EncodableValue picture(bytes);
  const test::AllocationMeter meter;
  result.Success(picture);
  EXPECT_EQ(meter.count(), 1u);
  EXPECT_EQ(answered, (1u << 20) + 7);
}

TEST_F(MethodChannelTest, ErrorAnswersItsEnvelope) {
  EXPECT_EQ(Call([](const MethodCall&, std::unique_ptr<MethodResult> result) {
              result->Error("E", "m", EncodableValue(false));
            }),
            FromHex("01 07 01 45 07 01 6d 02"));
}

TEST_F(MethodChannelTest, NotImplementedAnswersNothingAndSizeZero) {
  EXPECT_EQ(Call([](const MethodCall&, std::unique_ptr<MethodResult> result) { result->NotImplemented(); }), Bytes());
}

TEST_F(MethodChannelTest, SecondAnswerIsReportedAndNotSent) {
  CapturedStderr errors;
  const auto reply = Call([](const MethodCall&, std::unique_ptr<MethodResult> result) {
    result->Error("E", "m");
    result->NotImplemented();
  });
  EXPECT_EQ(errors.Take(), kDuplicate);
  EXPECT_EQ(reply, FromHex("01 07 01 45 07 01 6d 00"));
}

TEST_F(MethodChannelTest, ResultDestroyedUnansweredIsReportedAndSendsNothing) {
  CapturedStderr errors;
  const auto reply = Call([](const MethodCall&, std::unique_ptr<MethodResult>) {});
  EXPECT_EQ(errors.Take(), kUnanswered);
  EXPECT_EQ(reply, std::nullopt);
}

TEST_F(MethodChannelTest, AnsweredResultIsDestroyedSilently) {
  CapturedStderr errors;
  Call([](const MethodCall&, std::unique_ptr<MethodResult> result) { result->Success(); });
  EXPECT_EQ(errors.Take(), "");
}

TEST_F(MethodChannelTest, BytesThatAreNoCallAreReportedAndNotImplemented) {
  bool isCalled = false;
  channel_.SetMethodCallHandler([&](const MethodCall&, std::unique_ptr<MethodResult>) { isCalled = true; });
  CapturedStderr errors;
  const auto reply = messenger_.Deliver("a/channel", FromHex("01 00"));
  EXPECT_EQ(errors.Take(),
            "Invalid method call; method name is not a string.\n"
            "Unable to construct method call from message on channel a/channel\n");
  EXPECT_EQ(reply, Bytes());
  EXPECT_FALSE(isCalled);
}

TEST_F(MethodChannelTest, BytesThatAreNoCallAreReportedBeforeTheReply) {
  channel_.SetMethodCallHandler([](const MethodCall&, std::unique_ptr<MethodResult>) {});
  CapturedStderr errors;
  std::string before;
  const Bytes message = FromHex("01 00");
  messenger_.handlers.at("a/channel")(message.data(), message.size(),
                                      [&](const uint8_t*, size_t) { before = errors.Take(); });
  EXPECT_NE(before.find("Unable to construct method call"), std::string::npos) << before;
}

TEST_F(MethodChannelTest, ErrorWithACodeAloneHasAnEmptyMessageAndNoDetails) {
  const auto reply = Call([](const MethodCall&, std::unique_ptr<MethodResult> result) { result->Error("C"); });
  EXPECT_EQ(reply, FromHex("01 07 01 43 00 00"));
}

TEST_F(MethodChannelTest, EmptyHandlerUnregistersTheChannel) {
  channel_.SetMethodCallHandler([](const MethodCall&, std::unique_ptr<MethodResult>) {});
  EXPECT_EQ(messenger_.handlers.size(), 1u);
  channel_.SetMethodCallHandler(nullptr);
  EXPECT_TRUE(messenger_.handlers.empty());
}

TEST_F(MethodChannelTest, NewHandlerReplacesTheFormer) {
  channel_.SetMethodCallHandler([](const MethodCall&, std::unique_ptr<MethodResult> result) { result->Success(); });
  EXPECT_EQ(Call([](const MethodCall&, std::unique_ptr<MethodResult> result) { result->NotImplemented(); }), Bytes());
}

class NotedResult : public MethodResult {
 public:
  explicit NotedResult(std::string* note) : note_(note) {}
  ~NotedResult() override { *note_ += ";destroyed"; }

 protected:
  void SuccessInternal(const EncodableValue&) override { *note_ += "success"; }
  void ErrorInternal(std::string_view code, std::string_view, const EncodableValue&) override { *note_ += code; }
  void NotImplementedInternal() override { *note_ += "not implemented"; }

 private:
  std::string* note_;
};

struct InterfaceAnswer {
  const char* name;
  const char* bytes;
  const char* note;
  const char* reported;
};

class AnswerOfTheInterface : public testing::TestWithParam<InterfaceAnswer> {};

TEST_P(AnswerOfTheInterface, ReachesTheResult) {
  FakeMessenger messenger;
  MethodChannel channel(&messenger, "a/channel", &Codec());
  std::string note;
  channel.InvokeMethod("m", EncodableValue(), std::make_unique<NotedResult>(&note));
  ASSERT_TRUE(messenger.sentReply);
  const Bytes answer = FromHex(GetParam().bytes);
  CapturedStderr errors;
  messenger.sentReply(answer.data(), answer.size());
  EXPECT_EQ(note, GetParam().note);
  EXPECT_EQ(errors.Take(), GetParam().reported);
}

INSTANTIATE_TEST_SUITE_P(MethodChannel, AnswerOfTheInterface,
                         testing::Values(InterfaceAnswer{"Success", "00 01", "success", ""},
                                         InterfaceAnswer{"Error", "01 07 01 45 00 00", "E", ""},
                                         InterfaceAnswer{"Empty", "", "not implemented", ""},
                                         InterfaceAnswer{
                                             "NoEnvelope", "09", "",
                                             "Unable to decode reply to method invocation on channel a/channel\n"}),
                         [](const auto& row) { return std::string(row.param.name); });

// A window destroys its engine, with the messenger, before its thumbnail plugin, which then clears its handler.
TEST(ChannelOverASharedMessengerThatIsGone, IsInert) {
  auto messenger = std::make_shared<FakeMessenger>();
  MethodChannel channel(messenger.get(), "a/channel", &Codec());
  channel.SetMethodCallHandler([](const MethodCall&, std::unique_ptr<MethodResult>) {});
  messenger.reset();

  channel.SetMethodCallHandler(nullptr);
  channel.SetMethodCallHandler([](const MethodCall&, std::unique_ptr<MethodResult>) {});
  std::string note;
  channel.InvokeMethod("m", EncodableValue(), std::make_unique<NotedResult>(&note));
  EXPECT_EQ(note, ";destroyed");
}

TEST(ChannelOverASharedMessenger, WorksWhileItLives) {
  const auto messenger = std::make_shared<FakeMessenger>();
  MethodChannel channel(messenger.get(), "a/channel", &Codec());
  channel.InvokeMethod("m");
  EXPECT_EQ(messenger->sends, 1);
}

TEST(ReplyGuard, AnswerFromInsideTheReplyCountsAsADuplicate) {
  CapturedStderr errors;
  int replies = 0;
  ReplyGuard* inner = nullptr;
  ReplyGuard guard([&](const uint8_t*, size_t) {
    ++replies;
    inner->Send(ByteVector());
  });
  inner = &guard;
  guard.Send(ByteVector());
  EXPECT_EQ(replies, 1);
  EXPECT_EQ(errors.Take(), kDuplicate);
}

}  // namespace
}  // namespace vantro
