// The socket to the interface: a program that plays the part of the Dart side.
//
// VANTRO_LOOPBACK_PORT asks for it: the first engine then listens on 127.0.0.1 at that port, 0 for any; the port that
// was taken is written to the file that VANTRO_LOOPBACK_PORT_FILE names. One interface is connected at a time, the next
// one waits for its turn. While none is connected what the host sends is kept, up to a limit beyond which the oldest
// messages are dropped and counted.
//
// Messages from the interface are delivered on the thread that made the first engine, by a posted message, one a turn
// of the host's message loop.
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
  // Starts the one server of the process if the environment asks for it and it does not run. Says on standard error why
  // it could not.
  static void StartIfAsked();
  // Null when no socket was asked for.
  static InterfaceServer* Active() { return active_; }

  // Any thread; none of these waits for the interface.
  void HostMessage(int32_t engine, const char* channel, const uint8_t* bytes, size_t size,
                   FlutterDesktopBinaryReply reply, void* user_data);
  void EngineCreated(int32_t engine);
  void Violation(int32_t engine, const std::string& text);
  void Input(int32_t engine, UINT message, WPARAM wParam, LPARAM lParam);
  // Waits a moment for the connected interface to get everything when this was the last engine: the process is likely
  // to end next.
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

  std::mutex outbound_mutex_;  // guards what the writer reads
  std::condition_variable outbound_changed_;
  std::deque<std::pair<Frame, bool>> outbound_;  // with whether it may be dropped
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
