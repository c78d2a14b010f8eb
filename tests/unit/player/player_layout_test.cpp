// The grid in a real window: positions, messages, handles, scales, and which tile is audible.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "player/tile_layout.h"
#include "player/video_scale.h"
#include "tests/support/import_hook.h"
#include "tests/unit/player/grid_fixture.h"
#include "tests/unit/player/window_calls.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LayoutTest : public GridTest {
 protected:
  Rect PlaceOf(int index) {
    const RECT place = PlaceInParent(Tile(index).window);
    return {place.left, place.top, place.right, place.bottom};
  }
  void ResizeParent(int width, int height) {
    SetWindowPos(parent_.get(), nullptr, 0, 0, width, height, SWP_NOZORDER | SWP_NOMOVE | SWP_NOACTIVATE);
  }
  void Layout() {
    vlc_.ClearCalls();
    player_.UpdateGridLayout();
  }
};

// Records the messages that a window receives, and passes them on.
class MessageRecorder {
 public:
  struct Message {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    WINDOWPOS position;  // for WM_WINDOWPOSCHANGED
  };

  explicit MessageRecorder(HWND window) : window_(window) {
    recorder_ = this;
    original_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&MessageRecorder::Procedure)));
  }
  ~MessageRecorder() {
    SetWindowLongPtrA(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(original_));
    recorder_ = nullptr;
  }
  MessageRecorder(const MessageRecorder&) = delete;
  MessageRecorder& operator=(const MessageRecorder&) = delete;

  // The messages from the first WM_ENTERSIZEMOVE on, without those that other messages cause.
  std::vector<Message> ResizeSequence() const {
    const auto begin = std::find_if(messages_.begin(), messages_.end(),
                                    [](const Message& sent) { return sent.message == WM_ENTERSIZEMOVE; });
    std::vector<Message> sequence;
    for (auto sent = begin; sent != messages_.end(); ++sent) {
      if (sent->message == WM_ENTERSIZEMOVE || sent->message == WM_WINDOWPOSCHANGED || sent->message == WM_SIZE ||
          sent->message == WM_EXITSIZEMOVE) {
        sequence.push_back(*sent);
      }
    }
    return sequence;
  }
  bool Painted() const { return painted_; }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    MessageRecorder& self = *recorder_;
    if (message == WM_PAINT) self.painted_ = true;
    Message sent{message, wParam, lParam, {}};
    if (message == WM_WINDOWPOSCHANGED) sent.position = *reinterpret_cast<const WINDOWPOS*>(lParam);
    self.messages_.push_back(sent);
    // The default handling of this message sends WM_SIZE, which is not a call of the player.
    if (message == WM_WINDOWPOSCHANGED) return 0;
    return CallWindowProcA(self.original_, window, message, wParam, lParam);
  }

  static inline MessageRecorder* recorder_ = nullptr;
  HWND window_;
  WNDPROC original_ = nullptr;
  std::vector<Message> messages_;
  bool painted_ = false;
};

// Positions.

TEST_F(LayoutTest, EachTileIsInItsCell) {
  StartGrid(1);
  for (int count = 2; count <= 6; ++count) {
    ASSERT_TRUE(Add(count - 1));
    for (int index = 0; index < count; ++index) {
      EXPECT_EQ(PlaceOf(index), GetTileRect(800, 600, count, index)) << count << " tiles, index " << index;
    }
  }
}

TEST_F(LayoutTest, TheLastOfMoreThanFourTilesCoversTheFourthCell) {
  StartGrid(6);
  EXPECT_EQ(PlaceOf(3), PlaceOf(5));
  EXPECT_EQ(GetTopWindow(parent_.get()), Tile(5).window);
}

TEST_F(LayoutTest, AResizeOfTheParentLaysOutAgain) {
  StartGrid(2);
  ResizeParent(801, 601);
  player_.Resize(7, 8, 9, 10);
  EXPECT_EQ(PlaceOf(0), (Rect{0, 0, 395, 601}));
  EXPECT_EQ(PlaceOf(1), (Rect{405, 0, 801, 601}));
}

TEST_F(LayoutTest, ASecondRunOnUnchangedTilesGivesTheSameResult) {
  StartGrid(3);
  Layout();
  const std::vector<std::string> first = vlc_.Calls();
  Layout();
  EXPECT_EQ(vlc_.Calls(), first);
}

