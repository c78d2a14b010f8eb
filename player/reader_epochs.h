// Lets one thread replace data that others are reading, and destroy the old data when nobody can be using it any more.
//
// The owner thread publishes a new object, waits for the readers that are inside, and then destroys the old one. A
// reader marks itself for the time it uses what it loaded. Readers never wait and never destroy anything.
//
// The readers here are libvlc's threads, which deliver events, and the owner is the main thread. Why it is built so:
// - A mutex around the data would make a libvlc thread wait for the main thread. The main thread holds such a mutex
//   while it calls libvlc, and libvlc's calls wait for the thread that delivers: neither would go on.
// - A copy of a shared_ptr would let a libvlc thread hold the last reference. The object would then be destroyed there,
//   and a player can't be released inside its own callback.
// - So the main thread waits, and a reader may not wait for it. A reader sends its event to the interface, which hands
//   the bytes over and waits for nobody; sets and kills timers and asks for a client rectangle, none of which sends a
//   message; and asks and scales videos of libvlc. Only the last can wait: for a lock that a video output holds while
//   it sends a message to the window that it draws into, whose thread is the main thread. The wait therefore serves
//   sent messages between two looks (see the idle function). It serves no posted ones: no timer and no request of the
//   interface runs within it. The owner's own data must be consistent when it waits, because a window procedure may
//   run.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

namespace vantro {

class ReaderEpochs {
 public:
  // What the owner thread does between two looks at a reader that takes its time. It must return soon.
  using IdleFunction = void (*)();

  explicit ReaderEpochs(IdleFunction idle = YieldThread) : idle_(idle) {}
  ReaderEpochs(const ReaderEpochs&) = delete;
  ReaderEpochs& operator=(const ReaderEpochs&) = delete;

  // The mark. Holds up WaitForReaders while it lives. Any thread; may be nested.
  class Reader {
   public:
    explicit Reader(ReaderEpochs& epochs) : slot_(epochs.readers_[epochs.epoch_.load() & 1]) { slot_.fetch_add(1); }
    ~Reader() { slot_.fetch_sub(1); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

   private:
    std::atomic<uint32_t>& slot_;
  };

  // Waits until every reader that was inside at the call has left; readers that come later don't hold it up. Owner
  // thread, and not from within a reader.
  void WaitForReaders();

 private:
  static void YieldThread();
  // Moves to the next epoch if the readers that came before the present one have all left.
  bool Advance();

  // Readers count themselves in the slot of the epoch that they saw. An epoch begins only when the slot that it is
  // going to use again has run empty, so two beginnings after a publication every reader from before it has left. All
  // accesses are sequentially consistent: a reader that the wait does not see sees what was published before the wait.
  std::atomic<uint64_t> epoch_{0};
  std::atomic<uint32_t> readers_[2] = {};
  const IdleFunction idle_;
};

// One object that readers of the given epochs load and the owner thread replaces; empty at first.
template <typename T>
class Published {
 public:
  explicit Published(ReaderEpochs& epochs) : epochs_(epochs) {}
  ~Published() { Replace(nullptr); }
  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;

  // The object, or null. Within a ReaderEpochs::Reader of any thread, valid until that ends; on the owner thread, valid
  // until it is replaced.
  const T* Load() const { return current_.load(); }

  // Publishes the object and returns the one before, which nobody uses any more: waits for the readers if there was
  // one. Owner thread.
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
