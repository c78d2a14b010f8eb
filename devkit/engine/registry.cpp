#include "devkit/engine/registry.h"

#include <algorithm>
#include <cstdio>
#include <cwchar>

#include "devkit/engine/interface_server.h"

namespace vantro::loopback {

namespace {

void CopyPath(wchar_t (&to)[512], const wchar_t* from) { std::swprintf(to, std::size(to), L"%ls", from ? from : L""); }

LoopbackEngineProperties CopyProperties(const FlutterDesktopEngineProperties& from) {
  LoopbackEngineProperties to{};
  CopyPath(to.assets_path, from.assets_path);
  CopyPath(to.icu_data_path, from.icu_data_path);
  CopyPath(to.aot_library_path, from.aot_library_path);
  to.has_entrypoint = from.dart_entrypoint && *from.dart_entrypoint;
  to.argument_count = from.dart_entrypoint_argc;
  const int kept = std::min<int>(from.dart_entrypoint_argc, std::size(to.arguments));
  for (int i = 0; i < kept; ++i) {
    std::snprintf(to.arguments[i], sizeof to.arguments[i], "%s", from.dart_entrypoint_argv[i]);
  }
  return to;
}

}  // namespace

Registry& Registry::Get() {
  // Never destroyed, because threads of the host may send until the process has ended.
  static Registry* const registry = new Registry;
  return *registry;
}

FlutterDesktopEngine* Registry::CreateEngine(const FlutterDesktopEngineProperties& properties) {
  InterfaceServer::StartIfAsked();
  if (TakeFault(&LoopbackFaults::fail_engine_create)) return nullptr;
  auto* engine = new FlutterDesktopEngine;
  engine->messenger = new FlutterDesktopMessenger;
  ++references_;
  {
    const std::lock_guard guard(mutex_);
    engine->number = ++newest_;
    engine->messenger->engine = engine->number;
    engines_[engine->number] = engine;
    properties_ = CopyProperties(properties);
  }
  if (auto* server = InterfaceServer::Active()) server->EngineCreated(engine->number);
  return engine;
}

void Registry::DestroyEngine(FlutterDesktopEngine* engine) {
  const int32_t number = engine->number;
  {
    const std::lock_guard shutdown(engine->messenger->lock);
    engine->messenger->engine = 0;
  }
  size_t owed;
  {
    const std::lock_guard guard(mutex_);
    engines_.erase(number);
    owed = std::erase_if(pending_, [number](const auto& entry) { return entry.second.engine == number; });
  }
  for (size_t i = 0; i < owed; ++i) Violation(number, "a message was never answered while the engine lived");
  ReleaseReference(engine->messenger);
  delete engine;
  if (auto* server = InterfaceServer::Active()) server->EngineDestroyed(number);
}

void Registry::NoteViewSize(int width, int height) {
  const std::lock_guard guard(mutex_);
  properties_.view_width = width;
  properties_.view_height = height;
}

void Registry::AddReference(FlutterDesktopMessenger* messenger) {
  ++messenger->references;
  ++references_;
}

void Registry::ReleaseReference(FlutterDesktopMessenger* messenger) {
  --references_;
  if (--messenger->references == 0) delete messenger;
}

void Registry::SetListener(FlutterDesktopMessenger* messenger, const char* channel,
                           FlutterDesktopMessageCallback callback, void* user_data) {
  const std::lock_guard guard(mutex_);
  const auto engine = engines_.find(messenger->engine);
  if (engine == engines_.end()) return;
  if (callback) {
    engine->second->listeners[channel] = {callback, user_data};
  } else {
    engine->second->listeners.erase(channel);
  }
}

bool Registry::Deliver(int32_t engine, const std::string& channel, const uint8_t* bytes, size_t size, Answer answer) {
  FlutterDesktopMessenger* messenger;
  FlutterDesktopEngine::Listener listener;
  uintptr_t handle;
  {
    const std::lock_guard guard(mutex_);
    const auto found = engines_.find(engine);
    if (found == engines_.end()) return false;
    const auto entry = found->second->listeners.find(channel);
    if (entry == found->second->listeners.end()) return false;
    messenger = found->second->messenger;
    listener = entry->second;
    handle = next_handle_++;
    pending_[handle] = {engine, std::move(answer)};
  }
  FlutterDesktopMessage message{};
  message.struct_size = sizeof message;
  message.channel = channel.c_str();
  message.message = bytes;
  message.message_size = size;
  message.response_handle = reinterpret_cast<const FlutterDesktopMessageResponseHandle*>(handle);
  listener.callback(messenger, &message, listener.user_data);
  return true;
}

void Registry::TakeAnswer(FlutterDesktopMessenger* messenger, const FlutterDesktopMessageResponseHandle* handle,
                          const uint8_t* data, size_t size) {
  const int32_t engine = messenger->engine;
  Answer answer;
  {
    const std::lock_guard guard(mutex_);
    const auto owed = pending_.find(reinterpret_cast<uintptr_t>(handle));
    if (owed != pending_.end() && owed->second.engine == engine) {
      answer = std::move(owed->second.answer);
      pending_.erase(owed);
    }
  }
  if (answer) {
    answer(data, size);
  } else {
    Violation(engine, "an answer to a message that does not wait for one");
  }
}

bool Registry::Send(FlutterDesktopMessenger* messenger, const char* channel, const uint8_t* bytes, size_t size,
                    FlutterDesktopBinaryReply reply, void* user_data) {
  const int32_t engine = messenger->engine;
  if (engine == 0) return false;
  send_observer.Notify(
      [&](LoopbackSendObserver observer, void* data) { observer(engine, channel, bytes, size, data); });
  InterfaceServer* const server = InterfaceServer::Active();
  if (server) {
    server->HostMessage(engine, channel, bytes, size, reply, user_data);
    return true;
  }
  if (!reply) return true;
  Bytes answer;
  {
    const std::lock_guard guard(mutex_);
    if (!send_answer_) return false;
    answer = *send_answer_;
  }
  reply(answer.empty() ? nullptr : answer.data(), answer.size(), user_data);
  return true;
}

void Registry::Violation(int32_t engine, const std::string& text) {
  {
    const std::lock_guard guard(mutex_);
    ++violations_;
  }
  std::fprintf(stderr, "loopback engine %d: %s\n", engine, text.c_str());
  if (auto* server = InterfaceServer::Active()) server->Violation(engine, text);
}

bool Registry::TakeFault(int32_t LoopbackFaults::*fault) {
  const std::lock_guard guard(mutex_);
  if (faults_.*fault <= 0) return false;
  --(faults_.*fault);
  return true;
}

void Registry::SetFaults(const LoopbackFaults& faults) {
  const std::lock_guard guard(mutex_);
  faults_ = faults;
}

void Registry::Reset() {
  send_observer.Set(nullptr, nullptr);
  top_level_observer.Set(nullptr, nullptr);
  view_observer.Set(nullptr, nullptr);
  const std::lock_guard guard(mutex_);
  faults_ = {};
  top_level_results_.clear();
  send_answer_.reset();
  violations_ = 0;
}

int32_t Registry::EngineCount() {
  const std::lock_guard guard(mutex_);
  return static_cast<int32_t>(engines_.size());
}

std::vector<int32_t> Registry::LiveEngines() {
  const std::lock_guard guard(mutex_);
  std::vector<int32_t> numbers;
  for (const auto& [number, engine] : engines_) numbers.push_back(number);
  return numbers;
}

int32_t Registry::NewestEngine() {
  const std::lock_guard guard(mutex_);
  return newest_;
}

int32_t Registry::Violations() {
  const std::lock_guard guard(mutex_);
  return violations_;
}

int32_t Registry::PendingReplies() {
  const std::lock_guard guard(mutex_);
  return static_cast<int32_t>(pending_.size());
}

bool Registry::HasListener(int32_t engine, const std::string& channel) {
  const std::lock_guard guard(mutex_);
  const auto found = engines_.find(engine);
  return found != engines_.end() && found->second->listeners.contains(channel);
}

LoopbackEngineProperties Registry::NewestProperties() {
  const std::lock_guard guard(mutex_);
  return properties_;
}

void Registry::SetSendAnswer(const uint8_t* bytes, size_t size) {
  const std::lock_guard guard(mutex_);
  send_answer_ = std::make_unique<Bytes>(bytes, bytes + size);
}

void Registry::SetTopLevelResult(UINT message, bool handled, LRESULT result) {
  const std::lock_guard guard(mutex_);
  if (handled) {
    top_level_results_[message] = result;
  } else {
    top_level_results_.erase(message);
  }
}

bool Registry::TopLevelResult(UINT message, LRESULT* result) {
  const std::lock_guard guard(mutex_);
  const auto found = top_level_results_.find(message);
  if (found == top_level_results_.end()) return false;
  *result = found->second;
  return true;
}

}  // namespace vantro::loopback
