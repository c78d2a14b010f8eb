// A player without a window: its media get an option that disables the video output before they play.
#include "tests/unit/runtime/adapter.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kOption[] = "libvlc_media_add_option(media1, \":vout=vdummy\")";

class WindowlessTest : public AdapterTest {
 protected:
  void SetUp() override {
    Start(GetParam());
    media_ = vlc().NewLocation("http://host/a");
    published::ClearCalls();
  }
  void TearDown() override {
    vlc().libvlc_media_release(media_);
    AdapterTest::TearDown();
  }
  void SetWindow(uintptr_t window) { vlc().libvlc_media_player_set_hwnd(player_, reinterpret_cast<void*>(window)); }
  void SetMedia() { vlc().libvlc_media_player_set_media(player_, media_); }
  void Play() { EXPECT_EQ(vlc().libvlc_media_player_play(player_), 0); }

  libvlc_media_t* media_ = nullptr;
};
OVER_BOTH_VARIANTS(WindowlessTest);

TEST_P(WindowlessTest, ItsMediaGetsTheOptionOnceBeforeItIsSet) {
  SetMedia();
  Play();
  EXPECT_THAT(published::Calls(), ElementsAre(kOption, "libvlc_media_player_set_media(player1, media1)",
                                              "libvlc_media_player_play(player1)"));
}

TEST_P(WindowlessTest, AMediaOfAPlayerWithAWindowGetsNoOption) {
  SetWindow(0x10);
  SetMedia();
  Play();
  EXPECT_THAT(published::CallsOf("libvlc_media_add_option"), IsEmpty());
}

TEST_P(WindowlessTest, AMediaGetsTheOptionBeforePlayWhenTheWindowWasTakenAway) {
  SetWindow(0x10);
  SetMedia();
  SetWindow(0);
  published::ClearCalls();
  Play();
  Play();
  EXPECT_THAT(published::CallsOf("libvlc_media_add_option"), ElementsAre(kOption));
  EXPECT_EQ(published::Calls().back(), "libvlc_media_player_play(player1)");
  EXPECT_EQ(published::Calls()[1], kOption);  // after get_media, before play
}

TEST_P(WindowlessTest, EachNewMediaGetsTheOption) {
  SetMedia();
  SetMedia();
  EXPECT_THAT(published::CallsOf("libvlc_media_add_option"), ElementsAre(kOption, kOption));
}

TEST_P(WindowlessTest, ASecondMediaGetsTheOptionWhenTheWindowWasTakenAway) {
  SetMedia();
  SetWindow(0x10);
  SetMedia();
  SetWindow(0);
  published::ClearCalls();
  Play();
  EXPECT_THAT(published::CallsOf("libvlc_media_add_option"), ElementsAre(kOption));
}

TEST_P(WindowlessTest, PlayWithoutAMediaSetsNoOption) {
  Play();
  EXPECT_THAT(published::Calls(),
              ElementsAre("libvlc_media_player_get_media(player1)", "libvlc_media_player_play(player1)"));
}

TEST_P(WindowlessTest, NoMediaCanBeSet) {
  vlc().libvlc_media_player_set_media(player_, nullptr);
  EXPECT_THAT(published::Calls(), ElementsAre("libvlc_media_player_set_media(player1, null)"));
}

}  // namespace
}  // namespace vantro::test
