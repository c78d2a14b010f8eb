// The functions declared in loopback_control.h.
#include "devkit/engine/loopback_control.h"
#include "devkit/engine/registry.h"

using vantro::loopback::Bytes;
using vantro::loopback::Registry;

void LoopbackSetFaults(const LoopbackFaults* faults) { Registry::Get().SetFaults(*faults); }
void LoopbackReset() { Registry::Get().Reset(); }
int32_t LoopbackEngineCount() { return Registry::Get().EngineCount(); }
int32_t LoopbackNewestEngine() { return Registry::Get().NewestEngine(); }
int32_t LoopbackMessengerReferences() { return Registry::Get().MessengerReferences(); }
int32_t LoopbackReplyViolations() { return Registry::Get().Violations(); }
int32_t LoopbackPendingReplies() { return Registry::Get().PendingReplies(); }

int32_t LoopbackHasListener(int32_t engine, const char* channel) {
  return Registry::Get().HasListener(engine, channel);
}

int32_t LoopbackDeliver(int32_t engine, const char* channel, const uint8_t* bytes, size_t size, LoopbackReply reply,
                        void* userData) {
  struct Taken {
    bool answered = false;
    Bytes bytes;
  };
  const auto taken = std::make_shared<Taken>();  // shared with an answer that comes after the return
  const bool heard =
      Registry::Get().Deliver(engine, channel, bytes, size, [taken](const uint8_t* answer, size_t length) {
        taken->answered = true;
        if (length > 0) taken->bytes.assign(answer, answer + length);
      });
  const uint8_t* data = taken->bytes.empty() ? nullptr : taken->bytes.data();
  if (reply) reply(data, taken->bytes.size(), taken->answered, userData);
  return heard;
}

void LoopbackSetSendObserver(LoopbackSendObserver observer, void* userData) {
  Registry::Get().send_observer.Set(observer, userData);
}

void LoopbackSetSendAnswer(const uint8_t* bytes, size_t size) { Registry::Get().SetSendAnswer(bytes, size); }

void LoopbackSetTopLevelResult(UINT message, int32_t handled, LRESULT result) {
  Registry::Get().SetTopLevelResult(message, handled != 0, result);
}

void LoopbackSetTopLevelObserver(LoopbackTopLevelObserver observer, void* userData) {
  Registry::Get().top_level_observer.Set(observer, userData);
}

void LoopbackSetViewObserver(LoopbackViewObserver observer, void* userData) {
  Registry::Get().view_observer.Set(observer, userData);
}

void LoopbackNewestProperties(LoopbackEngineProperties* properties) {
  *properties = Registry::Get().NewestProperties();
}
