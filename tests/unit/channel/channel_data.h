// Made from interface/channel.json by interface/generate: the required channels of the host.
#pragma once

// clang-format off

namespace vantro::test {

// The error of a request without arguments, in a process with neither window nor stream.
struct BareError {
  const char* method;
  const char* code;
  const char* message;
  bool detailsAreFalse;
  bool declines;  // the handler's second answer is dropped
};

// In the order in which the host compares them.
inline constexpr const char* kPlayerMethods[] = {
    "setMedia",
    "play",
    "pause",
    "playPause",
    "stop",
    "getPosition",
    "getDuration",
    "isPlaying",
    "seek",
    "seekTo",
    "seekToInitialPosition",
    "setAlphaFlutterView",
    "showFlutterView",
    "hideFlutterView",
    "resizeVLC",
    "resizeVLCFull",
    "vlcViewFront",
    "vlcViewBack",
    "getTracksInfo",
    "showAvailableSubtitles",
    "getBuildTime",
    "getSpuTracks",
    "setSpu",
    "setAudioTrack",
    "setFontSize",
    "enableNativeWakelock",
    "disableNativeWakelock",
    "isNativeWakelockEnabled",
    "onStopped",
    "setMediaTitle",
    "setUserAgent",
    "debugInputLatency",
    "getWindowInfo",
    "requestProviderData",
    "sendProviderData",
    "enableMultiView",
    "disableMultiView",
    "mvAddStream",
    "mvReplaceActive",
    "mvSetActiveIndex",
    "mvRemoveActive",
    "mvSwapTiles",
    "mvPromoteActiveAndExit",
    "mvExitFullscreen",
    "getDatabaseEncryptionKey",
    "toggleFullscreen",
};

inline constexpr const char* kAlwaysTrueMethods[] = {
    "pause",
    "stop",
    "resizeVLC",
    "resizeVLCFull",
    "vlcViewFront",
    "vlcViewBack",
    "getTracksInfo",
    "showAvailableSubtitles",
    "getSpuTracks",
    "enableNativeWakelock",
    "disableNativeWakelock",
    "onStopped",
    "setMediaTitle",
    "setUserAgent",
    "debugInputLatency",
};

inline constexpr BareError kBareErrors[] = {
    {"setMedia", "INVALID_ARGUMENT", "URL is required", false, false},
    {"mvAddStream", "INVALID_ARGUMENT", "URL is required", false, true},
    {"mvReplaceActive", "INVALID_ARGUMENT", "URL is required", false, true},
    {"mvSetActiveIndex", "INVALID_ARGUMENT", "Invalid index", false, true},
    {"mvSwapTiles", "INVALID_ARGUMENT", "Invalid indices", false, true},
    {"toggleFullscreen", "WINDOW_ERROR", "Window reference not available", false, true},
    {"requestProviderData", "NO_MASTER", "Master window not found", true, true},
    {"sendProviderData", "INVALID_ARGUMENTS", "Arguments must be a map", true, true},
};

// The events that the host sends to the interface.
inline constexpr const char* kEvents[] = {
    "showToast",
    "appEvent",
    "showMultiViewOverlay",
    "hideMultiViewOverlay",
    "providerDataRequested",
    "providerDataReceived",
    "spuTracks",
    "audioTracks",
    "search_query_changed",
    "settings_requested",
    "about_requested",
    "onOpening",
    "onBuffering",
    "onPlaying",
    "onMediaChanged",
    "onPaused",
    "onStopped",
    "onEndReached",
    "onError",
    "onPositionChanged",
    "onTimeChanged",
    "onSeekableChanged",
};

// The events that libvlc raises, in the order of attachment.
inline constexpr const char* kPlayerEventNames[] = {
    "onOpening",
    "onBuffering",
    "onPlaying",
    "onMediaChanged",
    "onPaused",
    "onStopped",
    "onEndReached",
    "onError",
    "onPositionChanged",
    "onTimeChanged",
    "onSeekableChanged",
};

}  // namespace vantro::test
