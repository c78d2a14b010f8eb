// Every function that the adapter exports: which function of the library it calls, with which arguments, and what it
// returns.
#include <cstdio>
#include <cstring>
#include <functional>

#include "tests/unit/runtime/adapter.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Host {
  const Adapter& vlc;
  libvlc_instance_t* instance;
  libvlc_media_t* media;
  libvlc_media_player_t* player;
};

struct Row {
  const char* function;                      // the library's function
  std::function<int64_t(const Host&)> call;  // the host's call
  const char* recorded;                      // the call that the library records
  int64_t answer;                            // the library's result
  int64_t result;                            // the result that the host gets
};

void* const kWindow = reinterpret_cast<void*>(0x1234);

// For functions with a result the host gets the library's result. For functions without one the result is 0 here.
const Row kRows[] = {
    {"libvlc_abi_version", [](const Host& h) { return int64_t{h.vlc.libvlc_abi_version()}; }, "libvlc_abi_version()",
     0x04123456, 0x04123456},
    {"libvlc_media_add_option", [](const Host& h) { return h.vlc.libvlc_media_add_option(h.media, ":a=1"), 0; },
     "libvlc_media_add_option(media1, \":a=1\")", 0, 0},
    {"libvlc_media_player_pause", [](const Host& h) { return h.vlc.libvlc_media_player_pause(h.player), 0; },
     "libvlc_media_player_pause(player1)", 0, 0},
    {"libvlc_media_player_set_hwnd",
     [](const Host& h) { return h.vlc.libvlc_media_player_set_hwnd(h.player, kWindow), 0; },
     "libvlc_media_player_set_hwnd(player1, %WINDOW)", 0, 0},
    {"libvlc_media_player_play", [](const Host& h) { return h.vlc.libvlc_media_player_play(h.player); },
     "libvlc_media_player_play(player1)", 5, 5},
    {"libvlc_media_player_stop_async", [](const Host& h) { return h.vlc.libvlc_media_player_stop_async(h.player); },
     "libvlc_media_player_stop_async(player1)", -7, -7},
    {"libvlc_media_player_is_playing", [](const Host& h) { return h.vlc.libvlc_media_player_is_playing(h.player); },
     "libvlc_media_player_is_playing(player1)", 1, 1},
    {"libvlc_media_player_is_playing", [](const Host& h) { return h.vlc.libvlc_media_player_is_playing(h.player); },
     "libvlc_media_player_is_playing(player1)", 0, 0},
    {"libvlc_media_player_set_time",
     [](const Host& h) { return h.vlc.libvlc_media_player_set_time(h.player, 0, false); },
     "libvlc_media_player_set_time(player1, 0, 0)", -1, -1},
    {"libvlc_media_player_get_time", [](const Host& h) { return h.vlc.libvlc_media_player_get_time(h.player); },
     "libvlc_media_player_get_time(player1)", 0, 0},
    {"libvlc_media_player_get_length", [](const Host& h) { return h.vlc.libvlc_media_player_get_length(h.player); },
     "libvlc_media_player_get_length(player1)", -1, -1},
    {"libvlc_set_fullscreen", [](const Host& h) { return h.vlc.libvlc_set_fullscreen(h.player, 1), 0; },
     "libvlc_set_fullscreen(player1, 1)", 0, 0},
    {"libvlc_get_fullscreen", [](const Host& h) { return h.vlc.libvlc_get_fullscreen(h.player); },
     "libvlc_get_fullscreen(player1)", 1, 1},
    {"libvlc_audio_get_volume", [](const Host& h) { return h.vlc.libvlc_audio_get_volume(h.player); },
     "libvlc_audio_get_volume(player1)", 33, 33},
    {"libvlc_audio_get_mute", [](const Host& h) { return h.vlc.libvlc_audio_get_mute(h.player); },
     "libvlc_audio_get_mute(player1)", -1, -1},
    {"libvlc_video_set_scale", [](const Host& h) { return h.vlc.libvlc_video_set_scale(h.player, 0.5f), 0; },
     "libvlc_video_set_scale(player1, 0.5)", 0, 0},
    {"libvlc_video_take_snapshot",
     [](const Host& h) { return h.vlc.libvlc_video_take_snapshot(h.player, 0, "C:\\a.png", 320, 180); },
     "libvlc_video_take_snapshot(player1, 0, \"C:\\a.png\", 320, 180)", -1, -1},
};

