// Reclamation for data that one thread replaces while others read it, without making a reader wait.
//
// The owner thread replaces an object by publishing another one and retiring the old. Readers announce themselves for
// the time they use what they loaded. A retired object is destroyed at once when no reader is inside, which is the
// usual case, and otherwise by a later call of the owner, when every reader that could have seen it has left. Readers
// never wait and never free; readers that follow one another without a pause don't hold up reclamation.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

namespace vantro {

class ReaderEpochs {
 public:
  ReaderEpochs() = default;
  // Waits for the readers inside and destroys what is retired. Owner thread.
  ~ReaderEpochs();
  ReaderEpochs(const ReaderEpochs&) = delete;
  ReaderEpochs& operator=(const ReaderEpochs&) = delete;

  // Holds off the destruction of everything that is published while it lives. Any thread; may be nested.
  class Reader {
   public:
    explicit Reader(ReaderEpochs& epochs) : slot_(epochs.readers_[epochs.epoch_.load(std::memory_order_seq_cst) & 1]) {
      slot_.fetch_add(1, std::memory_order_seq_cst);
    }
    ~Reader() { slot_.fetch_sub(1, std::memory_order_seq_cst); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

   private:
    std::atomic<uint32_t>& slot_;
  };

  // Takes an object that new readers can no longer reach, and destroys it as soon as it may. Never waits. Owner thread.
  void Retire(std::shared_ptr<void> object);

  // Destroys the retired objects that no reader can hold any more. Never waits. Owner thread.
  void Reclaim();

  // Waits until every reader that was inside at the call has left, then reclaims. Owner thread, and not from within a
  // reader.
  void WaitForReaders();

  // Objects retired and not yet destroyed. Owner thread.
  size_t RetiredCount() const { return retired_.size(); }

 private:
  struct Retired {
    uint64_t epoch;
    std::shared_ptr<void> object;
  };

  bool NobodyInside() const;
  // Moves to the next epoch if the readers that came before the present one have all left.
  bool Advance();

  // Readers count themselves in the slot of the epoch that they saw. An epoch begins only when the slot that it is
  // going to use again has run empty, so two beginnings after a retirement every reader from before it has left.
  std::atomic<uint64_t> epoch_{0};
  std::atomic<uint32_t> readers_[2] = {};
  std::vector<Retired> retired_;
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
  const T* Load() const { return current_.load(std::memory_order_seq_cst); }

  // Owner thread; never waits.
  void Replace(std::unique_ptr<const T> object) {
    const T* const old = current_.exchange(object.release(), std::memory_order_seq_cst);
    if (old) epochs_.Retire(std::shared_ptr<T>(const_cast<T*>(old)));
  }

 private:
  ReaderEpochs& epochs_;
  std::atomic<const T*> current_{nullptr};
};

}  // namespace vantro
