// The owning handle of the single view's player.
#pragma once

#include <atomic>
#include <utility>

#include "player/libvlc_api.h"

namespace vantro {

// Like VlcMediaPlayerPtr, but another thread may read it while the main thread sets it. The handle becomes empty before
// its player is released.
class WatchedPlayerHandle {
 public:
  WatchedPlayerHandle() = default;
  ~WatchedPlayerHandle() { reset(); }
  WatchedPlayerHandle(const WatchedPlayerHandle&) = delete;
  WatchedPlayerHandle& operator=(const WatchedPlayerHandle&) = delete;
  WatchedPlayerHandle& operator=(VlcMediaPlayerPtr player) {
    reset(player.release());
    return *this;
  }

  // Any thread.
  libvlc_media_player_t* get() const { return player_.load(std::memory_order_relaxed); }
  explicit operator bool() const { return get() != nullptr; }

  // Main thread.
  void reset(libvlc_media_player_t* player = nullptr) { VlcMediaPlayerPtr old(Exchange(player)); }
  libvlc_media_player_t* release() { return Exchange(nullptr); }

 private:
  libvlc_media_player_t* Exchange(libvlc_media_player_t* player) {
    return player_.exchange(player, std::memory_order_relaxed);
  }

  std::atomic<libvlc_media_player_t*> player_{nullptr};
};

}  // namespace vantro
