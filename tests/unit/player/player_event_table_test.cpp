// The rows of the event table, and the texts of their arguments.
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "player/player_events.h"

namespace vantro {
namespace {

struct Row {
  int order;
  int type;
  const char* method;
  EventEffect effect;
};

class EventTableTest : public testing::TestWithParam<Row> {};

TEST_P(EventTableTest, IsInItsPlace) {
  const PlayerEvent& event = kPlayerEvents.at(static_cast<size_t>(GetParam().order - 1));
  EXPECT_EQ(event.type, GetParam().type);
  EXPECT_STREQ(event.method, GetParam().method);
  EXPECT_EQ(event.effect, GetParam().effect);
  EXPECT_EQ(FindPlayerEvent(GetParam().type), &event);
}

INSTANTIATE_TEST_SUITE_P(Rows, EventTableTest,
                         testing::Values(Row{1, 0x102, "onOpening", EventEffect::kNone},
                                         Row{2, 0x103, "onBuffering", EventEffect::kNone},
                                         Row{3, 0x104, "onPlaying", EventEffect::kPlaying},
                                         Row{4, 0x100, "onMediaChanged", EventEffect::kMediaChanged},
                                         Row{5, 0x105, "onPaused", EventEffect::kStopWatchdog},
                                         Row{6, 0x106, "onStopped", EventEffect::kStopWatchdog},
                                         Row{7, 5, "onEndReached", EventEffect::kStopWatchdog},
                                         Row{8, 0x10A, "onError", EventEffect::kStopWatchdog},
                                         Row{9, 0x10C, "onPositionChanged", EventEffect::kNone},
                                         Row{10, 0x10B, "onTimeChanged", EventEffect::kNone},
                                         Row{11, 0x10D, "onSeekableChanged", EventEffect::kNone}),
                         [](const auto& row) { return std::string(row.param.method); });

TEST(EventTable, HasElevenRows) { EXPECT_EQ(kPlayerEvents.size(), 11u); }

TEST(EventTable, DoesNotKnowOtherTypes) {
  for (const int type : {0, 4, 6, 0x101, 0x107, 0x108, 0x109, 0x10E, -1}) EXPECT_EQ(FindPlayerEvent(type), nullptr);
}

std::string Buffering(float level) {
  libvlc_event_t event{};
  event.u.cache = level;
  return EventArgumentText(EventArgument::kCacheLevel, event).c_str();
}

std::string Position(double position) {
  libvlc_event_t event{};
  event.u.position = position;
  return EventArgumentText(EventArgument::kPosition, event).c_str();
}

std::string Time(int64_t time) {
  libvlc_event_t event{};
  event.u.time = time;
  return EventArgumentText(EventArgument::kTime, event).c_str();
}

std::string Seekable(int32_t seekable) {
  libvlc_event_t event{};
  event.u.time = -1;  // sets the bytes after the 32 bits that are read
  event.u.seekable = seekable;
  return EventArgumentText(EventArgument::kSeekable, event).c_str();
}

TEST(EventArgument, ABufferingLevelHasSixDecimals) {
  EXPECT_EQ(Buffering(100), "100.000000");
  EXPECT_EQ(Buffering(0), "0.000000");
  EXPECT_EQ(Buffering(33.3f), "33.299999");
}

TEST(EventArgument, TheLargestLevelIsNotCut) {
  EXPECT_EQ(Buffering(-std::numeric_limits<float>::max()), "-340282346638528859811704183484516925440.000000");
}

TEST(EventArgument, APositionGoesThroughSinglePrecision) {
  EXPECT_EQ(Position(0.5), "0.500000");
  EXPECT_EQ(Position(16777217.0), "16777216.000000");
}

TEST(EventArgument, ATimeIsDecimalWithALeadingMinusIfNegative) {
  EXPECT_EQ(Time(0), "0");
  EXPECT_EQ(Time(5'000'000'000), "5000000000");
  EXPECT_EQ(Time(-7), "-7");
  EXPECT_EQ(Time(std::numeric_limits<int64_t>::min()), "-9223372036854775808");
}

TEST(EventArgument, SeekableIsAWordForThe32BitNumber) {
  EXPECT_EQ(Seekable(0), "false");
  EXPECT_EQ(Seekable(1), "true");
  EXPECT_EQ(Seekable(-1), "true");
}

TEST(EventArgument, AnErrorCarriesItsFixedText) {
  EXPECT_STREQ(EventArgumentText(EventArgument::kErrorText, {}).c_str(), "Media player encountered an error");
}

TEST(EventArgument, NoneIsEmpty) { EXPECT_STREQ(EventArgumentText(EventArgument::kNone, {}).c_str(), ""); }

}  // namespace
}  // namespace vantro
