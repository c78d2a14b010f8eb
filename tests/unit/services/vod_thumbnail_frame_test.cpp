// Taking a frame: the calls, the waits, the temporary file and the failures.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <variant>
#include <vector>

#include "tests/support/import_hook.h"
#include "tests/unit/services/thumbnail_worker.h"

namespace vantro::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

TEST_F(ThumbnailWorker, TakesAFrameByPlayingSeekingAndReadingTheSnapshot) {
  InitializeWithPicture();
  EXPECT_EQ(GetFrame(), Frame(std::string(kJpeg, sizeof kJpeg - 1)));
  const std::string snapshot = vlc_.CallsOf("libvlc_video_take_snapshot").at(0);
  EXPECT_THAT(snapshot, StartsWith("libvlc_video_take_snapshot(player1, 0, "));
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
  // Sleep uses another clock than the measurement, and may end one tick early.
  constexpr milliseconds kTick{16};
  EXPECT_GE(sought - played, milliseconds(100) - kTick);
  EXPECT_GE(snapped - sought, milliseconds(500) - kTick);
  EXPECT_GE(end - snapped, milliseconds(200) - kTick);
}

// The waits of one thread. The standard library may use any of several system functions for them.
std::vector<DWORD> waits;
DWORD waitingThread = 0;
void NoteWait(DWORD time) {
  if (time >= 50 && time != INFINITE && GetCurrentThreadId() == waitingThread) waits.push_back(time);
}
decltype(&Sleep) realSleep = nullptr;
decltype(&WaitForSingleObject) realWait = nullptr;
void WINAPI OnSleep(DWORD time) {
  NoteWait(time);
  realSleep(time);
}
DWORD WINAPI OnWait(HANDLE handle, DWORD time) {
  NoteWait(time);
  return realWait(handle, time);
}

