// The functions of libvlc 4 for sound and tracks, which both variants have.
#include <cstdlib>
#include <cstring>

#include "exports.h"
#include "tracks.h"

using vantro::devlib::AudioOutput;
using vantro::devlib::Player;
using vantro::devlib::PlayerRegistry;
using vantro::devlib::TrackList;
using vantro::devlib::TrackObject;
using vantro::devlib::TrackType;

// --- Sound --------------------------------------------------------------------------------------------------------

EXPORTED int devlib_audio_set_volume(void* handle, int volume) {
  auto player = PlayerRegistry::Find(handle, "libvlc_audio_set_volume");
  return player && player->audio().SetVolume(volume) ? 0 : -1;
}

EXPORTED int devlib_audio_get_volume(void* handle) {
  auto player = PlayerRegistry::Find(handle, "libvlc_audio_get_volume");
  return player ? player->audio().volume() : -1;
}

EXPORTED void devlib_audio_set_mute(void* handle, int mute) {
  if (auto player = PlayerRegistry::Find(handle, "libvlc_audio_set_mute")) player->audio().SetMute(mute != 0);
}

EXPORTED int devlib_audio_get_mute(void* handle) {
  auto player = PlayerRegistry::Find(handle, "libvlc_audio_get_mute");
  return player ? player->audio().mute() : -1;
}

EXPORTED AudioOutput* devlib_audio_output_list_get(void* instance) {
  // The outputs of libvlc 4 on Windows. DirectSound is not among them.
  constexpr const char* kOutputs[][2] = {{"mmdevice", "Windows Multimedia Device output"},
                                         {"waveout", "WaveOut audio output"},
                                         {"amem", "Audio memory output"},
                                         {"afile", "File audio output"},
                                         {"adummy", "Dummy audio output"}};
  if (!instance) return nullptr;
  AudioOutput* first = nullptr;
  AudioOutput** end = &first;
  for (const auto& [name, description] : kOutputs) {
    *end = new AudioOutput{strdup(name), strdup(description), nullptr};
    end = &(*end)->next;
  }
  return first;
}

EXPORTED void devlib_audio_output_list_release(AudioOutput* list) {
  while (list) {
    AudioOutput* next = list->next;
    free(list->name);
    free(list->description);
    delete list;
    list = next;
  }
}

// --- Tracks -------------------------------------------------------------------------------------------------------

EXPORTED TrackList* devlib_media_player_get_tracklist(void* handle, TrackType type, bool selected) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_get_tracklist");
  return player ? player->Tracks(type, selected) : nullptr;
}

EXPORTED size_t devlib_media_tracklist_count(const TrackList* list) { return list->count(); }

EXPORTED void* devlib_media_tracklist_at(const TrackList* list, size_t index) {
  TrackObject* track = list->at(index);
  if (!track) vantro::devlib::Misuse("libvlc_media_tracklist_at", "the index is beyond the end");
  return track;
}

EXPORTED void devlib_media_tracklist_delete(TrackList* list) { delete list; }

EXPORTED void* devlib_media_track_hold(void* track) {
  TrackObject::Of(track)->Retain();
  return track;
}

EXPORTED void devlib_media_track_release(void* track) { TrackObject::Of(track)->Release(); }

EXPORTED void devlib_media_player_select_track(void* handle, void* track) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_select_track");
  if (player && track) player->SelectTrack(TrackObject::Of(track)->face.type, TrackObject::Of(track)->face.number);
}

EXPORTED void devlib_media_player_unselect_track_type(void* handle, TrackType type) {
  if (auto player = PlayerRegistry::Find(handle, "libvlc_media_player_unselect_track_type")) {
    player->SelectTrack(type, -1);
  }
}

EXPORTED void devlib_media_player_select_tracks_by_ids(void* handle, TrackType type, const char* ids) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_select_tracks_by_ids");
  if (player) player->SelectTrack(type, vantro::devlib::NumberOfTrack(type, ids));
}
