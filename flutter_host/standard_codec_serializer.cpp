#include "flutter_host/standard_codec_serializer.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <variant>
#include <vector>

namespace vantro {

namespace {

// The type byte before each value. Type 5 is only ever read.
enum Type : uint8_t {
  kNull = 0,
  kTrue = 1,
  kFalse = 2,
  kInt32 = 3,
  kInt64 = 4,
  kLargeInteger = 5,
  kFloat64 = 6,
  kString = 7,
  kUint8List = 8,
  kInt32List = 9,
  kInt64List = 10,
  kFloat64List = 11,
  kList = 12,
  kMap = 13,
  kFloat32List = 14,
};

// A size takes one byte below the first mark, which announces two bytes; the second mark announces four.
constexpr uint8_t kSizeOfTwoBytes = 254;
constexpr uint8_t kSizeOfFourBytes = 255;

bool IsExtended(const StandardCodecSerializer& serializer) {
  return typeid(serializer) != typeid(StandardCodecSerializer);
}

// Reads values in place. Instantiated for the buffer's reader, whose calls the compiler sees through, and for any
// other.
template <class Reader>
class Decoder {
 public:
  // With an extension, elements of containers are read through it.
  Decoder(const StandardCodecSerializer* extension, Reader& in) : extension_(extension), in_(in) {}

  // Into a value that is null.
  void ReadOfType(uint8_t type, EncodableValue& value) {
    switch (type) {
      case kNull:
        return;
      case kTrue:
        value.template emplace<bool>(true);
        return;
      case kFalse:
        value.template emplace<bool>(false);
        return;
      case kInt32:
        value.template emplace<int32_t>(ReadScalar<int32_t>());
        return;
      case kInt64:
        value.template emplace<int64_t>(ReadScalar<int64_t>());
        return;
      case kFloat64:
        in_.ReadAlignment(sizeof(double));
        value.template emplace<double>(ReadScalar<double>());
        return;
      case kLargeInteger:
      case kString:
        ReadText(value);
        return;
      case kUint8List:
        ReadArray<std::vector<uint8_t>>(value);
        return;
      case kInt32List:
        ReadArray<std::vector<int32_t>>(value);
        return;
      case kInt64List:
        ReadArray<std::vector<int64_t>>(value);
        return;
      case kFloat64List:
        ReadArray<std::vector<double>>(value);
        return;
      case kFloat32List:
        ReadArray<std::vector<float>>(value);
        return;
      case kList:
        ReadContainer<EncodableList>(value);
        return;
      case kMap:
        ReadContainer<EncodableMap>(value);
        return;
      default:
        std::fprintf(stderr, "Unknown type in StandardCodecSerializer::ReadValueOfType: %d\n", type);
    }
  }

 private:
  static constexpr bool kFromBuffer = std::is_same_v<Reader, ByteBufferStreamReader>;

  // A scalar that is cut short is zero, and fails the reader.
  template <class T>
  T ReadScalar() {
    T scalar{};
    if (in_.failed()) return scalar;
    if constexpr (kFromBuffer) {
      if (const uint8_t* bytes = in_.Take(sizeof scalar)) std::memcpy(&scalar, bytes, sizeof scalar);
    } else {
      in_.ReadBytes(reinterpret_cast<uint8_t*>(&scalar), sizeof scalar);
    }
    return scalar;
  }

  uint32_t ReadSize() {
    const uint8_t first = in_.ReadByte();
    if (first < kSizeOfTwoBytes) return first;
    return first == kSizeOfTwoBytes ? ReadScalar<uint16_t>() : ReadScalar<uint32_t>();
  }

  // Borrowed from the message; empty when it is cut short.
  std::string_view TakeText() {
    const size_t size = ReadSize();
    const uint8_t* bytes = size == 0 ? nullptr : in_.Take(size);
    return bytes ? std::string_view(reinterpret_cast<const char*>(bytes), size) : std::string_view();
  }

  void ReadText(EncodableValue& value) {
    if constexpr (kFromBuffer) {
      value.template emplace<std::string>(TakeText());
    } else {
      ReadArray<std::string>(value);
    }
  }

