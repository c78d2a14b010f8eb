#include "common/text.h"

#include <gtest/gtest.h>

#include <string>

namespace vantro {
namespace {

struct Pair {
  const char* name;
  std::wstring wide;
  std::string utf8;
};

const Pair kPairs[] = {
    {"Nothing", L"", ""},
    {"OneLetter", L"a", "a"},
    {"Letters", L"Vantro", "Vantro"},
    {"TwoBytes", L"\u00fc", "\xc3\xbc"},
    {"ThreeBytes", L"\u20ac5",
     "\xe2\x82\xac"
     "5"},
    {"SurrogatePair", L"\xd83d\xde00", "\xf0\x9f\x98\x80"},
    {"ZeroInside", std::wstring(L"a\0b", 3), std::string("a\0b", 3)},
};
void PrintTo(const Pair& pair, std::ostream* out) { *out << pair.name; }

class TextPair : public testing::TestWithParam<Pair> {};

TEST_P(TextPair, NarrowsToUtf8) { EXPECT_EQ(NarrowFromWide(GetParam().wide), GetParam().utf8); }
TEST_P(TextPair, WidensFromUtf8) { EXPECT_EQ(WideFromNarrow(GetParam().utf8), GetParam().wide); }

INSTANTIATE_TEST_SUITE_P(Text, TextPair, testing::ValuesIn(kPairs),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Text, IllFormedInputBecomesReplacementCharacters) {
  EXPECT_EQ(WideFromNarrow("a\xff"
                           "b"),
            L"a\xfffd"
            L"b");
  EXPECT_EQ(NarrowFromWide(L"a\xd83d"
                           L"b"),
            "a\xef\xbf\xbd"
            "b");
}

TEST(Text, ReadsNoFurtherThanItsView) {
  EXPECT_EQ(NarrowFromWide(std::wstring_view(L"Vantro").substr(0, 3)), "Van");
  EXPECT_EQ(WideFromNarrow(std::string_view("Vantro").substr(0, 3)), L"Van");
}

}  // namespace
}  // namespace vantro
