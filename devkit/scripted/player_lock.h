// The lock of a player. As in libvlc, a thread holds it while it delivers an event of the player, and most calls on the
// player take it. A call that can never get the lock hangs. In strict mode it ends the process.
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
  // Takes the lock. In strict mode a wait without end aborts the process and prints the text of the call.
  void LockFor(const std::string& call);

 private:
  std::recursive_timed_mutex mutex_;
};

// Marks the calling thread as delivering an event of the player, for the life of the object.
class DeliveryScope {
 public:
  explicit DeliveryScope(const libvlc_media_player_t* player);
  ~DeliveryScope();
  DeliveryScope(const DeliveryScope&) = delete;
  DeliveryScope& operator=(const DeliveryScope&) = delete;

 private:
  const libvlc_media_player_t* outer_;  // the player of the enclosing event, or null
};

// Returns whether a call of the function from this thread takes the lock of the player that it is called on.
bool TakesPlayerLock(const std::string& function, const libvlc_media_player_t* player);
// Stops a call of the function that could deadlock in the event that the calling thread delivers: the call hangs, or
// aborts the process in strict mode. Returns for all other calls, and for all calls outside of an event.
void CheckCallInEvent(const std::string& function, const libvlc_media_player_t* player, const std::string& call);

// Strict mode: a deadlock prints the call on standard error and aborts. VANTRO_SCRIPTED_STRICT=1 also switches it on.
void SetStrict(bool strict);

}  // namespace scripted
