#include "tracks.h"

#include <vlc/vlc.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "notice.h"

namespace vantro::devlib {
namespace {

const char* KindOf(TrackType type) {
  switch (type) {
    case TrackType::kAudio:
      return "audio";
    case TrackType::kVideo:
      return "video";
    case TrackType::kText:
      return "spu";
    case TrackType::kUnknown:
      break;
  }
  return "unknown";
}

// Returns libvlc's own name of a track, such as "Track 1 - [English]".
std::string NameOf(libvlc_media_player_t* player, TrackType type, int number) {
  libvlc_track_description_t* list = type == TrackType::kAudio   ? libvlc_audio_get_track_description(player)
                                     : type == TrackType::kVideo ? libvlc_video_get_track_description(player)
                                                                 : libvlc_video_get_spu_description(player);
  std::string name;
  for (libvlc_track_description_t* one = list; one; one = one->p_next) {
    if (one->i_id == number && one->psz_name) name = one->psz_name;
  }
  libvlc_track_description_list_release(list);
  return name;
}

char* TextOrNull(std::string& text) { return text.empty() ? nullptr : text.data(); }

}  // namespace

std::string TrackId(TrackType type, int32_t number) { return std::string(KindOf(type)) + "/" + std::to_string(number); }

void TrackObject::Release() {
  if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

TrackList* TrackList::Make(libvlc_media_player_t* player, libvlc_media_t* media, TrackType type, bool selectedOnly) {
  auto* list = new TrackList;
  if (!media) return list;
  const int selected = SelectedTrack(player, type);
  libvlc_media_track_t** known = nullptr;
  unsigned count = libvlc_media_tracks_get(media, &known);
  for (unsigned i = 0; i < count; ++i) {
    const libvlc_media_track_t& from = *known[i];
    if (static_cast<TrackType>(from.i_type) != type || (selectedOnly && from.i_id != selected)) continue;
    auto* track = new TrackObject;
    track->id_ = TrackId(type, from.i_id);
    track->language_ = from.psz_language ? from.psz_language : "";
    track->description_ = from.psz_description ? from.psz_description : "";
    track->name_ = NameOf(player, type, from.i_id);
    if (type == TrackType::kAudio) track->details_.audio = {from.audio->i_channels, from.audio->i_rate};
    if (type == TrackType::kVideo) {
      const libvlc_video_track_t& video = *from.video;
      track->details_.video = {video.i_height,
                               video.i_width,
                               video.i_sar_num,
                               video.i_sar_den,
                               video.i_frame_rate_num,
                               video.i_frame_rate_den,
                               0,
                               0,
                               {},
                               0};
    }
    track->face = {from.i_codec,
                   from.i_original_fourcc,
                   from.i_id,
                   type,
                   from.i_profile,
                   from.i_level,
                   &track->details_,
                   from.i_bitrate,
                   TextOrNull(track->language_),
                   TextOrNull(track->description_),
                   track->id_.c_str(),
                   true,
                   TextOrNull(track->name_),
                   from.i_id == selected};
    list->tracks_.push_back(track);
  }
  libvlc_media_tracks_release(known, count);
  return list;
}

TrackList::~TrackList() {
  for (TrackObject* track : tracks_) track->Release();
}

int SelectedTrack(libvlc_media_player_t* player, TrackType type) {
  switch (type) {
    case TrackType::kAudio:
      return libvlc_audio_get_track(player);
    case TrackType::kVideo:
      return libvlc_video_get_track(player);
    case TrackType::kText:
      return libvlc_video_get_spu(player);
    case TrackType::kUnknown:
      break;
  }
  return -1;
}

void SelectTrack(libvlc_media_player_t* player, TrackType type, int number) {
  if (type == TrackType::kAudio) libvlc_audio_set_track(player, number);
  if (type == TrackType::kVideo) libvlc_video_set_track(player, number);
  if (type == TrackType::kText) libvlc_video_set_spu(player, number);
}

int NumberOfTrack(TrackType type, const char* ids) {
  const std::string kind = std::string(KindOf(type)) + "/";
  for (const char* id = ids; id && *id;) {
    if (strncmp(id, kind.c_str(), kind.size()) == 0) return atoi(id + kind.size());
    id = strchr(id, ',');
    if (id) ++id;
  }
  return -1;
}

}  // namespace vantro::devlib
