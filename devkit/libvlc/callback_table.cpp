#include "callback_table.h"

#include "microseconds.h"

namespace vantro::devlib {
namespace {

template <typename Callback, typename... Arguments>
void Call(Callback callback, void* opaque, Arguments... arguments) {
  if (callback) callback(opaque, arguments...);
}

}  // namespace

void NotifyCallbacks(const PlayerCallbacks* callbacks, void* opaque, const Notice& notice) {
  if (!callbacks) return;
  const std::string id = TrackId(notice.trackType, notice.trackNumber);
  const std::string previous = TrackId(notice.trackType, notice.previousTrack);
  const char* trackId = notice.trackNumber < 0 ? nullptr : id.c_str();
  switch (notice.kind) {
    case Notice::Kind::kMediaChanged:
      return Call(callbacks->mediaChanged, opaque, static_cast<void*>(notice.media.get()));
    case Notice::Kind::kState:
      return Call(callbacks->stateChanged, opaque, notice.state);
    case Notice::Kind::kError:
      return;  // reported as the reason of the stop that follows
    case Notice::Kind::kMediaStopping:
      return Call(callbacks->mediaStopping, opaque, static_cast<void*>(notice.media.get()), notice.reason);
    case Notice::Kind::kBuffering:
      return Call(callbacks->bufferingChanged, opaque, notice.percent / 100.0f);
    case Notice::Kind::kCapabilities:
      return Call(callbacks->capabilitiesChanged, opaque, notice.before, notice.now);
    case Notice::Kind::kTime:
      return Call(callbacks->positionChanged, opaque, Microseconds(notice.time), notice.position);
    case Notice::Kind::kLength:
      return Call(callbacks->lengthChanged, opaque, Microseconds(notice.time));
    case Notice::Kind::kTrackAdded:
      return Call(callbacks->trackListChanged, opaque, 0, notice.trackType, trackId);
    case Notice::Kind::kTrackRemoved:
      return Call(callbacks->trackListChanged, opaque, 1, notice.trackType, trackId);
    case Notice::Kind::kTrackSelected:
      return Call(callbacks->trackSelectionChanged, opaque, notice.trackType,
                  notice.previousTrack < 0 ? nullptr : previous.c_str(), trackId);
    case Notice::Kind::kPictures:
      return Call(callbacks->voutChanged, opaque, notice.pictures);
  }
}

}  // namespace vantro::devlib
