// A player whose events are recorded, with helpers that start a grid of several streams.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "tests/unit/player/player_fixture.h"

namespace vantro::test {

constexpr int kPlaying = 0x104;
constexpr int kMediaChanged = 0x100;
constexpr int kPaused = 0x105;
constexpr int kStopped = 0x106;

// Records the events that reach the interface, as "name" or "name:argument". Thread-safe.
class RecordedEvents {
 public:
  EventCallback Callback() {
    return [this](const char* name, const char* argument) {
      const std::lock_guard<std::mutex> lock(mutex_);
      events_.push_back(*argument ? std::string(name) + ":" + argument : name);
    };
  }
  std::vector<std::string> Take() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return std::move(events_);
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> events_;
};

class GridTest : public PlayerTest {
 protected:
  ~GridTest() override { state_.eventCallback_ = nullptr; }

  void StartWithEvents() {
    Start();
    state_.eventCallback_ = events_.Callback();
  }
  // Starts a grid with the given number of tiles. The first is the stream of the single view. The others play
  // "http://host/1" and so on, with the names "Tile 1" and so on.
  void StartGrid(int tiles) {
    StartWithEvents();
    ASSERT_TRUE(SetMedia("http://host/0"));
    ASSERT_TRUE(player_.EnableMultiView());
    for (int index = 1; index < tiles; ++index) ASSERT_TRUE(Add(index));
    vlc_.ClearCalls();
  }
  bool Add(int index) {
    return player_.MvAddStream("http://host/" + std::to_string(index), "Tile " + std::to_string(index));
  }
  MultiViewPlayer& Tile(int index) { return state_.players_.at(static_cast<size_t>(index)); }
  libvlc_media_player_t* TilePlayer(int index) { return Tile(index).mediaPlayer.get(); }
  std::vector<std::string> Urls() {
    std::vector<std::string> urls;
    for (const MultiViewPlayer& tile : state_.players_) urls.push_back(tile.url);
    return urls;
  }

  RecordedEvents events_;
};

}  // namespace vantro::test
