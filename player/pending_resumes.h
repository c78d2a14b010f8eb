// The players that a nudge has paused, and the timers that resume them.
#pragma once

#include <windows.h>

#include <atomic>
#include <unordered_map>

#include "player/libvlc_api.h"

namespace vantro::test {
struct PlayerInspector;
}

namespace vantro {

// The timers run on the player's parent window. Without a parent window no timer is set. Main thread.
class PendingResumes {
 public:
  explicit PendingResumes(const std::atomic<HWND>& parentWindow) : parentWindow_(parentWindow) {}
  PendingResumes(const PendingResumes&) = delete;
  PendingResumes& operator=(const PendingResumes&) = delete;

  // Starts the timer that resumes the player. If the timer is running, it starts again.
  void Arm(libvlc_media_player_t* mediaPlayer);
  // Resumes the player of this timer and ends the timer. Returns false if no pending resume has this id.
  bool Resume(UINT_PTR timerId);
  // Cancels the pending resume, if any, of a player that is about to be released.
  void Forget(libvlc_media_player_t* mediaPlayer);

 private:
  friend struct test::PlayerInspector;

  const std::atomic<HWND>& parentWindow_;
  std::unordered_map<UINT_PTR, libvlc_media_player_t*> nudgeTimers_;
};

}  // namespace vantro
