// The players of the process, by the handle that a program holds.
#pragma once

#include <memory>
#include <vector>

namespace vantro::devlib {

class Player;

class PlayerRegistry {
 public:
  static void Add(std::shared_ptr<Player> player);
  // False if it was not there.
  static bool Remove(Player* player);
  // The player behind a handle, null for one that was released. `function` is named in the warning then.
  static std::shared_ptr<Player> Find(const void* handle, const char* function);
  static std::vector<std::shared_ptr<Player>> All();

  // A removed player has let go of libvlc. Any thread.
  static void CountClosed();
  // Waits until every removed player has, for at most some seconds, and serves the messages that are sent to the
  // calling thread meanwhile: false if that was not enough. Windows threads only.
  static bool WaitForClosed();
};

}  // namespace vantro::devlib
