// The thumbnail channel over the loopback engine and the scripted libvlc: bytes in, bytes out.
#include "services/vod_thumbnail_worker_plugin.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <memory>

#include "flutter_host/flutter_engine.h"
#include "tests/support/interface_end.h"
#include "tests/support/log_capture.h"
#include "tests/support/loopback.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/scripted_vlc.h"
#include "tests/unit/shell/import_hook.h"

namespace vantro::test {
namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr char kJpeg[] = "\xFF\xD8 a picture \r\n\x1A with any bytes";

std::vector<Entry> FrameEntries(const char* mediaId = "123", double timeSeconds = 42.7) {
  return {{"mediaId", mediaId},
          {"proxyUrl", "http://host/film.mp4"},
          {"timeSeconds", Value(timeSeconds)},
          {"width", Value(320)},
          {"height", Value(180)}};
}
Value FrameArguments(const char* mediaId = "123", double timeSeconds = 42.7) {
  return MapOf(FrameEntries(mediaId, timeSeconds));
}

Answer Frame(const std::string& bytes) {
  return Success(MapOf({{"success", Value(true)}, {"bytes", Value(std::vector<uint8_t>(bytes.begin(), bytes.end()))}}));
}

Answer NoFrame(const char* error) { return Success(MapOf({{"success", Value(false)}, {"error", error}})); }

class ThumbnailWorker : public testing::Test {
 protected:
  ThumbnailWorker() {
    EXPECT_TRUE(engine_.Initialize(nullptr));
    engineNumber_ = loopback_.NewestEngine();
    plugin_ = std::make_unique<vod_thumbnail::VodThumbnailWorkerPlugin>(engine_.GetMessenger());
  }

  Answer Ask(const std::string& method, const Value& arguments = Value()) {
    return interface_.Ask(engineNumber_, kThumbnailChannel, method, arguments);
  }
  Answer GetFrame(const Value& arguments = FrameArguments()) { return Ask("getFrame", arguments); }
  void Initialize() { ASSERT_EQ(Ask("initialize"), Success(Value(true))); }
  // Ready, with a picture to give.
  void InitializeWithPicture() {
    Initialize();
    vlc_.SetSnapshot(std::string(kJpeg, sizeof kJpeg - 1));
    vlc_.ClearCalls();
  }
  std::vector<std::string> FilesLeft() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(scratch_.path())) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

  ScratchFolder scratch_;
  TemporaryFolderAt temporaryFolder_{scratch_.path()};
  LogCapture log_;
  ScriptedVlc vlc_;
  Loopback loopback_;
  InterfaceEnd interface_{loopback_};
  FlutterEngine engine_;
  int engineNumber_ = 0;
  std::unique_ptr<vod_thumbnail::VodThumbnailWorkerPlugin> plugin_;
};

TEST_F(ThumbnailWorker, TouchesNoLibvlcBeforeItIsInitialized) {
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_TRUE(loopback_.HasListener(engineNumber_, kThumbnailChannel));
  EXPECT_TRUE(log_.Has("INFO VodThumbnailWorkerPlugin: Constructor called"));
}

TEST_F(ThumbnailWorker, InitializesLibvlcWithItsFourArguments) {
  EXPECT_EQ(Ask("initialize"), Success(Value(true)));
  ASSERT_EQ(vlc_.CountOf("libvlc_new"), 1);
  const std::string call = vlc_.CallsOf("libvlc_new")[0];
  size_t at = 0;
  for (const char* argument : {"4", "--no-audio", "--network-caching=1000", "--no-video-title-show", "--verbose=0"}) {
    at = call.find(argument, at);
    ASSERT_NE(at, std::string::npos) << call << " lacks " << argument;
  }
  EXPECT_EQ(vlc_.LivePlayers(), 1);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_hwnd"), 0);
}

TEST_F(ThumbnailWorker, InitializingTwiceRepliesTrueAndChangesNothing) {
  Initialize();
  vlc_.ClearCalls();
  EXPECT_EQ(Ask("initialize"), Success(Value(true)));
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_TRUE(log_.Has("INFO VodThumbnailWorkerPlugin: Already initialized"));
}