TEST_F(LayoutTest, OutsideTheGridWithoutParentOrTilesNothingIsLaidOut) {
  StartWithEvents();
  player_.UpdateGridLayout();
  state_.isMultiViewMode_ = true;
  player_.UpdateGridLayout();
  state_.isMultiViewMode_ = false;
  player_.EnableMultiView();
  state_.parentWindow_ = nullptr;
  player_.UpdateGridLayout();
  state_.parentWindow_ = parent_.get();
  EXPECT_EQ(log_.CountContaining("[UpdateGridLayout]"), 0);
}

TEST_F(LayoutTest, ATileWithoutAWindowIsPassedOver) {
  StartGrid(2);
  Tile(0).window = nullptr;
  Layout();
  EXPECT_TRUE(log_.Has("WARNING [UpdateGridLayout] Player 0 has no window!"));
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_set_hwnd"),
              ElementsAre("libvlc_media_player_set_hwnd(player2, " + PointerText(Tile(1).window) + ")"));
  Tile(0).window = state_.vlcWindow_;
}

TEST_F(LayoutTest, ATileInTheParentItselfIsPassedOver) {
  StartGrid(2);
  Tile(0).window = parent_.get();
  Layout();
  EXPECT_TRUE(log_.Has("DEBUG [UpdateGridLayout] SKIPPING Player 0 - it's the parent window (original player)"));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_hwnd"), 1);
}

TEST_F(LayoutTest, ATileThatCannotBePlacedLeavesTheOthersAlone) {
  StartGrid(2);
  DestroyWindow(Tile(0).window);
  Layout();
  EXPECT_TRUE(log_.Has("DEBUG [UpdateGridLayout] SetWindowPos result for player 0: 0"));
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_set_hwnd"),
              ElementsAre("libvlc_media_player_set_hwnd(player2, " + PointerText(Tile(1).window) + ")"));
}

HWND unmeasured = nullptr;
decltype(&GetClientRect) realGetClientRect = nullptr;
BOOL WINAPI RefuseToMeasure(HWND window, RECT* rect) {
  return window == unmeasured ? FALSE : realGetClientRect(window, rect);
}

TEST_F(LayoutTest, ATileThatCannotBeMeasuredLeavesTheOthersAlone) {
  StartGrid(2);
  const ImportHook hook("user32.dll", "GetClientRect", RefuseToMeasure);
  realGetClientRect = hook.Original<decltype(realGetClientRect)>();
  unmeasured = Tile(0).window;
  const LogCapture log;
  Layout();
  EXPECT_TRUE(log.Has("WARNING [UpdateGridLayout] Failed to get actual window size for player 0"));
  EXPECT_EQ(log.CountContaining("[UpdateGridLayout] Player 1 - Requested: "), 1);
}

TEST_F(LayoutTest, ATileWithoutAPlayerIsPlacedAndNoMore) {
  StartGrid(2);
  Tile(1).mediaPlayer.reset();
  player_.MvSwapTiles(0, 1);
  EXPECT_EQ(PlaceOf(0), GetTileRect(800, 600, 2, 0));
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_hwnd"), 1);
}

// Messages.

TEST_F(LayoutTest, ATilesWindowIsSentFourResizeMessagesInOrder) {
  StartGrid(3);
  ResizeParent(1000, 700);
  const Rect cell = GetTileRect(1000, 700, 3, 2);
  const HWND window = Tile(2).window;
  const MessageRecorder recorder(window);
  player_.UpdateGridLayout();
  const auto sequence = recorder.ResizeSequence();
  ASSERT_EQ(sequence.size(), 4u);
  EXPECT_EQ(sequence[0].message, 0x231u);
  EXPECT_EQ(sequence[1].message, 0x47u);
  EXPECT_EQ(sequence[2].message, 5u);
  EXPECT_EQ(sequence[3].message, 0x232u);
  for (const auto& sent : sequence) EXPECT_EQ(sent.wParam, 0u);
  EXPECT_EQ(sequence[0].lParam, 0);
  EXPECT_EQ(sequence[2].lParam, MAKELPARAM(cell.Width(), cell.Height()));
  EXPECT_EQ(sequence[3].lParam, 0);
  const WINDOWPOS& position = sequence[1].position;
  EXPECT_EQ(position.hwnd, window);
  EXPECT_EQ(position.hwndInsertAfter, nullptr);
  EXPECT_EQ(position.x, cell.left);
  EXPECT_EQ(position.y, cell.top);
  EXPECT_EQ(position.cx, cell.Width());
  EXPECT_EQ(position.cy, cell.Height());
  EXPECT_EQ(PlacementFlags(position.flags), "SWP_NOZORDER|SWP_NOACTIVATE");
}

