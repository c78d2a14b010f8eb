// Size and stacking of the video's window.
#include "tests/unit/player/player_fixture.h"

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

// What EnsureZOrder asks of the system, seen by the windows that it asks it for.
class Stacking : public StartedPlayerTest {
 protected:
  struct Placement {
    HWND window;
    HWND insertAfter;
    UINT flags;
    bool operator==(const Placement&) const = default;
  };
  static constexpr UINT kFlagsA = SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE;
  static constexpr UINT kFlagsB = kFlagsA | SWP_SHOWWINDOW;

  void SetUp() override {
    StartedPlayerTest::SetUp();
    placements_.clear();
  }
  HWND MakeChild() {
    return CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 10, 10, parent_.get(), nullptr, nullptr, nullptr);
  }
  // Records the placements of the window from now on.
  static HWND Watch(HWND window) {
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Record));
    return window;
  }
  static LRESULT CALLBACK Record(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_WINDOWPOSCHANGING) {
      const auto* const position = reinterpret_cast<const WINDOWPOS*>(lParam);
      placements_.push_back({window, position->hwndInsertAfter, position->flags & kFlagsB});
    }
    return DefWindowProcW(window, message, wParam, lParam);
  }

  static inline std::vector<Placement> placements_;
};

TEST_F(Stacking, WithoutAnOverlayTakesTheVideoOutOfTheTopmostLayer) {
  const HWND video = Watch(state_.vlcWindow_);
  player_.EnsureZOrder();
  EXPECT_THAT(placements_, ElementsAre(Placement{video, HWND_NOTOPMOST, kFlagsA}));
}

TEST_F(Stacking, TakesAnOverlayThatIsGoneForNone) {
  ParentWindow overlay(50, 50);
  state_.overlayWindow_ = overlay.get();
  overlay.Destroy();
  const HWND video = Watch(state_.vlcWindow_);
  player_.EnsureZOrder();
  EXPECT_THAT(placements_, ElementsAre(Placement{video, HWND_NOTOPMOST, kFlagsA}));
}

TEST_F(Stacking, OfAChildOverlayPutsItOnTopAndTheVideoAtTheBottom) {
  const HWND video = Watch(state_.vlcWindow_);
  const HWND overlay = Watch(MakeChild());
  state_.overlayWindow_ = overlay;
  player_.EnsureZOrder();
  EXPECT_THAT(placements_, ElementsAre(Placement{video, HWND_BOTTOM, kFlagsA}, Placement{overlay, video, kFlagsB},
                                       Placement{overlay, HWND_TOP, kFlagsB}));
  EXPECT_EQ(GetWindow(parent_.get(), GW_CHILD), overlay);
}

TEST_F(Stacking, OfATopLevelOverlayPlacesItBehindTheVideoAndShowsIt) {
  // The system takes only a sibling as the window to insert after, so the video is a top-level window here.
  DestroyWindow(state_.vlcWindow_);
  const ParentWindow videoWindow(60, 60);
  const ParentWindow overlayWindow(50, 50);
  const HWND video = state_.vlcWindow_ = Watch(videoWindow.get());
  const HWND overlay = state_.overlayWindow_ = Watch(overlayWindow.get());
  player_.EnsureZOrder();
  EXPECT_THAT(placements_, ElementsAre(Placement{video, HWND_NOTOPMOST, kFlagsA}, Placement{overlay, video, kFlagsB}));
  EXPECT_TRUE(IsWindowVisible(overlay));
}

TEST_F(Stacking, OfAPlayerInTheParentIsLeftAlone) {
  DestroyWindow(state_.vlcWindow_);
  state_.vlcWindow_ = parent_.get();
  player_.EnsureZOrder();
  EXPECT_EQ(log_.CountContaining("EnsureZOrder"), 0);
}

}  // namespace
}  // namespace vantro::test
