// The stall counters of one watched player, and the decisions over them as plain functions of their arguments.
//
// A player is wedged when one of its two counters stands still while the other rises, three checks in a row. The cure
// climbs a ladder: a pause and resume, then a reload of the media, then giving up with an error to the interface.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vantro {

constexpr uint32_t kStallCheckIntervalMs = 1000;
constexpr int32_t kWedgeChecksBeforeDetection = 3;
// A detection this soon after a nudge goes on to the reload.
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
  uint64_t lastNudgeTickMs = 0;          // the last nudge, 0 for none
  std::vector<uint64_t> restartTicksMs;  // the restarts of the last minute, oldest first

  void Clear();
};

// What a check reads from libvlc.
struct StallSample {
  int32_t displayed;
  int32_t audio;
  bool hasVideo;
  bool hasAudio;
};

enum class StallVerdict {
  kNoVideo,  // never wedged
  kHealthy,
  kVideoWedged,  // sound goes on over a still picture
  kAudioWedged,  // pictures go on in silence
};

// The verdict over a sample against the counters of the check before it. Changes nothing.
StallVerdict JudgeStall(const StallState& state, const StallSample& sample);

// The reason in the log's words; "unknown" for a verdict that is no wedge.
const char* WedgeReason(StallVerdict verdict);

// Enters the sample and its verdict into the record. Returns whether a run of wedge checks is complete; the count then
// starts anew with the next check.
bool RecordStallCheck(StallState& state, const StallSample& sample, StallVerdict verdict);

enum class StallRung { kNudge, kRestart, kGiveUp };

// The rung to take for a detection at the time now, entered into the record.
StallRung ClimbStallLadder(StallState& state, uint64_t now);

// The name of a tile in the log: "mv_primary" for the tile that took over the single view, else "mv_" and its name.
std::string TileStallLabel(bool isOriginal, const std::string& name);

// Whether a reload of the single view's stream goes back to the time that it had: a recording does, and a live stream
// while the viewer is in its time shift.
bool ShouldRestorePosition(bool isLive, bool supportsTimeshift, bool inTimeshiftMode);

// The network cache of a reload.
int32_t RestartCacheMs(int32_t networkCacheMs);

// Where a reload seeks to, in milliseconds; 0 for nowhere.
int32_t RestartSeekMs(bool shouldRestorePosition, int64_t lastTimeMs);

}  // namespace vantro
