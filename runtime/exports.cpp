// What libvlc.dll exports: the functions of libvlc 4 that the host calls and those that it had in earlier versions.
// Each finds the player of its handle and forwards. What takes more than a line is in another file. README.md says what
// each supplied function does, on which threads, and whether it waits.
#include "runtime/interface.h"
#include "runtime/outputs.h"
#include "runtime/player.h"
#include "runtime/real_library.h"
#include "runtime/tracks.h"

using vantro::runtime::DescribeTracks;
using vantro::runtime::EventCallback;
using vantro::runtime::FreeTrackDescriptions;
using vantro::runtime::Instance;
using vantro::runtime::Media;
using vantro::runtime::MediaStats;
using vantro::runtime::Player;
using vantro::runtime::PlayerHandle;
using vantro::runtime::Real;
using vantro::runtime::RealFunctions;
using vantro::runtime::SelectTrack;
using vantro::runtime::TrackDescription;
using vantro::runtime::TrackType;

namespace {

const RealFunctions& Functions() { return Real().functions; }

vantro::runtime::PictureSize SizeOf(const void* handle) {
  const auto player = Player::Find(handle);
  return player ? player->VideoSize() : vantro::runtime::PictureSize{};
}

}  // namespace

extern "C" {

// Only the adapter exports this. It recognises a copy of itself by it.
extern const char vantro_runtime_adapter;
const char vantro_runtime_adapter = 1;

// Instance. A library that was refused gives no instance; all other objects come from one.

Instance* libvlc_new(int count, const char* const* arguments) {
  return Real().usable() ? vantro::runtime::NewInstance(count, arguments) : nullptr;
}

void libvlc_release(Instance* instance) {
  if (instance) Functions().libvlc_release(instance);
}

const char* libvlc_errmsg() { return Real().usable() ? Functions().libvlc_errmsg() : Real().refusal.c_str(); }

const char* libvlc_get_version() {
  return Functions().libvlc_get_version ? Functions().libvlc_get_version() : "0 (libvlc-real.dll can't be used)";
}

unsigned libvlc_abi_version() { return Functions().libvlc_abi_version ? Functions().libvlc_abi_version() : 0; }

// Media.

Media* libvlc_media_new_path(const char* path) {
  return Real().usable() ? Functions().libvlc_media_new_path(path) : nullptr;
}

Media* libvlc_media_new_location(const char* location) {
  return Real().usable() ? Functions().libvlc_media_new_location(location) : nullptr;
}

void libvlc_media_add_option(Media* media, const char* option) {
  if (media) Functions().libvlc_media_add_option(media, option);
}

void libvlc_media_release(Media* media) {
  if (media) Functions().libvlc_media_release(media);
}

bool libvlc_media_get_stats(Media* media, MediaStats* stats) {
  return media && Functions().libvlc_media_get_stats(media, stats);
}

// Player.

PlayerHandle* libvlc_media_player_new(Instance* instance) { return instance ? Player::New(instance) : nullptr; }

void libvlc_media_player_release(PlayerHandle* handle) { Player::Release(handle); }

void libvlc_media_player_set_hwnd(PlayerHandle* handle, void* window) {
  if (const auto player = Player::Find(handle)) player->SetWindow(window);
}

void libvlc_media_player_set_media(PlayerHandle* handle, Media* media) {
  if (const auto player = Player::Find(handle)) player->SetMedia(media);
}

Media* libvlc_media_player_get_media(PlayerHandle* handle) {
  const auto player = Player::Find(handle);
  return player ? Functions().libvlc_media_player_get_media(player->real()) : nullptr;
}

int libvlc_media_player_play(PlayerHandle* handle) {
  const auto player = Player::Find(handle);
  return player ? player->Play() : -1;
}

void libvlc_media_player_pause(PlayerHandle* handle) {
  if (const auto player = Player::Find(handle)) Functions().libvlc_media_player_pause(player->real());
}

void libvlc_media_player_stop(PlayerHandle* handle) {
  if (const auto player = Player::Find(handle)) player->Stop();
}

int libvlc_media_player_stop_async(PlayerHandle* handle) {
  const auto player = Player::Find(handle);
  return player ? Functions().libvlc_media_player_stop_async(player->real()) : -1;
}

bool libvlc_media_player_is_playing(PlayerHandle* handle) {
  const auto player = Player::Find(handle);
  return player && Functions().libvlc_media_player_is_playing(player->real());
}

int64_t libvlc_media_player_get_length(PlayerHandle* handle) {
  const auto player = Player::Find(handle);
  return player ? Real().beneath->toHost(Functions().libvlc_media_player_get_length(player->real())) : -1;
}

int64_t libvlc_media_player_get_time(PlayerHandle* handle) {
  const auto player = Player::Find(handle);
  return player ? Real().beneath->toHost(Functions().libvlc_media_player_get_time(player->real())) : -1;
}

int libvlc_media_player_set_time(PlayerHandle* handle, int64_t milliseconds, bool fast) {
  const auto player = Player::Find(handle);
  if (!player) return -1;
  return Functions().libvlc_media_player_set_time(player->real(), Real().beneath->toReal(milliseconds), fast);
}

void libvlc_set_fullscreen(PlayerHandle* handle, int on) {
  const auto player = Player::Find(handle);
  if (player && Functions().libvlc_set_fullscreen) Functions().libvlc_set_fullscreen(player->real(), on);
}

int libvlc_get_fullscreen(PlayerHandle* handle) {
  const auto player = Player::Find(handle);
  return player && Functions().libvlc_get_fullscreen ? Functions().libvlc_get_fullscreen(player->real()) : 0;
}

// Events. A player is its own event manager.

PlayerHandle* libvlc_media_player_event_manager(PlayerHandle* handle) {
  return Player::Find(handle) ? handle : nullptr;
}

int libvlc_event_attach(PlayerHandle* manager, int type, EventCallback callback, void* userData) {
  const auto player = Player::Find(manager);
  if (!player || !callback) return -1;
  player->events().Attach(type, callback, userData);
  return 0;
}

void libvlc_event_detach(PlayerHandle* manager, int type, EventCallback callback, void* userData) {
  if (const auto player = Player::Find(manager)) player->events().Detach(type, callback, userData);
}

// Sound.

int libvlc_audio_set_volume(PlayerHandle* handle, int volume) {
  const auto player = Player::Find(handle);
  return player ? player->sound().SetVolume(player->real(), volume) : -1;
}

int libvlc_audio_get_volume(PlayerHandle* handle) {
  const auto player = Player::Find(handle);
  return player ? player->sound().volume(player->real()) : -1;
}

void libvlc_audio_set_mute(PlayerHandle* handle, int mute) {
  if (const auto player = Player::Find(handle)) player->sound().SetMute(player->real(), mute);
}

int libvlc_audio_get_mute(PlayerHandle* handle) {
  const auto player = Player::Find(handle);
  return player ? player->sound().mute(player->real()) : -1;
}

TrackDescription* libvlc_audio_get_track_description(PlayerHandle* handle) {
  const auto player = Player::Find(handle);
  return player ? DescribeTracks(player->real(), TrackType::kAudio, &player->audioTracks()) : nullptr;
}

int libvlc_audio_set_track(PlayerHandle* handle, int track) {
  const auto player = Player::Find(handle);
  return player ? SelectTrack(player->real(), TrackType::kAudio, &player->audioTracks(), track) : -1;
}

// Video.

void libvlc_video_set_scale(PlayerHandle* handle, float scale) {
  if (const auto player = Player::Find(handle)) Functions().libvlc_video_set_scale(player->real(), scale);
}

unsigned libvlc_video_get_width(PlayerHandle* handle) { return SizeOf(handle).width; }

unsigned libvlc_video_get_height(PlayerHandle* handle) { return SizeOf(handle).height; }

TrackDescription* libvlc_video_get_spu_description(PlayerHandle* handle) {
  const auto player = Player::Find(handle);
  return player ? DescribeTracks(player->real(), TrackType::kText, &player->textTracks()) : nullptr;
}

int libvlc_video_set_spu(PlayerHandle* handle, int track) {
  const auto player = Player::Find(handle);
  return player ? SelectTrack(player->real(), TrackType::kText, &player->textTracks(), track) : -1;
}

void libvlc_track_description_list_release(TrackDescription* list) { FreeTrackDescriptions(list); }

int libvlc_video_take_snapshot(PlayerHandle* handle, unsigned number, const char* path, unsigned width,
                               unsigned height) {
  const auto player = Player::Find(handle);
  return player ? Functions().libvlc_video_take_snapshot(player->real(), number, path, width, height) : -1;
}

}  // extern "C"