TEST_F(ThumbnailWorker, WithoutAnInstanceIsNotReady) {
  vlc_.Fail("libvlc_new");
  EXPECT_EQ(Ask("initialize"), Success(Value(false)));
  EXPECT_TRUE(log_.Has("ERROR VodThumbnailWorkerPlugin: Failed to create libvlc instance"));
  EXPECT_EQ(Ask("initialize"), Success(Value(true)));  // the next try may succeed
}

TEST_F(ThumbnailWorker, WithoutAPlayerIsNotReadyAndKeepsNoInstance) {
  vlc_.Fail("libvlc_media_player_new");
  EXPECT_EQ(Ask("initialize"), Success(Value(false)));
  EXPECT_EQ(vlc_.LiveInstances(), 0);
  EXPECT_TRUE(log_.Has("ERROR VodThumbnailWorkerPlugin: Failed to create media player"));
}

TEST_F(ThumbnailWorker, TakesAFrameByPlayingSeekingAndReadingTheSnapshot) {
  InitializeWithPicture();
  EXPECT_EQ(GetFrame(), Frame(std::string(kJpeg, sizeof kJpeg - 1)));
  const std::string snapshot = vlc_.CallsOf("libvlc_video_take_snapshot").at(0);
  EXPECT_NE(snapshot.find("vantro_thumb_123_42.jpg"), std::string::npos) << snapshot;
  EXPECT_THAT(snapshot, testing::EndsWith(", 320, 180)"));
  EXPECT_THAT(vlc_.Calls(),
              ElementsAre("libvlc_media_new_location(\"http://host/film.mp4\")",
                          "libvlc_media_player_set_media(player1, media1)", "libvlc_media_player_play(player1)",
                          "libvlc_media_player_set_time(player1, 42700, 0)", snapshot,
                          "libvlc_media_player_stop_async(player1)", "libvlc_media_release(media1)"));
  EXPECT_THAT(FilesLeft(), IsEmpty());
}

TEST_F(ThumbnailWorker, WaitsAfterPlayAfterTheSeekAndAfterTheSnapshot) {
  InitializeWithPicture();
  steady_clock::time_point played, sought, snapped;
  vlc_.OnCall("libvlc_media_player_play", [&] { played = steady_clock::now(); });
  vlc_.OnCall("libvlc_media_player_set_time", [&] { sought = steady_clock::now(); });
  vlc_.OnCall("libvlc_video_take_snapshot", [&] { snapped = steady_clock::now(); });
  GetFrame();
  const auto end = steady_clock::now();
  // The clock behind a sleep may tick a little ahead of the one that measures.
  constexpr milliseconds kTick{16};
  EXPECT_GE(sought - played, milliseconds(100) - kTick);
  EXPECT_GE(snapped - sought, milliseconds(500) - kTick);
  EXPECT_GE(end - snapped, milliseconds(200) - kTick);
}

TEST_F(ThumbnailWorker, LogsEachStepOfAFrame) {
  InitializeWithPicture();
  LogCapture log;
  GetFrame();
  const std::string size = std::to_string(sizeof kJpeg - 1);
  EXPECT_THAT(log.Lines(),
              ElementsAre("INFO VodThumbnailWorkerPlugin: getFrame called",
                          "INFO VodThumbnailWorkerPlugin: getFrame - mediaId=123, proxyUrl=http://host/film.mp4, "
                          "time=42.70, size=320x180",
                          "INFO VodThumbnailWorkerPlugin: Creating media from URL: http://host/film.mp4",
                          "INFO VodThumbnailWorkerPlugin: Starting playback",
                          "INFO VodThumbnailWorkerPlugin: Seeking to time: 42.70 seconds",
                          StartsWith("INFO VodThumbnailWorkerPlugin: Taking snapshot to: "),
                          "INFO VodThumbnailWorkerPlugin: Reading snapshot file",
                          "INFO VodThumbnailWorkerPlugin: Snapshot file size: " + size + " bytes",
                          "INFO VodThumbnailWorkerPlugin: Snapshot captured successfully"));
}

TEST_F(ThumbnailWorker, FrameBeforeInitializeIsAFailureAndNoError) {
  EXPECT_EQ(GetFrame(), NoFrame("Worker not initialized"));
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_TRUE(log_.Has("ERROR VodThumbnailWorkerPlugin: Worker not initialized"));
}

