// The player of one top-level window: everything that is done with libvlc, single view and grid.
//
// Main thread, unless an operation says otherwise. libvlc calls VlcEventCallback on threads of its own.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "player/libvlc_api.h"
#include "player/libvlc_functions.h"
#include "player/multi_view_player.h"
#include "player/stall_watchdog.h"

namespace vantro {

class VLCPlayer {
 public:
  using EventCallback = std::function<void(const char* name, const char* argument)>;

  VLCPlayer() = default;
  ~VLCPlayer();
  VLCPlayer(const VLCPlayer&) = delete;
  VLCPlayer& operator=(const VLCPlayer&) = delete;

  // Start-up and end (vlc_player_startup.cpp).
  bool Initialize(HWND parentWindow);
  void Cleanup();

  // Media and transport (vlc_player_transport.cpp).
  libvlc_media_t* CreateMedia(const std::string& url);
  bool SetMedia(std::string url, const std::string& title, int networkCacheMs, int initialSeekPositionMs, bool isLive,
                bool supportsTimeshift, bool inTimeshiftMode);
  void Play();
  void Pause();
  bool IsPlaying();
  void StopInternal(bool suppress);
  void SetVolume(int volume);
  bool SeekTo(int64_t milliseconds);
  void Resize(int x, int y, int width, int height);
  void EnsureZOrder();
  void RefreshSpuTracks();
  void RefreshAudioTracks();

  // Events (vlc_player_events.cpp). On libvlc's threads.
  static void VlcEventCallback(const libvlc_event_t* event, void* userData);
  void ProcessVLCEvent(const libvlc_event_t* event);

  // Stall watchdog (vlc_player_watchdog.cpp). Start and Stop also run on libvlc's threads.
  void StartStallWatchdog();
  void StopStallWatchdog();
  void OnStallWatchdogTick();
  bool HandleStallNudgeTimer(UINT_PTR timerId);
  void RestartMediaPreservingTime();
  void CheckPlayerStall(libvlc_media_player_t* mediaPlayer, libvlc_media_t* media, StallState& state,
                        const std::string& label, const std::string& url, bool restorePosition, bool isPrimary);
  void NudgePlayer(libvlc_media_player_t* mediaPlayer);

  // Multi-view session (vlc_player_multiview.cpp).
  bool EnableMultiView();
  bool DisableMultiView();
  bool MvAddStream(const std::string& url, const std::string& name);
  bool MvReplaceActive(const std::string& url, const std::string& name);
  bool MvRemoveActive();
  bool MvSwapTiles(int from, int to);
  bool MvPromoteActiveAndExit();
  void SetActiveIndexSafe(int index);
  void DestroyPlayerWindow(MultiViewPlayer& record);
  void AttachEventsToPlayer(libvlc_media_player_t* player);

  // Multi-view layout and audio (vlc_player_layout.cpp). UpdateMultiViewScaling also runs on libvlc's threads.
  void UpdateGridLayout();
  void UpdateMultiViewScaling();
  void UpdateActiveAudio();
  float FitVideoScale(libvlc_media_player_t* player, int width, int height);
  void SetVideoScale(libvlc_media_player_t* player, float scale);

  // State, read by the channel's handlers and by the window.
  VlcInstancePtr vlcInstance_;
  VlcMediaPlayerPtr mediaPlayer_;  // empty while the grid is on: its tile holds the handle
  VlcMediaPtr media_;              // set last; null until the first SetMedia
  libvlc_event_manager_t* eventManager_ = nullptr;
  HWND parentWindow_ = nullptr;
  HWND vlcWindow_ = nullptr;
  HWND overlayWindow_ = nullptr;  // read by EnsureZOrder; nothing assigns it
  int volume_ = 100;
  bool stallWatchdogActive_ = false;
  UINT_PTR stallTimerId_ = 0;
  StallState primaryStall_;
  std::string currentUrl_;
  std::string currentTitle_;
  std::string fallbackUrl_;  // read where currentUrl_ is empty; nothing assigns it
  std::string userAgent_;    // written by setUserAgent, read by nothing
  int networkCacheMs_ = 5000;
  bool isLive_ = true;
  bool supportsTimeshift_ = false;
  bool inTimeshiftMode_ = false;
  EventCallback eventCallback_;
  bool suppressStoppedEvent_ = false;
  std::unordered_map<UINT_PTR, libvlc_media_player_t*> nudgeTimers_;
  bool isMultiViewMode_ = false;
  std::vector<MultiViewPlayer> players_;
  int activeIndex_ = 0;
};

}  // namespace vantro
