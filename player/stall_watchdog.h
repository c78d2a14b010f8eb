// Detects players whose picture or sound has frozen although they report that they play, and restarts them.
//
// Watches the single view's player or, while the grid is on, the tiles. The decisions are in player/stall_decisions.h.
//
//          Start, with a player to watch
//   Off  --------------------------------->  On: the check timer runs
//        <---------------------------------
//          Stop, or a cure that gave up
//
// Start and Stop run on any thread and never wait. If they overlap, the thread that came first carries out all of them
// in order (player/alternating_switch.h). So the watchdog always ends up either on with its timer or off without one.
// Everything else runs on the main thread, the stall records included. A Start or Stop on another thread only requests
// that they are cleared. The main thread clears them before it uses one again.
#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <string>

#include "player/alternating_switch.h"
#include "player/event_callback.h"
#include "player/multi_view_grid.h"
#include "player/pending_resumes.h"
#include "player/player_handle.h"
#include "player/stall_decisions.h"

namespace vantro {

class StallWatchdog {
 public:
  // The clock of a pass. Returns milliseconds.
  using TickSource = ULONGLONG(WINAPI*)();

  // The objects that the watchdog uses. They are borrowed and outlive it.
  struct Ground {
    UINT_PTR timerId;  // of the check timer, on the parent window
    const std::atomic<HWND>& parentWindow;
    const WatchedPlayerHandle& mediaPlayer;  // of the single view
    MultiViewGrid& grid;
    PendingResumes& resumes;
    EventCallbackSlot& eventCallback;
    std::function<void()> restartMedia;  // reloads the single view's stream
  };

  // Must be constructed on the main thread.
  explicit StallWatchdog(Ground ground) : ground_(std::move(ground)) {}
  StallWatchdog(const StallWatchdog&) = delete;
  StallWatchdog& operator=(const StallWatchdog&) = delete;

  // Start turns the watchdog on and clears its records, if there is a player to watch. Start does nothing while the
  // watchdog is on; Stop does nothing while it is off. Without a parent window the watchdog is on but never checks. A
  // stop does not cancel pending resumes. Any thread.
  void Start();
  void Stop();

  // One pass over the watched players, for the check timer. Never waits. The media is the single view's; with null, the
  // pass gets it from libvlc. Main thread.
  void RunPass(libvlc_media_t* media, TickSource clock);

 private:
  friend struct test::PlayerInspector;

  void Turn(bool on);
  void StartCheckTimer();
  void EndCheckTimer();
  void RequestStallClear();
  void ApplyStallClear();

  void CheckTileStall(const LibVlcFunctions& vlc, size_t index, TickSource clock);
  // Checks one player by its counters and takes the next rung of the ladder if it is wedged. The URL is the one that a
  // tile reloads.
  void CheckPlayerStall(libvlc_media_player_t* mediaPlayer, libvlc_media_t* media, StallState& state,
                        const std::string& label, const std::string& url, bool restorePosition, bool isPrimary,
                        TickSource clock);
  // Pauses the player and starts the timer that resumes it.
  void NudgePlayer(libvlc_media_player_t* mediaPlayer);

  const Ground ground_;
  AlternatingSwitch stallWatchdogActive_;
  std::atomic<UINT_PTR> stallTimerId_{0};  // 0 while no timer runs; only the thread that carries out a turn writes it
  StallState primaryStall_;
  const DWORD mainThreadId_ = GetCurrentThreadId();
  std::atomic<uint32_t> stallClearsAsked_{0};
  uint32_t stallClearsDone_ = 0;
};

}  // namespace vantro
