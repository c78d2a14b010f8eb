#include "channel/method_table.h"

#include <algorithm>

namespace vantro {

namespace {

constexpr ChannelMethod kMethods[] = {
    {"setMedia", requests::SetMedia},
    {"play", requests::Play},
    {"pause", requests::Pause},
    {"playPause", requests::PlayPause},
    {"stop", requests::Stop},
    {"getPosition", requests::GetPosition},
    {"getDuration", requests::GetDuration},
    {"isPlaying", requests::IsPlaying},
    {"seek", requests::Seek},
    {"seekTo", requests::Seek},
    {"seekToInitialPosition", requests::SeekToInitialPosition},
    {"setAlphaFlutterView", requests::SetAlphaFlutterView},
    {"showFlutterView", requests::ShowFlutterView},
    {"hideFlutterView", requests::HideFlutterView},
    {"resizeVLC", requests::ResizeVlc},
    {"resizeVLCFull", requests::ResizeVlcFull},
    {"vlcViewFront", requests::RestoreStacking},
    {"vlcViewBack", requests::RestoreStacking},
    {"getTracksInfo", requests::GetTracksInfo},
    {"showAvailableSubtitles", requests::GetSpuTracks},
    {"getBuildTime", requests::GetBuildTime},
    {"getSpuTracks", requests::GetSpuTracks},
    {"setSpu", requests::SetSpu},
    {"setAudioTrack", requests::SetAudioTrack},
    {"setFontSize", requests::SetFontSize},
    {"enableNativeWakelock", requests::EnableNativeWakelock},
    {"disableNativeWakelock", requests::DisableNativeWakelock},
    {"isNativeWakelockEnabled", requests::IsNativeWakelockEnabled},
    {"onStopped", requests::Stop},
    {"setMediaTitle", requests::SetMediaTitle},
    {"setUserAgent", requests::SetUserAgent},
    {"debugInputLatency", requests::DebugInputLatency},
    {"getWindowInfo", requests::GetWindowInfo},
    {"requestProviderData", requests::RequestProviderData},
    {"sendProviderData", requests::SendProviderData},
    {"enableMultiView", requests::EnableMultiView},
    {"disableMultiView", requests::DisableMultiView},
    {"mvAddStream", requests::MvAddStream},
    {"mvReplaceActive", requests::MvReplaceActive},
    {"mvSetActiveIndex", requests::MvSetActiveIndex},
    {"mvRemoveActive", requests::MvRemoveActive},
    {"mvSwapTiles", requests::MvSwapTiles},
    {"mvPromoteActiveAndExit", requests::MvPromoteActiveAndExit},
    {"mvExitFullscreen", requests::MvExitFullscreen},
    {"getDatabaseEncryptionKey", requests::GetDatabaseEncryptionKey},
    {"toggleFullscreen", requests::ToggleFullscreen},
};

}  // namespace

std::span<const ChannelMethod> ChannelMethods() { return kMethods; }

const ChannelMethod* FindChannelMethod(std::string_view name) {
  const auto* const found = std::find_if(std::begin(kMethods), std::end(kMethods),
                                         [name](const auto& method) { return method.name == name; });
  return found == std::end(kMethods) ? nullptr : found;
}

}  // namespace vantro
