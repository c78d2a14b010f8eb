#include "flutter_host/encodable_value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vantro {
namespace {

const EncodableLess kLess;
const double kNotANumber = std::numeric_limits<double>::quiet_NaN();

EncodableValue Floats(std::vector<float> floats) { return EncodableValue(std::move(floats)); }

// One of each alternative, in the order in which alternatives compare; each value is large where the next is small.
std::vector<EncodableValue> OneOfEachAlternative() {
  return {EncodableValue(),
          EncodableValue(true),
          EncodableValue(int32_t{9}),
          EncodableValue(int64_t{8}),
          EncodableValue(7.0),
          EncodableValue("z"),
          EncodableValue(std::vector<uint8_t>{255}),
          EncodableValue(std::vector<int32_t>{254}),
          EncodableValue(std::vector<int64_t>{253}),
          EncodableValue(std::vector<double>{252}),
          EncodableValue(EncodableList{EncodableValue("y")}),
          EncodableValue(EncodableMap{{EncodableValue("x"), EncodableValue()}}),
          EncodableValue(CustomEncodableValue(1)),
          Floats({1})};
}

TEST(EncodableValue, StartsNull) {
  EXPECT_TRUE(EncodableValue().IsNull());
  EXPECT_FALSE(EncodableValue(false).IsNull());
}

TEST(EncodableValue, LiteralIsAString) { EXPECT_TRUE(std::holds_alternative<std::string>(EncodableValue("true"))); }

TEST(EncodableValue, CustomValueEqualsNothingNotEvenItself) {
  const EncodableValue custom(CustomEncodableValue(1));
  EXPECT_FALSE(custom == custom);
}

TEST(EncodableValueOrder, AlternativesCompareInTheirOrderWhateverTheirValues) {
  const auto values = OneOfEachAlternative();
  for (size_t left = 0; left < values.size(); ++left) {
    EXPECT_EQ(values[left].index(), left);
    for (size_t right = 0; right < values.size(); ++right) {
      EXPECT_EQ(kLess(values[left], values[right]), left < right) << left << " and " << right;
    }
  }
}

TEST(EncodableValueOrder, WithinAnAlternativeTheValueDecides) {
  const std::pair<EncodableValue, EncodableValue> pairs[] = {
      {EncodableValue(false), EncodableValue(true)},
      {EncodableValue(int32_t{-1}), EncodableValue(int32_t{0})},
      {EncodableValue(int64_t{-1}), EncodableValue(int64_t{0})},
      {EncodableValue(-0.5), EncodableValue(0.25)},
      {EncodableValue("Url"), EncodableValue("url")},
      {EncodableValue("url"), EncodableValue("urls")},
      {EncodableValue(std::vector<uint8_t>{1}), EncodableValue(std::vector<uint8_t>{1, 0})},
      {EncodableValue(std::vector<int32_t>{-2}), EncodableValue(std::vector<int32_t>{-1})},
      {EncodableValue(std::vector<int64_t>{1, 2}), EncodableValue(std::vector<int64_t>{2})},
      {EncodableValue(std::vector<double>{}), EncodableValue(std::vector<double>{0})},
      {Floats({0.5f}), Floats({1.5f})},
      {EncodableValue(EncodableList{EncodableValue(1)}), EncodableValue(EncodableList{EncodableValue(2)})},
      {EncodableValue(EncodableMap{{EncodableValue("a"), EncodableValue(9)}}),
       EncodableValue(EncodableMap{{EncodableValue("b"), EncodableValue(1)}})},
      {EncodableValue(EncodableMap{{EncodableValue("a"), EncodableValue(1)}}),
       EncodableValue(EncodableMap{{EncodableValue("a"), EncodableValue(2)}})},
  };
  for (const auto& [smaller, greater] : pairs) {
    EXPECT_TRUE(kLess(smaller, greater)) << "alternative " << smaller.index();
    EXPECT_FALSE(kLess(greater, smaller)) << "alternative " << smaller.index();
    EXPECT_FALSE(kLess(smaller, smaller)) << "alternative " << smaller.index();
  }
}

TEST(EncodableValueOrder, NotANumberComesAfterAllNumbers) {
  EXPECT_TRUE(kLess(EncodableValue(std::numeric_limits<double>::infinity()), EncodableValue(kNotANumber)));
  EXPECT_FALSE(kLess(EncodableValue(kNotANumber), EncodableValue(0.0)));
  EXPECT_FALSE(kLess(EncodableValue(kNotANumber), EncodableValue(kNotANumber)));
  EXPECT_TRUE(kLess(EncodableValue(std::vector<double>{1}), EncodableValue(std::vector<double>{kNotANumber})));
  EXPECT_FALSE(kLess(Floats({std::nanf("")}), Floats({1})));
}

TEST(EncodableMap, NumberAndTextKeysStayApart) {
  const EncodableMap map{{EncodableValue("1"), EncodableValue("text")},
                         {EncodableValue(int32_t{1}), EncodableValue("narrow")},
                         {EncodableValue(int64_t{1}), EncodableValue("wide")},
                         {EncodableValue(1.0), EncodableValue("real")}};
  EXPECT_EQ(map.size(), 4u);
  EXPECT_EQ(map.at(EncodableValue("1")), EncodableValue("text"));
  EXPECT_EQ(map.begin()->first, EncodableValue(int32_t{1}));
}

}  // namespace
}  // namespace vantro
