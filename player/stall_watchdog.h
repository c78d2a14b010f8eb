// Notices players whose picture or sound has frozen while they report that they play, and cures them.
//
// Watches the single view's player, or the tiles while the grid is on. The decisions are in player/stall_decisions.h.
//
//          Start, with a player to watch
//   Off  --------------------------------->  On: the check timer runs
//        <---------------------------------
//          Stop, or a cure that gave up
//
// Start and Stop run on any thread and never wait. When they meet, the thread that came first carries them out in turn
// (player/alternating_switch.h), so that the watchdog ends on with its timer or off without. Everything else runs on
// the main thread. So do the stall records: a start or stop on another thread asks for their clearing, which the main
// thread does before it uses a record again.
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
  // The clock of a pass, in milliseconds.
  using TickSource = ULONGLONG(WINAPI*)();

  // What the watchdog works on: borrowed, and outlives it.
  struct Ground {
    UINT_PTR timerId;  // of the check timer, on the parent window
    const std::atomic<HWND>& parentWindow;
    const WatchedPlayerHandle& mediaPlayer;  // of the single view
    MultiViewGrid& grid;
    PendingResumes& resumes;
    EventCallbackSlot& eventCallback;
    std::function<void()> restartMedia;  // reloads the single view's stream
  };

  // Made on the main thread.
  explicit StallWatchdog(Ground ground) : ground_(std::move(ground)) {}
  StallWatchdog(const StallWatchdog&) = delete;
  StallWatchdog& operator=(const StallWatchdog&) = delete;

  // Turns the watchdog on, with clean records, if there is a player to watch. While it is on a start changes nothing,
  // while it is off a stop changes nothing. Without a parent window it is on but never checks. Resumes that are pending
  // survive a stop. Any thread.
  void Start();
  void Stop();

  // One pass over the watched players, for the check timer. Never waits. The media is the single view's, or null.
  void RunPass(libvlc_media_t* media, TickSource clock);

 private:
  friend struct test::PlayerInspector;

  void Turn(bool on);
  void StartCheckTimer();
  void EndCheckTimer();
  void RequestStallClear();
  void ApplyStallClear();

  void CheckTileStall(const LibVlcFunctions& vlc, size_t index, TickSource clock);
  // Judges one player by its counters and takes the rung of the ladder that is due. The URL is what a tile reloads.
  void CheckPlayerStall(libvlc_media_player_t* mediaPlayer, libvlc_media_t* media, StallState& state,
                        const std::string& label, const std::string& url, bool restorePosition, bool isPrimary,
                        TickSource clock);
  // Pauses the player and arms the timer of its resume.
  void NudgePlayer(libvlc_media_player_t* mediaPlayer);

  const Ground ground_;
  AlternatingSwitch stallWatchdogActive_;
  std::atomic<UINT_PTR> stallTimerId_{0};  // 0 while no timer runs; written by the thread that carries out a turn
  StallState primaryStall_;
  const DWORD mainThreadId_ = GetCurrentThreadId();
  std::atomic<uint32_t> stallClearsAsked_{0};
  uint32_t stallClearsDone_ = 0;
};

}  // namespace vantro
