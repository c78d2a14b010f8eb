// The functions that only the variant "callbacks" has, and those that use microseconds there.
#include "exports.h"
#include "microseconds.h"

using vantro::devlib::Media;
using vantro::devlib::MediaRef;
using vantro::devlib::Microseconds;
using vantro::devlib::Milliseconds;
using vantro::devlib::PlayerCallbacks;
using vantro::devlib::PlayerRegistry;
using vantro::devlib::Variant;

EXPORTED void* devlib_callbacks_player_new(void* instance, const PlayerCallbacks* callbacks, void* opaque) {
  return vantro::devlib::NewPlayer(instance, Variant::kCallbacks, callbacks, opaque);
}

EXPORTED void* devlib_callbacks_player_new_from_media(void* instance, void* media, const PlayerCallbacks* callbacks,
                                                      void* opaque) {
  void* handle = vantro::devlib::NewPlayer(instance, Variant::kCallbacks, callbacks, opaque);
  if (!handle) return nullptr;
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_new_from_media");
  player->SetMedia(MediaRef(static_cast<Media*>(media)));
  return handle;
}

EXPORTED void devlib_callbacks_set_next_media(void* handle, void* media) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_set_next_media");
  if (player) player->SetNextMedia(MediaRef(static_cast<Media*>(media)));
}

EXPORTED int64_t devlib_callbacks_get_length(void* handle) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_get_length");
  return player ? Microseconds(player->length()) : -1;
}

EXPORTED int64_t devlib_callbacks_get_time(void* handle) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_get_time");
  return player ? Microseconds(player->time()) : -1;
}

EXPORTED int devlib_callbacks_set_time(void* handle, int64_t microseconds, bool) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_set_time");
  if (!player) return -1;
  player->SeekTo(Milliseconds(microseconds));
  return 0;
}

EXPORTED int devlib_callbacks_jump_time(void* handle, int64_t microseconds) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_jump_time");
  if (!player) return -1;
  player->SeekTo(player->time() + microseconds / 1000);
  return 0;
}
