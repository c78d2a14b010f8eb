#include "flutter_host/encodable_value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/support/values.h"

namespace vantro {
namespace {

using test::ListOf;
using test::MapOf;
using test::Value;

const double kNotANumber = std::numeric_limits<double>::quiet_NaN();

bool IsLess(const Value& left, const Value& right) { return Compare(left.value(), right.value()) < 0; }
Value Floats(const std::vector<float>& floats) { return Value(floats); }
const CustomEncodableValue* CustomAt(const int* object) {
  return reinterpret_cast<const CustomEncodableValue*>(object);
}

// One value of each alternative, in the order in which alternatives compare. Each value is larger than the next one, so
// that only the order of the alternatives decides.
std::vector<Value> OneOfEachAlternative() {
  static const int object = 1;
  return {Value(),
          Value(true),
          Value(int32_t{9}),
          Value(int64_t{8}),
          Value(7.0),
          Value("z"),
          Value(std::vector<uint8_t>{255}),
          Value(std::vector<int32_t>{254}),
          Value(std::vector<int64_t>{253}),
          Value(std::vector<double>{252}),
          ListOf({Value("y")}),
          MapOf({{"x", Value()}}),
          Value(EncodableValue(CustomAt(&object))),
          Floats({1})};
}

TEST(EncodableValue, StartsNull) {
  EXPECT_TRUE(EncodableValue().IsNull());
  EXPECT_FALSE(EncodableValue(false).IsNull());
}

TEST(EncodableValue, NullHasNoElements) {
  EXPECT_EQ(EncodableValue().size(), 0u);
  EXPECT_EQ(EncodableValue().elements(), nullptr);
}

TEST(EncodableValue, ElementsOfEachAlternativeHaveTheirSize) {
  std::vector<size_t> sizes;
  for (const Value& value : OneOfEachAlternative()) sizes.push_back(ElementSize(value.value().kind()));
  EXPECT_EQ(sizes, (std::vector<size_t>{0, 0, 0, 0, 0, 1, 1, 4, 8, 8, 16, 32, 0, 4}));
}

TEST(EncodableValue, LiteralIsAString) { EXPECT_EQ(EncodableValue("true").Get<std::string_view>(), "true"); }

TEST(EncodableValue, ReturnsOnlyItsOwnAlternative) {
  const EncodableValue number(int32_t{1});
  EXPECT_EQ(number.Get<int32_t>(), 1);
  EXPECT_FALSE(number.Get<int64_t>());
  EXPECT_FALSE(number.Get<bool>());
  EXPECT_FALSE(number.Get<double>());
  EXPECT_FALSE(number.Get<std::string_view>());
  EXPECT_FALSE(number.Get<EncodableMap>());
  EXPECT_FALSE(EncodableValue().Get<bool>());
}

TEST(EncodableValue, ReturnsTheValueThatItWasMadeOf) {
  const std::vector<float> floats{0.5f, 1.5f};
  EXPECT_EQ(EncodableValue(floats).Get<std::span<const float>>()->data(), floats.data());
  EXPECT_EQ(EncodableValue(-2.5).Get<double>(), -2.5);
  EXPECT_EQ(EncodableValue(int64_t{-1}).Get<int64_t>(), -1);
  EXPECT_EQ(EncodableValue(true).Get<bool>(), true);
}

TEST(EncodableValueOrder, AlternativesCompareInTheirOrderWhateverTheirValues) {
  const auto values = OneOfEachAlternative();
  for (size_t left = 0; left < values.size(); ++left) {
    EXPECT_EQ(static_cast<size_t>(values[left].value().kind()), left);
    for (size_t right = 0; right < values.size(); ++right) {
      EXPECT_EQ(IsLess(values[left], values[right]), left < right) << left << " and " << right;
    }
  }
}

TEST(EncodableValueOrder, WithinAnAlternativeTheValueDecides) {
  const std::pair<Value, Value> pairs[] = {
      {Value(false), Value(true)},
      {Value(int32_t{-1}), Value(int32_t{0})},
      {Value(int64_t{-1}), Value(int64_t{0})},
      {Value(-0.5), Value(0.25)},
      {Value("Url"), Value("url")},
      {Value("url"), Value("urls")},
      {Value("z"), Value("\xc3\xa4")},
      {Value(std::vector<uint8_t>{1}), Value(std::vector<uint8_t>{1, 0})},
      {Value(std::vector<int32_t>{-2}), Value(std::vector<int32_t>{-1})},
      {Value(std::vector<int64_t>{1, 2}), Value(std::vector<int64_t>{2})},
      {Value(std::vector<double>{}), Value(std::vector<double>{0})},
      {Floats({0.5f}), Floats({1.5f})},
      {ListOf({Value(1)}), ListOf({Value(2)})},
      {MapOf({{"a", Value(9)}}), MapOf({{"b", Value(1)}})},
      {MapOf({{"a", Value(1)}}), MapOf({{"a", Value(2)}})},
  };
  for (const auto& [smaller, greater] : pairs) {
    EXPECT_TRUE(IsLess(smaller, greater)) << test::Describe(greater);
    EXPECT_FALSE(IsLess(greater, smaller)) << test::Describe(greater);
    EXPECT_FALSE(IsLess(smaller, smaller)) << test::Describe(greater);
  }
}

TEST(EncodableValueOrder, NotANumberComesAfterAllNumbers) {
  EXPECT_TRUE(IsLess(Value(std::numeric_limits<double>::infinity()), Value(kNotANumber)));
  EXPECT_FALSE(IsLess(Value(kNotANumber), Value(0.0)));
  EXPECT_FALSE(IsLess(Value(kNotANumber), Value(kNotANumber)));
  EXPECT_TRUE(IsLess(Value(std::vector<double>{1}), Value(std::vector<double>{kNotANumber})));
  EXPECT_FALSE(IsLess(Floats({std::nanf("")}), Floats({1})));
}

TEST(EncodableMap, NumberAndTextKeysStayApart) {
  const Value value = MapOf({{"1", "text"},
                             {Value(int32_t{1}), Value("narrow")},
                             {Value(int64_t{1}), Value("wide")},
                             {Value(1.0), Value("real")}});
  const auto map = value.value().Get<EncodableMap>();
  ASSERT_EQ(map->size(), 4u);
  EXPECT_EQ(*map->Find("1"), EncodableValue("text"));
  EXPECT_EQ(map->front().key, EncodableValue(int32_t{1}));
}

TEST(EncodableMap, SortsItsKeysAndKeepsTheLastOfEqualOnes) {
  for (const int count : {0, 1, 2, 23, 24, 25, 26, 100, 1000}) {
    std::vector<EncodableEntry> entries;
    // Each key twice, in an order that is neither ascending nor descending.
    for (int at = 0; at < 2 * count; ++at) {
      entries.push_back({EncodableValue(int32_t{at * 7919 % count}), EncodableValue(int32_t{at})});
    }
    const size_t kept = SortEntries(entries.data(), entries.size());
    ASSERT_EQ(kept, static_cast<size_t>(count));
    for (int at = 0; at < count; ++at) {
      const EncodableEntry& entry = entries[static_cast<size_t>(at)];
      EXPECT_EQ(entry.key, EncodableValue(int32_t{at})) << count;
      EXPECT_GE(entry.value.Get<int32_t>(), count) << "the second of each key";
    }
  }
}

TEST(LocalMap, TakesEntriesInAnyOrder) {
  const LocalMap map({{EncodableValue("b"), EncodableValue(1)},
                      {EncodableValue("a"), EncodableValue(2)},
                      {EncodableValue("b"), EncodableValue(3)}});
  EXPECT_EQ(map.value(), MapOf({{"a", Value(2)}, {"b", Value(3)}}).value());
}

TEST(OwnedValue, OutlivesWhatItWasMadeOf) {
  Value kept;
  {
    const std::string text = "a text that is longer than a string's own room";
    const std::vector<double> reals{0.5, 1.5};
    kept = MapOf({{"list", ListOf({Value(text), Value(reals), Value()})}});
  }
  EXPECT_EQ(test::Describe(kept),
            "{ \"list\": [ \"a text that is longer than a string's own room\" [2 elements] null ] }");
}

TEST(OwnedValue, OfACustomValueKeepsItsAddress) {
  const int object = 1;
  const Value kept{EncodableValue(CustomAt(&object))};
  EXPECT_EQ(kept.value().Get<const CustomEncodableValue*>(), CustomAt(&object));
  EXPECT_EQ(kept.value().size(), 0u);
}

TEST(OwnedValue, CopyIsEqualAndWrittenAsTheFirst) {
  const Value first = ListOf({Value("x")});
  const Value copy = first;
  EXPECT_EQ(copy, first);
  EXPECT_EQ(copy.memory(), first.memory());
}

}  // namespace
}  // namespace vantro
