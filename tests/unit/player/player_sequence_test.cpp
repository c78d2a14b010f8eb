// The place of log lines among the libvlc calls and the messages of an operation. A line before a call that hangs or
// crashes is the last one in the log, so its place matters.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/import_hook.h"
#include "tests/support/line_order.h"
#include "tests/unit/player/watchdog_fixture.h"

namespace vantro::test {
namespace {

using testing::ElementsAreArray;
using Lines = std::vector<std::string>;

LRESULT WINAPI NoteMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  Note("SendMessageA");
  return SendMessageW(window, message, wParam, lParam);
}

// The record is enough here; nothing is drawn.
BOOL WINAPI NoteInvalidation(HWND, const RECT*, BOOL) {
  Note("InvalidateRect");
  return TRUE;
}

decltype(&SetWindowPos) realSetWindowPos = nullptr;
BOOL WINAPI NotePlacement(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
  Note("SetWindowPos");
  return realSetWindowPos(window, after, x, y, width, height, flags);
}

decltype(&SetTimer) realSetTimer = nullptr;
UINT_PTR WINAPI NoteTimer(HWND window, UINT_PTR id, UINT period, TIMERPROC procedure) {
  Note("SetTimer");
  return realSetTimer(window, id, period, procedure);
}

decltype(&KillTimer) realKillTimer = nullptr;
BOOL WINAPI NoteTimersEnd(HWND window, UINT_PTR id) {
  Note("KillTimer");
  return realKillTimer(window, id);
}

// Notes the calls for timers while the object exists.
class NotedTimers {
 public:
  NotedTimers() {
    realSetTimer = set_.Original<decltype(realSetTimer)>();
    realKillTimer = kill_.Original<decltype(realKillTimer)>();
  }

 private:
  ImportHook set_{"user32.dll", "SetTimer", NoteTimer};
  ImportHook kill_{"user32.dll", "KillTimer", NoteTimersEnd};
};

class Sequence : public WatchdogTest {
 protected:
  ~Sequence() override {
    for (const std::string& function : noted_) vlc_.OnCall(function, nullptr);
  }

  // Writes the calls of these functions into the log from now on, as "(call) libvlc_...".
  void NoteCalls(const Lines& functions) {
    for (const std::string& function : functions) {
      vlc_.OnCall(function, [function] { Note(function); });
      noted_.push_back(function);
    }
    begin_ = log_.Lines().size();
  }
  // Returns the fragments in the order of the first line after NoteCalls that contains each. Lines are taken once.
  Lines OrderOf(Lines fragments) const {
    Lines found;
    const Lines lines = log_.Lines();
    for (size_t index = begin_; index < lines.size(); ++index) {
      const auto match = std::find_if(fragments.begin(), fragments.end(), [&](const std::string& fragment) {
        return lines[index].find(fragment) != std::string::npos;
      });
      if (match == fragments.end()) continue;
      found.push_back(*match);
      fragments.erase(match);
    }
    return found;
  }
  void ExpectOrder(const Lines& expected) {
    Lines sorted = expected;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_THAT(OrderOf(sorted), ElementsAreArray(expected));
  }

