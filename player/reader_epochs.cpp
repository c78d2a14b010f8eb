#include "player/reader_epochs.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace vantro {

ReaderEpochs::~ReaderEpochs() { WaitForReaders(); }

void ReaderEpochs::Retire(std::shared_ptr<void> object) {
  if (NobodyInside()) {
    object.reset();
  } else {
    retired_.push_back({epoch_.load(std::memory_order_seq_cst), std::move(object)});
  }
  Reclaim();
}

void ReaderEpochs::Reclaim() {
  if (retired_.empty()) return;
  while (Advance() && retired_.back().epoch + 2 > epoch_.load(std::memory_order_seq_cst)) {
  }
  const uint64_t epoch = epoch_.load(std::memory_order_seq_cst);
  const auto firstKept = std::find_if(retired_.begin(), retired_.end(),
                                      [epoch](const Retired& retired) { return retired.epoch + 2 > epoch; });
  // Taken out of the list first: a destructor may come back here.
  std::vector<Retired> free(std::make_move_iterator(retired_.begin()), std::make_move_iterator(firstKept));
  retired_.erase(retired_.begin(), firstKept);
}

void ReaderEpochs::WaitForReaders() {
  const uint64_t target = epoch_.load(std::memory_order_seq_cst) + 2;
  while (epoch_.load(std::memory_order_seq_cst) < target) {
    if (!Advance()) std::this_thread::yield();
  }
  Reclaim();
}

bool ReaderEpochs::NobodyInside() const {
  return readers_[0].load(std::memory_order_seq_cst) == 0 && readers_[1].load(std::memory_order_seq_cst) == 0;
}

bool ReaderEpochs::Advance() {
  const uint64_t next = epoch_.load(std::memory_order_seq_cst) + 1;
  if (readers_[next & 1].load(std::memory_order_seq_cst) != 0) return false;
  epoch_.store(next, std::memory_order_seq_cst);
  return true;
}

}  // namespace vantro
