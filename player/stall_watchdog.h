// The stall counters of one watched player, and the decisions over them as plain functions.
#pragma once

#include <cstdint>
#include <vector>

namespace vantro {

struct StallState {
  int32_t lastDisplayed = 0;             // displayed-pictures counter at the last completed check
  int32_t lastAudio = 0;                 // played-audio-buffers counter at the last completed check
  int32_t stalledTicks = 0;              // consecutive checks that found a wedge
  uint64_t lastNudgeTickMs = 0;          // GetTickCount64 of the last nudge, 0 for none
  std::vector<uint64_t> restartTicksMs;  // GetTickCount64 of the restarts of the last minute, oldest first

  void Clear();
};

}  // namespace vantro
