// The requests of the grid.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/line_order.h"
#include "tests/unit/channel/player_channel.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const InterfaceCall kShow{"showMultiViewOverlay", Value()};
const InterfaceCall kHide{"hideMultiViewOverlay", Value()};

class MultiViewRequests : public PlayerChannelTest {
 protected:
  // Creates a grid of this many tiles. The first one is the stream of the single view.
  void MakeGrid(size_t tiles) {
    LoadMedia();
    ASSERT_EQ(Ask("enableMultiView"), kTrue);
    while (state_.players_.size() < tiles) {
      ASSERT_EQ(Ask("mvAddStream", MapOf({{"url", "http://tile"}, {"name", "tile"}})), kTrue);
    }
    interface_.ClearCalls();
  }
};

TEST_F(MultiViewRequests, EnablingTwiceShowsTheOverlayTwice) {
  EXPECT_EQ(Ask("enableMultiView"), kTrue);
  EXPECT_EQ(Ask("enableMultiView"), kTrue);
  EXPECT_THAT(interface_.Calls(), ElementsAre(kShow, kShow));
}

TEST_F(MultiViewRequests, DisablingOutsideTheGridRepliesTrueAndHidesTheOverlay) {
  EXPECT_EQ(Ask("disableMultiView"), kTrue);
  EXPECT_THAT(interface_.Calls(), ElementsAre(kHide));
}

TEST_F(MultiViewRequests, DisablingEndsTheGrid) {
  MakeGrid(2);
  EXPECT_EQ(Ask("disableMultiView"), kTrue);
  EXPECT_FALSE(state_.isMultiViewMode_);
  EXPECT_THAT(interface_.Calls(), ElementsAre(kHide));
}

TEST_F(MultiViewRequests, ReplyGoesOutBeforeTheOverlayEvent) {
  for (const char* method : {"enableMultiView", "disableMultiView"}) {
    const PendingAtCalls pending(loopback_);
    EXPECT_EQ(Ask(method), kTrue);
    EXPECT_THAT(pending.Counts(), ElementsAre(0)) << method;
  }
}

TEST_F(MultiViewRequests, ExitFullscreenEndsTheGridAndHidesNoOverlay) {
  MakeGrid(2);
  EXPECT_EQ(Ask("mvExitFullscreen"), kTrue);
  EXPECT_FALSE(state_.isMultiViewMode_);
  EXPECT_THAT(interface_.Calls(), IsEmpty());
}

TEST_F(MultiViewRequests, AddStreamWithTheUpperCaseKeyIsAnError) {
  for (const char* method : {"mvAddStream", "mvReplaceActive"}) {
    EXPECT_EQ(Ask(method, MapOf({{"URL", "http://tile"}})), Failure("INVALID_ARGUMENT", "URL is required")) << method;
  }
}

TEST_F(MultiViewRequests, AddStreamAddsATileWithItsNameOrNone) {
  MakeGrid(1);
  EXPECT_EQ(Ask("mvAddStream", MapOf({{"url", "http://tile"}, {"name", "News"}})), kTrue);
  EXPECT_EQ(Ask("mvAddStream", MapOf({{"url", "http://tile"}})), kTrue);
  ASSERT_EQ(state_.players_.size(), 3u);
  EXPECT_EQ(state_.players_[1].name, "News");
  EXPECT_EQ(state_.players_[2].name, "");
}

TEST_F(MultiViewRequests, ReplaceActiveGivesTheActiveTileAnotherUrlAndName) {
  MakeGrid(2);
  const size_t active = static_cast<size_t>(static_cast<int>(state_.activeIndex_));
  EXPECT_EQ(Ask("mvReplaceActive", MapOf({{"url", "http://other"}, {"name", "Other"}})), kTrue);
  ASSERT_EQ(state_.players_.size(), 2u);
  EXPECT_EQ(state_.players_[active].url, "http://other");
  EXPECT_EQ(state_.players_[active].name, "Other");
}

TEST_F(MultiViewRequests, SetActiveIndexOutsideTheGridRepliesFalse) {
  EXPECT_EQ(Ask("mvSetActiveIndex", MapOf({{"index", Value(0)}})), kFalse);
  EXPECT_THAT(interface_.Calls(), IsEmpty());
  EXPECT_EQ(log_.CountContaining("[MvSetActiveIndex]"), 0);
}

TEST_F(MultiViewRequests, SetActiveIndexMakesTheTileActive) {
  MakeGrid(2);
  for (int index : {0, 1}) {
    EXPECT_EQ(Ask("mvSetActiveIndex", MapOf({{"index", Value(index)}})), kTrue);
    EXPECT_EQ(static_cast<int>(state_.activeIndex_), index);
  }
  EXPECT_TRUE(InOrder(log_, {"DEBUG [MvSetActiveIndex] Request to set active index to 1",
                             "DEBUG [SetActiveIndexSafe] Changing activeIndex from 0 to 1"}));
}

