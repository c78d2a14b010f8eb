#include "player.h"

#include <vlc/vlc.h>

#include <algorithm>
#include <utility>

#include "instance.h"
#include "painter.h"
#include "picture_windows.h"
#include "player_registry.h"
#include "report.h"
#include "times_log.h"
#include "tracks.h"

namespace vantro::devlib {
namespace {

// The minimum time in milliseconds that the old input takes to close at a change of media.
constexpr int kChangeDelay = 50;
constexpr size_t kCrowdedQueue = 1000;

bool IsKnown(TrackType type) { return type >= TrackType::kAudio && type <= TrackType::kText; }

}  // namespace

Player::Player(Variant variant, bool soundOfPlayer, const PlayerCallbacks* callbacks, void* opaque)
    : variant_(variant),
      callbacks_(callbacks),
      opaque_(opaque),
      thread_(std::make_shared<TaskThread>()),
      canvas_(std::make_shared<Canvas>()),
      audio_(soundOfPlayer),
      listeners_(this) {}

Player::~Player() = default;

std::shared_ptr<Player> Player::Create(Instance* instance, Variant variant, const PlayerCallbacks* callbacks,
                                       void* opaque) {
  std::shared_ptr<Player> player(new Player(variant, instance->soundOfPlayer(), callbacks, opaque));
  if (!PictureWindows::Start() || !Painter::Add(player->canvas_) || !player->thread_->StartWindows()) return nullptr;
  Player* self = player.get();
  player->engine_ = Engine::Create(instance, player->canvas_, &player->audio_, [self](const EngineEvent& event) {
    bool dispensable = event.kind == EngineEvent::Kind::kTime;
    if (dispensable && self->thread_->waiting() >= kCrowdedQueue) return;
    self->Post([self, event] { self->Handle(event); });
  });
  if (!player->engine_) {
    player->thread_->Close();
    player->canvas_->Close();
    return nullptr;
  }
  return player;
}

// --- The program's side -------------------------------------------------------------------------------------------

void Player::SetMedia(MediaRef media) {
  LogTime("set_media", this);
  std::lock_guard guard(lock_);
  startAt_ = 0;
  following_ = nullptr;
  if (!started_ && !closing_) {
    media_ = std::move(media);
    ReportMedia();
    return;
  }
  next_ = std::move(media);
  hasNext_ = true;
  if (closing_) return;
  CloseInput(kChangeDelay);
  Post([this] { ReportCapabilities(0); });
}

void Player::SetNextMedia(MediaRef media) {
  std::lock_guard guard(lock_);
  following_ = std::move(media);
}

MediaRef Player::media() const {
  std::lock_guard guard(lock_);
  return media_;
}

bool Player::Play() {
  LogTime("play", this);
  std::lock_guard guard(lock_);
  if (!(hasNext_ ? next_ : media_)) return false;
  if (started_) {
    if (running_ && !closing_) engine_->SetPause(input_, false);
    return true;
  }
  started_ = true;
  if (!closing_) OpenInput();
  return true;
}

void Player::Pause() {
  std::lock_guard guard(lock_);
  if (!started_ || closing_ || !running_) return;
  engine_->SetPause(input_, state_ != State::kPaused);
}

// While the old input closes there is no input to seek in, unless the new media is already open.
void Player::SeekTo(int64_t milliseconds) {
  std::lock_guard guard(lock_);
  if (started_ && !closing_) {
    engine_->Seek(input_, milliseconds);
  } else if (!closing_ || (variant_ == Variant::kCallbacks && hasNext_)) {
    startAt_ = std::max<int64_t>(milliseconds, 0);
  }
}

bool Player::Stop() {
  LogTime("stop", this);
  std::lock_guard guard(lock_);
  startAt_ = 0;
  if (!started_) return false;
  started_ = false;
  // After an input that is already closing, Stopped may come first.
  Post([this] {
    if (closing_ && !started_) ReportStopping(StopReason::kUser);
  });
  if (!closing_) CloseInput(0);
  return true;
}

void Player::Close() {
  if (!PlayerRegistry::Remove(this)) return;
  {
    std::lock_guard guard(lock_);
    closed_ = true;
    listeners_.Close();
    thread_->Close();
  }
  engine_->Close([self = shared_from_this()] {
    self->canvas_->Close();
    Painter::Wake();
    PlayerRegistry::CountClosed();
  });
}

void Player::Retain() { references_.fetch_add(1); }

bool Player::DropReference() { return references_.fetch_sub(1) == 1; }

State Player::state() const {
  std::lock_guard guard(lock_);
  return state_;
}

bool Player::playing() const {
  std::lock_guard guard(lock_);
  return state_ == State::kPlaying || state_ == State::kStopping;
}

// Between two time events, and when none come, the time advances with the sound.
int64_t Player::time() const {
  std::lock_guard guard(lock_);
  if (!running_ || state_ != State::kPlaying) return time_;
  auto passed = std::chrono::steady_clock::now() - timeAt_;
  int64_t atMost = std::chrono::duration_cast<std::chrono::milliseconds>(passed).count();
  return time_ + std::min(audio_.Played() - timePlayed_, atMost);
}

int64_t Player::length() const {
  std::lock_guard guard(lock_);
  return length_;
}

TrackList* Player::Tracks(TrackType type, bool selectedOnly) const {
  std::lock_guard guard(lock_);
  bool known = running_ && !closing_ && IsKnown(type);
  return TrackList::Make(engine_->native(), known ? media_->native() : nullptr, type, selectedOnly);
}

void Player::SelectTrack(TrackType type, int number) {
  std::lock_guard guard(lock_);
  if (!IsKnown(type)) return;
  if (running_ && !closing_) {
    devlib::SelectTrack(engine_->native(), type, number);
  } else {
    wantedTracks_[static_cast<int>(type)] = number;
  }
}

PictureSize Player::VideoSize() const {
  std::lock_guard guard(lock_);
  return running_ && !closing_ ? media_->VideoSize() : PictureSize{};
}

bool Player::TakeSnapshot(unsigned number, const std::string& path, unsigned width, unsigned height) {
  std::lock_guard guard(lock_);
  if (running_ && !closing_ && canvas_->HasPicture()) {
    libvlc_video_take_snapshot(engine_->native(), number, path.c_str(), width, height);
  }
  return true;
}

// --- Inputs ----------------------------------------------------------------------------------------------------------

void Player::OpenInput() {
  ++input_;
  running_ = false;
  time_ = startAt_;
  reportedTime_ = -1;
  engine_->Start(input_, media_, std::exchange(startAt_, 0), this);
}

void Player::CloseInput(int minimum) {
  closing_ = true;
  running_ = false;
  time_ = 0;
  length_ = -1;
  std::fill(std::begin(selectedTracks_), std::end(selectedTracks_), -1);
  engine_->Stop(input_, minimum);
}

}  // namespace vantro::devlib