TEST_F(ThumbnailWorker, WaitsNoLongerThanItHasTo) {
  InitializeWithPicture();
  const ImportHook sleep("kernel32.dll", "Sleep", OnSleep);
  const ImportHook wait("kernel32.dll", "WaitForSingleObject", OnWait);
  realSleep = sleep.Original<decltype(realSleep)>();
  realWait = wait.Original<decltype(realWait)>();
  waits.clear();
  waitingThread = GetCurrentThreadId();
  GetFrame();
  EXPECT_THAT(waits, ElementsAre(100u, 500u, 200u));
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

DWORD WINAPI NoTemporaryFolder(DWORD, char*) { return 0; }

TEST_F(ThumbnailWorker, WithoutATemporaryFolderTheSnapshotGoesIntoTheWorkingDirectory) {
  Initialize();
  const ImportHook folder("kernel32.dll", "GetTempPathA", NoTemporaryFolder);
  GetFrame();
  EXPECT_THAT(vlc_.CallsOf("libvlc_video_take_snapshot"),
              ElementsAre("libvlc_video_take_snapshot(player1, 0, \"vantro_thumb_123_42.jpg\", 320, 180)"));
}

TEST_F(ThumbnailWorker, FileOfNoBytesIsAnEmptyFrame) {
  Initialize();
  vlc_.OnCall("libvlc_video_take_snapshot", [&] { WriteFileBytes(scratch_ / "vantro_thumb_123_42.jpg", ""); });
  EXPECT_EQ(GetFrame(), Frame(""));
  EXPECT_THAT(FilesLeft(), IsEmpty());
}

TEST_F(ThumbnailWorker, TimeOfZeroSeeksToZero) {
  InitializeWithPicture();
  GetFrame(FrameArguments("7", 0.0));
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_set_time"), ElementsAre("libvlc_media_player_set_time(player1, 0, 0)"));
  EXPECT_NE(vlc_.CallsOf("libvlc_video_take_snapshot").at(0).find("vantro_thumb_7_0.jpg"), std::string::npos);
}

TEST_F(ThumbnailWorker, TwoFramesOfOneSecondUseOneFileName) {
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

// A result that ignores the answer.
class UnreadResult : public MethodResult {
 protected:
  void SuccessInternal(const EncodableValue&) override {}
  void ErrorInternal(std::string_view, std::string_view, const EncodableValue&) override {}
  void NotImplementedInternal() override {}
};

TEST_F(ThumbnailWorker, ValueOfAnotherTypeThrowsOutOfTheHandler) {
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

TEST_F(ThumbnailWorker, ExceptionDuringTheSnapshotStopsThePlayer) {
  InitializeWithPicture();
  const ImportHook hook("libvlc.dll", "libvlc_media_player_set_media", ThrowAtMedia);
  EXPECT_EQ(GetFrame(), NoFrame("Exception during snapshot"));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_stop_async"), 1);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_release"), 1);
  EXPECT_TRUE(log_.Has("ERROR VodThumbnailWorkerPlugin: Exception during snapshot"));
}

TEST_F(ThumbnailWorker, FailedSnapshotStopsThePlayerAndLeavesTheFile) {
  Initialize();
  WriteFileBytes(scratch_ / "vantro_thumb_123_42.jpg", "half");
  for (int result : {-1, 1}) {
    vlc_.ClearCalls();
    vlc_.SetResult("libvlc_video_take_snapshot", result);
    EXPECT_EQ(GetFrame(), NoFrame("Snapshot failed")) << result;
    EXPECT_EQ(vlc_.CountOf("libvlc_media_player_stop_async"), 1);
    EXPECT_THAT(FilesLeft(), ElementsAre("vantro_thumb_123_42.jpg"));
    EXPECT_EQ(vlc_.CountOf("libvlc_media_release"), 1);
    EXPECT_TRUE(log_.Has("ERROR VodThumbnailWorkerPlugin: Snapshot failed with result: " + std::to_string(result)));
  }
}

TEST_F(ThumbnailWorker, SnapshotFileThatCannotBeOpenedIsDeleted) {
  Initialize();
  HANDLE file = INVALID_HANDLE_VALUE;
  // Another program has opened the file in a way that allows deletion and forbids reading.
  vlc_.OnCall("libvlc_video_take_snapshot", [&] {
    file = CreateFileW((scratch_ / "vantro_thumb_123_42.jpg").c_str(), GENERIC_WRITE, FILE_SHARE_DELETE, nullptr,
                       CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  });
  EXPECT_EQ(GetFrame(), NoFrame("Failed to read snapshot"));
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  CloseHandle(file);
  EXPECT_THAT(FilesLeft(), IsEmpty());
}

// Records at each deletion of a file how often the player has been stopped.
class StopsAtDeletion {
 public:
  explicit StopsAtDeletion(const ScriptedVlc& vlc) : vlc_(vlc) { current = this; }
  ~StopsAtDeletion() { current = nullptr; }
  StopsAtDeletion(const StopsAtDeletion&) = delete;
  StopsAtDeletion& operator=(const StopsAtDeletion&) = delete;
  const std::vector<int>& Counts() const { return counts_; }

 private:
  static BOOL WINAPI Delete(LPCSTR path) {
    current->counts_.push_back(current->vlc_.CountOf("libvlc_media_player_stop_async"));
    return current->hook_.Original<decltype(&DeleteFileA)>()(path);
  }

  static StopsAtDeletion* current;
  const ScriptedVlc& vlc_;
  std::vector<int> counts_;
  ImportHook hook_{"kernel32.dll", "DeleteFileA", &Delete};
};

StopsAtDeletion* StopsAtDeletion::current = nullptr;

TEST_F(ThumbnailWorker, SnapshotThatWasReadIsDeletedBeforeTheStop) {
  InitializeWithPicture();
  const StopsAtDeletion stops(vlc_);
  GetFrame();
  EXPECT_THAT(stops.Counts(), ElementsAre(0));
}

TEST_F(ThumbnailWorker, SnapshotThatCannotBeReadIsDeletedAfterTheStop) {
  Initialize();
  const StopsAtDeletion stops(vlc_);
  GetFrame();
  EXPECT_THAT(stops.Counts(), ElementsAre(1));
}

DWORD WINAPI PathForARoomOf260(DWORD room, LPSTR folder) {
  EXPECT_EQ(room, 260u);
  lstrcpyA(folder, "C:\\here\\");
  return 8;
}

TEST_F(ThumbnailWorker, TemporaryFolderMayHave260Characters) {
  Initialize();
  const ImportHook hook("kernel32.dll", "GetTempPathA", PathForARoomOf260);
  GetFrame();
  EXPECT_THAT(vlc_.CallsOf("libvlc_video_take_snapshot"),
              ElementsAre(testing::HasSubstr("C:\\here\\vantro_thumb_123_42.jpg")));
}

TEST_F(ThumbnailWorker, SnapshotWithoutAFileStopsThePlayer) {
  Initialize();
  EXPECT_EQ(GetFrame(), NoFrame("Failed to read snapshot"));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_stop_async"), 1);
  EXPECT_THAT(FilesLeft(), IsEmpty());
  EXPECT_EQ(vlc_.CountOf("libvlc_media_release"), 1);
  EXPECT_TRUE(log_.Has("ERROR VodThumbnailWorkerPlugin: Failed to open snapshot file"));
}

}  // namespace
}  // namespace vantro::test
