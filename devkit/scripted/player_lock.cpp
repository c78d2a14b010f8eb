#include "devkit/scripted/player_lock.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace scripted {

namespace {

// Longer than any callback of a test, except for one that never returns.
constexpr std::chrono::seconds kLongestWait{3};

thread_local const libvlc_media_player_t* playerInEvent = nullptr;

// What happens to a call inside an event of the same player, and inside an event of another player.
enum class OwnEvent { kReturns, kDeadlocks };
enum class OtherEvent { kWithoutLock, kCouldDeadlock };

struct LockedFunction {
  const char* name;
  OwnEvent own = OwnEvent::kReturns;
  OtherEvent other = OtherEvent::kCouldDeadlock;
};

// All functions that take the player's lock. The others use only the video or audio output, or no player.
constexpr LockedFunction kLockedFunctions[] = {
    {"libvlc_media_player_release", OwnEvent::kDeadlocks},
    // Waits for the Stopped event, which the waiting thread would have to deliver.
    {"libvlc_media_player_stop", OwnEvent::kDeadlocks},
    {"libvlc_media_player_stop_async"},
    {"libvlc_media_player_play"},
    {"libvlc_media_player_pause"},
    {"libvlc_media_player_is_playing"},
    {"libvlc_media_player_get_length"},
    {"libvlc_media_player_get_time"},
    {"libvlc_media_player_set_time"},
    {"libvlc_media_player_get_media"},
    {"libvlc_media_player_set_media"},
    {"libvlc_audio_get_track_description"},
    {"libvlc_audio_set_track"},
    {"libvlc_video_get_spu_description"},
    {"libvlc_video_set_spu"},
    {"libvlc_video_take_snapshot"},
    // Inside another player's event the runtime adapter returns the last known values of these.
    {"libvlc_video_get_width", OwnEvent::kReturns, OtherEvent::kWithoutLock},
    {"libvlc_video_get_height", OwnEvent::kReturns, OtherEvent::kWithoutLock},
};

const LockedFunction* FindLocked(const std::string& function) {
  const auto found = std::find_if(std::begin(kLockedFunctions), std::end(kLockedFunctions),
                                  [&](const LockedFunction& locked) { return function == locked.name; });
  return found == std::end(kLockedFunctions) ? nullptr : found;
}

std::atomic<bool>& Strict() {
  static std::atomic<bool> strict{std::getenv("VANTRO_SCRIPTED_STRICT") != nullptr};
  return strict;
}

[[noreturn]] void Abort(const std::string& call, const char* why) {
  std::fprintf(stderr, "scripted libvlc: DEADLOCK: %s %s\n", call.c_str(), why);
  std::fflush(stderr);
  std::abort();
}

[[noreturn]] void Hang() {
  for (;;) Sleep(INFINITE);
}

}  // namespace

void SetStrict(bool strict) { Strict() = strict; }

void DeliveryLock::LockFor(const std::string& call) {
  if (mutex_.try_lock_for(kLongestWait)) return;
  if (Strict()) Abort(call, "waits for a callback that doesn't return");
  mutex_.lock();
}

DeliveryScope::DeliveryScope(const libvlc_media_player_t* player) : outer_(std::exchange(playerInEvent, player)) {}

DeliveryScope::~DeliveryScope() { playerInEvent = outer_; }

bool TakesPlayerLock(const std::string& function, const libvlc_media_player_t* player) {
  const LockedFunction* const locked = FindLocked(function);
  if (!locked) return false;
  return !playerInEvent || playerInEvent == player || locked->other != OtherEvent::kWithoutLock;
}

void CheckCallInEvent(const std::string& function, const libvlc_media_player_t* player, const std::string& call) {
  const LockedFunction* const locked = FindLocked(function);
  if (!locked || !playerInEvent) return;
  if (playerInEvent == player) {
    if (locked->own == OwnEvent::kReturns) return;
    if (Strict()) Abort(call, "waits inside an event of the same player");
    Hang();
  }
  // Two events that call each other's player would deadlock. Strict mode reports this even if the timing avoids it.
  if (Strict() && locked->other == OtherEvent::kCouldDeadlock)
    Abort(call, "takes the player's lock inside an event of another player");
}

}  // namespace scripted
