// The search box: typing restarts a timer, and the timer sends the text.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "shell/shell_ids.h"
#include "tests/support/import_hook.h"
#include "tests/support/line_order.h"
#include "tests/unit/shell/call_log.h"
#include "tests/unit/shell/shell_fixture.h"

namespace vantro {
namespace {

using test::CallLog;
using test::Inside;
using test::LogCapture;
using test::PumpUntil;
using Lines = std::vector<std::string>;

class Search : public test::ShellTest {
 protected:
  Search() { sent_.Clear(); }

  // Types a character into the box, which causes EN_CHANGE.
  void Type(char character) { SendMessageA(Inside(Window()).searchBox_, WM_CHAR, static_cast<WPARAM>(character), 0); }
  void SetText(const wchar_t* text) { SetWindowTextW(Inside(Window()).searchBox_, text); }
  void EndOfTheWait() { SendMessageA(Window().hwnd_, WM_TIMER, kSearchDebounceTimerId, 0); }
};

TEST_F(Search, TypingStartsAWaitOf500Milliseconds) {
  LogCapture log;
  CallLog calls(Window());
  Type('a');
  EXPECT_EQ(calls.Of("SetTimer"), (Lines{"SetTimer main 1001 500ms"}));
  EXPECT_NE(Inside(Window()).searchDebounceTimer_, 0u);
  EXPECT_EQ(test::LinesWith(log, {"HandleSearchInput", "focus redirect"}),
            (Lines{"DEBUG HandleSearchInput: Debounce timer set (500ms)",
                   "DEBUG WM_COMMAND: Skipping focus redirect for search box text change"}));
}

TEST_F(Search, EachChangeRestartsTheWaitAndOnlyTheLastTextIsSent) {
  CallLog calls(Window());
  Type('a');
  Type('b');
  Type('c');
  EXPECT_EQ(calls.Of("KillTimer"), (Lines{"KillTimer main 1001", "KillTimer main 1001"}));
  ASSERT_TRUE(PumpUntil([this] { return sent_.Count() > 0; }));
  EXPECT_EQ(CallsToInterface(), (Lines{"search_query_changed(abc)"}));
}

TEST_F(Search, TextIsSentHalfASecondAfterTheLastChange) {
  const DWORD began = GetTickCount();
  Type('a');
  ASSERT_TRUE(PumpUntil([this] { return sent_.Count() > 0; }));
  EXPECT_NEAR(GetTickCount() - began, 500, 250);
}

TEST_F(Search, EndOfTheWaitStopsTheTimerAndLogs) {
  Type('a');
  LogCapture log;
  CallLog calls(Window());
  EndOfTheWait();
  EXPECT_EQ(calls.Calls(), (Lines{"KillTimer main 1001"}));
  EXPECT_EQ(Inside(Window()).searchDebounceTimer_, 0u);
  EXPECT_EQ(log.Lines(), (Lines{"DEBUG WM_TIMER: Search debounce complete, query: 'a'",
                                "DEBUG WM_TIMER: Sent search query to Flutter - Flutter will handle focus"}));
}

TEST_F(Search, ClearedBoxSendsNoArgumentInsteadOfAnEmptyText) {
  SetText(L"a");
  SetText(L"");
  sent_.Clear();
  EndOfTheWait();
  EXPECT_EQ(CallsToInterface(), (Lines{"search_query_changed"}));
}

TEST_F(Search, TextIsSentAsUtf8) {
  SetText(L"Stra\u00DFe \u6771");
  EndOfTheWait();
  EXPECT_EQ(CallsToInterface(), (Lines{"search_query_changed(Stra\xC3\x9F"
                                       "e \xE6\x9D\xB1)"}));
}

TEST_F(Search, TextIsCutAt1023Characters) {
  SetText(std::wstring(1100, L'x').c_str());
  EndOfTheWait();
  EXPECT_EQ(CallsToInterface(), (Lines{"search_query_changed(" + std::string(1023, 'x') + ")"}));
}

TEST_F(Search, MovingTheWindowWhileTypingKeepsTextAndTimerNotFocus) {
  SetFocus(Inside(Window()).searchBox_);
  Type('a');
  SetWindowPos(Window().hwnd_, nullptr, 30, 40, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  EXPECT_EQ(GetFocus(), Window().flutterEngine_->flutterWindow_);
  EXPECT_NE(Inside(Window()).searchDebounceTimer_, 0u);
  ASSERT_TRUE(PumpUntil([this] { return sent_.Count() > 0; }));
  EXPECT_EQ(CallsToInterface(), (Lines{"search_query_changed(a)"}));
}

TEST_F(Search, TypingLeavesTheFocusInTheBox) {
  SetFocus(Inside(Window()).searchBox_);
  Type('a');
  EXPECT_EQ(GetFocus(), Inside(Window()).searchBox_);
}

TEST_F(Search, NotificationOfAClickOnTheBoxIsAnUnknownCommand) {
  LogCapture log;
  SendMessageA(Window().hwnd_, WM_COMMAND, MAKEWPARAM(kSearchBoxId, 0),
               reinterpret_cast<LPARAM>(Inside(Window()).searchBox_));
  EXPECT_TRUE(log.Has("DEBUG HandleMenuCommand: Unknown command 104"));
}

TEST_F(Search, ChangeWithoutASearchBoxStartsNoWait) {
  Inside(Window()).searchBox_ = nullptr;
  CallLog calls(Window());
  Inside(Window()).search_.HandleSearchInput();
  EXPECT_TRUE(calls.Calls().empty());
}

TEST_F(Search, EndOfTheWaitWithoutASearchBoxOnlyStopsTheTimer) {
  Type('a');
  Inside(Window()).searchBox_ = nullptr;
  CallLog calls(Window());
  LogCapture log;
  EndOfTheWait();
  EXPECT_EQ(calls.Calls(), (Lines{"KillTimer main 1001"}));
  EXPECT_TRUE(log.Lines().empty());
  EXPECT_EQ(sent_.Count(), 0u);
}

int WINAPI NoText(HWND, wchar_t*, int) { return -1; }

TEST_F(Search, ATextThatCannotBeReadIsNotSent) {
  SetText(L"a");
  const test::ImportHook hook("user32.dll", "GetWindowTextW", NoText);
  LogCapture log;
  sent_.Clear();
  EndOfTheWait();
  EXPECT_EQ(sent_.Count(), 0u);
  EXPECT_TRUE(log.Lines().empty());
}

TEST_F(Search, WithoutAChannelNothingIsSent) {
  SetText(L"a");
  Window().methodChannelHandler_->methodChannel_.reset();
  LogCapture log;
  EndOfTheWait();
  EXPECT_EQ(log.Lines(), (Lines{"DEBUG WM_TIMER: Search debounce complete, query: 'a'"}));
}

VantroWindow* searching = nullptr;
UINT_PTR WINAPI NoteSetTimer(HWND, UINT_PTR, UINT, TIMERPROC) {
  test::Note("SetTimer");
  return 7;
}
BOOL WINAPI NoteKillTimer(HWND, UINT_PTR) {
  test::Note("KillTimer of " + std::to_string(Inside(*searching).searchDebounceTimer_));
  return TRUE;
}
void OnSend(int32_t, const char*, const uint8_t*, size_t, void*) { test::Note("send"); }

TEST_F(Search, EachStepOfAWaitIsMadeBeforeItIsLogged) {
  searching = &Window();
  loopback_.SetSendObserver(OnSend, nullptr);
  const test::ImportHook set("user32.dll", "SetTimer", NoteSetTimer);
  const test::ImportHook kill("user32.dll", "KillTimer", NoteKillTimer);
  LogCapture log;
  Inside(Window()).search_.HandleSearchInput();
  Inside(Window()).search_.OnSearchDebounceTimer();
  EXPECT_EQ(log.Lines(),
            (Lines{"DEBUG (call) SetTimer", "DEBUG HandleSearchInput: Debounce timer set (500ms)",
                   "DEBUG (call) KillTimer of 7", "DEBUG WM_TIMER: Search debounce complete, query: ''",
                   "DEBUG (call) send", "DEBUG WM_TIMER: Sent search query to Flutter - Flutter will handle focus"}));
}

TEST_F(Search, AWaitThatIsCancelledHasNoTimerAnyMore) {
  Type('a');
  Inside(Window()).search_.StopDebounceTimer();
  EXPECT_EQ(Inside(Window()).searchDebounceTimer_, 0u);
}

TEST_F(Search, TheBoxCountsAsNotClickedAtFirst) { EXPECT_FALSE(Inside(Window()).searchBoxClicked_); }

TEST_F(Search, WithoutAChannelHandlerNothingIsSent) {
  SetText(L"a");
  Window().methodChannelHandler_.reset();
  sent_.Clear();
  LogCapture log;
  EndOfTheWait();
  EXPECT_EQ(sent_.Count(), 0u);
  EXPECT_EQ(log.Lines(), (Lines{"DEBUG WM_TIMER: Search debounce complete, query: 'a'"}));
}

}  // namespace
}  // namespace vantro
