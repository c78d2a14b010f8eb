// libvlc 4's binary interface as far as the adapter meets it: opaque objects, events, tracks and outputs, from the
// published headers of the VLC project.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vantro::runtime {

struct Instance;      // libvlc_instance_t
struct Media;         // libvlc_media_t
struct RealPlayer;    // libvlc_media_player_t of the real library
struct EventManager;  // libvlc_event_manager_t of the real library

// What the host holds as its libvlc_media_player_t* and as its libvlc_event_manager_t*: a handle that the adapter made.
struct PlayerHandle;

// The events that a media player sends to the host.
enum EventType : int32_t {
  kMediaChanged = 0x100,
  kNothingSpecial = 0x101,
  kOpening = 0x102,
  kBuffering = 0x103,
  kPlaying = 0x104,
  kPaused = 0x105,
  kStopped = 0x106,
  kStopping = 0x109,
  kEncounteredError = 0x10A,
  kTimeChanged = 0x10B,
  kPositionChanged = 0x10C,
  kSeekableChanged = 0x10D,
  kEsSelected = 0x116,  // for the adapter alone
};

// The first bytes of libvlc_event_t. Every event above fits into eight bytes of its union.
struct Event {
  int32_t type;
  void* object;
  union {
    uint64_t bits;
    float cache;        // kBuffering: per cent
    int32_t seekable;   // kSeekableChanged: a Boolean
    int64_t time;       // kTimeChanged: milliseconds
    double position;    // kPositionChanged: 0 to 1
    Media* media;       // kMediaChanged
    int32_t trackType;  // kEsSelected
  } u;
};
static_assert(offsetof(Event, object) == 8 && offsetof(Event, u) == 16 && sizeof(Event) == 24);

using EventCallback = void (*)(const Event* event, void* userData);

// libvlc_state_t.
enum class State : int32_t { kNothingSpecial, kOpening, kBuffering, kPlaying, kPaused, kStopped, kStopping, kError };

// libvlc_track_type_t.
enum class TrackType : int32_t { kUnknown = -1, kAudio, kVideo, kText };

struct TrackList;  // libvlc_media_tracklist_t

// libvlc_media_track_t.
struct Track {
  uint32_t codec;
  uint32_t originalFourcc;
  int32_t number;  // deprecated there
  TrackType type;
  int32_t profile;
  int32_t level;
  void* details;
  uint32_t bitrate;
  char* language;
  char* description;
  const char* id;  // the track's identity
  bool idStable;
  char* name;
  bool selected;
};
static_assert(offsetof(Track, details) == 24 && offsetof(Track, language) == 40 && offsetof(Track, id) == 56 &&
              offsetof(Track, name) == 72 && offsetof(Track, selected) == 80);

// libvlc_audio_output_t.
struct AudioOutput {
  char* name;
  char* description;
  AudioOutput* next;
};

// libvlc_track_description_t, which libvlc 4 no longer has: the host's track lists.
struct TrackDescription {
  int32_t id;
  char* name;
  TrackDescription* next;
};
static_assert(offsetof(TrackDescription, name) == 8 && sizeof(TrackDescription) == 24);

}  // namespace vantro::runtime
