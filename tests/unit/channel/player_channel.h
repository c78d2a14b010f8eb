// The player channel of one window over the loopback engine and the scripted libvlc. The tests send and receive bytes.
// The window is a plain native one. The session marker is in a separate folder for each test.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "channel/method_channel_handler.h"
#include "flutter_host/embedding_api.h"
#include "flutter_host/flutter_engine.h"
#include "player/vlc_player.h"
#include "tests/support/import_hook.h"
#include "tests/support/interface_end.h"
#include "tests/support/log_capture.h"
#include "tests/support/loopback.h"
#include "tests/support/native_window.h"
#include "tests/support/player_inspector.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/scripted_vlc.h"

namespace vantro::test {

constexpr int kParentWidth = 800;
constexpr int kParentHeight = 600;
constexpr char kUrl[] = "http://host/stream.ts";
constexpr char kDuplicateLine[] =
    "Error: Only one of Success, Error, or NotImplemented can be called, and it can be called exactly once. Ignoring "
    "duplicate result.";

// Removes a function from the table during the life of the object.
template <typename Function>
class WithoutFunction {
 public:
  explicit WithoutFunction(Function& slot) : slot_(slot), before_(slot) { slot = nullptr; }
  ~WithoutFunction() { slot_ = before_; }
  WithoutFunction(const WithoutFunction&) = delete;
  WithoutFunction& operator=(const WithoutFunction&) = delete;

 private:
  Function& slot_;
  Function before_;
};

// Records for each call of the interface how many requests wait for their answer at that moment. It replaces the
// observer of InterfaceEnd.
class PendingAtCalls {
 public:
  explicit PendingAtCalls(Loopback& loopback);
  ~PendingAtCalls() { loopback_.SetSendObserver(nullptr, nullptr); }
  PendingAtCalls(const PendingAtCalls&) = delete;
  PendingAtCalls& operator=(const PendingAtCalls&) = delete;
  const std::vector<int>& Counts() const { return counts_; }

 private:
  Loopback& loopback_;
  std::vector<int> counts_;
};

// Writes each call of the interface and each answer into the log, for their order among the log's lines.
class NotedMessages {
 public:
  NotedMessages() { current_ = this; }
  ~NotedMessages() { current_ = nullptr; }
  NotedMessages(const NotedMessages&) = delete;
  NotedMessages& operator=(const NotedMessages&) = delete;

 private:
  static bool OnSend(FlutterDesktopMessengerRef messenger, const char* channel, const uint8_t* message, size_t size);
  static void OnAnswer(FlutterDesktopMessengerRef messenger, const FlutterDesktopMessageResponseHandle* handle,
                       const uint8_t* answer, size_t size);

  static NotedMessages* current_;
  ImportHook send_{"flutter_windows.dll", "FlutterDesktopMessengerSend", &OnSend};
  ImportHook answer_{"flutter_windows.dll", "FlutterDesktopMessengerSendResponse", &OnAnswer};
};

class PlayerChannelTest : public testing::Test {
 protected:
  // Creates the engine, the player and the handler.
  PlayerChannelTest();

  Answer Ask(const std::string& method, const Value& arguments = Value()) {
    return interface_.Ask(engineNumber_, kPlayerChannel, method, arguments);
  }
  // Sends the request and counts the lines about a second answer on the standard error stream.
  Answer AskCountingDuplicates(const std::string& method, const Value& arguments, int* duplicates);
  // Loads a media and clears the recorded calls.
  void LoadMedia();
  // Destroys the handler of this test and creates another one.
  void RestartHandler();
  void EndHandler() { handler_.reset(); }

  std::filesystem::path MarkerFile() const { return scratch_ / kNativeMarkerFileName; }
  NativeMarkerState Marker() const;
  libvlc_media_player_t* MediaPlayer() const { return state_.mediaPlayer_.get(); }
  // The video's window in client pixels of the parent.
  RECT VideoRect() const { return PlaceInParent(state_.vlcWindow_); }

  ScratchFolder scratch_;
  TemporaryFolderAt temporaryFolder_{scratch_.path()};
  LogCapture log_;
  ScriptedVlc vlc_;
  Loopback loopback_;
  InterfaceEnd interface_{loopback_};
  ParentWindow parent_{kParentWidth, kParentHeight};
  std::unique_ptr<VLCPlayer> player_;
  PlayerInspector state_{*player_};
  std::unique_ptr<FlutterEngine> engine_;
  int engineNumber_ = 0;
  std::unique_ptr<MethodChannelHandler> handler_;
};

// Returns the call of the toast that the interface receives.
InterfaceCall Toast(const char* message, const char* shortWord);

// Common answers.
inline const Answer kTrue = Success(Value(true));
inline const Answer kFalse = Success(Value(false));
inline const InterfaceCall kNotReady = Toast("Video not ready yet", "true");

}  // namespace vantro::test
