// Loading, transport and the position. The player does the work. The requests read the arguments and answer, also on
// failure.
#include <utility>

#include "channel/argument_readers.h"
#include "channel/request_handlers.h"
#include "common/log.h"
#include "player/media_request.h"
#include "player/vlc_player.h"

namespace vantro::requests {

namespace {

constexpr char kPlayerProfile[] = "windows_fullscreen";

std::string ReadEither(const MethodCall& call, const char* key, const char* otherKey) {
  std::string text = ReadStringArgument(call, key);
  return text.empty() ? ReadStringArgument(call, otherKey) : text;
}

// There is only one profile, and nothing depends on it.
void LogPlayerProfile(const std::string& profile) {
  if (profile.empty()) return;
  if (profile == kPlayerProfile) {
    LOG_DEBUG("[SetMedia] Player profile matches (%s)", profile.c_str());
  } else {
    LOG_DEBUG("[SetMedia] Unexpected player profile '%s' (expected 'windows_fullscreen')", profile.c_str());
  }
}

// Reads every key before any is checked, so that the log of a bad request is complete. A missing key keeps the default
// of the request.
MediaRequest ReadMediaRequest(const MethodCall& call) {
  MediaRequest request;
  request.url = ReadEither(call, "URL", "url");
  request.title = ReadEither(call, "title", "Title");
  request.networkCacheMs = ReadIntArgument(call, "networkCacheMs", request.networkCacheMs);
  request.initialSeekPositionMs = ReadIntArgument(call, "initialSeekPositionMs", request.initialSeekPositionMs);
  if (request.initialSeekPositionMs > 0) {
    LOG_DEBUG("[SetMedia] Received initialSeekPositionMs=%d - will seek before play", request.initialSeekPositionMs);
  }
  request.isLive = ReadBoolArgument(call, "isLiveStream", request.isLive);
  request.supportsTimeshift = ReadBoolArgument(call, "supportsTimeshift", request.supportsTimeshift);
  request.inTimeshiftMode = ReadBoolArgument(call, "isInTimeshiftMode", request.inTimeshiftMode);
  LOG_DEBUG("[SetMedia] URL=%s isLive=%d supportsTimeshift=%d inTimeshiftMode=%d", request.url.c_str(), request.isLive,
            request.supportsTimeshift, request.inTimeshiftMode);
  LogPlayerProfile(ReadStringArgument(call, "playerProfile"));
  // The URL already contains the local proxy, if there is one. "originalUrl" holds the URL without the proxy, which is
  // not needed here.
  if (ReadBoolArgument(call, "localVodProxyEnabled", false)) LOG_DEBUG("[SetMedia] Local proxy enabled flag set");
  LOG_DEBUG("SetMedia: Final URL after parsing: '%s'", request.url.c_str());
  LOG_DEBUG("SetMedia: Using networkCacheMs: %d", request.networkCacheMs);
  return request;
}

// The log texts of the two kinds of seek.
struct SeekTexts {
  const char* failed;
  const char* ignored;
};
constexpr SeekTexts kSeek = {"PLAYER_ERROR: Failed to seek", "Seek ignored: no media set"};
constexpr SeekTexts kInitialSeek = {"PLAYER_ERROR: Failed to seek to initial position",
                                    "SeekToInitialPosition ignored: no media set"};

bool SeekWith(const SeekTexts& texts, MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  if (!handler.vlcPlayer_->HasMedia()) {
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
  MediaRequest request = ReadMediaRequest(call);
  if (request.url.empty()) {
    result.Error("INVALID_ARGUMENT", "URL is required");
    return true;
  }
  const bool set = handler.vlcPlayer_->SetMedia(std::move(request));
  if (!set) LOG_ERROR("PLAYER_ERROR: Failed to set media");
  return Reply(result, set);
}

bool Play(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  if (!handler.vlcPlayer_->HasMedia()) {
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
  if (!player.HasMedia()) {
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
  return ReplyTime(result, handler.vlcPlayer_->GetPosition());
}

bool GetDuration(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  return ReplyTime(result, handler.vlcPlayer_->GetDuration());
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
  handler.vlcPlayer_->SetUserAgent(handler.userAgent_);
  return Reply(result, true);
}

}  // namespace vantro::requests
