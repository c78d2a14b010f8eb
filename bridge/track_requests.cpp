// Choosing subtitle and audio tracks.
#include "bridge/argument_readers.h"
#include "bridge/request_handlers.h"
#include "player/vlc_player.h"

namespace vantro::requests {

namespace {

constexpr int kDefaultFontSize = 16;

using TrackSetter = int (*LibVlcFunctions::*)(libvlc_media_player_t*, int id);

// What libvlc answers is not looked at, and a library without the function still counts as done.
bool SetTrack(TrackSetter setter, MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  const VLCPlayer& player = *handler.vlcPlayer_;
  if (!player.media_) return ReplyNotReady(handler, result);
  const int id = ReadIntArgument(call, "id", 0);
  const int track = ReadIntArgument(call, "index", id);
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (player.mediaPlayer_ && vlc.loaded && vlc.*setter) (vlc.*setter)(player.mediaPlayer_.get(), track);
  return Reply(result, true);
}

}  // namespace

bool GetTracksInfo(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  handler.vlcPlayer_->RefreshSpuTracks();
  handler.vlcPlayer_->RefreshAudioTracks();
  return Reply(result, true);
}

bool GetSpuTracks(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  handler.vlcPlayer_->RefreshSpuTracks();
  return Reply(result, true);
}

bool SetSpu(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  return SetTrack(&LibVlcFunctions::libvlc_video_set_spu, handler, call, result);
}

bool SetAudioTrack(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  return SetTrack(&LibVlcFunctions::libvlc_audio_set_track, handler, call, result);
}

// A check and no more: the size is neither stored nor handed to libvlc.
bool SetFontSize(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  if (!handler.vlcPlayer_->media_) return ReplyNotReady(handler, result);
  const bool valid = ReadIntArgument(call, "size", kDefaultFontSize) > 0;
  if (!valid) handler.ShowToast("Invalid font size", true);
  return Reply(result, valid);
}

}  // namespace vantro::requests
