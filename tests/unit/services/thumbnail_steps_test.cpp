// The steps of the thumbnail worker: the order of its log lines, calls, waits and answers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "flutter_host/embedding_api.h"
#include "tests/support/import_hook.h"
#include "tests/unit/services/thumbnail_worker.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;

constexpr char kPrefix[] = "VodThumbnailWorkerPlugin: ";

std::vector<std::string> LastThreeOf(const std::vector<std::string>& steps) {
  return steps.size() < 3 ? steps : std::vector<std::string>(steps.end() - 3, steps.end());
}

class ThumbnailSteps : public ThumbnailWorker {
 protected:
  ThumbnailSteps() { current_ = this; }
  // The plugin's destructor still makes calls, which the steps must outlive.
  ~ThumbnailSteps() override {
    plugin_.reset();
    current_ = nullptr;
  }

  // Adds each call of these libvlc functions to the steps, after the log lines that precede the call.
  void Note(const std::vector<std::string>& functions) {
    for (const std::string& function : functions) vlc_.OnCall(function, [this, function] { AddStep(function); });
  }
  // The steps of a request, without those before it.
  std::vector<std::string> StepsOf(const std::function<void()>& request) {
    CollectLines();
    steps_.clear();
    request();
    CollectLines();
    return steps_;
  }

 private:
  void AddStep(const std::string& step) {
    CollectLines();
    steps_.push_back(step);
  }
  // Reading the log makes calls that are recorded too.
  void CollectLines() {
    isCollecting_ = true;
    const std::vector<std::string> lines = log_.Lines();
    isCollecting_ = false;
    for (; linesTaken_ < lines.size(); ++linesTaken_) {
      const size_t at = lines[linesTaken_].find(kPrefix);
      if (at != std::string::npos) steps_.push_back(lines[linesTaken_].substr(at + sizeof kPrefix - 1));
    }
  }
  template <typename Function, typename... Arguments>
  static auto Pass(const ImportHook& hook, Function*, const std::string& step, Arguments... arguments) {
    if (!current_->isCollecting_ && !step.empty()) current_->AddStep(step);
    return hook.Original<Function*>()(arguments...);
  }
  // Other threads wait too, and the short and the endless waits of this one are the system's own.
  static std::string WaitStep(DWORD time) {
    if (GetCurrentThreadId() != current_->thread_ || time < 50 || time == INFINITE) return {};
    return "wait " + std::to_string(time);
  }

  static void WINAPI OnSleep(DWORD time) { Pass(current_->sleep_, ::Sleep, WaitStep(time), time); }
  static DWORD WINAPI OnWait(HANDLE handle, DWORD time) {
    return Pass(current_->wait_, ::WaitForSingleObject, WaitStep(time), handle, time);
  }
  static int OnSeek(FILE* file, long offset, int origin) {
    const std::string step =
        "seek " + std::to_string(offset) + (origin == SEEK_END ? " from the end" : " from another place");
    return Pass(current_->seek_, std::fseek, step, file, offset, origin);
  }
  static void OnRewind(FILE* file) { Pass(current_->rewind_, std::rewind, "rewind", file); }
  static size_t OnRead(void* bytes, size_t size, size_t count, FILE* file) {
    const std::string step = "read " + std::to_string(count) + " of size " + std::to_string(size);
    return Pass(current_->read_, std::fread, step, bytes, size, count, file);
  }
  static void OnAnswer(FlutterDesktopMessengerRef messenger, const FlutterDesktopMessageResponseHandle* handle,
                       const uint8_t* bytes, size_t size) {
    Pass(current_->answer_, FlutterDesktopMessengerSendResponse, "answer", messenger, handle, bytes, size);
  }
  static void OnSetCallback(FlutterDesktopMessengerRef messenger, const char* channel,
                            FlutterDesktopMessageCallback callback, void* data) {
    Pass(current_->callback_, FlutterDesktopMessengerSetCallback, callback ? "open the channel" : "close the channel",
         messenger, channel, callback, data);
  }

  static ThumbnailSteps* current_;
  const DWORD thread_ = GetCurrentThreadId();
  std::vector<std::string> steps_;
  size_t linesTaken_ = 0;
  bool isCollecting_ = false;
  ImportHook sleep_{"kernel32.dll", "Sleep", &OnSleep};
  ImportHook wait_{"kernel32.dll", "WaitForSingleObject", &OnWait};
  ImportHook seek_{"msvcrt.dll", "fseek", &OnSeek};
  ImportHook rewind_{"msvcrt.dll", "rewind", &OnRewind};
  ImportHook read_{"msvcrt.dll", "fread", &OnRead};
  ImportHook answer_{"flutter_windows.dll", "FlutterDesktopMessengerSendResponse", &OnAnswer};
  ImportHook callback_{"flutter_windows.dll", "FlutterDesktopMessengerSetCallback", &OnSetCallback};
};

ThumbnailSteps* ThumbnailSteps::current_ = nullptr;

TEST_F(ThumbnailSteps, InitializingLogsEachStepBeforeOrAfterItsCall) {
  Note({"libvlc_new", "libvlc_media_player_new"});
  EXPECT_THAT(StepsOf([&] { Ask("initialize"); }),
              ElementsAre("initialize called", "Initializing libvlc instance", "libvlc_new", "libvlc instance created",
                          "libvlc_media_player_new", "Thumbnail player created successfully", "answer"));
}

TEST_F(ThumbnailSteps, AMissingPlayerIsLoggedBeforeTheInstanceIsReleased) {
  vlc_.Fail("libvlc_media_player_new");
  Note({"libvlc_release"});
  EXPECT_THAT(StepsOf([&] { Ask("initialize"); }),
              ElementsAre("initialize called", "Initializing libvlc instance", "libvlc instance created",
                          "Failed to create media player", "libvlc_release", "answer"));
}