class ForwardingTest : public AdapterTest {
 protected:
  void SetUp() override {
    Start(GetParam());
    media_ = vlc().NewLocation("http://host/a");
    published::ClearCalls();
  }
  void TearDown() override {
    if (media_) vlc().libvlc_media_release(media_);
    AdapterTest::TearDown();
  }
  libvlc_media_t* media_ = nullptr;
};
OVER_BOTH_VARIANTS(ForwardingTest);

std::string Expected(std::string recorded) {
  char window[32];
  std::snprintf(window, sizeof window, "%p", kWindow);
  const size_t at = recorded.find("%WINDOW");
  return at == std::string::npos ? recorded : recorded.replace(at, 7, window);
}

TEST_P(ForwardingTest, EachRowCallsTheLibraryAndReturnsItsResult) {
  vlc().libvlc_media_player_set_hwnd(player_, kWindow);  // so that play sets no option for a missing window
  for (const Row& row : kRows) {
    published::ClearCalls();
    published::SetResult(row.function, row.answer);
    EXPECT_EQ(row.call({vlc(), instance_, media_, player_}), row.result) << row.function;
    EXPECT_THAT(published::Calls(), ElementsAre(Expected(row.recorded)));
  }
  published::SetResult("libvlc_media_player_stop_async", -1);
}

// A number from the library is -1 then. A Boolean is false, and so is "fullscreen". Functions without a result are 0.
int64_t ResultWithoutAHandle(const std::string& function) {
  for (const char* number :
       {"libvlc_media_player_play", "libvlc_media_player_stop_async", "libvlc_media_player_set_time",
        "libvlc_media_player_get_time", "libvlc_media_player_get_length", "libvlc_audio_get_volume",
        "libvlc_audio_get_mute", "libvlc_video_take_snapshot"}) {
    if (function == number) return -1;
  }
  return 0;
}

TEST_P(ForwardingTest, ANullHandleCallsNothing) {
  for (const Row& row : kRows) {
    if (std::string(row.function) == "libvlc_abi_version") continue;
    published::ClearCalls();
    EXPECT_EQ(row.call({vlc(), nullptr, nullptr, nullptr}), ResultWithoutAHandle(row.function)) << row.function;
    EXPECT_THAT(published::Calls(), IsEmpty()) << row.function;
  }
  EXPECT_EQ(vlc().libvlc_media_player_get_media(nullptr), nullptr);
  EXPECT_EQ(vlc().libvlc_audio_get_track_description(nullptr), nullptr);
  EXPECT_EQ(vlc().libvlc_video_get_spu_description(nullptr), nullptr);
  EXPECT_EQ(vlc().libvlc_audio_set_track(nullptr, 1), -1);
  EXPECT_EQ(vlc().libvlc_video_set_spu(nullptr, 1), -1);
  EXPECT_EQ(vlc().libvlc_video_get_width(nullptr), 0u);
  EXPECT_EQ(vlc().libvlc_video_get_height(nullptr), 0u);
  EXPECT_EQ(vlc().libvlc_audio_set_volume(nullptr, 5), -1);
  EXPECT_EQ(vlc().libvlc_event_attach(nullptr, kPlaying, Receive, nullptr), -1);
  EXPECT_EQ(vlc().libvlc_media_player_get_time(nullptr), -1);
  EXPECT_FALSE(vlc().libvlc_media_get_stats(nullptr, nullptr));
  vlc().libvlc_audio_set_mute(nullptr, 1);
  vlc().libvlc_event_detach(nullptr, kPlaying, Receive, nullptr);
  vlc().libvlc_media_player_set_media(nullptr, media_);
  vlc().libvlc_media_player_stop(nullptr);
  vlc().libvlc_media_player_release(nullptr);
  vlc().libvlc_track_description_list_release(nullptr);
  EXPECT_THAT(published::Calls(), IsEmpty());
}

TEST_P(ForwardingTest, TextsOfTheLibraryAreReturnedUnchanged) {
  published::SetText("libvlc_get_version", "4.0.0-dev");
  published::SetText("libvlc_errmsg", "no such host");
  EXPECT_STREQ(vlc().libvlc_get_version(), "4.0.0-dev");
  EXPECT_STREQ(vlc().libvlc_errmsg(), "no such host");
}

