#include "player/event_callback.h"

#include <memory>
#include <utility>

namespace vantro {

void EventCallbackSlot::swap(EventCallback& callback) {
  const EventCallback* const current = callback_.Load();
  EventCallback old = current ? *current : nullptr;
  callback_.Replace(callback ? std::make_unique<const EventCallback>(std::move(callback)) : nullptr);
  if (old) epochs_.WaitForReaders();
  callback = std::move(old);
}

}  // namespace vantro
