#include "channel/session_marker.h"

#include <charconv>

namespace vantro {

namespace {

// Follows the conversions of the C library: leading blanks and one sign are accepted, and everything after the digits
// is ignored.
int64_t ParseTimestamp(std::string_view text) {
  const size_t begin = text.find_first_not_of(" \t\n\v\f\r");
  if (begin == std::string_view::npos) return 0;
  text.remove_prefix(begin);
  // std::from_chars accepts only a minus sign. A minus after the plus would be a second sign.
  if (text.front() == '+') {
    text.remove_prefix(1);
    if (text.starts_with('-')) return 0;
  }
  int64_t value = 0;
  const auto parsed = std::from_chars(text.data(), text.data() + text.size(), value);
  return parsed.ec == std::errc() ? value : 0;
}

void ApplyLine(std::string_view line, NativeMarkerState& state) {
  const size_t equals = line.find('=');
  if (equals == std::string_view::npos) return;
  const std::string_view key = line.substr(0, equals);
  const std::string_view value = line.substr(equals + 1);
  if (key == "running") {
    state.running = value == "1" || value == "true";
  } else if (key == "lastAction") {
    state.lastAction = value;
  } else if (key == "lastActionTs") {
    state.lastActionTs = ParseTimestamp(value);
  }
}

}  // namespace

std::string FormatNativeMarker(bool running, std::string_view lastAction, int64_t lastActionTs) {
  char time[24];
  const char* const timeEnd = std::to_chars(time, time + sizeof time, lastActionTs).ptr;
  std::string text;
  // One allocation, because the marker is written at every call.
  text.reserve(lastAction.size() + 64);
  text.append("running=").append(running ? "1" : "0").append("\n");
  text.append("lastAction=").append(lastAction).append("\n");
  text.append("lastActionTs=").append(time, static_cast<size_t>(timeEnd - time)).append("\n");
  return text;
}

NativeMarkerState ParseNativeMarker(std::string_view text) {
  NativeMarkerState state;
  while (!text.empty()) {
    const size_t newline = text.find('\n');
    ApplyLine(text.substr(0, newline), state);
    if (newline == std::string_view::npos) break;
    text.remove_prefix(newline + 1);
  }
  return state;
}

}  // namespace vantro
