// The synchronous stop.
#include <thread>

#include "tests/support/process_resources.h"
#include "tests/unit/runtime/adapter.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;

constexpr uint64_t kAtOnce = 150;    // milliseconds, on a busy machine
constexpr uint64_t kLongest = 5000;  // the documented limit

class StopTest : public AdapterTest {
 protected:
  uint64_t TakenToStop() {
    return Taken([&] { vlc().libvlc_media_player_stop(player_); });
  }
};
OVER_BOTH_VARIANTS(StopTest);

TEST_P(StopTest, ReturnsWhenTheHostHasSeenItsStoppedEvent) {
  published::SetState(real_, published::kPlaying);
  std::atomic<bool> seen{false};
  Action slow = [&] {
    Sleep(40);
    seen = true;
  };
  Attach(kStopped, RunAction, &slow);
  StopsAfter(80);
  const uint64_t taken = TakenToStop();
  EXPECT_TRUE(seen);
  EXPECT_GE(taken, 100u);
  EXPECT_LT(taken, 120u + kAtOnce);
}

TEST_P(StopTest, OfAPlayerThatNeverPlayedReturnsAtOnce) {
  EXPECT_LT(TakenToStop(), kAtOnce);
  EXPECT_THAT(published::CallsOf("libvlc_media_player_stop_async"), testing::SizeIs(1));
}

TEST_P(StopTest, OfAPlayerAtRestReportsOneStoppedOnTheCallingThread) {
  Received stopped;
  Attach(kStopped, Receive, &stopped);
  vlc().libvlc_media_player_stop(player_);
  EXPECT_EQ(stopped.calls, 1);
  EXPECT_EQ(stopped.threadId, GetCurrentThreadId());
}

TEST_P(StopTest, OfAPlayingPlayerReportsOnlyTheLibrarysStopped) {
  Received stopped;
  Attach(kStopped, Receive, &stopped);
  published::SetState(real_, published::kPlaying);
  StopsAfter(20);
  vlc().libvlc_media_player_stop(player_);
  EXPECT_EQ(stopped.calls, 1);
  EXPECT_NE(stopped.threadId, GetCurrentThreadId());
}

TEST_P(StopTest, ThatIsGivenUpReportsNoStopped) {
  Received stopped;
  Attach(kStopped, Receive, &stopped);
  NeverStops();
  vlc().libvlc_media_player_stop(player_);
  EXPECT_EQ(stopped.calls, 0);
}

TEST_P(StopTest, CalledTwiceReturnsAtOnceTheSecondTime) {
  published::SetState(real_, published::kPlaying);
  StopsAfter(20);
  vlc().libvlc_media_player_stop(player_);
  EXPECT_LT(TakenToStop(), kAtOnce);
}

TEST_P(StopTest, ThatNeverEndsIsGivenUpAfterFiveSeconds) {
  NeverStops();
  const uint64_t taken = TakenToStop();
  EXPECT_GE(taken, kLongest - 20);
  EXPECT_LT(taken, kLongest + kAtOnce);
}

TEST_P(StopTest, FromACallbackDoesNotWait) {
  NeverStops();
  uint64_t taken = kLongest;
  Action stop = [&] { taken = TakenToStop(); };
  Attach(kPaused, RunAction, &stop);
  published::OnLibraryThread([&] { Reach(kPaused); });
  EXPECT_LT(taken, kAtOnce);
  EXPECT_THAT(published::CallsOf("libvlc_media_player_stop_async"), testing::SizeIs(1));
}

TEST_P(StopTest, InsideAnEventOnTheCallersOwnThreadDoesNotWait) {
  NeverStops();
  uint64_t taken = kLongest;
  Action stop = [&] { taken = TakenToStop(); };
  Attach(kMediaChanged, RunAction, &stop);
  ReportMediaChanged();
  EXPECT_LT(taken, kAtOnce);
}

TEST_P(StopTest, WaitsForAnAsynchronousStopInProgress) {
  published::SetState(real_, published::kPlaying);
  StopsAfter(100);
  vlc().libvlc_media_player_stop_async(player_);
  published::SetResult("libvlc_media_player_stop_async", -1);
  Received received;
  Attach(kStopped, Receive, &received);
  vlc().libvlc_media_player_stop(player_);
  EXPECT_EQ(received.calls, 1);
}

TEST_P(StopTest, CalledByTwoThreadsAtOnceReturnsToBoth) {
  published::SetState(real_, published::kPlaying);
  StopsAfter(100);
  uint64_t first = 0;
  uint64_t second = 0;
  std::thread other([&] { first = TakenToStop(); });
  second = TakenToStop();
  other.join();
  EXPECT_LT(first, 100 + kAtOnce);
  EXPECT_LT(second, 100 + kAtOnce);
}

