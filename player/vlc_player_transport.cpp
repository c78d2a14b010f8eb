// Media and transport of the single view.
#include <string>
#include <utility>

#include "common/log.h"
#include "common/measures.h"
#include "player/stall_decisions.h"
#include "player/vlc_player.h"

namespace vantro {

namespace {

constexpr int kAudioError = -1;  // what the audio getters return without an audio output
constexpr int kMuted = 1;
// The third argument of set_time. False seeks to the exact time, not to the nearest key frame.
constexpr bool kExactSeek = false;

// Walks a track list to its end and releases it. The entries are not used; the interface only learns that the list was
// read.
void ReadTrackList(const LibVlcFunctions& vlc, libvlc_track_description_t* list) {
  const libvlc_track_description_t* entry = list;
  while (entry) entry = entry->next;
  vlc.libvlc_track_description_list_release(list);
}

// Logs and repairs the player's audio after a play. libvlc starts some audio outputs muted or at volume 0, and a
// machine may have no output.
void RepairAudio(const LibVlcFunctions& vlc, libvlc_media_player_t* player) {
  if (!vlc.libvlc_audio_get_volume || !vlc.libvlc_audio_get_mute) return;
  const int volume = vlc.libvlc_audio_get_volume(player);
  const int mute = vlc.libvlc_audio_get_mute(player);
  LOG_INFO("[VLCPlayer::Play] VLC audio state: volume=%d, muted=%d (-1=error, 0=unmuted, 1=muted)", volume, mute);
  if (volume == kAudioError && mute == kAudioError) {
    LOG_ERROR("[VLCPlayer::Play] ERROR: VLC audio subsystem not working (both volume and mute return -1)");
    LOG_WARNING(
        "[VLCPlayer::Play] Possible causes: No audio devices, VLC audio module failed, or VLC built without audio");
    if (vlc.libvlc_audio_set_volume) {
      const int result = vlc.libvlc_audio_set_volume(player, kFullVolume);
      LOG_INFO("[VLCPlayer::Play] Attempted to force volume=100, result=%d", result);
    }
    return;
  }
  if ((mute == kMuted || volume == 0) && vlc.libvlc_audio_set_mute && vlc.libvlc_audio_set_volume) {
    vlc.libvlc_audio_set_mute(player, 0);
    vlc.libvlc_audio_set_volume(player, kFullVolume);
    LOG_INFO("[VLCPlayer::Play] FIXED: Unmuted and set volume to 100");
  }
}

}  // namespace

bool VLCPlayer::SetMedia(MediaRequest request) {
  const char* const url = request.url.c_str();
  if (request.url.empty()) {
    LOG_ERROR("[VLCPlayer::SetMedia] ERROR: URL is empty.");
    return false;
  }
  LOG_INFO(
      "[VLCPlayer::SetMedia] Called with url=%s, title=%s, networkCacheMs=%d, initialSeekPositionMs=%d, mediaPlayer_.get()=%p, vlcInstance_=%p, volume_=%d",
      url, request.title.c_str(), request.networkCacheMs, request.initialSeekPositionMs,
      static_cast<void*>(mediaPlayer_.get()), static_cast<void*>(instance_.get()), volume_);
  if (!mediaPlayer_ || !instance_) {
    LOG_ERROR("[VLCPlayer::SetMedia] ERROR: Missing mediaPlayer or vlcInstance");
    return false;
  }
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) {
    LOG_ERROR("Failed to load VLC functions for SetMedia");
    return false;
  }
  if (!vlc.libvlc_media_add_option || !vlc.libvlc_media_player_set_media) {
    LOG_ERROR("Failed to get one or more VLC function pointers for SetMedia (set_media=%d, add_option=%d)",
              vlc.libvlc_media_player_set_media != nullptr, vlc.libvlc_media_add_option != nullptr);
    return false;
  }

