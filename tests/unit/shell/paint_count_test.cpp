// How often the main window and each control of the title bar are painted during a change of a real window. Messages in
// the queue at the end of the change are part of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <map>
#include <string>

#include "tests/support/message_queue.h"
#include "tests/unit/shell/paint_counter.h"
#include "tests/unit/shell/shell_fixture.h"

namespace vantro {
namespace {

using test::DrainQueue;
using test::Inside;
using test::PaintCounter;
using test::Paints;
using Counts = std::map<std::string, Paints>;

class PaintCount : public test::ShellTest {
 protected:
  PaintCount() {
    // Far from the top, so that the tracking timer does not show the bar.
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN) / 2, GetSystemMetrics(SM_CYSCREEN) - 10);
    DrainQueue();
  }

  template <typename Change>
  Counts CountsOf(Change change) {
    const PaintCounter counter(Window());
    change();
    DrainQueue();
    return counter.Counts();
  }

  // The expected counts for this number of paints of the main window and of each control.
  static Counts Each(int main, int control) {
    const Paints drawnBySystem{control, 0};
    const Paints ownerDrawn{control, control};
    return {{"main", {main, 0}},      {"icon", drawnBySystem}, {"title", drawnBySystem}, {"search", drawnBySystem},
            {"file", ownerDrawn},     {"help", ownerDrawn},    {"close", ownerDrawn},    {"maximize", ownerDrawn},
            {"minimize", ownerDrawn}, {"speaker", ownerDrawn}, {"volume", ownerDrawn}};
  }
};

TEST_F(PaintCount, ARepaintOfTheWindowPaintsEachControlOnce) {
  EXPECT_EQ(CountsOf([this] {
              RedrawWindow(Window().hwnd_, nullptr, nullptr,
                           RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
            }),
            Each(1, 1));
}

TEST_F(PaintCount, EnteringFullscreenPaintsTheWindowOnceAndNoControl) {
  EXPECT_EQ(CountsOf([this] { Window().ToggleFullscreen(); }), Each(1, 0));
}

// Once immediately when the controls are shown, and once more because the whole window is invalidated.
TEST_F(PaintCount, LeavingFullscreenPaintsEachControlTwice) {
  Window().ToggleFullscreen();
  DrainQueue();
  EXPECT_EQ(CountsOf([this] { Window().ToggleFullscreen(); }), Each(2, 2));
}

TEST_F(PaintCount, TheBarThatComesBackInFullscreenPaintsEachControlOnce) {
  Window().ToggleFullscreen();
  DrainQueue();
  EXPECT_EQ(CountsOf([this] { Inside(Window()).fullscreen_.ShowTitleBarControls(); }), Each(1, 1));
}

TEST_F(PaintCount, TheBarThatGoesAwayInFullscreenPaintsTheWindowOnceAndNoControl) {
  Window().ToggleFullscreen();
  Inside(Window()).fullscreen_.ShowTitleBarControls();
  DrainQueue();
  EXPECT_EQ(CountsOf([this] { Inside(Window()).fullscreen_.HideTitleBarControls(); }), Each(1, 0));
}

TEST_F(PaintCount, AChangeOfTheVolumePaintsTheSliderAlone) {
  Counts slider = Each(0, 0);
  slider["volume"] = {1, 1};
  EXPECT_EQ(CountsOf([this] { Inside(Window()).volumeSlider_.HandleVolumeClick(10, 5); }), slider);
}

TEST_F(PaintCount, AMovePaintsNoControlAndTheWindowOnce) {
  EXPECT_EQ(CountsOf([this] {
              SetWindowPos(Window().hwnd_, nullptr, 40, 40, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
            }),
            Each(1, 0));
}

TEST_F(PaintCount, AResizePaintsEachControlOnce) {
  EXPECT_EQ(CountsOf([this] { SetClientWidth(Window(), 1000); }), Each(1, 1));
}

}  // namespace
}  // namespace vantro
