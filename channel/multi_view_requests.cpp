// The requests of the grid. The player does the work. The requests read and check the arguments, answer, and ask the
// interface to show or hide its overlay.
#include "channel/argument_readers.h"
#include "channel/request_handlers.h"
#include "common/log.h"
#include "player/vlc_player.h"

namespace vantro::requests {

namespace {

bool Refuse(MethodResult& result, const char* code, const char* message) {
  result.Error(code, message);
  return false;
}

bool RefuseWithoutPlayer(MethodResult& result) { return Refuse(result, "VLC_ERROR", "VLC player not available"); }

using StreamOperation = bool (VLCPlayer::*)(const std::string& url, const std::string& name);

bool LoadStream(StreamOperation operation, MethodChannelHandler& handler, const MethodCall& call,
                MethodResult& result) {
  if (!handler.vlcPlayer_) return RefuseWithoutPlayer(result);
  const std::string url = ReadStringArgument(call, "url");
  const std::string name = ReadStringArgument(call, "name");
  if (url.empty()) return Refuse(result, "INVALID_ARGUMENT", "URL is required");
  return Reply(result, (handler.vlcPlayer_->*operation)(url, name));
}

}  // namespace

bool EnableMultiView(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  if (!handler.vlcPlayer_) return RefuseWithoutPlayer(result);
  const bool enabled = handler.vlcPlayer_->EnableMultiView();
  Reply(result, enabled);  // before the event, so that the interface gets its answer first
  if (enabled) handler.SendChannelEvent("showMultiViewOverlay", "");
  return true;
}

bool DisableMultiView(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  if (!handler.vlcPlayer_) return RefuseWithoutPlayer(result);
  const bool disabled = handler.vlcPlayer_->DisableMultiView();
  Reply(result, disabled);
  if (disabled) handler.SendChannelEvent("hideMultiViewOverlay", "");
  return true;
}

// Like disableMultiView, but does not ask the interface to hide its overlay.
bool MvExitFullscreen(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  if (!handler.vlcPlayer_) return RefuseWithoutPlayer(result);
  return Reply(result, handler.vlcPlayer_->DisableMultiView());
}

bool MvAddStream(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  return LoadStream(&VLCPlayer::MvAddStream, handler, call, result);
}

bool MvReplaceActive(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  return LoadStream(&VLCPlayer::MvReplaceActive, handler, call, result);
}

bool MvSetActiveIndex(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  if (!handler.vlcPlayer_) return RefuseWithoutPlayer(result);
  const int index = ReadIntArgument(call, "index", -1);
  if (index < 0) return Refuse(result, "INVALID_ARGUMENT", "Invalid index");
  if (!handler.vlcPlayer_->IsMultiViewMode()) return Reply(result, false);
  LOG_DEBUG("[MvSetActiveIndex] Request to set active index to %d", index);
  handler.vlcPlayer_->SetActiveIndexSafe(index);
  handler.vlcPlayer_->UpdateActiveAudio();
  return Reply(result, true);
}

bool MvRemoveActive(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  if (!handler.vlcPlayer_) return RefuseWithoutPlayer(result);
  return Reply(result, handler.vlcPlayer_->MvRemoveActive());
}

bool MvSwapTiles(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  if (!handler.vlcPlayer_) return RefuseWithoutPlayer(result);
  const int from = ReadIntArgument(call, "from", -1);
  const int to = ReadIntArgument(call, "to", -1);
  if (from < 0 || to < 0) return Refuse(result, "INVALID_ARGUMENT", "Invalid indices");
  return Reply(result, handler.vlcPlayer_->MvSwapTiles(from, to));
}

bool MvPromoteActiveAndExit(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  if (!handler.vlcPlayer_) return RefuseWithoutPlayer(result);
  return Reply(result, handler.vlcPlayer_->MvPromoteActiveAndExit());
}

}  // namespace vantro::requests
