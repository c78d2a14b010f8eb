// Media and transport of the single view.
#include <limits>
#include <utility>

#include "tests/unit/player/player_fixture.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PlayerTransport : public PlayerTest {
 protected:
  void SetUp() override { Start(); }

  libvlc_media_player_t* Player() { return player_.mediaPlayer_.get(); }
  std::string PlayerText() { return PointerText(Player()); }
  // The log without the lines of other operations that come before.
  std::vector<std::string> LinesOf(const std::string& tag) {
    std::vector<std::string> lines = log_.Lines();
    std::erase_if(lines, [&](const std::string& line) { return line.find(tag) == std::string::npos; });
    return lines;
  }
};

// Making a media.

struct UrlRow {
  const char* name;
  const char* url;
  bool network;
};

class MediaOfUrl : public PlayerTransport, public testing::WithParamInterface<UrlRow> {};

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

TEST_F(PlayerTransport, CreateMediaOfAnEmptyUrlIsAnError) {
  EXPECT_EQ(player_.CreateMedia(""), nullptr);
  EXPECT_EQ(log_.Lines().back(), "ERROR [VLCPlayer::CreateMedia] ERROR: URL is empty.");
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(PlayerTransport, CreateMediaOfANetworkUrlWithoutTheUriFunctionTakesTheLocation) {
  LibVlcFunctionTable().libvlc_media_new_uri = nullptr;
  const VlcMediaPtr media(player_.CreateMedia("http://host/a"));
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_new_location(\"http://host/a\")"));
  EXPECT_EQ(log_.CountContaining("falling back"), 0);
}

TEST_F(PlayerTransport, CreateMediaOfANetworkUrlTriesTheLocationTwice) {
  vlc_.Fail("libvlc_media_new_uri");
  vlc_.Fail("libvlc_media_new_location", 1);
  const VlcMediaPtr media(player_.CreateMedia("http://host/a"));
  EXPECT_NE(media, nullptr);
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_new_uri(\"http://host/a\")",
                                        "libvlc_media_new_location(\"http://host/a\")",
                                        "libvlc_media_new_location(\"http://host/a\")"));
  EXPECT_EQ(log_.Lines().back(),
            "WARNING Failed to create media with specific function, falling back to new_location for: http://host/a");
}

TEST_F(PlayerTransport, CreateMediaOfAPathFallsBackToTheLocation) {
  vlc_.Fail("libvlc_media_new_path");
  const VlcMediaPtr media(player_.CreateMedia("udp://host"));
  EXPECT_NE(media, nullptr);
  EXPECT_THAT(vlc_.Calls(),
              ElementsAre("libvlc_media_new_path(\"udp://host\")", "libvlc_media_new_location(\"udp://host\")"));
}

TEST_F(PlayerTransport, CreateMediaOfAPathWithoutThePathFunctionFallsBackToTheLocation) {
  LibVlcFunctionTable().libvlc_media_new_path = nullptr;
  const VlcMediaPtr media(player_.CreateMedia("udp://host"));
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_new_location(\"udp://host\")"));
}

TEST_F(PlayerTransport, CreateMediaWithoutAnyCreatorGivesNull) {
  LibVlcFunctionTable().libvlc_media_new_path = nullptr;
  LibVlcFunctionTable().libvlc_media_new_location = nullptr;
  LibVlcFunctionTable().libvlc_media_new_uri = nullptr;
  EXPECT_EQ(player_.CreateMedia("http://host/a"), nullptr);
  EXPECT_EQ(player_.CreateMedia("udp://host"), nullptr);
}

TEST_F(PlayerTransport, TheLegacyCreatorsAreGivenTheInstanceToo) {
  LibVlcFunctionTable().legacyMediaCreation = true;
  vlc_.Fail("libvlc_media_new_uri");
  const VlcMediaPtr network(player_.CreateMedia("http://host/a"));
  const VlcMediaPtr path(player_.CreateMedia("C:\\a.ts"));
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_new_uri(instance1, \"http://host/a\")",
                                        "libvlc_media_new_location(instance1, \"http://host/a\")",
                                        "libvlc_media_new_path(instance1, \"C:\\a.ts\")"));
}

