// Turns method calls and their answers into bytes and back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "flutter_host/byte_stream.h"
#include "flutter_host/method_call.h"
#include "flutter_host/method_result.h"

namespace vantro {

// What is encoded goes into an empty vector of the caller's, by which a short message costs no allocation. Null stands
// for a value, arguments or details that are absent.
class MethodCodec {
 public:
  virtual ~MethodCodec() = default;

  // Into a call that is empty. False, and reported on the standard error stream, when the bytes are no method call.
  virtual bool DecodeMethodCall(const uint8_t* message, size_t size, MethodCall* call) const = 0;
  virtual void EncodeMethodCall(const MethodCall& call, ByteVector* message) const = 0;
  virtual void EncodeSuccessEnvelope(const EncodableValue& value, ByteVector* envelope) const = 0;
  virtual void EncodeErrorEnvelope(std::string_view code, std::string_view message, const EncodableValue& details,
                                   ByteVector* envelope) const = 0;
  // Hands the answer to the result; false when the bytes are no envelope.
  virtual bool DecodeAndProcessResponseEnvelope(const uint8_t* response, size_t size, MethodResult* result) const = 0;
};

}  // namespace vantro
