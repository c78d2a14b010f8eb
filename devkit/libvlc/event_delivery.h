// Carries a player's events from libvlc's threads to the program's callbacks.
//
// libvlc's native threads have no Windows thread block, so program code must never run on them: they push, and a thread
// made with CreateThread delivers, one for each player. As in libvlc, callbacks run under a recursive lock, so Attach
// and Detach wait for a callback in progress unless they are called from it.
#pragma once

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

#include "libvlc4_abi.h"
#include "media.h"

namespace vantro::devlib {

class EventDelivery : public std::enable_shared_from_this<EventDelivery> {
 public:
  // `sender` is what the events name as their object.
  explicit EventDelivery(void* sender) : sender_(sender) {}

  // Starts the delivering thread. To be called once, on a Windows thread. False if no thread could be made.
  bool Start();

  // Any Windows thread.
  int Attach(int32_t type, EventCallback callback, void* userData);
  void Detach(int32_t type, EventCallback callback, void* userData);

  // Any thread, native ones included; never blocks on a callback. `media` is kept alive until the event is delivered.
  // A callback that hangs makes the queue grow, so time and position events are dropped from a thousand entries on.
  void Push(Event event, MediaRef media = nullptr);

  // Drops what is queued, waits for a running callback unless called from it, and ends the thread. No callback starts
  // after the return.
  void Close();

  // True on the thread that delivers this player's events, that is inside one of its callbacks.
  bool OnDeliveryThread() const;

 private:
  struct Listener {
    int32_t type;
    EventCallback callback;
    void* userData;
    bool operator==(const Listener&) const = default;
  };
  struct Queued {
    Event event;
    MediaRef media;
  };

  void Run();
  void Deliver(const Event& event);

  void* const sender_;
  std::mutex queueLock_;
  std::condition_variable queued_;
  std::deque<Queued> queue_;
  bool closed_ = false;
  std::recursive_mutex callbackLock_;
  std::vector<Listener> listeners_;
};

}  // namespace vantro::devlib
