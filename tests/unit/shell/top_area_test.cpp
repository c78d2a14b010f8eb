#include "shell/top_area.h"

#include <gtest/gtest.h>

#include <climits>

namespace vantro {
namespace {

constexpr TopAreaCaller kEveryCaller[] = {TopAreaCaller::kTrackingTimer, TopAreaCaller::kMainWindow,
                                          TopAreaCaller::kOverlay};

TEST(TopArea, PointerRestingAtY50IsInsideAndAtY51Outside) {
  EXPECT_TRUE(IsInTopArea(50));
  EXPECT_FALSE(IsInTopArea(51));
}

TEST(TopArea, BeginsAtTheFirstRow) { EXPECT_TRUE(IsInTopArea(0)); }

TEST(TopArea, PointerAboveTheMonitorIsOutside) {
  EXPECT_FALSE(IsInTopArea(-1));
  EXPECT_FALSE(IsInTopArea(INT_MIN));
}

TEST(TopAreaStep, EnteringShowsTheBarAndStopsTheAutoHideForEveryCaller) {
  for (const TopAreaCaller caller : kEveryCaller) {
    for (const bool barVisible : {false, true}) {
      EXPECT_EQ(DecideTopAreaStep(50, false, barVisible, caller),
                (TopAreaStep{true, TopAreaAction::kShowAndStopAutoHide}));
    }
  }
}

TEST(TopAreaStep, LeavingStartsTheAutoHideForEveryCaller) {
  for (const TopAreaCaller caller : kEveryCaller) {
    EXPECT_EQ(DecideTopAreaStep(51, true, true, caller), (TopAreaStep{false, TopAreaAction::kStartAutoHide}));
  }
}

TEST(TopAreaStep, LeavingUpwardsOntoAMonitorAboveStartsTheAutoHide) {
  EXPECT_EQ(DecideTopAreaStep(-1, true, true, TopAreaCaller::kTrackingTimer),
            (TopAreaStep{false, TopAreaAction::kStartAutoHide}));
}

TEST(TopAreaStep, StayingOutsideChangesNothing) {
  for (const TopAreaCaller caller : kEveryCaller) {
    for (const bool barVisible : {false, true}) {
      EXPECT_EQ(DecideTopAreaStep(400, false, barVisible, caller), (TopAreaStep{false, TopAreaAction::kNone}));
    }
  }
}

TEST(TopAreaStep, RestingInsideStopsTheAutoHide) {
  for (const TopAreaCaller caller : kEveryCaller) {
    EXPECT_EQ(DecideTopAreaStep(10, true, true, caller), (TopAreaStep{true, TopAreaAction::kStopAutoHide}));
  }
}

TEST(TopAreaStep, TimerAloneIgnoresAPointerRestingUnderAHiddenBar) {
  EXPECT_EQ(DecideTopAreaStep(10, true, false, TopAreaCaller::kTrackingTimer),
            (TopAreaStep{true, TopAreaAction::kNone}));
  EXPECT_EQ(DecideTopAreaStep(10, true, false, TopAreaCaller::kMainWindow),
            (TopAreaStep{true, TopAreaAction::kStopAutoHide}));
  EXPECT_EQ(DecideTopAreaStep(10, true, false, TopAreaCaller::kOverlay),
            (TopAreaStep{true, TopAreaAction::kStopAutoHide}));
}

}  // namespace
}  // namespace vantro
