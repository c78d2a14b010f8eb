#include "runtime/sound.h"

#include "runtime/log.h"
#include "runtime/real_library.h"

namespace vantro::runtime {
namespace {

// Time events come some four times a second.
constexpr int kRepetitions = 8;

constexpr float kBufferingDone = 100.0f;

}  // namespace

int Sound::SetVolume(RealPlayer* real, int volume) {
  if (volume < 0) return Real().functions.libvlc_audio_set_volume(real, volume);
  if (volume > 0) mute_.store(0);
  volume_.store(volume);
  ++version_;
  Apply(real);
  return 0;
}

void Sound::SetMute(RealPlayer* real, int mute) {
  mute_.store(mute != 0);
  ++version_;
  Apply(real);
}

// No lock is held during the calls: one of libvlc's threads may be here with its player's lock while the host's thread
// waits for that lock. Instead, a thread that finds that the host has changed a value meanwhile sets the values again,
// so that the last values are the host's.
void Sound::Apply(RealPlayer* real) {
  const RealFunctions& functions = Real().functions;
  unsigned version;
  do {
    version = version_.load();
    const int mute = mute_.load();
    const int volume = volume_.load();
    if (mute != kNotSet) functions.libvlc_audio_set_mute(real, mute);
    if (volume != kNotSet) functions.libvlc_audio_set_volume(real, volume);
  } while (version != version_.load());
}

int Sound::volume(RealPlayer* real) const {
  const int volume = volume_.load();
  return volume != kNotSet ? volume : Real().functions.libvlc_audio_get_volume(real);
}

int Sound::mute(RealPlayer* real) const {
  const int mute = mute_.load();
  return mute != kNotSet ? mute : Real().functions.libvlc_audio_get_mute(real);
}

void Sound::OnEvent(RealPlayer* real, const Event& event) {
  switch (event.type) {
    case kEsSelected:
      if (event.u.trackType != static_cast<int32_t>(TrackType::kAudio)) return;
      [[fallthrough]];
    case kPlaying:
    case kMediaChanged:
      repetitionsLeft_.store(kRepetitions);
      return Apply(real);
    case kBuffering:
      if (event.u.cache >= kBufferingDone) Apply(real);
      return;
    case kTimeChanged:
      if (repetitionsLeft_.load() <= 0) return;
      --repetitionsLeft_;
      RUNTIME_LOG("player %p: volume %d and mute %d set again", static_cast<void*>(real), volume_.load(), mute_.load());
      return Apply(real);
    default:
      return;
  }
}

}  // namespace vantro::runtime
