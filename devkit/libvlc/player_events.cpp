// How a player reports events, and how it handles the engine's events.
#include <algorithm>
#include <chrono>
#include <utility>

#include "callback_table.h"
#include "player.h"
#include "tracks.h"

namespace vantro::devlib {
namespace {

thread_local const Player* callbackOf = nullptr;

Notice Of(Notice::Kind kind) {
  Notice notice{};
  notice.kind = kind;
  return notice;
}

}  // namespace

bool Player::InOwnCallback() const { return callbackOf == this; }

// --- Reports ------------------------------------------------------------------------------------------------------

void Player::Report(const Notice& notice) {
  if (closed_) return;
  const Player* before = std::exchange(callbackOf, this);
  if (variant_ == Variant::kEvents) {
    listeners_.Notify(notice);
  } else {
    NotifyCallbacks(callbacks_, opaque_, notice);
  }
  callbackOf = before;
}

// A state is reported only when it differs from the last one.
void Player::ReportState(State state) {
  if (state_ == state) return;
  state_ = state;
  Notice notice = Of(Notice::Kind::kState);
  notice.state = state;
  Report(notice);
}

void Player::ReportMedia() {
  Notice notice = Of(Notice::Kind::kMediaChanged);
  notice.media = media_;
  Report(notice);
}

void Player::ReportCapabilities(int32_t now) {
  if (capabilities_ == now) return;
  Notice notice = Of(Notice::Kind::kCapabilities);
  notice.before = std::exchange(capabilities_, now);
  notice.now = now;
  Report(notice);
}

void Player::ReportStopping(StopReason reason) {
  ReportState(State::kStopping);
  Notice notice = Of(Notice::Kind::kMediaStopping);
  notice.media = media_;
  notice.reason = reason;
  Report(notice);
  ReportCapabilities(0);
}

// --- The player's thread ------------------------------------------------------------------------------------------

void Player::Post(std::function<void()> task) {
  thread_->Post([this, weak = weak_from_this(), task = std::move(task)] {
    std::shared_ptr<Player> keep = weak.lock();
    if (!keep) return;
    std::lock_guard guard(lock_);
    if (!closed_) task();
  });
}

void Player::Handle(const EngineEvent& event) {
  if (event.input != input_) return;
  if (event.kind == EngineEvent::Kind::kClosed) return HandleClosed();
  if (closing_) return;
  switch (event.kind) {
    case EngineEvent::Kind::kOpening:
      // At a change of media the state stays Playing.
      if (state_ != State::kPlaying) ReportState(State::kOpening);
      if (variant_ == Variant::kCallbacks) Report(Of(Notice::Kind::kBuffering));
      return;
    case EngineEvent::Kind::kPlaying:
      running_ = true;
      RememberTime(time_);
      return ReportState(State::kPlaying);
    case EngineEvent::Kind::kPaused:
      RememberTime(time());
      return ReportState(State::kPaused);
    case EngineEvent::Kind::kEnded:
      return HandleEnd(StopReason::kEnd);
    case EngineEvent::Kind::kError:
      return HandleEnd(StopReason::kError);
    case EngineEvent::Kind::kSeekable:
      return ReportCapabilities(event.able ? capabilities_ | kCanSeek : capabilities_ & ~kCanSeek);
    case EngineEvent::Kind::kPausable:
      return ReportCapabilities(event.able ? capabilities_ | kCanPause : capabilities_ & ~kCanPause);
    case EngineEvent::Kind::kTrackAdded:
      return HandleTrack(event, Notice::Kind::kTrackAdded);
    case EngineEvent::Kind::kTrackRemoved:
      return HandleTrack(event, Notice::Kind::kTrackRemoved);
    case EngineEvent::Kind::kTrackSelected:
      return HandleTrack(event, Notice::Kind::kTrackSelected);
    default:
      return HandleFigure(event);
  }
}

// Handles events that carry a number and change no state.
void Player::HandleFigure(const EngineEvent& event) {
  Notice notice{};
  notice.percent = event.percent;
  notice.time = event.time;
  notice.position = event.position;
  notice.pictures = static_cast<unsigned>(event.number);
  if (event.kind == EngineEvent::Kind::kTime) {
    // libvlc 3 repeats a time that does not change.
    if (event.time == reportedTime_) return;
    reportedTime_ = event.time;
    RememberTime(event.time);
    notice.kind = Notice::Kind::kTime;
  } else if (event.kind == EngineEvent::Kind::kLength) {
    length_ = event.time;
    notice.kind = Notice::Kind::kLength;
  } else {
    notice.kind = event.kind == EngineEvent::Kind::kBuffering ? Notice::Kind::kBuffering : Notice::Kind::kPictures;
  }
  Report(notice);
}

void Player::RememberTime(int64_t milliseconds) {
  time_ = milliseconds;
  timeAt_ = std::chrono::steady_clock::now();
  timePlayed_ = audio_.Played();
}

// Handles the end or failure of an input. A media that is set to follow an end is opened as at a change.
void Player::HandleEnd(StopReason reason) {
  CloseInput(0);
  if (reason == StopReason::kEnd && following_) {
    next_ = std::exchange(following_, nullptr);
    hasNext_ = true;
    return ReportCapabilities(0);
  }
  started_ = false;
  if (reason == StopReason::kError) Report(Of(Notice::Kind::kError));
  ReportStopping(reason);
}

void Player::HandleTrack(const EngineEvent& event, Notice::Kind kind) {
  if (event.trackType < TrackType::kAudio || event.trackType > TrackType::kText) return;
  Notice notice = Of(kind);
  notice.trackType = event.trackType;
  notice.trackNumber = event.number;
  const int type = static_cast<int>(event.trackType);
  if (kind == Notice::Kind::kTrackSelected) {
    notice.previousTrack = std::exchange(selectedTracks_[type], event.number);
  }
  if (kind == Notice::Kind::kTrackAdded && wantedTracks_[type] == event.number) {
    devlib::SelectTrack(engine_->native(), event.trackType, event.number);
    wantedTracks_[type] = kAnyTrack;
  }
  Report(notice);
}

// Handles the end of closing: reports the state of a stop, and opens a media that was set meanwhile.
void Player::HandleClosed() {
  closing_ = false;
  const uint64_t closed = input_;
  const bool hasNext = std::exchange(hasNext_, false);
  MediaRef next = std::exchange(next_, nullptr);
  if (hasNext && !next) started_ = false;
  if (!started_) ReportState(State::kStopped);
  // A callback may have opened another input.
  if (input_ != closed) return;
  if (hasNext) {
    media_ = std::move(next);
    ReportMedia();
  }
  if (started_ && !closing_ && input_ == closed) OpenInput();
}

}  // namespace vantro::devlib
