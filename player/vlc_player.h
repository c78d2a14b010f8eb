// The player of one top-level window: everything that is done with libvlc, single view and grid.
//
// Main thread, unless an operation says otherwise. libvlc calls VlcEventCallback on threads of its own, and everything
// that an event brings about runs there, without a lock and without waiting for the main thread:
// - Flags, window and ids are single relaxed values: whole, but not in step with one another.
// - A start and a stop of the watchdog that meet on two threads are carried out one after the other, by the thread that
//   came first (player/alternating_switch.h): when both have ended, it is on with its timer or off without.
// - Stall records belong to the main thread. A start or stop asks for their clearing, which the main thread does before
//   it uses a record again.
// - The tiles' handles are published as an immutable list, and the event callback likewise. An operation of the main
//   thread that takes a player or the callback out of use waits for the events that are being handled, and then
//   releases it before it returns (player/reader_epochs.h).
// - An event that libvlc is about to deliver while the object is destroyed is libvlc's to stop: releasing a player ends
//   its events.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "common/relaxed.h"
#include "player/alternating_switch.h"
#include "player/event_callback.h"
#include "player/libvlc_api.h"
#include "player/libvlc_functions.h"
#include "player/media_request.h"
#include "player/multi_view_player.h"
#include "player/player_events.h"
#include "player/player_handle.h"
#include "player/reader_epochs.h"
#include "player/sent_messages.h"
#include "player/stall_watchdog.h"
#include "player/tile_layout.h"

namespace vantro {

class VLCPlayer {
 public:
  using EventCallback = vantro::EventCallback;
  // The watchdog's clock, in milliseconds.
  using TickSource = ULONGLONG(WINAPI*)();

  VLCPlayer() = default;
  ~VLCPlayer();
  VLCPlayer(const VLCPlayer&) = delete;
  VLCPlayer& operator=(const VLCPlayer&) = delete;

  // Start-up and end (vlc_player_startup.cpp).
  //
  // Makes the video's child window in the given one, the libvlc instance and the player, and attaches the events, which
  // may fire from then on. The window is borrowed and must outlive the player's timers. False, with the reason in the
  // log, when libvlc can't be used; the operations below then find no player and do nothing. Without a child window the
  // video goes into the given one, which is no failure.
  bool Initialize(HWND parentWindow);
  // Ends what Initialize began; safe to call twice. Waits for an event callback that is running, so it must not be
  // called from one. volume_ and the strings stay.
  void Cleanup();

  // Media and transport of the single view (vlc_player_transport.cpp). Each does nothing without a player, and logs an
  // error when the library can't be used; a function that the library lacks makes its step a silent no-op.
  //
  // A media for an http, https or rtsp URL, or for anything else as a path. The caller owns it; null on failure.
  libvlc_media_t* CreateMedia(const std::string& url);
  // Stops the stream, unseen by the interface, and plays the requested one in its place. False, with the reason in the
  // log, when the media can't be played: a media that could not be made leaves the player stopped and without any.
  bool SetMedia(MediaRequest request);
  // Whether a media is set: from the first SetMedia that made one.
  bool HasMedia() const { return media_ != nullptr; }
  // Plays the media that is set. A player that libvlc left muted or at volume 0 comes back at 100, whatever volume_ is.
  void Play();
  // Pauses, or resumes what is paused.
  void Pause();
  bool IsPlaying();
  // Stops the stream and the watchdog; with suppress the interface is not told. The media stays set. A library without
  // a synchronous stop stops only the watchdog: its stream ends with the next media.
  void StopInternal(bool suppress);
  // Percent, passed on as it comes; remembered in volume_ whatever libvlc says, and without a player too.
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

  // Events (vlc_player_events.cpp). On libvlc's threads; may not wait for the main thread, and may call of libvlc only
  // what libvlc allows in a callback.
  //
  // The user data is the VLCPlayer; null is ignored.
  static void VlcEventCallback(const libvlc_event_t* event, void* userData);
  // Tells the interface, then does what the event asks for (player/player_events.h). Doesn't ask which player sent it.
  void ProcessVLCEvent(const libvlc_event_t* event);

