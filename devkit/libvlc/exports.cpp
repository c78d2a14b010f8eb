// The functions of libvlc 4 by the names under which the .spec files export them. Each only finds the object behind its
// handle and calls it; every one may be called on any thread of the program.
#include <vlc/vlc.h>

#include <cstring>

#include "instance.h"
#include "libvlc4_abi.h"
#include "media.h"
#include "meter_log.h"
#include "paths.h"
#include "player.h"
#include "report.h"
#include "times_log.h"

#define EXPORTED extern "C" VANTRO_MS_ABI __attribute__((visibility("default")))

namespace {

using vantro::devlib::Event;
using vantro::devlib::EventCallback;
using vantro::devlib::Instance;
using vantro::devlib::Media;
using vantro::devlib::MediaRef;
using vantro::devlib::MediaStats;
using vantro::devlib::Misuse;
using vantro::devlib::PictureSize;
using vantro::devlib::Player;
using vantro::devlib::Trace;
using vantro::devlib::Warn;

constexpr char kInsideCallback[] = "inside an event callback of the same player, where the real library deadlocks";

// The player, for a function that must not be called from the player's own events.
std::shared_ptr<Player> FindOutsideCallback(void* handle, const char* function) {
  std::shared_ptr<Player> player = Player::Find(handle, function);
  if (player && player->events().OnDeliveryThread()) Misuse(function, kInsideCallback);
  return player;
}

Media* AsMedia(void* handle, const char* function) {
  if (!handle) Misuse(function, "the media is null");
  return static_cast<Media*>(handle);
}

}  // namespace

// --- Instance -----------------------------------------------------------------------------------------------------

EXPORTED void* devlib_new(int count, const char* const* arguments) { return Instance::Create(count, arguments); }

EXPORTED void devlib_release(void* instance) {
  if (!instance) return;
  if (!Player::WaitForClosed()) Warn("a released player has not ended yet");
  static_cast<Instance*>(instance)->Release();
}

EXPORTED const char* devlib_errmsg() { return libvlc_errmsg(); }

EXPORTED const char* devlib_get_version() {
  static const std::string* const version =
      new std::string(std::string("4.0.0 (development library) over ") + libvlc_get_version());
  return version->c_str();
}

EXPORTED unsigned devlib_abi_version() { return vantro::devlib::kAbiVersion; }

// --- Media --------------------------------------------------------------------------------------------------------

EXPORTED void* devlib_media_new_location(const char* location) {
  if (!location) return nullptr;
  vantro::devlib::LogTime("media_new", nullptr);
  std::string path;
  if (vantro::devlib::WindowsPathOfFileUrl(location, &path)) {
    return new Media(Media::Kind::kPath, vantro::devlib::UnixPath(path));
  }
  return new Media(Media::Kind::kLocation, location);
}

EXPORTED void* devlib_media_new_path(const char* path) {
  return path ? new Media(Media::Kind::kPath, vantro::devlib::UnixPath(path)) : nullptr;
}

EXPORTED void devlib_media_add_option(void* media, const char* option) {
  if (Media* object = AsMedia(media, "libvlc_media_add_option")) object->AddOption(option);
}

EXPORTED void devlib_media_release(void* media) {
  if (media) static_cast<Media*>(media)->Release();
}

EXPORTED bool devlib_media_get_stats(void* media, MediaStats* stats) {
  Media* object = AsMedia(media, "libvlc_media_get_stats");
  return object && object->GetStats(stats);
}

// --- Player -------------------------------------------------------------------------------------------------------

EXPORTED void* devlib_media_player_new(void* instance) {
  if (!instance) return nullptr;
  vantro::devlib::StartMeterLog();
  return Player::Create(static_cast<Instance*>(instance)).get();
}

EXPORTED void devlib_media_player_release(void* handle) {
  if (!handle) return;
  if (auto player = FindOutsideCallback(handle, "libvlc_media_player_release")) player->Close();
}

EXPORTED void devlib_media_player_set_hwnd(void* handle, void* window) {
  if (auto player = Player::Find(handle, "libvlc_media_player_set_hwnd")) player->canvas().SetWindow(window);
}

EXPORTED void* devlib_media_player_event_manager(void* handle) {
  auto player = Player::Find(handle, "libvlc_media_player_event_manager");
  return player ? handle : nullptr;
}

EXPORTED void devlib_media_player_set_media(void* handle, void* media) {
  auto player = FindOutsideCallback(handle, "libvlc_media_player_set_media");
  if (player) player->SetMedia(MediaRef(static_cast<Media*>(media)));
}

EXPORTED void* devlib_media_player_get_media(void* handle) {
  auto player = Player::Find(handle, "libvlc_media_player_get_media");
  if (!player) return nullptr;
  MediaRef media = player->media();
  if (media) media->Retain();
  return media.get();
}

EXPORTED int devlib_media_player_play(void* handle) {
  auto player = Player::Find(handle, "libvlc_media_player_play");
  if (!player || !player->media()) return -1;
  player->Play();
  return 0;
}

EXPORTED void devlib_media_player_pause(void* handle) {
  if (auto player = Player::Find(handle, "libvlc_media_player_pause")) player->Pause();
}

EXPORTED void devlib_media_player_stop(void* handle) {
  if (auto player = FindOutsideCallback(handle, "libvlc_media_player_stop")) player->Stop();
}

EXPORTED int devlib_media_player_stop_async(void* handle) {
  auto player = FindOutsideCallback(handle, "libvlc_media_player_stop_async");
  return player && player->StopAsync() ? 0 : -1;
}

