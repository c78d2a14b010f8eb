// A second, plain decoder of the standard message codec: a tree of vectors, without regard to speed, and without shared
// code. Both must read the same bytes as the same value.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "flutter_host/encodable_value.h"

namespace vantro {

struct Plain {
  EncodableKind kind = EncodableKind::kNull;
  std::vector<uint8_t> bytes;   // of a number, a text or a typed list
  std::vector<Plain> children;  // of a list; of a map each key followed by its value
};

class PlainDecoder {
 public:
  PlainDecoder(const uint8_t* data, size_t size) : at_(data), begin_(data), end_(data + size) {}

  bool failed() const { return failed_; }
  bool isTooDeep() const { return isTooDeep_; }

  Plain Read() {
    using enum EncodableKind;
    static constexpr struct {
      EncodableKind kind;
      size_t size;  // of a scalar or an element
      size_t alignment;
    } kTypes[] = {{kNull, 0, 1},      {kBool, 0, 1},       {kBool, 0, 1},   {kInt32, 4, 1},    {kInt64, 8, 1},
                  {kString, 1, 1},    {kDouble, 8, 8},     {kString, 1, 1}, {kByteList, 1, 1}, {kInt32List, 4, 4},
                  {kInt64List, 8, 8}, {kDoubleList, 8, 8}, {kList, 0, 1},   {kMap, 0, 1},      {kFloatList, 4, 4}};
    const std::vector<uint8_t> typeByte = Take(1);
    const uint8_t type = failed_ ? 0 : typeByte[0];
    if (type >= std::size(kTypes)) return {};
    Plain value;
    value.kind = kTypes[type].kind;
    if (value.kind == kBool) {
      value.bytes = {static_cast<uint8_t>(type == 1)};
    } else if (value.kind == kList || value.kind == kMap) {
      ReadChildren(value);
    } else if (value.kind == kInt32 || value.kind == kInt64 || value.kind == kDouble) {
      Align(kTypes[type].alignment);
      value.bytes = Take(kTypes[type].size);
      value.bytes.resize(kTypes[type].size);
    } else if (value.kind != kNull) {
      const size_t count = ReadSize();
      Align(kTypes[type].alignment);
      value.bytes = Take(count * kTypes[type].size);
    }
    return value;
  }

 private:
  static constexpr int kDeepest = 256;

  // Returns nothing from the first call for which too few bytes are left.
  std::vector<uint8_t> Take(size_t count) {
    if (failed_ || count > static_cast<size_t>(end_ - at_)) {
      failed_ = true;
      return {};
    }
    at_ += count;
    return {at_ - count, at_};
  }

  void Align(size_t alignment) {
    while (!failed_ && static_cast<size_t>(at_ - begin_) % alignment != 0) Take(1);
  }

  size_t ReadSize() {
    std::vector<uint8_t> bytes = Take(1);
    if (failed_) return 0;
    if (bytes[0] >= 254) bytes = Take(bytes[0] == 254 ? 2 : 4);
    size_t size = 0;
    for (size_t at = bytes.size(); at > 0; --at) size = size * 256 + bytes[at - 1];
    return size;
  }

  void ReadChildren(Plain& value) {
    if (depth_ == kDeepest) {
      failed_ = isTooDeep_ = true;
      return;
    }
    ++depth_;
    const bool isMap = value.kind == EncodableKind::kMap;
    const size_t count = ReadSize();
    for (size_t read = 0; read < count && !failed_; ++read) {
      Plain first = Read();
      Plain second = isMap && !failed_ ? Read() : Plain();
      if (failed_) break;
      isMap ? PutEntry(value.children, std::move(first), std::move(second))
            : value.children.push_back(std::move(first));
    }
    --depth_;
  }

  static void PutEntry(std::vector<Plain>& entries, Plain&& key, Plain&& value) {
    size_t at = 0;
    while (at < entries.size() && Order(entries[at], key) < 0) at += 2;
    if (at < entries.size() && Order(entries[at], key) == 0) {
      entries[at + 1] = std::move(value);
      return;
    }
    const auto place = entries.begin() + static_cast<std::ptrdiff_t>(at);
    entries.insert(entries.insert(place, std::move(value)), std::move(key));
  }

  template <class T>
  static int OrderNumbers(const Plain& left, const Plain& right) {
    const size_t count = std::min(left.bytes.size(), right.bytes.size()) / sizeof(T);
    for (size_t at = 0; at < count; ++at) {
      T a, b;
      std::memcpy(&a, left.bytes.data() + at * sizeof(T), sizeof(T));
      std::memcpy(&b, right.bytes.data() + at * sizeof(T), sizeof(T));
      if (a != a || b != b) {  // NaN is sorted last
        if (const int order = (a != a) - (b != b)) return order;
      } else if (a != b) {
        return a < b ? -1 : 1;
      }
    }
    return (left.bytes.size() > right.bytes.size()) - (left.bytes.size() < right.bytes.size());
  }

  static int Order(const Plain& left, const Plain& right) {
    using enum EncodableKind;
    if (left.kind != right.kind) return left.kind < right.kind ? -1 : 1;
    switch (left.kind) {
      case kInt32:
      case kInt32List:
        return OrderNumbers<int32_t>(left, right);
      case kInt64:
      case kInt64List:
        return OrderNumbers<int64_t>(left, right);
      case kDouble:
      case kDoubleList:
        return OrderNumbers<double>(left, right);
      case kFloatList:
        return OrderNumbers<float>(left, right);
      case kList:
      case kMap:
        for (size_t at = 0; at < left.children.size() && at < right.children.size(); ++at) {
          if (const int order = Order(left.children[at], right.children[at])) return order;
        }
        return (left.children.size() > right.children.size()) - (left.children.size() < right.children.size());
      default:
        return OrderNumbers<uint8_t>(left, right);
    }
  }

  const uint8_t* at_;
  const uint8_t* begin_;
  const uint8_t* end_;
  int depth_ = 0;
  bool failed_ = false;
  bool isTooDeep_ = false;
};

}  // namespace vantro
