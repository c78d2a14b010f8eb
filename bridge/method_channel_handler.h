// Serves the method channel "org.vantro.player/communicate" of one window, and sends events back on it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "flutter_host/encodable_value.h"
#include "flutter_host/method_channel.h"

namespace vantro {

class FlutterEngine;
class VLCPlayer;
class VantroWindow;

// What the session marker file says.
struct NativeMarkerState {
  bool running = false;
  std::string lastAction;
  int64_t lastActionTs = 0;  // milliseconds since the Unix epoch
};

class MethodChannelHandler {
 public:
  // Engine, player and window are borrowed and outlive the handler. Without an engine, a player or a messenger the
  // handler stays without a channel and without a marker.
  MethodChannelHandler(FlutterEngine* engine, VLCPlayer* player, bool isMasterWindow, VantroWindow* window);
  ~MethodChannelHandler();
  MethodChannelHandler(const MethodChannelHandler&) = delete;
  MethodChannelHandler& operator=(const MethodChannelHandler&) = delete;

  // Answers before it returns. Main thread.
  void HandleMethodCall(const MethodCall& call, std::unique_ptr<MethodResult> result);
  // Calls a method of the interface with a string argument, or with none when the payload is empty. Runs on the
  // caller's thread, libvlc's included.
  void SendChannelEvent(const std::string& method, const std::string& payload);
  void ShowToast(const std::string& message, bool isShort);

  // The session marker (session_marker.cpp). Main thread.
  static std::string ResolveNativeMarkerPath();
  NativeMarkerState ReadNativeMarker() const;
  void WriteNativeMarker(bool running, const std::string& lastAction, int64_t lastActionTs) const;
  void HandleStartupMarker();

  std::string markerPath_;  // empty switches all marker reading and writing off
  FlutterEngine* flutterEngine_;
  VLCPlayer* vlcPlayer_;
  VantroWindow* window_;
  bool isMasterWindow_;
  std::string channelName_;
  std::unique_ptr<MethodChannel> methodChannel_;
  bool wakelockEnabled_ = false;
  std::string mediaTitle_;  // written by setMediaTitle, read by nothing
  std::string userAgent_;   // written by setUserAgent, read by nothing
};

}  // namespace vantro