  StopInternal(true);
  StopStallWatchdog();
  media_.reset(CreateMedia(request.url));
  if (!media_) {
    LOG_ERROR("Failed to create media for URL: %s", url);
    return false;
  }
  vlc.libvlc_media_add_option(media_.get(), ":no-video-title-show");
  vlc.libvlc_media_add_option(media_.get(), (":network-caching=" + std::to_string(request.networkCacheMs)).c_str());
  LOG_INFO("[VLCPlayer::SetMedia] Set network cache to %d ms", request.networkCacheMs);
  vlc.libvlc_media_player_set_media(mediaPlayer_.get(), media_.get());
  current_ = std::move(request);

  if (current_.initialSeekPositionMs > 0 && vlc.libvlc_media_player_set_time) {
    vlc.libvlc_media_player_set_time(mediaPlayer_.get(), current_.initialSeekPositionMs, kExactSeek);
    LOG_INFO("[VLCPlayer::SetMedia]  Set initial seek position to %dms BEFORE play (seek-before-play fix)",
             current_.initialSeekPositionMs);
  }
  Play();
  StartStallWatchdog();
  return true;
}

void VLCPlayer::Play() {
  LOG_INFO("[VLCPlayer::Play] Called, mediaPlayer_.get()=%p, volume_=%d, isMultiViewMode_=%d",
           static_cast<void*>(mediaPlayer_.get()), volume_, IsMultiViewMode());
  if (!mediaPlayer_) {
    LOG_ERROR("[VLCPlayer::Play] ERROR: mediaPlayer_.get() is null");
    return;
  }
  if (!media_) {
    LOG_WARNING("[VLCPlayer::Play] Ignoring play: no media set");
    return;
  }
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) {
    LOG_ERROR("Failed to load VLC functions for Play");
    LOG_ERROR("[VLCPlayer::Play] ERROR: Failed to load VLC DLL");
    return;
  }
  if (!vlc.libvlc_media_player_play) {
    LOG_ERROR("[VLCPlayer::Play] ERROR: Could not get vlc_media_player_play function");
    return;
  }
  vlc.libvlc_media_player_play(mediaPlayer_.get());
  LOG_INFO("[VLCPlayer::Play] Called libvlc_media_player_play successfully");
  RepairAudio(vlc, mediaPlayer_.get());
}

void VLCPlayer::Pause() {
  if (!mediaPlayer_) return;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) {
    LOG_ERROR("Failed to load VLC functions for Pause");
    return;
  }
  if (vlc.libvlc_media_player_pause) vlc.libvlc_media_player_pause(mediaPlayer_.get());
}

bool VLCPlayer::IsPlaying() {
  if (!mediaPlayer_) return false;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) {
    LOG_ERROR("Failed to load VLC functions for IsPlaying");
    return false;
  }
  return vlc.libvlc_media_player_is_playing && vlc.libvlc_media_player_is_playing(mediaPlayer_.get());
}

void VLCPlayer::StopInternal(bool suppress) {
  if (!mediaPlayer_) return;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) {
    LOG_ERROR("Failed to load VLC functions for StopInternal");
    return;
  }
  if (vlc.libvlc_media_player_stop) {
    if (suppress) suppressStoppedEvent_.store(true, std::memory_order_relaxed);
    vlc.libvlc_media_player_stop(mediaPlayer_.get());
  }
  StopStallWatchdog();
}

void VLCPlayer::SetVolume(int volume) {
  LOG_INFO(
      "[VLCPlayer::SetVolume] Called with volume=%d, current volume_=%d, mediaPlayer_.get()=%p, isMultiViewMode_=%d",
      volume, volume_, static_cast<void*>(mediaPlayer_.get()), IsMultiViewMode());
  if (!mediaPlayer_) {
    volume_ = volume;
    LOG_INFO("[VLCPlayer::SetVolume] No mediaPlayer_.get(), just caching volume");
    return;
  }
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) {
    LOG_ERROR("Failed to load VLC functions for SetVolume");
    LOG_ERROR("[VLCPlayer::SetVolume] ERROR: Failed to load VLC DLL");
  } else if (!vlc.libvlc_audio_set_volume) {
    LOG_ERROR("[VLCPlayer::SetVolume] ERROR: Could not get vlc_audio_set_volume function");
  } else {
    const int result = vlc.libvlc_audio_set_volume(mediaPlayer_.get(), volume);
    LOG_INFO("[VLCPlayer::SetVolume] libvlc_audio_set_volume result=%d (0=success, -1=error)", result);
  }
  volume_ = volume;
}