  // Stall watchdog (vlc_player_watchdog.cpp). Start and Stop also run on libvlc's threads.
  //
  // Turns the watchdog on, with clean records, if there is a player to watch. While it is on a start changes nothing,
  // while it is off a stop changes nothing. Without a parent window it is on but never checks. Resumes that are pending
  // survive a stop.
  void StartStallWatchdog();
  void StopStallWatchdog();
  // One pass over the watched players, for the timer whose id is the address of this object. Never waits.
  void OnStallWatchdogTick();
  void RunStallPass(TickSource clock);
  // Resumes the player that a nudge paused. False when the id is no pending resume.
  bool HandleStallNudgeTimer(UINT_PTR timerId);
  // Reloads the stream of the single view, at its time where that makes sense.
  void RestartMediaPreservingTime();
  // Judges one player by its counters and takes the rung of the ladder that is due. The URL is what a tile reloads.
  void CheckPlayerStall(libvlc_media_player_t* mediaPlayer, libvlc_media_t* media, StallState& state,
                        const std::string& label, const std::string& url, bool restorePosition, bool isPrimary,
                        TickSource clock = GetTickCount64);
  // Pauses the player and arms the timer of its resume.
  void NudgePlayer(libvlc_media_player_t* mediaPlayer);

  // Multi-view session (vlc_player_multiview.cpp). A false result has its reason in the log where it says "logged".
  //
  // The stream of the single view becomes the first tile, and plays on. Always true.
  bool EnableMultiView();
  // The first tile's stream becomes the single view again if the tile is the original one; all others end. Volume 100.
  // If a swap moved the original tile away from the first place, the single view is left without a player. Always true.
  bool DisableMultiView();
  // Adds a silent tile that plays the URL. The active tile stays. False, logged, when the tile can't be made; a media
  // that can't be made is no failure. Also adds outside multi-view: the tile is then neither placed nor heard.
  bool MvAddStream(const std::string& url, const std::string& name);
  // Plays another stream in the active tile.
  bool MvReplaceActive(const std::string& url, const std::string& name);
  // Removes the active tile, unless it is the first; the tile before it becomes active.
  bool MvRemoveActive();
  // Exchanges two tiles; the active index follows its tile.
  bool MvSwapTiles(int from, int to);
  // Leaves with the active tile's URL opened anew in the single view. A restart keeps naming the stream from before.
  bool MvPromoteActiveAndExit();
  // Makes a tile the active one, without touching the audio. An index out of range, logged, changes nothing.
  void SetActiveIndexSafe(int index);
  // Stops a tile's player and destroys its window, unless it is the original tile. The player is released with the
  // record.
  void DestroyPlayerWindow(MultiViewPlayer& record);
  // Listens to a tile's Playing and MediaChanged, and to nothing else of it. Nothing detaches them.
  void AttachEventsToPlayer(libvlc_media_player_t* player);

  // Multi-view layout and audio (vlc_player_layout.cpp). UpdateMultiViewScaling also runs on libvlc's threads.
  //
  // Places every tile in its cell of the parent's client area, tells its window and libvlc, and fits the picture.
  void UpdateGridLayout();
  // Fits the pictures alone, for when a video's size becomes known.
  void UpdateMultiViewScaling();
  // The active tile at volume 100, all others muted and at 0. Repairs an active index that is out of range.
  void UpdateActiveAudio();
  // The factor by which the player's whole picture fits the size in pixels; 0 while a size is not known.
  float FitVideoScale(libvlc_media_player_t* player, int width, int height);
  void SetVideoScale(libvlc_media_player_t* player, float scale);

