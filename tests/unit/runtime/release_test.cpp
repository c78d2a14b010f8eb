// The release of a player while other threads or its own callbacks are using it.
#include <thread>

#include "tests/unit/runtime/adapter.h"

namespace vantro::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Gt;
using testing::Lt;
using testing::Ne;

class ReleaseTest : public AdapterTest {};
OVER_BOTH_VARIANTS(ReleaseTest);

TEST_P(ReleaseTest, OfAPlayingPlayerStopsItFirst) {
  published::SetState(real_, published::kPlaying);
  StopsAfter(50);
  Received stopped;
  int stoppedAtRelease = 0;
  published::OnCall("libvlc_media_player_release", [&] { stoppedAtRelease = stopped.calls; });
  Attach(kStopped, Receive, &stopped);
  Release();
  EXPECT_EQ(stoppedAtRelease, 1);
  EXPECT_THAT(published::ThreadsOf("libvlc_media_player_release"), ElementsAre(GetCurrentThreadId()));
}

TEST_P(ReleaseTest, OfAPlayerThatDoesNotStopTakesFiveSecondsEvenIfTheLibrarysTakesLonger) {
  NeverStops();
  std::atomic<bool> go{false};
  published::OnCall("libvlc_media_player_release", [&] {
    while (!go) Sleep(5);
  });
  EXPECT_THAT(Taken([&] { Release(); }), AllOf(Gt(4900u), Lt(5400u)));
  while (published::CallsOf("libvlc_media_player_release").empty()) Sleep(5);
  EXPECT_THAT(published::ThreadsOf("libvlc_media_player_release"), ElementsAre(Ne(GetCurrentThreadId())));
  go = true;
  while (published::Live().players > 0) Sleep(5);
}

TEST_P(ReleaseTest, FromACallbackIsLeftToAThreadThatMayWait) {
  NeverStops();
  DWORD callbackThread = 0;
  Action release = [&] {
    callbackThread = GetCurrentThreadId();
    Release();
  };
  Received behind;
  Attach(kPaused, RunAction, &release);
  Attach(kPaused, Receive, &behind);
  published::OnLibraryThread([&] { Reach(kPaused); });
  while (published::Live().players > 0) Sleep(5);
  EXPECT_THAT(published::ThreadsOf("libvlc_media_player_release"), ElementsAre(Ne(callbackThread)));
  EXPECT_EQ(behind.calls, 0);
}

TEST_P(ReleaseTest, OnAnotherThreadWaitsForACallbackInProgress) {
  std::atomic<bool> inside{false};
  std::atomic<bool> ended{false};
  Action slow = [&] {
    inside = true;
    Sleep(100);
    ended = true;
  };
  Attach(kPaused, RunAction, &slow);
  published::Later(0, [&] { Reach(kPaused); });
  while (!inside) Sleep(1);
  published::SetState(real_, published::kStopped);
  Release();
  EXPECT_TRUE(ended);
}

TEST_P(ReleaseTest, OfAPlayerAtRestReportsNoEvent) {
  Received stopped;
  Attach(kStopped, Receive, &stopped);
  Release();
  EXPECT_EQ(stopped.calls, 0);
}

TEST_P(ReleaseTest, IsFollowedByNoEvent) {
  Received received;
  Attach(kPaused, Receive, &received);
  // The library may deliver events until its own release returns.
  published::OnCall("libvlc_media_player_release", [&] {
    if (variant_ == Variant::kCallbacks) Reach(kPaused);
  });
  Release();
  EXPECT_EQ(received.calls, 0);
}

TEST_P(ReleaseTest, InAMessageServedByAStopEndsTheStopWithoutUseOfTheDeadPlayer) {
  static Action release;
  release = [&] { Release(); };
  NeverStops();
  const HWND window = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
  SetWindowLongPtrW(window, GWLP_WNDPROC,
                    reinterpret_cast<LONG_PTR>(+[](HWND w, UINT m, WPARAM p, LPARAM q) -> LRESULT {
                      if (m == WM_APP) release();
                      return m == WM_APP ? 0 : DefWindowProcW(w, m, p, q);
                    }));
  published::Later(100, [&] { SendMessageW(window, WM_APP, 0, 0); });
  EXPECT_LT(Taken([&] { vlc().libvlc_media_player_stop(player_); }), 5600u);
  while (published::Live().players > 0) Sleep(5);
  DestroyWindow(window);
}

TEST_P(ReleaseTest, ByTwoThreadsAtOnceReleasesOnce) {
  published::SetState(real_, published::kPlaying);
  StopsAfter(60);
  libvlc_media_player_t* const handle = player_;
  player_ = nullptr;
  std::thread other([&] { vlc().libvlc_media_player_release(handle); });
  vlc().libvlc_media_player_release(handle);
  other.join();
  EXPECT_EQ(published::CallsOf("libvlc_media_player_release").size(), 1u);
}

TEST_P(ReleaseTest, MakesTheHandleDead) {
  libvlc_media_player_t* const handle = player_;
  Release();
  published::ClearCalls();
  EXPECT_EQ(vlc().libvlc_media_player_play(handle), -1);
  EXPECT_EQ(vlc().libvlc_media_player_event_manager(handle), nullptr);
  vlc().libvlc_media_player_stop(handle);
  vlc().libvlc_media_player_release(handle);
  EXPECT_THAT(published::Calls(), testing::IsEmpty());
}

}  // namespace
}  // namespace vantro::test
