#include "player/sent_messages.h"

#include <windows.h>

namespace vantro {

void ServeSentMessages() {
  constexpr DWORD kLongestWaitMs = 1;
  // Without handles the array may be null.
  // cppcheck-suppress nullPointer
  MsgWaitForMultipleObjectsEx(0, nullptr, kLongestWaitMs, QS_SENDMESSAGE, MWMO_INPUTAVAILABLE);
  // PeekMessage calls the window procedures for sent messages. With this filter it leaves all other messages in the
  // queue.
  MSG message;
  PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
}

}  // namespace vantro
