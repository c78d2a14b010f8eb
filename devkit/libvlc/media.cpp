#include "media.h"

#include <vlc/vlc.h>

#include <cstring>

#include "libvlc4_abi.h"
#include "report.h"

namespace vantro::devlib {
namespace {

// libvlc 3 uses 32-bit counters that wrap around. The value is the low half of the true one.
uint64_t Widened(int counter) { return static_cast<uint32_t>(counter); }

}  // namespace

Media::~Media() {
  if (native_) libvlc_media_release(native_);
}

void Media::Release() {
  if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

void Media::AddOption(const char* option) {
  constexpr char kPictures[] = "vout=";
  const char* name = option[0] == ':' ? option + 1 : option;
  if (strncmp(name, kPictures, sizeof kPictures - 1) == 0) {
    windowless_.store(strcmp(name + sizeof kPictures - 1, "vdummy") == 0, std::memory_order_relaxed);
    return;
  }
  std::lock_guard guard(lock_);
  if (native_) {
    libvlc_media_add_option(native_, option);
  } else {
    options_.emplace_back(option);
  }
}

libvlc_media_t* Media::Native(libvlc_instance_t* instance) {
  std::lock_guard guard(lock_);
  if (native_) return native_;
  native_ = kind_ == Kind::kPath ? libvlc_media_new_path(instance, text_.c_str())
                                 : libvlc_media_new_location(instance, text_.c_str());
  if (!native_) {
    Warn("libvlc makes no media of \"%s\"", text_.c_str());
    return nullptr;
  }
  for (const std::string& option : options_) libvlc_media_add_option(native_, option.c_str());
  return native_;
}

libvlc_media_t* Media::native() {
  std::lock_guard guard(lock_);
  return native_;
}

bool Media::GetStats(MediaStats* stats) {
  libvlc_media_t* media = native();
  libvlc_media_stats_t narrow{};
  if (!media || !libvlc_media_get_stats(media, &narrow)) return false;
  *stats = {};
  stats->readBytes = Widened(narrow.i_read_bytes);
  stats->inputBitrate = narrow.f_input_bitrate;
  stats->demuxReadBytes = Widened(narrow.i_demux_read_bytes);
  stats->demuxBitrate = narrow.f_demux_bitrate;
  stats->demuxCorrupted = Widened(narrow.i_demux_corrupted);
  stats->demuxDiscontinuity = Widened(narrow.i_demux_discontinuity);
  stats->decodedVideo = Widened(narrow.i_decoded_video);
  stats->decodedAudio = Widened(narrow.i_decoded_audio);
  stats->displayedPictures = Widened(narrow.i_displayed_pictures);
  stats->lostPictures = Widened(narrow.i_lost_pictures);
  stats->playedAudioBuffers = Widened(narrow.i_played_abuffers);
  stats->lostAudioBuffers = Widened(narrow.i_lost_abuffers);
  return true;
}

PictureSize Media::VideoSize() {
  libvlc_media_t* media = native();
  if (!media) return {};
  libvlc_media_track_t** tracks = nullptr;
  unsigned count = libvlc_media_tracks_get(media, &tracks);
  PictureSize size;
  for (unsigned i = 0; i < count; ++i) {
    if (tracks[i]->i_type != libvlc_track_video) continue;
    size = {tracks[i]->video->i_width, tracks[i]->video->i_height};
    break;
  }
  libvlc_media_tracks_release(tracks, count);
  return size;
}

}  // namespace vantro::devlib
