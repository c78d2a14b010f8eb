#include "flutter_host/binary_messenger_impl.h"

#include <utility>

#include "common/standard_error.h"

namespace vantro {

namespace {

using HandlerEntry = std::shared_ptr<const BinaryMessageHandler>;

// The response to one message. All copies of its reply function share it, so that the handle is used only once.
class PendingResponse {
 public:
  PendingResponse(FlutterDesktopMessengerRef messenger, const FlutterDesktopMessageResponseHandle* handle)
      : messenger_(FlutterDesktopMessengerAddRef(messenger), FlutterDesktopMessengerRelease), handle_(handle) {}

  void Send(const uint8_t* reply, size_t size) {
    FlutterDesktopMessengerLock(messenger_.get());
    const bool isAvailable = FlutterDesktopMessengerIsAvailable(messenger_.get());
    if (isAvailable && std::exchange(isAnswered_, true)) {
      ReportLine("Error: Response can be set only once. Ignoring duplicate response.");
    } else if (isAvailable && handle_) {
      FlutterDesktopMessengerSendResponse(messenger_.get(), handle_, reply, size);
    }
    FlutterDesktopMessengerUnlock(messenger_.get());
  }

 private:
  MessengerReference messenger_;
  const FlutterDesktopMessageResponseHandle* handle_;  // null if the sender expects no answer
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
    : messenger_(FlutterDesktopMessengerAddRef(messenger), FlutterDesktopMessengerRelease) {}

void BinaryMessengerImpl::Send(const std::string& channel, const uint8_t* message, size_t size, BinaryReply reply) {
  if (!reply) {
    FlutterDesktopMessengerSend(messenger_.get(), channel.c_str(), message, size);
    return;
  }
  auto pending = std::make_unique<BinaryReply>(std::move(reply));
  if (FlutterDesktopMessengerSendWithReply(messenger_.get(), channel.c_str(), message, size, ForwardReply,
                                           pending.get())) {
    static_cast<void>(pending.release());  // ForwardReply owns it now
  }
}

void BinaryMessengerImpl::SetMessageHandler(const std::string& channel, BinaryMessageHandler handler) {
  if (!handler) {
    handlers_.erase(channel);
    FlutterDesktopMessengerSetCallback(messenger_.get(), channel.c_str(), nullptr, nullptr);
    return;
  }
  HandlerEntry& entry = handlers_[channel];
  entry = std::make_shared<const BinaryMessageHandler>(std::move(handler));
  FlutterDesktopMessengerSetCallback(messenger_.get(), channel.c_str(), ForwardToHandler, &entry);
}

}  // namespace vantro
