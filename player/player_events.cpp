#include "player/player_events.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>

namespace vantro {

const PlayerEvent* FindPlayerEvent(int32_t type) {
  const auto row = std::find_if(kPlayerEvents.begin(), kPlayerEvents.end(),
                                [type](const PlayerEvent& event) { return event.type == type; });
  return row == kPlayerEvents.end() ? nullptr : &*row;
}

EventArgumentText::EventArgumentText(EventArgument argument, const libvlc_event_t& event) {
  switch (argument) {
    case EventArgument::kNone:
      break;
    case EventArgument::kCacheLevel:
      std::snprintf(text_, sizeof text_, "%f", static_cast<double>(event.u.cache));
      break;
    case EventArgument::kErrorText:
      std::snprintf(text_, sizeof text_, "%s", "Media player encountered an error");
      break;
    case EventArgument::kPosition:
      // The interface expects the position in single precision.
      std::snprintf(text_, sizeof text_, "%f", static_cast<double>(static_cast<float>(event.u.position)));
      break;
    case EventArgument::kTime:
      std::snprintf(text_, sizeof text_, "%" PRId64, event.u.time);
      break;
    case EventArgument::kSeekable:
      std::snprintf(text_, sizeof text_, "%s", event.u.seekable != 0 ? "true" : "false");
      break;
  }
}

}  // namespace vantro