TEST_P(ForwardingTest, MediaAreMadeSetReturnedAndReleased) {
  libvlc_media_t* const path = vlc().NewPath("C:\\a.ts");
  vlc().libvlc_media_player_set_media(player_, path);
  EXPECT_EQ(vlc().libvlc_media_player_get_media(player_), path);
  vlc().libvlc_media_release(path);
  vlc().libvlc_media_release(path);
  EXPECT_THAT(published::CallsOf("libvlc_media_new_path"), ElementsAre("libvlc_media_new_path(\"C:\\a.ts\")"));
  EXPECT_THAT(published::CallsOf("libvlc_media_player_set_media"),
              ElementsAre("libvlc_media_player_set_media(player1, media2)"));
  EXPECT_THAT(published::CallsOf("libvlc_media_release"), testing::SizeIs(2));
}

TEST_P(ForwardingTest, AMediaThatTheLibraryDoesNotMakeIsNull) {
  published::SetResult("libvlc_media_new_location", 0);
  EXPECT_EQ(vlc().NewLocation("http://host/a"), nullptr);
}

TEST_P(ForwardingTest, StatisticsComeInTheHostsLayout) {
  libvlc_media_stats_t stats{};
  ASSERT_TRUE(vlc().libvlc_media_get_stats(media_, &stats));
  EXPECT_EQ(stats.i_displayed_pictures, 8u);
  EXPECT_EQ(stats.i_played_abuffers, 11u);
  published::SetResult("libvlc_media_get_stats", 0);
  EXPECT_FALSE(vlc().libvlc_media_get_stats(media_, &stats));
}

TEST_P(ForwardingTest, ThePictureHasTheSizeOfTheFirstVideo) {
  EXPECT_EQ(vlc().libvlc_video_get_width(player_), 0u);
  EXPECT_EQ(vlc().libvlc_video_get_height(player_), 0u);
  published::SetSize(real_, 1280, 720);
  EXPECT_EQ(vlc().libvlc_video_get_width(player_), 1280u);
  EXPECT_EQ(vlc().libvlc_video_get_height(player_), 720u);
  EXPECT_THAT(published::CallsOf("libvlc_video_get_size"), testing::Each("libvlc_video_get_size(player1, 0)"));
}

// A thread in an event holds the lock of its player. A second thread may hold the other player's lock and wait for this
// one, so the adapter must not take a second lock here.
TEST_P(ForwardingTest, TheSizeOfAnotherPlayerInsideAnEventIsTheLastKnownOne) {
  libvlc_media_player_t* const other = vlc().libvlc_media_player_new(instance_);
  void* const otherReal = published::Player(2);
  published::SetSize(otherReal, 640, 360);
  Reach(otherReal, kPlaying);
  published::SetSize(otherReal, 1280, 720);
  published::ClearCalls();
  unsigned width = 0;
  Action ask = [&] { width = vlc().libvlc_video_get_width(other); };
  Attach(kPlaying, RunAction, &ask);
  published::OnLibraryThread([&] { Reach(kPlaying); });
  EXPECT_EQ(width, 640u);
  EXPECT_THAT(published::CallsOf("libvlc_video_get_size"), testing::Each("libvlc_video_get_size(player1, 0)"));
  EXPECT_EQ(vlc().libvlc_video_get_width(other), 1280u) << "outside of events the library is asked";
  published::SetState(otherReal, published::kStopped);
  vlc().libvlc_media_player_release(other);
}

TEST_P(ForwardingTest, FunctionsThatNoLibraryHasAreAbsent) {
  EXPECT_EQ(vlc().libvlc_media_new_uri, nullptr);
  EXPECT_EQ(vlc().libvlc_video_set_viewport, nullptr);
}

TEST_P(ForwardingTest, EveryOtherFunctionOfTheHostIsPresent) {
  for (const LibVlcSlot& slot : LibVlcSlots()) {
    const std::string name = slot.name;
    if (name == "libvlc_media_new_uri" || name == "libvlc_video_set_viewport") continue;
    void* address = nullptr;
    std::memcpy(&address, reinterpret_cast<const char*>(static_cast<const LibVlcFunctions*>(&vlc())) + slot.offset,
                sizeof address);
    EXPECT_NE(address, nullptr) << name;
  }
}

}  // namespace
}  // namespace vantro::test
