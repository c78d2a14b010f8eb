// The lock of a player. As in libvlc, a thread that delivers an event of the player holds it meanwhile, and most calls
// on the player take it. A call that can never get it hangs, or ends the process in strict mode.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>

struct libvlc_media_player_t;

namespace scripted {

// Recursive: a callback may call back into its own player.
class DeliveryLock {
 public:
  void lock() { mutex_.lock(); }
  void unlock() { mutex_.unlock(); }
  // Takes the lock for the call of this text, which strict mode names if the wait has no end.
  void LockFor(const std::string& call);

 private:
  std::recursive_timed_mutex mutex_;
};

// Marks the calling thread as one that delivers an event of the player, for the life of the object.
class DeliveryScope {
 public:
  explicit DeliveryScope(const libvlc_media_player_t* player);
  ~DeliveryScope();
  DeliveryScope(const DeliveryScope&) = delete;
  DeliveryScope& operator=(const DeliveryScope&) = delete;

 private:
  const libvlc_media_player_t* outer_;  // whose event encloses this one, or null
};

// Whether the function takes the lock of the player that it is called on, from the calling thread.
bool TakesPlayerLock(const std::string& function, const libvlc_media_player_t* player);
// Ends a call of the function on the player that could deadlock inside the event that the calling thread delivers.
// Returns from all other calls, and from all outside of events.
void CheckCallInEvent(const std::string& function, const libvlc_media_player_t* player, const std::string& call);

// Strict mode: a deadlock prints the call on standard error and aborts. Also on with VANTRO_SCRIPTED_STRICT=1.
void SetStrict(bool strict);

}  // namespace scripted