// Setting a media.

TEST_F(PlayerTransport, SetMediaMakesTheCallsInOrder) {
  ASSERT_TRUE(player_.SetMedia("http://host/a", "Title", 1500, 4000, true, false, false));
  EXPECT_THAT(vlc_.Calls(),
              ElementsAre("libvlc_media_player_stop(player1)", "libvlc_media_new_uri(\"http://host/a\")",
                          "libvlc_media_add_option(media1, \":no-video-title-show\")",
                          "libvlc_media_add_option(media1, \":network-caching=1500\")",
                          "libvlc_media_player_set_media(player1, media1)",
                          "libvlc_media_player_set_time(player1, 4000, 0)", "libvlc_media_player_play(player1)",
                          "libvlc_audio_get_volume(player1)", "libvlc_audio_get_mute(player1)"));
}

TEST_F(PlayerTransport, SetMediaWritesItsLines) {
  ASSERT_TRUE(player_.SetMedia("http://host/a", "A title", 1500, 4000, true, false, false));
  EXPECT_THAT(LinesOf("[VLCPlayer::SetMedia]"),
              ElementsAre("INFO [VLCPlayer::SetMedia] Called with url=http://host/a, title=A title, "
                          "networkCacheMs=1500, initialSeekPositionMs=4000, mediaPlayer_.get()=" +
                              PlayerText() + ", vlcInstance_=" + PointerText(player_.vlcInstance_.get()) +
                              ", volume_=100",
                          "INFO [VLCPlayer::SetMedia] Set network cache to 1500 ms",
                          "INFO [VLCPlayer::SetMedia]  Set initial seek position to 4000ms BEFORE play "
                          "(seek-before-play fix)"));
}

TEST_F(PlayerTransport, SetMediaStoresWhatTheWatchdogPlaysAgain) {
  ASSERT_TRUE(player_.SetMedia("http://host/a", "A title", -3, 0, false, true, true));
  EXPECT_EQ(player_.currentUrl_, "http://host/a");
  EXPECT_EQ(player_.currentTitle_, "A title");
  EXPECT_EQ(player_.networkCacheMs_, -3);
  EXPECT_FALSE(player_.isLive_);
  EXPECT_TRUE(player_.supportsTimeshift_);
  EXPECT_TRUE(player_.inTimeshiftMode_);
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_add_option"),
              testing::Contains("libvlc_media_add_option(media1, \":network-caching=-3\")"));
}

TEST_F(PlayerTransport, SetMediaStartsTheWatchdogAndIsUnseenByTheInterface) {
  ASSERT_TRUE(SetMedia("http://host/a"));
  EXPECT_TRUE(player_.stallWatchdogActive_);
  EXPECT_TRUE(player_.suppressStoppedEvent_);
}

TEST_F(PlayerTransport, SetMediaKeepsOneReferenceAndThePlayerTheOther) {
  ASSERT_TRUE(SetMedia("http://host/a"));
  EXPECT_EQ(player_.media_.get(), vlc_.Media(1));
  EXPECT_EQ(vlc_.MediaOf(Player()), vlc_.Media(1));
  ASSERT_TRUE(SetMedia("http://host/b"));
  EXPECT_EQ(player_.media_.get(), vlc_.Media(2));
  EXPECT_EQ(vlc_.LiveMedia(), 1);
}

TEST_F(PlayerTransport, AnInitialSeekPositionOf0OrBelowMakesNoSeekAndNoLine) {
  ASSERT_TRUE(SetMedia("http://host/a", 0));
  ASSERT_TRUE(SetMedia("http://host/a", -1));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_time"), 0);
  EXPECT_EQ(log_.CountContaining("Set initial seek position"), 0);
}

