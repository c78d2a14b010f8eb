// The libvlc instance of one player, and what is made with it alone.
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
  // Makes the instance, in up to three attempts. False, with what is known of the reason in the log, when none can be
  // made.
  bool Create(const LibVlcFunctions& vlc);
  void Release() { vlcInstance_.reset(); }
  libvlc_instance_t* get() const { return vlcInstance_.get(); }
  explicit operator bool() const { return vlcInstance_ != nullptr; }

  // A media for an http, https or rtsp URL, or for anything else as a path. The caller owns it; null on failure, with
  // the reason in the log.
  libvlc_media_t* CreateMedia(const std::string& url) const;

 private:
  friend struct test::PlayerInspector;

  VlcInstancePtr vlcInstance_;
};

}  // namespace vantro
