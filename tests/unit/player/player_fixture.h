// A player in a real window over the scripted library.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "player/vlc_player.h"
#include "tests/support/log_capture.h"
#include "tests/support/native_window.h"
#include "tests/support/player_inspector.h"
#include "tests/support/scripted_vlc.h"

namespace vantro::test {

// Saves the process-wide table and restores it at the end, because tests empty slots of it.
class TableGuard {
 public:
  TableGuard() : saved_(GetLibVlcFunctions()) {}
  ~TableGuard() { LibVlcFunctionTable() = saved_; }
  TableGuard(const TableGuard&) = delete;
  TableGuard& operator=(const TableGuard&) = delete;

 private:
  LibVlcFunctions saved_;
};

// The members are destroyed in reverse order: the player first, and last the library's check for live objects.
class PlayerTest : public testing::Test {
 protected:
  // Starts the player and clears the recorded calls.
  void Start() {
    ASSERT_TRUE(player_.Initialize(parent_.get()));
    vlc_.ClearCalls();
  }
  bool SetMedia(const std::string& url, int seekMs = 0) {
    return player_.SetMedia({url, "Title", 1500, seekMs, true, false, false});
  }

  TableGuard table_;
  ScriptedVlc vlc_;
  LogCapture log_;
  ParentWindow parent_{800, 600};
  VLCPlayer player_;
  PlayerInspector state_{player_};
};

// A started player. The calls of the start are not in the record.
class StartedPlayerTest : public PlayerTest {
 protected:
  void SetUp() override { Start(); }

  libvlc_media_player_t* Player() { return state_.mediaPlayer_.get(); }
  // Returns the log lines that contain the tag.
  std::vector<std::string> LinesOf(const std::string& tag) {
    std::vector<std::string> lines = log_.Lines();
    std::erase_if(lines, [&](const std::string& line) { return line.find(tag) == std::string::npos; });
    return lines;
  }
};

inline std::string PointerText(const void* pointer) {
  char text[32];
  std::snprintf(text, sizeof text, "%p", pointer);
  return text;
}

}  // namespace vantro::test
