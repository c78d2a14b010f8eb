// The functions of libvlc 4 that both variants have: instance, media, and the player functions without a time argument.
#include "exports.h"

#include <vlc/vlc.h>

#include <string>

#include "meter_log.h"
#include "paths.h"
#include "times_log.h"

using vantro::devlib::AsMedia;
using vantro::devlib::Instance;
using vantro::devlib::Media;
using vantro::devlib::MediaRef;
using vantro::devlib::Misuse;
using vantro::devlib::Player;
using vantro::devlib::PlayerRegistry;

void* vantro::devlib::NewPlayer(void* instance, Variant variant, const PlayerCallbacks* callbacks, void* opaque) {
  if (!instance) return nullptr;
  StartMeterLog();
  std::shared_ptr<Player> player = Player::Create(static_cast<Instance*>(instance), variant, callbacks, opaque);
  if (!player) return nullptr;
  PlayerRegistry::Add(player);
  return player.get();
}

// --- Instance -----------------------------------------------------------------------------------------------------

EXPORTED void* devlib_new(int count, const char* const* arguments) { return Instance::Create(count, arguments); }

EXPORTED void devlib_release(void* instance) {
  if (!instance) return;
  if (!PlayerRegistry::WaitForClosed()) vantro::devlib::Warn("a released player has not ended yet");
  static_cast<Instance*>(instance)->Release();
}

EXPORTED const char* devlib_errmsg() { return libvlc_errmsg(); }

EXPORTED const char* devlib_get_version() {
  static const std::string* const version =
      new std::string(std::string("4.0.0 (development library over libvlc ") + libvlc_get_version() + ")");
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

EXPORTED void* devlib_media_retain(void* media) {
  if (Media* object = AsMedia(media, "libvlc_media_retain")) object->Retain();
  return media;
}

EXPORTED void devlib_media_release(void* media) {
  if (media) static_cast<Media*>(media)->Release();
}

EXPORTED bool devlib_media_get_stats(void* media, vantro::devlib::MediaStats* stats) {
  Media* object = AsMedia(media, "libvlc_media_get_stats");
  return object && object->GetStats(stats);
}

// --- Player -------------------------------------------------------------------------------------------------------

EXPORTED void* devlib_media_player_retain(void* handle) {
  if (auto player = PlayerRegistry::Find(handle, "libvlc_media_player_retain")) player->Retain();
  return handle;
}

// Must not be called from the player's own callbacks.
EXPORTED void devlib_media_player_release(void* handle) {
  if (!handle) return;
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_release");
  if (!player || !player->DropReference()) return;
  if (player->InOwnCallback()) Misuse("libvlc_media_player_release", "inside a callback of the same player");
  player->Close();
}

EXPORTED void devlib_media_player_set_hwnd(void* handle, void* window) {
  if (auto player = PlayerRegistry::Find(handle, "libvlc_media_player_set_hwnd")) player->canvas().SetWindow(window);
}

EXPORTED void devlib_media_player_set_media(void* handle, void* media) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_set_media");
  if (player) player->SetMedia(MediaRef(static_cast<Media*>(media)));
}

EXPORTED void* devlib_media_player_get_media(void* handle) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_get_media");
  if (!player) return nullptr;
  MediaRef media = player->media();
  if (media) media->Retain();
  return media.get();
}

EXPORTED int devlib_media_player_play(void* handle) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_play");
  return player && player->Play() ? 0 : -1;
}

EXPORTED void devlib_media_player_pause(void* handle) {
  if (auto player = PlayerRegistry::Find(handle, "libvlc_media_player_pause")) player->Pause();
}

EXPORTED int devlib_media_player_stop_async(void* handle) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_stop_async");
  return player && player->Stop() ? 0 : vantro::devlib::kNothingToStop;
}

EXPORTED bool devlib_media_player_is_playing(void* handle) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_is_playing");
  return player && player->playing();
}

EXPORTED int devlib_media_player_get_state(void* handle) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_get_state");
  return static_cast<int>(player ? player->state() : vantro::devlib::State::kNothingSpecial);
}

// --- Video --------------------------------------------------------------------------------------------------------

EXPORTED void devlib_video_set_scale(void* handle, float scale) {
  if (auto player = PlayerRegistry::Find(handle, "libvlc_video_set_scale")) player->canvas().SetScale(scale);
}

// A player has one video, so any other number is not found.
EXPORTED int devlib_video_get_size(void* handle, unsigned number, unsigned* width, unsigned* height) {
  auto player = PlayerRegistry::Find(handle, "libvlc_video_get_size");
  vantro::devlib::PictureSize size = player && number == 0 ? player->VideoSize() : vantro::devlib::PictureSize{};
  if (!size.width || !size.height) return -1;
  *width = size.width;
  *height = size.height;
  return 0;
}

EXPORTED int devlib_video_take_snapshot(void* handle, unsigned number, const char* path, unsigned width,
                                        unsigned height) {
  auto player = PlayerRegistry::Find(handle, "libvlc_video_take_snapshot");
  if (!player || !path) return -1;
  return player->TakeSnapshot(number, vantro::devlib::UnixPath(path), width, height) ? 0 : -1;
}

// The window belongs to the program, which decides its size. The flag is only kept.
EXPORTED void devlib_set_fullscreen(void* handle, int on) {
  if (auto player = PlayerRegistry::Find(handle, "libvlc_set_fullscreen")) player->canvas().SetFullscreen(on != 0);
}

EXPORTED int devlib_get_fullscreen(void* handle) {
  auto player = PlayerRegistry::Find(handle, "libvlc_get_fullscreen");
  return player && player->canvas().fullscreen();
}
