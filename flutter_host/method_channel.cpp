#include "flutter_host/method_channel.h"

#include <cstdio>
#include <utility>

#include "flutter_host/byte_stream.h"
#include "flutter_host/engine_method_result.h"
#include "flutter_host/method_codec.h"

namespace vantro {

namespace {

BinaryReply ReplyInto(std::unique_ptr<MethodResult> result, const std::string& channel, const MethodCodec* codec) {
  // Shared, because a function object has to be copyable.
  std::shared_ptr<MethodResult> shared = std::move(result);
  return [shared, channel, codec](const uint8_t* reply, size_t size) {
    if (size == 0) {
      shared->NotImplemented();
    } else if (!codec->DecodeAndProcessResponseEnvelope(reply, size, shared.get())) {
      std::fprintf(stderr, "Unable to decode reply to method invocation on channel %s\n", channel.c_str());
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

void MethodChannel::InvokeMethod(const std::string& method, std::unique_ptr<EncodableValue> arguments,
                                 std::unique_ptr<MethodResult> result) {
  const std::shared_ptr<BinaryMessenger> messenger = LockMessenger();
  if (!messenger) return;
  const auto message = codec_->EncodeMethodCall(MethodCall(method, std::move(arguments)));
  BinaryReply reply = result ? ReplyInto(std::move(result), name_, codec_) : nullptr;
  messenger->Send(name_, message->data(), message->size(), std::move(reply));
}

void MethodChannel::InvokeMethodWithText(std::string_view method, std::optional<std::string_view> text) {
  const std::shared_ptr<BinaryMessenger> messenger = LockMessenger();
  if (!messenger) return;
  ShortMessageWriter message;
  codec_->WriteTextCall(method, text, &message);
  messenger->Send(name_, message.data(), message.size());
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
    const std::unique_ptr<MethodCall> call = codec->DecodeMethodCall(message, size);
    if (!call) {
      std::fprintf(stderr, "Unable to construct method call from message on channel %s\n", name.c_str());
      result->NotImplemented();
      return;
    }
    handler(*call, std::move(result));
  });
}

}  // namespace vantro
