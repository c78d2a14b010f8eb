// The published libvlc 4 that the adapter forwards to: libvlc-real.dll, in the same folder as the adapter's libvlc.dll.
//
// It is loaded at the first call of any exported function, not with the process. So libvlc_new and libvlc_errmsg can
// report a library that is missing or unfit in one sentence.
#pragma once

#include <string>

#include "runtime/libvlc_abi.h"

namespace vantro::runtime {

struct Interface;
struct MediaStats;

inline constexpr wchar_t kRealLibraryName[] = L"libvlc-real.dll";
inline constexpr unsigned kNeededMajor = 4;

// The functions that both interfaces of libvlc 4 have with the same signature. X(name, result, parameters).
#define RUNTIME_NEEDED_FUNCTIONS(X)                                                        \
  X(libvlc_abi_version, unsigned, ())                                                      \
  X(libvlc_new, Instance*, (int, const char* const*))                                      \
  X(libvlc_release, void, (Instance*))                                                     \
  X(libvlc_errmsg, const char*, ())                                                        \
  X(libvlc_get_version, const char*, ())                                                   \
  X(libvlc_media_new_path, Media*, (const char*))                                          \
  X(libvlc_media_new_location, Media*, (const char*))                                      \
  X(libvlc_media_add_option, void, (Media*, const char*))                                  \
  X(libvlc_media_release, void, (Media*))                                                  \
  X(libvlc_media_get_stats, bool, (Media*, MediaStats*))                                   \
  X(libvlc_media_player_release, void, (RealPlayer*))                                      \
  X(libvlc_media_player_set_hwnd, void, (RealPlayer*, void*))                              \
  X(libvlc_media_player_set_media, void, (RealPlayer*, Media*))                            \
  X(libvlc_media_player_get_media, Media*, (RealPlayer*))                                  \
  X(libvlc_media_player_play, int, (RealPlayer*))                                          \
  X(libvlc_media_player_pause, void, (RealPlayer*))                                        \
  X(libvlc_media_player_stop_async, int, (RealPlayer*))                                    \
  X(libvlc_media_player_is_playing, bool, (RealPlayer*))                                   \
  X(libvlc_media_player_get_state, State, (RealPlayer*))                                   \
  X(libvlc_media_player_get_length, int64_t, (RealPlayer*))                                \
  X(libvlc_media_player_get_time, int64_t, (RealPlayer*))                                  \
  X(libvlc_media_player_set_time, int, (RealPlayer*, int64_t, bool))                       \
  X(libvlc_media_player_get_tracklist, TrackList*, (RealPlayer*, TrackType, bool))         \
  X(libvlc_media_tracklist_count, size_t, (const TrackList*))                              \
  X(libvlc_media_tracklist_at, Track*, (TrackList*, size_t))                               \
  X(libvlc_media_tracklist_delete, void, (TrackList*))                                     \
  X(libvlc_media_player_select_tracks_by_ids, void, (RealPlayer*, TrackType, const char*)) \
  X(libvlc_media_player_unselect_track_type, void, (RealPlayer*, TrackType))               \
  X(libvlc_audio_output_list_get, AudioOutput*, (Instance*))                               \
  X(libvlc_audio_output_list_release, void, (AudioOutput*))                                \
  X(libvlc_audio_set_volume, int, (RealPlayer*, int))                                      \
  X(libvlc_audio_get_volume, int, (RealPlayer*))                                           \
  X(libvlc_audio_set_mute, void, (RealPlayer*, int))                                       \
  X(libvlc_audio_get_mute, int, (RealPlayer*))                                             \
  X(libvlc_video_set_scale, void, (RealPlayer*, float))                                    \
  X(libvlc_video_get_size, int, (RealPlayer*, unsigned, unsigned*, unsigned*))             \
  X(libvlc_video_take_snapshot, int, (RealPlayer*, unsigned, const char*, unsigned, unsigned))

// Forwarded where the library has them. Nothing depends on them.
#define RUNTIME_OPTIONAL_FUNCTIONS(X)                \
  X(libvlc_set_fullscreen, void, (RealPlayer*, int)) \
  X(libvlc_get_fullscreen, int, (RealPlayer*))

struct RealFunctions {
#define RUNTIME_SLOT(name, result, parameters) result(*name) parameters = nullptr;
  RUNTIME_NEEDED_FUNCTIONS(RUNTIME_SLOT)
  RUNTIME_OPTIONAL_FUNCTIONS(RUNTIME_SLOT)
#undef RUNTIME_SLOT
};

// The state after loading; it doesn't change any more. Any thread.
struct RealLibrary {
  RealFunctions functions;             // a slot is null when the library lacks the function
  const Interface* beneath = nullptr;  // which of libvlc 4's interfaces the library has; null when refused
  std::string refusal;                 // one sentence: why the library can't be used; empty when it can

  bool usable() const { return beneath != nullptr; }
};

// Loads the library once a process and returns its state. Any thread, libvlc's own included.
const RealLibrary& Real();

// Address of a function of the loaded library, or null.
using Lookup = void* (*)(const char* name);

}  // namespace vantro::runtime
