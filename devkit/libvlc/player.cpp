#include "player.h"

#include <vlc/vlc.h>

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <future>
#include <thread>
#include <unordered_map>
#include <utility>

#include "instance.h"
#include "painter.h"
#include "report.h"
#include "times_log.h"

namespace vantro::devlib {
namespace {

constexpr auto kPatience = std::chrono::seconds(10);

constexpr libvlc_event_e kWatchedEvents[] = {
    libvlc_MediaPlayerMediaChanged,  libvlc_MediaPlayerNothingSpecial,  libvlc_MediaPlayerOpening,
    libvlc_MediaPlayerBuffering,     libvlc_MediaPlayerPlaying,         libvlc_MediaPlayerPaused,
    libvlc_MediaPlayerStopped,       libvlc_MediaPlayerEndReached,      libvlc_MediaPlayerEncounteredError,
    libvlc_MediaPlayerTimeChanged,   libvlc_MediaPlayerPositionChanged, libvlc_MediaPlayerSeekableChanged,
    libvlc_MediaPlayerLengthChanged,
};

// Never destroyed: libvlc's threads may still run while the process ends.
struct Registry {
  std::mutex lock;
  std::unordered_map<const void*, std::shared_ptr<Player>> players;
  int closing = 0;
  std::condition_variable closed;
};
Registry& registry() {
  static Registry* const instance = new Registry;
  return *instance;
}

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

Event Plain(int32_t type) {
  Event event;
  event.type = type;
  return event;
}

}  // namespace

std::shared_ptr<Player> Player::Create(Instance* instance) {
  libvlc_media_player_t* native = libvlc_media_player_new(instance->native());
  if (!native) return nullptr;
  std::shared_ptr<Player> player(new Player);
  player->instance_ = instance;
  player->native_ = native;
  player->canvas_ = std::make_shared<Canvas>();
  player->events_ = std::make_shared<EventDelivery>(player.get());
  if (!player->events_->Start() || !Painter::Add(player->canvas_)) {
    player->events_->Close();
    player->canvas_->Close();
    libvlc_media_player_release(native);
    return nullptr;
  }
  libvlc_video_set_callbacks(native, LockVideo, nullptr, DisplayVideo, player->canvas_.get());
  libvlc_video_set_format_callbacks(native, ConfigureVideo, ClearVideo);
  libvlc_audio_set_callbacks(native, PlayAudio, nullptr, nullptr, nullptr, nullptr, &player->audio_);
  libvlc_audio_set_format_callbacks(native, ConfigureAudio, nullptr);
  player->ListenToLibvlc();
  {
    std::lock_guard guard(registry().lock);
    registry().players[player.get()] = player;
  }
  std::thread(&Player::RunCommands, player.get(), player).detach();
  return player;
}

std::shared_ptr<Player> Player::Find(const void* handle, const char* function) {
  {
    std::lock_guard guard(registry().lock);
    auto found = registry().players.find(handle);
    if (found != registry().players.end()) return found->second;
  }
  Misuse(function, handle ? "the player has been released" : "the player is null");
  return nullptr;
}

std::vector<std::shared_ptr<Player>> Player::All() {
  std::lock_guard guard(registry().lock);
  std::vector<std::shared_ptr<Player>> all;
  for (const auto& [handle, player] : registry().players) all.push_back(player);
  return all;
}

bool Player::WaitForClosed() {
  std::unique_lock guard(registry().lock);
  return registry().closed.wait_for(guard, kPatience, [] { return registry().closing == 0; });
}

// --- The program's side -------------------------------------------------------------------------------------------

void Player::SetMedia(MediaRef media) {
  LogTime("set_media", this);
  {
    std::lock_guard guard(mediaLock_);
    media_ = media;
  }
  Enqueue([this, media = std::move(media)]() mutable { DoSetMedia(std::move(media)); });
}

void Player::Play() {
  LogTime("play", this);
  if (media()) started_.store(true);
  Enqueue([this] { DoPlay(); });
}

void Player::Pause() {
  Enqueue([this] { libvlc_media_player_pause(native_); });
}

void Player::SeekTo(int64_t milliseconds) {
  Enqueue([this, milliseconds] { DoSeek(milliseconds); });
}

bool Player::StopAsync() {
  if (!started_.exchange(false)) return false;
  Enqueue([this] { DoStop(); });
  return true;
}

void Player::Stop() {
  LogTime("stop", this);
  started_.store(false);
  auto done = std::make_shared<std::promise<void>>();
  std::future<void> finished = done->get_future();
  Enqueue([this, done] {
    DoStop();
    done->set_value();
  });
  if (finished.wait_for(kPatience) == std::future_status::timeout) Warn("libvlc has not stopped player %p yet", this);
}

void Player::Close() {
  {
    Registry& all = registry();
    std::lock_guard guard(all.lock);
    if (!all.players.erase(this)) return;
    ++all.closing;
  }
  events_->Close();
  Enqueue([this] { DoClose(); });
}

MediaRef Player::media() const {
  std::lock_guard guard(mediaLock_);
  return media_;
}

// --- libvlc's events ----------------------------------------------------------------------------------------------

void Player::ListenToLibvlc() {
  libvlc_event_manager_t* manager = libvlc_media_player_event_manager(native_);
  for (libvlc_event_e type : kWatchedEvents) {
    libvlc_event_attach(
        manager, type,
        [](const libvlc_event_t* event, void* player) { static_cast<Player*>(player)->OnLibvlcEvent(*event); }, this);
  }
}

void Player::OnLibvlcEvent(const libvlc_event_t& event) {
  // Up to SeekableChanged the two versions number their events alike.
  Event out = Plain(event.type);
  switch (event.type) {
    case libvlc_MediaPlayerLengthChanged:
      length_.store(event.u.media_player_length_changed.new_length, std::memory_order_relaxed);
      return;
    case libvlc_MediaPlayerMediaChanged:
      state_.store(State::kIdle, std::memory_order_relaxed);
      time_.store(-1, std::memory_order_relaxed);
      length_.store(-1, std::memory_order_relaxed);
      stoppedTold_.store(false, std::memory_order_relaxed);
      out.u.media = loaded_.get();
      events_->Push(out, loaded_);
      return;
    case libvlc_MediaPlayerOpening:
      state_.store(State::kOpening, std::memory_order_relaxed);
      time_.store(0, std::memory_order_relaxed);
      stoppedTold_.store(false, std::memory_order_relaxed);
      break;
    case libvlc_MediaPlayerPlaying:
      state_.store(State::kPlaying, std::memory_order_relaxed);
      break;
    case libvlc_MediaPlayerPaused:
      state_.store(State::kPaused, std::memory_order_relaxed);
      break;
    case libvlc_MediaPlayerEndReached:
      state_.store(State::kEnded, std::memory_order_relaxed);
      started_.store(false);
      break;
    case libvlc_MediaPlayerEncounteredError:
      state_.store(State::kError, std::memory_order_relaxed);
      started_.store(false);
      break;
    case libvlc_MediaPlayerStopped:
      OnStopped();
      return;
    case libvlc_MediaPlayerBuffering:
      out.u.cache = event.u.media_player_buffering.new_cache;
      break;
    case libvlc_MediaPlayerTimeChanged:
      out.u.time = event.u.media_player_time_changed.new_time;
      time_.store(out.u.time, std::memory_order_relaxed);
      break;
    case libvlc_MediaPlayerPositionChanged:
      out.u.position = static_cast<double>(event.u.media_player_position_changed.new_position);
      break;
    case libvlc_MediaPlayerSeekableChanged:
      out.u.seekable = event.u.media_player_seekable_changed.new_seekable;
      break;
    default:
      break;
  }
  events_->Push(out);
}

void Player::OnStopped() {
  // After an end or an error libvlc 3 is stopped once more by the next play or stop; the state stays what it was, so
  // that play knows that it has to.
  State before = state_.load(std::memory_order_relaxed);
  if (before != State::kEnded && before != State::kError) state_.store(State::kStopped, std::memory_order_relaxed);
  time_.store(-1, std::memory_order_relaxed);
  length_.store(-1, std::memory_order_relaxed);
  if (!stoppedTold_.exchange(true)) events_->Push(Plain(kStopped));
}

// --- The command thread -------------------------------------------------------------------------------------------

void Player::Enqueue(Command command) {
  {
    std::lock_guard guard(commandLock_);
    commands_.push_back(std::move(command));
  }
  commanded_.notify_one();
}

void Player::RunCommands(std::shared_ptr<Player> self) {
  std::unique_lock guard(commandLock_);
  while (!closing_) {
    commanded_.wait(guard, [this] { return !commands_.empty(); });
    Command next = std::move(commands_.front());
    commands_.pop_front();
    guard.unlock();
    next();
    guard.lock();
  }
  guard.unlock();
  self = nullptr;
}

// libvlc's own state lags behind its play function, so the one kept here counts.
bool Player::Running() const {
  State state = state_.load();
  return state == State::kOpening || state == State::kPlaying || state == State::kPaused;
}

void Player::DoSetMedia(MediaRef media) {
  bool goOn = Running();
  loaded_ = std::move(media);
  seekBeforePlay_ = -1;
  startTimeGiven_ = false;
  canvas_->SetMedia(loaded_);
  libvlc_media_player_set_media(native_, loaded_ ? loaded_->Native(instance_->native()) : nullptr);
  if (goOn && loaded_) DoPlay();
}

void Player::DoPlay() {
  if (!loaded_) return;
  if (!Running()) Start();
  canvas_->ExpectFirstPicture(this);
  libvlc_media_player_play(native_);
}

// Makes a player that is not running ready for libvlc's play.
void Player::Start() {
  State before = state_.load();
  if (before == State::kEnded || before == State::kError) libvlc_media_player_stop(native_);
  if (seekBeforePlay_ > 0 || startTimeGiven_) {
    char option[64];
    int64_t start = seekBeforePlay_ > 0 ? seekBeforePlay_ : 0;
    snprintf(option, sizeof option, ":start-time=%" PRId64 ".%03" PRId64, start / 1000, start % 1000);
    loaded_->AddOption(option);
    startTimeGiven_ = start > 0;
    seekBeforePlay_ = -1;
  }
  state_.store(State::kOpening);
}

void Player::DoSeek(int64_t milliseconds) {
  if (Running()) {
    libvlc_media_player_set_time(native_, milliseconds);
  } else {
    seekBeforePlay_ = milliseconds;
  }
}

void Player::DoStop() {
  seekBeforePlay_ = -1;
  if (Running()) events_->Push(Plain(kStopping));
  libvlc_media_player_stop(native_);
}

void Player::DoClose() {
  libvlc_media_player_stop(native_);
  libvlc_media_player_release(native_);
  canvas_->SetMedia(nullptr);
  canvas_->Close();
  Painter::Wake();
  loaded_ = nullptr;
  closing_ = true;
  Registry& all = registry();
  {
    std::lock_guard guard(all.lock);
    --all.closing;
  }
  all.closed.notify_all();
}

}  // namespace vantro::devlib
