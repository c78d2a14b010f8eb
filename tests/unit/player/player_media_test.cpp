// Creating a media from a URL, and setting it.
#include "tests/unit/player/player_fixture.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Creating a media.

struct UrlRow {
  const char* name;
  const char* url;
  bool network;
};

class MediaOfUrl : public StartedPlayerTest, public testing::WithParamInterface<UrlRow> {};

TEST_P(MediaOfUrl, GoesToTheFunctionOfItsKind) {
  const VlcMediaPtr media(player_.CreateMedia(GetParam().url));
  const std::string url = GetParam().url;
  const std::string function = GetParam().network ? "libvlc_media_new_uri" : "libvlc_media_new_path";
  EXPECT_THAT(vlc_.Calls(), ElementsAre(function + "(\"" + url + "\")"));
  EXPECT_EQ(log_.Lines().back(), (GetParam().network ? "INFO Creating media with new_uri for URL: "
                                                     : "INFO Creating media with new_path for path: ") +
                                     url);
}

INSTANTIATE_TEST_SUITE_P(Table, MediaOfUrl,
                         testing::Values(UrlRow{"Http", "http://host/a.ts", true},
                                         UrlRow{"Https", "https://host/a.m3u8", true},
                                         UrlRow{"Rtsp", "rtsp://host/a", true},
                                         UrlRow{"OnlyTheHttpSchemeCountsAsNetwork", "http://", true},
                                         UrlRow{"UdpGoesToThePath", "udp://@239.0.0.1:1234", false},
                                         UrlRow{"FileGoesToThePath", "file:///C:/a.ts", false},
                                         UrlRow{"UpperCaseGoesToThePath", "HTTP://host/a.ts", false},
                                         UrlRow{"LeadingBlankGoesToThePath", " http://host/a.ts", false},
                                         UrlRow{"AWindowsPath", "C:\\videos\\a.ts", false},
                                         UrlRow{"TheSchemeWithOneSlash", "http:/host", false}),
                         [](const testing::TestParamInfo<UrlRow>& row) { return row.param.name; });

TEST_F(StartedPlayerTest, CreateMediaOfAnEmptyUrlIsAnError) {
  EXPECT_EQ(player_.CreateMedia(""), nullptr);
  EXPECT_EQ(log_.Lines().back(), "ERROR [VLCPlayer::CreateMedia] ERROR: URL is empty.");
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(StartedPlayerTest, CreateMediaWithoutTheUriFunctionTakesTheLocation) {
  LibVlcFunctionTable().libvlc_media_new_uri = nullptr;
  const VlcMediaPtr media(player_.CreateMedia("http://host/a"));
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_new_location(\"http://host/a\")"));
  EXPECT_EQ(log_.CountContaining("falling back"), 0);
}

TEST_F(StartedPlayerTest, CreateMediaOfANetworkUrlTriesTheLocationTwice) {
  vlc_.Fail("libvlc_media_new_uri");
  vlc_.Fail("libvlc_media_new_location", 1);
  const VlcMediaPtr media(player_.CreateMedia("http://host/a"));
  EXPECT_NE(media, nullptr);
  EXPECT_THAT(vlc_.Calls(),
              ElementsAre("libvlc_media_new_uri(\"http://host/a\")", "libvlc_media_new_location(\"http://host/a\")",
                          "libvlc_media_new_location(\"http://host/a\")"));
  EXPECT_EQ(log_.Lines().back(),
            "WARNING Failed to create media with specific function, falling back to new_location for: http://host/a");
}

TEST_F(StartedPlayerTest, CreateMediaOfAPathFallsBackToTheLocation) {
  vlc_.Fail("libvlc_media_new_path");
  const VlcMediaPtr media(player_.CreateMedia("udp://host"));
  EXPECT_NE(media, nullptr);
  EXPECT_THAT(vlc_.Calls(),
              ElementsAre("libvlc_media_new_path(\"udp://host\")", "libvlc_media_new_location(\"udp://host\")"));
}

TEST_F(StartedPlayerTest, CreateMediaWithoutThePathFunctionFallsBackToTheLocation) {
  LibVlcFunctionTable().libvlc_media_new_path = nullptr;
  const VlcMediaPtr media(player_.CreateMedia("udp://host"));
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_new_location(\"udp://host\")"));
}