TEST_F(PlayerTransport, AnInitialSeekWithoutTheSlotIsLeftOut) {
  LibVlcFunctionTable().libvlc_media_player_set_time = nullptr;
  EXPECT_TRUE(SetMedia("http://host/a", 4000));
  EXPECT_EQ(log_.CountContaining("Set initial seek position"), 0);
}

TEST_F(PlayerTransport, SetMediaWithCurrentTitleAsItsTitleDoesNotLoseTheTitle) {
  ASSERT_TRUE(player_.SetMedia("http://host/a", "A title", 0, 0, true, false, false));
  ASSERT_TRUE(player_.SetMedia(player_.currentUrl_, player_.currentTitle_, 0, 0, true, false, false));
  EXPECT_EQ(player_.currentTitle_, "A title");
  EXPECT_EQ(player_.currentUrl_, "http://host/a");
}

TEST_F(PlayerTransport, SetMediaOfAnEmptyUrlChangesNothing) {
  ASSERT_TRUE(SetMedia("http://host/a"));
  vlc_.ClearCalls();
  EXPECT_FALSE(SetMedia(""));
  EXPECT_EQ(log_.Lines().back(), "ERROR [VLCPlayer::SetMedia] ERROR: URL is empty.");
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_EQ(player_.currentUrl_, "http://host/a");
  EXPECT_TRUE(player_.stallWatchdogActive_);
}

TEST_F(PlayerTransport, SetMediaWithoutAnInstanceChangesNothing) {
  player_.Cleanup();
  vlc_.ClearCalls();
  EXPECT_FALSE(SetMedia("http://host/a"));
  EXPECT_EQ(log_.Lines().back(), "ERROR [VLCPlayer::SetMedia] ERROR: Missing mediaPlayer or vlcInstance");
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_EQ(player_.currentUrl_, "");
}

TEST_F(PlayerTransport, SetMediaWithoutItsFunctionsNamesThem) {
  LibVlcFunctionTable().libvlc_media_add_option = nullptr;
  EXPECT_FALSE(SetMedia("http://host/a"));
  EXPECT_EQ(log_.Lines().back(),
            "ERROR Failed to get one or more VLC function pointers for SetMedia (set_media=1, add_option=0)");
  LibVlcFunctionTable().libvlc_media_player_set_media = nullptr;
  EXPECT_FALSE(SetMedia("http://host/a"));
  EXPECT_EQ(log_.Lines().back(),
            "ERROR Failed to get one or more VLC function pointers for SetMedia (set_media=0, add_option=0)");
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(PlayerTransport, AMediaThatCannotBeMadeLeavesThePlayerStoppedWithoutAny) {
  ASSERT_TRUE(SetMedia("http://host/a"));
  vlc_.Fail("libvlc_media_new_uri", 1);
  vlc_.Fail("libvlc_media_new_location", 2);
  vlc_.ClearCalls();
  EXPECT_FALSE(SetMedia("http://host/b"));
  EXPECT_EQ(log_.Lines().back(), "ERROR Failed to create media for URL: http://host/b");
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_stop"), 1);
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_release"), ElementsAre("libvlc_media_release(media1)"));
  EXPECT_EQ(player_.media_.get(), nullptr);
  EXPECT_FALSE(player_.stallWatchdogActive_);
  EXPECT_EQ(player_.currentUrl_, "http://host/a");
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_play"), 0);
}

// Playing.

class PlayerPlay : public PlayerTransport {
 protected:
  void SetUp() override {
    PlayerTransport::SetUp();
    ASSERT_TRUE(SetMedia("http://host/a"));
    vlc_.ClearCalls();
  }
  std::string CalledLine(int volume) {
    return "INFO [VLCPlayer::Play] Called, mediaPlayer_.get()=" + PlayerText() +
           ", volume_=" + std::to_string(volume) + ", isMultiViewMode_=0";
  }
  // The lines of the last call of Play.
  std::vector<std::string> LastLines() {
    const std::vector<std::string> lines = LinesOf("[VLCPlayer::Play]");
    for (size_t index = lines.size(); index-- > 0;)
      if (lines[index].find("] Called, ") != std::string::npos) return {lines.begin() + static_cast<long>(index), lines.end()};
    return lines;
  }
};

TEST_F(PlayerPlay, CallsLibvlcOnceMoreOnARunningStream) {
  player_.Play();
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_player_play(player1)", "libvlc_audio_get_volume(player1)",
                                        "libvlc_audio_get_mute(player1)"));
  EXPECT_THAT(LastLines(),
              ElementsAre(CalledLine(100), "INFO [VLCPlayer::Play] Called libvlc_media_player_play successfully",
                          "INFO [VLCPlayer::Play] VLC audio state: volume=100, muted=0 (-1=error, 0=unmuted, 1=muted)"));
}

