// Measures repeatedly how long an action takes.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace vantro::bench {

// Returns the microseconds of each round, sorted. At least one round runs, at most the given number, for about the
// given seconds.
template <typename Action>
std::vector<double> SortedMicroseconds(size_t rounds, double seconds, Action action) {
  using Clock = std::chrono::steady_clock;
  std::vector<double> taken;
  const auto limit = Clock::now() + std::chrono::duration<double>(seconds);
  do {
    const auto began = Clock::now();
    action();
    taken.push_back(std::chrono::duration<double, std::micro>(Clock::now() - began).count());
  } while (taken.size() < rounds && Clock::now() < limit);
  std::sort(taken.begin(), taken.end());
  return taken;
}

}  // namespace vantro::bench
