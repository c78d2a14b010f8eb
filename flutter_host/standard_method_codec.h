// The standard method codec (Flutter's published StandardMethodCodec format).
#pragma once

#include "flutter_host/method_codec.h"

namespace vantro {

class StandardCodecSerializer;

class StandardMethodCodec : public MethodCodec {
 public:
  // The one instance of a serializer, made on first request and kept for the life of the process. A null serializer
  // means StandardCodecSerializer itself.
  static const StandardMethodCodec& GetInstance(const StandardCodecSerializer* serializer = nullptr);

  explicit StandardMethodCodec(const StandardCodecSerializer* serializer) : serializer_(serializer) {}

 protected:
  std::unique_ptr<MethodCall> DecodeMethodCallInternal(const uint8_t* message, size_t size) const override;
  std::unique_ptr<std::vector<uint8_t>> EncodeMethodCallInternal(const MethodCall& call) const override;
  std::unique_ptr<std::vector<uint8_t>> EncodeSuccessEnvelopeInternal(const EncodableValue* result) const override;
  std::unique_ptr<std::vector<uint8_t>> EncodeErrorEnvelopeInternal(const std::string& code,
                                                                    const std::string& message,
                                                                    const EncodableValue* details) const override;
  bool DecodeAndProcessResponseEnvelopeInternal(const uint8_t* response, size_t size,
                                                MethodResult* result) const override;
  void WriteTextCallInternal(std::string_view method, std::optional<std::string_view> text,
                             ByteStreamWriter* stream) const override;
  void WriteSuccessEnvelopeInternal(const EncodableValue* result, ByteStreamWriter* stream) const override;

 private:
  const StandardCodecSerializer* serializer_;
};

}  // namespace vantro
