// What the files of exported functions share. A function's name here is the one in the .spec files, which give it the
// name that a program knows. Each only finds the object behind its handle and calls it; every one may be called on any
// thread of the program, callbacks included unless something else is said.
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

// A new player's handle, null on failure.
void* NewPlayer(void* instance, Guise guise, const PlayerCallbacks* callbacks, void* opaque);

}  // namespace vantro::devlib
