// Notices players whose picture or sound has frozen while they report that they play, and cures them.
#include <windows.h>

#include <string>
#include <utility>

#include "common/log.h"
#include "player/stall_watchdog.h"
#include "player/vlc_player.h"

namespace vantro {

namespace {

constexpr UINT_PTR kResumeTimerMask = 0xFFFF;

UINT_PTR ResumeTimerId(libvlc_media_player_t* mediaPlayer) {
  return reinterpret_cast<UINT_PTR>(mediaPlayer) ^ kResumeTimerMask;
}

// The counters are 64 bits wide; the records compare their low halves as signed numbers.
int32_t LowHalf(uint64_t counter) { return static_cast<int32_t>(static_cast<uint32_t>(counter)); }

bool HasVideo(const LibVlcFunctions& vlc, libvlc_media_player_t* mediaPlayer) {
  return vlc.libvlc_video_get_width && vlc.libvlc_video_get_height && vlc.libvlc_video_get_width(mediaPlayer) != 0 &&
         vlc.libvlc_video_get_height(mediaPlayer) != 0;
}

// Id -1 is the entry "disable", which every player has.
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

void VLCPlayer::StartStallWatchdog() {
  if (stallWatchdogActive_) return;
  const ReaderEpochs::Reader reader(eventReaders_);
  const TileHandles* const tiles = tileHandles_.Load();
  if (!mediaPlayer_ && (!tiles || tiles->empty())) return;
  TurnStallWatchdog(true);
}

void VLCPlayer::StopStallWatchdog() { TurnStallWatchdog(false); }

void VLCPlayer::TurnStallWatchdog(bool on) {
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

void VLCPlayer::StartCheckTimer() {
  const HWND window = parentWindow_;
  if (!window) return;
  stallTimerId_ = SetTimer(window, reinterpret_cast<UINT_PTR>(this), kStallCheckIntervalMs, nullptr);
  LOG_DEBUG("[VLCPlayer] Started stall watchdog timer (id=%p)", reinterpret_cast<void*>(UINT_PTR{stallTimerId_}));
}

void VLCPlayer::EndCheckTimer() {
  const HWND window = parentWindow_;
  const UINT_PTR timerId = stallTimerId_;
  if (window && timerId != 0) {
    KillTimer(window, timerId);
    LOG_DEBUG("[VLCPlayer] Stopped stall watchdog timer (id=%p)", reinterpret_cast<void*>(timerId));
  }
  stallTimerId_ = 0;
}

void VLCPlayer::RequestStallClear() {
  stallClearsAsked_.Increment();
  if (GetCurrentThreadId() == mainThreadId_) ApplyStallClear();
}

void VLCPlayer::ApplyStallClear() {
  const uint32_t asked = stallClearsAsked_;
  if (asked == stallClearsDone_) return;
  stallClearsDone_ = asked;
  primaryStall_.Clear();
  for (MultiViewPlayer& tile : players_) tile.stall.Clear();
}

void VLCPlayer::OnStallWatchdogTick() { RunStallPass(GetTickCount64); }

void VLCPlayer::RunStallPass(TickSource clock) {
  if (!stallWatchdogActive_) return;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded || !vlc.libvlc_media_player_is_playing) return;
  ApplyStallClear();

  if (isMultiViewMode_ && !players_.empty()) {
    if (!vlc.libvlc_media_player_get_media || !vlc.libvlc_media_release) return;
    for (size_t index = 0; index < players_.size(); ++index) CheckTileStall(vlc, index, clock);
    return;
  }

  if (!mediaPlayer_) return;
  if (!vlc.libvlc_media_player_is_playing(mediaPlayer_.get())) {
    primaryStall_.stalledTicks = 0;
    return;
  }
  VlcMediaPtr asked;
  libvlc_media_t* media = media_.get();
  if (!media) {
    if (!vlc.libvlc_media_player_get_media) return;
    asked.reset(vlc.libvlc_media_player_get_media(mediaPlayer_.get()));
    media = asked.get();
    if (!media) return;
  }
  const std::string url = RestartUrl();
  CheckPlayerStall(mediaPlayer_.get(), media, primaryStall_, "primary", url, true, true, clock);
}

void VLCPlayer::CheckTileStall(const LibVlcFunctions& vlc, size_t index, TickSource clock) {
  MultiViewPlayer& tile = players_[index];
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

void VLCPlayer::CheckPlayerStall(libvlc_media_player_t* mediaPlayer, libvlc_media_t* media, StallState& state,
                                 const std::string& label, const std::string& url, bool restorePosition, bool isPrimary,
                                 TickSource clock) {
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
      StopStallWatchdog();
      eventCallback_("onError", "Playback issue detected. Please try again.");
      break;
    case StallRung::kRestart:
      LOG_INFO("[StallDetector] %s wedge persisted after cheap nudge – restarting media", label.c_str());
      if (isPrimary) {
        RestartMediaPreservingTime();
      } else {
        RestartTile(mediaPlayer, url, restorePosition);
      }
      break;
  }
}

void VLCPlayer::RestartTile(libvlc_media_player_t* mediaPlayer, const std::string& url, bool restorePosition) {
  if (url.empty()) return;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded || !vlc.libvlc_media_player_stop || !vlc.libvlc_media_player_set_media ||
      !vlc.libvlc_media_player_play) {
    return;
  }
  libvlc_time_t time = 0;
  if (restorePosition && vlc.libvlc_media_player_get_time) time = vlc.libvlc_media_player_get_time(mediaPlayer);
  vlc.libvlc_media_player_stop(mediaPlayer);
  OpenOnTile(vlc, mediaPlayer, url);
  vlc.libvlc_media_player_play(mediaPlayer);
  if (restorePosition && vlc.libvlc_media_player_set_time && time > 0) {
    vlc.libvlc_media_player_set_time(mediaPlayer, time, false);
  }
}

void VLCPlayer::NudgePlayer(libvlc_media_player_t* mediaPlayer) {
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded || !vlc.libvlc_media_player_pause || !vlc.libvlc_media_player_play) return;
  vlc.libvlc_media_player_pause(mediaPlayer);
  const HWND window = parentWindow_;
  if (!window) return;
  const UINT_PTR timerId = ResumeTimerId(mediaPlayer);
  nudgeTimers_[timerId] = mediaPlayer;
  SetTimer(window, timerId, kNudgePauseMs, nullptr);
}