EXPORTED bool devlib_media_player_is_playing(void* handle) {
  auto player = Player::Find(handle, "libvlc_media_player_is_playing");
  return player && player->playing();
}

EXPORTED int64_t devlib_media_player_get_length(void* handle) {
  auto player = Player::Find(handle, "libvlc_media_player_get_length");
  return player ? player->length() : -1;
}

EXPORTED int64_t devlib_media_player_get_time(void* handle) {
  auto player = Player::Find(handle, "libvlc_media_player_get_time");
  return player ? player->time() : -1;
}

// libvlc 3 always seeks exactly, so `fast` changes nothing.
EXPORTED int devlib_media_player_set_time(void* handle, int64_t milliseconds, bool) {
  auto player = FindOutsideCallback(handle, "libvlc_media_player_set_time");
  if (!player) return -1;
  player->SeekTo(milliseconds);
  return 0;
}

// --- Events -------------------------------------------------------------------------------------------------------

EXPORTED int devlib_event_attach(void* manager, int type, EventCallback callback, void* userData) {
  auto player = Player::Find(manager, "libvlc_event_attach");
  return player ? player->events().Attach(type, callback, userData) : -1;
}

EXPORTED void devlib_event_detach(void* manager, int type, EventCallback callback, void* userData) {
  if (auto player = Player::Find(manager, "libvlc_event_detach")) player->events().Detach(type, callback, userData);
}

// --- Audio --------------------------------------------------------------------------------------------------------

EXPORTED int devlib_audio_set_volume(void* handle, int volume) {
  auto player = Player::Find(handle, "libvlc_audio_set_volume");
  return player && player->audio().SetVolume(volume) ? 0 : -1;
}

EXPORTED int devlib_audio_get_volume(void* handle) {
  auto player = Player::Find(handle, "libvlc_audio_get_volume");
  return player ? player->audio().volume() : -1;
}

EXPORTED void devlib_audio_set_mute(void* handle, int mute) {
  if (auto player = Player::Find(handle, "libvlc_audio_set_mute")) player->audio().SetMute(mute != 0);
}

EXPORTED int devlib_audio_get_mute(void* handle) {
  auto player = Player::Find(handle, "libvlc_audio_get_mute");
  return player ? player->audio().mute() : -1;
}

// The list has the same layout in both versions, so it goes through as it is.
EXPORTED void* devlib_audio_get_track_description(void* handle) {
  auto player = Player::Find(handle, "libvlc_audio_get_track_description");
  return player ? libvlc_audio_get_track_description(player->native()) : nullptr;
}

EXPORTED int devlib_audio_set_track(void* handle, int track) {
  auto player = Player::Find(handle, "libvlc_audio_set_track");
  return player ? libvlc_audio_set_track(player->native(), track) : -1;
}

EXPORTED void devlib_track_description_list_release(void* list) {
  libvlc_track_description_list_release(static_cast<libvlc_track_description_t*>(list));
}

// --- Video --------------------------------------------------------------------------------------------------------

EXPORTED void devlib_video_set_scale(void* handle, float scale) {
  if (auto player = Player::Find(handle, "libvlc_video_set_scale")) player->canvas().SetScale(scale);
}

EXPORTED unsigned devlib_video_get_width(void* handle) {
  auto player = Player::Find(handle, "libvlc_video_get_width");
  MediaRef media = player ? player->media() : nullptr;
  return media ? media->VideoSize().width : 0;
}

EXPORTED unsigned devlib_video_get_height(void* handle) {
  auto player = Player::Find(handle, "libvlc_video_get_height");
  MediaRef media = player ? player->media() : nullptr;
  return media ? media->VideoSize().height : 0;
}

// The rectangle is in the coordinates of the window's parent, and the picture always fits its own window: there is
// nothing left to do.
EXPORTED void devlib_video_set_viewport(void* handle, int x, int y, int width, int height) {
  if (Player::Find(handle, "libvlc_video_set_viewport")) {
    Trace("viewport of player %p: %d,%d %dx%d", handle, x, y, width, height);
  }
}

EXPORTED void* devlib_video_get_spu_description(void* handle) {
  auto player = Player::Find(handle, "libvlc_video_get_spu_description");
  return player ? libvlc_video_get_spu_description(player->native()) : nullptr;
}

EXPORTED int devlib_video_set_spu(void* handle, int track) {
  auto player = Player::Find(handle, "libvlc_video_set_spu");
  return player ? libvlc_video_set_spu(player->native(), track) : -1;
}

EXPORTED int devlib_video_take_snapshot(void* handle, unsigned number, const char* path, unsigned width,
                                        unsigned height) {
  auto player = Player::Find(handle, "libvlc_video_take_snapshot");
  if (!player || !path) return -1;
  return libvlc_video_take_snapshot(player->native(), number, vantro::devlib::UnixPath(path).c_str(), width, height);
}

// The window is the program's, and so is its size: the flag is kept and nothing else happens.
EXPORTED void devlib_set_fullscreen(void* handle, int on) {
  if (auto player = Player::Find(handle, "libvlc_set_fullscreen")) libvlc_set_fullscreen(player->native(), on);
}

EXPORTED int devlib_get_fullscreen(void* handle) {
  auto player = Player::Find(handle, "libvlc_get_fullscreen");
  return player ? libvlc_get_fullscreen(player->native()) : 0;
}
