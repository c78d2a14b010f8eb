// The thumbnail worker's lifetime: initialize, dispose and destruction.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "tests/unit/services/thumbnail_worker.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

TEST_F(ThumbnailWorker, InitializeAfterDisposeBuildsAgain) {
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

TEST_F(ThumbnailWorker, DestructionEndsTheChannelBeforeItReleasesThePlayer) {
  Initialize();
  bool isListening = true;
  vlc_.OnCall("libvlc_media_player_stop_async",
              [&] { isListening = loopback_.HasListener(engineNumber_, kThumbnailChannel); });
  plugin_.reset();
  EXPECT_FALSE(isListening);
}

TEST_F(ThumbnailWorker, MayOutliveItsEngine) {
  auto engine = std::make_unique<FlutterEngine>();
  ASSERT_TRUE(engine->Initialize(nullptr));
  auto plugin = std::make_unique<vod_thumbnail::VodThumbnailWorkerPlugin>(engine->GetMessenger());
  engine.reset();
  plugin.reset();
  EXPECT_EQ(log_.Count("INFO VodThumbnailWorkerPlugin: Destructor called"), 1);
}

}  // namespace
}  // namespace vantro::test
