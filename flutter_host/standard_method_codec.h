// The standard method codec (Flutter's published StandardMethodCodec format).
#pragma once

#include "flutter_host/method_codec.h"

namespace vantro {

class StandardCodecSerializer;

class StandardMethodCodec : public MethodCodec {
 public:
  // Returns the only instance of a serializer, made on first use and kept until the process ends. Null means the plain
  // StandardCodecSerializer.
  static const StandardMethodCodec& GetInstance(const StandardCodecSerializer* serializer = nullptr);

  explicit StandardMethodCodec(const StandardCodecSerializer* serializer) : serializer_(serializer) {}

  bool DecodeMethodCall(const uint8_t* message, size_t size, MethodCall* call) const override;
  void EncodeMethodCall(const MethodCall& call, ByteVector* message) const override;
  void EncodeSuccessEnvelope(const EncodableValue& value, ByteVector* envelope) const override;
  void EncodeErrorEnvelope(std::string_view code, std::string_view message, const EncodableValue& details,
                           ByteVector* envelope) const override;
  bool DecodeAndProcessResponseEnvelope(const uint8_t* response, size_t size, MethodResult* result) const override;

 private:
  const StandardCodecSerializer* serializer_;
};

}  // namespace vantro
