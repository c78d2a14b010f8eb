#include "tests/unit/channel/player_channel.h"

#include "tests/support/line_order.h"
#include "tests/unit/flutter_host/captured_stderr.h"

namespace vantro::test {

namespace {

int CountLines(const std::string& text, const std::string& line) {
  int count = 0;
  for (size_t at = 0; (at = text.find(line, at)) != std::string::npos; at += line.size()) ++count;
  return count;
}

}  // namespace

NotedMessages* NotedMessages::current_ = nullptr;

bool NotedMessages::OnSend(FlutterDesktopMessengerRef messenger, const char* channel, const uint8_t* message,
                           size_t size) {
  Note("call of the interface");
  return current_->send_.Original<decltype(&FlutterDesktopMessengerSend)>()(messenger, channel, message, size);
}

void NotedMessages::OnAnswer(FlutterDesktopMessengerRef messenger, const FlutterDesktopMessageResponseHandle* handle,
                             const uint8_t* answer, size_t size) {
  Note("answer");
  current_->answer_.Original<decltype(&FlutterDesktopMessengerSendResponse)>()(messenger, handle, answer, size);
}

PendingAtCalls::PendingAtCalls(Loopback& loopback) : loopback_(loopback) {
  loopback_.SetSendObserver(
      [](int32_t, const char*, const uint8_t*, size_t, void* userData) {
        auto* self = static_cast<PendingAtCalls*>(userData);
        self->counts_.push_back(self->loopback_.PendingReplies());
      },
      this);
}

PlayerChannelTest::PlayerChannelTest()
    : player_(std::make_unique<VLCPlayer>()), engine_(std::make_unique<FlutterEngine>()) {
  EXPECT_TRUE(player_->Initialize(parent_.get()));
  EXPECT_TRUE(engine_->Initialize(parent_.get()));
  engineNumber_ = loopback_.NewestEngine();
  RestartHandler();
  interface_.ClearCalls();
}

void PlayerChannelTest::RestartHandler() {
  handler_.reset();
  handler_ = std::make_unique<MethodChannelHandler>(engine_.get(), player_.get(), true, nullptr);
}

Answer PlayerChannelTest::AskCountingDuplicates(const std::string& method, const Value& arguments, int* duplicates) {
  CapturedStderr errors;
  const Answer answer = Ask(method, arguments);
  *duplicates = CountLines(errors.Take(), kDuplicateLine);
  return answer;
}

void PlayerChannelTest::LoadMedia() {
  ASSERT_EQ(Ask("setMedia", MapOf({{"URL", kUrl}})), Success(Value(true)));
  vlc_.ClearCalls();
  interface_.ClearCalls();
}

NativeMarkerState PlayerChannelTest::Marker() const {
  std::string text = ReadFileBytes(MarkerFile());
  std::erase(text, '\r');
  return ParseNativeMarker(text);
}

InterfaceCall Toast(const char* message, const char* shortWord) {
  return {"showToast", MapOf({{"message", message}, {"short", shortWord}})};
}

}  // namespace vantro::test
