#include "devkit/engine/interface_server.h"

#include <windows.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <thread>

#include "devkit/engine/inspect.h"
#include "devkit/engine/registry.h"

namespace vantro::loopback {

namespace {

constexpr int kProtocol = 1;
constexpr size_t kOutboundLimit = 64u << 20;  // bytes kept while no interface is connected
constexpr auto kLastWords = std::chrono::milliseconds(1000);
constexpr UINT kDeliver = WM_APP;
constexpr UINT kFault = WM_APP + 1;
constexpr char kFaultCommand[] = "fault";
constexpr wchar_t kInboxClass[] = L"LoopbackEngineInbox";

std::string Environment(const char* name) {
  char value[1024] = "";
  const DWORD length = GetEnvironmentVariableA(name, value, sizeof value);
  return length < sizeof value ? std::string(value, length) : std::string();
}

uint64_t Microseconds() {
  static const auto began = std::chrono::steady_clock::now();
  return static_cast<uint64_t>(
      std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - began).count());
}

// Writes the file in one step, so that a program that waits for it never reads a partial number.
void WritePort(const std::string& path, uint16_t port) {
  const std::string unfinished = path + ".new";
  if (FILE* file = std::fopen(unfinished.c_str(), "wb")) {
    std::fprintf(file, "%u\n", port);
    std::fclose(file);
    MoveFileExA(unfinished.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING);
  } else {
    std::fprintf(stderr, "loopback engine: can't write the port to %s\n", path.c_str());
  }
}

bool Receive(SOCKET socket, void* to, size_t size) {
  auto* at = static_cast<char*>(to);
  while (size > 0) {
    const int received = recv(socket, at, static_cast<int>(std::min<size_t>(size, 1 << 20)), 0);
    if (received <= 0) return false;
    at += received;
    size -= static_cast<size_t>(received);
  }
  return true;
}

bool SendAll(SOCKET socket, const std::vector<uint8_t>& bytes) {
  size_t sent = 0;
  while (sent < bytes.size()) {
    const int count = send(socket, reinterpret_cast<const char*>(bytes.data() + sent),
                           static_cast<int>(std::min<size_t>(bytes.size() - sent, 1 << 20)), 0);
    if (count <= 0) return false;
    sent += static_cast<size_t>(count);
  }
  return true;
}

__attribute__((noinline)) void WriteToNull() {
  volatile int* volatile nowhere = nullptr;  // volatile twice, so that the compiler cannot assume that it is null
  *nowhere = 1;
}

Frame MakeFrame(FrameKind kind, int32_t engine) {
  Frame frame;
  frame.kind = kind;
  frame.engine = engine;
  frame.time = Microseconds();
  frame.thread = GetCurrentThreadId();
  return frame;
}

}  // namespace

void InterfaceServer::StartIfAsked() {
  if (active_) return;
  const std::string port = Environment("VANTRO_LOOPBACK_PORT");
  if (port.empty()) return;
  auto* server = new InterfaceServer;  // lives as long as the process, because its threads never end
  if (server->Start(static_cast<uint16_t>(std::strtoul(port.c_str(), nullptr, 10)))) {
    active_ = server;
  } else {
    std::fprintf(stderr, "loopback engine: can't listen on 127.0.0.1:%s (%d)\n", port.c_str(), WSAGetLastError());
    delete server;
  }
}

