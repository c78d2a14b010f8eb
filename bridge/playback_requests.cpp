// Loading, transport and the position. The requests do no playback themselves: they settle how a request is read and
// how a failure is answered.
#include "bridge/argument_readers.h"
#include "bridge/request_handlers.h"
#include "common/log.h"
#include "player/vlc_player.h"

namespace vantro::requests {

namespace {

constexpr int kDefaultNetworkCacheMs = 5000;
constexpr char kPlayerProfile[] = "windows_fullscreen";

struct MediaRequest {
  std::string url;
  std::string title;
  int networkCacheMs;
  int initialSeekPositionMs;
  bool isLive;
  bool supportsTimeshift;
  bool inTimeshiftMode;
};

std::string ReadEither(const MethodCall& call, const char* key, const char* otherKey) {
  std::string text = ReadStringArgument(call, key);
  return text.empty() ? ReadStringArgument(call, otherKey) : text;
}

// There is one profile, and no behaviour hangs on it.
void LogPlayerProfile(const std::string& profile) {
  if (profile.empty()) return;
  if (profile == kPlayerProfile) {
    LOG_DEBUG("[SetMedia] Player profile matches (%s)", profile.c_str());
  } else {
    LOG_DEBUG("[SetMedia] Unexpected player profile '%s' (expected 'windows_fullscreen')", profile.c_str());
  }
}

// Reads every key before anything is tested, so that the log of a bad request is complete.
MediaRequest ReadMediaRequest(const MethodCall& call) {
  MediaRequest request;
  request.url = ReadEither(call, "URL", "url");
  request.title = ReadEither(call, "title", "Title");
  request.networkCacheMs = ReadIntArgument(call, "networkCacheMs", kDefaultNetworkCacheMs);
  request.initialSeekPositionMs = ReadIntArgument(call, "initialSeekPositionMs", 0);
  if (request.initialSeekPositionMs > 0) {
    LOG_DEBUG("[SetMedia] Received initialSeekPositionMs=%d - will seek before play", request.initialSeekPositionMs);
  }
  request.isLive = ReadBoolArgument(call, "isLiveStream", true);
  request.supportsTimeshift = ReadBoolArgument(call, "supportsTimeshift", false);
  request.inTimeshiftMode = ReadBoolArgument(call, "isInTimeshiftMode", false);
  LOG_DEBUG("[SetMedia] URL=%s isLive=%d supportsTimeshift=%d inTimeshiftMode=%d", request.url.c_str(), request.isLive,
            request.supportsTimeshift, request.inTimeshiftMode);
  LogPlayerProfile(ReadStringArgument(call, "playerProfile"));
  // A local proxy, if there is one, is already in the address; "originalUrl" tells what it stands for and is not
  // needed here.
  if (ReadBoolArgument(call, "localVodProxyEnabled", false)) LOG_DEBUG("[SetMedia] Local proxy enabled flag set");
  LOG_DEBUG("SetMedia: Final URL after parsing: '%s'", request.url.c_str());
  LOG_DEBUG("SetMedia: Using networkCacheMs: %d", request.networkCacheMs);
  return request;
}

// What the two kinds of seek log.
struct SeekTexts {
  const char* failed;
  const char* ignored;
};
constexpr SeekTexts kSeek = {"PLAYER_ERROR: Failed to seek", "Seek ignored: no media set"};
constexpr SeekTexts kInitialSeek = {"PLAYER_ERROR: Failed to seek to initial position",
                                    "SeekToInitialPosition ignored: no media set"};

bool SeekWith(const SeekTexts& texts, MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  if (!handler.vlcPlayer_->media_) {
    LOG_WARNING("%s", texts.ignored);
    return ReplyNotReady(handler, result);
  }
  const bool sought = handler.vlcPlayer_->SeekTo(ReadIntArgument(call, "positionMs", 0));
  if (!sought) {
    LOG_ERROR("%s", texts.failed);
    handler.ShowToast("Seek failed", false);
  }
  return Reply(result, sought);
}

bool ReplyTime(MethodResult& result, int64_t milliseconds) {
  result.Success(EncodableValue(milliseconds));
  return true;
}

}  // namespace

bool SetMedia(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  const MediaRequest request = ReadMediaRequest(call);
  if (request.url.empty()) {
    result.Error("INVALID_ARGUMENT", "URL is required");
    return true;
  }
  const bool set =
      handler.vlcPlayer_->SetMedia(request.url, request.title, request.networkCacheMs, request.initialSeekPositionMs,
                                   request.isLive, request.supportsTimeshift, request.inTimeshiftMode);
  if (!set) LOG_ERROR("PLAYER_ERROR: Failed to set media");
  return Reply(result, set);
}

bool Play(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  if (!handler.vlcPlayer_->media_) {
    LOG_WARNING("Play ignored: no media set");
    return ReplyNotReady(handler, result);
  }
  handler.vlcPlayer_->Play();
  return Reply(result, true);
}

bool Pause(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  handler.vlcPlayer_->Pause();
  return Reply(result, true);
}

bool PlayPause(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  VLCPlayer& player = *handler.vlcPlayer_;
  if (player.IsPlaying()) {
    player.Pause();
    return Reply(result, true);
  }
  if (!player.media_) {
    LOG_WARNING("PlayPause ignored: no media set");
    return ReplyNotReady(handler, result);
  }
  player.Play();
  return Reply(result, true);
}

bool Stop(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  handler.vlcPlayer_->StopInternal(false);
  return Reply(result, true);
}

bool GetPosition(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  libvlc_media_player_t* const mediaPlayer = handler.vlcPlayer_->mediaPlayer_.get();
  if (!mediaPlayer) return ReplyTime(result, 0);
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) LOG_ERROR("Failed to load VLC functions for GetPosition");
  const bool known = vlc.loaded && vlc.libvlc_media_player_get_time;
  return ReplyTime(result, known ? vlc.libvlc_media_player_get_time(mediaPlayer) : 0);
}

bool GetDuration(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  libvlc_media_player_t* const mediaPlayer = handler.vlcPlayer_->mediaPlayer_.get();
  if (!mediaPlayer) return ReplyTime(result, 0);
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) LOG_ERROR("Failed to load VLC functions for GetDuration");
  const bool known = vlc.loaded && vlc.libvlc_media_player_get_length;
  return ReplyTime(result, known ? vlc.libvlc_media_player_get_length(mediaPlayer) : 0);
}

bool IsPlaying(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  return Reply(result, handler.vlcPlayer_->IsPlaying());
}

bool Seek(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  return SeekWith(kSeek, handler, call, result);
}

bool SeekToInitialPosition(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  return SeekWith(kInitialSeek, handler, call, result);
}

bool SetMediaTitle(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  handler.mediaTitle_ = ReadStringArgument(call, "title");
  return Reply(result, true);
}

bool SetUserAgent(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  handler.userAgent_ = ReadStringArgument(call, "UA");
  handler.vlcPlayer_->userAgent_ = handler.userAgent_;
  return Reply(result, true);
}

}  // namespace vantro::requests