TEST_F(LayoutTest, ATilesWindowIsRepaintedAtOnce) {
  StartGrid(2);
  ShowWindow(parent_.get(), SW_SHOWNA);
  const MessageRecorder recorder(Tile(1).window);
  player_.UpdateGridLayout();
  EXPECT_TRUE(recorder.Painted());
}

TEST_F(LayoutTest, ATileIsPlacedOnTopShownAndErasedWhole) {
  StartGrid(2);
  const WindowCalls calls({{Tile(1).window, "tile"}});
  player_.UpdateGridLayout();
  EXPECT_THAT(calls.Lines(), ElementsAre("SetWindowPos tile HWND_TOP 405,0 395x600 SWP_SHOWWINDOW",
                                         "InvalidateRect tile whole erase", "UpdateWindow tile"));
}

// Handles, scales and viewports.

TEST_F(LayoutTest, TheHandleIsSetAgainAfterTheMoveAndBeforeTheScale) {
  StartGrid(2);
  vlc_.SetSize(TilePlayer(1), 640, 360);
  Rect placeAtHandle{};
  vlc_.OnCall("libvlc_media_player_set_hwnd", [&] { placeAtHandle = PlaceOf(1); });
  ResizeParent(1000, 700);
  Layout();
  EXPECT_EQ(placeAtHandle, GetTileRect(1000, 700, 2, 1));
  std::vector<std::string> calls = vlc_.Calls();
  std::erase_if(calls, [](const std::string& call) {
    return call.find("player2") == std::string::npos || call.find("libvlc_video_get") == 0;
  });
  EXPECT_THAT(calls, ElementsAre("libvlc_media_player_set_hwnd(player2, " + PointerText(Tile(1).window) + ")",
                                 "libvlc_video_set_scale(player2, 0.773438)",
                                 "libvlc_video_set_viewport(player2, 505, 0, 495, 700)"));
}

TEST_F(LayoutTest, TheOriginalTileIsLaidOutLikeAllOthers) {
  StartGrid(2);
  Layout();
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_set_hwnd"),
              ElementsAre("libvlc_media_player_set_hwnd(player1, " + PointerText(state_.vlcWindow_) + ")",
                          "libvlc_media_player_set_hwnd(player2, " + PointerText(Tile(1).window) + ")"));
}

TEST_F(LayoutTest, AVideoWithoutASizeIsScaledByALaterEvent) {
  StartGrid(2);
  Layout();
  EXPECT_EQ(vlc_.CountOf("libvlc_video_set_scale"), 0);
  EXPECT_EQ(vlc_.CountOf("libvlc_video_set_viewport"), 0);
  EXPECT_TRUE(log_.Has("DEBUG [UpdateGridLayout] Player 1 - No video size yet, will scale when video loads"));
  vlc_.SetSize(TilePlayer(1), 790, 300);
  vlc_.Raise(TilePlayer(1), kPlaying);
  EXPECT_THAT(vlc_.CallsOf("libvlc_video_set_scale"), ElementsAre("libvlc_video_set_scale(player2, 0.5)"));
  EXPECT_TRUE(log_.Has("DEBUG [UpdateMultiViewScaling] Player 1 - Video 790x300 scaled to 0.500000 for tile 395x600"));
}

TEST_F(LayoutTest, WithoutAViewportFunctionAWarningReplacesTheCall) {
  StartGrid(2);
  vlc_.SetSize(TilePlayer(1), 790, 300);
  LibVlcFunctionTable().libvlc_video_set_viewport = nullptr;
  Layout();
  EXPECT_TRUE(log_.Has("WARNING [UpdateGridLayout] Player 1 - libvlc_video_set_viewport not available"));
  EXPECT_TRUE(log_.Has("DEBUG [UpdateGridLayout] Player 1 - Video 790x300 scaled to 0.500000 for window 395x600"));
  EXPECT_EQ(vlc_.CountOf("libvlc_video_set_scale"), 1);
}

