#include "runtime/event_list.h"

#include <algorithm>

namespace vantro::runtime {

void EventList::Attach(int32_t type, EventCallback callback, void* userData) {
  const std::lock_guard guard(lock_);
  listeners_.push_back({type, callback, userData});
}

void EventList::Detach(int32_t type, EventCallback callback, void* userData) {
  const std::lock_guard guard(lock_);
  const auto found = std::find(listeners_.begin(), listeners_.end(), Listener{type, callback, userData});
  if (found != listeners_.end()) listeners_.erase(found);
}

void EventList::Deliver(const Event& event) {
  const std::lock_guard guard(lock_);
  const std::vector<Listener> attached = listeners_;
  for (const Listener& listener : attached) {
    if (listener.type != event.type || closed_) continue;
    if (std::find(listeners_.begin(), listeners_.end(), listener) == listeners_.end()) continue;
    listener.callback(&event, listener.userData);
  }
}

void EventList::Close() {
  const std::lock_guard guard(lock_);
  closed_ = true;
}

}  // namespace vantro::runtime
