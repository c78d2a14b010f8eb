// The lines of the host's log that contain an address, as docs/log-lines.md has them.
#pragma once

#include <string_view>

namespace vantro::log_tool {

// The letters say what each "%s" is: A is an address, T is another text of the interface.
struct Line {
  std::string_view form;
  std::string_view slots;
};

inline constexpr Line kAddressLines[] = {
    Line{"[SetMedia] URL=%s isLive=%d supportsTimeshift=%d inTimeshiftMode=%d", "A"},
    Line{"SetMedia: Final URL after parsing: '%s'", "A"},
    Line{"[MvAddStream] *** CALLED *** url=%s, name=%s, isMultiViewMode=%d, current player count=%zu", "AT"},
    Line{"Creating media with new_uri for URL: %s", "A"},
    Line{"Creating media with new_path for path: %s", "A"},
    Line{"Failed to create media with specific function, falling back to new_location for: %s", "A"},
    Line{"[VLCPlayer::SetMedia] Called with url=%s, title=%s, networkCacheMs=%d, initialSeekPositionMs=%d, "
         "mediaPlayer_.get()=%p, vlcInstance_=%p, volume_=%d",
         "AT"},
    Line{"Failed to create media for URL: %s", "A"},
    Line{"[StallDetector] Restarting media (isLive=%d, supportsTimeshift=%d, inTimeshiftMode=%d, "
         "shouldRestorePosition=%d) lastTime=%lldms URL=%s",
         "A"},
    Line{"VodThumbnailWorkerPlugin: getFrame - mediaId=%s, proxyUrl=%s, time=%.2f, size=%dx%d", "AA"},
    Line{"VodThumbnailWorkerPlugin: Creating media from URL: %s", "A"},
};

}  // namespace vantro::log_tool