TEST_F(LayoutTest, WithoutTheHandleFunctionTheScaleIsStillSet) {
  StartGrid(2);
  vlc_.SetSize(TilePlayer(1), 790, 300);
  LibVlcFunctionTable().libvlc_media_player_set_hwnd = nullptr;
  Layout();
  EXPECT_EQ(vlc_.CountOf("libvlc_video_set_scale"), 1);
}

TEST_F(LayoutTest, ASizeWithoutItsFunctionIsZero) {
  StartGrid(1);
  vlc_.SetSize(TilePlayer(0), 790, 300);
  LibVlcFunctions& table = LibVlcFunctionTable();
  const auto getWidth = std::exchange(table.libvlc_video_get_width, nullptr);
  Layout();
  EXPECT_TRUE(log_.Has("DEBUG [UpdateGridLayout] VLC thinks video size is: 0x300"));
  table.libvlc_video_get_width = getWidth;
  table.libvlc_video_get_height = nullptr;
  Layout();
  EXPECT_TRUE(log_.Has("DEBUG [UpdateGridLayout] VLC thinks video size is: 790x0"));
  EXPECT_EQ(vlc_.CountOf("libvlc_video_set_scale"), 0);
}

TEST_F(LayoutTest, AParentNarrowerThanTheGapMakesNegativeCellsAndNoScale) {
  StartGrid(2);
  vlc_.SetSize(TilePlayer(0), 640, 360);
  ResizeParent(8, 600);
  RECT client{};
  GetClientRect(parent_.get(), &client);
  ASSERT_EQ(client.right, 8);
  Layout();
  EXPECT_TRUE(
      log_.Has("DEBUG [UpdateGridLayout] *** CORE FIX *** Player 0 - Positioned at client coords: 0,0 size: -1x600"));
  EXPECT_EQ(vlc_.CountOf("libvlc_video_set_scale"), 0);
  EXPECT_EQ(FitVideoScale(TilePlayer(0), -1, 600), 0.0f);
}

TEST_F(LayoutTest, TheStepsOfATileAreLoggedInOrder) {
  StartGrid(2);
  vlc_.SetSize(TilePlayer(1), 790, 300);
  const std::string window = PointerText(Tile(1).window);
  SetWindowPos(parent_.get(), nullptr, 50, 60, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  const size_t before = log_.Lines().size();
  player_.UpdateGridLayout();
  EXPECT_TRUE(log_.Has("DEBUG [UpdateGridLayout] Player 0 window=" + PointerText(state_.vlcWindow_) +
                       " parentWindow=" + PointerText(parent_.get()) + " isOriginal=1 (equal=0)"));
  std::vector<std::string> lines = log_.Lines();
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(before));
  EXPECT_EQ(lines.front(), "DEBUG [UpdateGridLayout] Parent size: 800x600, Player count: 2");
  lines.erase(lines.begin(), lines.end() - 11);
  EXPECT_THAT(
      lines,
      ElementsAre(
          "DEBUG [UpdateGridLayout] Player 1 window=" + window + " parentWindow=" + PointerText(parent_.get()) +
              " isOriginal=0 (equal=0)",
          "DEBUG [UpdateGridLayout] Player 1 (original=0) current size: 395x600 -> positioning to: 405,0 size: "
          "395x600 window handle: " +
              window,
          "DEBUG [UpdateGridLayout] *** CORE FIX *** Player 1 - Positioned at client coords: 405,0 size: 395x600",
          "DEBUG [UpdateGridLayout] Sending resize message sequence to player 1",
          "DEBUG [UpdateGridLayout] VLC thinks video size is: 790x300",
          "DEBUG [UpdateGridLayout] Re-set VLC window handle for player 1",
          "DEBUG [UpdateGridLayout] Player 1 - Set viewport: 405,0 395x600",
          "DEBUG [UpdateGridLayout] Player 1 - Video 790x300 scaled to 0.500000 for window 395x600",
          "DEBUG [UpdateGridLayout] Player 1 - Requested: 395x600, Actual window size: 395x600",
          "DEBUG [UpdateGridLayout] Sent resize notifications to player 1 (size: 395x600)",
          "DEBUG [UpdateGridLayout] SetWindowPos result for player 1: 1"));
}