TEST_F(PlayerPlay, WithoutAMediaIsIgnored) {
  player_.media_.reset();
  vlc_.ClearCalls();
  player_.Play();
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_EQ(log_.Lines().back(), "WARNING [VLCPlayer::Play] Ignoring play: no media set");
}

TEST_F(PlayerPlay, WithoutAPlayerIsAnError) {
  player_.Cleanup();
  player_.Play();
  EXPECT_EQ(log_.Lines().back(), "ERROR [VLCPlayer::Play] ERROR: mediaPlayer_.get() is null");
}

TEST_F(PlayerPlay, WithoutTheFunctionIsAnError) {
  LibVlcFunctionTable().libvlc_media_player_play = nullptr;
  player_.Play();
  EXPECT_EQ(log_.Lines().back(), "ERROR [VLCPlayer::Play] ERROR: Could not get vlc_media_player_play function");
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(PlayerPlay, WithoutEitherAudioGetterEndsBehindThePlay) {
  LibVlcFunctions& table = LibVlcFunctionTable();
  const auto getMute = std::exchange(table.libvlc_audio_get_mute, nullptr);
  player_.Play();
  table.libvlc_audio_get_mute = getMute;
  table.libvlc_audio_get_volume = nullptr;
  player_.Play();
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_player_play(player1)", "libvlc_media_player_play(player1)"));
}

TEST_F(PlayerPlay, WithoutAnAudioOutputTriesVolume100Once) {
  vlc_.SetVolume(Player(), -1);
  vlc_.SetMute(Player(), -1);
  vlc_.SetResult("libvlc_audio_set_volume", -1);
  player_.Play();
  EXPECT_THAT(vlc_.CallsOf("libvlc_audio_set_volume"), ElementsAre("libvlc_audio_set_volume(player1, 100)"));
  EXPECT_EQ(vlc_.CountOf("libvlc_audio_set_mute"), 0);
  EXPECT_THAT(
      LastLines(),
      ElementsAre(CalledLine(100), "INFO [VLCPlayer::Play] Called libvlc_media_player_play successfully",
                  "INFO [VLCPlayer::Play] VLC audio state: volume=-1, muted=-1 (-1=error, 0=unmuted, 1=muted)",
                  "ERROR [VLCPlayer::Play] ERROR: VLC audio subsystem not working (both volume and mute return -1)",
                  "WARNING [VLCPlayer::Play] Possible causes: No audio devices, VLC audio module failed, or VLC built "
                  "without audio",
                  "INFO [VLCPlayer::Play] Attempted to force volume=100, result=-1"));
}

TEST_F(PlayerPlay, WithoutAnAudioOutputAndWithoutTheVolumeFunctionTriesNothing) {
  vlc_.SetVolume(Player(), -1);
  vlc_.SetMute(Player(), -1);
  LibVlcFunctionTable().libvlc_audio_set_volume = nullptr;
  player_.Play();
  EXPECT_EQ(log_.CountContaining("Attempted to force volume"), 0);
  EXPECT_EQ(log_.CountContaining("Possible causes"), 1);
}

struct AudioRow {
  const char* name;
  int volume;
  int mute;
  bool repaired;
};

class AudioState : public PlayerPlay, public testing::WithParamInterface<AudioRow> {};

TEST_P(AudioState, IsRepairedWhereItWouldBeSilent) {
  vlc_.SetVolume(Player(), GetParam().volume);
  vlc_.SetMute(Player(), GetParam().mute);
  player_.Play();
  if (GetParam().repaired) {
    EXPECT_THAT(vlc_.Calls(),
                ElementsAre("libvlc_media_player_play(player1)", "libvlc_audio_get_volume(player1)",
                            "libvlc_audio_get_mute(player1)", "libvlc_audio_set_mute(player1, 0)",
                            "libvlc_audio_set_volume(player1, 100)"));
    EXPECT_EQ(LastLines().back(), "INFO [VLCPlayer::Play] FIXED: Unmuted and set volume to 100");
  } else {
    EXPECT_EQ(vlc_.CountOf("libvlc_audio_set_mute"), 0);
    EXPECT_EQ(vlc_.CountOf("libvlc_audio_set_volume"), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Table, AudioState,
                         testing::Values(AudioRow{"Muted", 50, 1, true}, AudioRow{"Silent", 0, 0, true},
                                         AudioRow{"SilentWithUnknownMute", 0, -1, true},
                                         AudioRow{"MutedWithUnknownVolume", -1, 1, true},
                                         AudioRow{"Heard", 1, 0, false}, AudioRow{"UnknownMute", 50, -1, false},
                                         AudioRow{"UnknownVolume", -1, 0, false}),
                         [](const testing::TestParamInfo<AudioRow>& row) { return row.param.name; });

TEST_F(PlayerPlay, WithoutTheMuteFunctionLeavesASilentPlayerAlone) {
  vlc_.SetVolume(Player(), 0);
  LibVlcFunctionTable().libvlc_audio_set_mute = nullptr;
  player_.Play();
  EXPECT_EQ(vlc_.CountOf("libvlc_audio_set_volume"), 0);
}

TEST_F(PlayerPlay, AfterVolume0EndsWithLibvlcAt100AndTheCachedVolumeAt0) {
  player_.SetVolume(0);
  player_.Play();
  EXPECT_EQ(vlc_.Volume(Player()), 100);
  EXPECT_EQ(player_.volume_, 0);
}

// Pausing, asking, stopping.

TEST_F(PlayerTransport, PauseToggles) {
  player_.Pause();
  player_.Pause();
  EXPECT_THAT(vlc_.Calls(),
              ElementsAre("libvlc_media_player_pause(player1)", "libvlc_media_player_pause(player1)"));
}

TEST_F(PlayerTransport, IsPlayingIsWhatLibvlcSays) {
  EXPECT_FALSE(player_.IsPlaying());
  vlc_.SetPlaying(Player(), true);
  EXPECT_TRUE(player_.IsPlaying());
  LibVlcFunctionTable().libvlc_media_player_is_playing = nullptr;
  EXPECT_FALSE(player_.IsPlaying());
}

TEST_F(PlayerTransport, StopInternalStopsThePlayerAndTheWatchdogAndKeepsTheMedia) {
  ASSERT_TRUE(SetMedia("http://host/a"));
  player_.suppressStoppedEvent_ = false;
  vlc_.ClearCalls();
  player_.StopInternal(false);
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_player_stop(player1)"));
  EXPECT_FALSE(player_.suppressStoppedEvent_);
  EXPECT_FALSE(player_.stallWatchdogActive_);
  EXPECT_NE(player_.media_.get(), nullptr);
}

TEST_F(PlayerTransport, StopInternalSuppressesBeforeItStops) {
  bool suppressed = false;
  vlc_.OnCall("libvlc_media_player_stop", [&] { suppressed = player_.suppressStoppedEvent_; });
  player_.StopInternal(true);
  EXPECT_TRUE(suppressed);
}

TEST_F(PlayerTransport, StopInternalWithoutTheSlotOnlyStopsTheWatchdog) {
  ASSERT_TRUE(SetMedia("http://host/a"));
  player_.suppressStoppedEvent_ = false;
  LibVlcFunctionTable().libvlc_media_player_stop = nullptr;
  vlc_.ClearCalls();
  player_.StopInternal(true);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_FALSE(player_.suppressStoppedEvent_);
  EXPECT_FALSE(player_.stallWatchdogActive_);
}

// Volume and time.

TEST_F(PlayerTransport, SetVolumePassesOnWhatComes) {
  for (const int volume : {0, 100, 250, -7}) player_.SetVolume(volume);
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_audio_set_volume(player1, 0)", "libvlc_audio_set_volume(player1, 100)",
                                        "libvlc_audio_set_volume(player1, 250)",
                                        "libvlc_audio_set_volume(player1, -7)"));
  EXPECT_EQ(player_.volume_, -7);
}

TEST_F(PlayerTransport, SetVolumeKeepsTheVolumeThatLibvlcRefuses) {
  vlc_.SetResult("libvlc_audio_set_volume", -1);
  player_.SetVolume(40);
  EXPECT_EQ(player_.volume_, 40);
  EXPECT_EQ(log_.Lines().back(),
            "INFO [VLCPlayer::SetVolume] libvlc_audio_set_volume result=-1 (0=success, -1=error)");
}

TEST_F(PlayerTransport, SetVolumeWithoutTheSlotKeepsTheVolume) {
  LibVlcFunctionTable().libvlc_audio_set_volume = nullptr;
  player_.SetVolume(40);
  EXPECT_EQ(player_.volume_, 40);
  EXPECT_EQ(log_.Lines().back(), "ERROR [VLCPlayer::SetVolume] ERROR: Could not get vlc_audio_set_volume function");
}

TEST_F(PlayerTest, SetVolumeBeforeInitializeCachesTheValueAndMakesNoCall) {
  player_.SetVolume(40);
  EXPECT_EQ(player_.volume_, 40);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_THAT(log_.Lines(), ElementsAre("INFO [VLCPlayer::SetVolume] Called with volume=40, current volume_=100, "
                                        "mediaPlayer_.get()=" +
                                            PointerText(nullptr) + ", isMultiViewMode_=0",
                                        "INFO [VLCPlayer::SetVolume] No mediaPlayer_.get(), just caching volume"));
}

TEST_F(PlayerTest, TheOperationsBeforeInitializeDoNothing) {
  player_.Pause();
  player_.StopInternal(true);
  player_.RefreshSpuTracks();
  player_.RefreshAudioTracks();
  EXPECT_FALSE(player_.IsPlaying());
  EXPECT_FALSE(player_.SeekTo(1));
  EXPECT_FALSE(player_.suppressStoppedEvent_);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(PlayerTransport, SeekToPassesTheTimeOnWhateverLibvlcAnswers) {
  vlc_.SetResult("libvlc_media_player_set_time", -1);
  EXPECT_TRUE(player_.SeekTo(std::numeric_limits<int64_t>::max()));
  EXPECT_TRUE(player_.SeekTo(-1));
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_player_set_time(player1, 9223372036854775807, 0)",
                                        "libvlc_media_player_set_time(player1, -1, 0)"));
}

