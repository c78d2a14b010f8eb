#include "runtime/stop.h"

namespace vantro::runtime {
namespace {

constexpr DWORD kLookInterval = 10;  // milliseconds

thread_local int eventsInProgress = 0;

// Windows delivers sent messages inside this call. Nothing is taken from the queue.
void ServeSentMessages() {
  MSG message;
  PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
}

}  // namespace

bool WaitServingSentMessages(HANDLE wake, const std::function<bool()>& done) {
  const ULONGLONG deadline = GetTickCount64() + kLongestStop;
  while (!done()) {
    if (GetTickCount64() >= deadline) return false;
    if (MsgWaitForMultipleObjectsEx(1, &wake, kLookInterval, QS_SENDMESSAGE, MWMO_INPUTAVAILABLE) ==
        WAIT_OBJECT_0 + 1) {
      ServeSentMessages();
    }
  }
  return true;
}

LibvlcThreadScope::LibvlcThreadScope() { ++eventsInProgress; }

LibvlcThreadScope::~LibvlcThreadScope() { --eventsInProgress; }

bool OnLibvlcThread() { return eventsInProgress > 0; }

}  // namespace vantro::runtime
