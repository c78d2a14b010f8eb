// The thumbnail channel of one window over the loopback engine and the scripted libvlc. The tests send and receive
// bytes. Snapshots are written to a separate folder for each test.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "flutter_host/flutter_engine.h"
#include "services/vod_thumbnail_worker_plugin.h"
#include "tests/support/interface_end.h"
#include "tests/support/log_capture.h"
#include "tests/support/loopback.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/scripted_vlc.h"

namespace vantro::test {

constexpr char kJpeg[] = "\xFF\xD8 a picture \r\n\x1A with any bytes";

inline std::vector<Entry> FrameEntries(const char* mediaId = "123", double timeSeconds = 42.7) {
  return {{"mediaId", mediaId},
          {"proxyUrl", "http://host/film.mp4"},
          {"timeSeconds", Value(timeSeconds)},
          {"width", Value(320)},
          {"height", Value(180)}};
}
inline Value FrameArguments(const char* mediaId = "123", double timeSeconds = 42.7) {
  return MapOf(FrameEntries(mediaId, timeSeconds));
}

inline Answer Frame(const std::string& bytes) {
  return Success(MapOf({{"success", Value(true)}, {"bytes", Value(std::vector<uint8_t>(bytes.begin(), bytes.end()))}}));
}

inline Answer NoFrame(const char* error) { return Success(MapOf({{"success", Value(false)}, {"error", error}})); }

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
  // Initializes the worker and sets the picture that a snapshot writes.
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

}  // namespace vantro::test
