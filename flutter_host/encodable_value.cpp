#include "flutter_host/encodable_value.h"

#include <cmath>
#include <type_traits>

namespace vantro {

namespace {

// Below, at or above zero. One walk tells all three: two walks, for "less" and "greater", would double at each level of
// maps that are keys of maps, and a message of some hundred bytes could hold up its reader for hours.
int Compare(std::monostate, std::monostate) { return 0; }
int Compare(const std::string& left, const std::string& right) { return left.compare(right); }
int Compare(const CustomEncodableValue&, const CustomEncodableValue&) { return 0; }
int Compare(const EncodableValue& left, const EncodableValue& right);

template <class T>
requires std::is_arithmetic_v<T>
int Compare(T left, T right) {
  if constexpr (std::is_floating_point_v<T>) {
    if (std::isnan(left) || std::isnan(right)) return std::isnan(left) - std::isnan(right);
  }
  return (left > right) - (left < right);
}

int Compare(const EncodableMap::value_type& left, const EncodableMap::value_type& right) {
  const int keys = Compare(left.first, right.first);
  return keys != 0 ? keys : Compare(left.second, right.second);
}

template <class Container>
requires requires(const Container& container) { container.begin(); }
int Compare(const Container& left, const Container& right) {
  auto leftAt = left.begin();
  auto rightAt = right.begin();
  for (; leftAt != left.end() && rightAt != right.end(); ++leftAt, ++rightAt) {
    if (const int elements = Compare(*leftAt, *rightAt)) return elements;
  }
  return (leftAt != left.end()) - (rightAt != right.end());
}

int Compare(const EncodableValue& left, const EncodableValue& right) {
  if (left.index() != right.index()) return left.index() < right.index() ? -1 : 1;
  return std::visit(
      [&right](const auto& value) {
        return Compare(value, *std::get_if<std::decay_t<decltype(value)>>(&right.variant()));
      },
      left.variant());
}

}  // namespace

bool encodable_internal::LessWithinAlternative(const EncodableValue& left, const EncodableValue& right) {
  return Compare(left, right) < 0;
}

}  // namespace vantro
