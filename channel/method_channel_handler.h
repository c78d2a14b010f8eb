// Handles the requests on the method channel "org.vantro.player/communicate" of one window, and sends events back on
// it.
//
// Requests arrive and run on the main thread, one at a time. SendChannelEvent also runs on libvlc's threads, through
// the callback that the constructor sets in the player, and reads methodChannel_ without a lock. The destructor ends
// this. It replaces the player's callback, which returns when no thread uses the old one any more, and only then
// destroys the channel. Anything that a libvlc thread sends later is dropped without an error.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "channel/session_marker.h"
#include "flutter_host/encodable_value.h"
#include "flutter_host/method_channel.h"

namespace vantro {

class FlutterEngine;
class VLCPlayer;
class VantroWindow;

class MethodChannelHandler {
 public:
  // Engine, player and window are borrowed and outlive the handler. Without an engine, a player or a messenger, the
  // handler has no channel and no marker.
  MethodChannelHandler(FlutterEngine* engine, VLCPlayer* player, bool isMasterWindow, VantroWindow* window);
  ~MethodChannelHandler();
  MethodChannelHandler(const MethodChannelHandler&) = delete;
  MethodChannelHandler& operator=(const MethodChannelHandler&) = delete;

  // Writes the session marker, dispatches the call by its name, and answers before it returns. Main thread.
  void HandleMethodCall(const MethodCall& call, std::unique_ptr<MethodResult> result);
  // Calls a method of the interface with a string argument, or without an argument if the payload is empty. Runs on any
  // calling thread, libvlc's threads included.
  void SendChannelEvent(std::string_view method, std::string_view payload);
  // Calls showToast of the interface, which shows the message to the user for a short or a long time.
  void ShowToast(const std::string& message, bool isShort);

  // The session marker (session_marker_file.cpp). Main thread. No failure is reported.
  //
  // There is one marker per process, but the handler of each window uses it on its own. So a second window takes the
  // running session for a crashed one, and the last writer wins.
  //
  // Returns the path in the code page of the process's file functions. If there is no temporary folder, or its path
  // cannot be expressed in that code page, returns only the file name.
  static std::string ResolveNativeMarkerPath();
  NativeMarkerState ReadNativeMarker() const;
  void WriteNativeMarker(bool running, std::string_view lastAction, int64_t lastActionTs) const;
  // If the last session crashed or was killed, sends the interface a notice. Then marks this session as running.
  void HandleStartupMarker();

  std::string markerPath_;  // if empty, the marker is neither read nor written
  FlutterEngine* flutterEngine_;
  VLCPlayer* vlcPlayer_;
  VantroWindow* window_;
  bool isMasterWindow_;
  std::string channelName_;
  std::unique_ptr<MethodChannel> methodChannel_;
  bool wakelockEnabled_ = false;
  std::string mediaTitle_;  // set by setMediaTitle; nothing reads it
  std::string userAgent_;   // set by setUserAgent; nothing reads it
};

// Returns the time of the system clock in milliseconds since the Unix epoch.
int64_t CurrentUnixTimeMs();

}  // namespace vantro
