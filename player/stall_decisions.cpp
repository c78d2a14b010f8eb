#include "player/stall_decisions.h"

#include <algorithm>

namespace vantro {

void StallState::Clear() { *this = {}; }

StallVerdict JudgeStall(const StallState& state, const StallSample& sample) {
  if (!sample.hasVideo) return StallVerdict::kNoVideo;
  if (sample.audio > state.lastAudio && sample.displayed == state.lastDisplayed) return StallVerdict::kVideoWedged;
  if (sample.hasAudio && sample.displayed > state.lastDisplayed && sample.audio == state.lastAudio) {
    return StallVerdict::kAudioWedged;
  }
  return StallVerdict::kHealthy;
}

const char* WedgeReason(StallVerdict verdict) {
  switch (verdict) {
    case StallVerdict::kVideoWedged:
      return "video_wedged";
    case StallVerdict::kAudioWedged:
      return "audio_wedged";
    case StallVerdict::kNoVideo:
    case StallVerdict::kHealthy:
      break;
  }
  return "unknown";
}

bool RecordStallCheck(StallState& state, const StallSample& sample, StallVerdict verdict) {
  const bool wedged = verdict == StallVerdict::kVideoWedged || verdict == StallVerdict::kAudioWedged;
  state.stalledTicks = wedged ? state.stalledTicks + 1 : 0;
  state.lastDisplayed = sample.displayed;
  state.lastAudio = sample.audio;
  return state.stalledTicks >= kWedgeChecksBeforeDetection;
}

StallRung ClimbStallLadder(StallState& state, uint64_t now) {
  state.stalledTicks = 0;
  if (state.lastNudgeTickMs == 0 || now - state.lastNudgeTickMs >= kNudgeWindowMs) {
    state.lastNudgeTickMs = now;
    return StallRung::kNudge;
  }
  std::erase_if(state.restartTicksMs, [now](uint64_t restart) { return now - restart >= kRestartWindowMs; });
  if (state.restartTicksMs.size() >= kRestartsPerWindow) return StallRung::kGiveUp;
  state.restartTicksMs.push_back(now);
  return StallRung::kRestart;
}

std::string TileStallLabel(bool isOriginal, const std::string& name) {
  return isOriginal ? "mv_primary" : "mv_" + name;
}

bool ShouldRestorePosition(bool isLive, bool supportsTimeshift, bool inTimeshiftMode) {
  if (isLive) return supportsTimeshift && inTimeshiftMode;
  return !supportsTimeshift && !inTimeshiftMode;
}

int32_t RestartCacheMs(int32_t networkCacheMs) { return networkCacheMs > 0 ? networkCacheMs : kDefaultRestartCacheMs; }

int32_t RestartSeekMs(bool shouldRestorePosition, int64_t lastTimeMs) {
  return shouldRestorePosition ? static_cast<int32_t>(std::max<int64_t>(lastTimeMs, 0)) : 0;
}

}  // namespace vantro
