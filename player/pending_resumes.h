// The players that a nudge has paused, and the timers that play them again.
#pragma once

#include <windows.h>

#include <atomic>
#include <unordered_map>

#include "player/libvlc_api.h"

namespace vantro::test {
struct PlayerInspector;
}

namespace vantro {

// The timers run on the player's parent window; without one nothing is armed. Main thread.
class PendingResumes {
 public:
  explicit PendingResumes(const std::atomic<HWND>& parentWindow) : parentWindow_(parentWindow) {}
  PendingResumes(const PendingResumes&) = delete;
  PendingResumes& operator=(const PendingResumes&) = delete;

  // Arms the timer of the player's resume; an armed one starts over.
  void Arm(libvlc_media_player_t* mediaPlayer);
  // Plays the player of this timer and ends the timer. False when the id is no pending resume.
  bool Resume(UINT_PTR timerId);
  // Ends the resume of a player that is about to be released, if one is pending.
  void Forget(libvlc_media_player_t* mediaPlayer);

 private:
  friend struct test::PlayerInspector;

  const std::atomic<HWND>& parentWindow_;
  std::unordered_map<UINT_PTR, libvlc_media_player_t*> nudgeTimers_;
};

}  // namespace vantro
