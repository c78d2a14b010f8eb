// The text of the session marker: whether the native session runs, and what it did last. A process that dies leaves
// "running=1" behind, which the next start takes for a crash. Standard library only; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vantro {

// In the temporary folder; in the current one when there is none.
constexpr char kNativeMarkerFileName[] = "vantro_windows_fullscreen_native_marker.txt";

// What the session marker file says.
struct NativeMarkerState {
  bool running = false;
  std::string lastAction;
  int64_t lastActionTs = 0;  // milliseconds since the Unix epoch

  bool operator==(const NativeMarkerState&) const = default;
};

// Three lines of a key, an equals sign and a value, each ended by a line feed. The action is written as it is.
std::string FormatNativeMarker(bool running, std::string_view lastAction, int64_t lastActionTs);

// More lenient than the writer: keys in any order, the later of two wins, others and lines without an equals sign are
// skipped, "true" counts for "1", and a time without digits or out of range reads as 0. Neither side of the first
// equals sign is trimmed. Any bytes give a state.
NativeMarkerState ParseNativeMarker(std::string_view text);

}  // namespace vantro
