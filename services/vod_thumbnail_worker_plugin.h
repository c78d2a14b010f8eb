// Serves the method channel "org.vantro.thumbnail/worker": preview frames of video-on-demand items.
#pragma once

#include <memory>

#include "flutter_host/method_channel.h"
#include "player/libvlc_api.h"

namespace vod_thumbnail {

// One a window. Main thread; getFrame blocks it for some 800 ms.
class VodThumbnailWorkerPlugin {
 public:
  // The messenger is borrowed and is only touched by the destructor after the engine has gone: it must outlive the
  // plugin, or its channel must be inert by then.
  explicit VodThumbnailWorkerPlugin(vantro::BinaryMessenger* messenger);
  virtual ~VodThumbnailWorkerPlugin();
  VodThumbnailWorkerPlugin(const VodThumbnailWorkerPlugin&) = delete;
  VodThumbnailWorkerPlugin& operator=(const VodThumbnailWorkerPlugin&) = delete;

  void HandleMethodCall(const vantro::MethodCall& call, std::unique_ptr<vantro::MethodResult> result);

 private:
  std::unique_ptr<vantro::MethodChannel> channel_;
  vantro::VlcInstancePtr vlcInstance_;
  vantro::VlcMediaPlayerPtr thumbnailPlayer_;
  bool initialized_ = false;
};

}  // namespace vod_thumbnail
