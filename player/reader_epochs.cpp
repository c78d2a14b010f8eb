#include "player/reader_epochs.h"

#include <thread>

namespace vantro {

namespace {

// Most readers leave within microseconds, so the wait yields this many times before it first idles.
constexpr int kLooksBeforeIdling = 200;

}  // namespace

void ReaderEpochs::YieldThread() { std::this_thread::yield(); }

void ReaderEpochs::WaitForReaders() {
  const uint64_t target = epoch_.load() + 2;
  int looks = 0;
  while (epoch_.load() < target) {
    if (Advance()) continue;
    if (++looks <= kLooksBeforeIdling) {
      YieldThread();
    } else {
      idle_();
    }
  }
}

bool ReaderEpochs::Advance() {
  const uint64_t next = epoch_.load() + 1;
  if (readers_[next & 1].load() != 0) return false;
  epoch_.store(next);
  return true;
}

}  // namespace vantro
