// The requests for subtitle and audio tracks.
#include "channel/argument_readers.h"
#include "channel/request_handlers.h"
#include "player/vlc_player.h"

namespace vantro::requests {

namespace {

constexpr int kDefaultFontSize = 16;

using TrackChoice = void (VLCPlayer::*)(int id);

// Answers true even if the library cannot choose tracks.
bool ChooseTrack(TrackChoice choice, MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  if (!handler.vlcPlayer_->HasMedia()) return ReplyNotReady(handler, result);
  const int id = ReadIntArgument(call, "id", 0);
  (handler.vlcPlayer_->*choice)(ReadIntArgument(call, "index", id));
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
  return ChooseTrack(&VLCPlayer::SetSpuTrack, handler, call, result);
}

bool SetAudioTrack(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  return ChooseTrack(&VLCPlayer::SetAudioTrack, handler, call, result);
}

// Only checks the size. It is neither stored nor passed to libvlc.
bool SetFontSize(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  if (!handler.vlcPlayer_->HasMedia()) return ReplyNotReady(handler, result);
  const bool valid = ReadIntArgument(call, "size", kDefaultFontSize) > 0;
  if (!valid) handler.ShowToast("Invalid font size", true);
  return Reply(result, valid);
}

}  // namespace vantro::requests