TEST_P(StopTest, RightAfterPlayWaitsForThePlaybackThatIsAboutToBegin) {
  published::SetResult("libvlc_media_player_stop_async", 0);
  ASSERT_EQ(vlc().libvlc_media_player_play(player_), 0);
  Received stopped;
  Attach(kStopped, Receive, &stopped);
  published::Later(60, [&] {
    Reach(kOpening);
    Sleep(60);
    Reach(kStopping);
    Reach(kStopped);
  });
  vlc().libvlc_media_player_stop(player_);  // the library still reports the initial state
  EXPECT_EQ(stopped.calls, 1);
  EXPECT_NE(stopped.threadId, GetCurrentThreadId());
}

TEST_P(StopTest, OfAStartThatComesAndGoesWithoutAnEventEndsSoon) {
  published::SetResult("libvlc_media_player_stop_async", 0);
  vlc().libvlc_media_player_play(player_);
  EXPECT_LT(TakenToStop(), 1000u);
}

TEST_P(StopTest, AfterAPlayThatFailedReturnsAtOnce) {
  published::SetResult("libvlc_media_player_play", -1);
  published::SetResult("libvlc_media_player_stop_async", 0);
  ASSERT_EQ(vlc().libvlc_media_player_play(player_), -1);
  EXPECT_LT(TakenToStop(), kAtOnce);
}

TEST_P(StopTest, AfterAPlayFromTheStoppedCallbackWaitsForThatPlayback) {
  published::SetState(real_, published::kPlaying);
  Action play = [&] { vlc().libvlc_media_player_play(player_); };
  Attach(kStopped, RunAction, &play);
  published::OnLibraryThread([&] { Reach(kStopped); });
  Detach(kStopped, RunAction, &play);
  published::SetResult("libvlc_media_player_stop_async", 0);
  published::Later(100, [&] { Reach(kOpening), Reach(kStopped); });
  Received stopped;
  Attach(kStopped, Receive, &stopped);
  vlc().libvlc_media_player_stop(player_);
  EXPECT_EQ(stopped.calls, 1);
}

// Messages of the stopping thread.

struct Window {
  Window()
      : handle(CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr)),
        before(reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(handle, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)))) {
    current = this;
  }
  ~Window() { DestroyWindow(handle); }
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message < WM_APP || message > 0xBFFF) return CallWindowProcW(current->before, window, message, wParam, lParam);
    current->seen.push_back(message);
    return 1;
  }
  static inline Window* current = nullptr;
  HWND handle;
  WNDPROC before;
  std::vector<UINT> seen;
};

TEST_P(StopTest, HandlesAMessageThatTheLibrarySendsWhileItStops) {
  published::SetState(real_, published::kPlaying);
  Window window;
  LRESULT answer = 0;
  StopsAfter(30, [&] { answer = SendMessageW(window.handle, WM_APP + 7, 0, 0); });
  EXPECT_LT(TakenToStop(), 30 + kAtOnce);
  EXPECT_EQ(answer, 1);
  EXPECT_THAT(window.seen, ElementsAre(WM_APP + 7));
}

TEST_P(StopTest, LeavesPostedMessagesInTheirOrder) {
  published::SetState(real_, published::kPlaying);
  Window window;
  PostMessageW(window.handle, WM_APP + 1, 0, 0);
  PostMessageW(window.handle, WM_APP + 2, 0, 0);
  StopsAfter(30, [&] {
    PostMessageW(window.handle, WM_APP + 3, 0, 0);
    SendMessageW(window.handle, WM_APP + 7, 0, 0);
  });
  vlc().libvlc_media_player_stop(player_);
  EXPECT_THAT(window.seen, ElementsAre(WM_APP + 7));
  MSG message;
  while (PeekMessageW(&message, window.handle, WM_APP, 0xBFFF, PM_REMOVE)) DispatchMessageW(&message);
  EXPECT_THAT(window.seen, ElementsAre(WM_APP + 7, WM_APP + 1, WM_APP + 2, WM_APP + 3));
}

TEST_P(StopTest, EventsOnManyThreadsLeaveNoHandleBehind) {
  const auto deliver = [&](int count) {
    for (int i = 0; i < count; ++i) published::OnLibraryThread([&] { Reach(kPlaying); });
  };
  deliver(20);
  const size_t before = HandleCount();
  deliver(500);
  EXPECT_LE(HandleCount(), before + 5);
}

}  // namespace
}  // namespace vantro::test
