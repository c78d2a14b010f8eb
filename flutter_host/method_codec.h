// Turns method calls and their answers into bytes and back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "flutter_host/byte_stream.h"
#include "flutter_host/encodable_value.h"
#include "flutter_host/method_call.h"
#include "flutter_host/method_result.h"

namespace vantro {

class MethodCodec {
 public:
  virtual ~MethodCodec() = default;

  // Null when the bytes are no method call.
  std::unique_ptr<MethodCall> DecodeMethodCall(const uint8_t* message, size_t size) const {
    return DecodeMethodCallInternal(message, size);
  }
  std::unique_ptr<std::vector<uint8_t>> EncodeMethodCall(const MethodCall& call) const {
    return EncodeMethodCallInternal(call);
  }
  std::unique_ptr<std::vector<uint8_t>> EncodeSuccessEnvelope(const EncodableValue* result = nullptr) const {
    return EncodeSuccessEnvelopeInternal(result);
  }
  std::unique_ptr<std::vector<uint8_t>> EncodeErrorEnvelope(const std::string& code, const std::string& message = "",
                                                            const EncodableValue* details = nullptr) const {
    return EncodeErrorEnvelopeInternal(code, message, details);
  }
  // The bytes of a call whose argument, if there is one, is a string, without making a call or values of it.
  void WriteTextCall(std::string_view method, std::optional<std::string_view> text, ByteStreamWriter* stream) const {
    WriteTextCallInternal(method, text, stream);
  }
  // The same bytes as EncodeSuccessEnvelope's.
  void WriteSuccessEnvelope(const EncodableValue* result, ByteStreamWriter* stream) const {
    WriteSuccessEnvelopeInternal(result, stream);
  }
  // Hands the answer to the result; false when the bytes are no envelope.
  bool DecodeAndProcessResponseEnvelope(const uint8_t* response, size_t size, MethodResult* result) const {
    return DecodeAndProcessResponseEnvelopeInternal(response, size, result);
  }

 protected:
  virtual std::unique_ptr<MethodCall> DecodeMethodCallInternal(const uint8_t* message, size_t size) const = 0;
  virtual std::unique_ptr<std::vector<uint8_t>> EncodeMethodCallInternal(const MethodCall& call) const = 0;
  virtual std::unique_ptr<std::vector<uint8_t>> EncodeSuccessEnvelopeInternal(const EncodableValue* result) const = 0;
  virtual std::unique_ptr<std::vector<uint8_t>> EncodeErrorEnvelopeInternal(const std::string& code,
                                                                            const std::string& message,
                                                                            const EncodableValue* details) const = 0;
  virtual bool DecodeAndProcessResponseEnvelopeInternal(const uint8_t* response, size_t size,
                                                        MethodResult* result) const = 0;
  virtual void WriteTextCallInternal(std::string_view method, std::optional<std::string_view> text,
                                     ByteStreamWriter* stream) const = 0;
  virtual void WriteSuccessEnvelopeInternal(const EncodableValue* result, ByteStreamWriter* stream) const = 0;
};

}  // namespace vantro
