// The host's own declarations of the libvlc items it uses: the opaque handles, the twelve functions of libvlc.dll that
// the executable imports directly, and the libvlc 4 layouts that it reads (from the VLC project's published headers).
// All other functions are called through LibVlcFunctions (player/libvlc_functions.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

extern "C" {

struct libvlc_instance_t;
struct libvlc_media_t;
struct libvlc_media_player_t;
struct libvlc_event_manager_t;

// A signed count of milliseconds.
using libvlc_time_t = int64_t;

// libvlc_event_t of libvlc 4: type, sender, and a union. The type selects the member that the host reads.
struct libvlc_event_t {
  int32_t type;
  void* p_obj;
  union {
    float cache;       // 0x103 Buffering, percent
    int32_t seekable;  // 0x10D SeekableChanged, a Boolean
    int64_t time;      // 0x10B TimeChanged, milliseconds
    double position;   // 0x10C PositionChanged, 0 to 1
  } u;
};
static_assert(offsetof(libvlc_event_t, p_obj) == 8 && offsetof(libvlc_event_t, u) == 16);

using libvlc_callback_t = void (*)(const libvlc_event_t* event, void* userData);

// One entry of the list that the track description functions return.
struct libvlc_track_description_t {
  int id;
  char* name;
  libvlc_track_description_t* next;
};

// libvlc_media_stats_t of libvlc 4. Its counters are 64 bits wide.
struct libvlc_media_stats_t {
  uint64_t i_read_bytes;
  float f_input_bitrate;
  uint64_t i_demux_read_bytes;
  float f_demux_bitrate;
  uint64_t i_demux_corrupted;
  uint64_t i_demux_discontinuity;
  uint64_t i_decoded_video;
  uint64_t i_decoded_audio;
  uint64_t i_displayed_pictures;
  uint64_t i_late_pictures;
  uint64_t i_lost_pictures;
  uint64_t i_played_abuffers;
  uint64_t i_lost_abuffers;
};
static_assert(sizeof(libvlc_media_stats_t) == 104 && offsetof(libvlc_media_stats_t, i_displayed_pictures) == 64 &&
              offsetof(libvlc_media_stats_t, i_played_abuffers) == 88);

// The direct imports. The operating system's loader binds them before the process runs its first instruction. If
// libvlc.dll lacks one of them, the process does not start.
void libvlc_release(libvlc_instance_t* instance);
void libvlc_media_player_release(libvlc_media_player_t* player);
void libvlc_media_release(libvlc_media_t* media);
bool libvlc_media_get_stats(libvlc_media_t* media, libvlc_media_stats_t* stats);
libvlc_instance_t* libvlc_new(int argc, const char* const* argv);
libvlc_media_player_t* libvlc_media_player_new(libvlc_instance_t* instance);
libvlc_media_t* libvlc_media_new_location(const char* location);
int libvlc_media_player_play(libvlc_media_player_t* player);
void libvlc_media_player_set_media(libvlc_media_player_t* player, libvlc_media_t* media);
int libvlc_media_player_set_time(libvlc_media_player_t* player, libvlc_time_t milliseconds, bool fast);
int libvlc_media_player_stop_async(libvlc_media_player_t* player);
int libvlc_video_take_snapshot(libvlc_media_player_t* player, unsigned number, const char* path, unsigned width,
                               unsigned height);

}  // extern "C"

namespace vantro {

// Owning handles: each releases its object through the directly imported function.
struct VlcInstanceDeleter {
  void operator()(libvlc_instance_t* instance) const { libvlc_release(instance); }
};
struct VlcMediaPlayerDeleter {
  void operator()(libvlc_media_player_t* player) const { libvlc_media_player_release(player); }
};
struct VlcMediaDeleter {
  void operator()(libvlc_media_t* media) const { libvlc_media_release(media); }
};
using VlcInstancePtr = std::unique_ptr<libvlc_instance_t, VlcInstanceDeleter>;
using VlcMediaPlayerPtr = std::unique_ptr<libvlc_media_player_t, VlcMediaPlayerDeleter>;
using VlcMediaPtr = std::unique_ptr<libvlc_media_t, VlcMediaDeleter>;

}  // namespace vantro
