// Takes a player's sound instead of a sound card, holds volume and mute, and measures what would be heard.
//
// There are two kinds, as on Windows. With the output waveout each player has a volume and a mute of its own, and its
// sound begins with the output's own state, 100 % and not muted, whatever was set before. With every other output both
// belong to the audio session of the process: the last call counts, whichever player it was made for.
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

  explicit AudioMeter(bool ofPlayer) : ofPlayer_(ofPlayer) {}

  // libvlc's audio thread. The format is asked for as 16-bit integers, the only one that libvlc 3
  // hands out, at the stream's own rate. Configure is the beginning of a sound output.
  void Configure(char* format, unsigned rate, unsigned channels);
  void Play(const void* samples, unsigned count);

  // Any thread. Volume in percent; false, and nothing set, for a negative one.
  bool SetVolume(int percent);
  // The output's own once it has begun, else what was set last; 100 at first.
  int volume() const;
  void SetMute(bool mute);
  // The same, but -1 while there was neither an output nor a call.
  int mute() const;

  // Milliseconds of sound that have been played in all; level while nothing is.
  int64_t Played() const;

  // What was played since the last call.
  Reading Take();

 private:
  struct Level {
    int volume = 100;
    bool mute = false;
  };
  static Level Session();
  Level Heard() const;

  const bool ofPlayer_;
  mutable std::mutex lock_;
  bool told_ = false;  // there was an output or a call about mute
  Level own_;          // of the output since it began, or what was asked for since
  unsigned rate_ = 0;
  unsigned channels_ = 1;
  double playedSeconds_ = 0;
  double energy_ = 0;
  uint64_t crossings_ = 0;
  uint64_t samples_ = 0;
  bool positive_ = false;
};

}  // namespace vantro::devlib
