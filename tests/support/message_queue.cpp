#include "tests/support/message_queue.h"

#include <windows.h>

namespace vantro::test {

int DrainQueue() {
  int quits = 0;
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      ++quits;
      continue;
    }
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return quits;
}

}  // namespace vantro::test
