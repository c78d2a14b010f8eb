// The size and the z-order of the video's window.
#include "tests/unit/player/player_fixture.h"
#include "tests/unit/player/window_calls.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;

TEST_F(StartedPlayerTest, ResizeMovesTheChildWindow) {
  player_.Resize(5, 30, 640, 360);
  const RECT place = PlaceInParent(state_.vlcWindow_);
  EXPECT_EQ(place.left, 5);
  EXPECT_EQ(place.top, 30);
  EXPECT_EQ(place.right - place.left, 640);
  EXPECT_EQ(place.bottom - place.top, 360);
  std::vector<std::string> lines = log_.Lines();
  lines.erase(lines.begin(), lines.end() - 3);
  EXPECT_THAT(lines, ElementsAre("INFO [Resize] Called with 640x360 isMultiViewMode=0",
                                 "INFO EnsureZOrder: parent=" + PointerText(parent_.get()) +
                                     " vlc=" + PointerText(state_.vlcWindow_) + " overlay=" + PointerText(nullptr),
                                 "INFO [Resize] Resized VLC window to 640x360"));
}

TEST_F(StartedPlayerTest, ResizeRepaintsTheChildWindowAndThenStacksIt) {
  const WindowCalls calls({{state_.vlcWindow_, "video"}});
  player_.Resize(5, 30, 640, 360);
  EXPECT_THAT(calls.Lines(),
              ElementsAre("MoveWindow video 5,30 640x360 repaint",
                          "SetWindowPos video HWND_NOTOPMOST 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE|SWP_NOACTIVATE"));
}

TEST_F(StartedPlayerTest, ResizeInMultiViewModeIgnoresItsArguments) {
  state_.isMultiViewMode_ = true;
  const RECT before = PlaceInParent(state_.vlcWindow_);
  player_.Resize(5, 30, 640, 360);
  const RECT after = PlaceInParent(state_.vlcWindow_);
  EXPECT_TRUE(EqualRect(&before, &after));
  EXPECT_TRUE(log_.Has("INFO [Resize] In multiview mode - updating grid layout for new size"));
  EXPECT_EQ(log_.CountContaining("[Resize] Resized"), 0);
}

TEST_F(PlayerTest, ResizeWithNoChildWindowDoesNothingNotEvenEnsureZOrder) {
  player_.Resize(5, 30, 640, 360);
  EXPECT_THAT(log_.Lines(), ElementsAre("INFO [Resize] Called with 640x360 isMultiViewMode=0"));
}

TEST_F(StartedPlayerTest, ResizeOfAPlayerInTheParentLeavesTheParentAlone) {
  DestroyWindow(state_.vlcWindow_);
  state_.vlcWindow_ = parent_.get();
  player_.Resize(5, 30, 640, 360);
  RECT client{};
  GetClientRect(parent_.get(), &client);
  EXPECT_EQ(client.right, 800);
  EXPECT_EQ(log_.CountContaining("EnsureZOrder"), 0);
}

// The system calls of EnsureZOrder.
class Stacking : public StartedPlayerTest {
 protected:
  HWND MakeChild() {
    return CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 10, 10, parent_.get(), nullptr, nullptr, nullptr);
  }
  std::vector<std::string> StackingCalls() {
    const WindowCalls calls({{state_.vlcWindow_, "video"}, {state_.overlayWindow_, "overlay"}});
    player_.EnsureZOrder();
    return calls.Lines();
  }
};

constexpr char kVideoOutOfTopmost[] = "SetWindowPos video HWND_NOTOPMOST 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE|SWP_NOACTIVATE";
constexpr char kOverlayBehindVideo[] =
    "SetWindowPos overlay video 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE|SWP_NOACTIVATE|SWP_SHOWWINDOW";

TEST_F(Stacking, WithoutAnOverlayTakesTheVideoOutOfTheTopmostLayer) {
  EXPECT_THAT(StackingCalls(), ElementsAre(kVideoOutOfTopmost));
}

TEST_F(Stacking, TakesAnOverlayThatIsGoneForNone) {
  ParentWindow overlay(50, 50);
  state_.overlayWindow_ = overlay.get();
  overlay.Destroy();
  EXPECT_THAT(StackingCalls(), ElementsAre(kVideoOutOfTopmost));
}

TEST_F(Stacking, PutsAChildOverlayOnTopAndTheVideoAtTheBottom) {
  state_.overlayWindow_ = MakeChild();
  EXPECT_THAT(
      StackingCalls(),
      ElementsAre("SetWindowPos video HWND_BOTTOM 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE|SWP_NOACTIVATE", kOverlayBehindVideo,
                  "SetWindowPos overlay HWND_TOP 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE|SWP_NOACTIVATE|SWP_SHOWWINDOW"));
  EXPECT_EQ(GetWindow(parent_.get(), GW_CHILD), state_.overlayWindow_);
}

TEST_F(Stacking, PlacesATopLevelOverlayBehindTheVideoAndShowsIt) {
  // The system accepts only a sibling as the window to insert after, so the video is a top-level window here.
  DestroyWindow(state_.vlcWindow_);
  const ParentWindow video(60, 60);
  const ParentWindow overlay(50, 50);
  state_.vlcWindow_ = video.get();
  // Other bits of the style do not make it a child.
  SetWindowLongPtrA(overlay.get(), GWL_STYLE, GetWindowLongPtrA(overlay.get(), GWL_STYLE) | 1);
  state_.overlayWindow_ = overlay.get();
  EXPECT_THAT(StackingCalls(), ElementsAre(kVideoOutOfTopmost, kOverlayBehindVideo));
  EXPECT_TRUE(IsWindowVisible(overlay.get()));
}

TEST_F(Stacking, PlacesATopLevelOverlayButNoVideoThatIsGone) {
  const ParentWindow overlay(50, 50);
  DestroyWindow(state_.vlcWindow_);
  state_.overlayWindow_ = overlay.get();
  EXPECT_THAT(StackingCalls(), ElementsAre(kOverlayBehindVideo));
}

TEST_F(Stacking, WithoutAnOverlayLeavesAVideoAloneThatIsGone) {
  DestroyWindow(state_.vlcWindow_);
  EXPECT_THAT(StackingCalls(), ElementsAre());
}

TEST_F(Stacking, LeavesAPlayerInTheParentAlone) {
  DestroyWindow(state_.vlcWindow_);
  state_.vlcWindow_ = parent_.get();
  player_.EnsureZOrder();
  EXPECT_EQ(log_.CountContaining("EnsureZOrder"), 0);
}

}  // namespace
}  // namespace vantro::test
