#include "runtime/stop.h"

#include <utility>

namespace vantro::runtime {
namespace {

constexpr DWORD kLookInterval = 10;  // milliseconds

thread_local const void* playerInEvent = nullptr;  // the innermost one

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

LibvlcThreadScope::LibvlcThreadScope(const void* player) : outer_(std::exchange(playerInEvent, player)) {}

LibvlcThreadScope::~LibvlcThreadScope() { playerInEvent = outer_; }

bool OnLibvlcThread() { return playerInEvent != nullptr; }

bool InEventOfAnother(const void* player) { return playerInEvent && playerInEvent != player; }

}  // namespace vantro::runtime
