// The variant value of Flutter's standard message codec: every argument and reply on the method channels.
// Standard library only.
#pragma once

#include <any>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace vantro {

class EncodableValue;
using EncodableList = std::vector<EncodableValue>;
// Orders values first by alternative, then by value: a string is never equal to a number. A number that is not a number
// (NaN) comes after all others, so that a map keeps its order whatever keys arrive. It is a named order because "<" on
// a class that derives from a variant of containers of itself sends C++20's three-way comparison round in circles.
struct EncodableLess {
  bool operator()(const EncodableValue& left, const EncodableValue& right) const;
};
using EncodableMap = std::map<EncodableValue, EncodableValue, EncodableLess>;

// A value that only a codec extension could write.
class CustomEncodableValue {
 public:
  explicit CustomEncodableValue(std::any value) : value_(std::move(value)) {}
  const std::any& value() const { return value_; }
  // Two custom values have neither an order nor an equality that means anything.
  friend bool operator==(const CustomEncodableValue&, const CustomEncodableValue&) { return false; }

 private:
  std::any value_;
};

using EncodableVariant = std::variant<std::monostate, bool, int32_t, int64_t, double, std::string, std::vector<uint8_t>,
                                      std::vector<int32_t>, std::vector<int64_t>, std::vector<double>, EncodableList,
                                      EncodableMap, CustomEncodableValue, std::vector<float>>;

class EncodableValue : public EncodableVariant {
 public:
  using EncodableVariant::EncodableVariant;
  using EncodableVariant::operator=;
  EncodableValue() = default;
  // A literal is a string, not a Boolean.
  explicit EncodableValue(const char* text) : EncodableVariant(std::string(text)) {}

  bool IsNull() const { return std::holds_alternative<std::monostate>(*this); }
  const EncodableVariant& variant() const { return *this; }

  friend bool operator==(const EncodableValue& left, const EncodableValue& right);
};

namespace encodable_internal {
bool LessWithinAlternative(const EncodableValue& left, const EncodableValue& right);
}  // namespace encodable_internal

inline bool EncodableLess::operator()(const EncodableValue& left, const EncodableValue& right) const {
  if (left.index() != right.index()) return left.index() < right.index();
  // Nearly every key is a string.
  const std::string* text = std::get_if<std::string>(&left);
  return text ? *text < *std::get_if<std::string>(&right) : encodable_internal::LessWithinAlternative(left, right);
}
inline bool operator==(const EncodableValue& left, const EncodableValue& right) {
  return static_cast<const EncodableVariant&>(left) == static_cast<const EncodableVariant&>(right);
}

}  // namespace vantro
