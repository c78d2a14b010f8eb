#include "flutter_host/engine_method_result.h"

#include "common/standard_error.h"

namespace vantro {

ReplyGuard::~ReplyGuard() {
  if (reply_) ReportLine("Warning: Failed to respond to a message. This is a memory leak.");
}

void ReplyGuard::Send(const ByteVector& answer) {
  if (!reply_) {
    ReportLine("Error: Only one of Success, Error, or NotImplemented can be called,",
               " and it can be called exactly once. Ignoring duplicate result.");
    return;
  }
  // Empty during the call already, so that an answer from inside the call counts as a duplicate.
  const BinaryReply reply = std::exchange(reply_, nullptr);
  reply(answer.size() == 0 ? nullptr : answer.data(), answer.size());
}

void EngineMethodResult::SuccessInternal(const EncodableValue& value) {
  ByteVector envelope;
  codec_->EncodeSuccessEnvelope(value, &envelope);
  reply_.Send(envelope);
}

void EngineMethodResult::ErrorInternal(std::string_view code, std::string_view message, const EncodableValue& details) {
  ByteVector envelope;
  codec_->EncodeErrorEnvelope(code, message, details, &envelope);
  reply_.Send(envelope);
}

void EngineMethodResult::NotImplementedInternal() { reply_.Send(ByteVector()); }

}  // namespace vantro