TEST_F(PlayerTransport, SeekToWithoutTheSlotIsFalse) {
  LibVlcFunctionTable().libvlc_media_player_set_time = nullptr;
  EXPECT_FALSE(player_.SeekTo(5));
}

// The video's window.

TEST_F(PlayerTransport, ResizeMovesTheChildWindow) {
  player_.Resize(5, 30, 640, 360);
  const RECT place = PlaceInParent(player_.vlcWindow_);
  EXPECT_EQ(place.left, 5);
  EXPECT_EQ(place.top, 30);
  EXPECT_EQ(place.right - place.left, 640);
  EXPECT_EQ(place.bottom - place.top, 360);
  std::vector<std::string> lines = log_.Lines();
  lines.erase(lines.begin(), lines.end() - 3);
  EXPECT_THAT(lines, ElementsAre("INFO [Resize] Called with 640x360 isMultiViewMode=0",
                                 "INFO EnsureZOrder: parent=" + PointerText(parent_.get()) + " vlc=" +
                                     PointerText(player_.vlcWindow_) + " overlay=" + PointerText(nullptr),
                                 "INFO [Resize] Resized VLC window to 640x360"));
}

TEST_F(PlayerTransport, ResizeInMultiViewModeIgnoresItsArguments) {
  player_.isMultiViewMode_ = true;
  const RECT before = PlaceInParent(player_.vlcWindow_);
  player_.Resize(5, 30, 640, 360);
  const RECT after = PlaceInParent(player_.vlcWindow_);
  EXPECT_TRUE(EqualRect(&before, &after));
  EXPECT_TRUE(log_.Has("INFO [Resize] In multiview mode - updating grid layout for new size"));
  EXPECT_EQ(log_.CountContaining("[Resize] Resized"), 0);
}

