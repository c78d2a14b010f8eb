// Any bytes are read as some session marker, and a marker that the host wrote is read back unchanged.
#include <algorithm>

#include "channel/session_marker.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vantro;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const NativeMarkerState read = ParseNativeMarker(text);
  // Nothing is invented: the action is part of the text.
  REQUIRE(text.find(read.lastAction) != std::string_view::npos);
  // The action contains no line feed, so it is unchanged when it is written again.
  const std::string written = FormatNativeMarker(read.running, read.lastAction, read.lastActionTs);
  REQUIRE(ParseNativeMarker(written) == read);
  return 0;
}
