// The interface whose callbacks are set when the player is created: which event of the host each callback raises, and
// the conversion of its microseconds.
#include <cstring>
#include <limits>

#include "tests/unit/runtime/adapter.h"

namespace vantro::test {
namespace {

using published::Callbacks;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int64_t kLargest = std::numeric_limits<int64_t>::max();

class CallbacksInterface : public CallbacksVariantTest {
 protected:
  void SetUp() override {
    Start(Variant::kCallbacks);
    for (int type = kMediaChanged; type <= kSeekableChanged; ++type) Attach(type, Keep, &events_);
  }
  static void Keep(const libvlc_event_t* event, void* events) {
    static_cast<std::vector<libvlc_event_t>*>(events)->push_back(*event);
  }
  // The events that the host receives for a callback.
  template <typename... Arguments, typename... Values>
  std::vector<libvlc_event_t> EventsOf(void (*Callbacks::*slot)(void*, Arguments...), Values... values) {
    events_.clear();
    published::WithCallbacks(real_, [&](const Callbacks& cbs, void* opaque) { (cbs.*slot)(opaque, values...); });
    return events_;
  }
  template <typename... Arguments, typename... Values>
  std::vector<int> TypesOf(void (*Callbacks::*slot)(void*, Arguments...), Values... values) {
    std::vector<int> types;
    for (const libvlc_event_t& event : EventsOf(slot, values...)) types.push_back(event.type);
    return types;
  }

  std::vector<libvlc_event_t> events_;
};

TEST_F(CallbacksInterface, CallbacksThatTheHostDoesNotUseAreNull) {
  published::WithCallbacks(real_, [](const Callbacks& cbs, void*) {
    EXPECT_EQ(cbs.version, 0u);
    EXPECT_EQ(cbs.lengthChanged, nullptr);
    EXPECT_EQ(cbs.trackListChanged, nullptr);
    for (const auto other : cbs.others) EXPECT_EQ(other, nullptr);
  });
}

TEST_F(CallbacksInterface, AStateBecomesItsEvent) {
  const std::pair<published::State, int> rows[] = {{published::kNothingSpecial, kNothingSpecial},
                                                   {published::kOpening, kOpening},
                                                   {published::kPlaying, kPlaying},
                                                   {published::kPaused, kPaused},
                                                   {published::kStopped, kStopped},
                                                   {published::kStopping, kStopping}};
  for (const auto& [state, event] : rows) EXPECT_THAT(TypesOf(&Callbacks::stateChanged, state), ElementsAre(event));
}

TEST_F(CallbacksInterface, BufferingErrorAndUnknownStatesBecomeNone) {
  EXPECT_THAT(TypesOf(&Callbacks::stateChanged, published::kBuffering), IsEmpty());
  EXPECT_THAT(TypesOf(&Callbacks::stateChanged, published::kError), IsEmpty());
  EXPECT_THAT(TypesOf(&Callbacks::stateChanged, 99), IsEmpty());
}

TEST_F(CallbacksInterface, TheReasonOfAStopBecomesAnErrorOnlyWhenItIsOne) {
  EXPECT_THAT(TypesOf(&Callbacks::mediaStopping, nullptr, 0), ElementsAre(kEncounteredError));
  EXPECT_THAT(TypesOf(&Callbacks::mediaStopping, nullptr, 1), IsEmpty());
  EXPECT_THAT(TypesOf(&Callbacks::mediaStopping, nullptr, 2), IsEmpty());
}

TEST_F(CallbacksInterface, AMediaBecomesItsEvent) {
  EXPECT_THAT(TypesOf(&Callbacks::mediaChanged, nullptr), ElementsAre(kMediaChanged));
  void* const media = &events_;
  const auto events = EventsOf(&Callbacks::mediaChanged, media);
  ASSERT_EQ(events.size(), 1u);
  const void* reported = nullptr;
  std::memcpy(&reported, &events[0].u, sizeof reported);
  EXPECT_EQ(reported, media);
}

TEST_F(CallbacksInterface, BufferingIsInPerCent) {
  for (const auto& [share, percent] : {std::pair(0.0f, 0.0f), {0.5f, 50.0f}, {1.0f, 100.0f}}) {
    const auto events = EventsOf(&Callbacks::bufferingChanged, share);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].type, kBuffering);
    EXPECT_EQ(events[0].u.cache, percent);
  }
}

