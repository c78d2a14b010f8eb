#include "player/stall_watchdog.h"

#include <windows.h>

#include <string>

#include "common/log.h"
#include "player/stall_decisions.h"

namespace vantro {

namespace {

// The counters are 64 bits wide. The checks compare their low halves as signed numbers.
int32_t LowHalf(uint64_t counter) { return static_cast<int32_t>(static_cast<uint32_t>(counter)); }

bool HasVideo(const LibVlcFunctions& vlc, libvlc_media_player_t* mediaPlayer) {
  return vlc.libvlc_video_get_width && vlc.libvlc_video_get_height && vlc.libvlc_video_get_width(mediaPlayer) != 0 &&
         vlc.libvlc_video_get_height(mediaPlayer) != 0;
}

// Every player has an entry "disable" with id -1, which is not an audio track.
bool HasAudio(const LibVlcFunctions& vlc, libvlc_media_player_t* mediaPlayer) {
  if (!vlc.libvlc_audio_get_track_description || !vlc.libvlc_track_description_list_release) return false;
  libvlc_track_description_t* const tracks = vlc.libvlc_audio_get_track_description(mediaPlayer);
  bool found = false;
  for (const libvlc_track_description_t* track = tracks; track && !found; track = track->next) found = track->id >= 0;
  vlc.libvlc_track_description_list_release(tracks);
  return found;
}

void LogVerdict(const std::string& label, StallVerdict verdict, const StallSample& sample, int32_t ticksBefore,
                int32_t ticks) {
  if (verdict == StallVerdict::kNoVideo) {
    if (ticksBefore > 0) LOG_DEBUG("[StallDetector] %s wedge reset (no video track)", label.c_str());
  } else if (verdict == StallVerdict::kHealthy) {
    if (ticksBefore > 0) {
      LOG_DEBUG("[StallDetector] %s wedge reset (displayed=%d, audio=%d)", label.c_str(), sample.displayed,
                sample.audio);
    }
  } else {
    LOG_DEBUG("[StallDetector] %s wedge tick (%s): displayed=%d audio=%d stalledTicks=%d", label.c_str(),
              WedgeReason(verdict), sample.displayed, sample.audio, ticks);
  }
}

}  // namespace

void StallWatchdog::Start() {
  if (stallWatchdogActive_ || (!ground_.mediaPlayer && !ground_.grid.HasTiles())) return;
  Turn(true);
}

void StallWatchdog::Stop() { Turn(false); }

void StallWatchdog::Turn(bool on) {
  const AlternatingSwitch::Turn turn = stallWatchdogActive_.TurnTo(on);
  if (turn == AlternatingSwitch::Turn::kNone) return;
  RequestStallClear();
  if (turn == AlternatingSwitch::Turn::kByAnother) return;
  stallWatchdogActive_.CarryOutTurns(on, [this](bool start) {
    if (start) {
      StartCheckTimer();
    } else {
      EndCheckTimer();
    }
  });
}

void StallWatchdog::StartCheckTimer() {
  const HWND window = ground_.parentWindow.load(std::memory_order_relaxed);
  if (!window) return;
  const UINT_PTR timerId = SetTimer(window, ground_.timerId, kStallCheckIntervalMs, nullptr);
  stallTimerId_.store(timerId, std::memory_order_relaxed);
  LOG_DEBUG("[VLCPlayer] Started stall watchdog timer (id=%p)", reinterpret_cast<void*>(timerId));
}

void StallWatchdog::EndCheckTimer() {
  const HWND window = ground_.parentWindow.load(std::memory_order_relaxed);
  const UINT_PTR timerId = stallTimerId_.load(std::memory_order_relaxed);
  if (window && timerId != 0) {
    KillTimer(window, timerId);
    LOG_DEBUG("[VLCPlayer] Stopped stall watchdog timer (id=%p)", reinterpret_cast<void*>(timerId));
  }
  stallTimerId_.store(0, std::memory_order_relaxed);
}

void StallWatchdog::RequestStallClear() {
  stallClearsAsked_.fetch_add(1, std::memory_order_relaxed);
  if (GetCurrentThreadId() == mainThreadId_) ApplyStallClear();
}

void StallWatchdog::ApplyStallClear() {
  const uint32_t asked = stallClearsAsked_.load(std::memory_order_relaxed);
  if (asked == stallClearsDone_) return;
  stallClearsDone_ = asked;
  primaryStall_.Clear();
  for (MultiViewPlayer& tile : ground_.grid.Tiles()) tile.stall.Clear();
}

void StallWatchdog::RunPass(libvlc_media_t* media, TickSource clock) {
  if (!stallWatchdogActive_) return;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded || !vlc.libvlc_media_player_is_playing) return;

