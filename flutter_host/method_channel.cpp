#include "flutter_host/method_channel.h"

#include <utility>

#include "common/standard_error.h"
#include "flutter_host/engine_method_result.h"
#include "flutter_host/method_codec.h"

namespace vantro {

namespace {

BinaryReply ReplyInto(std::unique_ptr<MethodResult> result, const std::string& channel, const MethodCodec* codec) {
  // Shared, because a function object must be copyable.
  std::shared_ptr<MethodResult> shared = std::move(result);
  return [shared, channel, codec](const uint8_t* reply, size_t size) {
    if (size == 0) {
      shared->NotImplemented();
    } else if (!codec->DecodeAndProcessResponseEnvelope(reply, size, shared.get())) {
      ReportLine("Unable to decode reply to method invocation on channel ", channel);
    }
  };
}

}  // namespace

MethodChannel::MethodChannel(BinaryMessenger* messenger, std::string name, const MethodCodec* codec)
    : messenger_(messenger),
      sharedMessenger_(messenger->weak_from_this()),
      isShared_(!sharedMessenger_.expired()),
      name_(std::move(name)),
      codec_(codec) {}

std::shared_ptr<BinaryMessenger> MethodChannel::LockMessenger() const {
  return isShared_ ? sharedMessenger_.lock() : std::shared_ptr<BinaryMessenger>(std::shared_ptr<void>(), messenger_);
}

void MethodChannel::InvokeMethod(const MethodCall& call, std::unique_ptr<MethodResult> result) {
  const std::shared_ptr<BinaryMessenger> messenger = LockMessenger();
  if (!messenger) return;
  ByteVector message;
  codec_->EncodeMethodCall(call, &message);
  BinaryReply reply = result ? ReplyInto(std::move(result), name_, codec_) : nullptr;
  messenger->Send(name_, message.data(), message.size(), std::move(reply));
}

void MethodChannel::SetMethodCallHandler(MethodCallHandler handler) const {
  const std::shared_ptr<BinaryMessenger> messenger = LockMessenger();
  if (!messenger) return;
  if (!handler) {
    messenger->SetMessageHandler(name_, nullptr);
    return;
  }
  messenger->SetMessageHandler(name_, [handler = std::move(handler), codec = codec_, name = name_](
                                          const uint8_t* message, size_t size, BinaryReply reply) {
    auto result = std::make_unique<EngineMethodResult>(std::move(reply), codec);
    MethodCall call;
    if (!codec->DecodeMethodCall(message, size, &call)) {
      ReportLine("Unable to construct method call from message on channel ", name);
      result->NotImplemented();
      return;
    }
    handler(call, std::move(result));
  });
}

}  // namespace vantro