bool VLCPlayer::HandleStallNudgeTimer(UINT_PTR timerId) {
  const auto pending = nudgeTimers_.find(timerId);
  if (pending == nudgeTimers_.end()) return false;
  libvlc_media_player_t* const mediaPlayer = pending->second;
  nudgeTimers_.erase(pending);
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (vlc.loaded && vlc.libvlc_media_player_play && mediaPlayer) vlc.libvlc_media_player_play(mediaPlayer);
  if (const HWND window = parentWindow_) KillTimer(window, timerId);
  return true;
}

void VLCPlayer::ForgetPendingResume(libvlc_media_player_t* mediaPlayer) {
  const UINT_PTR timerId = ResumeTimerId(mediaPlayer);
  if (nudgeTimers_.erase(timerId) == 0) return;
  // A timer of this window is periodic: without its entry nobody would ever end it.
  if (const HWND window = parentWindow_) KillTimer(window, timerId);
}

void VLCPlayer::RestartMediaPreservingTime() {
  if (!mediaPlayer_) return;
  const std::string url = RestartUrl();
  if (url.empty()) {
    LOG_WARNING("[StallDetector] RestartMediaPreservingTime aborted – missing URL");
    return;
  }
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded || !vlc.libvlc_media_player_get_time) return;
  const libvlc_time_t lastTime = vlc.libvlc_media_player_get_time(mediaPlayer_.get());
  MediaRequest request = current_;
  request.url = url;
  const bool shouldRestorePosition =
      ShouldRestorePosition(request.isLive, request.supportsTimeshift, request.inTimeshiftMode);
  LOG_INFO(
      "[StallDetector] Restarting media (isLive=%d, supportsTimeshift=%d, inTimeshiftMode=%d, "
      "shouldRestorePosition=%d) lastTime=%lldms URL=%s",
      request.isLive, request.supportsTimeshift, request.inTimeshiftMode, shouldRestorePosition,
      static_cast<long long>(lastTime), url.c_str());
  request.networkCacheMs = RestartCacheMs(request.networkCacheMs);
  request.initialSeekPositionMs = RestartSeekMs(shouldRestorePosition, lastTime);
  SetMedia(std::move(request));
}

}  // namespace vantro
