#include "flutter_host/engine_method_result.h"

#include <cstdio>
#include <utility>

#include "flutter_host/byte_stream.h"

namespace vantro {

ReplyGuard::~ReplyGuard() {
  if (reply_) std::fputs("Warning: Failed to respond to a message. This is a memory leak.\n", stderr);
}

void ReplyGuard::Send(const uint8_t* bytes, size_t size) {
  if (!reply_) {
    std::fputs("Error: Only one of Success, Error, or NotImplemented can be called,", stderr);
    std::fputs(" and it can be called exactly once. Ignoring duplicate result.\n", stderr);
    return;
  }
  // Empty already during the call, so that an answer from inside it counts as a duplicate.
  const BinaryReply reply = std::exchange(reply_, nullptr);
  reply(size == 0 ? nullptr : bytes, size);
}

void EngineMethodResult::SuccessInternal(const EncodableValue* value) {
  ShortMessageWriter envelope;
  codec_->WriteSuccessEnvelope(value, &envelope);
  reply_.Send(envelope.data(), envelope.size());
}

void EngineMethodResult::ErrorInternal(const std::string& code, const std::string& message,
                                       const EncodableValue* details) {
  const auto envelope = codec_->EncodeErrorEnvelope(code, message, details);
  reply_.Send(envelope->data(), envelope->size());
}

void EngineMethodResult::NotImplementedInternal() { reply_.Send(nullptr, 0); }

}  // namespace vantro
