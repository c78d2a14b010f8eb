// Takes a player's sound instead of a sound card, holds volume and mute, and measures what would be heard.
#pragma once

#include <cstdint>
#include <mutex>

namespace vantro::devlib {

class AudioMeter {
 public:
  struct Reading {
    double rms = 0;        // of the first channel after volume and mute; full scale is 1
    double frequency = 0;  // hertz, from the zero crossings before volume and mute; right for a single tone
    uint64_t samples = 0;  // that the two were taken from
  };

  // libvlc's audio thread. The format is asked for as 16-bit integers, the only one that libvlc 3
  // hands out, at the stream's own rate.
  void Configure(char* format, unsigned rate, unsigned channels);
  void Play(const void* samples, unsigned count);

  // Any thread. Volume in percent; false, and nothing set, for a negative one.
  bool SetVolume(int percent);
  int volume() const;
  void SetMute(bool mute);
  bool mute() const;

  // What was played since the last call.
  Reading Take();

 private:
  mutable std::mutex lock_;
  int volume_ = 100;
  bool mute_ = false;
  unsigned rate_ = 0;
  unsigned channels_ = 1;
  double energy_ = 0;
  uint64_t crossings_ = 0;
  uint64_t samples_ = 0;
  bool positive_ = false;
};

}  // namespace vantro::devlib
