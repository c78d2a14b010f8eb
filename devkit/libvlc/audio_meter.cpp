#include "audio_meter.h"

#include <cmath>
#include <cstring>

namespace vantro::devlib {
namespace {

constexpr double kFullScale = 32768.0;

}  // namespace

void AudioMeter::Configure(char* format, unsigned rate, unsigned channels) {
  memcpy(format, "S16N", 4);
  std::lock_guard guard(lock_);
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
  double gain = mute_ ? 0.0 : volume_ / 100.0 / kFullScale;
  positive_ = positive;
  energy_ += static_cast<double>(energy) * gain * gain;
  crossings_ += crossings;
  samples_ += count;
}

bool AudioMeter::SetVolume(int percent) {
  if (percent < 0) return false;
  std::lock_guard guard(lock_);
  volume_ = percent;
  return true;
}

int AudioMeter::volume() const {
  std::lock_guard guard(lock_);
  return volume_;
}

void AudioMeter::SetMute(bool mute) {
  std::lock_guard guard(lock_);
  mute_ = mute;
}

bool AudioMeter::mute() const {
  std::lock_guard guard(lock_);
  return mute_;
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
