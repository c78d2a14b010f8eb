#include "event_delivery.h"

#include <algorithm>
#include <utility>

#include "windows_thread.h"

namespace vantro::devlib {
namespace {

constexpr size_t kCrowdedQueue = 1000;

thread_local const EventDelivery* deliveringHere = nullptr;

}  // namespace

bool EventDelivery::Start() {
  return StartWindowsThread([self = shared_from_this()] { self->Run(); });
}

int EventDelivery::Attach(int32_t type, EventCallback callback, void* userData) {
  if (!callback) return -1;
  std::lock_guard guard(callbackLock_);
  listeners_.push_back({type, callback, userData});
  return 0;
}

void EventDelivery::Detach(int32_t type, EventCallback callback, void* userData) {
  std::lock_guard guard(callbackLock_);
  auto found = std::find(listeners_.begin(), listeners_.end(), Listener{type, callback, userData});
  if (found != listeners_.end()) listeners_.erase(found);
}

void EventDelivery::Push(Event event, MediaRef media) {
  event.sender = sender_;
  {
    std::lock_guard guard(queueLock_);
    if (closed_) return;
    bool dispensable = event.type == kTimeChanged || event.type == kPositionChanged;
    if (dispensable && queue_.size() >= kCrowdedQueue) return;
    queue_.push_back({event, std::move(media)});
  }
  queued_.notify_one();
}

void EventDelivery::Close() {
  {
    std::lock_guard guard(queueLock_);
    closed_ = true;
    queue_.clear();
  }
  queued_.notify_one();
  std::lock_guard guard(callbackLock_);
  listeners_.clear();
}

bool EventDelivery::OnDeliveryThread() const { return deliveringHere == this; }

void EventDelivery::Run() {
  deliveringHere = this;
  std::unique_lock guard(queueLock_);
  while (true) {
    queued_.wait(guard, [this] { return closed_ || !queue_.empty(); });
    if (closed_) return;
    Queued next = std::move(queue_.front());
    queue_.pop_front();
    guard.unlock();
    Deliver(next.event);
    next.media = nullptr;
    guard.lock();
  }
}

void EventDelivery::Deliver(const Event& event) {
  std::lock_guard guard(callbackLock_);
  // A copy, because a callback may attach and detach; what it detached is not called any more.
  const std::vector<Listener> listeners = listeners_;
  for (const Listener& listener : listeners) {
    if (listener.type != event.type) continue;
    if (std::find(listeners_.begin(), listeners_.end(), listener) == listeners_.end()) continue;
    listener.callback(&event, listener.userData);
  }
}

}  // namespace vantro::devlib
