// A libvlc 3 instance made from libvlc 4's arguments.
#pragma once

#include <atomic>

struct libvlc_instance_t;

namespace vantro::devlib {

class Instance {
 public:
  // Arguments that libvlc 3 does not know are left out with a warning, one unknown argument does not fail the whole.
  // Null when libvlc fails without any. The new object has one reference, the caller's.
  static Instance* Create(int count, const char* const* arguments);
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  void Release();
  libvlc_instance_t* native() const { return native_; }
  // Volume and mute belong to each player, not to the process: the sound output asked for is waveout.
  bool soundOfPlayer() const { return soundOfPlayer_; }

 private:
  Instance(libvlc_instance_t* native, bool soundOfPlayer) : native_(native), soundOfPlayer_(soundOfPlayer) {}
  ~Instance();

  libvlc_instance_t* const native_;
  const bool soundOfPlayer_;
  std::atomic<int> references_{1};
};

}  // namespace vantro::devlib