TEST_F(PlayerTest, ResizeWithNoChildWindowDoesNothingNotEvenEnsureZOrder) {
  player_.Resize(5, 30, 640, 360);
  EXPECT_THAT(log_.Lines(), ElementsAre("INFO [Resize] Called with 640x360 isMultiViewMode=0"));
}

TEST_F(PlayerTransport, ResizeOfAPlayerInTheParentLeavesTheParentAlone) {
  DestroyWindow(player_.vlcWindow_);
  player_.vlcWindow_ = parent_.get();
  player_.Resize(5, 30, 640, 360);
  RECT client{};
  GetClientRect(parent_.get(), &client);
  EXPECT_EQ(client.right, 800);
  EXPECT_EQ(log_.CountContaining("EnsureZOrder"), 0);
}

// What EnsureZOrder asks of the system, seen by the windows that it asks it for.
class Stacking : public PlayerTransport {
 protected:
  struct Placement {
    HWND window;
    HWND insertAfter;
    UINT flags;
    bool operator==(const Placement&) const = default;
  };
  static constexpr UINT kFlagsA = SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE;
  static constexpr UINT kFlagsB = kFlagsA | SWP_SHOWWINDOW;

  void SetUp() override {
    PlayerTransport::SetUp();
    placements_.clear();
  }
  HWND MakeChild() {
    return CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 10, 10, parent_.get(), nullptr, nullptr, nullptr);
  }
  // Records the placements of the window from now on.
  static HWND Watch(HWND window) {
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Record));
    return window;
  }
  static LRESULT CALLBACK Record(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_WINDOWPOSCHANGING) {
      const auto* const position = reinterpret_cast<const WINDOWPOS*>(lParam);
      placements_.push_back({window, position->hwndInsertAfter, position->flags & kFlagsB});
    }
    return DefWindowProcW(window, message, wParam, lParam);
  }

  static inline std::vector<Placement> placements_;
};