// Rescaling.

TEST_F(LayoutTest, RescalingMovesNoWindowSetsNoHandleAndTouchesNoViewport) {
  StartGrid(2);
  vlc_.SetSize(TilePlayer(1), 790, 300);
  ResizeParent(1000, 700);
  const Rect before = PlaceOf(1);
  vlc_.ClearCalls();
  player_.UpdateMultiViewScaling();
  EXPECT_EQ(PlaceOf(1), before);
  EXPECT_EQ(vlc_.CountOf("libvlc_video_set_viewport"), 0);
  EXPECT_EQ(vlc_.CountOf("libvlc_media_player_set_hwnd"), 0);
  EXPECT_EQ(vlc_.CountOf("libvlc_video_set_scale"), 1);
  EXPECT_TRUE(log_.Has("DEBUG [UpdateMultiViewScaling] *** Event-driven scaling update ***"));
}

TEST_F(LayoutTest, RescalingOutsideTheGridDoesNothing) {
  StartWithEvents();
  ASSERT_TRUE(Add(1));
  player_.UpdateMultiViewScaling();
  EXPECT_EQ(log_.CountContaining("[UpdateMultiViewScaling]"), 0);
}

TEST_F(LayoutTest, RescalingAfterASwapFitsEachVideoToItsNewTile) {
  StartGrid(3);
  vlc_.SetSize(TilePlayer(0), 800, 600);
  vlc_.SetSize(TilePlayer(1), 790, 300);
  ASSERT_TRUE(player_.MvSwapTiles(0, 1));
  vlc_.ClearCalls();
  player_.UpdateMultiViewScaling();
  EXPECT_THAT(vlc_.CallsOf("libvlc_video_set_scale"),
              ElementsAre("libvlc_video_set_scale(player2, 0.983333)", "libvlc_video_set_scale(player1, 0.491667)"));
}

TEST_F(LayoutTest, AnEventDuringTheAttachmentOfANewTileFindsTheTile) {
  StartGrid(1);
  int scales = 0;
  vlc_.OnCall("libvlc_event_attach", [&] {
    vlc_.SetSize(TilePlayer(1), 790, 300);
    player_.UpdateMultiViewScaling();
    scales = vlc_.CountOf("libvlc_video_set_scale");
  });
  ASSERT_TRUE(Add(1));
  vlc_.OnCall("libvlc_event_attach", nullptr);
  EXPECT_GT(scales, 0);
}

TEST_F(LayoutTest, RescalingReachesATileAfterOneWithoutAPlayer) {
  StartWithEvents();
  state_.mediaPlayer_.reset();
  player_.EnableMultiView();
  ASSERT_TRUE(Add(1));
  vlc_.SetSize(TilePlayer(1), 790, 300);
  vlc_.ClearCalls();
  player_.UpdateMultiViewScaling();
  EXPECT_EQ(vlc_.CountOf("libvlc_video_set_scale"), 1);
}

TEST_F(LayoutTest, AScaleNeedsAPlayerASizeAndTheFunctions) {
  StartGrid(1);
  vlc_.SetSize(TilePlayer(0), 400, 300);
  EXPECT_EQ(FitVideoScale(nullptr, 800, 600), 0.0f);
  EXPECT_EQ(FitVideoScale(TilePlayer(0), 0, 600), 0.0f);
  EXPECT_EQ(FitVideoScale(TilePlayer(0), 800, 0), 0.0f);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_EQ(FitVideoScale(TilePlayer(0), 800, 600), 2.0f);
  EXPECT_EQ(FitVideoScale(TilePlayer(0), 1, 600), 1.0f / 400);
  EXPECT_EQ(FitVideoScale(TilePlayer(0), 800, 1), 1.0f / 300);
  vlc_.ClearCalls();
  SetVideoScale(nullptr, 1.0f);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  LibVlcFunctionTable().libvlc_video_get_height = nullptr;
  EXPECT_EQ(FitVideoScale(TilePlayer(0), 800, 600), 0.0f);
  LibVlcFunctionTable().libvlc_video_set_scale = nullptr;
  vlc_.ClearCalls();
  SetVideoScale(TilePlayer(0), 1.0f);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

// Audio.

class AudioTest : public LayoutTest {};

TEST_F(AudioTest, OnlyTheActiveTileIsHeardMuteBeforeVolume) {
  StartGrid(3);
  player_.SetActiveIndexSafe(1);
  player_.UpdateActiveAudio();
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_audio_set_mute(player1, 1)", "libvlc_audio_set_volume(player1, 0)",
                                        "libvlc_audio_set_mute(player2, 0)", "libvlc_audio_set_volume(player2, 100)",
                                        "libvlc_audio_set_mute(player3, 1)", "libvlc_audio_set_volume(player3, 0)"));
}

