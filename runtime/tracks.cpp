#include "runtime/tracks.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "runtime/log.h"
#include "runtime/real_library.h"

namespace vantro::runtime {
namespace {

constexpr char kDisable[] = "Disable";

struct DeleteTrackList {
  void operator()(TrackList* list) const { Real().functions.libvlc_media_tracklist_delete(list); }
};
using TrackListPtr = std::unique_ptr<TrackList, DeleteTrackList>;

TrackListPtr TracksOf(RealPlayer* real, TrackType type) {
  return TrackListPtr(Real().functions.libvlc_media_player_get_tracklist(real, type, false));
}

// The tracks of a list that have an identity. `list` may be null.
std::vector<const Track*> Identified(TrackList* list) {
  std::vector<const Track*> tracks;
  const size_t count = list ? Real().functions.libvlc_media_tracklist_count(list) : 0;
  for (size_t i = 0; i < count; ++i) {
    const Track* const track = Real().functions.libvlc_media_tracklist_at(list, i);
    if (track && track->id) tracks.push_back(track);
  }
  return tracks;
}

// Null when memory is short.
TrackDescription* NewDescription(int id, const char* name) {
  auto* const description = static_cast<TrackDescription*>(malloc(sizeof(TrackDescription)));
  if (!description) return nullptr;
  *description = {id, strdup(name), nullptr};
  return description;
}

bool IsThere(const char* text) { return text && *text; }

}  // namespace

int TrackNumbers::NumberOf(const char* id) {
  const std::lock_guard guard(lock_);
  const auto found = std::find(ids_.begin(), ids_.end(), id);
  const auto number = static_cast<int>(found - ids_.begin());
  if (found == ids_.end()) ids_.emplace_back(id);
  return number;
}

std::string ReadableName(const Track& track, size_t place) {
  if (IsThere(track.name)) return track.name;
  if (IsThere(track.language) && IsThere(track.description)) {
    return std::string(track.language) + " - " + track.description;
  }
  if (IsThere(track.language)) return track.language;
  if (IsThere(track.description)) return track.description;
  return "Track " + std::to_string(place);
}

TrackDescription* DescribeTracks(RealPlayer* real, TrackType type, TrackNumbers* numbers) {
  TrackDescription* const first = NewDescription(kNoTrack, kDisable);
  TrackDescription* last = first;
  const TrackListPtr list = TracksOf(real, type);
  size_t place = 0;
  for (const Track* track : Identified(list.get())) {
    if (!last) break;
    last->next = NewDescription(numbers->NumberOf(track->id), ReadableName(*track, ++place).c_str());
    last = last->next;
  }
  return first;
}

void FreeTrackDescriptions(TrackDescription* list) {
  while (list) {
    TrackDescription* const next = list->next;
    free(list->name);
    free(list);
    list = next;
  }
}

int SelectTrack(RealPlayer* real, TrackType type, TrackNumbers* numbers, int number) {
  if (number == kNoTrack) {
    Real().functions.libvlc_media_player_unselect_track_type(real, type);
    return 0;
  }
  const TrackListPtr list = TracksOf(real, type);
  const Track* wanted = nullptr;
  // Every track gets its number, also when no list was requested before.
  for (const Track* track : Identified(list.get())) {
    if (numbers->NumberOf(track->id) == number) wanted = track;
  }
  if (!wanted) {
    RUNTIME_LOG("track %d of type %d is not there", number, static_cast<int>(type));
    return -1;
  }
  Real().functions.libvlc_media_player_select_tracks_by_ids(real, type, wanted->id);
  return 0;
}

}  // namespace vantro::runtime
