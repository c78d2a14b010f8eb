#include "engine.h"

#include <vlc/vlc.h>

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <thread>
#include <utility>

#include "audio_meter.h"
#include "canvas.h"
#include "instance.h"

namespace vantro::devlib {
namespace {

constexpr libvlc_event_e kWatchedEvents[] = {
    libvlc_MediaPlayerOpening,         libvlc_MediaPlayerPlaying,
    libvlc_MediaPlayerPaused,          libvlc_MediaPlayerEndReached,
    libvlc_MediaPlayerStopped,         libvlc_MediaPlayerEncounteredError,
    libvlc_MediaPlayerBuffering,       libvlc_MediaPlayerTimeChanged,
    libvlc_MediaPlayerPositionChanged, libvlc_MediaPlayerSeekableChanged,
    libvlc_MediaPlayerLengthChanged,   libvlc_MediaPlayerPausableChanged,
    libvlc_MediaPlayerESAdded,         libvlc_MediaPlayerESDeleted,
    libvlc_MediaPlayerESSelected,      libvlc_MediaPlayerVout,
};

Canvas* AsCanvas(void* opaque) { return static_cast<Canvas*>(opaque); }
AudioMeter* AsMeter(void* opaque) { return static_cast<AudioMeter*>(opaque); }

unsigned ConfigureVideo(void** opaque, char* chroma, unsigned* width, unsigned* height, unsigned* pitches,
                        unsigned* lines) {
  return AsCanvas(*opaque)->Configure(chroma, width, height, pitches, lines);
}
void ClearVideo(void* opaque) { AsCanvas(opaque)->Clear(); }
void* LockVideo(void* opaque, void** planes) { return AsCanvas(opaque)->Lock(planes); }
void DisplayVideo(void* opaque, void*) { AsCanvas(opaque)->Display(); }

int ConfigureAudio(void** opaque, char* format, unsigned* rate, unsigned* channels) {
  AsMeter(*opaque)->Configure(format, *rate, *channels);
  return 0;
}
void PlayAudio(void* opaque, const void* samples, unsigned count, int64_t) { AsMeter(opaque)->Play(samples, count); }

TrackType TypeOf(libvlc_track_type_t type) { return static_cast<TrackType>(type); }

}  // namespace

std::unique_ptr<Engine> Engine::Create(Instance* instance, std::shared_ptr<Canvas> canvas, AudioMeter* audio,
                                       Sink sink) {
  libvlc_media_player_t* native = libvlc_media_player_new(instance->native());
  if (!native) return nullptr;
  std::unique_ptr<Engine> engine(new Engine);
  engine->instance_ = instance;
  engine->native_ = native;
  engine->canvas_ = std::move(canvas);
  engine->sink_ = std::move(sink);
  libvlc_video_set_callbacks(native, LockVideo, nullptr, DisplayVideo, engine->canvas_.get());
  libvlc_video_set_format_callbacks(native, ConfigureVideo, ClearVideo);
  libvlc_audio_set_callbacks(native, PlayAudio, nullptr, nullptr, nullptr, nullptr, audio);
  libvlc_audio_set_format_callbacks(native, ConfigureAudio, nullptr);
  engine->ListenToLibvlc();
  engine->thread_ = std::make_shared<TaskThread>();
  engine->thread_->StartNative();
  return engine;
}

void Engine::ListenToLibvlc() {
  libvlc_event_manager_t* manager = libvlc_media_player_event_manager(native_);
  for (libvlc_event_e type : kWatchedEvents) {
    libvlc_event_attach(
        manager, type,
        [](const libvlc_event_t* event, void* engine) { static_cast<Engine*>(engine)->OnLibvlcEvent(*event); }, this);
  }
}

void Engine::OnLibvlcEvent(const libvlc_event_t& event) {
  EngineEvent out{};
  out.input = input_.load();
  if (!out.input) return;
  switch (event.type) {
    case libvlc_MediaPlayerOpening:
      out.kind = EngineEvent::Kind::kOpening;
      break;
    case libvlc_MediaPlayerPlaying:
      out.kind = EngineEvent::Kind::kPlaying;
      break;
    case libvlc_MediaPlayerPaused:
      out.kind = EngineEvent::Kind::kPaused;
      break;
    case libvlc_MediaPlayerEndReached:
    case libvlc_MediaPlayerStopped:
      out.kind = EngineEvent::Kind::kEnded;
      break;
    case libvlc_MediaPlayerEncounteredError:
      out.kind = EngineEvent::Kind::kError;
      break;
    case libvlc_MediaPlayerBuffering:
      out.kind = EngineEvent::Kind::kBuffering;
      out.percent = event.u.media_player_buffering.new_cache;
      break;
    case libvlc_MediaPlayerPositionChanged:
      // The time event, which follows, reports both.
      position_.store(static_cast<double>(event.u.media_player_position_changed.new_position));
      return;
    case libvlc_MediaPlayerTimeChanged:
      out.kind = EngineEvent::Kind::kTime;
      out.time = event.u.media_player_time_changed.new_time;
      out.position = position_.load();
      break;
    case libvlc_MediaPlayerSeekableChanged:
      out.kind = EngineEvent::Kind::kSeekable;
      out.able = event.u.media_player_seekable_changed.new_seekable != 0;
      break;
    case libvlc_MediaPlayerPausableChanged:
      out.kind = EngineEvent::Kind::kPausable;
      out.able = event.u.media_player_pausable_changed.new_pausable != 0;
      break;
    case libvlc_MediaPlayerLengthChanged:
      out.kind = EngineEvent::Kind::kLength;
      out.time = event.u.media_player_length_changed.new_length;
      break;
    case libvlc_MediaPlayerVout:
      out.kind = EngineEvent::Kind::kPictures;
      out.number = event.u.media_player_vout.new_count;
      break;
    default:
      out.kind = event.type == libvlc_MediaPlayerESAdded     ? EngineEvent::Kind::kTrackAdded
                 : event.type == libvlc_MediaPlayerESDeleted ? EngineEvent::Kind::kTrackRemoved
                                                             : EngineEvent::Kind::kTrackSelected;
      out.trackType = TypeOf(event.u.media_player_es_changed.i_type);
      out.number = event.u.media_player_es_changed.i_id;
      break;
  }
  sink_(out);
}

void Engine::Start(uint64_t input, MediaRef media, int64_t startMilliseconds, const void* player) {
  thread_->Post([this, input, media = std::move(media), startMilliseconds, player]() mutable {
    DoStart(input, std::move(media), startMilliseconds, player);
  });
}

void Engine::SetPause(uint64_t input, bool pause) {
  thread_->Post([this, input, pause] {
    if (input_.load() == input) libvlc_media_player_set_pause(native_, pause);
  });
}

void Engine::Seek(uint64_t input, int64_t milliseconds) {
  thread_->Post([this, input, milliseconds] {
    if (input_.load() == input) libvlc_media_player_set_time(native_, milliseconds);
  });
}

void Engine::Stop(uint64_t input, int minimum) {
  thread_->Post([this, input, minimum] { DoStop(input, minimum); });
}

void Engine::Close(std::function<void()> closed) {
  thread_->Post([this, closed = std::move(closed)] {
    input_.store(0);
    libvlc_media_player_stop(native_);
    libvlc_media_player_release(native_);
    loaded_ = nullptr;
    canvas_->SetMedia(nullptr);
    thread_->Close();
    closed();
  });
}

// --- The engine's thread ------------------------------------------------------------------------------------------

void Engine::DoStart(uint64_t input, MediaRef media, int64_t startMilliseconds, const void* player) {
  if (media.get() != loaded_.get()) {
    libvlc_media_player_set_media(native_, media->Native(instance_->native()));
    loaded_ = std::move(media);
    startTimeGiven_ = false;
  }
  if (startMilliseconds > 0 || startTimeGiven_) {
    char option[64];
    snprintf(option, sizeof option, ":start-time=%" PRId64 ".%03" PRId64, startMilliseconds / 1000,
             startMilliseconds % 1000);
    loaded_->AddOption(option);
    startTimeGiven_ = startMilliseconds > 0;
  }
  canvas_->SetMedia(loaded_);
  canvas_->ExpectFirstPicture(player);
  position_.store(0);
  input_.store(input);
  if (libvlc_media_player_play(native_) == 0) return;
  EngineEvent failed{};
  failed.kind = EngineEvent::Kind::kError;
  failed.input = input;
  sink_(failed);
}

void Engine::DoStop(uint64_t input, int minimum) {
  auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(minimum);
  if (input_.load() == input) {
    input_.store(0);
    libvlc_media_player_stop(native_);
  }
  std::this_thread::sleep_until(until);
  EngineEvent closed{};
  closed.kind = EngineEvent::Kind::kClosed;
  closed.input = input;
  sink_(closed);
}

}  // namespace vantro::devlib
