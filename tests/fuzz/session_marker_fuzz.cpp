// Any bytes read as some session marker, and what the host writes reads back as what it meant.
#include <algorithm>

#include "channel/session_marker.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vantro;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const NativeMarkerState read = ParseNativeMarker(text);
  // Nothing is made up: the action stands in the text.
  REQUIRE(text.find(read.lastAction) != std::string_view::npos);
  // The action holds no line feed, so that it survives being written again.
  const std::string written = FormatNativeMarker(read.running, read.lastAction, read.lastActionTs);
  REQUIRE(ParseNativeMarker(written) == read);
  return 0;
}