 private:
  size_t begin_ = 0;
  Lines noted_;
};

TEST_F(Sequence, OfAPlayThatRepairsTheSound) {
  StartWithEvents();
  ASSERT_TRUE(SetMedia("http://host/0"));
  vlc_.SetResult("libvlc_audio_get_mute", 1);
  NoteCalls({"libvlc_media_player_play", "libvlc_audio_get_volume", "libvlc_audio_get_mute", "libvlc_audio_set_mute",
             "libvlc_audio_set_volume"});
  player_.Play();
  ExpectOrder({"[VLCPlayer::Play] Called, ", "(call) libvlc_media_player_play", "Called libvlc_media_player_play",
               "(call) libvlc_audio_get_volume", "(call) libvlc_audio_get_mute", "VLC audio state",
               "(call) libvlc_audio_set_mute", "(call) libvlc_audio_set_volume", "FIXED: Unmuted"});
}

TEST_F(Sequence, OfAPlayWithoutAWorkingSound) {
  StartWithEvents();
  ASSERT_TRUE(SetMedia("http://host/0"));
  vlc_.SetResult("libvlc_audio_get_mute", -1);
  vlc_.SetResult("libvlc_audio_get_volume", -1);
  NoteCalls({"libvlc_audio_get_mute", "libvlc_audio_set_volume"});
  player_.Play();
  ExpectOrder({"(call) libvlc_audio_get_mute", "VLC audio state", "audio subsystem not working", "Possible causes",
               "(call) libvlc_audio_set_volume", "Attempted to force volume=100"});
}

TEST_F(Sequence, OfASetMedia) {
  StartWithEvents();
  NoteCalls({"libvlc_media_new_uri", "libvlc_media_add_option", "libvlc_media_player_set_media",
             "libvlc_media_player_set_time"});
  ASSERT_TRUE(SetMedia("http://host/0", 5000));
  ExpectOrder({"[VLCPlayer::SetMedia] Called with", "(call) libvlc_media_new_uri", "(call) libvlc_media_add_option",
               "(call) libvlc_media_add_option", "Set network cache", "(call) libvlc_media_player_set_media",
               "(call) libvlc_media_player_set_time", "Set initial seek position"});
}

TEST_F(Sequence, OfAMediaOfAFile) {
  StartWithEvents();
  NoteCalls({"libvlc_media_new_path"});
  const VlcMediaPtr media(player_.CreateMedia("C:\\a.ts"));
  ExpectOrder({"Creating media with new_path", "(call) libvlc_media_new_path"});
}

TEST_F(Sequence, OfThreeAttemptsAtAnInstance) {
  vlc_.Fail("libvlc_new", 2);
  NoteCalls({"libvlc_new"});
  ASSERT_TRUE(player_.Initialize(parent_.get()));
  ExpectOrder({"Attempting to create VLC instance", "(call) libvlc_new", "Failed with global args", "(call) libvlc_new",
               "Failed with plugin path", "(call) libvlc_new", "VLC instance created successfully"});
}

TEST_F(Sequence, OfAStartWithoutAPlayer) {
  vlc_.Fail("libvlc_media_player_new");
  NoteCalls({"libvlc_release"});
  ASSERT_FALSE(player_.Initialize(parent_.get()));
  ExpectOrder({"Failed to create VLC media player", "(call) libvlc_release"});
}

TEST_F(Sequence, OfAStartWithoutAnEventManager) {
  vlc_.Fail("libvlc_media_player_event_manager");
  NoteCalls({"libvlc_media_player_release"});
  ASSERT_FALSE(player_.Initialize(parent_.get()));
  ExpectOrder({"Failed to get VLC event manager", "VLC error: ", "(call) libvlc_media_player_release"});
}

TEST_F(Sequence, OfTheVideosWindow) {
  const ImportHook place("user32.dll", "SetWindowPos", NotePlacement);
  realSetWindowPos = place.Original<decltype(realSetWindowPos)>();
  NoteCalls({});
  ASSERT_TRUE(player_.Initialize(parent_.get()));
  ExpectOrder({"(call) SetWindowPos", "Created VLC child window"});
}

TEST_F(Sequence, OfAResizeInTheGrid) {
  StartGrid(2);
  NoteCalls({});
  player_.Resize(0, 0, 1, 1);
  ExpectOrder({"[Resize] Called", "[Resize] In multiview mode", "[UpdateGridLayout] Parent size"});
}

TEST_F(Sequence, OfTheEventsThatRescale) {
  StartGrid(2);
  NoteCalls({});
  vlc_.Raise(TilePlayer(1), kPlaying);
  ExpectOrder({"[ProcessVLCEvent] Playing event", "[UpdateMultiViewScaling] ***"});
  NoteCalls({});
  vlc_.Raise(TilePlayer(1), kMediaChanged);
  ExpectOrder({"[ProcessVLCEvent] MediaChanged event", "[UpdateMultiViewScaling] ***"});
}

TEST_F(Sequence, OfAVolume) {
  StartWithEvents();
  NoteCalls({"libvlc_audio_set_volume"});
  player_.SetVolume(50);
  ExpectOrder(
      {"[VLCPlayer::SetVolume] Called with", "(call) libvlc_audio_set_volume", "libvlc_audio_set_volume result"});
}

TEST_F(Sequence, OfAGridThatBegins) {
  StartWithEvents();
  ASSERT_TRUE(Add(1));
  state_.activeIndex_ = 1;
  NoteCalls({"libvlc_media_player_release"});
  ASSERT_TRUE(player_.EnableMultiView());
  ExpectOrder({"*** CALLED *** isMultiViewMode=0, existing players=1", "clearing 1 existing players",
               "(call) libvlc_media_player_release", "Adding existing resizable player",
               "[UpdateActiveAudio] *** CALLED *** with activeIndex_=0"});
  EXPECT_EQ(state_.activeIndex_, 0);
}

TEST_F(Sequence, OfANewTile) {
  StartGrid(1);
  vlc_.SetSize(nullptr, 0, 0);
  NoteCalls(
      {"libvlc_media_player_new", "libvlc_media_player_set_hwnd", "libvlc_media_player_play", "libvlc_event_attach"});
  ASSERT_TRUE(Add(1));
  ExpectOrder({"[MvAddStream] *** CALLED ***", "[MvAddStream] Created window", "(call) libvlc_media_player_new",
               "[MvAddStream] Created VLC player", "(call) libvlc_media_player_set_hwnd",
               "(call) libvlc_media_player_play", "(call) libvlc_event_attach", "[AttachEventsToPlayer] Attached",
               "[MvAddStream] Attached events", "[MvAddStream] Added player", "[UpdateGridLayout] Parent size",
               "[UpdateActiveAudio] *** CALLED ***", "[UpdateMultiViewScaling] ***", "[MvAddStream] *** SUCCESS ***"});
}

TEST_F(Sequence, OfATilesPlace) {
  StartGrid(2);
  vlc_.SetSize(TilePlayer(1), 790, 300);
  // Only the second tile writes the lines, because the first has no size.
  const ImportHook send("user32.dll", "SendMessageA", NoteMessage);
  const ImportHook invalidate("user32.dll", "InvalidateRect", NoteInvalidation);
  NoteCalls({"libvlc_video_set_scale", "libvlc_video_set_viewport"});
  player_.UpdateGridLayout();
  ExpectOrder({"current size:", "*** CORE FIX *** Player 0", "Sending resize message sequence to player 0",
               "(call) SendMessageA", "(call) SendMessageA", "(call) SendMessageA", "(call) SendMessageA",
               "(call) InvalidateRect", "Re-set VLC window handle for player 0", "Player 0 - No video size yet",
               "Player 0 - Requested", "Sent resize notifications to player 0", "SetWindowPos result for player 0",
               "Re-set VLC window handle for player 1", "(call) libvlc_video_set_scale",
               "(call) libvlc_video_set_viewport", "Player 1 - Set viewport", "Player 1 - Video"});
}

TEST_F(Sequence, OfARescaledPicture) {
  StartGrid(2);
  vlc_.SetSize(TilePlayer(1), 790, 300);
  NoteCalls({"libvlc_video_set_scale"});
  player_.UpdateMultiViewScaling();
  ExpectOrder({"(call) libvlc_video_set_scale", "[UpdateMultiViewScaling] Player 1 - Video"});
}

TEST_F(Sequence, OfTheActiveTilesSound) {
  StartGrid(1);
  NoteCalls({"libvlc_audio_set_volume", "libvlc_audio_set_mute"});
  player_.SetActiveIndexSafe(0);
  player_.UpdateActiveAudio();
  ExpectOrder({"activeIndex already 0", "[UpdateActiveAudio] *** CALLED ***", "[UpdateActiveAudio] Call count",
               "[UpdateActiveAudio] Player 0 handle", "(call) libvlc_audio_set_mute", "(call) libvlc_audio_set_volume",
               "[UpdateActiveAudio] Player 0 volume result"});
}

TEST_F(Sequence, OfARemovedTile) {
  StartGrid(3);
  player_.SetActiveIndexSafe(2);
  NoteCalls({"libvlc_media_player_stop", "libvlc_media_player_release"});
  ASSERT_TRUE(player_.MvRemoveActive());
  ExpectOrder({"[MvRemoveActive] *** CALLED ***", "(call) libvlc_media_player_stop",
               "(call) libvlc_media_player_release", "[MvRemoveActive] Need to adjust", "[SetActiveIndexSafe] Changing",
               "[UpdateGridLayout] Parent size", "[UpdateActiveAudio] *** CALLED ***"});
}

TEST_F(Sequence, OfASwap) {
  StartGrid(3);
  player_.SetActiveIndexSafe(1);
  NoteCalls({});
  ASSERT_TRUE(player_.MvSwapTiles(1, 2));
  ExpectOrder({"[MvSwapTiles] Swapped 1 <-> 2", "[SetActiveIndexSafe] Changing", "[UpdateGridLayout] Parent size",
               "[UpdateActiveAudio] *** CALLED ***"});
}

TEST_F(Sequence, OfLeavingTheGrid) {
  StartGrid(2);
  vlc_.SetSize(TilePlayer(0), 400, 300);
  NoteCalls({"libvlc_media_player_stop", "libvlc_video_set_scale", "libvlc_media_player_release"});
  ASSERT_TRUE(player_.DisableMultiView());
  ExpectOrder({"[DisableMultiView] *** CALLED ***", "(call) libvlc_media_player_stop",
               "[DisableMultiView] Keeping original player", "(call) libvlc_video_set_scale",
               "[DisableMultiView] Reset VLC scale", "(call) libvlc_media_player_release"});
}

TEST_F(Sequence, OfLeavingTheGridWithoutASize) {
  StartGrid(2);
  vlc_.SetSize(TilePlayer(0), 0, 0);
  NoteCalls({"libvlc_video_set_scale"});
  ASSERT_TRUE(player_.DisableMultiView());
  ExpectOrder({"[DisableMultiView] Keeping original player", "(call) libvlc_video_set_scale",
               "[DisableMultiView] Reset VLC scale to auto"});
}

TEST_F(Sequence, OfTheWatchdogsTimer) {
  Start();
  const NotedTimers timers;
  player_.StartStallWatchdog();
  player_.StopStallWatchdog();
  ExpectOrder({"(call) SetTimer", "Started stall watchdog timer", "(call) KillTimer", "Stopped stall watchdog timer"});
}

TEST_F(Sequence, OfANudge) {
  StartSingle();
  const NotedTimers timers;
  NoteCalls({"libvlc_media_player_pause"});
  WedgedPasses(3);
  ExpectOrder({"performing cheap pause/resume nudge", "(call) libvlc_media_player_pause", "(call) SetTimer"});
}

TEST_F(Sequence, OfGivingUp) {
  StartGrid(2);
  Watchable(TilePlayer(1));
  HealthyPass();
  Tile(1).stall.lastNudgeTickMs = fakeNow;
  Tile(1).stall.restartTicksMs = {fakeNow, fakeNow, fakeNow};
  Tile(1).stall.stalledTicks = 2;
  const NotedTimers timers;
  WedgedPass();
  ExpectOrder({"restart budget exceeded", "(call) KillTimer", "Stopped stall watchdog timer"});
}

TEST_F(Sequence, OfANudgeAndAReload) {
  StartSingle();
  NoteCalls({"libvlc_media_player_set_pause", "libvlc_media_player_pause", "libvlc_media_player_stop",
             "libvlc_media_player_set_media"});
  WedgedPasses(3);
  ExpectOrder({"wedge detected", "performing cheap pause/resume nudge", "(call) libvlc_media_player_pause"});
  WedgedPasses(3);
  ExpectOrder({"wedge detected", "performing cheap pause/resume nudge", "(call) libvlc_media_player_pause",
               "restarting media", "Restarting media (", "(call) libvlc_media_player_stop",
               "(call) libvlc_media_player_set_media"});
}

}  // namespace
}  // namespace vantro::test
