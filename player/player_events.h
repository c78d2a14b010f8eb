// The events of a media player that the host handles, and the handling of each.
#pragma once

#include <array>
#include <cstdint>

#include "player/libvlc_api.h"

namespace vantro {

namespace player_event {
constexpr int32_t kMediaChanged = 0x100;
constexpr int32_t kOpening = 0x102;
constexpr int32_t kBuffering = 0x103;
constexpr int32_t kPlaying = 0x104;
constexpr int32_t kPaused = 0x105;
constexpr int32_t kStopped = 0x106;
constexpr int32_t kEncounteredError = 0x10A;
constexpr int32_t kTimeChanged = 0x10B;
constexpr int32_t kPositionChanged = 0x10C;
constexpr int32_t kSeekableChanged = 0x10D;
// The end of the media. This number is outside the range of the media player's events.
constexpr int32_t kEndReached = 5;
}  // namespace player_event

// Selects the member of the event's union that becomes the argument, and its text form.
enum class EventArgument { kNone, kCacheLevel, kErrorText, kPosition, kTime, kSeekable };

// What the player does after it has sent the event to the interface.
enum class EventEffect { kNone, kPlaying, kMediaChanged, kStopWatchdog };

struct PlayerEvent {
  int32_t type;
  const char* method;  // the interface's method
  EventArgument argument;
  EventEffect effect;
};

// Events are attached and detached in this order.
inline constexpr std::array<PlayerEvent, 11> kPlayerEvents = {{
    {player_event::kOpening, "onOpening", EventArgument::kNone, EventEffect::kNone},
    {player_event::kBuffering, "onBuffering", EventArgument::kCacheLevel, EventEffect::kNone},
    {player_event::kPlaying, "onPlaying", EventArgument::kNone, EventEffect::kPlaying},
    {player_event::kMediaChanged, "onMediaChanged", EventArgument::kNone, EventEffect::kMediaChanged},
    {player_event::kPaused, "onPaused", EventArgument::kNone, EventEffect::kStopWatchdog},
    {player_event::kStopped, "onStopped", EventArgument::kNone, EventEffect::kStopWatchdog},
    {player_event::kEndReached, "onEndReached", EventArgument::kNone, EventEffect::kStopWatchdog},
    {player_event::kEncounteredError, "onError", EventArgument::kErrorText, EventEffect::kStopWatchdog},
    {player_event::kPositionChanged, "onPositionChanged", EventArgument::kPosition, EventEffect::kNone},
    {player_event::kTimeChanged, "onTimeChanged", EventArgument::kTime, EventEffect::kNone},
    {player_event::kSeekableChanged, "onSeekableChanged", EventArgument::kSeekable, EventEffect::kNone},
}};

// Returns the row of an event type, or null if the host does not handle the type.
const PlayerEvent* FindPlayerEvent(int32_t type);

// The text of an event's argument. Empty for kNone; six decimals for the cache level and the position.
class EventArgumentText {
 public:
  EventArgumentText(EventArgument argument, const libvlc_event_t& event);
  const char* c_str() const { return text_; }

 private:
  // The longest text is a 32-bit float: a sign, 39 digits, the point and six decimals.
  char text_[64] = "";
};

}  // namespace vantro
