// Serves the method channel "org.vantro.thumbnail/worker": preview frames of video-on-demand items.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "flutter_host/method_channel.h"
#include "player/libvlc_api.h"

namespace vod_thumbnail {

// What getFrame asks for, as it arrived.
struct FrameRequest {
  std::string mediaId;
  std::string proxyUrl;
  double timeSeconds;
  int32_t width;
  int32_t height;
};

// What came of a request: a JPEG file's bytes, or what went wrong.
struct Frame {
  std::vector<uint8_t> bytes;
  const char* error;  // null for a frame
};

// One a window. Main thread, which getFrame blocks for some 800 ms. It calls libvlc through the direct imports, and no
// other code touches its instance and player.
class VodThumbnailWorkerPlugin {
 public:
  // The messenger is borrowed, and an engine's may go first: the window destroys its engine before the plugin, whose
  // channel is inert by then. libvlc is not touched before initialize.
  explicit VodThumbnailWorkerPlugin(vantro::BinaryMessenger* messenger);
  virtual ~VodThumbnailWorkerPlugin();
  VodThumbnailWorkerPlugin(const VodThumbnailWorkerPlugin&) = delete;
  VodThumbnailWorkerPlugin& operator=(const VodThumbnailWorkerPlugin&) = delete;

  // Answers before it returns. An argument that is there with another type than getFrame's raises
  // std::bad_variant_access, which nothing below the process's unhandled-exception filter catches; the request then
  // has no answer.
  void HandleMethodCall(const vantro::MethodCall& call, std::unique_ptr<vantro::MethodResult> result);

 private:
  bool Initialize();
  void GetFrame(const vantro::MethodCall& call, vantro::MethodResult& result);
  // Stops the player again, whatever comes of it.
  Frame TakeFrame(const FrameRequest& request);
  Frame PlayAndSnapshot(const FrameRequest& request, libvlc_media_t* media);
  void Dispose();

  std::unique_ptr<vantro::MethodChannel> channel_;
  vantro::VlcInstancePtr vlcInstance_;
  vantro::VlcMediaPlayerPtr thumbnailPlayer_;  // bound to no window
  bool initialized_ = false;                   // between a successful initialize and dispose
};

}  // namespace vod_thumbnail
