// Serving sent messages while the player waits for an event.
#include "player/sent_messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "tests/support/import_hook.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;

std::vector<std::string> calls;

DWORD WINAPI Wait(DWORD count, const HANDLE* handles, DWORD milliseconds, DWORD wake, DWORD flags) {
  calls.push_back("wait for " + std::to_string(count) + " handles, " + std::to_string(milliseconds) + " ms" +
                  (wake == QS_SENDMESSAGE ? ", sent messages" : ", other messages") +
                  (flags == MWMO_INPUTAVAILABLE ? ", also earlier ones" : ""));
  (void)handles;
  return WAIT_TIMEOUT;
}

BOOL WINAPI Peek(MSG*, HWND window, UINT first, UINT last, UINT flags) {
  calls.push_back(std::string("peek") + (window ? " one window" : " every window") +
                  (first == 0 && last == 0 ? ", every message" : ", some messages") +
                  (flags == (PM_NOREMOVE | PM_QS_SENDMESSAGE) ? ", sent messages without removal" : ", other flags"));
  return FALSE;
}

TEST(SentMessages, WaitAtMostAMillisecondAndLookOnlyAtSentMessages) {
  calls.clear();
  {
    const ImportHook wait("user32.dll", "MsgWaitForMultipleObjectsEx", reinterpret_cast<void*>(&Wait));
    const ImportHook peek("user32.dll", "PeekMessageA", reinterpret_cast<void*>(&Peek));
    ServeSentMessages();
  }
  EXPECT_THAT(calls, ElementsAre("wait for 0 handles, 1 ms, sent messages, also earlier ones",
                                 "peek every window, every message, sent messages without removal"));
}

}  // namespace
}  // namespace vantro::test
