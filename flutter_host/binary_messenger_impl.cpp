#include "flutter_host/binary_messenger_impl.h"

#include <utility>

#include "common/standard_error.h"

namespace vantro {

namespace {

using HandlerEntry = std::shared_ptr<const BinaryMessageHandler>;

// One message's way back. All copies of its reply function share it, so that the handle is spent once.
class PendingResponse {
 public:
  PendingResponse(FlutterDesktopMessengerRef messenger, const FlutterDesktopMessageResponseHandle* handle)
      : messenger_(FlutterDesktopMessengerAddRef(messenger)), handle_(handle) {}
  ~PendingResponse() { FlutterDesktopMessengerRelease(messenger_); }
  PendingResponse(const PendingResponse&) = delete;
  PendingResponse& operator=(const PendingResponse&) = delete;

  void Send(const uint8_t* reply, size_t size) {
    FlutterDesktopMessengerLock(messenger_);
    if (FlutterDesktopMessengerIsAvailable(messenger_)) SendToEngine(reply, size);
    FlutterDesktopMessengerUnlock(messenger_);
  }

 private:
  void SendToEngine(const uint8_t* reply, size_t size) {
    if (isAnswered_) {
      ReportLine("Error: Response can be set only once. Ignoring duplicate response.");
      return;
    }
    isAnswered_ = true;
    // A message that wants no answer comes without a handle.
    if (const auto* handle = std::exchange(handle_, nullptr)) {
      FlutterDesktopMessengerSendResponse(messenger_, handle, reply, size);
    }
  }

  FlutterDesktopMessengerRef messenger_;
  const FlutterDesktopMessageResponseHandle* handle_;
  bool isAnswered_ = false;
};

void ForwardToHandler(FlutterDesktopMessengerRef messenger, const FlutterDesktopMessage* message, void* userData) {
  const HandlerEntry handler = *static_cast<const HandlerEntry*>(userData);
  auto response = std::make_shared<PendingResponse>(messenger, message->response_handle);
  BinaryReply reply = [response = std::move(response)](const uint8_t* bytes, size_t size) {
    response->Send(bytes, size);
  };
  (*handler)(message->message, message->message_size, std::move(reply));
}

void ForwardReply(const uint8_t* data, size_t size, void* userData) {
  const std::unique_ptr<BinaryReply> reply(static_cast<BinaryReply*>(userData));
  (*reply)(data, size);
}

}  // namespace

BinaryMessengerImpl::BinaryMessengerImpl(FlutterDesktopMessengerRef messenger)
    : messenger_(FlutterDesktopMessengerAddRef(messenger)) {}

BinaryMessengerImpl::~BinaryMessengerImpl() { FlutterDesktopMessengerRelease(messenger_); }

void BinaryMessengerImpl::Send(const std::string& channel, const uint8_t* message, size_t size, BinaryReply reply) {
  if (!reply) {
    FlutterDesktopMessengerSend(messenger_, channel.c_str(), message, size);
    return;
  }
  auto pending = std::make_unique<BinaryReply>(std::move(reply));
  if (FlutterDesktopMessengerSendWithReply(messenger_, channel.c_str(), message, size, ForwardReply, pending.get())) {
    static_cast<void>(pending.release());  // ForwardReply owns it now
  }
}

void BinaryMessengerImpl::SetMessageHandler(const std::string& channel, BinaryMessageHandler handler) {
  if (!handler) {
    handlers_.erase(channel);
    FlutterDesktopMessengerSetCallback(messenger_, channel.c_str(), nullptr, nullptr);
    return;
  }
  HandlerEntry& entry = handlers_[channel];
  entry = std::make_shared<const BinaryMessageHandler>(std::move(handler));
  FlutterDesktopMessengerSetCallback(messenger_, channel.c_str(), ForwardToHandler, &entry);
}

}  // namespace vantro
