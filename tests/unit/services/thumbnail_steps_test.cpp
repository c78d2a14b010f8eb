// The steps of the thumbnail worker: the order of its log lines and calls.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/unit/services/thumbnail_worker.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;

constexpr char kPrefix[] = "VodThumbnailWorkerPlugin: ";

class ThumbnailSteps : public ThumbnailWorker {
 protected:
  // The plugin's destructor still makes calls, which the steps must outlive.
  ~ThumbnailSteps() override { plugin_.reset(); }

  // Adds each call of the function to the steps, after the log lines that precede the call.
  void Note(const std::string& function) {
    vlc_.OnCall(function, [this, function] {
      CollectLines();
      steps_.push_back(function);
    });
  }
  void CollectLines() {
    const std::vector<std::string> lines = log_.Lines();
    for (; linesTaken_ < lines.size(); ++linesTaken_) {
      const size_t at = lines[linesTaken_].find(kPrefix);
      if (at != std::string::npos) steps_.push_back(lines[linesTaken_].substr(at + sizeof kPrefix - 1));
    }
  }
  // The steps of a request, without those before it.
  std::vector<std::string> StepsOf(const std::function<void()>& request) {
    CollectLines();
    steps_.clear();
    request();
    CollectLines();
    return steps_;
  }

  std::vector<std::string> steps_;
  size_t linesTaken_ = 0;
};

TEST_F(ThumbnailSteps, InitializingLogsEachStepBeforeOrAfterItsCall) {
  Note("libvlc_new");
  Note("libvlc_media_player_new");
  EXPECT_THAT(StepsOf([&] { Ask("initialize"); }),
              ElementsAre("initialize called", "Initializing libvlc instance", "libvlc_new", "libvlc instance created",
                          "libvlc_media_player_new", "Thumbnail player created successfully"));
}

TEST_F(ThumbnailSteps, DisposingLogsItsBeginAndItsEnd) {
  Ask("initialize");
  Note("libvlc_media_player_stop_async");
  Note("libvlc_release");
  EXPECT_THAT(StepsOf([&] { Ask("dispose"); }),
              ElementsAre("dispose called", "Disposing resources", "libvlc_media_player_stop_async", "libvlc_release",
                          "Disposed successfully"));
}

TEST_F(ThumbnailSteps, DestructionIsLoggedBeforeItDisposes) {
  Ask("initialize");
  Note("libvlc_release");
  EXPECT_THAT(StepsOf([&] { plugin_.reset(); }),
              ElementsAre("Destructor called", "Disposing resources", "libvlc_release", "Disposed successfully"));
}

TEST_F(ThumbnailSteps, FrameLogsEachCallBeforeItIsMade) {
  Ask("initialize");
  vlc_.SetSnapshot("picture");
  for (const char* function :
       {"libvlc_media_new_location", "libvlc_media_player_set_media", "libvlc_media_player_play",
        "libvlc_media_player_set_time", "libvlc_video_take_snapshot", "libvlc_media_player_stop_async"}) {
    Note(function);
  }
  const std::vector<std::string> steps = StepsOf([&] { GetFrame(); });
  ASSERT_EQ(steps.size(), 15u);
  EXPECT_EQ(steps[0], "getFrame called");
  EXPECT_THAT(std::vector<std::string>(steps.begin() + 2, steps.begin() + 8),
              ElementsAre("Creating media from URL: http://host/film.mp4", "libvlc_media_new_location",
                          "libvlc_media_player_set_media", "Starting playback", "libvlc_media_player_play",
                          "Seeking to time: 42.70 seconds"));
  EXPECT_EQ(steps[8], "libvlc_media_player_set_time");
  EXPECT_THAT(steps[9], testing::StartsWith("Taking snapshot to: "));
  EXPECT_THAT(std::vector<std::string>(steps.begin() + 10, steps.end()),
              ElementsAre("libvlc_video_take_snapshot", "Reading snapshot file", "Snapshot file size: 7 bytes",
                          "libvlc_media_player_stop_async", "Snapshot captured successfully"));
}

TEST_F(ThumbnailSteps, SnapshotIsOfTheFirstVideo) {
  Ask("initialize");
  GetFrame();
  EXPECT_THAT(vlc_.CallsOf("libvlc_video_take_snapshot"),
              ElementsAre(testing::StartsWith("libvlc_video_take_snapshot(player1, 0, ")));
}

}  // namespace
}  // namespace vantro::test
