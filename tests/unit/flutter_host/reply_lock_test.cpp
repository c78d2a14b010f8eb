// The calls of the embedding for a message: a reply is made under the lock, a send without it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "flutter_host/embedding_api.h"
#include "flutter_host/flutter_view_controller.h"
#include "tests/support/import_hook.h"
#include "tests/support/loopback.h"
#include "tests/unit/flutter_host/captured_stderr.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kChannel[] = "a/channel";

// Records the calls with which the program sends, replies and gets the engine, and passes each on to the engine. Also
// keeps the last registered callback.
class MessengerCalls {
 public:
  MessengerCalls() { current = this; }
  ~MessengerCalls() { current = nullptr; }
  MessengerCalls(const MessengerCalls&) = delete;
  MessengerCalls& operator=(const MessengerCalls&) = delete;

  const std::vector<std::string>& Names() const { return names_; }
  // Runs after each registration and each removal of a callback, before the call returns.
  std::function<void()> onSetCallback;
  // Passes a message to the registered callback, as the embedding does when the interface expects no reply.
  void DeliverWithoutAHandle() {
    const uint8_t byte = 1;
    const FlutterDesktopMessage message{sizeof message, kChannel, &byte, 1, nullptr};
    callback_(messenger_, &message, userData_);
  }

 private:
  // Calls the engine's export directly, without the hooks.
  template <typename Function, typename... Arguments>
  static auto Pass(const char* name, Arguments... arguments) {
    const std::string exported = std::string("FlutterDesktopMessenger") + name;
    current->names_.push_back(name);
    return reinterpret_cast<Function*>(GetProcAddress(GetModuleHandleA("flutter_windows.dll"), exported.c_str()))(
        arguments...);
  }
  static FlutterDesktopMessengerRef Lock(FlutterDesktopMessengerRef messenger) {
    return Pass<decltype(FlutterDesktopMessengerLock)>("Lock", messenger);
  }
  static void Unlock(FlutterDesktopMessengerRef messenger) {
    Pass<decltype(FlutterDesktopMessengerUnlock)>("Unlock", messenger);
  }
  static bool IsAvailable(FlutterDesktopMessengerRef messenger) {
    return Pass<decltype(FlutterDesktopMessengerIsAvailable)>("IsAvailable", messenger);
  }
  static void SendResponse(FlutterDesktopMessengerRef messenger, const FlutterDesktopMessageResponseHandle* handle,
                           const uint8_t* data, size_t size) {
    Pass<decltype(FlutterDesktopMessengerSendResponse)>("SendResponse", messenger, handle, data, size);
  }
  static bool Send(FlutterDesktopMessengerRef messenger, const char* channel, const uint8_t* message, size_t size) {
    return Pass<decltype(FlutterDesktopMessengerSend)>("Send", messenger, channel, message, size);
  }
  static bool SendWithReply(FlutterDesktopMessengerRef messenger, const char* channel, const uint8_t* message,
                            size_t size, FlutterDesktopBinaryReply reply, void* userData) {
    return Pass<decltype(FlutterDesktopMessengerSendWithReply)>("SendWithReply", messenger, channel, message, size,
                                                                reply, userData);
  }
  static void SetCallback(FlutterDesktopMessengerRef messenger, const char* channel,
                          FlutterDesktopMessageCallback callback, void* userData) {
    Pass<decltype(FlutterDesktopMessengerSetCallback)>("SetCallback", messenger, channel, callback, userData);
    current->names_.pop_back();
    current->messenger_ = messenger;
    current->callback_ = callback;
    current->userData_ = userData;
    if (current->onSetCallback) current->onSetCallback();
  }
  template <typename Function>
  static std::unique_ptr<ImportHook> Hook(const char* function, Function* replacement) {
    return std::make_unique<ImportHook>("flutter_windows.dll", function, replacement);
  }

