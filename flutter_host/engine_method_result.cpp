#include "flutter_host/engine_method_result.h"

#include <cstdio>
#include <utility>

namespace vantro {

ReplyGuard::~ReplyGuard() {
  if (reply_) std::fputs("Warning: Failed to respond to a message. This is a memory leak.\n", stderr);
}

void ReplyGuard::Send(const std::vector<uint8_t>* bytes) {
  if (!reply_) {
    std::fputs("Error: Only one of Success, Error, or NotImplemented can be called,", stderr);
    std::fputs(" and it can be called exactly once. Ignoring duplicate result.\n", stderr);
    return;
  }
  const bool isEmpty = !bytes || bytes->empty();
  // Empty already during the call, so that an answer from inside it counts as a duplicate.
  const BinaryReply reply = std::exchange(reply_, nullptr);
  reply(isEmpty ? nullptr : bytes->data(), isEmpty ? 0 : bytes->size());
}

void EngineMethodResult::SuccessInternal(const EncodableValue* value) {
  reply_.Send(codec_->EncodeSuccessEnvelope(value).get());
}

void EngineMethodResult::ErrorInternal(const std::string& code, const std::string& message,
                                       const EncodableValue* details) {
  reply_.Send(codec_->EncodeErrorEnvelope(code, message, details).get());
}

void EngineMethodResult::NotImplementedInternal() { reply_.Send(nullptr); }

}  // namespace vantro