  if (ground_.grid.IsOn() && !ground_.grid.Tiles().empty()) {
    if (!vlc.libvlc_media_player_get_media || !vlc.libvlc_media_release) return;
    for (size_t index = 0; index < ground_.grid.Tiles().size(); ++index) CheckTileStall(vlc, index, clock);
    return;
  }

  libvlc_media_player_t* const mediaPlayer = ground_.mediaPlayer.get();
  if (!mediaPlayer) return;
  if (!vlc.libvlc_media_player_is_playing(mediaPlayer)) {
    primaryStall_.stalledTicks = 0;
    return;
  }
  VlcMediaPtr asked;
  if (!media) {
    if (!vlc.libvlc_media_player_get_media) return;
    asked.reset(vlc.libvlc_media_player_get_media(mediaPlayer));
    media = asked.get();
    if (!media) return;
  }
  CheckPlayerStall(mediaPlayer, media, primaryStall_, "primary", "", true, true, clock);
}

void StallWatchdog::CheckTileStall(const LibVlcFunctions& vlc, size_t index, TickSource clock) {
  MultiViewPlayer& tile = ground_.grid.Tiles()[index];
  if (!tile.mediaPlayer) return;
  if (!vlc.libvlc_media_player_is_playing(tile.mediaPlayer.get())) {
    tile.stall.stalledTicks = 0;
    return;
  }
  const VlcMediaPtr media(vlc.libvlc_media_player_get_media(tile.mediaPlayer.get()));
  if (!media) return;
  CheckPlayerStall(tile.mediaPlayer.get(), media.get(), tile.stall, TileStallLabel(tile.isOriginal, tile.name),
                   tile.url, tile.isOriginal, false, clock);
}

void StallWatchdog::CheckPlayerStall(libvlc_media_player_t* mediaPlayer, libvlc_media_t* media, StallState& state,
                                     const std::string& label, const std::string& url, bool restorePosition,
                                     bool isPrimary, TickSource clock) {
  ApplyStallClear();
  libvlc_media_stats_t stats{};
  if (!libvlc_media_get_stats(media, &stats)) return;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) return;
  const StallSample sample{LowHalf(stats.i_displayed_pictures), LowHalf(stats.i_played_abuffers),
                           HasVideo(vlc, mediaPlayer), HasAudio(vlc, mediaPlayer)};

  const int32_t ticksBefore = state.stalledTicks;
  const StallVerdict verdict = JudgeStall(state, sample);
  const bool detected = RecordStallCheck(state, sample, verdict);
  LogVerdict(label, verdict, sample, ticksBefore, state.stalledTicks);
  if (!detected) return;

  LOG_INFO("[StallDetector] %s wedge detected (%s) after %d ticks", label.c_str(), WedgeReason(verdict),
           state.stalledTicks);
  switch (ClimbStallLadder(state, clock())) {
    case StallRung::kNudge:
      LOG_INFO("[StallDetector] %s wedge detected – performing cheap pause/resume nudge", label.c_str());
      NudgePlayer(mediaPlayer);
      break;
    case StallRung::kGiveUp:
      LOG_WARNING("[StallDetector] %s restart budget exceeded – disabling stall watchdog", label.c_str());
      Stop();
      ground_.eventCallback("onError", "Playback issue detected. Please try again.");
      break;
    case StallRung::kRestart:
      LOG_INFO("[StallDetector] %s wedge persisted after cheap nudge – restarting media", label.c_str());
      if (isPrimary) {
        ground_.restartMedia();
      } else {
        ground_.grid.RestartTile(mediaPlayer, url, restorePosition);
      }
      break;
  }
}

void StallWatchdog::NudgePlayer(libvlc_media_player_t* mediaPlayer) {
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded || !vlc.libvlc_media_player_pause || !vlc.libvlc_media_player_play) return;
  vlc.libvlc_media_player_pause(mediaPlayer);
  ground_.resumes.Arm(mediaPlayer);
}

}  // namespace vantro
