#include "flutter_host/standard_method_codec.h"

#include <map>
#include <mutex>

#include "common/standard_error.h"
#include "flutter_host/standard_codec_serializer.h"

namespace vantro {

namespace {

// The first byte of an answer.
constexpr uint8_t kSuccessEnvelope = 0;
constexpr uint8_t kErrorEnvelope = 1;

}  // namespace

const StandardMethodCodec& StandardMethodCodec::GetInstance(const StandardCodecSerializer* serializer) {
  // Never destroyed, because libvlc's threads may still send while the process ends.
  static std::mutex& guard = *new std::mutex;
  static auto& instances = *new std::map<const StandardCodecSerializer*, StandardMethodCodec>;
  if (!serializer) serializer = &StandardCodecSerializer::GetInstance();
  const std::lock_guard lock(guard);
  return instances.try_emplace(serializer, serializer).first->second;
}

bool StandardMethodCodec::DecodeMethodCall(const uint8_t* message, size_t size, MethodCall* call) const {
  ByteBufferStreamReader reader(message, size, &call->MemoryFor(size));
  const auto name = serializer_->ReadValue(&reader).Get<std::string_view>();
  if (!name) {
    ReportLine("Invalid method call; method name is not a string.");
    return false;
  }
  call->Set(*name, serializer_->ReadValue(&reader));
  return !reader.isRefused();
}

void StandardMethodCodec::EncodeMethodCall(const MethodCall& call, ByteVector* message) const {
  ByteBufferStreamWriter writer(message);
  serializer_->WriteValue(EncodableValue(call.method_name()), &writer);
  serializer_->WriteValue(call.arguments(), &writer);
}

void StandardMethodCodec::EncodeSuccessEnvelope(const EncodableValue& value, ByteVector* envelope) const {
  ByteBufferStreamWriter writer(envelope);
  writer.WriteByte(kSuccessEnvelope);
  serializer_->WriteValue(value, &writer);
}

void StandardMethodCodec::EncodeErrorEnvelope(std::string_view code, std::string_view message,
                                              const EncodableValue& details, ByteVector* envelope) const {
  ByteBufferStreamWriter writer(envelope);
  writer.WriteByte(kErrorEnvelope);
  serializer_->WriteValue(EncodableValue(code), &writer);
  serializer_->WriteValue(message.empty() ? EncodableValue() : EncodableValue(message), &writer);
  serializer_->WriteValue(details, &writer);
}

bool StandardMethodCodec::DecodeAndProcessResponseEnvelope(const uint8_t* response, size_t size,
                                                           MethodResult* result) const {
  LocalArena memory;
  ByteBufferStreamReader reader(response, size, &memory);
  const uint8_t kind = reader.ReadByte();
  if (reader.failed() || kind > kErrorEnvelope) return false;
  const EncodableValue first = serializer_->ReadValue(&reader);
  if (kind == kSuccessEnvelope) {
    if (!reader.isRefused()) result->Success(first);
    return !reader.isRefused();
  }
  const EncodableValue message = serializer_->ReadValue(&reader);
  const EncodableValue details = serializer_->ReadValue(&reader);
  if (reader.isRefused()) return false;
  result->Error(first.Get<std::string_view>().value_or(""), message.Get<std::string_view>().value_or(""), details);
  return true;
}

}  // namespace vantro
