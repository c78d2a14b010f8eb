// The player of one top-level window, and the front of its rooms: single view, grid and stall watchdog.
//
// Main thread, but for VlcEventCallback and what it brings about: libvlc calls it on threads of its own, without a lock
// and without waiting for the main thread. What these threads share with the main thread are relaxed atomics, whole but
// not in step with one another; the watchdog's switch; and data that the main thread publishes and releases only when
// the events that are being handled have ended (player/reader_epochs.h). An event that libvlc is about to deliver while
// the player is destroyed is libvlc's to stop: releasing a player ends its events.
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

  // Makes the video's child window in the given one, the libvlc instance and the player, and attaches the events, which
  // may fire from then on. The window is borrowed and must outlive the player's timers. False, with the reason in the
  // log, when libvlc can't be used; the operations below then find no player and do nothing. Without a child window the
  // video goes into the given one, which is no failure.
  bool Initialize(HWND parentWindow);
  // Ends what Initialize began; safe to call twice. Waits for the events that are being handled, so it must not be
  // called from one. The volume and the last request stay.
  void Cleanup();
  HWND ParentWindow() const { return parentWindow_.load(std::memory_order_relaxed); }

  // Media and transport of the single view (vlc_player_transport.cpp) and its window (vlc_player_window.cpp). Each does
  // nothing without a player, and logs an error when the library can't be used; a function that the library lacks makes
  // its step a silent no-op.
  //
  // Stops the stream, unseen by the interface, and plays the requested one in its place. False, with the reason in the
  // log, when the media can't be played: a media that could not be made leaves the player stopped and without any.
  bool SetMedia(MediaRequest request);
  // Whether a media is set: from the first SetMedia that made one.
  bool HasMedia() const { return media_ != nullptr; }
  libvlc_media_t* CreateMedia(const std::string& url) { return instance_.CreateMedia(url); }
  // Plays the media that is set. A player that libvlc left muted or at volume 0 comes back at 100, whatever was asked.
  void Play();
  void Pause();  // or resumes what is paused
  bool IsPlaying();
  // Stops the stream and the watchdog; with suppress the interface is not told. The media stays set. A library without
  // a synchronous stop stops only the watchdog: its stream ends with the next media.
  void StopInternal(bool suppress);
  // Percent, passed on as it comes; remembered whatever libvlc says, and without a player too.
  void SetVolume(int volume);
  // False when there is nothing to seek with; what libvlc answers is not read.
  bool SeekTo(int64_t milliseconds);
  // Milliseconds, as libvlc tells them; 0 when it can't be asked.
  int64_t GetPosition();
  int64_t GetDuration();
  // Places the video's window, in client pixels of the parent. The grid lays itself out over the whole parent instead.
  void Resize(int x, int y, int width, int height);
  void EnsureZOrder();
  // Read the track lists and tell the interface that they were read; the elements are not told.
  void RefreshSpuTracks();
  void RefreshAudioTracks();
  // Choose a track by libvlc's id; what libvlc answers is not read.
  void SetSpuTrack(int id);
  void SetAudioTrack(int id);
  void SetUserAgent(std::string userAgent) { userAgent_ = std::move(userAgent); }  // read by nothing

  // Where the events go. Returns when the callable from before is out of use; not to be called by it.
  void SetEventCallback(EventCallback callback) { eventCallback_ = std::move(callback); }
  // Events (vlc_player_events.cpp). On libvlc's threads; may not wait for the main thread, and may call of libvlc only
  // what libvlc allows in a callback. The user data is the VLCPlayer; null is ignored.
  static void VlcEventCallback(const libvlc_event_t* event, void* userData);
  // Tells the interface, then does what the event asks for (player/player_events.h). Doesn't ask which player sent it.
  void ProcessVLCEvent(const libvlc_event_t* event);

  // Stall watchdog (player/stall_watchdog.h). The tick belongs to the timer whose id is the address of this object.
  void StartStallWatchdog() { watchdog_.Start(); }
  void StopStallWatchdog() { watchdog_.Stop(); }
  void OnStallWatchdogTick() { watchdog_.RunPass(media_.get(), GetTickCount64); }
  bool HandleStallNudgeTimer(UINT_PTR timerId) { return resumes_.Resume(timerId); }
  // Reloads the stream of the single view, at its time where that makes sense.
  void RestartMediaPreservingTime();

  // Grid (player/multi_view_grid.h). The first two and the promotion are always true where the grid allows them.
  bool EnableMultiView();
  // Volume 100 after it.
  bool DisableMultiView();
  bool MvAddStream(const std::string& url, const std::string& name) { return grid_.AddStream(url, name); }
  bool MvReplaceActive(const std::string& url, const std::string& name) { return grid_.ReplaceActive(url, name); }
  bool MvRemoveActive() { return grid_.RemoveActive(); }
  bool MvSwapTiles(int from, int to) { return grid_.SwapTiles(from, to); }
  // Leaves with the active tile's URL opened anew in the single view. A restart keeps naming the stream from before.
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

  ReaderEpochs eventReaders_{ServeSentMessages};  // the events that are being handled
  EventCallbackSlot eventCallback_{eventReaders_};

  // The single view.
  VlcInstance instance_;
  WatchedPlayerHandle mediaPlayer_;  // empty while the grid is on: its tile holds the handle
  VlcMediaPtr media_;                // set last; null until the first SetMedia
  libvlc_event_manager_t* eventManager_ = nullptr;
  std::atomic<HWND> parentWindow_{nullptr};
  HWND vlcWindow_ = nullptr;
  HWND overlayWindow_ = nullptr;  // read by EnsureZOrder; nothing assigns it
  int volume_ = kFullVolume;      // asked for last
  MediaRequest current_;          // set last
  std::string fallbackUrl_;       // read where current_ has no URL; nothing assigns it
  std::string userAgent_;
  std::atomic<bool> suppressStoppedEvent_{false};  // swallows the next stopped event

  // The other rooms. What a later one borrows comes first.
  PendingResumes resumes_{parentWindow_};
  MultiViewGrid grid_{instance_, parentWindow_, eventReaders_, resumes_, {VlcEventCallback, this}};
  StallWatchdog watchdog_{{reinterpret_cast<UINT_PTR>(this), parentWindow_, mediaPlayer_, grid_, resumes_,
                           eventCallback_, [this] { RestartMediaPreservingTime(); }}};
};

}  // namespace vantro