TEST_F(Stacking, WithoutAnOverlayTakesTheVideoOutOfTheTopmostLayer) {
  const HWND video = Watch(player_.vlcWindow_);
  player_.EnsureZOrder();
  EXPECT_THAT(placements_, ElementsAre(Placement{video, HWND_NOTOPMOST, kFlagsA}));
}

TEST_F(Stacking, TakesAnOverlayThatIsGoneForNone) {
  ParentWindow overlay(50, 50);
  player_.overlayWindow_ = overlay.get();
  overlay.Destroy();
  const HWND video = Watch(player_.vlcWindow_);
  player_.EnsureZOrder();
  EXPECT_THAT(placements_, ElementsAre(Placement{video, HWND_NOTOPMOST, kFlagsA}));
}

TEST_F(Stacking, OfAChildOverlayPutsItOnTopAndTheVideoAtTheBottom) {
  const HWND video = Watch(player_.vlcWindow_);
  const HWND overlay = Watch(MakeChild());
  player_.overlayWindow_ = overlay;
  player_.EnsureZOrder();
  EXPECT_THAT(placements_, ElementsAre(Placement{video, HWND_BOTTOM, kFlagsA}, Placement{overlay, video, kFlagsB},
                                       Placement{overlay, HWND_TOP, kFlagsB}));
  EXPECT_EQ(GetWindow(parent_.get(), GW_CHILD), overlay);
}

