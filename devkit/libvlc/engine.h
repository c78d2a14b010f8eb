// A media player of libvlc 3, driven so that no caller waits for it.
//
// libvlc 3 blocks its caller while a stream stops or a media is replaced, so a native thread of the engine runs all
// that is asked, in its order. Each playback, from Start to Stop, is an input with a number; what libvlc tells goes to
// the sink with the number of the input that it belongs to.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>

#include "libvlc4_abi.h"
#include "media.h"
#include "task_thread.h"

struct libvlc_event_t;
struct libvlc_media_player_t;

namespace vantro::devlib {

class AudioMeter;
class Canvas;
class Instance;

struct EngineEvent {
  enum class Kind {
    kOpening,
    kPlaying,
    kPaused,
    kEnded,
    kError,
    kBuffering,
    kTime,
    kSeekable,
    kPausable,
    kLength,
    kTrackAdded,
    kTrackRemoved,
    kTrackSelected,
    kPictures,
    kClosed,  // what Stop was called for is done
  };
  Kind kind;
  uint64_t input = 0;
  float percent = 0;
  bool able = false;
  int64_t time = 0;  // milliseconds
  double position = 0;
  TrackType trackType = TrackType::kUnknown;
  int32_t number = 0;  // of a track, or of places that show pictures
};

class Engine {
 public:
  // Called on native threads; must not wait.
  using Sink = std::function<void(const EngineEvent&)>;

  // Null when libvlc makes no player. Canvas and meter must live until Close has called back.
  static std::unique_ptr<Engine> Create(Instance* instance, std::shared_ptr<Canvas> canvas, AudioMeter* audio,
                                        Sink sink);
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  // All of these return at once, on any thread. `player` is the name in the log of times.
  void Start(uint64_t input, MediaRef media, int64_t startMilliseconds, const void* player);
  void SetPause(uint64_t input, bool pause);
  void Seek(uint64_t input, int64_t milliseconds);
  // Ends the input, which takes at least `patience` milliseconds, and then tells kClosed.
  void Stop(uint64_t input, int patience);
  // Stops and releases libvlc's player, then calls `closed` as the last thing. Nothing may be asked behind it.
  void Close(std::function<void()> closed);

  // For what libvlc answers at once. Not to be used while a Stop is under way: libvlc's lock is held then.
  libvlc_media_player_t* native() const { return native_; }

 private:
  Engine() = default;
  void ListenToLibvlc();
  void OnLibvlcEvent(const libvlc_event_t& event);
  void DoStart(uint64_t input, MediaRef media, int64_t startMilliseconds, const void* player);
  void DoStop(uint64_t input, int patience);

  Instance* instance_ = nullptr;
  libvlc_media_player_t* native_ = nullptr;
  std::shared_ptr<Canvas> canvas_;
  Sink sink_;
  std::shared_ptr<TaskThread> thread_;
  std::atomic<uint64_t> input_{0};  // the running one, 0 for none
  std::atomic<double> position_{0};
  MediaRef loaded_;              // what the native player holds
  bool startTimeGiven_ = false;  // the loaded media carries a start time as option
};

}  // namespace vantro::devlib
