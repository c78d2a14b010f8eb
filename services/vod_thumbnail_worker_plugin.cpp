#include "services/vod_thumbnail_worker_plugin.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iterator>
#include <thread>
#include <utility>
#include <variant>
#include <vector>

#include "common/log.h"
#include "flutter_host/standard_method_codec.h"
#include "services/snapshot_request.h"

namespace vod_thumbnail {

using vantro::EncodableMap;
using vantro::EncodableValue;

namespace {

constexpr char kChannelName[] = "org.vantro.thumbnail/worker";
constexpr const char* kVlcArguments[] = {"--no-audio", "--network-caching=1000", "--no-video-title-show",
                                         "--verbose=0"};
// A frame waits only for these times. Neither the state of the player nor the file is polled.
constexpr std::chrono::milliseconds kAfterPlay{100};
constexpr std::chrono::milliseconds kAfterSeek{500};
constexpr std::chrono::milliseconds kAfterSnapshot{200};
constexpr DWORD kPathLength = 260;
constexpr const char* kRequiredKeys[] = {"mediaId", "proxyUrl", "timeSeconds", "width", "height"};

bool HasRequiredKeys(EncodableMap arguments) {
  return std::all_of(std::begin(kRequiredKeys), std::end(kRequiredKeys),
                     [arguments](const char* key) { return arguments.Find(key) != nullptr; });
}

// Returns the argument of a key that must be present. Throws std::bad_variant_access if the value has another type.
template <class T>
T Argument(EncodableMap arguments, const char* key) {
  const auto value = arguments.Find(key)->Get<T>();
  if (!value) throw std::bad_variant_access();
  return *value;
}

FrameRequest ReadFrameRequest(EncodableMap arguments) {
  return {std::string(Argument<std::string_view>(arguments, "mediaId")),
          std::string(Argument<std::string_view>(arguments, "proxyUrl")), Argument<double>(arguments, "timeSeconds"),
          Argument<int32_t>(arguments, "width"), Argument<int32_t>(arguments, "height")};
}

Frame Failure(const char* text) { return {{}, text}; }

std::string SnapshotPath(const FrameRequest& request) {
  char folder[kPathLength] = "";
  GetTempPathA(kPathLength, folder);
  return folder + SnapshotFileName(request.mediaId, request.timeSeconds);
}

using File = std::unique_ptr<FILE, int (*)(FILE*)>;

// Throws std::length_error if the size of the file cannot be determined.
std::vector<uint8_t> ReadSnapshot(FILE* file) {
  std::fseek(file, 0, SEEK_END);
  const long size = std::ftell(file);
  std::rewind(file);
  LOG_INFO("VodThumbnailWorkerPlugin: Snapshot file size: %ld bytes", size);
  std::vector<uint8_t> bytes(static_cast<size_t>(size));
  if (size > 0) static_cast<void>(std::fread(bytes.data(), 1, bytes.size(), file));
  return bytes;
}

}  // namespace

VodThumbnailWorkerPlugin::VodThumbnailWorkerPlugin(vantro::BinaryMessenger* messenger)
    : channel_(std::make_unique<vantro::MethodChannel>(messenger, kChannelName,
                                                       &vantro::StandardMethodCodec::GetInstance())) {
  LOG_INFO("VodThumbnailWorkerPlugin: Constructor called");
  channel_->SetMethodCallHandler([this](const vantro::MethodCall& call, std::unique_ptr<vantro::MethodResult> result) {
    HandleMethodCall(call, std::move(result));
  });
}

VodThumbnailWorkerPlugin::~VodThumbnailWorkerPlugin() {
  LOG_INFO("VodThumbnailWorkerPlugin: Destructor called");
  channel_->SetMethodCallHandler(nullptr);
  Dispose();
}

void VodThumbnailWorkerPlugin::HandleMethodCall(const vantro::MethodCall& call,
                                                std::unique_ptr<vantro::MethodResult> result) {
  if (call.method_name() == "initialize") {
    result->Success(EncodableValue(Initialize()));
  } else if (call.method_name() == "getFrame") {
    GetFrame(call, *result);
  } else if (call.method_name() == "dispose") {
    LOG_INFO("VodThumbnailWorkerPlugin: dispose called");
    Dispose();
    result->Success();
  } else {
    LOG_WARNING("VodThumbnailWorkerPlugin: Method not implemented: %s", std::string(call.method_name()).c_str());
    result->NotImplemented();
  }
}

bool VodThumbnailWorkerPlugin::Initialize() {
  LOG_INFO("VodThumbnailWorkerPlugin: initialize called");
  if (initialized_) {
    LOG_INFO("VodThumbnailWorkerPlugin: Already initialized");
    return true;
  }
  LOG_INFO("VodThumbnailWorkerPlugin: Initializing libvlc instance");
  vlcInstance_.reset(libvlc_new(static_cast<int>(std::size(kVlcArguments)), kVlcArguments));
  if (!vlcInstance_) {
    LOG_ERROR("VodThumbnailWorkerPlugin: Failed to create libvlc instance");
    return false;
  }
  LOG_INFO("VodThumbnailWorkerPlugin: libvlc instance created");
  thumbnailPlayer_.reset(libvlc_media_player_new(vlcInstance_.get()));
  if (!thumbnailPlayer_) {
    LOG_ERROR("VodThumbnailWorkerPlugin: Failed to create media player");
    vlcInstance_.reset();
    return false;
  }
  LOG_INFO("VodThumbnailWorkerPlugin: Thumbnail player created successfully");
  initialized_ = true;
  return true;
}

void VodThumbnailWorkerPlugin::GetFrame(const vantro::MethodCall& call, vantro::MethodResult& result) {
  const auto arguments = call.arguments().Get<EncodableMap>();
  if (!arguments) {
    result.Error("INVALID_ARGS", "Invalid arguments");
    return;
  }
  if (!HasRequiredKeys(*arguments)) {
    result.Error("INVALID_ARGS", "Missing required arguments");
    return;
  }
  LOG_INFO("VodThumbnailWorkerPlugin: getFrame called");
  const FrameRequest request = ReadFrameRequest(*arguments);
  LOG_INFO("VodThumbnailWorkerPlugin: getFrame - mediaId=%s, proxyUrl=%s, time=%.2f, size=%dx%d",
           request.mediaId.c_str(), request.proxyUrl.c_str(), request.timeSeconds, request.width, request.height);
  const Frame frame = TakeFrame(request);
  const vantro::LocalMap reply({
      {EncodableValue("success"), EncodableValue(!frame.error)},
      {EncodableValue(frame.error ? "error" : "bytes"),
       frame.error ? EncodableValue(frame.error) : EncodableValue(frame.bytes)},
  });
  result.Success(reply.value());
}

Frame VodThumbnailWorkerPlugin::TakeFrame(const FrameRequest& request) {
  if (!initialized_ || !thumbnailPlayer_) {
    LOG_ERROR("VodThumbnailWorkerPlugin: Worker not initialized");
    return Failure("Worker not initialized");
  }
  LOG_INFO("VodThumbnailWorkerPlugin: Creating media from URL: %s", request.proxyUrl.c_str());
  const vantro::VlcMediaPtr media(libvlc_media_new_location(request.proxyUrl.c_str()));
  if (!media) {
    LOG_ERROR("VodThumbnailWorkerPlugin: Failed to create media");
    return Failure("Failed to create media");
  }
  try {
    return PlayAndSnapshot(request, media.get());
  } catch (...) {
    LOG_ERROR("VodThumbnailWorkerPlugin: Exception during snapshot");
    if (thumbnailPlayer_) libvlc_media_player_stop_async(thumbnailPlayer_.get());
    return Failure("Exception during snapshot");
  }
}

Frame VodThumbnailWorkerPlugin::PlayAndSnapshot(const FrameRequest& request, libvlc_media_t* media) {
  libvlc_media_player_t* const player = thumbnailPlayer_.get();
  libvlc_media_player_set_media(player, media);
  LOG_INFO("VodThumbnailWorkerPlugin: Starting playback");
  libvlc_media_player_play(player);
  std::this_thread::sleep_for(kAfterPlay);

  LOG_INFO("VodThumbnailWorkerPlugin: Seeking to time: %.2f seconds", request.timeSeconds);
  libvlc_media_player_set_time(player, SeekTargetMs(request.timeSeconds), false);
  std::this_thread::sleep_for(kAfterSeek);

  const std::string path = SnapshotPath(request);
  LOG_INFO("VodThumbnailWorkerPlugin: Taking snapshot to: %s", path.c_str());
  const int taken = libvlc_video_take_snapshot(player, 0, path.c_str(), static_cast<unsigned>(request.width),
                                               static_cast<unsigned>(request.height));
  if (taken != 0) {
    LOG_ERROR("VodThumbnailWorkerPlugin: Snapshot failed with result: %d", taken);
    libvlc_media_player_stop_async(player);
    return Failure("Snapshot failed");
  }
  std::this_thread::sleep_for(kAfterSnapshot);

  LOG_INFO("VodThumbnailWorkerPlugin: Reading snapshot file");
  File file(std::fopen(path.c_str(), "rb"), &std::fclose);
  if (!file) {
    LOG_ERROR("VodThumbnailWorkerPlugin: Failed to open snapshot file");
    libvlc_media_player_stop_async(player);
    DeleteFileA(path.c_str());
    return Failure("Failed to read snapshot");
  }
  std::vector<uint8_t> bytes = ReadSnapshot(file.get());
  file.reset();  // an open file cannot be deleted
  DeleteFileA(path.c_str());
  libvlc_media_player_stop_async(player);
  LOG_INFO("VodThumbnailWorkerPlugin: Snapshot captured successfully");
  return Frame{std::move(bytes), nullptr};
}

void VodThumbnailWorkerPlugin::Dispose() {
  if (!initialized_) return;
  LOG_INFO("VodThumbnailWorkerPlugin: Disposing resources");
  if (thumbnailPlayer_) libvlc_media_player_stop_async(thumbnailPlayer_.get());
  thumbnailPlayer_.reset();
  vlcInstance_.reset();
  initialized_ = false;
  LOG_INFO("VodThumbnailWorkerPlugin: Disposed successfully");
}

}  // namespace vod_thumbnail
