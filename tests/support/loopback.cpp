#include "tests/support/loopback.h"

#include <cstdio>
#include <cstdlib>

namespace vantro::test {

namespace {

// Ends the program when the name is missing, because the rest of a test would be wrong.
FARPROC Find(const char* name) {
  const HMODULE engine = GetModuleHandleA("flutter_windows.dll");
  const FARPROC function = engine ? GetProcAddress(engine, name) : nullptr;
  if (function) return function;
  std::fprintf(stderr, "%s: no %s in flutter_windows.dll\n", __func__, name);
  std::abort();
}

template <typename Function>
Function* Resolve(const char* name) {
  return reinterpret_cast<Function*>(Find(name));
}

#define LOOPBACK(name) Resolve<decltype(::Loopback##name)>("Loopback" #name)

}  // namespace

Loopback::Loopback() { LOOPBACK(Reset)(); }
Loopback::~Loopback() { LOOPBACK(Reset)(); }

void Loopback::SetFaults(const LoopbackFaults& faults) { LOOPBACK(SetFaults)(&faults); }
int Loopback::EngineCount() const { return LOOPBACK(EngineCount)(); }
int Loopback::NewestEngine() const { return LOOPBACK(NewestEngine)(); }
int Loopback::MessengerReferences() const { return LOOPBACK(MessengerReferences)(); }
int Loopback::ReplyViolations() const { return LOOPBACK(ReplyViolations)(); }
int Loopback::PendingReplies() const { return LOOPBACK(PendingReplies)(); }

bool Loopback::HasListener(int engine, const std::string& channel) const {
  return LOOPBACK(HasListener)(engine, channel.c_str()) != 0;
}

LoopbackEngineProperties Loopback::NewestProperties() const {
  LoopbackEngineProperties properties{};
  LOOPBACK(NewestProperties)(&properties);
  return properties;
}

void Loopback::SetSendAnswer(const Bytes& bytes) { LOOPBACK(SetSendAnswer)(bytes.data(), bytes.size()); }

void Loopback::SetTopLevelResult(UINT message, bool handled, LRESULT result) {
  LOOPBACK(SetTopLevelResult)(message, handled, result);
}

void Loopback::SetTopLevelObserver(LoopbackTopLevelObserver observer, void* userData) {
  LOOPBACK(SetTopLevelObserver)(observer, userData);
}

void Loopback::SetViewObserver(LoopbackViewObserver observer, void* userData) {
  LOOPBACK(SetViewObserver)(observer, userData);
}

void Loopback::SetSendObserver(LoopbackSendObserver observer, void* userData) {
  LOOPBACK(SetSendObserver)(observer, userData);
}

std::optional<Bytes> Loopback::Deliver(int engine, const std::string& channel, const Bytes& bytes) {
  std::optional<Bytes> answer;
  const auto take = [](const uint8_t* data, size_t size, int32_t replied, void* userData) {
    if (replied) static_cast<std::optional<Bytes>*>(userData)->emplace(data, data + size);
  };
  LOOPBACK(Deliver)(engine, channel.c_str(), bytes.data(), bytes.size(), take, &answer);
  return answer;
}

SentMessages::SentMessages() { LOOPBACK(SetSendObserver)(&Observe, this); }
SentMessages::~SentMessages() { LOOPBACK(SetSendObserver)(nullptr, nullptr); }

std::vector<SentMessages::Message> SentMessages::All() const {
  const std::lock_guard guard(mutex_);
  return messages_;
}

size_t SentMessages::Count() const {
  const std::lock_guard guard(mutex_);
  return messages_.size();
}

void SentMessages::Clear() {
  const std::lock_guard guard(mutex_);
  messages_.clear();
}

void SentMessages::Observe(int32_t engine, const char* channel, const uint8_t* bytes, size_t size, void* userData) {
  auto* self = static_cast<SentMessages*>(userData);
  const std::lock_guard guard(self->mutex_);
  self->messages_.push_back({engine, channel, Bytes(bytes, bytes + size), GetCurrentThreadId()});
}

}  // namespace vantro::test