  static MessengerCalls* current;
  std::vector<std::string> names_;
  FlutterDesktopMessengerRef messenger_ = nullptr;
  FlutterDesktopMessageCallback callback_ = nullptr;
  void* userData_ = nullptr;
  std::unique_ptr<ImportHook> hooks_[7] = {
      Hook("FlutterDesktopMessengerLock", &Lock),
      Hook("FlutterDesktopMessengerUnlock", &Unlock),
      Hook("FlutterDesktopMessengerIsAvailable", &IsAvailable),
      Hook("FlutterDesktopMessengerSendResponse", &SendResponse),
      Hook("FlutterDesktopMessengerSend", &Send),
      Hook("FlutterDesktopMessengerSendWithReply", &SendWithReply),
      Hook("FlutterDesktopMessengerSetCallback", &SetCallback),
  };
};

MessengerCalls* MessengerCalls::current = nullptr;

class ReplyLock : public testing::Test {
 protected:
  void KeepTheReply() {
    controller_->messenger()->SetMessageHandler(
        kChannel, [this](const uint8_t*, size_t, BinaryReply reply) { kept_ = std::move(reply); });
  }

  Loopback loopback_;
  std::unique_ptr<FlutterViewController> controller_ = FlutterViewController::Create(320, 200, DartProject{});
  int engine_ = loopback_.NewestEngine();
  BinaryReply kept_;
  MessengerCalls calls_;
};

TEST_F(ReplyLock, IsHeldDuringTheAvailabilityTestAndTheReply) {
  KeepTheReply();
  loopback_.Deliver(engine_, kChannel, {1});
  EXPECT_THAT(calls_.Names(), IsEmpty());
  kept_(nullptr, 0);
  EXPECT_THAT(calls_.Names(), ElementsAre("Lock", "IsAvailable", "SendResponse", "Unlock"));
}

TEST_F(ReplyLock, IsReleasedWhenTheEngineIsGone) {
  KeepTheReply();
  loopback_.Deliver(engine_, kChannel, {1});
  controller_.reset();
  kept_(nullptr, 0);
  EXPECT_THAT(calls_.Names(), ElementsAre("Lock", "IsAvailable", "Unlock"));
}

TEST_F(ReplyLock, IsReleasedAfterADuplicateReply) {
  KeepTheReply();
  loopback_.Deliver(engine_, kChannel, {1});
  CapturedStderr errors;
  kept_(nullptr, 0);
  kept_(nullptr, 0);
  EXPECT_THAT(calls_.Names(),
              ElementsAre("Lock", "IsAvailable", "SendResponse", "Unlock", "Lock", "IsAvailable", "Unlock"));
}

TEST_F(ReplyLock, IsNotTakenBySends) {
  const uint8_t byte = 1;
  controller_->messenger()->Send(kChannel, &byte, 1);
  controller_->messenger()->Send(kChannel, &byte, 1, [](const uint8_t*, size_t) {});
  EXPECT_THAT(calls_.Names(), ElementsAre("Send", "SendWithReply"));
}

TEST_F(ReplyLock, HandlerIsThereWhenTheCallbackIsRegistered) {
  calls_.onSetCallback = [this] { calls_.DeliverWithoutAHandle(); };
  int messages = 0;
  controller_->messenger()->SetMessageHandler(kChannel, [&](const uint8_t*, size_t, BinaryReply) { ++messages; });
  EXPECT_EQ(messages, 1);
  calls_.onSetCallback = nullptr;
}

TEST_F(ReplyLock, HandlerIsDestroyedBeforeTheCallbackIsRemoved) {
  auto witness = std::make_shared<int>();
  controller_->messenger()->SetMessageHandler(kChannel, [witness](const uint8_t*, size_t, BinaryReply) {});
  ASSERT_EQ(witness.use_count(), 2);
  long atRemoval = 0;
  calls_.onSetCallback = [&] { atRemoval = witness.use_count(); };
  controller_->messenger()->SetMessageHandler(kChannel, nullptr);
  EXPECT_EQ(atRemoval, 1);
}

TEST_F(ReplyLock, ReplyToAMessageWithoutAHandleIsSilent) {
  KeepTheReply();
  calls_.DeliverWithoutAHandle();
  CapturedStderr errors;
  kept_(nullptr, 0);
  EXPECT_EQ(errors.Take(), "");
  EXPECT_THAT(calls_.Names(), ElementsAre("Lock", "IsAvailable", "Unlock"));
}

}  // namespace
}  // namespace vantro::test
