// Lets one thread replace data that other threads read, and destroy the old data once no reader uses it.
//
// The owner thread publishes a new object, waits for the readers that are inside, and then destroys the old object. A
// reader marks itself while it uses what it loaded. Readers never wait and never destroy anything.
//
// Here the readers are libvlc's threads, which deliver events, and the owner is the main thread. Reasons for this
// design:
// - A mutex around the data could deadlock. The main thread would hold the mutex while it calls libvlc, and that call
// waits for the libvlc thread that delivers an event. That thread would wait for the mutex.
// - With copies of a shared_ptr, a libvlc thread could hold the last reference. It would then destroy the object, and a
// player must not be released inside its own callback.
// - So the main thread waits, and a reader must not wait for the main thread. A reader sends its event to the
// interface, which does not block. It sets and kills timers and gets a client rectangle; these calls send no message.
// It also reads and scales videos through libvlc. Only the last can block: a video output may hold a lock while it
// sends a message to the window that it draws into, and that window belongs to the main thread. The wait therefore
// serves sent messages between two checks (see the idle function). It serves no posted messages, so no timer and no
// request of the interface runs during the wait. A window procedure may run, so the owner's data must be consistent
// when it waits.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

namespace vantro {

class ReaderEpochs {
 public:
  // Called on the owner thread between two checks, when a reader takes long. It must return soon.
  using IdleFunction = void (*)();

  explicit ReaderEpochs(IdleFunction idle = YieldThread) : idle_(idle) {}
  ReaderEpochs(const ReaderEpochs&) = delete;
  ReaderEpochs& operator=(const ReaderEpochs&) = delete;

  // Marks the thread as a reader. WaitForReaders waits while this object exists. Any thread; may be nested.
  class Reader {
   public:
    explicit Reader(ReaderEpochs& epochs) : slot_(epochs.readers_[epochs.epoch_.load() & 1]) { slot_.fetch_add(1); }
    ~Reader() { slot_.fetch_sub(1); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

   private:
    std::atomic<uint32_t>& slot_;
  };

  // Waits until every reader that was inside at the time of the call has left. Does not wait for readers that enter
  // later. Owner thread; not within a Reader.
  void WaitForReaders();

 private:
  static void YieldThread();
  // Starts the next epoch if all readers from before the current one have left. Returns whether it did.
  bool Advance();

  // A reader counts itself in the slot of the epoch that it saw. There are two slots, used in turn, and an epoch starts
  // only when its slot is empty. So when two epochs have started after a publication, every reader from before it has
  // left. All accesses are sequentially consistent: a reader that the wait does not see sees what was published before
  // the wait.
  std::atomic<uint64_t> epoch_{0};
  std::atomic<uint32_t> readers_[2] = {};
  const IdleFunction idle_;
};

// An object that readers of the given epochs load and the owner thread replaces. Empty at first.
template <typename T>
class Published {
 public:
  explicit Published(ReaderEpochs& epochs) : epochs_(epochs) {}
  ~Published() { Replace(nullptr); }
  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;

  // Returns the object, or null. On any thread within a ReaderEpochs::Reader: valid until that Reader ends. On the
  // owner thread: valid until the object is replaced.
  const T* Load() const { return current_.load(); }

  // Publishes the object and returns the previous one. If there was one, first waits until no reader uses it. Owner
  // thread.
  std::unique_ptr<T> Replace(std::unique_ptr<T> object) {
    std::unique_ptr<T> old(current_.exchange(object.release()));
    if (old) epochs_.WaitForReaders();
    return old;
  }

 private:
  ReaderEpochs& epochs_;
  std::atomic<T*> current_{nullptr};
};

}  // namespace vantro
