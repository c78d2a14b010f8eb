#include "player_registry.h"

#include <windows.h>

#include <mutex>
#include <unordered_map>
#include <utility>

#include "player.h"
#include "report.h"

namespace vantro::devlib {
namespace {

constexpr int kMaxRounds = 2000;
constexpr DWORD kRound = 5;  // milliseconds

// Never destroyed, because libvlc's threads may still run while the process ends.
struct Registry {
  std::mutex lock;
  std::unordered_map<const void*, std::shared_ptr<Player>> players;
  int closing = 0;
};
Registry& registry() {
  static Registry* const instance = new Registry;
  return *instance;
}

}  // namespace

void PlayerRegistry::Add(std::shared_ptr<Player> player) {
  std::lock_guard guard(registry().lock);
  registry().players[player.get()] = std::move(player);
}

bool PlayerRegistry::Remove(Player* player) {
  std::lock_guard guard(registry().lock);
  if (!registry().players.erase(player)) return false;
  ++registry().closing;
  return true;
}

std::shared_ptr<Player> PlayerRegistry::Find(const void* handle, const char* function) {
  {
    std::lock_guard guard(registry().lock);
    auto found = registry().players.find(handle);
    if (found != registry().players.end()) return found->second;
  }
  Misuse(function, handle ? "the player has been released" : "the player is null");
  return nullptr;
}

std::vector<std::shared_ptr<Player>> PlayerRegistry::All() {
  std::lock_guard guard(registry().lock);
  std::vector<std::shared_ptr<Player>> all;
  for (const auto& [handle, player] : registry().players) all.push_back(player);
  return all;
}

void PlayerRegistry::CountClosed() {
  std::lock_guard guard(registry().lock);
  --registry().closing;
}

bool PlayerRegistry::WaitForClosed() {
  for (int round = 0; round < kMaxRounds; ++round) {
    {
      std::lock_guard guard(registry().lock);
      if (!registry().closing) return true;
    }
    MsgWaitForMultipleObjects(0, nullptr, FALSE, kRound, QS_SENDMESSAGE);
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
  }
  return false;
}

}  // namespace vantro::devlib
