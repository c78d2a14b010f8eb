// A media player with libvlc 4's behaviour, on top of an engine that plays through libvlc 3.
//
// All calls and all events of a player run under its recursive lock. Therefore every readable state has been reported,
// and a callback that waits for another thread's call into the same player waits forever, as in libvlc. A Windows
// thread of the player handles the engine's events one at a time. Only MediaChanged of a player that plays nothing is
// reported on the thread that calls set_media.
//
// An input is one playback. While one closes there is none. A media that is set meanwhile is opened afterwards.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "audio_meter.h"
#include "canvas.h"
#include "engine.h"
#include "event_listeners.h"
#include "libvlc4_abi.h"
#include "media.h"
#include "notice.h"
#include "task_thread.h"

namespace vantro::devlib {

class Instance;
class TrackList;

// How a player reports to its program: through an event manager, or through the callbacks that it is made with.
enum class Variant { kEvents, kCallbacks };

class Player : public std::enable_shared_from_this<Player> {
 public:
  // Returns null when libvlc makes no player or Windows no thread. Windows threads only. The program's handle of the
  // player is the object's address. The object lives until Close has taken effect and nothing uses it. `callbacks` and
  // `opaque` are only for the variant kCallbacks.
  static std::shared_ptr<Player> Create(Instance* instance, Variant variant, const PlayerCallbacks* callbacks,
                                        void* opaque);
  ~Player();

  // A null media means none.
  void SetMedia(MediaRef media);
  // A null media means none. It is opened when the current media has ended.
  void SetNextMedia(MediaRef media);
  MediaRef media() const;
  // Returns false without a media.
  bool Play();
  void Pause();
  void SeekTo(int64_t milliseconds);
  // Returns false when there is nothing to stop.
  bool Stop();
  // No event is delivered after the return. libvlc's player is stopped and released afterwards.
  void Close();
  void Retain();
  // Returns true when that was the last reference.
  bool DropReference();

  State state() const;
  bool playing() const;
  int64_t time() const;    // milliseconds; 0 when nothing plays
  int64_t length() const;  // milliseconds; -1 when unknown

  // Tracks are known while a media plays. The caller owns the list.
  TrackList* Tracks(TrackType type, bool selectedOnly) const;
  // Selects by libvlc 3's number, -1 for none. A selection made before a media plays applies from its start.
  void SelectTrack(TrackType type, int number);
  PictureSize VideoSize() const;
  // Returns true although no file was written, as libvlc does; false without a path.
  bool TakeSnapshot(unsigned number, const std::string& path, unsigned width, unsigned height);

  EventListeners& listeners() { return listeners_; }
  Canvas& canvas() { return *canvas_; }
  AudioMeter& audio() { return audio_; }
  bool InOwnCallback() const;

 private:
  Player(Variant variant, bool soundOfPlayer, const PlayerCallbacks* callbacks, void* opaque);

  void Report(const Notice& notice);
  void ReportState(State state);
  void ReportMedia();
  void ReportCapabilities(int32_t now);

  // The player's thread; each is called with the lock held.
  void Handle(const EngineEvent& event);
  void HandleClosed();
  void HandleEnd(StopReason reason);
  void HandleFigure(const EngineEvent& event);
  void HandleTrack(const EngineEvent& event, Notice::Kind kind);
  void RememberTime(int64_t milliseconds);
  void ReportStopping(StopReason reason);
  void Post(std::function<void()> task);

  void OpenInput();
  void CloseInput(int minimum);

  static constexpr int kAnyTrack = INT32_MIN;

  const Variant variant_;
  const PlayerCallbacks* const callbacks_;
  void* const opaque_;
  std::atomic<int> references_{1};
  std::unique_ptr<Engine> engine_;
  std::shared_ptr<TaskThread> thread_;
  std::shared_ptr<Canvas> canvas_;
  AudioMeter audio_;
  EventListeners listeners_;

  mutable std::recursive_mutex lock_;
  bool closed_ = false;
  State state_ = State::kNothingSpecial;
  MediaRef media_;
  MediaRef next_;         // set while an input closes
  bool hasNext_ = false;  // next_ is valid, null included
  MediaRef following_;    // opened after the end of media_
  bool started_ = false;  // the program has started playback, and no end came
  bool closing_ = false;  // an input is closing
  bool running_ = false;  // libvlc plays the input or has paused it
  uint64_t input_ = 0;    // number of the last input
  int64_t startAt_ = 0;   // milliseconds; where the next input begins
  int32_t capabilities_ = 0;
  int64_t length_ = -1;
  int64_t time_ = 0;           // of the last time event, or the start of the input
  int64_t reportedTime_ = -1;  // of the last time event, -1 before it
  int64_t timePlayed_ = 0;     // sound played up to that event
  std::chrono::steady_clock::time_point timeAt_{};
  int wantedTracks_[3] = {kAnyTrack, kAnyTrack, kAnyTrack};
  int selectedTracks_[3] = {-1, -1, -1};
};

}  // namespace vantro::devlib