  // Typed lists: a run of equal elements, padded to their size.
  template <class Array>
  void ReadArray(EncodableValue& value) {
    constexpr size_t kElement = sizeof(typename Array::value_type);
    const size_t count = ReadSize();
    if constexpr (kElement > 1) {
      if (!in_.failed()) in_.ReadAlignment(kElement);
    }
    const size_t readable = in_.failed() ? 0 : count;
    if constexpr (kFromBuffer) {
      const uint8_t* bytes = readable == 0 ? nullptr : in_.Take(readable * kElement);
      const size_t taken = bytes ? readable : 0;
      if constexpr (kElement == 1) {
        value.template emplace<Array>(bytes, bytes + taken);
      } else {
        Array& array = value.template emplace<Array>(taken);
        if (taken != 0) std::memcpy(array.data(), bytes, taken * kElement);
      }
    } else {
      ReadArrayInBlocks(value.template emplace<Array>(), readable);
    }
  }

  // How much is left is unknown, so that a claimed length is believed a block at a time.
  template <class Array>
  void ReadArrayInBlocks(Array& array, size_t count) {
    constexpr size_t kBlock = 4096;
    using Element = typename Array::value_type;
    while (array.size() < count) {
      const size_t at = array.size();
      const size_t block = std::min(count - at, kBlock);
      array.resize(at + block);
      in_.ReadBytes(reinterpret_cast<uint8_t*>(array.data() + at), block * sizeof(Element));
      if (in_.failed()) return array.clear();
    }
  }

  template <class Container>
  void ReadContainer(EncodableValue& value) {
    if (!in_.EnterContainer()) {
      std::fputs("Value nested too deeply in StandardCodecSerializer::ReadValueOfType\n", stderr);
      return;
    }
    ReadElements(value.emplace<Container>());
    in_.LeaveContainer();
  }

  void ReadElements(EncodableList& list) {
    const size_t count = ReadSize();
    list.reserve(in_.GrantElements(count));
    while (list.size() < count && !in_.failed()) ReadInto(list.emplace_back());
    if (in_.failed() && !list.empty()) list.pop_back();
  }

  void ReadElements(EncodableMap& map) {
    const size_t count = ReadSize();
    for (size_t read = 0; read < count; ++read) {
      const auto entry = ReadKey(map);
      if (in_.failed()) return;
      ReadInto(entry->second);
      if (in_.failed()) {
        map.erase(entry);
        return;
      }
    }
  }

  // The entry of the key that comes next, with null as its value; none when the reader fails.
  EncodableMap::iterator ReadKey(EncodableMap& map) {
    const uint8_t type = in_.ReadByte();
    if constexpr (kFromBuffer) {
      // Nearly every key is a string, and is made where it stays.
      if (type == kString && !extension_) {
        const std::string_view text = TakeText();
        return in_.failed() ? map.end() : MakeEntry(map, std::in_place_type<std::string>, text);
      }
    }
    EncodableValue key;
    ReadElementOfType(type, key);
    return in_.failed() ? map.end() : MakeEntry(map, std::move(key));
  }

  // Tries the end first: a sender that keeps its maps in order sends their keys in order.
  template <class... Key>
  static EncodableMap::iterator MakeEntry(EncodableMap& map, Key&&... key) {
    const size_t size = map.size();
    const auto entry = map.emplace_hint(map.end(), std::piecewise_construct,
                                        std::forward_as_tuple(std::forward<Key>(key)...), std::tuple());
    if (map.size() == size) entry->second = EncodableValue();
    return entry;
  }

  void ReadInto(EncodableValue& value) { ReadElementOfType(in_.ReadByte(), value); }

  void ReadElementOfType(uint8_t type, EncodableValue& value) {
    if (extension_) {
      value = extension_->ReadValueOfType(type, &in_);
    } else {
      ReadOfType(type, value);
    }
  }

  const StandardCodecSerializer* extension_;
  Reader& in_;
};

template <class Writer>
class Encoder {
 public:
  Encoder(const StandardCodecSerializer* extension, Writer& out) : extension_(extension), out_(out) {}

  void Write(const EncodableValue& value) {
    std::visit([this](const auto& alternative) { this->WriteAlternative(alternative); }, value.variant());
  }

  void WriteText(std::string_view text) { WriteArray(kString, text); }