TEST_F(ThumbnailWorker, FileOfNoBytesIsAnEmptyFrame) {
  Initialize();
  vlc_.OnCall("libvlc_video_take_snapshot", [&] { WriteFileBytes(scratch_ / "vantro_thumb_123_42.jpg", ""); });
  EXPECT_EQ(GetFrame(), Frame(""));
  EXPECT_THAT(FilesLeft(), IsEmpty());
}

TEST_F(ThumbnailWorker, TimeOfZeroSeeksToZeroAndNamesTheFileByIt) {
  InitializeWithPicture();
  GetFrame(FrameArguments("7", 0.0));
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_set_time"), ElementsAre("libvlc_media_player_set_time(player1, 0, 0)"));
  EXPECT_NE(vlc_.CallsOf("libvlc_video_take_snapshot").at(0).find("vantro_thumb_7_0.jpg"), std::string::npos);
}

TEST_F(ThumbnailWorker, TwoFramesOfOneSecondSeekToTheMillisecondAndUseOneFileName) {
  InitializeWithPicture();
  GetFrame(FrameArguments("7", 3.25));
  GetFrame(FrameArguments("7", 3.75));
  EXPECT_THAT(
      vlc_.CallsOf("libvlc_media_player_set_time"),
      ElementsAre("libvlc_media_player_set_time(player1, 3250, 0)", "libvlc_media_player_set_time(player1, 3750, 0)"));
  const auto snapshots = vlc_.CallsOf("libvlc_video_take_snapshot");
  EXPECT_EQ(snapshots.at(0), snapshots.at(1));
}

TEST_F(ThumbnailWorker, ArgumentsThatAreNoMapAreAnError) {
  const Answer error = Failure("INVALID_ARGS", "Invalid arguments");
  EXPECT_EQ(Ask("getFrame"), error);
  EXPECT_EQ(Ask("getFrame", Value("123")), error);
}

TEST_F(ThumbnailWorker, EachKeyIsRequired) {
  for (size_t left = 0; left < FrameEntries().size(); ++left) {
    std::vector<Entry> entries = FrameEntries();
    entries.erase(entries.begin() + static_cast<ptrdiff_t>(left));
    EXPECT_EQ(GetFrame(MapOf(entries)), Failure("INVALID_ARGS", "Missing required arguments")) << left;
  }
}

// An answer that nobody waits for.
class UnreadResult : public MethodResult {
 protected:
  void SuccessInternal(const EncodableValue&) override {}
  void ErrorInternal(std::string_view, std::string_view, const EncodableValue&) override {}
  void NotImplementedInternal() override {}
};

TEST_F(ThumbnailWorker, ValueOfAnotherTypeRaisesTheVariantsErrorOutOfTheHandler) {
  Initialize();
  vlc_.ClearCalls();
  for (size_t odd = 0; odd < FrameEntries().size(); ++odd) {
    std::vector<Entry> entries = FrameEntries();
    entries[odd].value = Value(int64_t{5});
    const MethodCall call("getFrame", MapOf(entries));
    EXPECT_THROW(plugin_->HandleMethodCall(call, std::make_unique<UnreadResult>()), std::bad_variant_access) << odd;
  }
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(ThumbnailWorker, MediaThatCannotBeMadeLeavesThePlayerAlone) {
  InitializeWithPicture();
  vlc_.Fail("libvlc_media_new_location");
  EXPECT_EQ(GetFrame(), NoFrame("Failed to create media"));
  EXPECT_EQ(vlc_.Calls().size(), 1u);
  EXPECT_TRUE(log_.Has("ERROR VodThumbnailWorkerPlugin: Failed to create media"));
}

void ThrowAtMedia(libvlc_media_player_t*, libvlc_media_t*) { throw 7; }

TEST_F(ThumbnailWorker, ExceptionOnTheWayToAFrameStopsThePlayerAndGoesNoFurther) {
  InitializeWithPicture();
  const ImportHook hook("libvlc.dll", "libvlc_media_player_set_media", reinterpret_cast<void*>(ThrowAtMedia));
  EXPECT_EQ(GetFrame(), NoFrame("Exception during snapshot"));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_stop_async"), 1);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_release"), 1);
  EXPECT_TRUE(log_.Has("ERROR VodThumbnailWorkerPlugin: Exception during snapshot"));
}