bool InterfaceServer::Start(uint16_t port) {
  WSADATA data;
  if (WSAStartup(MAKEWORD(2, 2), &data) != 0) return false;
  listener_ = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  int size = sizeof address;
  if (bind(listener_, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(listener_, 4) != 0 ||
      getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    return false;
  }
  window_thread_ = GetCurrentThreadId();
  MakeInbox();
  const std::string file = Environment("VANTRO_LOOPBACK_PORT_FILE");
  if (!file.empty()) WritePort(file, ntohs(address.sin_port));
  std::thread([this] { Serve(); }).detach();
  std::thread([this] { Write(); }).detach();
  return true;
}

void InterfaceServer::MakeInbox() {
  WNDCLASSEXW windowClass{};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = InboxProcedure;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = kInboxClass;
  RegisterClassExW(&windowClass);
  inbox_ = CreateWindowExW(0, kInboxClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, windowClass.hInstance, nullptr);
  SetWindowLongPtrW(inbox_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

void InterfaceServer::Serve() {
  for (;;) {
    const SOCKET client = accept(listener_, nullptr, nullptr);
    if (client == INVALID_SOCKET) return;
    const int yes = 1;
    setsockopt(client, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&yes), sizeof yes);
    Converse(client);
  }
}

void InterfaceServer::Converse(SOCKET client) {
  {
    const std::lock_guard guard(outbound_mutex_);
    client_ = client;
  }
  Greet();
  uint32_t size = 0;
  while (Receive(client, &size, sizeof size) && size <= kMaximumFrameSize) {
    std::vector<uint8_t> bytes(size);
    if (!Receive(client, bytes.data(), size)) break;
    const auto frame = DecodeFrame(bytes);
    if (!frame) break;
    Deliver(*frame);
  }
  shutdown(client, SD_BOTH);  // wakes a writer that waits in send
  std::unique_lock guard(outbound_mutex_);
  client_ = INVALID_SOCKET;
  outbound_changed_.wait(guard, [this] { return !writing_; });
  closesocket(client);
}

// The first frame of a connection goes before the frames that were kept.
void InterfaceServer::Greet() {
  Frame hello = MakeFrame(FrameKind::kHello, 0);
  char numbers[128];
  std::snprintf(numbers, sizeof numbers, "{\"protocol\":%d,\"pid\":%lu,\"thread\":%lu,\"engines\":[", kProtocol,
                GetCurrentProcessId(), window_thread_);
  std::string text = numbers;
  for (const int32_t engine : Registry::Get().LiveEngines()) {
    if (text.back() != '[') text += ',';
    text += std::to_string(engine);
  }
  text += "]}";
  hello.payload.assign(text.begin(), text.end());
  const std::lock_guard guard(outbound_mutex_);
  outbound_size_ += hello.payload.size();
  outbound_.emplace_front(std::move(hello), false);
  outbound_changed_.notify_all();
}

void InterfaceServer::Write() {
  std::unique_lock guard(outbound_mutex_);
  for (;;) {
    // Frames wait until a connection has put its greeting in front of them.
    outbound_changed_.wait(guard, [this] { return client_ != INVALID_SOCKET && !outbound_.empty(); });
    const SOCKET client = client_;
    Frame frame;
    if (dropped_ > 0 && outbound_.front().first.kind != FrameKind::kHello) {
      frame = MakeFrame(FrameKind::kDropped, 0);
      frame.payload.resize(sizeof dropped_);
      std::memcpy(frame.payload.data(), &dropped_, sizeof dropped_);
      dropped_ = 0;
    } else {
      frame = std::move(outbound_.front().first);
      outbound_size_ -= frame.payload.size();
      outbound_.pop_front();
    }
    writing_ = true;
    guard.unlock();
    const bool sent = SendAll(client, EncodeFrame(frame));
    if (!sent) shutdown(client, SD_BOTH);
    guard.lock();
    writing_ = false;
    if (!sent && client_ == client) client_ = INVALID_SOCKET;
    outbound_changed_.notify_all();
  }
}

void InterfaceServer::Enqueue(Frame frame, bool droppable) {
  const std::lock_guard guard(outbound_mutex_);
  outbound_size_ += frame.payload.size();
  outbound_.emplace_back(std::move(frame), droppable);
  for (auto it = outbound_.begin(); outbound_size_ > kOutboundLimit && it != outbound_.end();) {
    if (!it->second) {
      ++it;
      continue;
    }
    outbound_size_ -= it->first.payload.size();
    ++dropped_;
    it = outbound_.erase(it);
  }
  outbound_changed_.notify_all();
}

void InterfaceServer::HostMessage(int32_t engine, const char* channel, const uint8_t* bytes, size_t size,
                                  FlutterDesktopBinaryReply reply, void* user_data) {
  Frame frame = MakeFrame(FrameKind::kMessage, engine);
  frame.channel = channel;
  frame.payload.assign(bytes, bytes + size);
  if (reply) {
    frame.id = next_id_++;
    const std::lock_guard guard(replies_mutex_);
    replies_[frame.id] = {reply, user_data};
  }
  Enqueue(std::move(frame), true);
}

void InterfaceServer::EngineCreated(int32_t engine) { Enqueue(MakeFrame(FrameKind::kEngineCreated, engine), false); }

void InterfaceServer::Violation(int32_t engine, const std::string& text) {
  Frame frame = MakeFrame(FrameKind::kViolation, engine);
  frame.payload.assign(text.begin(), text.end());
  Enqueue(std::move(frame), false);
}

void InterfaceServer::Input(int32_t engine, UINT message, WPARAM wParam, LPARAM lParam) {
  Frame frame = MakeFrame(FrameKind::kInput, engine);
  const uint32_t number = message;
  const uint64_t wide = wParam;
  const int64_t length = lParam;
  frame.payload.resize(sizeof number + sizeof wide + sizeof length);
  std::memcpy(frame.payload.data(), &number, sizeof number);
  std::memcpy(frame.payload.data() + 4, &wide, sizeof wide);
  std::memcpy(frame.payload.data() + 12, &length, sizeof length);
  Enqueue(std::move(frame), true);
}

void InterfaceServer::EngineDestroyed(int32_t engine) {
  Enqueue(MakeFrame(FrameKind::kEngineDestroyed, engine), false);
  if (Registry::Get().EngineCount() > 0) return;
  std::unique_lock guard(outbound_mutex_);
  outbound_changed_.wait_for(guard, kLastWords,
                             [this] { return client_ == INVALID_SOCKET || (outbound_.empty() && !writing_); });
}

void InterfaceServer::Deliver(const Frame& frame) {
  if (frame.kind == FrameKind::kCommand) {
    Frame result = MakeFrame(FrameKind::kResult, frame.engine);
    result.id = frame.id;
    if (frame.channel == kFaultCommand) {
      const std::string_view posted = PostMessageW(inbox_, kFault, 0, 0) ? R"({"ok":true})" : R"({"ok":false})";
      result.payload.assign(posted.begin(), posted.end());
    } else {
      result.payload = RunCommand(frame.channel, frame.payload, window_thread_);
    }
    Enqueue(std::move(result), false);
    return;
  }
  const std::lock_guard guard(inbound_mutex_);
  inbound_.push_back(frame);
  if (!wake_posted_) wake_posted_ = PostMessageW(inbox_, kDeliver, 0, 0);
}

void InterfaceServer::DeliverOne() {
  Frame frame;
  {
    const std::lock_guard guard(inbound_mutex_);
    wake_posted_ = false;
    if (inbound_.empty()) return;
    frame = std::move(inbound_.front());
    inbound_.pop_front();
    // Posts one more message instead of emptying the queue here, so that the host's own messages are handled in
    // between, also in a modal loop.
    if (!inbound_.empty()) wake_posted_ = PostMessageW(inbox_, kDeliver, 0, 0);
  }
  if (frame.kind == FrameKind::kReply) {
    AnswerHost(frame);
    return;
  }
  if (frame.kind != FrameKind::kMessage) return;
  const auto answered = std::make_shared<bool>(false);
  const auto answer = [this, engine = frame.engine, id = frame.id, answered](const uint8_t* data, size_t size) {
    *answered = true;
    if (id == 0) return;
    Frame reply = MakeFrame(FrameKind::kReply, engine);
    reply.id = id;
    if (size > 0) reply.payload.assign(data, data + size);
    Enqueue(std::move(reply), false);
  };
  const bool heard =
      Registry::Get().Deliver(frame.engine, frame.channel, frame.payload.data(), frame.payload.size(), answer);
  if (*answered || frame.id == 0) return;
  Frame silence = MakeFrame(heard ? FrameKind::kNotAnswered : FrameKind::kNoListener, frame.engine);
  silence.id = frame.id;
  Enqueue(std::move(silence), false);
}

void InterfaceServer::AnswerHost(const Frame& frame) {
  HostReply reply{};
  {
    const std::lock_guard guard(replies_mutex_);
    const auto found = replies_.find(frame.id);
    if (found == replies_.end()) return;
    reply = found->second;
    replies_.erase(found);
  }
  reply.function(frame.payload.empty() ? nullptr : frame.payload.data(), frame.payload.size(), reply.user_data);
}

LRESULT CALLBACK InterfaceServer::InboxProcedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == kFault) WriteToNull();
  if (message != kDeliver) return DefWindowProcW(hwnd, message, wParam, lParam);
  reinterpret_cast<InterfaceServer*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA))->DeliverOne();
  return 0;
}

}  // namespace vantro::loopback