TEST_F(AudioTest, TheActiveTileGetsFullVolumeWhateverTheVolumeControlSays) {
  StartGrid(2);
  player_.SetVolume(20);
  player_.UpdateActiveAudio();
  EXPECT_EQ(vlc_.Volume(TilePlayer(0)), 100);
}

TEST_F(AudioTest, AnActiveIndexOutOfRangeBecomesZero) {
  StartGrid(2);
  for (const int index : {-1, 2}) {
    state_.activeIndex_ = index;
    player_.UpdateActiveAudio();
    EXPECT_EQ(state_.activeIndex_, 0);
    EXPECT_EQ(vlc_.Mute(TilePlayer(0)), 0);
    EXPECT_TRUE(log_.Has("ERROR [UpdateActiveAudio] ERROR: Invalid activeIndex_ " + std::to_string(index) +
                         ", resetting to 0"));
  }
}

TEST_F(AudioTest, EachStepIsLogged) {
  StartGrid(2);
  const size_t before = log_.Lines().size();
  vlc_.SetResults("libvlc_audio_set_volume", {0, -1});
  player_.UpdateActiveAudio();
  std::vector<std::string> lines = log_.Lines();
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(before));
  EXPECT_THAT(lines, ElementsAre("DEBUG [UpdateActiveAudio] *** CALLED *** with activeIndex_=0, total players=2",
                                 testing::StartsWith("DEBUG [UpdateActiveAudio] Call count: "),
                                 "DEBUG [UpdateActiveAudio] Player 0 handle=" + PointerText(TilePlayer(0)) +
                                     " (activeIndex=0, isActive=YES) setting volume=100, mute=0",
                                 "DEBUG [UpdateActiveAudio] Player 0 volume result=0 (0=success, -1=error)",
                                 "DEBUG [UpdateActiveAudio] Player 1 handle=" + PointerText(TilePlayer(1)) +
                                     " (activeIndex=0, isActive=NO) setting volume=0, mute=1",
                                 "DEBUG [UpdateActiveAudio] Player 1 volume result=-1 (0=success, -1=error)"));
}

TEST_F(AudioTest, TheCallCounterGoesUpByOne) {
  StartGrid(1);
  player_.UpdateActiveAudio();
  const auto count = [&] {
    const std::vector<std::string> lines = log_.Lines();
    const std::string prefix = "DEBUG [UpdateActiveAudio] Call count: ";
    const auto line = std::find_if(lines.rbegin(), lines.rend(), [&](const std::string& text) {
      return text.compare(0, prefix.size(), prefix) == 0;
    });
    return std::stoi(line->substr(prefix.size()));
  };
  const int before = count();
  player_.UpdateActiveAudio();
  EXPECT_EQ(count(), before + 1);
}

TEST_F(AudioTest, ATileWithoutAPlayerIsPassedOver) {
  StartGrid(2);
  Tile(0).mediaPlayer.reset();
  vlc_.ClearCalls();
  player_.UpdateActiveAudio();
  EXPECT_TRUE(log_.Has("WARNING [UpdateActiveAudio] Player 0 has no VLC player handle!"));
  EXPECT_THAT(vlc_.Calls(), ElementsAre("libvlc_audio_set_mute(player2, 1)", "libvlc_audio_set_volume(player2, 0)"));
}

TEST_F(AudioTest, OutsideTheGridNothingIsSet) {
  StartWithEvents();
  player_.UpdateActiveAudio();
  EXPECT_EQ(log_.CountContaining("[UpdateActiveAudio]"), 0);
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

}  // namespace
}  // namespace vantro::test