TEST_F(Stacking, OfATopLevelOverlayPlacesItBehindTheVideoAndShowsIt) {
  // The system takes only a sibling as the window to insert after, so the video is a top-level window here.
  DestroyWindow(player_.vlcWindow_);
  const ParentWindow videoWindow(60, 60);
  const ParentWindow overlayWindow(50, 50);
  const HWND video = player_.vlcWindow_ = Watch(videoWindow.get());
  const HWND overlay = player_.overlayWindow_ = Watch(overlayWindow.get());
  player_.EnsureZOrder();
  EXPECT_THAT(placements_,
              ElementsAre(Placement{video, HWND_NOTOPMOST, kFlagsA}, Placement{overlay, video, kFlagsB}));
  EXPECT_TRUE(IsWindowVisible(overlay));
}

TEST_F(Stacking, OfAPlayerInTheParentIsLeftAlone) {
  DestroyWindow(player_.vlcWindow_);
  player_.vlcWindow_ = parent_.get();
  player_.EnsureZOrder();
  EXPECT_EQ(log_.CountContaining("EnsureZOrder"), 0);
}

// Track lists.

class TrackLists : public PlayerTransport {
 protected:
  void SetUp() override {
    PlayerTransport::SetUp();
    player_.eventCallback_ = [this](const char* name, const char* argument) {
      events_.push_back(std::string(name) + "=" + argument);
    };
  }
  std::vector<std::string> events_;
};

TEST_F(TrackLists, AreReadReleasedAndToldWithoutTheirElements) {
  vlc_.SetSpuTracks(Player(), {{-1, "Disable"}, {3, "English"}});
  vlc_.SetAudioTracks(Player(), {{-1, "Disable"}, {1, "Stereo"}});
  player_.RefreshSpuTracks();
  player_.RefreshAudioTracks();
  EXPECT_THAT(vlc_.Calls(),
              ElementsAre("libvlc_video_get_spu_description(player1)", "libvlc_track_description_list_release(list)",
                          "libvlc_audio_get_track_description(player1)",
                          "libvlc_track_description_list_release(list)"));
  EXPECT_THAT(events_, ElementsAre("spuTracks=", "audioTracks="));
  EXPECT_EQ(vlc_.Live().track_lists, 0);
}

TEST_F(TrackLists, ThatAreEmptyAreToldToo) {
  player_.RefreshSpuTracks();
  player_.RefreshAudioTracks();
  EXPECT_THAT(events_, ElementsAre("spuTracks=", "audioTracks="));
}

TEST_F(TrackLists, AreReadWithoutAnyoneToTell) {
  player_.eventCallback_ = nullptr;
  player_.RefreshSpuTracks();
  EXPECT_EQ(vlc_.CountOf("libvlc_video_get_spu_description"), 1);
}

TEST_F(TrackLists, AreNotReadWithoutTheReleaseFunction) {
  LibVlcFunctionTable().libvlc_track_description_list_release = nullptr;
  player_.RefreshSpuTracks();
  player_.RefreshAudioTracks();
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_THAT(events_, IsEmpty());
}

TEST_F(TrackLists, AreNotReadWithoutTheirOwnFunction) {
  LibVlcFunctionTable().libvlc_video_get_spu_description = nullptr;
  LibVlcFunctionTable().libvlc_audio_get_track_description = nullptr;
  player_.RefreshSpuTracks();
  player_.RefreshAudioTracks();
  EXPECT_THAT(events_, IsEmpty());
}

}  // namespace
}  // namespace vantro::test
