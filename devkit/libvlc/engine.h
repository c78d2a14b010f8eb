// A media player of libvlc 3 whose functions never make the caller wait.
//
// libvlc 3 blocks its caller while a stream stops or a media is replaced. Therefore one native thread of the engine
// runs all requests in order. Each playback, from Start to Stop, is an input with a number. The sink receives each of
// libvlc's events with the number of its input.
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
    kClosed,  // the work of Stop is done
  };
  Kind kind;
  uint64_t input = 0;
  float percent = 0;
  bool able = false;
  int64_t time = 0;  // milliseconds
  double position = 0;
  TrackType trackType = TrackType::kUnknown;
  int32_t number = 0;  // of a track, or the number of outputs that show pictures
};

class Engine {
 public:
  // Called on native threads; must not block.
  using Sink = std::function<void(const EngineEvent&)>;

  // Returns null when libvlc makes no player. Canvas and meter must live until Close has called back.
  static std::unique_ptr<Engine> Create(Instance* instance, std::shared_ptr<Canvas> canvas, AudioMeter* audio,
                                        Sink sink);
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  // All of these return at once and may be called on any thread. `player` is the name in the log of times.
  void Start(uint64_t input, MediaRef media, int64_t startMilliseconds, const void* player);
  void SetPause(uint64_t input, bool pause);
  void Seek(uint64_t input, int64_t milliseconds);
  // Ends the input, which takes at least `minimum` milliseconds, and then reports kClosed.
  void Stop(uint64_t input, int minimum);
  // Stops and releases libvlc's player, then calls `closed` last. Call nothing after it.
  void Close(std::function<void()> closed);

  // For functions of libvlc that return at once. Not to be used while a Stop is in progress: libvlc's lock is held
  // then.
  libvlc_media_player_t* native() const { return native_; }

 private:
  Engine() = default;
  void ListenToLibvlc();
  void OnLibvlcEvent(const libvlc_event_t& event);
  void DoStart(uint64_t input, MediaRef media, int64_t startMilliseconds, const void* player);
  void DoStop(uint64_t input, int minimum);

  Instance* instance_ = nullptr;
  libvlc_media_player_t* native_ = nullptr;
  std::shared_ptr<Canvas> canvas_;
  Sink sink_;
  std::shared_ptr<TaskThread> thread_;
  std::atomic<uint64_t> input_{0};  // the running input, 0 for none
  std::atomic<double> position_{0};
  MediaRef loaded_;              // the media that the native player holds
  bool startTimeGiven_ = false;  // the loaded media has a start time as an option
};

}  // namespace vantro::devlib