  // State, read by the channel's handlers and by the window.
  VlcInstancePtr vlcInstance_;
  WatchedPlayerHandle mediaPlayer_;  // empty while the grid is on: its tile holds the handle
  VlcMediaPtr media_;                // set last; null until the first SetMedia
  libvlc_event_manager_t* eventManager_ = nullptr;
  Relaxed<HWND> parentWindow_{nullptr};
  HWND vlcWindow_ = nullptr;
  HWND overlayWindow_ = nullptr;  // read by EnsureZOrder; nothing assigns it
  int volume_ = 100;
  AlternatingSwitch stallWatchdogActive_;
  Relaxed<UINT_PTR> stallTimerId_{0};
  StallState primaryStall_;
  MediaRequest current_;                          // set last
  std::string fallbackUrl_;                       // read where current_ has no URL; nothing assigns it
  std::string userAgent_;                         // written by setUserAgent, read by nothing
  ReaderEpochs eventReaders_{ServeSentMessages};  // the events that are being handled
  EventCallbackSlot eventCallback_{eventReaders_};
  Relaxed<bool> suppressStoppedEvent_{false};  // swallows the next stopped event
  std::unordered_map<UINT_PTR, libvlc_media_player_t*> nudgeTimers_;
  Relaxed<bool> isMultiViewMode_{false};
  std::vector<MultiViewPlayer> players_;
  int activeIndex_ = 0;

 private:
  // Steps of Initialize and Cleanup.
  void CreateVideoWindow();
  bool CreateInstance(const LibVlcFunctions& vlc);
  bool CreateMediaPlayer(const LibVlcFunctions& vlc);
  void AttachEvents(const LibVlcFunctions& vlc);
  void DetachEvents(const LibVlcFunctions& vlc);

  // Events.
  void Perform(EventEffect effect);

  // Tiles. The handles of players_ in their order, as events see them: empty where a tile has no player.
  using TileHandles = std::vector<libvlc_media_player_t*>;
  // Follows every change of players_, before a handle that left it is released: returns when no event is using the list
  // from before.
  void PublishTiles();
  // Releases a player that no event is using any more, and forgets its pending resume.
  void ReleasePlayer(VlcMediaPlayerPtr player);
  // Empties players_, releasing each player and leaving the windows alone.
  void ReleaseTiles();
  bool IsTileIndex(int index) const { return index >= 0 && static_cast<size_t>(index) < players_.size(); }
  HWND CreateTileWindow();
  VlcMediaPlayerPtr CreateTilePlayer(HWND window, const std::string& url);
  // Opens the URL on a tile's player, without stopping or playing it. A media that can't be made leaves the old one.
  void OpenOnTile(const LibVlcFunctions& vlc, libvlc_media_player_t* player, const std::string& url);
  void ReplaceTileStream(const LibVlcFunctions& vlc, MultiViewPlayer& tile, const std::string& url,
                         const std::string& name);
  void RestoreOriginalTile(MultiViewPlayer& tile);

  // Layout of one tile.
  void PlaceTile(size_t index, const TileRect& cell);
  void RefitTile(size_t index, const TileRect& cell);
  void FitTileVideo(const LibVlcFunctions& vlc, size_t index, const TileRect& cell);

  // Watchdog.
  void TurnStallWatchdog(bool on);
  void StartCheckTimer();
  void EndCheckTimer();
  void ForgetPendingResume(libvlc_media_player_t* mediaPlayer);
  void RequestStallClear();
  void ApplyStallClear();
  void CheckTileStall(const LibVlcFunctions& vlc, size_t index, TickSource clock);
  void RestartTile(libvlc_media_player_t* mediaPlayer, const std::string& url, bool restorePosition);
  const std::string& RestartUrl() const { return current_.url.empty() ? fallbackUrl_ : current_.url; }

  Published<TileHandles> tileHandles_{eventReaders_};
  const DWORD mainThreadId_ = GetCurrentThreadId();
  Relaxed<uint32_t> stallClearsAsked_{0};
  uint32_t stallClearsDone_ = 0;
};

}  // namespace vantro