TEST_F(MultiViewRequests, SetActiveIndexMakesOnlyTheActiveTileHeard) {
  MakeGrid(2);
  for (size_t active : {0u, 1u}) {
    Ask("mvSetActiveIndex", MapOf({{"index", Value(static_cast<int32_t>(active))}}));
    EXPECT_EQ(vlc_.Mute(state_.players_[active].mediaPlayer.get()), 0) << active;
    EXPECT_EQ(vlc_.Mute(state_.players_[1 - active].mediaPlayer.get()), 1) << active;
  }
}

TEST_F(MultiViewRequests, SetActiveIndexBeyondTheLastTileOnlyRepliesTrue) {
  MakeGrid(2);
  Ask("mvSetActiveIndex", MapOf({{"index", Value(1)}}));
  EXPECT_EQ(Ask("mvSetActiveIndex", MapOf({{"index", Value(99)}})), kTrue);
  EXPECT_EQ(static_cast<int>(state_.activeIndex_), 1);
}

TEST_F(MultiViewRequests, SetActiveIndexBelowZeroOrAbsentIsAnError) {
  const Answer error = Failure("INVALID_ARGUMENT", "Invalid index");
  int duplicates = -1;
  EXPECT_EQ(AskCountingDuplicates("mvSetActiveIndex", MapOf({{"index", Value(-1)}}), &duplicates), error);
  EXPECT_EQ(duplicates, 1);
  EXPECT_EQ(AskCountingDuplicates("mvSetActiveIndex", Value(), &duplicates), error);
  EXPECT_EQ(duplicates, 1);
}

TEST_F(MultiViewRequests, RefusedRequestIsWrittenToTheMarker) {
  Ask("mvSetActiveIndex", MapOf({{"index", Value(-1)}}));
  EXPECT_EQ(Marker().lastAction, "mvSetActiveIndex");
}

TEST_F(MultiViewRequests, SwapTilesNeedsBothIndices) {
  const Answer error = Failure("INVALID_ARGUMENT", "Invalid indices");
  EXPECT_EQ(Ask("mvSwapTiles", MapOf({{"from", Value(0)}})), error);
  EXPECT_EQ(Ask("mvSwapTiles", MapOf({{"to", Value(0)}})), error);
  EXPECT_EQ(Ask("mvSwapTiles", MapOf({{"from", Value(0)}, {"to", Value(-1)}})), error);
}

TEST_F(MultiViewRequests, SwapTilesSwapsAndRepliesThePlayersResult) {
  MakeGrid(2);
  state_.players_[0].name = "first";
  state_.players_[1].name = "second";
  EXPECT_EQ(Ask("mvSwapTiles", MapOf({{"from", Value(0)}, {"to", Value(1)}})), kTrue);
  EXPECT_EQ(state_.players_[0].name, "second");
  EXPECT_EQ(log_.CountContaining("[MvSwapTiles] Swapped 0 <-> 1"), 1);
  EXPECT_EQ(Ask("mvSwapTiles", MapOf({{"from", Value(1)}, {"to", Value(0)}})), kTrue);
  EXPECT_EQ(state_.players_[0].name, "first");
  EXPECT_EQ(Ask("mvSwapTiles", MapOf({{"from", Value(0)}, {"to", Value(7)}})), kFalse);
}

TEST_F(MultiViewRequests, RequestsThatThePlayerRefusesReplyFalse) {
  EXPECT_EQ(Ask("mvRemoveActive"), kFalse);
  EXPECT_EQ(Ask("mvPromoteActiveAndExit"), kFalse);
  EXPECT_EQ(Ask("mvSwapTiles", MapOf({{"from", Value(0)}, {"to", Value(1)}})), kFalse);
  EXPECT_THAT(interface_.Calls(), IsEmpty());
}

TEST_F(MultiViewRequests, RemoveActiveRemovesAnyTileButTheFirst) {
  MakeGrid(2);
  Ask("mvSetActiveIndex", MapOf({{"index", Value(1)}}));
  EXPECT_EQ(Ask("mvRemoveActive"), kTrue);
  EXPECT_EQ(state_.players_.size(), 1u);
  EXPECT_EQ(Ask("mvRemoveActive"), kFalse);
}

TEST_F(MultiViewRequests, PromoteLeavesTheGridWithoutAnOverlayEvent) {
  MakeGrid(2);
  EXPECT_EQ(Ask("mvPromoteActiveAndExit"), kTrue);
  EXPECT_FALSE(state_.isMultiViewMode_);
  EXPECT_THAT(interface_.CallNames(), testing::Not(testing::Contains("hideMultiViewOverlay")));
}

}  // namespace
}  // namespace vantro::test
