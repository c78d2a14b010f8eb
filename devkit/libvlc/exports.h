// Shared by the files of exported functions. The .spec files map each function to its name in libvlc. Each function
// only finds the object of its handle and calls it. All may be called on any thread of the program, callbacks included,
// unless a comment says otherwise.
#pragma once

#include <memory>

#include "instance.h"
#include "libvlc4_abi.h"
#include "media.h"
#include "player.h"
#include "player_registry.h"
#include "report.h"

#define EXPORTED extern "C" VANTRO_MS_ABI __attribute__((visibility("default")))

namespace vantro::devlib {

inline Media* AsMedia(void* handle, const char* function) {
  if (!handle) Misuse(function, "the media is null");
  return static_cast<Media*>(handle);
}

// Returns a new player's handle, null on failure.
void* NewPlayer(void* instance, Variant variant, const PlayerCallbacks* callbacks, void* opaque);

}  // namespace vantro::devlib