bool VLCPlayer::SeekTo(int64_t milliseconds) {
  if (!mediaPlayer_) return false;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) {
    LOG_ERROR("Failed to load VLC functions for SeekTo");
    return false;
  }
  if (!vlc.libvlc_media_player_set_time) return false;
  vlc.libvlc_media_player_set_time(mediaPlayer_.get(), milliseconds, kExactSeek);
  return true;
}

int64_t VLCPlayer::GetPosition() {
  if (!mediaPlayer_) return 0;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) LOG_ERROR("Failed to load VLC functions for GetPosition");
  return vlc.loaded && vlc.libvlc_media_player_get_time ? vlc.libvlc_media_player_get_time(mediaPlayer_.get()) : 0;
}

int64_t VLCPlayer::GetDuration() {
  if (!mediaPlayer_) return 0;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) LOG_ERROR("Failed to load VLC functions for GetDuration");
  return vlc.loaded && vlc.libvlc_media_player_get_length ? vlc.libvlc_media_player_get_length(mediaPlayer_.get()) : 0;
}

void VLCPlayer::RefreshSpuTracks() {
  if (!mediaPlayer_) return;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded || !vlc.libvlc_video_get_spu_description || !vlc.libvlc_track_description_list_release) return;
  ReadTrackList(vlc, vlc.libvlc_video_get_spu_description(mediaPlayer_.get()));
  if (eventCallback_) eventCallback_("spuTracks", "");
}

void VLCPlayer::RefreshAudioTracks() {
  if (!mediaPlayer_) return;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded || !vlc.libvlc_audio_get_track_description || !vlc.libvlc_track_description_list_release) return;
  ReadTrackList(vlc, vlc.libvlc_audio_get_track_description(mediaPlayer_.get()));
  if (eventCallback_) eventCallback_("audioTracks", "");
}

void VLCPlayer::SetSpuTrack(int id) {
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (mediaPlayer_ && vlc.loaded && vlc.libvlc_video_set_spu) vlc.libvlc_video_set_spu(mediaPlayer_.get(), id);
}

void VLCPlayer::SetAudioTrack(int id) {
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (mediaPlayer_ && vlc.loaded && vlc.libvlc_audio_set_track) vlc.libvlc_audio_set_track(mediaPlayer_.get(), id);
}

void VLCPlayer::RestartMediaPreservingTime() {
  if (!mediaPlayer_) return;
  const std::string url = RestartUrl();
  if (url.empty()) {
    LOG_WARNING("[StallDetector] RestartMediaPreservingTime aborted – missing URL");
    return;
  }
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded || !vlc.libvlc_media_player_get_time) return;
  const libvlc_time_t lastTime = vlc.libvlc_media_player_get_time(mediaPlayer_.get());
  MediaRequest request = current_;
  request.url = url;
  const bool shouldRestorePosition =
      ShouldRestorePosition(request.isLive, request.supportsTimeshift, request.inTimeshiftMode);
  LOG_INFO(
      "[StallDetector] Restarting media (isLive=%d, supportsTimeshift=%d, inTimeshiftMode=%d, "
      "shouldRestorePosition=%d) lastTime=%lldms URL=%s",
      request.isLive, request.supportsTimeshift, request.inTimeshiftMode, shouldRestorePosition,
      static_cast<long long>(lastTime), url.c_str());
  request.networkCacheMs = RestartCacheMs(request.networkCacheMs);
  request.initialSeekPositionMs = RestartSeekMs(shouldRestorePosition, lastTime);
  SetMedia(std::move(request));
}

bool VLCPlayer::EnableMultiView() {
  grid_.Enable(mediaPlayer_, vlcWindow_, current_.title, current_.url);
  return true;
}

bool VLCPlayer::DisableMultiView() {
  if (grid_.Disable(mediaPlayer_)) SetVolume(kFullVolume);
  return true;
}

}  // namespace vantro
