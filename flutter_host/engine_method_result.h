// The answer to a request that came over a messenger.
#pragma once

#include <string_view>
#include <utility>

#include "flutter_host/binary_messenger.h"
#include "flutter_host/method_codec.h"
#include "flutter_host/method_result.h"

namespace vantro {

// Holds a reply function. It is empty once the function has been used.
class ReplyGuard {
 public:
  explicit ReplyGuard(BinaryReply reply) : reply_(std::move(reply)) {}
  // A function that was never used is reported on the standard error stream and destroyed without a call, because the
  // engine may no longer exist.
  ~ReplyGuard();
  ReplyGuard(const ReplyGuard&) = delete;
  ReplyGuard& operator=(const ReplyGuard&) = delete;

  // Calls the function, with null for an empty answer. A second answer is dropped and reported on the standard error
  // stream. This happens in normal use, when a request is answered with an error and then as not implemented.
  void Send(const ByteVector& answer);

 private:
  BinaryReply reply_;
};

// Runs on the thread of the request.
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
