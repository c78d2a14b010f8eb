#include "flutter_host/standard_codec_serializer.h"

#include <cstring>
#include <string>
#include <type_traits>

#include "common/standard_error.h"

namespace vantro {

namespace {

// The type byte before each value.
enum Type : uint8_t { kNull, kTrue, kFalse, kInt32, kInt64, kFloat64 = 6, kList = 12, kMap, kLastType };

// By type byte. Type 5, a large integer, is only read. Types 7 to 11 and 14 are a string and the typed lists.
using Kind = EncodableKind;
constexpr Kind kKindOf[] = {Kind::kNull,      Kind::kBool,       Kind::kBool,   Kind::kInt32,    Kind::kInt64,
                            Kind::kString,    Kind::kDouble,     Kind::kString, Kind::kByteList, Kind::kInt32List,
                            Kind::kInt64List, Kind::kDoubleList, Kind::kList,   Kind::kMap,      Kind::kFloatList};
// The type bytes by alternative, for a string and the typed lists. The other places are not used.
constexpr uint8_t kArrayTypeOf[] = {0, 0, 0, 0, 0, 7, 8, 9, 10, 11, 0, 0, 0, 14};

// A size below the first mark takes one byte. The first mark means that two bytes follow, the second that four follow.
constexpr uint8_t kSizeOfTwoBytes = 254;
constexpr uint8_t kSizeOfFourBytes = 255;
constexpr size_t kLongestHead = 6;  // a type, a mark and a size

// Reads values of the standard's types.
class Decoder {
 public:
  Decoder(const StandardCodecSerializer& serializer, ByteBufferStreamReader& in) : serializer_(serializer), in_(in) {}

  // A value that is not a list or a map is read without a call, which saves a third of the time of a message.
  EncodableValue ReadOfType(uint8_t type) {
    return type == kList || type == kMap ? ReadContainer(kKindOf[type]) : ReadLeaf(type);
  }

 private:
  EncodableValue ReadLeaf(uint8_t type) {
    switch (type) {
      case kNull:
        return EncodableValue();
      case kTrue:
        return EncodableValue(true);
      case kFalse:
        return EncodableValue(false);
      case kInt32:
        return EncodableValue(ReadScalar<int32_t>());
      case kInt64:
        return EncodableValue(ReadScalar<int64_t>());
      case kFloat64:
        return EncodableValue(in_.Align(sizeof(double)) ? ReadScalar<double>() : 0.0);
      default:
        return ReadArray(kKindOf[type]);
    }
  }

  // An incomplete scalar is zero and fails the reader.
  template <class T>
  T ReadScalar() {
    T scalar{};
    if (const uint8_t* bytes = in_.Take(sizeof scalar)) std::memcpy(&scalar, bytes, sizeof scalar);
    return scalar;
  }

  size_t ReadSize() {
    const uint8_t first = in_.ReadByte();
    if (first < kSizeOfTwoBytes) return first;
    return first == kSizeOfTwoBytes ? ReadScalar<uint16_t>() : ReadScalar<uint32_t>();
  }

  // An array of elements of one size, padded to that size. Empty if it is incomplete.
  EncodableValue ReadArray(EncodableKind kind) {
    const size_t count = ReadSize();
    const bool isReadable = !in_.failed() && in_.Align(ElementSize(kind));
    const uint8_t* const elements = isReadable ? in_.Take(count * ElementSize(kind)) : nullptr;
    return {kind, elements, elements ? count : 0};
  }

  EncodableValue ReadContainer(EncodableKind kind) {
    if (!in_.Enter()) return EncodableValue();
    const size_t valuesEach = ElementSize(kind) / sizeof(EncodableValue);
    const size_t claimed = ReadSize() * valuesEach;
    EncodableValue* const values = in_.MakeRoom(claimed);
    size_t count = ReadValues(claimed, values) / valuesEach;
    if (kind == EncodableKind::kMap) count = SortEntries(reinterpret_cast<EncodableEntry*>(values), count);
    in_.Leave();
    return {kind, values, count};
  }

