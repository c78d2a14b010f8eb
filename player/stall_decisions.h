// The stall counters of one watched player, and the decisions on them as plain functions.
//
// A player is wedged when one of its two counters does not change while the other rises, in three checks in a row. The
// cure goes up a ladder: pause and resume, then reload the media, then give up with an error to the interface.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vantro {

constexpr uint32_t kStallCheckIntervalMs = 1000;
constexpr int32_t kWedgeChecksBeforeDetection = 3;
// A detection within this time after a nudge leads to a reload.
constexpr uint64_t kNudgeWindowMs = 10000;
constexpr uint32_t kNudgePauseMs = 300;
constexpr uint64_t kRestartWindowMs = 60000;
constexpr size_t kRestartsPerWindow = 3;
constexpr int32_t kDefaultRestartCacheMs = 5000;

// Times are GetTickCount64 values in milliseconds.
struct StallState {
  int32_t lastDisplayed = 0;             // displayed-pictures counter at the last completed check
  int32_t lastAudio = 0;                 // played-audio-buffers counter at the last completed check
  int32_t stalledTicks = 0;              // consecutive checks that found a wedge
  uint64_t lastNudgeTickMs = 0;          // time of the last nudge; 0 if there was none
  std::vector<uint64_t> restartTicksMs;  // times of the restarts of the last minute, oldest first

  void Clear();
};

// The values that a check reads from libvlc.
struct StallSample {
  int32_t displayed;
  int32_t audio;
  bool hasVideo;
  bool hasAudio;
};

enum class StallVerdict {
  kNoVideo,  // counts as not wedged
  kHealthy,
  kVideoWedged,  // the sound goes on and the picture is frozen
  kAudioWedged,  // the picture goes on and the sound has stopped
};

// Compares a sample with the counters of the previous check. Does not change the state.
StallVerdict JudgeStall(const StallState& state, const StallSample& sample);

// The reason as it is logged; "unknown" for a verdict that is not a wedge.
const char* WedgeReason(StallVerdict verdict);

// Stores the sample and its verdict in the state. Returns true when enough checks in a row found a wedge.
// ClimbStallLadder then resets the count.
bool RecordStallCheck(StallState& state, const StallSample& sample, StallVerdict verdict);

enum class StallRung { kNudge, kRestart, kGiveUp };

// Returns the rung to take for a detection at the given time, and stores it in the state.
StallRung ClimbStallLadder(StallState& state, uint64_t now);

// The name of a tile in the log: "mv_primary" for the tile that took over the single view, otherwise "mv_" followed by
// its name.
std::string TileStallLabel(bool isOriginal, const std::string& name);

// Whether a reload of the single view's stream goes back to its last time. True for a recording, and for a live stream
// while the viewer uses time shift.
bool ShouldRestorePosition(bool isLive, bool supportsTimeshift, bool inTimeshiftMode);

// The network cache of a reload, in milliseconds.
int32_t RestartCacheMs(int32_t networkCacheMs);

// The time that a reload seeks to, in milliseconds; 0 means no seek.
int32_t RestartSeekMs(bool shouldRestorePosition, int64_t lastTimeMs);

}  // namespace vantro
