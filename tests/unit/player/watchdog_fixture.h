// A player whose streams the test can wedge. The test sets the counters and the time, and runs the checks.
#pragma once

#include <windows.h>

#include <cstdint>

#include "tests/unit/player/grid_fixture.h"

namespace vantro::test {

inline ULONGLONG fakeNow = 0;  // ms
inline ULONGLONG WINAPI FakeClock() { return fakeNow; }

class WatchdogTest : public GridTest {
 protected:
  WatchdogTest() { fakeNow = 1'000'000; }

  void StartSingle() {
    StartWithEvents();
    ASSERT_TRUE(SetMedia("http://host/0"));
    Watchable(vlc_.Player());
    vlc_.ClearCalls();
  }
  // Makes the player play a picture and sound, so that the watchdog compares its counters.
  void Watchable(libvlc_media_player_t* player) {
    vlc_.SetPlaying(player, true);
    vlc_.SetSize(player, 640, 360);
    vlc_.SetAudioTracks(player, {{-1, "Disable"}, {0, "Sound"}});
  }
  void Pass() {
    fakeNow += 1000;
    state_.RunStallPass(FakeClock);
  }
  // Sets the counters of every media.
  void SetCounters(uint64_t displayed, uint64_t audio) { vlc_.SetStats(nullptr, displayed, audio); }
  // A pass in which the sound has advanced and the picture has not.
  void WedgedPass() {
    audio_ += 40;
    SetCounters(displayed_, audio_);
    Pass();
  }
  void WedgedPasses(int count) {
    for (int i = 0; i < count; ++i) WedgedPass();
  }
  void HealthyPass() {
    displayed_ += 25;
    audio_ += 40;
    SetCounters(displayed_, audio_);
    Pass();
  }
  bool HasTimer(UINT_PTR id) { return KillTimer(parent_.get(), id) != FALSE; }
  UINT_PTR CheckTimerId() { return reinterpret_cast<UINT_PTR>(&player_); }
  static UINT_PTR ResumeTimerId(const void* player) { return reinterpret_cast<UINT_PTR>(player) ^ 0xFFFF; }

  uint64_t displayed_ = 0;
  uint64_t audio_ = 0;
};

}  // namespace vantro::test
