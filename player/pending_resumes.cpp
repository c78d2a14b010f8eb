#include "player/pending_resumes.h"

#include "player/libvlc_functions.h"
#include "player/stall_decisions.h"

namespace vantro {

namespace {

constexpr UINT_PTR kResumeTimerMask = 0xFFFF;

UINT_PTR ResumeTimerId(libvlc_media_player_t* mediaPlayer) {
  return reinterpret_cast<UINT_PTR>(mediaPlayer) ^ kResumeTimerMask;
}

}  // namespace

void PendingResumes::Arm(libvlc_media_player_t* mediaPlayer) {
  const HWND window = parentWindow_.load(std::memory_order_relaxed);
  if (!window) return;
  const UINT_PTR timerId = ResumeTimerId(mediaPlayer);
  nudgeTimers_[timerId] = mediaPlayer;
  SetTimer(window, timerId, kNudgePauseMs, nullptr);
}

bool PendingResumes::Resume(UINT_PTR timerId) {
  const auto pending = nudgeTimers_.find(timerId);
  if (pending == nudgeTimers_.end()) return false;
  libvlc_media_player_t* const mediaPlayer = pending->second;
  nudgeTimers_.erase(pending);
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (vlc.loaded && vlc.libvlc_media_player_play && mediaPlayer) vlc.libvlc_media_player_play(mediaPlayer);
  if (const HWND window = parentWindow_.load(std::memory_order_relaxed)) KillTimer(window, timerId);
  return true;
}

void PendingResumes::Forget(libvlc_media_player_t* mediaPlayer) {
  const UINT_PTR timerId = ResumeTimerId(mediaPlayer);
  if (nudgeTimers_.erase(timerId) == 0) return;
  // The timer is periodic. Without its entry in the map nothing else would end it.
  if (const HWND window = parentWindow_.load(std::memory_order_relaxed)) KillTimer(window, timerId);
}

}  // namespace vantro
