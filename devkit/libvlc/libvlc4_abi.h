// The binary interface of libvlc 4 as this library provides it: calling convention, structures and event numbers, from
// the published headers of the VLC project. Debian's <vlc/vlc.h> (libvlc 3) is used under its own names next to it.
#pragma once

#include <cstddef>
#include <cstdint>

// Windows' calling convention, for exported functions and for the program's callbacks.
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
  kLengthChanged = 0x111,
  kVout = 0x112,
  kTrackAdded = 0x114,
  kTrackRemoved = 0x115,
  kTrackSelected = 0x116,
  kMediaStopping = 0x504,
};

// The result of libvlc_media_player_get_state.
enum class State : int32_t { kNothingSpecial, kOpening, kBuffering, kPlaying, kPaused, kStopped, kStopping, kError };

enum class TrackType : int32_t { kUnknown = -1, kAudio = 0, kVideo = 1, kText = 2 };

enum class StopReason : int32_t { kError = 0, kEnd = 1, kUser = 2 };

// Bits of capabilities_changed.
inline constexpr int32_t kCanSeek = 1;
inline constexpr int32_t kCanPause = 2;

// The result of a stop when there is nothing to stop.
inline constexpr int kNothingToStop = INT32_MIN;

struct Event {
  int32_t type = 0;
  void* sender = nullptr;
  union {
    float cache;
    int32_t seekable;
    int64_t time;
    double position;
    void* media;
    struct {
      TrackType type;
      int32_t number;
      const char* id;
    } track;
  } u{};
};
static_assert(offsetof(Event, sender) == 8 && offsetof(Event, u) == 16 && offsetof(Event, u.track.id) == 24);

using EventCallback = void(VANTRO_MS_ABI*)(const Event* event, void* userData);

// The callbacks of a player in the interface without event managers. The structure and each pointer may be null. The
// program owns the structure, which must live as long as the player. Times are in microseconds.
struct PlayerCallbacks {
  uint32_t version;
  void(VANTRO_MS_ABI* mediaChanged)(void* opaque, void* media);
  void(VANTRO_MS_ABI* mediaStopping)(void* opaque, void* media, StopReason reason);
  void(VANTRO_MS_ABI* stateChanged)(void* opaque, State state);
  void(VANTRO_MS_ABI* bufferingChanged)(void* opaque, float part);  // 0 to 1
  void(VANTRO_MS_ABI* capabilitiesChanged)(void* opaque, int32_t before, int32_t now);
  void(VANTRO_MS_ABI* positionChanged)(void* opaque, int64_t time, double position);
  void(VANTRO_MS_ABI* lengthChanged)(void* opaque, int64_t length);
  // `action`: 0 added, 1 removed, 2 updated.
  void(VANTRO_MS_ABI* trackListChanged)(void* opaque, int32_t action, TrackType type, const char* id);
  void(VANTRO_MS_ABI* trackSelectionChanged)(void* opaque, TrackType type, const char* unselected,
                                             const char* selected);
  void* programsTitlesChaptersAndMore[11];
  void(VANTRO_MS_ABI* voutChanged)(void* opaque, unsigned count);
  void* corkVolumeMuteDevice[4];
};
static_assert(offsetof(PlayerCallbacks, voutChanged) == 8 * 21 && sizeof(PlayerCallbacks) == 8 * 26);

// A track of a list. Its identity is the text id; the number is libvlc 3's.
struct Track {
  uint32_t codec;
  uint32_t originalFourcc;
  int32_t number;
  TrackType type;
  int32_t profile;
  int32_t level;
  void* details;  // depends on the type: libvlc_audio_track_t, libvlc_video_track_t, libvlc_subtitle_track_t
  uint32_t bitrate;
  char* language;
  char* description;
  const char* id;
  bool idStable;
  char* name;
  bool selected;
};
static_assert(offsetof(Track, details) == 24 && offsetof(Track, language) == 40 && offsetof(Track, id) == 56 &&
              offsetof(Track, name) == 72 && offsetof(Track, selected) == 80);

struct AudioOutput {
  char* name;
  char* description;
  AudioOutput* next;
};

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
