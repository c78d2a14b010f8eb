// A libvlc 3 instance made from libvlc 4's arguments.
#pragma once

#include <atomic>

struct libvlc_instance_t;

namespace vantro::devlib {

class Instance {
 public:
  // Arguments that libvlc 3 does not know are left out with a warning, so that one unknown argument does not make the
  // call fail. Returns null when libvlc fails without any arguments. The new object has one reference, the caller's.
  static Instance* Create(int count, const char* const* arguments);
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  void Release();
  libvlc_instance_t* native() const { return native_; }
  // True when the sound output is waveout: volume and mute then belong to each player and not to the process.
  bool soundOfPlayer() const { return soundOfPlayer_; }

 private:
  Instance(libvlc_instance_t* native, bool soundOfPlayer) : native_(native), soundOfPlayer_(soundOfPlayer) {}
  ~Instance();

  libvlc_instance_t* const native_;
  const bool soundOfPlayer_;
  std::atomic<int> references_{1};
};

}  // namespace vantro::devlib