 private:
  void WriteAlternative(const std::string& text) { WriteText(text); }
  void WriteAlternative(std::monostate) { out_.WriteByte(kNull); }
  void WriteAlternative(bool value) { out_.WriteByte(value ? kTrue : kFalse); }
  void WriteAlternative(int32_t value) { WriteScalar(kInt32, value); }
  void WriteAlternative(int64_t value) { WriteScalar(kInt64, value); }
  void WriteAlternative(double value) {
    out_.WriteByte(kFloat64);
    out_.WriteAlignment(sizeof value);
    WriteRaw(&value, sizeof value);
  }
  void WriteAlternative(const std::vector<uint8_t>& list) { WriteArray(kUint8List, list); }
  void WriteAlternative(const std::vector<int32_t>& list) { WriteArray(kInt32List, list); }
  void WriteAlternative(const std::vector<int64_t>& list) { WriteArray(kInt64List, list); }
  void WriteAlternative(const std::vector<double>& list) { WriteArray(kFloat64List, list); }
  void WriteAlternative(const std::vector<float>& list) { WriteArray(kFloat32List, list); }
  void WriteAlternative(const EncodableList& list) {
    WriteTypeAndSize(kList, list.size());
    for (const EncodableValue& element : list) WriteElement(element);
  }
  void WriteAlternative(const EncodableMap& map) {
    WriteTypeAndSize(kMap, map.size());
    for (const auto& [key, value] : map) {
      WriteElement(key);
      WriteElement(value);
    }
  }
  void WriteAlternative(const CustomEncodableValue&) {
    std::fputs("Unhandled custom type in StandardCodecSerializer::WriteValue.\n", stderr);
    std::fputs("Custom types require codec extensions.\n", stderr);
  }

  void WriteElement(const EncodableValue& value) {
    if (extension_) {
      extension_->WriteValue(value, &out_);
    } else {
      Write(value);
    }
  }

  template <class Array>
  void WriteArray(uint8_t type, const Array& array) {
    constexpr size_t kElement = sizeof(typename Array::value_type);
    WriteTypeAndSize(type, array.size());
    if constexpr (kElement > 1) out_.WriteAlignment(kElement);
    if (!array.empty()) WriteRaw(array.data(), array.size() * kElement);
  }

  template <class T>
  void WriteScalar(uint8_t type, T value) {
    uint8_t bytes[1 + sizeof value] = {type};
    std::memcpy(bytes + 1, &value, sizeof value);
    out_.WriteBytes(bytes, sizeof bytes);
  }

  void WriteTypeAndSize(uint8_t type, size_t size) {
    uint8_t bytes[6] = {type};
    if (size < kSizeOfTwoBytes) {
      bytes[1] = static_cast<uint8_t>(size);
      out_.WriteBytes(bytes, 2);
    } else if (size <= UINT16_MAX) {
      const uint16_t two = static_cast<uint16_t>(size);
      bytes[1] = kSizeOfTwoBytes;
      std::memcpy(bytes + 2, &two, sizeof two);
      out_.WriteBytes(bytes, 4);
    } else {
      const uint32_t four = static_cast<uint32_t>(size);
      bytes[1] = kSizeOfFourBytes;
      std::memcpy(bytes + 2, &four, sizeof four);
      out_.WriteBytes(bytes, 6);
    }
  }

  void WriteRaw(const void* data, size_t length) { out_.WriteBytes(static_cast<const uint8_t*>(data), length); }

  const StandardCodecSerializer* extension_;
  Writer& out_;
};

}  // namespace

const StandardCodecSerializer& StandardCodecSerializer::GetInstance() {
  // Never destroyed: libvlc's threads may still send while the process ends.
  static const StandardCodecSerializer* const instance = new StandardCodecSerializer;
  return *instance;
}

EncodableValue StandardCodecSerializer::ReadValueOfType(uint8_t type, ByteStreamReader* stream) const {
  const StandardCodecSerializer* extension = IsExtended(*this) ? this : nullptr;
  EncodableValue value;
  if (ByteBufferStreamReader* buffer = stream->AsBuffer()) {
    Decoder<ByteBufferStreamReader>(extension, *buffer).ReadOfType(type, value);
  } else {
    Decoder<ByteStreamReader>(extension, *stream).ReadOfType(type, value);
  }
  return value;
}

void StandardCodecSerializer::WriteValue(const EncodableValue& value, ByteStreamWriter* stream) const {
  const StandardCodecSerializer* extension = IsExtended(*this) ? this : nullptr;
  if (ByteBufferStreamWriter* buffer = stream->AsBuffer()) {
    Encoder<ByteBufferStreamWriter>(extension, *buffer).Write(value);
  } else {
    Encoder<ByteStreamWriter>(extension, *stream).Write(value);
  }
}

void StandardCodecSerializer::WriteText(std::string_view text, ByteStreamWriter* stream) {
  if (ByteBufferStreamWriter* buffer = stream->AsBuffer()) {
    Encoder<ByteBufferStreamWriter>(nullptr, *buffer).WriteText(text);
  } else {
    Encoder<ByteStreamWriter>(nullptr, *stream).WriteText(text);
  }
}

}  // namespace vantro
