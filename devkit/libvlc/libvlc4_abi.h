// The binary interface of libvlc 4 as this library offers it: calling convention, structures and event numbers, from
// the published headers of the VLC project. Debian's <vlc/vlc.h> (libvlc 3) is used under its own names beside it.
#pragma once

#include <cstddef>
#include <cstdint>

// Windows' calling convention, for what a Windows program calls and for the callbacks that it hands over.
#define VANTRO_MS_ABI __attribute__((ms_abi))

namespace vantro::devlib {

enum EventType : int32_t {
  kMediaChanged = 0x100,
  kNothingSpecial = 0x101,
  kOpening = 0x102,
  kBuffering = 0x103,
  kPlaying = 0x104,
  kPaused = 0x105,
  kStopped = 0x106,
  kStopping = 0x109,  // the number that libvlc 3 gives to EndReached
  kEncounteredError = 0x10A,
  kTimeChanged = 0x10B,
  kPositionChanged = 0x10C,
  kSeekableChanged = 0x10D,
};

struct Event {
  int32_t type = 0;
  void* sender = nullptr;
  union {
    float cache;
    int32_t seekable;
    int64_t time;
    double position;
    void* media;
    uint64_t bits;
  } u{};
};
static_assert(offsetof(Event, sender) == 8 && offsetof(Event, u) == 16);

using EventCallback = void(VANTRO_MS_ABI*)(const Event* event, void* userData);

struct MediaStats {
  uint64_t readBytes;
  float inputBitrate;
  uint64_t demuxReadBytes;
  float demuxBitrate;
  uint64_t demuxCorrupted;
  uint64_t demuxDiscontinuity;
  uint64_t decodedVideo;
  uint64_t decodedAudio;
  uint64_t displayedPictures;
  uint64_t latePictures;
  uint64_t lostPictures;
  uint64_t playedAudioBuffers;
  uint64_t lostAudioBuffers;
};
static_assert(sizeof(MediaStats) == 104 && offsetof(MediaStats, displayedPictures) == 64 &&
              offsetof(MediaStats, playedAudioBuffers) == 88);

inline constexpr uint32_t kAbiVersion = 0x040C0000;

}  // namespace vantro::devlib
