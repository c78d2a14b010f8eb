#include "audio_meter.h"

#include <atomic>
#include <cmath>
#include <cstring>

namespace vantro::devlib {
namespace {

constexpr double kFullScale = 32768.0;

std::atomic<int> sessionVolume{100};
std::atomic<bool> sessionMute{false};

}  // namespace

AudioMeter::Level AudioMeter::Session() { return {sessionVolume.load(), sessionMute.load()}; }

// Call with the lock held.
AudioMeter::Level AudioMeter::Effective() const { return ofPlayer_ ? own_ : Session(); }

void AudioMeter::Configure(char* format, unsigned rate, unsigned channels) {
  memcpy(format, "S16N", 4);
  std::lock_guard guard(lock_);
  muteKnown_ = true;
  own_ = {};
  rate_ = rate;
  channels_ = channels ? channels : 1;
  energy_ = 0;
  crossings_ = samples_ = 0;
}

void AudioMeter::Play(const void* samples, unsigned count) {
  std::lock_guard guard(lock_);
  const int16_t* sample = static_cast<const int16_t*>(samples);
  int64_t energy = 0;
  uint64_t crossings = 0;
  bool positive = positive_;
  for (unsigned i = 0; i < count; ++i, sample += channels_) {
    energy += int32_t{*sample} * *sample;
    bool above = *sample > 0;
    crossings += above && !positive;
    positive = above;
  }
  Level level = Effective();
  double gain = level.mute ? 0.0 : level.volume / 100.0 / kFullScale;
  positive_ = positive;
  energy_ += static_cast<double>(energy) * gain * gain;
  crossings_ += crossings;
  samples_ += count;
  if (rate_) playedSeconds_ += static_cast<double>(count) / rate_;
}

bool AudioMeter::SetVolume(int percent) {
  if (percent < 0) return false;
  std::lock_guard guard(lock_);
  own_.volume = percent;
  if (!ofPlayer_) sessionVolume.store(percent);
  return true;
}

int AudioMeter::volume() const {
  std::lock_guard guard(lock_);
  return Effective().volume;
}

void AudioMeter::SetMute(bool mute) {
  std::lock_guard guard(lock_);
  muteKnown_ = true;
  own_.mute = mute;
  if (!ofPlayer_) sessionMute.store(mute);
}

int AudioMeter::mute() const {
  std::lock_guard guard(lock_);
  return muteKnown_ ? Effective().mute : -1;
}

int64_t AudioMeter::Played() const {
  std::lock_guard guard(lock_);
  return static_cast<int64_t>(playedSeconds_ * 1000);
}

AudioMeter::Reading AudioMeter::Take() {
  std::lock_guard guard(lock_);
  Reading reading;
  reading.samples = samples_;
  if (samples_) {
    double count = static_cast<double>(samples_);
    reading.rms = std::sqrt(energy_ / count);
    reading.frequency = static_cast<double>(crossings_) * rate_ / count;
  }
  energy_ = 0;
  crossings_ = samples_ = 0;
  return reading;
}

}  // namespace vantro::devlib