  // The keys and values of a map alternate. Returns how many values were read completely.
  size_t ReadValues(size_t claimed, EncodableValue* values) {
    size_t read = 0;
    while (read < claimed && !in_.failed()) {
      const uint8_t type = in_.ReadByte();
      const EncodableValue value = type <= kLastType ? ReadOfType(type) : serializer_.ReadValueOfType(type, &in_);
      if (!in_.failed()) values[read++] = value;
    }
    return read;
  }

  const StandardCodecSerializer& serializer_;
  ByteBufferStreamReader& in_;
};

// Writes values of the standard's alternatives.
class Encoder {
 public:
  Encoder(const StandardCodecSerializer& serializer, ByteBufferStreamWriter& out)
      : serializer_(serializer), out_(out) {}

  void Write(const EncodableValue& value) {
    switch (value.kind()) {
      case EncodableKind::kNull:
        return out_.WriteByte(kNull);
      case EncodableKind::kBool:
        return out_.WriteByte(*value.Get<bool>() ? kTrue : kFalse);
      case EncodableKind::kInt32:
        return WriteScalar(kInt32, *value.Get<int32_t>());
      case EncodableKind::kInt64:
        return WriteScalar(kInt64, *value.Get<int64_t>());
      case EncodableKind::kDouble:
        return WriteScalar(kFloat64, *value.Get<double>());
      case EncodableKind::kList:
        return WriteContainer(kList, value);
      case EncodableKind::kMap:
        return WriteContainer(kMap, value);
      case EncodableKind::kCustom:
        return serializer_.WriteValue(value, &out_);
      default:
        return WriteArray(value);
    }
  }

 private:
  template <class T>
  void WriteScalar(uint8_t type, T scalar) {
    out_.WriteByte(type);
    if constexpr (std::is_floating_point_v<T>) out_.WriteAlignment(sizeof scalar);
    out_.WriteBytes(reinterpret_cast<const uint8_t*>(&scalar), sizeof scalar);
  }

  void WriteContainer(uint8_t type, const EncodableValue& container) {
    WriteHead(type, container.size(), 0);
    for (const EncodableValue& value : container.contents()) Write(value);
  }

  void WriteArray(const EncodableValue& value) {
    const size_t elementSize = ElementSize(value.kind());
    const size_t length = value.size() * elementSize;
    WriteHead(kArrayTypeOf[static_cast<size_t>(value.kind())], value.size(), length + elementSize);
    out_.WriteAlignment(static_cast<uint8_t>(elementSize));
    out_.WriteBytes(static_cast<const uint8_t*>(value.elements()), length);
  }

  // Writes the type and the size, and makes room for what follows.
  void WriteHead(uint8_t type, size_t size, size_t room) {
    uint8_t* at = out_.bytes().Room(kLongestHead + room);
    *at++ = type;
    size_t sizeBytes = 1;
    if (size >= kSizeOfTwoBytes) {
      sizeBytes = size <= UINT16_MAX ? 2 : 4;
      *at++ = sizeBytes == 2 ? kSizeOfTwoBytes : kSizeOfFourBytes;
    }
    std::memcpy(at, &size, sizeBytes);
    out_.bytes().AddUntil(at + sizeBytes);
  }

  const StandardCodecSerializer& serializer_;
  ByteBufferStreamWriter& out_;
};

}  // namespace

const StandardCodecSerializer& StandardCodecSerializer::GetInstance() {
  // Never destroyed, because libvlc's threads may still send while the process ends.
  static const StandardCodecSerializer* const instance = new StandardCodecSerializer;
  return *instance;
}

EncodableValue StandardCodecSerializer::ReadValueOfType(uint8_t type, ByteBufferStreamReader* stream) const {
  if (type <= kLastType) return Decoder(*this, *stream).ReadOfType(type);
  ReportLine("Unknown type in StandardCodecSerializer::ReadValueOfType: ", std::to_string(type));
  return EncodableValue();
}

void StandardCodecSerializer::WriteValue(const EncodableValue& value, ByteBufferStreamWriter* stream) const {
  if (value.kind() != EncodableKind::kCustom) return Encoder(*this, *stream).Write(value);
  ReportLine("Unhandled custom type in StandardCodecSerializer::WriteValue.");
  ReportLine("Custom types require codec extensions.");
}

}  // namespace vantro
