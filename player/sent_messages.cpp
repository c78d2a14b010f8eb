#include "player/sent_messages.h"

#include <windows.h>

namespace vantro {

void ServeSentMessages() {
  constexpr DWORD kLongestWaitMs = 1;
  MsgWaitForMultipleObjectsEx(0, nullptr, kLongestWaitMs, QS_SENDMESSAGE, MWMO_INPUTAVAILABLE);
  // The look calls the window procedures; the filter keeps everything else where it is.
  MSG message;
  PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
}

}  // namespace vantro
