// The libvlc instance of one player, and the media made with it.
#pragma once

#include <string>

#include "player/libvlc_api.h"
#include "player/libvlc_functions.h"

namespace vantro::test {
struct PlayerInspector;
}

namespace vantro {

// Main thread.
class VlcInstance {
 public:
  // Makes the instance, in up to three attempts. If all fail, returns false and logs what is known of the reason.
  bool Create(const LibVlcFunctions& vlc);
  void Release() { vlcInstance_.reset(); }
  libvlc_instance_t* get() const { return vlcInstance_.get(); }
  explicit operator bool() const { return vlcInstance_ != nullptr; }

  // Makes a media for an http, https or rtsp URL; any other text is a path. The caller owns the result. On failure
  // returns null and logs the reason.
  libvlc_media_t* CreateMedia(const std::string& url) const;

 private:
  friend struct test::PlayerInspector;

  VlcInstancePtr vlcInstance_;
};

}  // namespace vantro
