// The players of the process, found by the program's handles.
#pragma once

#include <memory>
#include <vector>

namespace vantro::devlib {

class Player;

class PlayerRegistry {
 public:
  static void Add(std::shared_ptr<Player> player);
  // Returns false if it was not registered.
  static bool Remove(Player* player);
  // Returns the player of a handle, null for a released one. The warning then names `function`.
  static std::shared_ptr<Player> Find(const void* handle, const char* function);
  static std::vector<std::shared_ptr<Player>> All();

  // Reports that a removed player has released libvlc. Any thread.
  static void CountClosed();
  // Waits until every removed player has released libvlc, for at most some seconds, and handles messages sent to the
  // calling thread meanwhile. Returns false on timeout. Windows threads only.
  static bool WaitForClosed();
};

}  // namespace vantro::devlib
