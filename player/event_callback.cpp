#include "player/event_callback.h"

#include <memory>
#include <utility>

namespace vantro {

void EventCallbackSlot::swap(EventCallback& callback) {
  auto next = callback ? std::make_unique<EventCallback>(std::move(callback)) : nullptr;
  const std::unique_ptr<EventCallback> old = callback_.Replace(std::move(next));
  callback = old ? std::move(*old) : nullptr;
}

}  // namespace vantro
