// The interface with event managers: the events that reach the host, and a library that refuses an attachment.
#include <bit>

#include "tests/unit/runtime/adapter.h"

namespace vantro::test {
namespace {

class EventsInterface : public EventsVariantTest {
 protected:
  libvlc_event_t EventOf(int type, uint64_t payload) {
    Received received;
    Attach(type, Receive, &received);
    EXPECT_EQ(published::Raise(real_, type, payload), 1) << type;
    Detach(type, Receive, &received);
    EXPECT_EQ(received.calls, 1) << type;
    EXPECT_EQ(received.last.type, type);
    return received.last;
  }
};

TEST_F(EventsInterface, EveryEventOfTheHostPassesWithItsNumber) {
  for (int type : {kMediaChanged, kNothingSpecial, kOpening, kBuffering, kPlaying, kPaused, kStopped, kStopping,
                   kEncounteredError, kTimeChanged, kPositionChanged, kSeekableChanged})
    EXPECT_EQ(EventOf(type, 0).p_obj, player_);
}

TEST_F(EventsInterface, ValuesPassUnchanged) {
  EXPECT_EQ(EventOf(kBuffering, std::bit_cast<uint32_t>(37.5f)).u.cache, 37.5f);
  EXPECT_EQ(EventOf(kTimeChanged, 90'000'000'001).u.time, 90'000'000'001);
  EXPECT_EQ(EventOf(kTimeChanged, static_cast<uint64_t>(-1)).u.time, -1);
  EXPECT_EQ(EventOf(kPositionChanged, std::bit_cast<uint64_t>(0.75)).u.position, 0.75);
  EXPECT_EQ(EventOf(kSeekableChanged, 1).u.seekable, 1);
}

TEST_F(EventsInterface, ALibraryThatRefusesAnAttachmentGivesNoPlayerAndKeepsNone) {
  int attached = 0;
  published::OnCall("libvlc_event_attach", [&] {
    if (++attached == 6) published::SetResult("libvlc_event_attach", -1);
  });
  EXPECT_EQ(vlc().libvlc_media_player_new(instance_), nullptr);
  EXPECT_THAT(published::CallsOf("libvlc_event_detach"), testing::SizeIs(5));
  EXPECT_EQ(published::Live().players, 1);
}

TEST_F(EventsInterface, ALibraryWithoutAManagerForThePlayerGivesNoPlayer) {
  published::SetResult("libvlc_media_player_event_manager", 0);
  EXPECT_EQ(vlc().libvlc_media_player_new(instance_), nullptr);
  EXPECT_EQ(published::Live().players, 1);
  published::SetResult("libvlc_media_player_event_manager", 1);
}

TEST_F(EventsInterface, ALibraryThatMakesNoPlayerGivesNone) {
  published::SetResult("libvlc_media_player_new", 0);
  EXPECT_EQ(vlc().libvlc_media_player_new(instance_), nullptr);
}

}  // namespace
}  // namespace vantro::test
