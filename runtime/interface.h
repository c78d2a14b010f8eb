// What differs between the interfaces that libvlc 4 has had. Each interface is one table of functions in one file.
// Another interface needs another file and another candidate in real_library.cpp.
#pragma once

#include <cstdint>

#include "runtime/libvlc_abi.h"
#include "runtime/real_library.h"

namespace vantro::runtime {

class Player;

struct Interface {
  const char* name;  // for the log
  const char* mark;  // a function that only this interface exports

  // Looks up the functions that only this interface has. Returns the name of the first missing one, or null. Called
  // once.
  const char* (*resolve)(Lookup find);

  // Makes a player of the real library whose events go to player->Deliver, in the host's event numbers, units and
  // order. Null when the library makes none. `player` outlives the real one.
  RealPlayer* (*newPlayer)(Instance* instance, Player* player);

  // Ends the delivery of events as far as the library offers it. Called once, before the real player is released.
  void (*endEvents)(Player* player);

  // Milliseconds of the host in the library's unit, and back. Negative values mean "unknown" and stay negative.
  int64_t (*toReal)(int64_t milliseconds);
  int64_t (*toHost)(int64_t time);
};

// libvlc 4 with event managers and milliseconds (a build of April 2024 was run).
const Interface& EventsInterface();

// libvlc 4 with callbacks at the player's creation and microseconds (written from the headers of 2026).
const Interface& CallbacksInterface();

}  // namespace vantro::runtime
