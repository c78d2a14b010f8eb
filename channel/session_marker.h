// The text of the session marker: whether the native session is running, and its last action. A process that crashes or
// is killed leaves "running=1" in the file, and the next start takes this for a crash. Standard library only; any
// thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vantro {

// In the temporary folder, or in the current folder if there is no temporary one.
constexpr char kNativeMarkerFileName[] = "vantro_windows_fullscreen_native_marker.txt";

// The contents of the session marker file.
struct NativeMarkerState {
  bool running = false;
  std::string lastAction;
  int64_t lastActionTs = 0;  // milliseconds since the Unix epoch

  bool operator==(const NativeMarkerState&) const = default;
};

// Returns three lines of a key, an equals sign and a value, each ended by a line feed. The action is not escaped.
std::string FormatNativeMarker(bool running, std::string_view lastAction, int64_t lastActionTs);

// More lenient than FormatNativeMarker. Keys may come in any order, and the last of two equal keys wins. Other keys and
// lines without an equals sign are skipped. "true" counts as "1". A time without digits or out of range is 0. Spaces
// around the first equals sign are not trimmed. Every input gives a valid state.
NativeMarkerState ParseNativeMarker(std::string_view text);

}  // namespace vantro
