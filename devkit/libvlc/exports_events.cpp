// The functions that only the variant "events" has, and those that use milliseconds there.
#include "exports.h"

using vantro::devlib::EventCallback;
using vantro::devlib::PlayerRegistry;
using vantro::devlib::Variant;

EXPORTED void* devlib_events_player_new(void* instance) {
  return vantro::devlib::NewPlayer(instance, Variant::kEvents, nullptr, nullptr);
}

EXPORTED void* devlib_media_player_event_manager(void* handle) {
  return PlayerRegistry::Find(handle, "libvlc_media_player_event_manager") ? handle : nullptr;
}

EXPORTED int devlib_event_attach(void* manager, int type, EventCallback callback, void* userData) {
  auto player = PlayerRegistry::Find(manager, "libvlc_event_attach");
  return player ? player->listeners().Attach(type, callback, userData) : -1;
}

EXPORTED void devlib_event_detach(void* manager, int type, EventCallback callback, void* userData) {
  if (auto player = PlayerRegistry::Find(manager, "libvlc_event_detach")) {
    player->listeners().Detach(type, callback, userData);
  }
}

EXPORTED int64_t devlib_events_get_length(void* handle) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_get_length");
  return player ? player->length() : -1;
}

EXPORTED int64_t devlib_events_get_time(void* handle) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_get_time");
  return player ? player->time() : -1;
}

// libvlc 3 always seeks exactly, so `fast` has no effect.
EXPORTED int devlib_events_set_time(void* handle, int64_t milliseconds, bool) {
  auto player = PlayerRegistry::Find(handle, "libvlc_media_player_set_time");
  if (!player) return -1;
  player->SeekTo(milliseconds);
  return 0;
}
