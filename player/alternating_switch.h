// A switch that any thread may turn on and off. Its turns are carried out in order, one at a time.
//
// A thread that finds no turn in progress carries out its own turn, and then the turns that other threads made in the
// meantime. A thread that finds a turn in progress leaves its own turn to that thread. No thread waits. Turns
// alternate, so the number of open turns is enough to know which they are. After many turns in one go, a thread drops
// the open turns in pairs of on and off. Otherwise threads that turn the switch without a pause would keep it busy for
// ever.
#pragma once

#include <atomic>
#include <cstdint>

namespace vantro {

class AlternatingSwitch {
 public:
  AlternatingSwitch() = default;
  AlternatingSwitch(const AlternatingSwitch&) = delete;
  AlternatingSwitch& operator=(const AlternatingSwitch&) = delete;

  enum class Turn {
    kNone,      // the switch is already on that side
    kOwn,       // the caller must call CarryOutTurns
    kByAnother  // another thread carries the turn out
  };

  // Any thread.
  bool IsOn() const { return (state_.load(std::memory_order_relaxed) & kOn) != 0; }
  explicit operator bool() const { return IsOn(); }

  // Turns the switch. Any thread.
  Turn TurnTo(bool on) {
    uint32_t before = state_.load(std::memory_order_relaxed);
    do {
      if (((before & kOn) != 0) == on) return Turn::kNone;
    } while (!state_.compare_exchange_weak(before, (before ^ kOn) + kOneOpen, std::memory_order_acq_rel,
                                           std::memory_order_relaxed));
    return before < kOneOpen ? Turn::kOwn : Turn::kByAnother;
  }

  // Carries out the caller's own turn to the given side, and the turns after it. Calls carryOut(on) for each; no two of
  // these calls overlap, on any thread. Each call sees what the call before it wrote.
  template <typename CarryOut>
  void CarryOutTurns(bool on, const CarryOut& carryOut) {
    int count = 0;
    do {
      carryOut(on);
      on = !on;
    } while (FinishTurn(++count >= kTurnsInOneGo));
  }

  static constexpr int kTurnsInOneGo = 16;

 private:
  // Returns whether another turn is open. It is the opposite of the last one.
  bool FinishTurn(bool cancelPairs) {
    uint32_t before = state_.load(std::memory_order_relaxed);
    for (;;) {
      const uint32_t open = before / kOneOpen - 1;
      const uint32_t left = cancelPairs ? open % 2 : open;
      if (state_.compare_exchange_weak(before, left * kOneOpen + (before & kOn), std::memory_order_acq_rel,
                                       std::memory_order_relaxed)) {
        return left != 0;
      }
    }
  }

  static constexpr uint32_t kOn = 1;
  static constexpr uint32_t kOneOpen = 2;

  std::atomic<uint32_t> state_{0};  // kOn, plus kOneOpen for each turn that is not carried out yet
};

}  // namespace vantro