TEST_F(CallbacksInterface, SeekableComesFromAChangeOfTheCapabilityToSeek) {
  const auto gained = EventsOf(&Callbacks::capabilitiesChanged, 2, 3);
  ASSERT_EQ(gained.size(), 1u);
  EXPECT_EQ(gained[0].type, kSeekableChanged);
  EXPECT_EQ(gained[0].u.seekable, 1);
  const auto lost = EventsOf(&Callbacks::capabilitiesChanged, 1, 8);
  ASSERT_EQ(lost.size(), 1u);
  EXPECT_EQ(lost[0].u.seekable, 0);
  EXPECT_THAT(TypesOf(&Callbacks::capabilitiesChanged, 1, 3), IsEmpty());
  EXPECT_THAT(TypesOf(&Callbacks::capabilitiesChanged, 4, 2), IsEmpty());
}

TEST_F(CallbacksInterface, ThePositionComesBeforeTheTime) {
  const auto events = EventsOf(&Callbacks::positionChanged, 1'500'999, 0.25);
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0].type, kPositionChanged);
  EXPECT_EQ(events[0].u.position, 0.25);
  EXPECT_EQ(events[1].type, kTimeChanged);
  EXPECT_EQ(events[1].u.time, 1500);
}

TEST_F(CallbacksInterface, TimesFromTheLibraryAreMilliseconds) {
  const std::pair<int64_t, int64_t> rows[] = {{-1, -1},
                                              {std::numeric_limits<int64_t>::min(), -1},
                                              {0, 0},
                                              {999, 0},
                                              {1000, 1},
                                              {86'400'000'000, 86'400'000},
                                              {kLargest, kLargest / 1000}};
  for (const auto& [microseconds, milliseconds] : rows) {
    published::SetResult("libvlc_media_player_get_time", microseconds);
    published::SetResult("libvlc_media_player_get_length", microseconds);
    EXPECT_EQ(vlc().libvlc_media_player_get_time(player_), milliseconds);
    EXPECT_EQ(vlc().libvlc_media_player_get_length(player_), milliseconds);
    EXPECT_EQ(EventsOf(&Callbacks::positionChanged, microseconds, 0.0)[1].u.time, milliseconds);
  }
}

TEST_F(CallbacksInterface, TimesOfTheHostBecomeMicrosecondsAndNeverOverflow) {
  const std::pair<int64_t, int64_t> rows[] = {{-1, -1},
                                              {0, 0},
                                              {1, 1000},
                                              {86'400'000, 86'400'000'000},
                                              {kLargest / 1000, kLargest / 1000 * 1000},
                                              {kLargest / 1000 + 1, kLargest},
                                              {kLargest, kLargest}};
  for (const auto& [milliseconds, microseconds] : rows) {
    published::ClearCalls();
    vlc().libvlc_media_player_set_time(player_, milliseconds, true);
    EXPECT_THAT(published::CallsOf("libvlc_media_player_set_time"),
                ElementsAre("libvlc_media_player_set_time(player1, " + std::to_string(microseconds) + ", 1)"));
  }
}

TEST_F(CallbacksInterface, AnUnselectedTrackIsNoSelection) {
  vlc().libvlc_audio_set_volume(player_, 40);
  published::ClearCalls();
  EventsOf(&Callbacks::trackSelectionChanged, int32_t{published::kAudio}, "id", nullptr);
  EXPECT_THAT(published::Calls(), IsEmpty());
}

// The library reports the first state before the function that creates the player returns.
TEST_F(CallbacksInterface, AnEventBeforeTheCreatorReturnsDoesNoHarm) {
  libvlc_media_player_t* const second = vlc().libvlc_media_player_new(instance_);
  EXPECT_NE(second, nullptr);
  vlc().libvlc_media_player_release(second);
}

TEST_F(CallbacksInterface, ALibraryThatMakesNoPlayerGivesNone) {
  published::SetResult("libvlc_media_player_new", 0);
  EXPECT_EQ(vlc().libvlc_media_player_new(instance_), nullptr);
}

}  // namespace
}  // namespace vantro::test
