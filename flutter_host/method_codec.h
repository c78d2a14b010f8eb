// Encodes and decodes method calls and their answers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "flutter_host/byte_stream.h"
#include "flutter_host/method_call.h"
#include "flutter_host/method_result.h"

namespace vantro {

// Encodes into an empty vector of the caller, so that a short message costs no allocation. The null value means that a
// value, arguments or details are absent.
class MethodCodec {
 public:
  virtual ~MethodCodec() = default;

  // Decodes into an empty call. If the bytes are no method call, returns false and reports it on standard error.
  virtual bool DecodeMethodCall(const uint8_t* message, size_t size, MethodCall* call) const = 0;
  virtual void EncodeMethodCall(const MethodCall& call, ByteVector* message) const = 0;
  virtual void EncodeSuccessEnvelope(const EncodableValue& value, ByteVector* envelope) const = 0;
  virtual void EncodeErrorEnvelope(std::string_view code, std::string_view message, const EncodableValue& details,
                                   ByteVector* envelope) const = 0;
  // Passes the answer to the result. Returns false if the bytes are not an envelope.
  virtual bool DecodeAndProcessResponseEnvelope(const uint8_t* response, size_t size, MethodResult* result) const = 0;
};

}  // namespace vantro
