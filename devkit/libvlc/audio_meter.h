// Takes a player's sound in place of a sound card, holds volume and mute, and measures the audible sound.
//
// There are two kinds of volume and mute, as on Windows. With the output waveout each player has its own, and its sound
// begins with the output's default, 100 % and not muted, whatever was set before. With every other output both belong
// to the audio session of the process: the last call counts, for whichever player it was made.
#pragma once

#include <cstdint>
#include <mutex>

namespace vantro::devlib {

class AudioMeter {
 public:
  struct Reading {
    double rms = 0;        // of the first channel after volume and mute; full scale is 1
    double frequency = 0;  // hertz, from the zero crossings before volume and mute; right for a single tone
    uint64_t samples = 0;  // number of samples that the two values were computed from
  };

  explicit AudioMeter(bool ofPlayer) : ofPlayer_(ofPlayer) {}

  // libvlc's audio thread. The format is always 16-bit integers at the stream's own rate, the only one that libvlc 3
  // provides. Configure starts a sound output.
  void Configure(char* format, unsigned rate, unsigned channels);
  void Play(const void* samples, unsigned count);

  // Any thread. Volume in percent. Returns false and sets nothing when it is negative.
  bool SetVolume(int percent);
  // Returns the output's volume once it has begun, before that the last volume set; initially 100.
  int volume() const;
  void SetMute(bool mute);
  // Like volume(), but -1 before there was an output or a call.
  int mute() const;

  // Milliseconds of sound played in total; constant while nothing plays.
  int64_t Played() const;

  // Returns the reading since the last call.
  Reading Take();

 private:
  struct Level {
    int volume = 100;
    bool mute = false;
  };
  static Level Session();
  Level Effective() const;

  const bool ofPlayer_;
  mutable std::mutex lock_;
  bool muteKnown_ = false;  // there was an output or a call about mute
  Level own_;               // of the output since it began, or the values set since then
  unsigned rate_ = 0;
  unsigned channels_ = 1;
  double playedSeconds_ = 0;
  double energy_ = 0;
  uint64_t crossings_ = 0;
  uint64_t samples_ = 0;
  bool positive_ = false;
};

}  // namespace vantro::devlib
