// The volume and mute of one player, kept beside the library's own.
//
// A published libvlc 4 ignores a volume or mute that is set before the sound output exists, and a volume doesn't end a
// mute. The adapter keeps the host's values and sets them again when an output may have begun.
#pragma once

#include <atomic>

#include "runtime/libvlc_abi.h"

namespace vantro::runtime {

class Sound {
 public:
  // Any thread. Per cent; above 0 it also ends a mute. 0 on success: the value is applied now or when the sound begins.
  // A negative volume is passed to the library and not kept.
  int SetVolume(RealPlayer* real, int volume);
  void SetMute(RealPlayer* real, int mute);

  // What was set, or the library's own answer while nothing was set.
  int volume(RealPlayer* real) const;
  int mute(RealPlayer* real) const;

  // To be called with every event of the player, on the thread that delivers it. The values are set again when playback
  // or an audio track begins, when buffering is done, and with the first time events after that. No event reports that
  // an output has begun, but time events follow the first sound.
  void OnEvent(RealPlayer* real, const Event& event);

 private:
  void Apply(RealPlayer* real);

  static constexpr int kNotSet = -2;

  std::atomic<int> volume_{kNotSet};
  std::atomic<int> mute_{kNotSet};
  std::atomic<unsigned> version_{0};     // counts the host's changes
  std::atomic<int> repetitionsLeft_{0};  // time events with which the values are set again
};

}  // namespace vantro::runtime
