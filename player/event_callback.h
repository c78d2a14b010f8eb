// The callable that receives a player's events.
#pragma once

#include <functional>

#include "player/reader_epochs.h"

namespace vantro {

// Takes the event's method name and its argument as text. An empty text means no argument.
using EventCallback = std::function<void(const char* name, const char* argument)>;

// Holds the callable. Any number of threads may call it at once, and none of them waits. Only the main thread replaces
// it. A replacement returns when no thread uses the old callable any more, so what it refers to may be destroyed after
// that. The callable must not replace itself.
class EventCallbackSlot {
 public:
  explicit EventCallbackSlot(ReaderEpochs& epochs) : epochs_(epochs), callback_(epochs) {}

  EventCallbackSlot& operator=(EventCallback callback) {
    swap(callback);
    return *this;
  }
  // Installs the callable and returns the previous one in its place. Main thread.
  void swap(EventCallback& callback);

  explicit operator bool() const { return callback_.Load() != nullptr; }
  // Calls the callable, if there is one.
  void operator()(const char* name, const char* argument) {
    const ReaderEpochs::Reader reader(epochs_);
    if (const EventCallback* callback = callback_.Load()) (*callback)(name, argument);
  }

 private:
  ReaderEpochs& epochs_;
  Published<EventCallback> callback_;
};

}  // namespace vantro
