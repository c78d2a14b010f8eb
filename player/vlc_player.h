// The player of one top-level window. It contains the single view, the grid and the stall watchdog.
//
// Main thread, except VlcEventCallback and everything that it calls. libvlc calls it on its own threads, without a
// lock, and these threads never wait for the main thread. They share three things: relaxed atomics, each consistent by
// itself but not with the others; the watchdog's switch; and data that the main thread publishes, and releases only
// when the events in progress have ended (player/reader_epochs.h). No event may follow the release of its player.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <utility>

#include "common/measures.h"
#include "player/event_callback.h"
#include "player/libvlc_api.h"
#include "player/media_request.h"
#include "player/multi_view_grid.h"
#include "player/pending_resumes.h"
#include "player/player_events.h"
#include "player/player_handle.h"
#include "player/reader_epochs.h"
#include "player/sent_messages.h"
#include "player/stall_watchdog.h"
#include "player/vlc_instance.h"

namespace vantro {

class VLCPlayer {
 public:
  VLCPlayer() = default;
  ~VLCPlayer();
  VLCPlayer(const VLCPlayer&) = delete;
  VLCPlayer& operator=(const VLCPlayer&) = delete;

  // Makes the video's child window in the given window, the libvlc instance and the player, and attaches the events.
  // Events may arrive from then on. The window is borrowed and must outlive the player's timers. If libvlc cannot be
  // used, returns false and logs the reason; the operations below then do nothing. If the child window cannot be made,
  // the video goes into the given window. If the window class cannot be registered, libvlc gets no window.
  bool Initialize(HWND parentWindow);
  // Undoes Initialize. May be called twice. Waits for the events in progress, so an event must not call it. The volume
  // and the last request are kept.
  void Cleanup();
  HWND ParentWindow() const { return parentWindow_.load(std::memory_order_relaxed); }

  // Media and transport of the single view (vlc_player_transport.cpp) and its window (vlc_player_window.cpp). Each
  // operation does nothing without a player, and logs an error if the library cannot be used. If the library lacks a
  // function, the step that needs it is silently skipped.
  // Stops the stream without telling the interface, and plays the requested one. If the media cannot be played, returns
  // false and logs the reason. If the media cannot be made, the stream is stopped and no media is set.
  bool SetMedia(MediaRequest request);
  // Whether a media is set. A SetMedia that cannot make its media leaves none set.
  bool HasMedia() const { return media_ != nullptr; }
  libvlc_media_t* CreateMedia(const std::string& url) { return instance_.CreateMedia(url); }
  // Plays the media that is set. If libvlc then reports the player as muted or at volume 0, it is unmuted and set to
  // 100, whatever volume was requested.
  void Play();
  void Pause();  // or resumes a paused player
  bool IsPlaying();
  // Stops the stream and the watchdog. With suppress, the interface gets no stopped event. The media stays set. If the
  // library has no synchronous stop, only the watchdog stops; the stream ends with the next media.
  void StopInternal(bool suppress);
  // Percent, passed to libvlc unchanged. It is remembered even if libvlc refuses it or there is no player.
  void SetVolume(int volume);
  // Returns false without a player or without the library's function. The result of libvlc is ignored.
  bool SeekTo(int64_t milliseconds);
  // Milliseconds as libvlc reports them; 0 without a player or without the function.
  int64_t GetPosition();
  int64_t GetDuration();
  // Moves the video's window; client pixels of the parent. While the grid is on, lays out the grid instead.
  void Resize(int x, int y, int width, int height);
  void EnsureZOrder();
  // Read the track list and send the interface an event without the entries.
  void RefreshSpuTracks();
  void RefreshAudioTracks();
  // Choose a track by libvlc's id. The result of libvlc is ignored.
  void SetSpuTrack(int id);
  void SetAudioTrack(int id);
  void SetUserAgent(std::string userAgent) { userAgent_ = std::move(userAgent); }  // nothing reads it

