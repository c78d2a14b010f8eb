// Handles the requests on the method channel "org.vantro.thumbnail/worker": preview frames of video-on-demand items.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "flutter_host/method_channel.h"
#include "player/libvlc_api.h"

namespace vod_thumbnail {

// The arguments of getFrame, unchanged.
struct FrameRequest {
  std::string mediaId;
  std::string proxyUrl;
  double timeSeconds;
  int32_t width;
  int32_t height;
};

// The result of a request: the bytes of a JPEG file, or an error text.
struct Frame {
  std::vector<uint8_t> bytes;
  const char* error;  // null if there is a frame
};

// One per window. Main thread, which getFrame blocks for about 800 ms. It calls libvlc through the direct imports. No
// other code uses its instance and player.
class VodThumbnailWorkerPlugin {
 public:
  // The messenger is borrowed. An engine's messenger may be destroyed before the plugin: the window destroys its engine
  // first, and the channel then does nothing. libvlc is not called before initialize.
  explicit VodThumbnailWorkerPlugin(vantro::BinaryMessenger* messenger);
  virtual ~VodThumbnailWorkerPlugin();
  VodThumbnailWorkerPlugin(const VodThumbnailWorkerPlugin&) = delete;
  VodThumbnailWorkerPlugin& operator=(const VodThumbnailWorkerPlugin&) = delete;

  // Answers before it returns. If an argument of getFrame has the wrong type, throws std::bad_variant_access. Only the
  // process's unhandled-exception filter catches it, and the request gets no answer.
  void HandleMethodCall(const vantro::MethodCall& call, std::unique_ptr<vantro::MethodResult> result);

 private:
  bool Initialize();
  void GetFrame(const vantro::MethodCall& call, vantro::MethodResult& result);
  // Once playback has started, the player is stopped in every case.
  Frame TakeFrame(const FrameRequest& request);
  Frame PlayAndSnapshot(const FrameRequest& request, libvlc_media_t* media);
  void Dispose();

  std::unique_ptr<vantro::MethodChannel> channel_;
  vantro::VlcInstancePtr vlcInstance_;
  vantro::VlcMediaPlayerPtr thumbnailPlayer_;  // has no window
  bool initialized_ = false;                   // true between a successful initialize and dispose
};

}  // namespace vod_thumbnail
