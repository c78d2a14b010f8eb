// The host's callbacks on a player: the event manager's behaviour over both interfaces.
#include <thread>

#include "tests/unit/runtime/adapter.h"

namespace vantro::test {
namespace {

class EventListTest : public AdapterTest {};
OVER_BOTH_VARIANTS(EventListTest);

TEST_P(EventListTest, APlayerIsItsOwnSenderAndManager) {
  Received received;
  EXPECT_EQ(Attach(kPaused, Receive, &received), 0);
  published::OnLibraryThread([&] { Reach(kPaused); });
  EXPECT_EQ(received.calls, 1);
  EXPECT_EQ(received.last.type, kPaused);
  EXPECT_EQ(received.last.p_obj, player_);
  EXPECT_NE(received.threadId, GetCurrentThreadId());
}

TEST_P(EventListTest, AllCallbacksOfATypeAreCalledInTheirOrder) {
  std::string order;
  Action first = [&] { order += "1"; };
  Action second = [&] { order += "2"; };
  Attach(kPaused, RunAction, &first);
  Attach(kPaused, RunAction, &second);
  Attach(kPaused, RunAction, &first);
  Attach(kPlaying, RunAction, &second);
  Reach(kPaused);
  EXPECT_EQ(order, "121");
}

TEST_P(EventListTest, ADetachedCallbackIsNotCalled) {
  Received kept;
  Received detached;
  Attach(kPaused, Receive, &kept);
  Attach(kPaused, Receive, &detached);
  Detach(kPaused, Receive, &detached);
  Reach(kPaused);
  EXPECT_EQ(kept.calls, 1);
  EXPECT_EQ(detached.calls, 0);
}

TEST_P(EventListTest, ADetachTakesOneOfSeveralEqualAttachments) {
  Received received;
  Attach(kPaused, Receive, &received);
  Attach(kPaused, Receive, &received);
  Detach(kPaused, Receive, &received);
  Reach(kPaused);
  EXPECT_EQ(received.calls, 1);
}

TEST_P(EventListTest, ADetachOfWhatIsNotAttachedIsIgnored) {
  Received received;
  Attach(kPaused, Receive, &received);
  published::ClearCalls();
  Detach(kPlaying, Receive, &received);
  Detach(kPaused, Receive, nullptr);
  EXPECT_THAT(published::CallsOf("libvlc_event_detach"), testing::IsEmpty());
  Reach(kPaused);
  EXPECT_EQ(received.calls, 1);
}

TEST_P(EventListTest, ADetachWaitsForACallbackInProgress) {
  std::atomic<bool> inside{false};
  std::atomic<bool> ended{false};
  Action slow = [&] {
    inside = true;
    Sleep(80);
    ended = true;
  };
  Attach(kPaused, RunAction, &slow);
  published::Later(0, [&] { Reach(kPaused); });
  while (!inside) Sleep(1);
  Detach(kPaused, RunAction, &slow);
  EXPECT_TRUE(ended);
}

TEST_P(EventListTest, ACallbackMayDetachItselfAndOthers) {
  Received behind;
  Received kept;
  int calls = 0;
  Action once = [&] {
    ++calls;
    Detach(kPaused, RunAction, &once);
    Detach(kPaused, Receive, &behind);
  };
  Attach(kPaused, RunAction, &once);
  Attach(kPaused, Receive, &behind);
  Attach(kPaused, Receive, &kept);
  Reach(kPaused);
  Reach(kPaused);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(behind.calls, 0);
  EXPECT_EQ(kept.calls, 2);
}

TEST_P(EventListTest, WhatACallbackAttachesIsCalledFromTheNextEventOn) {
  Received later;
  Action attach = [&] { Attach(kPaused, Receive, &later); };
  Attach(kPaused, RunAction, &attach);
  Reach(kPaused);
  EXPECT_EQ(later.calls, 0);
  Detach(kPaused, RunAction, &attach);
  Reach(kPaused);
  EXPECT_EQ(later.calls, 1);
}

TEST_P(EventListTest, AttachAndDetachWorkDuringManyEvents) {
  std::atomic<bool> end{false};
  published::Later(0, [&] {
    while (!end) Reach(kPaused), SwitchToThread();
  });
  Received received;
  for (int i = 0; i < 200; ++i) {
    Attach(kPaused, Receive, &received);
    Detach(kPaused, Receive, &received);
    const int calls = received.calls;
    SwitchToThread();
    ASSERT_EQ(received.calls, calls);
  }
  end = true;
}

TEST_P(EventListTest, AnEventInsideSetMediaComesOnTheCallersThread) {
  Received received;
  Attach(kMediaChanged, Receive, &received);
  libvlc_media_t* const media = vlc().NewLocation("http://host/a");
  published::OnCall("libvlc_media_player_set_media", [&] { ReportMediaChanged(); });
  vlc().libvlc_media_player_set_media(player_, media);
  vlc().libvlc_media_release(media);
  EXPECT_EQ(received.calls, 1);
  EXPECT_EQ(received.threadId, GetCurrentThreadId());
}

TEST_P(EventListTest, AnotherTypeAttachesAndNeverFires) {
  Received received;
  EXPECT_EQ(Attach(kLengthChanged, Receive, &received), 0);
  EXPECT_EQ(Attach(0, Receive, &received), 0);
  Reach(kPlaying);
  EXPECT_EQ(received.calls, 0);
}

TEST_P(EventListTest, ANullCallbackIsRefused) { EXPECT_EQ(Attach(kPaused, nullptr, nullptr), -1); }

TEST_P(EventListTest, PlayersHaveTheirOwnCallbacks) {
  libvlc_media_player_t* const other = vlc().libvlc_media_player_new(instance_);
  Received mine;
  Received others;
  Attach(kPaused, Receive, &mine);
  vlc().libvlc_event_attach(vlc().libvlc_media_player_event_manager(other), kPaused, Receive, &others);
  Reach(published::Player(2), kPaused);
  published::SetState(published::Player(2), published::kStopped);
  vlc().libvlc_media_player_release(other);
  EXPECT_EQ(mine.calls, 0);
  EXPECT_EQ(others.calls, 1);
}

}  // namespace
}  // namespace vantro::test
