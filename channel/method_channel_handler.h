// Serves the method channel "org.vantro.player/communicate" of one window, and sends events back on it.
//
// The requests arrive on the main thread and run there, one at a time. SendChannelEvent also runs on libvlc's threads,
// through the callback that the constructor puts into the player, and reads methodChannel_ without a lock. What ends
// that traffic is the destructor: it replaces the player's callback, which returns when the old one is out of use, and
// lets the channel go only then. What a thread of libvlc sends after that is lost without an error.
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
  // Engine, player and window are borrowed and outlive the handler. Without an engine, a player or a messenger the
  // handler stays without a channel and without a marker.
  MethodChannelHandler(FlutterEngine* engine, VLCPlayer* player, bool isMasterWindow, VantroWindow* window);
  ~MethodChannelHandler();
  MethodChannelHandler(const MethodChannelHandler&) = delete;
  MethodChannelHandler& operator=(const MethodChannelHandler&) = delete;

  // Writes the session marker, dispatches by name and answers before it returns. Main thread.
  void HandleMethodCall(const MethodCall& call, std::unique_ptr<MethodResult> result);
  // Calls a method of the interface with a string argument, or with none when the payload is empty. Runs on the
  // caller's thread, libvlc's included.
  void SendChannelEvent(std::string_view method, std::string_view payload);
  // Calls showToast of the interface: a message to the user, shown for a shorter or a longer time.
  void ShowToast(const std::string& message, bool isShort);

  // The session marker (session_marker_file.cpp). Main thread. Every failure is silent.
  //
  // The marker belongs to the process, yet each window's handler acts on it alone: a second window takes the running
  // session for a crashed one, and the last writer wins.
  //
  // The path in the code page of the process's file functions; the bare file name when the temporary folder cannot be
  // had or expressed.
  static std::string ResolveNativeMarkerPath();
  NativeMarkerState ReadNativeMarker() const;
  void WriteNativeMarker(bool running, std::string_view lastAction, int64_t lastActionTs) const;
  // Tells the interface of a session that died, then marks this one as running.
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

// Of the system clock, in whole milliseconds.
int64_t CurrentUnixTimeMs();

}  // namespace vantro
