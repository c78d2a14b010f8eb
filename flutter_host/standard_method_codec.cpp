#include "flutter_host/standard_method_codec.h"

#include <cstdio>
#include <map>
#include <mutex>
#include <utility>

#include "flutter_host/byte_stream.h"
#include "flutter_host/standard_codec_serializer.h"

namespace vantro {

namespace {

// The first byte of an answer.
constexpr uint8_t kSuccessEnvelope = 0;
constexpr uint8_t kErrorEnvelope = 1;

// Room for a method's name and a short text, so that the buffer of most messages never grows.
constexpr size_t kInitialCapacity = 128;

// How much a value takes as far as can be told at a glance: exact for what is large in one piece.
size_t SizeHint(const EncodableValue& value) {
  if (const auto* bytes = std::get_if<std::vector<uint8_t>>(&value)) return bytes->size();
  if (const auto* text = std::get_if<std::string>(&value)) return text->size();
  return 0;
}

// A value that may be absent goes out as null. By reference: a relayed value may be large.
const EncodableValue& OrNull(const EncodableValue* value) {
  static const EncodableValue null;
  return value ? *value : null;
}

std::unique_ptr<std::vector<uint8_t>> MakeBuffer(size_t hint) {
  auto buffer = std::make_unique<std::vector<uint8_t>>();
  buffer->reserve(kInitialCapacity + hint);
  return buffer;
}

std::string TextOrEmpty(EncodableValue&& value) {
  std::string* text = std::get_if<std::string>(&value);
  return text ? std::move(*text) : std::string();
}

}  // namespace

const StandardMethodCodec& StandardMethodCodec::GetInstance(const StandardCodecSerializer* serializer) {
  // Never destroyed: libvlc's threads may still send while the process ends.
  static std::mutex& guard = *new std::mutex;
  static auto& instances = *new std::map<const StandardCodecSerializer*, StandardMethodCodec>;
  if (!serializer) serializer = &StandardCodecSerializer::GetInstance();
  const std::lock_guard lock(guard);
  return instances.try_emplace(serializer, serializer).first->second;
}

std::unique_ptr<MethodCall> StandardMethodCodec::DecodeMethodCallInternal(const uint8_t* message, size_t size) const {
  ByteBufferStreamReader reader(message, size);
  EncodableValue name = serializer_->ReadValue(&reader);
  std::string* text = std::get_if<std::string>(&name);
  if (!text) {
    std::fputs("Invalid method call; method name is not a string.\n", stderr);
    return nullptr;
  }
  auto arguments = std::make_unique<EncodableValue>(serializer_->ReadValue(&reader));
  return std::make_unique<MethodCall>(std::move(*text), std::move(arguments));
}

std::unique_ptr<std::vector<uint8_t>> StandardMethodCodec::EncodeMethodCallInternal(const MethodCall& call) const {
  const EncodableValue* arguments = call.arguments();
  auto message = MakeBuffer(call.method_name().size() + (arguments ? SizeHint(*arguments) : 0));
  ByteBufferStreamWriter writer(message.get());
  StandardCodecSerializer::WriteText(call.method_name(), &writer);
  serializer_->WriteValue(OrNull(arguments), &writer);
  return message;
}

std::unique_ptr<std::vector<uint8_t>> StandardMethodCodec::EncodeSuccessEnvelopeInternal(
    const EncodableValue* result) const {
  auto envelope = MakeBuffer(result ? SizeHint(*result) : 0);
  ByteBufferStreamWriter writer(envelope.get());
  WriteSuccessEnvelopeInternal(result, &writer);
  return envelope;
}

std::unique_ptr<std::vector<uint8_t>> StandardMethodCodec::EncodeErrorEnvelopeInternal(
    const std::string& code, const std::string& message, const EncodableValue* details) const {
  auto envelope = MakeBuffer(code.size() + message.size() + (details ? SizeHint(*details) : 0));
  ByteBufferStreamWriter writer(envelope.get());
  writer.WriteByte(kErrorEnvelope);
  StandardCodecSerializer::WriteText(code, &writer);
  if (message.empty()) {
    serializer_->WriteValue(OrNull(nullptr), &writer);
  } else {
    StandardCodecSerializer::WriteText(message, &writer);
  }
  serializer_->WriteValue(OrNull(details), &writer);
  return envelope;
}

bool StandardMethodCodec::DecodeAndProcessResponseEnvelopeInternal(const uint8_t* response, size_t size,
                                                                   MethodResult* result) const {
  ByteBufferStreamReader reader(response, size);
  const uint8_t kind = reader.ReadByte();
  if (reader.failed()) return false;
  if (kind == kSuccessEnvelope) {
    const EncodableValue value = serializer_->ReadValue(&reader);
    value.IsNull() ? result->Success() : result->Success(value);
    return true;
  }
  if (kind != kErrorEnvelope) return false;
  const std::string code = TextOrEmpty(serializer_->ReadValue(&reader));
  const std::string message = TextOrEmpty(serializer_->ReadValue(&reader));
  const EncodableValue details = serializer_->ReadValue(&reader);
  details.IsNull() ? result->Error(code, message) : result->Error(code, message, details);
  return true;
}

void StandardMethodCodec::WriteTextCallInternal(std::string_view method, std::optional<std::string_view> text,
                                                ByteStreamWriter* stream) const {
  StandardCodecSerializer::WriteText(method, stream);
  if (!text) {
    serializer_->WriteValue(OrNull(nullptr), stream);
  } else if (serializer_ == &StandardCodecSerializer::GetInstance()) {
    StandardCodecSerializer::WriteText(*text, stream);
  } else {
    serializer_->WriteValue(EncodableValue(std::string(*text)), stream);  // an extension sees every value
  }
}

void StandardMethodCodec::WriteSuccessEnvelopeInternal(const EncodableValue* result, ByteStreamWriter* stream) const {
  stream->WriteByte(kSuccessEnvelope);
  serializer_->WriteValue(OrNull(result), stream);
}

}  // namespace vantro
