// The variant value of Flutter's standard message codec, used for every argument and reply on the method channels.
// Standard library only. A value is immutable, so any thread may read it.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <type_traits>
#include <variant>

namespace vantro {

class CustomEncodableValue;  // of a codec extension
class EncodableMap;
class EncodableValue;
using EncodableList = std::span<const EncodableValue>;

template <class... Types>
struct EncodableTypes {
  static constexpr size_t kCount = sizeof...(Types);
  // Returns kCount if there is no such type.
  template <class T>
  static constexpr size_t IndexOf() {
    size_t index = 0;
    static_cast<void>(((std::is_same_v<T, Types> || (++index, false)) || ...));
    return index;
  }
};

// The alternatives and their types. Values of two different alternatives compare in this order.
// clang-format off
enum class EncodableKind : uint8_t {
  kNull, kBool, kInt32, kInt64, kDouble, kString, kByteList, kInt32List, kInt64List, kDoubleList, kList, kMap, kCustom,
  kFloatList
};
using EncodableAlternatives = EncodableTypes<
    std::monostate, bool, int32_t, int64_t, double, std::string_view, std::span<const uint8_t>,
    std::span<const int32_t>, std::span<const int64_t>, std::span<const double>, EncodableList, EncodableMap,
    const CustomEncodableValue*, std::span<const float>>;
// clang-format on

template <class T>
concept EncodableAlternative = EncodableAlternatives::IndexOf<T>()
< EncodableAlternatives::kCount;
template <EncodableAlternative T>
constexpr EncodableKind kEncodableKindOf{EncodableAlternatives::IndexOf<T>()};

// A handle of 16 bytes: the alternative, and either a number or a view of text, of a list or of a map. The handle owns
// nothing. What it views must outlive it; for an argument, the call does. An OwnedValue (value_arena.h) keeps a value
// together with its memory. Text and lists have at most 2^32 - 1 elements.
class EncodableValue {
 public:
  constexpr EncodableValue() = default;  // null
  // A Boolean or an integer. Types that only convert to one are not accepted.
  template <EncodableAlternative T>
  requires std::integral<T>
  explicit EncodableValue(T number) : kind_(kEncodableKindOf<T>), integer_(number) {}
  explicit EncodableValue(double number) : kind_(EncodableKind::kDouble), real_(number) {}
  // A literal is a string, not a Boolean.
  explicit EncodableValue(const char* text) : EncodableValue(std::string_view(text)) {}
  explicit EncodableValue(std::string_view text) : EncodableValue(EncodableKind::kString, text.data(), text.size()) {}
  // A list: a span, a vector or an array of numbers or values.
  template <class List>
  requires EncodableAlternative<std::span<const typename List::value_type>>
  explicit EncodableValue(const List& list)
      : EncodableValue(kEncodableKindOf<std::span<const typename List::value_type>>, list.data(), list.size()) {}
  explicit EncodableValue(EncodableMap map);
  explicit EncodableValue(const CustomEncodableValue* custom) : EncodableValue(EncodableKind::kCustom, custom, 0) {}
  // The given number of elements of a text, a list, or a map whose entries are sorted.
  EncodableValue(EncodableKind kind, const void* elements, size_t count)
      : kind_(kind), size_(static_cast<uint32_t>(count)), elements_(elements) {}

  EncodableKind kind() const { return kind_; }
  bool IsNull() const { return kind_ == EncodableKind::kNull; }
  // Returns nothing if the value is of another alternative. There is no conversion.
  template <EncodableAlternative T>
  std::optional<T> Get() const;

  // The number of elements of a text, a list or a map, and the address of the first.
  uint32_t size() const { return size_; }
  const void* elements() const { return elements_; }
  // The values of a list, or the keys and values of a map in turn, as they are in memory. Empty for any other value.
  EncodableList contents() const;

 private:
  EncodableKind kind_ = EncodableKind::kNull;
  uint32_t size_ = 0;
  union {
    int64_t integer_ = 0;
    double real_;
    const void* elements_;
  };
};
static_assert(sizeof(EncodableValue) == 16 && std::is_trivially_copyable_v<EncodableValue>);

// Returns a number below, equal to or above zero. The alternatives compare first, then the values, so a string is never
// equal to a number. A NaN comes after all other numbers and equals itself, so that a map stays sorted with any keys.
// Custom values compare by their addresses.
int Compare(const EncodableValue& left, const EncodableValue& right);
inline bool operator==(const EncodableValue& left, const EncodableValue& right) { return Compare(left, right) == 0; }

struct EncodableEntry {
  EncodableValue key;
  EncodableValue value;
};
static_assert(sizeof(EncodableEntry) == 2 * sizeof(EncodableValue), "an entry has the size of two values");

// Sorts by key. Of entries with equal keys, keeps the key of the first with the value of the last. Returns how many
// entries are left, at the front.
size_t SortEntries(EncodableEntry* entries, size_t count);

// The size in bytes of an element of a text, a list or a map.
inline constexpr uint8_t kElementSizes[] = {
    0, 0, 0, 0, 0, 1, 1, 4, 8, 8, sizeof(EncodableValue), sizeof(EncodableEntry), 0, 4};
constexpr size_t ElementSize(EncodableKind kind) { return kElementSizes[static_cast<size_t>(kind)]; }

// A view of entries sorted by their keys, with no two keys equal.
class EncodableMap : public std::span<const EncodableEntry> {
 public:
  using std::span<const EncodableEntry>::span;
  // Returns the value of the string key that equals the given one byte for byte, or null.
  const EncodableValue* Find(std::string_view key) const;
};

inline EncodableValue::EncodableValue(EncodableMap map) : EncodableValue(EncodableKind::kMap, map.data(), map.size()) {}

// A map on the stack of its user, from entries in any order. Borrows what its keys and values view.
template <size_t N>
class LocalMap {
 public:
  explicit LocalMap(const EncodableEntry (&entries)[N])
      : entries_(std::to_array(entries)), size_(SortEntries(entries_.data(), N)) {}
  // The value borrows the map.
  EncodableValue value() const { return EncodableValue(EncodableMap(entries_.data(), size_)); }

 private:
  std::array<EncodableEntry, N> entries_;
  size_t size_;
};

inline EncodableList EncodableValue::contents() const {
  if (kind_ != EncodableKind::kList && kind_ != EncodableKind::kMap) return {};
  return {static_cast<const EncodableValue*>(elements_), size_ * ElementSize(kind_) / sizeof(EncodableValue)};
}

template <EncodableAlternative T>
std::optional<T> EncodableValue::Get() const {
  if (kind_ != kEncodableKindOf<T>) return std::nullopt;
  if constexpr (std::is_same_v<T, double>) {
    return real_;
  } else if constexpr (std::is_arithmetic_v<T>) {
    return static_cast<T>(integer_);
  } else if constexpr (std::is_pointer_v<T>) {
    return static_cast<T>(elements_);
  } else {
    return T(static_cast<const typename T::value_type*>(elements_), size_);
  }
}

}  // namespace vantro