  // Sets the callable that receives the events. Returns when no thread uses the previous callable any more. The
  // callable must not call this.
  void SetEventCallback(EventCallback callback) { eventCallback_ = std::move(callback); }
  // Events (vlc_player_events.cpp). On libvlc's threads. Must not wait for the main thread, and may call only those
  // libvlc functions that libvlc allows in a callback. The user data is the VLCPlayer; null is ignored.
  static void VlcEventCallback(const libvlc_event_t* event, void* userData);
  // Sends the event to the interface, then performs its effect (player/player_events.h), whichever player sent it.
  void ProcessVLCEvent(const libvlc_event_t* event);

  // Stall watchdog (player/stall_watchdog.h). OnStallWatchdogTick serves the timer whose id is this object's address.
  void StartStallWatchdog() { watchdog_.Start(); }
  void StopStallWatchdog() { watchdog_.Stop(); }
  void OnStallWatchdogTick() { watchdog_.RunPass(media_.get(), GetTickCount64); }
  bool HandleStallNudgeTimer(UINT_PTR timerId) { return resumes_.Resume(timerId); }
  // Reloads the single view's stream, and seeks to its last time if ShouldRestorePosition returns true.
  void RestartMediaPreservingTime();

  // Grid (player/multi_view_grid.h). The first two always return true. The end of a grid sets the volume to 100.
  bool EnableMultiView();
  bool DisableMultiView();
  bool MvAddStream(const std::string& url, const std::string& name) { return grid_.AddStream(url, name); }
  bool MvReplaceActive(const std::string& url, const std::string& name) { return grid_.ReplaceActive(url, name); }
  bool MvRemoveActive() { return grid_.RemoveActive(); }
  bool MvSwapTiles(int from, int to) { return grid_.SwapTiles(from, to); }
  // Opens the active tile's URL in the single view and turns the grid off. A later restart still uses the URL of the
  // last SetMedia. Returns false if the grid does not allow it.
  bool MvPromoteActiveAndExit() { return grid_.OpenActiveInOriginal() && DisableMultiView(); }
  void SetActiveIndexSafe(int index) { grid_.SetActiveIndexSafe(index); }
  void UpdateGridLayout() { grid_.UpdateGridLayout(); }
  void UpdateMultiViewScaling() { grid_.UpdateMultiViewScaling(); }
  void UpdateActiveAudio() { grid_.UpdateActiveAudio(); }
  bool IsMultiViewMode() const { return grid_.IsOn(); }

 private:
  friend struct test::PlayerInspector;

  void CreateVideoWindow();
  bool CreateMediaPlayer(const LibVlcFunctions& vlc);
  void AttachEvents(const LibVlcFunctions& vlc);
  void DetachEvents(const LibVlcFunctions& vlc);
  void Perform(EventEffect effect);
  const std::string& RestartUrl() const { return current_.url.empty() ? fallbackUrl_ : current_.url; }

  ReaderEpochs eventReaders_{ServeSentMessages};  // the events in progress
  EventCallbackSlot eventCallback_{eventReaders_};

  // The single view.
  VlcInstance instance_;
  WatchedPlayerHandle mediaPlayer_;  // empty while the grid is on, whose tile then owns the player
  VlcMediaPtr media_;                // the last one set, or null
  libvlc_event_manager_t* eventManager_ = nullptr;
  std::atomic<HWND> parentWindow_{nullptr};
  HWND vlcWindow_ = nullptr;
  HWND overlayWindow_ = nullptr;  // read by EnsureZOrder; nothing assigns it
  int volume_ = kFullVolume;      // the last one requested
  MediaRequest current_;          // the last one set
  std::string fallbackUrl_;       // used if current_ has no URL; nothing assigns it
  std::string userAgent_;
  std::atomic<bool> suppressStoppedEvent_{false};  // drops the next stopped event

  // Each of these may use those declared before it.
  PendingResumes resumes_{parentWindow_};
  MultiViewGrid grid_{instance_, parentWindow_, eventReaders_, resumes_, {VlcEventCallback, this}};
  StallWatchdog watchdog_{{reinterpret_cast<UINT_PTR>(this), parentWindow_, mediaPlayer_, grid_, resumes_,
                           eventCallback_, [this] { RestartMediaPreservingTime(); }}};
};

}  // namespace vantro
