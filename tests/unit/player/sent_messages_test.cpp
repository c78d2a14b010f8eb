// Serving sent messages while the player waits for an event.
#include "player/sent_messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "player/reader_epochs.h"
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
    const ImportHook wait("user32.dll", "MsgWaitForMultipleObjectsEx", &Wait);
    const ImportHook peek("user32.dll", "PeekMessageA", &Peek);
    ServeSentMessages();
  }
  EXPECT_THAT(calls, ElementsAre("wait for 0 handles, 1 ms, sent messages, also earlier ones",
                                 "peek every window, every message, sent messages without removal"));
}

int yields = 0;
int yieldsBeforeIdling = 0;
std::optional<ReaderEpochs::Reader> reader;

void WINAPI CountYield(DWORD milliseconds) { yields += milliseconds == 0 ? 1 : 1000; }

TEST(SentMessages, AreServedAfterTheWaitHasYielded200Times) {
  yields = 0;
  ReaderEpochs epochs([] {
    yieldsBeforeIdling = yields;
    reader.reset();
  });
  reader.emplace(epochs);
  const ImportHook sleep("KERNEL32.dll", "Sleep", &CountYield);
  epochs.WaitForReaders();
  EXPECT_EQ(yieldsBeforeIdling, 200);
}

}  // namespace
}  // namespace vantro::test
