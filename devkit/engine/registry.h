// The state of the loopback engine: engines, messengers, views, outstanding answers, and the faults and observers that
// a test has set.
//
// One lock guards all of it. It is never held during a call to host code, a test's observer or the interface's socket.
#pragma once

#include <windows.h>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "devkit/engine/loopback_control.h"
#include "flutter_host/embedding_api.h"

// The messenger handle that the host holds. It outlives its engine as long as the host holds references.
struct FlutterDesktopMessenger {
  std::atomic<int32_t> references{1};  // the engine's own
  std::mutex lock;                     // FlutterDesktopMessengerLock; held while the engine is destroyed
  std::atomic<int32_t> engine{0};      // the engine's number; 0 after the engine is destroyed
};

struct FlutterDesktopView {
  std::atomic<HWND> window{nullptr};
};

struct FlutterDesktopViewController {
  FlutterDesktopEngine* engine = nullptr;
  std::unique_ptr<FlutterDesktopView> view;  // null when a fault asks for a controller without a view
};

struct FlutterDesktopEngine {
  struct Listener {
    FlutterDesktopMessageCallback callback;
    void* user_data;
  };
  int32_t number = 0;
  FlutterDesktopMessenger* messenger = nullptr;
  FlutterDesktopViewController* controller = nullptr;  // null until one owns the engine
  std::map<std::string, Listener> listeners;
};

namespace vantro::loopback {

using Bytes = std::vector<uint8_t>;
// Takes the host's answer to one message; called at most once.
using Answer = std::function<void(const uint8_t* data, size_t size)>;

// A test's observer, called without the registry's lock. Replacing it waits until the running calls have returned, so
// that a test may keep the observer's data on its stack.
template <typename Function>
class ObserverSlot {
 public:
  void Set(Function function, void* user_data) {
    std::unique_lock guard(mutex_);
    function_ = function;
    user_data_ = user_data;
    idle_.wait(guard, [this] { return running_ <= depth_; });
  }

  template <typename Call>
  void Notify(const Call& call) {
    Function function;
    void* user_data;
    {
      const std::lock_guard guard(mutex_);
      if (!function_) return;
      function = function_;
      user_data = user_data_;
      ++running_;
    }
    ++depth_;
    call(function, user_data);
    --depth_;
    const std::lock_guard guard(mutex_);
    --running_;
    idle_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable idle_;
  Function function_ = nullptr;
  void* user_data_ = nullptr;
  int running_ = 0;
  static inline thread_local int depth_ = 0;  // calls running on this thread
};

class Registry {
 public:
  static Registry& Get();

  // Returns null when a fault is set for it.
  FlutterDesktopEngine* CreateEngine(const FlutterDesktopEngineProperties& properties);
  // Counts the host's outstanding answers as violations, makes the messenger unavailable under its lock, and drops the
  // engine's reference.
  void DestroyEngine(FlutterDesktopEngine* engine);
  void NoteViewSize(int width, int height);

  void AddReference(FlutterDesktopMessenger* messenger);
  void ReleaseReference(FlutterDesktopMessenger* messenger);
  // Does nothing when the engine is destroyed.
  void SetListener(FlutterDesktopMessenger* messenger, const char* channel, FlutterDesktopMessageCallback callback,
                   void* user_data);

  // Passes bytes to the channel's listener on the calling thread, which must be the one that made the engine. Returns
  // false when there is no listener. The answer may come after the return, or never.
  bool Deliver(int32_t engine, const std::string& channel, const uint8_t* bytes, size_t size, Answer answer);
  // Takes the host's answer. A handle that is unknown, already used or another engine's is a violation.
  void TakeAnswer(FlutterDesktopMessenger* messenger, const FlutterDesktopMessageResponseHandle* handle,
                  const uint8_t* data, size_t size);
  // Sends a message of the host; any thread. Returns false when its engine is destroyed, or when a reply is asked for
  // and nobody can give one.
  bool Send(FlutterDesktopMessenger* messenger, const char* channel, const uint8_t* bytes, size_t size,
            FlutterDesktopBinaryReply reply, void* user_data);

  // Uses up one count of a fault. Returns whether there was one.
  bool TakeFault(int32_t LoopbackFaults::*fault);
  void SetFaults(const LoopbackFaults& faults);
  void Reset();

  int32_t EngineCount();
  std::vector<int32_t> LiveEngines();
  int32_t NewestEngine();
  int32_t MessengerReferences() { return references_; }
  int32_t Violations();
  int32_t PendingReplies();
  bool HasListener(int32_t engine, const std::string& channel);
  LoopbackEngineProperties NewestProperties();
  void SetSendAnswer(const uint8_t* bytes, size_t size);

  void SetTopLevelResult(UINT message, bool handled, LRESULT result);
  // Returns the result that a test has set for the message, if any.
  bool TopLevelResult(UINT message, LRESULT* result);

  ObserverSlot<LoopbackSendObserver> send_observer;
  ObserverSlot<LoopbackTopLevelObserver> top_level_observer;
  ObserverSlot<LoopbackViewObserver> view_observer;

 private:
  struct Pending {
    int32_t engine;
    Answer answer;
  };
  Registry() = default;
  void Violation(int32_t engine, const std::string& text);

  std::mutex mutex_;
  std::map<int32_t, FlutterDesktopEngine*> engines_;
  int32_t newest_ = 0;
  std::atomic<int32_t> references_{0};
  // Response handles are these numbers and not addresses, so that a used one is always recognised.
  std::map<uintptr_t, Pending> pending_;
  uintptr_t next_handle_ = 1;
  int32_t violations_ = 0;
  LoopbackFaults faults_{};
  LoopbackEngineProperties properties_{};
  std::map<UINT, LRESULT> top_level_results_;
  std::unique_ptr<Bytes> send_answer_;
};

}  // namespace vantro::loopback
