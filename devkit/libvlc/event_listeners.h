// A player's event manager, as libvlc 4 had it until 2024: callbacks attached by the number of an event.
#pragma once

#include <mutex>
#include <vector>

#include "libvlc4_abi.h"
#include "notice.h"

namespace vantro::devlib {

class EventListeners {
 public:
  // `sender` is what the events name as their object.
  explicit EventListeners(void* sender) : sender_(sender) {}

  // Windows threads. As in libvlc, callbacks run under a recursive lock, so both wait for a callback in progress unless
  // they are called from it. Attach returns 0, or -1 without a callback. Detach ends the process when the callback is
  // not attached, as libvlc does.
  int Attach(int32_t type, EventCallback callback, void* userData);
  void Detach(int32_t type, EventCallback callback, void* userData);

  // Calls what is attached. Windows threads only.
  void Tell(const Notice& notice);

  // Nothing is told any more.
  void Close();

 private:
  struct Listener {
    int32_t type;
    EventCallback callback;
    void* userData;
    bool operator==(const Listener&) const = default;
  };
  void Send(Event event);

  void* const sender_;
  std::recursive_mutex lock_;
  std::vector<Listener> listeners_;
  bool closed_ = false;
};

}  // namespace vantro::devlib
