#include "channel/session_marker.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace vantro {
namespace {

TEST(SessionMarker, IsThreeLinesOfKeyAndValue) {
  EXPECT_EQ(FormatNativeMarker(true, "setMedia", 1770000000123),
            "running=1\nlastAction=setMedia\nlastActionTs=1770000000123\n");
  EXPECT_EQ(FormatNativeMarker(false, "shutdown", 0), "running=0\nlastAction=shutdown\nlastActionTs=0\n");
}

TEST(SessionMarker, ReadsBackWhatItWrote) {
  for (const char* action : {"getPosition", "", "a=b=c", " blanks ", "\xC3\xA4"}) {
    const NativeMarkerState state = ParseNativeMarker(FormatNativeMarker(true, action, INT64_MIN));
    EXPECT_EQ(state, (NativeMarkerState{true, action, INT64_MIN}));
  }
}

TEST(SessionMarker, RunsForTheValues1AndTrueAndNoOther) {
  EXPECT_TRUE(ParseNativeMarker("running=1\n").running);
  EXPECT_TRUE(ParseNativeMarker("running=true\n").running);
  for (const char* value : {"", "0", "false", "True", "TRUE", "yes", "11", "1 ", " 1", "01", "1=", "1\r"}) {
    EXPECT_FALSE(ParseNativeMarker("running=" + std::string(value) + "\n").running) << "'" << value << "'";
  }
}

TEST(SessionMarker, WithoutALastActionLineHasAnEmptyOne) {
  EXPECT_EQ(ParseNativeMarker("running=1\n"), (NativeMarkerState{true, "", 0}));
}

TEST(SessionMarker, TimeWithoutDigitsReadsAsZeroAndChangesNothingElse) {
  for (const char* value : {"", "abc", " ", "-", "+", "+-5", "-+5", "--5", "- 5", ".5"}) {
    EXPECT_EQ(ParseNativeMarker("lastActionTs=" + std::string(value) + "\nrunning=1\nlastAction=seek\n"),
              (NativeMarkerState{true, "seek", 0}))
        << "'" << value << "'";
  }
}

TEST(SessionMarker, TimeIsItsLeadingDigitsAfterBlanksAndASign) {
  const std::pair<const char*, int64_t> rows[] = {
      {"123abc", 123}, {"123.9", 123}, {" \t\v\f\r42", 42}, {"+7", 7},  {"-7", -7}, {"  -7x", -7},
      {"0x10", 0},     {"000012", 12}, {"12 13", 12},       {"1=2", 1}, {"~5", 0},
  };
  for (const auto& [value, expected] : rows) {
    EXPECT_EQ(ParseNativeMarker("lastActionTs=" + std::string(value)).lastActionTs, expected) << "'" << value << "'";
  }
}

TEST(SessionMarker, TimeEndsWithTheText) {
  EXPECT_EQ(ParseNativeMarker(std::string_view("lastActionTs=12345").substr(0, 15)).lastActionTs, 12);
}

TEST(SessionMarker, TimeOutOfRangeReadsAsZero) {
  EXPECT_EQ(ParseNativeMarker("lastActionTs=99999999999999999999\n").lastActionTs, 0);
  EXPECT_EQ(ParseNativeMarker("lastActionTs=-99999999999999999999\n").lastActionTs, 0);
  EXPECT_EQ(ParseNativeMarker("lastActionTs=9223372036854775807\n").lastActionTs, INT64_MAX);
  EXPECT_EQ(ParseNativeMarker("lastActionTs=-9223372036854775808\n").lastActionTs, INT64_MIN);
  EXPECT_EQ(ParseNativeMarker("lastActionTs=9223372036854775808\n").lastActionTs, 0);
}

TEST(SessionMarker, LastActionKeepsItsEqualsSigns) {
  EXPECT_EQ(ParseNativeMarker("lastAction=a=b=\n").lastAction, "a=b=");
  EXPECT_EQ(ParseNativeMarker("lastAction==\n").lastAction, "=");
}

TEST(SessionMarker, KeyWithABlankBeforeTheEqualsSignIsIgnored) {
  EXPECT_EQ(ParseNativeMarker("running =1\nlastAction =seek\n lastAction=seek\n"), NativeMarkerState());
}

TEST(SessionMarker, TakesKeysInAnyOrderAndIgnoresOthers) {
  EXPECT_EQ(ParseNativeMarker("lastActionTs=5\nversion=2\nlastAction=stop\n=x\nrunning=1\nRunning=0\n"),
            (NativeMarkerState{true, "stop", 5}));
}

TEST(SessionMarker, LaterLineOverridesAnEarlierOneOfItsKey) {
  EXPECT_EQ(ParseNativeMarker("running=1\nlastAction=a\nlastActionTs=1\nrunning=0\nlastAction=b\nlastActionTs=x\n"),
            (NativeMarkerState{false, "b", 0}));
}

TEST(SessionMarker, SkipsEmptyLinesAndLinesWithoutAnEqualsSign) {
  EXPECT_EQ(ParseNativeMarker("\n\nrunning\nrunning=1\n\nlastAction\n"), (NativeMarkerState{true, "", 0}));
}

TEST(SessionMarker, ReadsALastLineWithoutItsNewline) {
  EXPECT_EQ(ParseNativeMarker("running=1\nlastAction=se"), (NativeMarkerState{true, "se", 0}));
}

TEST(SessionMarker, CutAtAnyByteKeepsTheLinesBeforeTheCut) {
  const std::string whole = FormatNativeMarker(true, "setMedia", 1770000000123);
  const size_t firstLine = whole.find("\nlastAction=");
  for (size_t length = 0; length <= whole.size(); ++length) {
    const NativeMarkerState state = ParseNativeMarker(std::string_view(whole).substr(0, length));
    EXPECT_EQ(state.running, length >= firstLine) << "cut at " << length;
    EXPECT_TRUE(std::string("setMedia").starts_with(state.lastAction)) << "cut at " << length;
  }
}

TEST(SessionMarker, OfNoTextIsAnEndedSession) { EXPECT_EQ(ParseNativeMarker(""), NativeMarkerState()); }

}  // namespace
}  // namespace vantro
