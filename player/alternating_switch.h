// A switch that any thread turns on and off, whose turns are carried out one by one and in order.
//
// The thread whose turn finds none under way carries it out, and after it those that other threads have made meanwhile.
// A thread that finds a turn under way leaves its own to that thread: nobody ever waits. Turns alternate, so the number
// of those that are open tells what they are. A thread that has carried out many in one go lets pairs of open turns
// cancel each other: threads that turn the switch without a pause would hold it for ever.
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
    kNone,      // the switch stands so already
    kOwn,       // the caller has to go on with CarryOutTurns
    kByAnother  // another thread carries it out
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

  // Carries out the caller's own turn to the given side and those that follow it: calls carryOut(on) for each, one
  // after the other on all threads together. What was written for one turn is seen where the next is carried out.
  template <typename CarryOut>
  void CarryOutTurns(bool on, const CarryOut& carryOut) {
    int count = 0;
    do {
      carryOut(on);
      on = !on;
      ++count;
    } while (FinishTurn(count >= kTurnsInOneGo));
  }

  static constexpr int kTurnsInOneGo = 16;

 private:
  // Returns whether a turn is left, which is the opposite of the last one.
  bool FinishTurn(bool cancelPairs) {
    uint32_t before = state_.load(std::memory_order_relaxed);
    uint32_t after = 0;
    do {
      const uint32_t open = before / kOneOpen - 1;
      after = (cancelPairs ? open % 2 : open) * kOneOpen + (before & kOn);
    } while (!state_.compare_exchange_weak(before, after, std::memory_order_acq_rel, std::memory_order_relaxed));
    return after >= kOneOpen;
  }

  static constexpr uint32_t kOn = 1;
  static constexpr uint32_t kOneOpen = 2;

  std::atomic<uint32_t> state_{0};  // kOn, and kOneOpen for each turn that is not carried out yet
};

}  // namespace vantro
