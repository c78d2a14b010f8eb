// The host's callbacks on one player. It does what libvlc's event manager does, for either interface.
//
// Callbacks run under a recursive lock, on the thread that delivers. Attach and Detach wait for a callback in progress,
// unless they are called from it. A callback that waits for a thread that is about to attach or detach deadlocks, as it
// does with libvlc's own event manager.
#pragma once

#include <mutex>
#include <vector>

#include "runtime/libvlc_abi.h"

namespace vantro::runtime {

class EventList {
 public:
  // Any thread. The same callback may be attached several times and to several types.
  void Attach(int32_t type, EventCallback callback, void* userData);

  // Any thread. Removes the oldest equal attachment. If there is none, nothing happens, where libvlc 4 aborts.
  void Detach(int32_t type, EventCallback callback, void* userData);

  // Calls what is attached to the event's type, in the order of attachment. What a callback detaches meanwhile is no
  // longer called. What it attaches is called from the next event on.
  void Deliver(const Event& event);

  // Waits for a callback in progress, unless called from it. No callback starts after the return.
  void Close();

 private:
  struct Listener {
    int32_t type;
    EventCallback callback;
    void* userData;
    bool operator==(const Listener&) const = default;
  };

  std::recursive_mutex lock_;
  std::vector<Listener> listeners_;
  bool closed_ = false;
};

}  // namespace vantro::runtime