TEST_F(ThumbnailSteps, DisposingLogsItsBeginAndItsEndThenAnswers) {
  Ask("initialize");
  Note({"libvlc_media_player_stop_async", "libvlc_release"});
  EXPECT_THAT(StepsOf([&] { Ask("dispose"); }),
              ElementsAre("dispose called", "Disposing resources", "libvlc_media_player_stop_async", "libvlc_release",
                          "Disposed successfully", "answer"));
}

TEST_F(ThumbnailSteps, AnUnknownMethodIsLoggedBeforeItsAnswer) {
  EXPECT_THAT(StepsOf([&] { Ask("rewind"); }), ElementsAre("Method not implemented: rewind", "answer"));
}

TEST_F(ThumbnailSteps, ConstructionIsLoggedBeforeTheChannelOpens) {
  plugin_.reset();
  EXPECT_THAT(
      StepsOf([&] { plugin_ = std::make_unique<vod_thumbnail::VodThumbnailWorkerPlugin>(engine_.GetMessenger()); }),
      ElementsAre("Constructor called", "open the channel"));
}

// libvlc handles sent messages while it releases an instance.
TEST_F(ThumbnailSteps, RequestsDuringTheReleaseOfTheInstanceFindNoPlayer) {
  Ask("initialize");
  vlc_.ClearCalls();
  vlc_.OnCall("libvlc_release", [&] {
    EXPECT_EQ(GetFrame(), NoFrame("Worker not initialized"));
    EXPECT_EQ(Ask("initialize"), Success(Value(true)));
  });
  EXPECT_EQ(Ask("dispose"), Success());
  EXPECT_EQ(vlc_.CountOf("libvlc_new"), 0);
}

TEST_F(ThumbnailSteps, DestructionIsLoggedThenClosesTheChannelThenDisposes) {
  Ask("initialize");
  Note({"libvlc_release"});
  EXPECT_THAT(StepsOf([&] { plugin_.reset(); }),
              ElementsAre("Destructor called", "close the channel", "Disposing resources", "libvlc_release",
                          "Disposed successfully"));
}

TEST_F(ThumbnailSteps, FrameLogsEachCallBeforeItIsMade) {
  Ask("initialize");
  vlc_.SetSnapshot("picture");
  Note({"libvlc_media_new_location", "libvlc_media_player_set_media", "libvlc_media_player_play",
        "libvlc_media_player_set_time", "libvlc_video_take_snapshot", "libvlc_media_player_stop_async"});
  const std::vector<std::string> steps = StepsOf([&] { GetFrame(); });
  EXPECT_THAT(steps, ElementsAre("getFrame called", testing::StartsWith("getFrame - mediaId=123"),
                                 "Creating media from URL: http://host/film.mp4", "libvlc_media_new_location",
                                 "libvlc_media_player_set_media", "Starting playback", "libvlc_media_player_play",
                                 "wait 100", "Seeking to time: 42.70 seconds", "libvlc_media_player_set_time",
                                 "wait 500", testing::StartsWith("Taking snapshot to: "), "libvlc_video_take_snapshot",
                                 "wait 200", "Reading snapshot file", "seek 0 from the end", "rewind",
                                 "Snapshot file size: 7 bytes", "read 7 of size 1", "libvlc_media_player_stop_async",
                                 "Snapshot captured successfully", "answer"));
}

TEST_F(ThumbnailSteps, FileOfNoBytesIsNotRead) {
  Ask("initialize");
  vlc_.OnCall("libvlc_video_take_snapshot", [&] { WriteFileBytes(scratch_ / "vantro_thumb_123_42.jpg", ""); });
  EXPECT_THAT(LastThreeOf(StepsOf([&] { GetFrame(); })),
              ElementsAre("Snapshot file size: 0 bytes", "Snapshot captured successfully", "answer"));
}

TEST_F(ThumbnailSteps, AFailedSnapshotIsLoggedBeforeTheStop) {
  Ask("initialize");
  Note({"libvlc_media_player_stop_async"});
  vlc_.SetResult("libvlc_video_take_snapshot", 3);
  EXPECT_THAT(LastThreeOf(StepsOf([&] { GetFrame(); })),
              ElementsAre("Snapshot failed with result: 3", "libvlc_media_player_stop_async", "answer"));
}

TEST_F(ThumbnailSteps, AMissingSnapshotFileIsLoggedBeforeTheStop) {
  Ask("initialize");
  Note({"libvlc_media_player_stop_async"});
  EXPECT_THAT(LastThreeOf(StepsOf([&] { GetFrame(); })),
              ElementsAre("Failed to open snapshot file", "libvlc_media_player_stop_async", "answer"));
}

int ThrowAtPlay(libvlc_media_player_t*) { throw 7; }

TEST_F(ThumbnailSteps, AnExceptionIsLoggedBeforeTheStop) {
  Ask("initialize");
  Note({"libvlc_media_player_stop_async"});
  const ImportHook play("libvlc.dll", "libvlc_media_player_play", ThrowAtPlay);
  EXPECT_THAT(LastThreeOf(StepsOf([&] { GetFrame(); })),
              ElementsAre("Exception during snapshot", "libvlc_media_player_stop_async", "answer"));
}

TEST_F(ThumbnailSteps, SnapshotIsOfTheFirstVideo) {
  Ask("initialize");
  GetFrame();
  EXPECT_THAT(vlc_.CallsOf("libvlc_video_take_snapshot"),
              ElementsAre(testing::StartsWith("libvlc_video_take_snapshot(player1, 0, ")));
}

}  // namespace
}  // namespace vantro::test
