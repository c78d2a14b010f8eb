// The socket to the interface, which is a program in place of the Dart side.
//
// The socket is opened when VANTRO_LOOPBACK_PORT is set. The first engine then listens on 127.0.0.1 at that port; 0
// means any free port. The chosen port is written to the file that VANTRO_LOOPBACK_PORT_FILE names. One interface is
// connected at a time; the next one waits until it has gone. While no interface is connected, the host's messages are
// kept up to a limit. Beyond it the oldest are dropped and counted.
//
// Messages from the interface are delivered on the thread that made the first engine, through a posted message: one for
// each turn of the host's message loop.
#pragma once

#include <winsock2.h>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "devkit/engine/frame.h"
#include "flutter_host/embedding_api.h"

namespace vantro::loopback {

class InterfaceServer {
 public:
  // Starts the process's only server if the environment asks for it and it is not running. Reports a failure on
  // standard error.
  static void StartIfAsked();
  // Returns null when no socket was asked for.
  static InterfaceServer* Active() { return active_; }

  // Any thread. None of these functions waits for the interface.
  void HostMessage(int32_t engine, const char* channel, const uint8_t* bytes, size_t size,
                   FlutterDesktopBinaryReply reply, void* user_data);
  void EngineCreated(int32_t engine);
  void Violation(int32_t engine, const std::string& text);
  void Input(int32_t engine, UINT message, WPARAM wParam, LPARAM lParam);
  // Waits briefly until the connected interface has received everything if this was the last engine, because the
  // process probably ends next.
  void EngineDestroyed(int32_t engine);

 private:
  struct HostReply {
    FlutterDesktopBinaryReply function;
    void* user_data;
  };

  InterfaceServer() = default;
  bool Start(uint16_t port);
  void MakeInbox();
  void Serve();
  void Converse(SOCKET client);
  void Write();
  void Enqueue(Frame frame, bool droppable);
  void Greet();
  void Deliver(const Frame& frame);
  void DeliverOne();
  void AnswerHost(const Frame& frame);
  static LRESULT CALLBACK InboxProcedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

  static inline InterfaceServer* active_ = nullptr;

  SOCKET listener_ = INVALID_SOCKET;
  HWND inbox_ = nullptr;
  DWORD window_thread_ = 0;
  std::atomic<uint64_t> next_id_{1};

  std::mutex outbound_mutex_;  // guards the outbound queue
  std::condition_variable outbound_changed_;
  std::deque<std::pair<Frame, bool>> outbound_;  // each frame, and whether it may be dropped
  size_t outbound_size_ = 0;
  uint64_t dropped_ = 0;
  SOCKET client_ = INVALID_SOCKET;
  bool writing_ = false;

  std::mutex inbound_mutex_;
  std::deque<Frame> inbound_;
  bool wake_posted_ = false;

  std::mutex replies_mutex_;
  std::map<uint64_t, HostReply> replies_;
};

}  // namespace vantro::loopback
