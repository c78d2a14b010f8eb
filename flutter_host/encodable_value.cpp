#include "flutter_host/encodable_value.h"

#include <algorithm>
#include <cmath>

namespace vantro {

namespace {

constexpr size_t kFewEntries = 24;

int CompareEach(const EncodableValue& left, const EncodableValue& right) { return Compare(left, right); }
int CompareEach(std::string_view left, std::string_view right) { return left.compare(right); }
template <class T>
requires std::is_scalar_v<T>
int CompareEach(T left, T right) {
  if constexpr (std::is_floating_point_v<T>) {
    if (std::isnan(left) || std::isnan(right)) return std::isnan(left) - std::isnan(right);
  }
  return (left > right) - (left < right);
}
template <class Element>
int CompareEach(std::span<const Element> left, std::span<const Element> right) {
  for (size_t at = 0; at < left.size() && at < right.size(); ++at) {
    if (const int elements = CompareEach(left[at], right[at])) return elements;
  }
  return CompareEach(left.size(), right.size());
}

template <class T>
int CompareAs(const EncodableValue& left, const EncodableValue& right) {
  if constexpr (std::is_same_v<T, std::monostate>) {
    return 0;
  } else if constexpr (std::is_same_v<T, EncodableMap>) {
    return CompareEach(left.contents(), right.contents());
  } else {
    return CompareEach(*left.Get<T>(), *right.Get<T>());
  }
}

// Compares two values of the same alternative.
template <class... Types>
int CompareAlike(EncodableTypes<Types...>, const EncodableValue& left, const EncodableValue& right) {
  static constexpr int (*kComparisons[])(const EncodableValue&, const EncodableValue&) = {CompareAs<Types>...};
  return kComparisons[static_cast<size_t>(left.kind())](left, right);
}

// Nearly every key is a string, and most differ in their first character.
bool IsKeyLess(const EncodableEntry& left, const EncodableEntry& right) {
  const auto leftText = left.key.Get<std::string_view>();
  const auto rightText = right.key.Get<std::string_view>();
  if (!leftText || !rightText) return Compare(left.key, right.key) < 0;
  if (leftText->empty() || rightText->empty() || leftText->front() == rightText->front()) return *leftText < *rightText;
  return static_cast<uint8_t>(leftText->front()) < static_cast<uint8_t>(rightText->front());
}

// Faster than a merge sort for the few entries of most maps, and needs no extra memory.
void InsertionSort(EncodableEntry* entries, size_t count) {
  for (EncodableEntry* entry = entries; entry != entries + count; ++entry) {
    std::rotate(std::upper_bound(entries, entry, *entry, IsKeyLess), entry, entry + 1);
  }
}

}  // namespace

// One walk gives less, equal or greater. Two walks, for "less" and "greater", would double the time at each level of
// maps that are keys of maps. A message of a few hundred bytes could then block its reader for hours.
int Compare(const EncodableValue& left, const EncodableValue& right) {
  if (left.kind() != right.kind()) return left.kind() < right.kind() ? -1 : 1;
  return CompareAlike(EncodableAlternatives(), left, right);
}

size_t SortEntries(EncodableEntry* entries, size_t count) {
  // A sender with sorted maps sends the keys in order.
  size_t inOrder = 1;
  while (inOrder < count && IsKeyLess(entries[inOrder - 1], entries[inOrder])) ++inOrder;
  if (inOrder >= count) return count;
  if (count <= kFewEntries) {
    InsertionSort(entries, count);
  } else {
    std::stable_sort(entries, entries + count, IsKeyLess);
  }
  size_t kept = 1;
  for (size_t at = 1; at < count; ++at) {
    if (IsKeyLess(entries[kept - 1], entries[at])) {
      entries[kept++] = entries[at];
    } else {
      entries[kept - 1].value = entries[at].value;
    }
  }
  return kept;
}

// A linear search: the maps are small, and a binary search would compare as often.
const EncodableValue* EncodableMap::Find(std::string_view key) const {
  for (const EncodableEntry& entry : *this) {
    if (entry.key.Get<std::string_view>() == key) return &entry.value;
  }
  return nullptr;
}

}  // namespace vantro
