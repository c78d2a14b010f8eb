#include "common/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "tests/support/import_hook.h"

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

// Records the code page, the flags and the text's length of each conversion, and passes it on.
class Conversions {
 public:
  Conversions() { current = this; }
  ~Conversions() { current = nullptr; }
  Conversions(const Conversions&) = delete;
  Conversions& operator=(const Conversions&) = delete;
  const std::vector<std::string>& Lines() const { return lines_; }

 private:
  void Note(UINT codePage, DWORD flags, int length) {
    lines_.push_back(std::to_string(codePage) + " flags " + std::to_string(flags) + " length " +
                     std::to_string(length));
  }
  static int WINAPI ToNarrow(UINT codePage, DWORD flags, LPCWCH wide, int wideLength, LPSTR narrow, int room,
                             LPCCH replacement, LPBOOL replaced) {
    current->Note(codePage, flags, wideLength);
    return current->toNarrow_.Original<decltype(&WideCharToMultiByte)>()(codePage, flags, wide, wideLength, narrow,
                                                                         room, replacement, replaced);
  }
  static int WINAPI ToWide(UINT codePage, DWORD flags, LPCCH narrow, int narrowLength, LPWSTR wide, int room) {
    current->Note(codePage, flags, narrowLength);
    return current->toWide_.Original<decltype(&MultiByteToWideChar)>()(codePage, flags, narrow, narrowLength, wide,
                                                                       room);
  }

  static Conversions* current;
  std::vector<std::string> lines_;
  test::ImportHook toNarrow_{"kernel32.dll", "WideCharToMultiByte", &ToNarrow};
  test::ImportHook toWide_{"kernel32.dll", "MultiByteToWideChar", &ToWide};
};

Conversions* Conversions::current = nullptr;

// Windows refuses other flags with UTF-8.
TEST(Text, IsConvertedWithoutFlags) {
  const Conversions conversions;
  NarrowFromWide(L"abc");
  WideFromNarrow("abcd");
  EXPECT_THAT(conversions.Lines(), testing::ElementsAre("65001 flags 0 length 3", "65001 flags 0 length 3",
                                                        "65001 flags 0 length 4", "65001 flags 0 length 4"));
}

}  // namespace
}  // namespace vantro