TEST_F(StartedPlayerTest, CreateMediaWithoutAnyCreatorGivesNull) {
  LibVlcFunctionTable().libvlc_media_new_path = nullptr;
  LibVlcFunctionTable().libvlc_media_new_location = nullptr;
  LibVlcFunctionTable().libvlc_media_new_uri = nullptr;
  EXPECT_EQ(player_.CreateMedia("http://host/a"), nullptr);
  EXPECT_EQ(player_.CreateMedia("udp://host"), nullptr);
}

TEST_F(StartedPlayerTest, TheLegacyCreatorsAreGivenTheInstanceToo) {
  LibVlcFunctionTable().legacyMediaCreation = true;
  vlc_.Fail("libvlc_media_new_uri");
  const VlcMediaPtr network(player_.CreateMedia("http://host/a"));
  const VlcMediaPtr path(player_.CreateMedia("C:\\a.ts"));
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_new_uri(instance1, \"http://host/a\")",
                                        "libvlc_media_new_location(instance1, \"http://host/a\")",
                                        "libvlc_media_new_path(instance1, \"C:\\a.ts\")"));
}

// Setting a media.

TEST_F(StartedPlayerTest, SetMediaMakesTheCallsInOrder) {
  ASSERT_TRUE(player_.SetMedia({"http://host/a", "Title", 1500, 4000, true, false, false}));
  EXPECT_THAT(vlc_.Calls(),
              ElementsAre("libvlc_media_player_stop(player1)", "libvlc_media_new_uri(\"http://host/a\")",
                          "libvlc_media_add_option(media1, \":no-video-title-show\")",
                          "libvlc_media_add_option(media1, \":network-caching=1500\")",
                          "libvlc_media_player_set_media(player1, media1)",
                          "libvlc_media_player_set_time(player1, 4000, 0)", "libvlc_media_player_play(player1)",
                          "libvlc_audio_get_volume(player1)", "libvlc_audio_get_mute(player1)"));
}

TEST_F(StartedPlayerTest, SetMediaWritesItsLines) {
  ASSERT_TRUE(player_.SetMedia({"http://host/a", "A title", 1500, 4000, true, false, false}));
  EXPECT_THAT(LinesOf("[VLCPlayer::SetMedia]"),
              ElementsAre("INFO [VLCPlayer::SetMedia] Called with url=http://host/a, title=A title, "
                          "networkCacheMs=1500, initialSeekPositionMs=4000, mediaPlayer_.get()=" +
                              PointerText(Player()) + ", vlcInstance_=" + PointerText(state_.vlcInstance_.get()) +
                              ", volume_=100",
                          "INFO [VLCPlayer::SetMedia] Set network cache to 1500 ms",
                          "INFO [VLCPlayer::SetMedia]  Set initial seek position to 4000ms BEFORE play "
                          "(seek-before-play fix)"));
}

TEST_F(StartedPlayerTest, SetMediaStoresWhatTheWatchdogPlaysAgain) {
  ASSERT_TRUE(player_.SetMedia({"http://host/a", "A title", -3, 0, false, true, true}));
  EXPECT_EQ(state_.current_.url, "http://host/a");
  EXPECT_EQ(state_.current_.title, "A title");
  EXPECT_EQ(state_.current_.networkCacheMs, -3);
  EXPECT_FALSE(state_.current_.isLive);
  EXPECT_TRUE(state_.current_.supportsTimeshift);
  EXPECT_TRUE(state_.current_.inTimeshiftMode);
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_add_option"),
              testing::Contains("libvlc_media_add_option(media1, \":network-caching=-3\")"));
}

TEST_F(StartedPlayerTest, SetMediaStoresItsRequestAfterTheMediaIsSet) {
  std::string urlAtTheCall = "none";
  vlc_.OnCall("libvlc_media_player_set_media", [&] { urlAtTheCall = state_.current_.url; });
  ASSERT_TRUE(SetMedia("http://host/a"));
  vlc_.OnCall("libvlc_media_player_set_media", nullptr);
  EXPECT_EQ(urlAtTheCall, "");
  EXPECT_EQ(state_.current_.url, "http://host/a");
}

TEST_F(StartedPlayerTest, SetMediaSeeksToTheFirstMillisecond) {
  ASSERT_TRUE(SetMedia("http://host/a", 1));
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_set_time"), ElementsAre("libvlc_media_player_set_time(player1, 1, 0)"));
}

