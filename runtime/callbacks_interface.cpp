// libvlc 4 with callbacks at the player's creation: it has no event managers and counts in microseconds. The player's
// callbacks become the events that the host knows.
#include <limits>

#include "runtime/interface.h"
#include "runtime/player.h"

namespace vantro::runtime {
namespace {

enum StopReason : int { kBecauseOfError, kBecauseOfEnd, kBecauseOfUser };

constexpr int kCanSeek = 1;
constexpr int64_t kMicrosecondsPerMillisecond = 1000;

// struct libvlc_media_player_cbs, version 0. Each function gets the `opaque` of libvlc_media_player_new first. Slots
// that stay null are of no use to the host.
struct Callbacks {
  uint32_t version = 0;
  void (*mediaChanged)(void*, Media*) = nullptr;
  void (*mediaStopping)(void*, Media*, int reason) = nullptr;
  void (*stateChanged)(void*, State) = nullptr;
  void (*bufferingChanged)(void*, float) = nullptr;
  void (*capabilitiesChanged)(void*, int before, int now) = nullptr;
  void (*positionChanged)(void*, int64_t time, double position) = nullptr;
  void (*lengthChanged)(void*, int64_t) = nullptr;
  void (*trackListChanged)(void*, int action, TrackType, const char* id) = nullptr;
  void (*trackSelectionChanged)(void*, TrackType, const char* unselected, const char* selected) = nullptr;
  void* programListChanged = nullptr;
  void* programSelectionChanged = nullptr;
  void* titlesChanged = nullptr;
  void* titleSelectionChanged = nullptr;
  void* chapterSelectionChanged = nullptr;
  void* recordingChanged = nullptr;
  void* screenshotTaken = nullptr;
  void* mediaParsed = nullptr;
  void* mediaMetaChanged = nullptr;
  void* mediaSubitemsChanged = nullptr;
  void* mediaAttachmentsAdded = nullptr;
  void* voutChanged = nullptr;
  void* corkChanged = nullptr;
  void* audioVolumeChanged = nullptr;
  void* audioMuteChanged = nullptr;
  void* audioDeviceChanged = nullptr;
};
static_assert(offsetof(Callbacks, mediaChanged) == 8 && sizeof(Callbacks) == 8 + 25 * sizeof(void*));

RealPlayer* (*newRealPlayer)(Instance*, const Callbacks*, void*) = nullptr;

const char* Resolve(Lookup find) {
  newRealPlayer = reinterpret_cast<decltype(newRealPlayer)>(find("libvlc_media_player_new"));
  return newRealPlayer ? nullptr : "libvlc_media_player_new";
}

int64_t ToReal(int64_t milliseconds) {
  if (milliseconds < 0) return milliseconds;
  constexpr int64_t kLargest = std::numeric_limits<int64_t>::max();
  return milliseconds > kLargest / kMicrosecondsPerMillisecond ? kLargest : milliseconds * kMicrosecondsPerMillisecond;
}

int64_t ToHost(int64_t microseconds) { return microseconds < 0 ? -1 : microseconds / kMicrosecondsPerMillisecond; }

Event Plain(EventType type) { return {type, nullptr, {}}; }

void Deliver(void* opaque, const Event& event) { static_cast<Player*>(opaque)->Deliver(event); }

void OnMediaChanged(void* opaque, Media* media) {
  Event event = Plain(kMediaChanged);
  event.u.media = media;
  Deliver(opaque, event);
}

// This interface has no error event. The reason of a stop reports an error.
void OnMediaStopping(void* opaque, Media*, int reason) {
  if (reason == kBecauseOfError) Deliver(opaque, Plain(kEncounteredError));
}

void OnStateChanged(void* opaque, State state) {
  switch (state) {
    case State::kNothingSpecial:
      return Deliver(opaque, Plain(kNothingSpecial));
    case State::kOpening:
      return Deliver(opaque, Plain(kOpening));
    case State::kPlaying:
      return Deliver(opaque, Plain(kPlaying));
    case State::kPaused:
      return Deliver(opaque, Plain(kPaused));
    case State::kStopped:
      return Deliver(opaque, Plain(kStopped));
    case State::kStopping:
      return Deliver(opaque, Plain(kStopping));
    case State::kBuffering:  // has its own callback
    case State::kError:      // comes with the reason of the stop
      return;
  }
}

void OnBufferingChanged(void* opaque, float share) {
  Event event = Plain(kBuffering);
  event.u.cache = share * 100.0f;
  Deliver(opaque, event);
}

void OnCapabilitiesChanged(void* opaque, int before, int now) {
  if ((before & kCanSeek) == (now & kCanSeek)) return;
  Event event = Plain(kSeekableChanged);
  event.u.seekable = (now & kCanSeek) != 0;
  Deliver(opaque, event);
}

void OnPositionChanged(void* opaque, int64_t microseconds, double position) {
  Event event = Plain(kPositionChanged);
  event.u.position = position;
  Deliver(opaque, event);
  event = Plain(kTimeChanged);
  event.u.time = ToHost(microseconds);
  Deliver(opaque, event);
}

void OnTrackSelectionChanged(void* opaque, TrackType type, const char*, const char* selected) {
  if (!selected) return;
  Event event = Plain(kEsSelected);
  event.u.trackType = static_cast<int32_t>(type);
  Deliver(opaque, event);
}

// It must outlive every player and stay unchanged.
constexpr Callbacks kCallbacks = {
    .mediaChanged = OnMediaChanged,
    .mediaStopping = OnMediaStopping,
    .stateChanged = OnStateChanged,
    .bufferingChanged = OnBufferingChanged,
    .capabilitiesChanged = OnCapabilitiesChanged,
    .positionChanged = OnPositionChanged,
    .trackSelectionChanged = OnTrackSelectionChanged,
};

RealPlayer* NewPlayer(Instance* instance, Player* player) { return newRealPlayer(instance, &kCallbacks, player); }

// There is nothing to detach. The adapter closes its own delivery before the release, so that Player::Deliver drops
// what still comes from the library.
void EndEvents(Player*) {}

}  // namespace

const Interface& CallbacksInterface() {
  static constexpr Interface table = {
      .name = "callbacks, microseconds",
      .mark = "libvlc_media_player_set_next_media",
      .resolve = Resolve,
      .newPlayer = NewPlayer,
      .endEvents = EndEvents,
      .toReal = ToReal,
      .toHost = ToHost,
  };
  return table;
}

}  // namespace vantro::runtime
