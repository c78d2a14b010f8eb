#include "flutter_host/encodable_value.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace vantro {

namespace {

// Overloads for each shape of alternative.
bool Less(std::monostate, std::monostate) { return false; }
bool Less(const std::string& left, const std::string& right) { return left < right; }
bool Less(const CustomEncodableValue&, const CustomEncodableValue&) { return false; }
bool Less(const EncodableValue& left, const EncodableValue& right) { return EncodableLess()(left, right); }

template <class T>
requires std::is_arithmetic_v<T>
bool Less(T left, T right) {
  if constexpr (std::is_floating_point_v<T>) {
    if (std::isnan(left) || std::isnan(right)) return !std::isnan(left) && std::isnan(right);
  }
  return left < right;
}

bool Less(const EncodableMap::value_type& left, const EncodableMap::value_type& right) {
  if (Less(left.first, right.first)) return true;
  return !Less(right.first, left.first) && Less(left.second, right.second);
}

template <class Container>
requires requires(const Container& container) { container.begin(); }
bool Less(const Container& left, const Container& right) {
  return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                      [](const auto& a, const auto& b) { return Less(a, b); });
}

}  // namespace

bool encodable_internal::LessWithinAlternative(const EncodableValue& left, const EncodableValue& right) {
  return std::visit(
      [&right](const auto& value) {
        return Less(value, *std::get_if<std::decay_t<decltype(value)>>(&right.variant()));
      },
      left.variant());
}

}  // namespace vantro