TEST_F(StartedPlayerTest, SetMediaStartsTheWatchdogAndReportsNothing) {
  ASSERT_TRUE(SetMedia("http://host/a"));
  EXPECT_TRUE(state_.stallWatchdogActive_);
  EXPECT_TRUE(state_.suppressStoppedEvent_);
}

TEST_F(StartedPlayerTest, SetMediaPlaysBeforeItStartsTheWatchdog) {
  bool wasOn = true;
  vlc_.OnCall("libvlc_media_player_play", [&] { wasOn = state_.stallWatchdogActive_.IsOn(); });
  ASSERT_TRUE(SetMedia("http://host/a"));
  vlc_.OnCall("libvlc_media_player_play", nullptr);
  EXPECT_FALSE(wasOn);
  EXPECT_TRUE(state_.stallWatchdogActive_);
}

TEST_F(StartedPlayerTest, SetMediaKeepsOneReferenceAndThePlayerTheOther) {
  ASSERT_TRUE(SetMedia("http://host/a"));
  EXPECT_EQ(state_.media_.get(), vlc_.Media(1));
  EXPECT_EQ(vlc_.MediaOf(Player()), vlc_.Media(1));
  ASSERT_TRUE(SetMedia("http://host/b"));
  EXPECT_EQ(state_.media_.get(), vlc_.Media(2));
  EXPECT_EQ(vlc_.LiveMedia(), 1);
}

TEST_F(StartedPlayerTest, AnInitialPositionOf0OrBelowIsNotSought) {
  ASSERT_TRUE(SetMedia("http://host/a", 0));
  ASSERT_TRUE(SetMedia("http://host/a", -1));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_time"), 0);
  EXPECT_EQ(log_.CountContaining("Set initial seek position"), 0);
}

TEST_F(StartedPlayerTest, AnInitialSeekWithoutTheSlotIsLeftOut) {
  LibVlcFunctionTable().libvlc_media_player_set_time = nullptr;
  EXPECT_TRUE(SetMedia("http://host/a", 4000));
  EXPECT_EQ(log_.CountContaining("Set initial seek position"), 0);
}

TEST_F(StartedPlayerTest, SetMediaWithTheCurrentTitleKeepsIt) {
  ASSERT_TRUE(player_.SetMedia({"http://host/a", "A title", 0, 0, true, false, false}));
  ASSERT_TRUE(player_.SetMedia({state_.current_.url, state_.current_.title, 0, 0, true, false, false}));
  EXPECT_EQ(state_.current_.title, "A title");
  EXPECT_EQ(state_.current_.url, "http://host/a");
}

TEST_F(StartedPlayerTest, SetMediaOfAnEmptyUrlChangesNothing) {
  ASSERT_TRUE(SetMedia("http://host/a"));
  vlc_.ClearCalls();
  EXPECT_FALSE(SetMedia(""));
  EXPECT_EQ(log_.Lines().back(), "ERROR [VLCPlayer::SetMedia] ERROR: URL is empty.");
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_EQ(state_.current_.url, "http://host/a");
  EXPECT_TRUE(state_.stallWatchdogActive_);
}

TEST_F(StartedPlayerTest, SetMediaWithoutAnInstanceChangesNothing) {
  player_.Cleanup();
  vlc_.ClearCalls();
  EXPECT_FALSE(SetMedia("http://host/a"));
  EXPECT_EQ(log_.Lines().back(), "ERROR [VLCPlayer::SetMedia] ERROR: Missing mediaPlayer or vlcInstance");
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_EQ(state_.current_.url, "");
}

TEST_F(StartedPlayerTest, AMediaThatCannotBeMadeLeavesThePlayerStoppedWithoutAny) {
  ASSERT_TRUE(SetMedia("http://host/a"));
  vlc_.Fail("libvlc_media_new_uri", 1);
  vlc_.Fail("libvlc_media_new_location", 2);
  vlc_.ClearCalls();
  EXPECT_FALSE(SetMedia("http://host/b"));
  EXPECT_EQ(log_.Lines().back(), "ERROR Failed to create media for URL: http://host/b");
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_stop"), 1);
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_release"), ElementsAre("libvlc_media_release(media1)"));
  EXPECT_EQ(state_.media_.get(), nullptr);
  EXPECT_FALSE(state_.stallWatchdogActive_);
  EXPECT_EQ(state_.current_.url, "http://host/a");
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 0);
}

}  // namespace
}  // namespace vantro::test
