// The requests of the player channel, one function each. docs/channel.md lists their arguments and answers.
//
// A handler answers through the result before it returns, and returns true. If it returns false, the dispatcher also
// answers NotImplemented. After an error this is a second answer, which the messaging layer drops and reports on the
// standard error stream. Main thread.
#pragma once

#include <string>

#include "channel/method_channel_handler.h"
#include "flutter_host/method_call.h"
#include "flutter_host/method_result.h"

namespace vantro::requests {

// The type of the functions in the method table.
using Handler = bool(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);

// playback_requests.cpp
bool SetMedia(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool Play(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool Pause(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool PlayPause(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool Stop(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool GetPosition(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool GetDuration(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool IsPlaying(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool Seek(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool SeekToInitialPosition(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool SetMediaTitle(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool SetUserAgent(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);

// track_requests.cpp
bool GetTracksInfo(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool GetSpuTracks(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool SetSpu(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool SetAudioTrack(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool SetFontSize(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);

// view_requests.cpp
bool SetAlphaFlutterView(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool ShowFlutterView(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool HideFlutterView(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool ResizeVlc(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool ResizeVlcFull(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool RestoreStacking(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);

// system_requests.cpp
bool GetBuildTime(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool EnableNativeWakelock(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool DisableNativeWakelock(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool IsNativeWakelockEnabled(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool DebugInputLatency(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool GetDatabaseEncryptionKey(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool ToggleFullscreen(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);

// relay_requests.cpp
bool GetWindowInfo(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool RequestProviderData(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool SendProviderData(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);

// multi_view_requests.cpp
bool EnableMultiView(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool DisableMultiView(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool MvAddStream(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool MvReplaceActive(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool MvSetActiveIndex(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool MvRemoveActive(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool MvSwapTiles(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool MvPromoteActiveAndExit(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);
bool MvExitFullscreen(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);

// Answers with a Boolean and returns true.
inline bool Reply(MethodResult& result, bool value) {
  result.Success(EncodableValue(value));
  return true;
}

// The answer to a request that needs a media when there is none: shows a toast and answers false.
inline bool ReplyNotReady(MethodChannelHandler& handler, MethodResult& result) {
  handler.ShowToast("Video not ready yet", true);
  return Reply(result, false);
}

}  // namespace vantro::requests
