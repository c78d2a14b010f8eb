// The one callable through which a player's events leave it.
#pragma once

#include <functional>

#include "player/reader_epochs.h"

namespace vantro {

// Takes the event's method name and its argument as text; an empty text means that there is no argument.
using EventCallback = std::function<void(const char* name, const char* argument)>;

// Holds the callable. Any number of threads call it, none of them ever waits; the main thread replaces it. A
// replacement returns when the old callable is out of use, so that what it refers to may die after that. It must not be
// made by the callable itself.
class EventCallbackSlot {
 public:
  explicit EventCallbackSlot(ReaderEpochs& epochs) : epochs_(epochs), callback_(epochs) {}

  EventCallbackSlot& operator=(EventCallback callback) {
    swap(callback);
    return *this;
  }
  // Installs the callable and hands back the one before it. Main thread.
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
