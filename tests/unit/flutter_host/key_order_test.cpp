// The order of string keys in a map.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "flutter_host/encodable_value.h"

namespace vantro {
namespace {

// Returns the texts in the order that they have as keys of a map.
std::vector<std::string> InOrder(const std::vector<std::string>& texts) {
  std::vector<EncodableEntry> entries;
  for (const std::string& text : texts) entries.push_back({EncodableValue(std::string_view(text)), EncodableValue(1)});
  const size_t kept = SortEntries(entries.data(), entries.size());
  std::vector<std::string> keys;
  for (size_t at = 0; at < kept; ++at) keys.emplace_back(entries[at].key.Get<std::string_view>().value());
  return keys;
}

struct KeyOrder {
  const char* name;
  std::vector<std::string> keys;  // in their order
};
const KeyOrder kOrders[] = {
    {"FirstCharacter", {"a", "b", "c"}},
    {"SameFirstCharacter", {"aa", "ab", "ac"}},
    {"OneBeginsTheOther", {"a", "aa", "aaa"}},
    {"EmptyTextFirst", {"", "a", "aa"}},
    {"ZeroByteBehindTheEmptyText", {"", std::string(1, '\0'), "a"}},
    {"BytesAreNotNegative", {"z", "\x7f", "\x80", "\xff"}},
    {"LaterBytesAreNotNegative", {"az", "a\x7f", "a\x80", "a\xff"}},
    {"KeysOfARequest", {"mediaId", "proxyUrl", "timeSeconds", "title", "url", "width"}},
};
void PrintTo(const KeyOrder& order, std::ostream* out) { *out << order.name; }

class TextKeys : public testing::TestWithParam<KeyOrder> {};

TEST_P(TextKeys, AreSortedAndAllKeptWhateverTheirOrderWas) {
  std::vector<std::string> keys = GetParam().keys;
  std::sort(keys.begin(), keys.end());
  do {
    EXPECT_EQ(InOrder(keys), GetParam().keys);
  } while (std::next_permutation(keys.begin(), keys.end()));
}

INSTANTIATE_TEST_SUITE_P(EncodableMap, TextKeys, testing::ValuesIn(kOrders),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(TextKey, ComesAfterANumberAndBeforeAList) {
  std::vector<EncodableEntry> entries{{EncodableValue(EncodableList()), EncodableValue(1)},
                                      {EncodableValue("a"), EncodableValue(2)},
                                      {EncodableValue(7), EncodableValue(3)}};
  ASSERT_EQ(SortEntries(entries.data(), entries.size()), 3u);
  EXPECT_EQ(entries[0].key, EncodableValue(7));
  EXPECT_EQ(entries[1].key, EncodableValue("a"));
}

}  // namespace
}  // namespace vantro
