// The answer to a request that came over a messenger.
#pragma once

#include <string_view>
#include <utility>

#include "flutter_host/binary_messenger.h"
#include "flutter_host/method_codec.h"
#include "flutter_host/method_result.h"

namespace vantro {

// Holds a reply function until it has been used, and is empty from then on.
class ReplyGuard {
 public:
  explicit ReplyGuard(BinaryReply reply) : reply_(std::move(reply)) {}
  // A function that was never used is reported on the standard error stream and destroyed without a call: the engine
  // may be gone by then.
  ~ReplyGuard();
  ReplyGuard(const ReplyGuard&) = delete;
  ReplyGuard& operator=(const ReplyGuard&) = delete;

  // Uses the function, which gets null for an empty answer. Once empty, the answer is dropped and reported on the
  // standard error stream: that happens in normal work, when a request is answered with an error and then declined.
  void Send(const ByteVector& answer);

 private:
  BinaryReply reply_;
};

// On the thread of the request.
class EngineMethodResult : public MethodResult {
 public:
  // The codec is borrowed and outlives the result.
  EngineMethodResult(BinaryReply reply, const MethodCodec* codec) : reply_(std::move(reply)), codec_(codec) {}

 protected:
  void SuccessInternal(const EncodableValue& value) override;
  void ErrorInternal(std::string_view code, std::string_view message, const EncodableValue& details) override;
  void NotImplementedInternal() override;

 private:
  ReplyGuard reply_;
  const MethodCodec* codec_;
};

}  // namespace vantro
