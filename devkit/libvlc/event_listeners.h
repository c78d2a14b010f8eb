// A player's event manager, as in libvlc 4 until 2024: callbacks are attached by the number of an event.
#pragma once

#include <mutex>
#include <vector>

#include "libvlc4_abi.h"
#include "notice.h"

namespace vantro::devlib {

class EventListeners {
 public:
  // `sender` is the object that the events name.
  explicit EventListeners(void* sender) : sender_(sender) {}

  // Windows threads. As in libvlc, callbacks run under a recursive lock. Attach and Detach therefore wait for a
  // callback in progress unless they are called from it. Attach returns 0, or -1 without a callback. Detach ends the
  // process when the callback is not attached, as libvlc does.
  int Attach(int32_t type, EventCallback callback, void* userData);
  void Detach(int32_t type, EventCallback callback, void* userData);

  // Calls the attached callbacks. Windows threads only.
  void Notify(const Notice& notice);

  // After this no callback is called.
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
