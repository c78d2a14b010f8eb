// A single value that several threads read and write without an order among them.
#pragma once

#include <atomic>

namespace vantro {

// Reads like the plain value and is never torn. Relaxed: it orders nothing else, so two such values read one after the
// other need not belong together. Passing one to a variadic function takes a cast.
template <typename T>
class Relaxed {
 public:
  constexpr Relaxed(T value) : value_(value) {}
  Relaxed(const Relaxed&) = delete;
  Relaxed& operator=(const Relaxed&) = delete;

  operator T() const { return value_.load(std::memory_order_relaxed); }
  // The value and not the object, as std::atomic's does.
  T operator=(T value) {  // NOLINT(misc-unconventional-assign-operator)
    value_.store(value, std::memory_order_relaxed);
    return value;
  }
  // Stores the value and returns the one before it, in one step: of several threads, one alone sees the change.
  T Exchange(T value) { return value_.exchange(value, std::memory_order_relaxed); }
  // Adds one and returns the value before it. For integers.
  T Increment() { return value_.fetch_add(1, std::memory_order_relaxed); }

 private:
  std::atomic<T> value_;
};

}  // namespace vantro
