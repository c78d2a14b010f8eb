// The wait of a synchronous stop.
#pragma once

#include <windows.h>

#include <functional>

namespace vantro::runtime {

// No stop waits longer, in milliseconds.
inline constexpr ULONGLONG kLongestStop = 5000;

// How long a player that was just started may read as stopped before its stop counts as done, in milliseconds.
inline constexpr ULONGLONG kQuietStart = 250;

// Waits until `done` returns true, for kLongestStop at most; returns whether it did. Meanwhile messages that other
// threads *send* to windows of the calling thread are served, because libvlc's threads send some while they close a
// picture. Posted messages stay in the queue, in their order. `done` is called at once, whenever `wake` is set, and
// every few milliseconds.
bool WaitServingSentMessages(HANDLE wake, const std::function<bool()>& done);

// Marks the calling thread as one of libvlc's for the life of the object: it is inside an event of the player.
class LibvlcThreadScope {
 public:
  explicit LibvlcThreadScope(const void* player);
  ~LibvlcThreadScope();
  LibvlcThreadScope(const LibvlcThreadScope&) = delete;
  LibvlcThreadScope& operator=(const LibvlcThreadScope&) = delete;

 private:
  const void* outer_;  // the player whose event encloses this one, or null
};

// True inside an event of any player. A wait for libvlc would never end there.
bool OnLibvlcThread();

// True inside an event of another player, whose lock the thread holds. Taking this player's lock could deadlock there:
// another thread may be inside an event of this player and wait for the other lock.
bool InEventOfAnother(const void* player);

}  // namespace vantro::runtime
