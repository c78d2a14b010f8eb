// A media player of libvlc 4 on top of one of libvlc 3.
//
// libvlc 3 blocks its caller while a stream stops or a media is replaced, and deadlocks when that happens inside a
// callback. So set_media, play, pause, seek and stop are run in their order by a native thread of the player, and what
// a program asks often (state, time, length) is answered from libvlc's last events. Where the two versions behave
// differently, this class behaves like 4: a new media continues the playback of the old one, play starts again after
// the end, a seek before play is where play starts, and Stopped is told once.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "audio_meter.h"
#include "canvas.h"
#include "event_delivery.h"
#include "media.h"

struct libvlc_event_t;
struct libvlc_media_player_t;

namespace vantro::devlib {

class Instance;

class Player {
 public:
  enum class State { kIdle, kOpening, kPlaying, kPaused, kStopped, kEnded, kError };

  // Null when libvlc makes no player or Windows no thread. Windows threads only. The program's handle of the player is
  // the object's address; the object itself lives on until Close has taken effect and nobody uses it.
  static std::shared_ptr<Player> Create(Instance* instance);
  // The player behind a program's handle, null for one that was released. `function` is named in the warning then.
  static std::shared_ptr<Player> Find(const void* handle, const char* function);
  static std::vector<std::shared_ptr<Player>> All();
  // Waits until every closed player has let go of libvlc, for at most some seconds: false if that was not enough.
  static bool WaitForClosed();

  // Commands: return at once.
  void SetMedia(MediaRef media);
  void Play();
  void Pause();
  void SeekTo(int64_t milliseconds);
  // False when there is nothing to stop.
  bool StopAsync();
  // Stops even what is not started, as versions with this function do, and waits until libvlc is done.
  void Stop();
  // No event is delivered after the return; libvlc's player is stopped and released behind it.
  void Close();

  bool playing() const { return state_.load(std::memory_order_relaxed) == State::kPlaying; }
  State state() const { return state_.load(std::memory_order_relaxed); }
  int64_t time() const { return time_.load(std::memory_order_relaxed); }
  int64_t length() const { return length_.load(std::memory_order_relaxed); }
  MediaRef media() const;

  libvlc_media_player_t* native() const { return native_; }
  EventDelivery& events() { return *events_; }
  Canvas& canvas() { return *canvas_; }
  AudioMeter& audio() { return audio_; }

 private:
  using Command = std::function<void()>;

  Player() = default;
  void ListenToLibvlc();
  void OnLibvlcEvent(const libvlc_event_t& event);
  void OnStopped();

  // The command thread's side.
  void RunCommands(std::shared_ptr<Player> self);
  void Enqueue(Command command);
  void DoSetMedia(MediaRef media);
  void DoPlay();
  void Start();
  void DoSeek(int64_t milliseconds);
  void DoStop();
  void DoClose();
  bool Running() const;

  Instance* instance_ = nullptr;
  libvlc_media_player_t* native_ = nullptr;
  std::shared_ptr<EventDelivery> events_;
  std::shared_ptr<Canvas> canvas_;
  AudioMeter audio_;

  mutable std::mutex mediaLock_;
  MediaRef media_;

  std::atomic<State> state_{State::kIdle};
  std::atomic<int64_t> time_{-1};
  std::atomic<int64_t> length_{-1};
  std::atomic<bool> started_{false};      // the program asked to play and not to stop since, and no end came
  std::atomic<bool> stoppedTold_{false};  // Stopped was sent since the last opening or new media

  std::mutex commandLock_;
  std::condition_variable commanded_;
  std::deque<Command> commands_;
  bool closing_ = false;

  // Of the command thread alone.
  MediaRef loaded_;              // what the native player holds
  int64_t seekBeforePlay_ = -1;  // milliseconds; for the next start of the media
  bool startTimeGiven_ = false;  // the loaded media carries a start time as option
};

}  // namespace vantro::devlib
