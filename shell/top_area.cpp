#include "shell/top_area.h"

namespace vantro {

TopAreaStep DecideTopAreaStep(int y, bool wasInTopArea, bool isTitleBarVisible, TopAreaCaller caller) {
  if (!IsInTopArea(y)) return {false, wasInTopArea ? TopAreaAction::kStartAutoHide : TopAreaAction::kNone};
  if (!wasInTopArea) return {true, TopAreaAction::kShowAndStopAutoHide};
  const bool stops = caller != TopAreaCaller::kTrackingTimer || isTitleBarVisible;
  return {true, stops ? TopAreaAction::kStopAutoHide : TopAreaAction::kNone};
}

}  // namespace vantro
