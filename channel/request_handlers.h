// The requests of the player channel, one function each. docs/channel.md tells their arguments and answers.
//
// A handler answers through the result before it returns and says true. False makes the dispatcher answer
// NotImplemented as well: after an error that is a second answer, which the messaging layer drops and reports on the
// standard error stream. Main thread.
#pragma once

#include <string>

#include "channel/method_channel_handler.h"
#include "flutter_host/method_call.h"
#include "flutter_host/method_result.h"

namespace vantro::requests {

using Handler = bool(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result);

// playback_requests.cpp
Handler SetMedia, Play, Pause, PlayPause, Stop, GetPosition, GetDuration, IsPlaying, Seek, SeekToInitialPosition;
Handler SetMediaTitle, SetUserAgent;

// track_requests.cpp
Handler GetTracksInfo, GetSpuTracks, SetSpu, SetAudioTrack, SetFontSize;

// view_requests.cpp
Handler SetAlphaFlutterView, ShowFlutterView, HideFlutterView, ResizeVlc, ResizeVlcFull, RestoreStacking;

// system_requests.cpp
Handler GetBuildTime, EnableNativeWakelock, DisableNativeWakelock, IsNativeWakelockEnabled, DebugInputLatency;
Handler GetDatabaseEncryptionKey, ToggleFullscreen;

// relay_requests.cpp
Handler GetWindowInfo, RequestProviderData, SendProviderData;

// multi_view_requests.cpp
Handler EnableMultiView, DisableMultiView, MvAddStream, MvReplaceActive, MvSetActiveIndex, MvRemoveActive, MvSwapTiles;
Handler MvPromoteActiveAndExit, MvExitFullscreen;

// Answers a Boolean and says that the request is answered.
inline bool Reply(MethodResult& result, bool value) {
  result.Success(EncodableValue(value));
  return true;
}

// The rule of the requests that need a media: a toast, and false.
inline bool ReplyNotReady(MethodChannelHandler& handler, MethodResult& result) {
  handler.ShowToast("Video not ready yet", true);
  return Reply(result, false);
}

}  // namespace vantro::requests