TEST_F(ThumbnailWorker, SnapshotThatFailsStopsThePlayerAndLeavesWhatFileThereIs) {
  Initialize();
  vlc_.SetResult("libvlc_video_take_snapshot", -1);
  WriteFileBytes(scratch_ / "vantro_thumb_123_42.jpg", "half");
  EXPECT_EQ(GetFrame(), NoFrame("Snapshot failed"));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_stop_async"), 1);
  EXPECT_THAT(FilesLeft(), ElementsAre("vantro_thumb_123_42.jpg"));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_release"), 1);
  EXPECT_TRUE(log_.Has("ERROR VodThumbnailWorkerPlugin: Snapshot failed with result: -1"));
}

TEST_F(ThumbnailWorker, SnapshotWithoutAFileStopsThePlayer) {
  Initialize();
  EXPECT_EQ(GetFrame(), NoFrame("Failed to read snapshot"));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_stop_async"), 1);
  EXPECT_THAT(FilesLeft(), IsEmpty());
  EXPECT_EQ(vlc_.CountOf("libvlc_media_release"), 1);
  EXPECT_TRUE(log_.Has("ERROR VodThumbnailWorkerPlugin: Failed to open snapshot file"));
}

TEST_F(ThumbnailWorker, PlayerStaysReadyBetweenFrames) {
  InitializeWithPicture();
  EXPECT_EQ(GetFrame(), GetFrame());
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_release"), 0);
}

TEST_F(ThumbnailWorker, DisposeReleasesPlayerAndInstance) {
  Initialize();
  vlc_.ClearCalls();
  EXPECT_EQ(Ask("dispose"), Success());
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_media_player_stop_async(player1)",
                                        "libvlc_media_player_release(player1)", "libvlc_release(instance1)"));
}

TEST_F(ThumbnailWorker, DisposeWhileNotInitializedDoesNothing) {
  EXPECT_EQ(Ask("dispose"), Success());
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_FALSE(log_.Has("INFO VodThumbnailWorkerPlugin: Disposing resources"));
}

TEST_F(ThumbnailWorker, FrameAfterDisposeIsAFailure) {
  InitializeWithPicture();
  Ask("dispose");
  EXPECT_EQ(GetFrame(), NoFrame("Worker not initialized"));
}

TEST_F(ThumbnailWorker, InitializeAfterDisposeBuildsAnew) {
  Initialize();
  Ask("dispose");
  Ask("dispose");
  Initialize();
  EXPECT_EQ(vlc_.LivePlayers(), 1);
  EXPECT_EQ(vlc_.LiveInstances(), 1);
  vlc_.SetSnapshot("x");
  EXPECT_EQ(GetFrame(), Frame("x"));
}

TEST_F(ThumbnailWorker, OtherMethodsAreNotImplemented) {
  EXPECT_EQ(Ask("GetFrame"), NotImplemented());
  EXPECT_TRUE(log_.Has("WARNING VodThumbnailWorkerPlugin: Method not implemented: GetFrame"));
}

TEST_F(ThumbnailWorker, DestructionEndsTheChannelAndReleasesEverything) {
  Initialize();
  plugin_.reset();
  EXPECT_FALSE(loopback_.HasListener(engineNumber_, kThumbnailChannel));
  EXPECT_EQ(vlc_.LivePlayers(), 0);
  EXPECT_EQ(vlc_.LiveInstances(), 0);
  EXPECT_TRUE(log_.Has("INFO VodThumbnailWorkerPlugin: Destructor called"));
  EXPECT_TRUE(log_.Has("INFO VodThumbnailWorkerPlugin: Disposed successfully"));
}

TEST_F(ThumbnailWorker, OutlivesTheEngineWhoseMessengerItHolds) {
  auto engine = std::make_unique<FlutterEngine>();
  ASSERT_TRUE(engine->Initialize(nullptr));
  auto plugin = std::make_unique<vod_thumbnail::VodThumbnailWorkerPlugin>(engine->GetMessenger());
  engine.reset();
  plugin.reset();
  EXPECT_EQ(log_.Count("INFO VodThumbnailWorkerPlugin: Destructor called"), 1);
}

}  // namespace
}  // namespace vantro::test
