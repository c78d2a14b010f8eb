#include "event_listeners.h"

#include <algorithm>
#include <cstdlib>

#include "report.h"

namespace vantro::devlib {
namespace {

int32_t EventOf(State state) {
  switch (state) {
    case State::kNothingSpecial:
      return kNothingSpecial;
    case State::kOpening:
      return kOpening;
    case State::kBuffering:
      return kBuffering;
    case State::kPlaying:
      return kPlaying;
    case State::kPaused:
      return kPaused;
    case State::kStopped:
      return kStopped;
    case State::kStopping:
      return kStopping;
    case State::kError:
      return kEncounteredError;
  }
  return 0;
}

Event EventOf(int32_t type) {
  Event event;
  event.type = type;
  return event;
}

}  // namespace

int EventListeners::Attach(int32_t type, EventCallback callback, void* userData) {
  if (!callback) return -1;
  std::lock_guard guard(lock_);
  listeners_.push_back({type, callback, userData});
  return 0;
}

void EventListeners::Detach(int32_t type, EventCallback callback, void* userData) {
  std::lock_guard guard(lock_);
  auto found = std::find(listeners_.begin(), listeners_.end(), Listener{type, callback, userData});
  if (found == listeners_.end()) {
    if (closed_) return;
    Warn("libvlc_event_detach: the callback is not attached to event 0x%X", static_cast<unsigned>(type));
    abort();
  }
  listeners_.erase(found);
}

void EventListeners::Notify(const Notice& notice) {
  Event event;
  switch (notice.kind) {
    case Notice::Kind::kMediaChanged:
    case Notice::Kind::kMediaStopping:
      event = EventOf(notice.kind == Notice::Kind::kMediaChanged ? kMediaChanged : kMediaStopping);
      event.u.media = notice.media.get();
      break;
    case Notice::Kind::kState:
      event = EventOf(EventOf(notice.state));
      break;
    case Notice::Kind::kError:
      event = EventOf(kEncounteredError);
      break;
    case Notice::Kind::kBuffering:
      event = EventOf(kBuffering);
      event.u.cache = notice.percent;
      break;
    case Notice::Kind::kCapabilities:
      if (!((notice.before ^ notice.now) & kCanSeek)) return;
      event = EventOf(kSeekableChanged);
      event.u.seekable = (notice.now & kCanSeek) != 0;
      break;
    case Notice::Kind::kTime:
      event = EventOf(kPositionChanged);
      event.u.position = notice.position;
      Send(event);
      event = EventOf(kTimeChanged);
      event.u.time = notice.time;
      break;
    case Notice::Kind::kLength:
      event = EventOf(kLengthChanged);
      event.u.time = notice.time;
      break;
    case Notice::Kind::kTrackAdded:
    case Notice::Kind::kTrackRemoved:
    case Notice::Kind::kTrackSelected: {
      if (notice.trackNumber < 0) return;
      std::string id = TrackId(notice.trackType, notice.trackNumber);
      event = EventOf(notice.kind == Notice::Kind::kTrackAdded     ? kTrackAdded
                      : notice.kind == Notice::Kind::kTrackRemoved ? kTrackRemoved
                                                                   : kTrackSelected);
      event.u.track = {notice.trackType, notice.trackNumber, id.c_str()};
      Send(event);
      return;
    }
    case Notice::Kind::kPictures:
      event = EventOf(kVout);
      event.u.seekable = static_cast<int32_t>(notice.pictures);
      break;
  }
  Send(event);
}

void EventListeners::Send(Event event) {
  event.sender = sender_;
  std::lock_guard guard(lock_);
  // A copy, because a callback may attach and detach. A callback that was detached meanwhile is not called.
  const std::vector<Listener> listeners = listeners_;
  for (const Listener& listener : listeners) {
    if (listener.type != event.type) continue;
    if (std::find(listeners_.begin(), listeners_.end(), listener) == listeners_.end()) continue;
    listener.callback(&event, listener.userData);
  }
}

void EventListeners::Close() {
  std::lock_guard guard(lock_);
  closed_ = true;
  listeners_.clear();
}

}  // namespace vantro::devlib
