// Gives tests and benchmarks the private state of a player and its parts, under the original names.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "player/vlc_player.h"

namespace vantro::test {

struct PlayerInspector {
  explicit PlayerInspector(VLCPlayer& player)
      : player_(player),
        eventReaders_(player.eventReaders_),
        eventCallback_(player.eventCallback_),
        vlcInstance_(player.instance_.vlcInstance_),
        mediaPlayer_(player.mediaPlayer_),
        media_(player.media_),
        eventManager_(player.eventManager_),
        parentWindow_(player.parentWindow_),
        vlcWindow_(player.vlcWindow_),
        overlayWindow_(player.overlayWindow_),
        volume_(player.volume_),
        current_(player.current_),
        fallbackUrl_(player.fallbackUrl_),
        userAgent_(player.userAgent_),
        suppressStoppedEvent_(player.suppressStoppedEvent_),
        nudgeTimers_(player.resumes_.nudgeTimers_),
        isMultiViewMode_(player.grid_.isMultiViewMode_),
        players_(player.grid_.players_),
        activeIndex_(player.grid_.activeIndex_),
        stallWatchdogActive_(player.watchdog_.stallWatchdogActive_),
        stallTimerId_(player.watchdog_.stallTimerId_),
        primaryStall_(player.watchdog_.primaryStall_) {}

  // Runs a pass of the watchdog at the clock's time.
  void RunStallPass(StallWatchdog::TickSource clock) { player_.watchdog_.RunPass(player_.media_.get(), clock); }
  // Whether the events find a tile. Does not allocate.
  bool HasTiles() { return player_.grid_.HasTiles(); }
  void NudgePlayer(libvlc_media_player_t* mediaPlayer) { player_.watchdog_.NudgePlayer(mediaPlayer); }
  void AttachEventsToPlayer(libvlc_media_player_t* mediaPlayer) {
    player_.grid_.maker_.AttachEventsToPlayer(mediaPlayer);
  }
  void DestroyPlayerWindow(MultiViewPlayer& record) { TileMaker::DestroyPlayerWindow(record); }

  VLCPlayer& player_;
  ReaderEpochs& eventReaders_;
  EventCallbackSlot& eventCallback_;
  VlcInstancePtr& vlcInstance_;
  WatchedPlayerHandle& mediaPlayer_;
  VlcMediaPtr& media_;
  libvlc_event_manager_t*& eventManager_;
  std::atomic<HWND>& parentWindow_;
  HWND& vlcWindow_;
  HWND& overlayWindow_;
  int& volume_;
  MediaRequest& current_;
  std::string& fallbackUrl_;
  std::string& userAgent_;
  std::atomic<bool>& suppressStoppedEvent_;
  std::unordered_map<UINT_PTR, libvlc_media_player_t*>& nudgeTimers_;
  std::atomic<bool>& isMultiViewMode_;
  std::vector<MultiViewPlayer>& players_;
  int& activeIndex_;
  AlternatingSwitch& stallWatchdogActive_;
  std::atomic<UINT_PTR>& stallTimerId_;
  StallState& primaryStall_;
};

}  // namespace vantro::test
