// The start and the end of the player over a complete libvlc, and a start that fails at each stage.
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "player/player_events.h"
#include "player/vlc_runtime.h"
#include "tests/support/import_hook.h"
#include "tests/support/line_order.h"
#include "tests/unit/player/player_fixture.h"
#include "tests/unit/player/window_calls.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr char kFourArguments[] =
    "libvlc_new(4, \"--intf=dummy\", \"--no-video-title-show\", \"--aout=directsound\", \"--http-reconnect\")";
struct AttachedEvent {
  int type;
  const char* name;
};

// The events in the order in which they are attached.
constexpr AttachedEvent kEvents[] = {{0x102, "MediaPlayerOpening"},
                                     {0x103, "MediaPlayerBuffering"},
                                     {0x104, "MediaPlayerPlaying"},
                                     {0x100, "MediaPlayerMediaChanged"},
                                     {0x105, "MediaPlayerPaused"},
                                     {0x106, "MediaPlayerStopped"},
                                     {5, "0x5"},
                                     {0x10A, "MediaPlayerEncounteredError"},
                                     {0x10C, "MediaPlayerPositionChanged"},
                                     {0x10B, "MediaPlayerTimeChanged"},
                                     {0x10D, "MediaPlayerSeekableChanged"}};

std::vector<std::string> EventCalls(const std::string& function) {
  std::vector<std::string> calls;
  for (const AttachedEvent& event : kEvents) calls.push_back(function + "(player1, " + event.name + ")");
  return calls;
}

class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) { _putenv_s(name, value); }
  ~Variable() { _putenv_s(name_, ""); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
};

std::string WorkingDirectory() {
  char text[MAX_PATH] = "";
  GetCurrentDirectoryA(MAX_PATH, text);
  return text;
}

class PlayerStartup : public PlayerTest {
 protected:
  bool Initialize() { return player_.Initialize(parent_.get()); }
};

TEST_F(PlayerStartup, TheConstructorTouchesNoLibvlcAndSetsTheDefaults) {
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
  EXPECT_EQ(state_.mediaPlayer_.get(), nullptr);
  EXPECT_EQ(state_.vlcWindow_, nullptr);
  EXPECT_EQ(state_.volume_, 100);
  EXPECT_EQ(state_.current_.networkCacheMs, 5000);
  EXPECT_TRUE(state_.current_.isLive);
  EXPECT_FALSE(state_.current_.supportsTimeshift);
  EXPECT_FALSE(state_.current_.inTimeshiftMode);
  EXPECT_FALSE(state_.suppressStoppedEvent_);
  EXPECT_FALSE(state_.isMultiViewMode_);
  EXPECT_EQ(state_.activeIndex_, 0);
  EXPECT_EQ(state_.current_.initialSeekPositionMs, 0);
}

TEST_F(PlayerStartup, MakesTheCallsInOrder) {
  ASSERT_TRUE(Initialize());
  std::vector<std::string> expected = {"libvlc_get_version()", kFourArguments, "libvlc_media_player_new(instance1)",
                                       "libvlc_media_player_set_hwnd(player1, " + vlc_.Name(state_.vlcWindow_) + ")",
                                       "libvlc_media_player_event_manager(player1)"};
  for (const std::string& call : EventCalls("libvlc_event_attach")) expected.push_back(call);
  expected.push_back("libvlc_audio_set_volume(player1, 100)");
  EXPECT_THAT(vlc_.Calls(), ElementsAreArray(expected));
}

TEST_F(PlayerStartup, WritesTheLogLinesInOrder) {
  const Variable plugins("VLC_PLUGIN_PATH", "C:\\plugins");
  const Variable data("LIBVLC_DATA_PATH", "C:\\data");
  ASSERT_TRUE(Initialize());
  const std::string child = PointerText(state_.vlcWindow_);
  const std::string parent = PointerText(parent_.get());
  const std::string player = PointerText(state_.mediaPlayer_.get());
  EXPECT_THAT(
      log_.Lines(),
      ElementsAre(
          "INFO VLCPlayer::Initialize started with parent window: " + parent, "INFO VLC_PLUGIN_PATH: C:\\plugins",
          "INFO Current working directory: " + WorkingDirectory(),
          "INFO *** CORE FIX *** Created VLC child window: " + child + " (800x600) for original player",
          "INFO Successfully loaded libvlc.dll and libvlccore.dll", "INFO LIBVLC_DATA_PATH: C:\\data",
          "INFO Successfully got all required VLC function pointers",
          "INFO VLC version (from function): 4.0.0-scripted",
          "INFO Attempting to create VLC instance with global arguments", "INFO VLC instance created successfully",
          "INFO VLC version: 4.0.0-scripted", "INFO VLC media player created successfully",
          "INFO Setting HWND for VLC player: " + child + " (child window, not parent " + parent + ")",
          "INFO HWND set successfully", "INFO VLC event manager obtained successfully",
          "INFO Attaching VLC event handlers", "INFO VLC event handlers attached successfully",
          "INFO [VLCPlayer::SetVolume] Called with volume=100, current volume_=100, mediaPlayer_.get()=" + player +
              ", isMultiViewMode_=0",
          "INFO [VLCPlayer::SetVolume] libvlc_audio_set_volume result=0 (0=success, -1=error)",
          "INFO VLC initial volume set to 100%", "INFO VLCPlayer::Initialize completed successfully"));
}

DWORD roomForTheDirectory = 0;
DWORD WINAPI RefuseTheDirectory(DWORD room, char*) {
  roomForTheDirectory = room;
  return 0;
}

TEST_F(PlayerStartup, AWorkingDirectoryThatCannotBeReadIsLoggedAsEmpty) {
  const ImportHook hook("KERNEL32.dll", "GetCurrentDirectoryA", &RefuseTheDirectory);
  ASSERT_TRUE(Initialize());
  EXPECT_TRUE(log_.Has("INFO Current working directory: "));
  EXPECT_EQ(roomForTheDirectory, 260u);
}

TEST_F(PlayerStartup, WithoutAPluginPathLooksForAnInstalledVlc) {
  ASSERT_TRUE(Initialize());
  EXPECT_TRUE(log_.Has("INFO VLC_PLUGIN_PATH not set"));
  EXPECT_TRUE(log_.Has("WARNING Could not find VLC installation or set up environment"));
  EXPECT_TRUE(log_.Has("INFO LIBVLC_DATA_PATH not set"));
}

TEST_F(PlayerStartup, WithAPluginPathLooksForNoInstalledVlc) {
  const Variable plugins("VLC_PLUGIN_PATH", "C:\\plugins");
  ASSERT_TRUE(Initialize());
  EXPECT_FALSE(log_.Has("WARNING Could not find VLC installation or set up environment"));
}

TEST_F(PlayerStartup, AttachesTheElevenEventsWithThePlayerAsUserData) {
  ASSERT_TRUE(Initialize());
  const auto attached = vlc_.Attached(state_.mediaPlayer_.get());
  ASSERT_EQ(attached.size(), std::size(kEvents));
  for (size_t index = 0; index < attached.size(); ++index) {
    EXPECT_EQ(attached[index].type, kEvents[index].type);
    EXPECT_EQ(attached[index].userData, &player_);
    EXPECT_EQ(attached[index].callback, reinterpret_cast<void*>(&VLCPlayer::VlcEventCallback));
  }
}

TEST_F(PlayerStartup, AFailedAttachmentIsIgnored) {
  vlc_.SetResult("libvlc_event_attach", -1);
  EXPECT_TRUE(Initialize());
  EXPECT_EQ(vlc_.CountOf("libvlc_event_attach"), 11);
}

TEST_F(PlayerStartup, AnAbsentVersionTextIsUnknownAndNotRepeated) {
  vlc_.SetText("libvlc_get_version", nullptr);
  ASSERT_TRUE(Initialize());
  EXPECT_TRUE(log_.Has("INFO VLC version (from function): unknown"));
  EXPECT_EQ(log_.CountContaining("VLC version: "), 0);
}

TEST_F(PlayerStartup, AnEmptyVersionSlotIsUnknown) {
  LibVlcFunctionTable().libvlc_get_version = nullptr;
  ASSERT_TRUE(Initialize());
  EXPECT_TRUE(log_.Has("INFO VLC version (from function): unknown"));
}

// The child window.

TEST_F(PlayerStartup, TheChildWindowFillsTheParentAtTheBottom) {
  const HWND sibling =
      CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 10, 10, parent_.get(), nullptr, nullptr, nullptr);
  ASSERT_TRUE(Initialize());
  const HWND child = state_.vlcWindow_;
  EXPECT_EQ(GetParent(child), parent_.get());
  EXPECT_EQ(GetWindow(sibling, GW_HWNDNEXT), child);
  const RECT place = PlaceInParent(child);
  EXPECT_EQ(place.left, 0);
  EXPECT_EQ(place.top, 0);
  EXPECT_EQ(place.right, 800);
  EXPECT_EQ(place.bottom, 600);
}

TEST_F(PlayerStartup, TheChildWindowIsMadeInItsSizeAndPutAtTheBottomWithoutActivation) {
  const WindowCalls calls;
  ASSERT_TRUE(Initialize());
  EXPECT_THAT(calls.Lines(),
              ElementsAre("CreateWindowExW window 0,0 800x600 "
                          "WS_CHILD|WS_VISIBLE|WS_CLIPSIBLINGS|WS_CLIPCHILDREN WS_EX_NOPARENTNOTIFY of this program",
                          "SetWindowPos window HWND_BOTTOM 0,0 800x600 SWP_NOACTIVATE"));
}

TEST_F(PlayerStartup, TheChildWindowHasItsClassStyleAndNoTitle) {
  ASSERT_TRUE(Initialize());
  wchar_t name[64] = L"";
  GetClassNameW(state_.vlcWindow_, name, 64);
  EXPECT_STREQ(name, L"VantroVlcHostWindow");
  EXPECT_EQ(GetWindowLongPtrW(state_.vlcWindow_, GWL_STYLE), 0x56000000);
  EXPECT_EQ(GetWindowLongPtrW(state_.vlcWindow_, GWL_EXSTYLE), WS_EX_NOPARENTNOTIFY);
  EXPECT_EQ(GetWindowTextLengthW(state_.vlcWindow_), 0);
}

TEST_F(PlayerStartup, AnEmptyParentStillMakesAChildOf1By1) {
  const ParentWindow empty(0, 0);
  ASSERT_TRUE(player_.Initialize(empty.get()));
  const RECT place = PlaceInParent(state_.vlcWindow_);
  EXPECT_EQ(place.right - place.left, 1);
  EXPECT_EQ(place.bottom - place.top, 1);
  EXPECT_EQ(log_.CountContaining("(1x1) for original player"), 1);
}

TEST_F(PlayerStartup, AChildThatCannotBeMadeLeavesTheVideoInTheParent) {
  parent_.Destroy();
  EXPECT_TRUE(Initialize());
  EXPECT_TRUE(log_.Has("WARNING Failed to create VLC child window, using parent window"));
  EXPECT_EQ(state_.vlcWindow_, parent_.get());
  EXPECT_THAT(vlc_.CallsOf("libvlc_media_player_set_hwnd"),
              ElementsAre("libvlc_media_player_set_hwnd(player1, " + vlc_.Name(parent_.get()) + ")"));
}

// The three stages of the instance.

TEST_F(PlayerStartup, AFailedFirstStageIsRepeatedAsItWasAndThenAccepted) {
  vlc_.Fail("libvlc_new", 1);
  EXPECT_TRUE(Initialize());
  EXPECT_THAT(vlc_.CallsOf("libvlc_new"), ElementsAre(kFourArguments, kFourArguments));
  EXPECT_TRUE(log_.Has("WARNING Failed with global args, trying with plugin-path added"));
  EXPECT_FALSE(log_.Has("WARNING Failed with plugin path, trying bare minimum (no args)"));
  EXPECT_TRUE(log_.Has("INFO VLCPlayer::Initialize completed successfully"));
}

TEST_F(PlayerStartup, TheThirdStagePassesNoArguments) {
  vlc_.Fail("libvlc_new", 2);
  EXPECT_TRUE(Initialize());
  EXPECT_THAT(vlc_.CallsOf("libvlc_new"), ElementsAre(kFourArguments, kFourArguments, "libvlc_new(0, null)"));
  EXPECT_TRUE(log_.Has("WARNING Failed with plugin path, trying bare minimum (no args)"));
}

class InstanceFailure : public PlayerStartup {
 protected:
  InstanceFailure() {
    vlc_.Fail("libvlc_new", 3);
    vlc_.SetText("libvlc_errmsg", "no plugins");
  }
  ~InstanceFailure() override { std::filesystem::remove_all("plugins"); }

  std::vector<std::string> LinesAfterTheStages() {
    std::vector<std::string> lines = log_.Lines();
    const auto last =
        std::find(lines.begin(), lines.end(), "WARNING Failed with plugin path, trying bare minimum (no args)");
    return last == lines.end() ? lines : std::vector<std::string>(last + 1, lines.end());
  }
};

TEST_F(InstanceFailure, IsReportedAndKeepsTheChildWindow) {
  EXPECT_FALSE(Initialize());
  EXPECT_THAT(LinesAfterTheStages(),
              ElementsAre("ERROR Failed to create VLC instance", "ERROR VLC error: no plugins",
                          "WARNING Plugins directory does not exist at: " + GetExeDirectory() + "plugins"));
  EXPECT_TRUE(IsWindow(state_.vlcWindow_));
  EXPECT_EQ(state_.parentWindow_, parent_.get());
  EXPECT_EQ(state_.vlcInstance_.get(), nullptr);
}

TEST_F(InstanceFailure, ListsThePluginsFolder) {
  std::filesystem::create_directory("plugins");
  std::ofstream("plugins/libtest_plugin.dll");
  EXPECT_FALSE(Initialize());
  EXPECT_THAT(LinesAfterTheStages(),
              ElementsAre("ERROR Failed to create VLC instance", "ERROR VLC error: no plugins",
                          "INFO Plugins directory exists at: " + GetExeDirectory() + "plugins",
                          "INFO Listing files in plugins directory:", "INFO   libtest_plugin.dll"));
}

decltype(&FindFirstFileA) realFindFirst = nullptr;
decltype(&FindClose) realFindClose = nullptr;
bool refuseListing = false;

HANDLE WINAPI NoteFindFirst(const char* path, WIN32_FIND_DATAA* found) {
  Note(std::string("find ") + path);
  const bool refused = refuseListing && std::string(path).ends_with("*");
  return refused ? INVALID_HANDLE_VALUE : realFindFirst(path, found);
}
BOOL WINAPI NoteFindClose(HANDLE search) {
  Note("close");
  return realFindClose(search);
}

// Starts that list an empty plugins folder, with the system's calls among the lines.
class PluginsFolder : public InstanceFailure {
 protected:
  PluginsFolder() {
    std::filesystem::create_directory("plugins");
    refuseListing = false;
  }
  std::vector<std::string> LinesAndCalls() {
    const ImportHook first("KERNEL32.dll", "FindFirstFileA", &NoteFindFirst);
    const ImportHook close("KERNEL32.dll", "FindClose", &NoteFindClose);
    realFindFirst = first.Original<decltype(realFindFirst)>();
    realFindClose = close.Original<decltype(realFindClose)>();
    EXPECT_FALSE(Initialize());
    std::vector<std::string> lines = LinesAfterTheStages();
    lines.erase(lines.begin(), lines.begin() + 2);
    return lines;
  }
  const std::string folder_ = GetExeDirectory() + "plugins";
};

TEST_F(PluginsFolder, IsSearchedTwiceAndEachSearchIsClosed) {
  EXPECT_THAT(LinesAndCalls(),
              ElementsAre("DEBUG (call) find " + folder_, "DEBUG (call) close",
                          "INFO Plugins directory exists at: " + folder_, "INFO Listing files in plugins directory:",
                          "DEBUG (call) find " + folder_ + "\\*", "DEBUG (call) close"));
}

TEST_F(PluginsFolder, ThatCannotBeListedHasNoFilesAndNoSearchToClose) {
  refuseListing = true;
  EXPECT_THAT(
      LinesAndCalls(),
      ElementsAre("DEBUG (call) find " + folder_, "DEBUG (call) close", "INFO Plugins directory exists at: " + folder_,
                  "INFO Listing files in plugins directory:", "DEBUG (call) find " + folder_ + "\\*"));
}

TEST_F(InstanceFailure, WithoutTheErrorFunctionHasTheStandInText) {
  LibVlcFunctionTable().libvlc_errmsg = nullptr;
  EXPECT_FALSE(Initialize());
  EXPECT_TRUE(log_.Has("ERROR VLC error: No error message available"));
}

// The later stages, which clean up.

TEST_F(PlayerStartup, AFailedPlayerCleansUp) {
  vlc_.Fail("libvlc_media_player_new");
  vlc_.SetText("libvlc_errmsg", "out of memory");
  EXPECT_FALSE(Initialize());
  EXPECT_EQ(log_.Lines().back(), "ERROR Failed to create VLC media player, VLC error: out of memory");
  EXPECT_EQ(state_.parentWindow_, nullptr);
  EXPECT_EQ(state_.vlcWindow_, nullptr);
  EXPECT_EQ(GetWindow(parent_.get(), GW_CHILD), nullptr);
  EXPECT_EQ(vlc_.LiveInstances(), 0);
}

TEST_F(PlayerStartup, AFailedEventManagerCleansUp) {
  vlc_.Fail("libvlc_media_player_event_manager");
  vlc_.SetText("libvlc_errmsg", "no events");
  EXPECT_FALSE(Initialize());
  EXPECT_TRUE(log_.Has("ERROR Failed to get VLC event manager"));
  EXPECT_TRUE(log_.Has("ERROR VLC error: no events"));
  EXPECT_EQ(state_.parentWindow_, nullptr);
  EXPECT_EQ(GetWindow(parent_.get(), GW_CHILD), nullptr);
  EXPECT_EQ(vlc_.LivePlayers(), 0);
  EXPECT_EQ(vlc_.LiveInstances(), 0);
  EXPECT_EQ(vlc_.CountOf("libvlc_event_attach"), 0);
}

// Each of the five slots that the player cannot start without.

struct RequiredSlot {
  const char* name;
  size_t offset;
  const char* line;
};

class MissingSlot : public PlayerStartup, public testing::WithParamInterface<RequiredSlot> {};

TEST_P(MissingSlot, EndsTheStartBeforeAnInstanceIsMade) {
  void* const none = nullptr;
  std::memcpy(reinterpret_cast<char*>(&LibVlcFunctionTable()) + GetParam().offset, &none, sizeof none);
  EXPECT_FALSE(Initialize());
  EXPECT_EQ(log_.Lines().back(), std::string("ERROR Missing required libvlc symbols ") + GetParam().line);
  EXPECT_EQ(vlc_.CountOf("libvlc_new"), 0);
  EXPECT_TRUE(IsWindow(state_.vlcWindow_));
}

#define REQUIRED(name, line) \
  RequiredSlot { #name, offsetof(LibVlcFunctions, name), line }
INSTANTIATE_TEST_SUITE_P(
    Table, MissingSlot,
    testing::Values(
        REQUIRED(libvlc_new, "(new=0, player_new=1, set_hwnd=1, event_manager=1, event_attach=1)"),
        REQUIRED(libvlc_media_player_new, "(new=1, player_new=0, set_hwnd=1, event_manager=1, event_attach=1)"),
        REQUIRED(libvlc_media_player_set_hwnd, "(new=1, player_new=1, set_hwnd=0, event_manager=1, event_attach=1)"),
        REQUIRED(libvlc_media_player_event_manager,
                 "(new=1, player_new=1, set_hwnd=1, event_manager=0, event_attach=1)"),
        REQUIRED(libvlc_event_attach, "(new=1, player_new=1, set_hwnd=1, event_manager=1, event_attach=0)")),
    [](const testing::TestParamInfo<RequiredSlot>& row) { return row.param.name; });

// All other slots: the start succeeds without any one of them.

class OptionalSlot : public PlayerStartup, public testing::WithParamInterface<LibVlcSlot> {};

bool IsRequired(const std::string& name) {
  return name == "libvlc_new" || name == "libvlc_media_player_new" || name == "libvlc_media_player_set_hwnd" ||
         name == "libvlc_media_player_event_manager" || name == "libvlc_event_attach";
}

std::vector<LibVlcSlot> OptionalSlots() {
  std::vector<LibVlcSlot> slots;
  for (const LibVlcSlot& slot : LibVlcSlots())
    if (!IsRequired(slot.name)) slots.push_back(slot);
  return slots;
}

TEST_P(OptionalSlot, MayBeEmptyFromTheStartToTheEnd) {
  void* const none = nullptr;
  std::memcpy(reinterpret_cast<char*>(&LibVlcFunctionTable()) + GetParam().offset, &none, sizeof none);
  EXPECT_TRUE(Initialize());
  player_.Cleanup();
  EXPECT_EQ(vlc_.LivePlayers(), 0);
  EXPECT_EQ(vlc_.LiveInstances(), 0);
}

INSTANTIATE_TEST_SUITE_P(Table, OptionalSlot, testing::ValuesIn(OptionalSlots()),
                         [](const testing::TestParamInfo<LibVlcSlot>& row) { return row.param.name; });

// The end.

TEST_F(PlayerStartup, CleanupDetachesStopsAndReleasesInOrder) {
  Start();
  ASSERT_TRUE(SetMedia("http://host/a"));
  state_.suppressStoppedEvent_ = false;
  vlc_.ClearCalls();
  player_.Cleanup();
  std::vector<std::string> expected = EventCalls("libvlc_event_detach");
  for (const char* call : {"libvlc_media_player_stop(player1)", "libvlc_media_player_release(player1)",
                           "libvlc_media_release(media1)", "libvlc_release(instance1)"}) {
    expected.push_back(call);
  }
  EXPECT_THAT(vlc_.Calls(), ElementsAreArray(expected));
  EXPECT_TRUE(state_.suppressStoppedEvent_);
}

TEST_F(PlayerStartup, CleanupDestroysTheChildWindowAndForgetsTheWindows) {
  Start();
  const HWND child = state_.vlcWindow_;
  state_.overlayWindow_ = parent_.get();
  player_.Cleanup();
  EXPECT_FALSE(IsWindow(child));
  EXPECT_TRUE(IsWindow(parent_.get()));
  EXPECT_EQ(state_.vlcWindow_, nullptr);
  EXPECT_EQ(state_.parentWindow_, nullptr);
  EXPECT_EQ(state_.overlayWindow_, nullptr);
  EXPECT_EQ(state_.eventManager_, nullptr);
}

TEST_F(PlayerStartup, CleanupDestroysTheChildWindowAfterTheReleases) {
  Start();
  const HWND child = state_.vlcWindow_;
  bool isThere = false;
  vlc_.OnCall("libvlc_release", [&] { isThere = IsWindow(child) != FALSE; });
  player_.Cleanup();
  vlc_.OnCall("libvlc_release", nullptr);
  EXPECT_TRUE(isThere);
}

TEST_F(PlayerStartup, CleanupDestroysTheCallbackLast) {
  Start();
  const HWND child = state_.vlcWindow_;
  bool wasLast = false;
  std::shared_ptr<void> callbacksOwn(&wasLast, [&](void*) {
    wasLast = !IsWindow(child) && !state_.vlcWindow_ && !state_.parentWindow_.load() && !state_.eventManager_;
  });
  state_.eventCallback_ = [own = std::move(callbacksOwn)](const char*, const char*) {};
  player_.Cleanup();
  EXPECT_TRUE(wasLast);
}

TEST_F(PlayerStartup, CleanupKeepsTheVolumeAndTheStringsAndEmptiesTheCallback) {
  Start();
  SetMedia("http://host/a");
  player_.SetVolume(30);
  state_.eventCallback_ = [](const char*, const char*) {};
  player_.Cleanup();
  EXPECT_EQ(state_.volume_, 30);
  EXPECT_EQ(state_.current_.url, "http://host/a");
  EXPECT_EQ(state_.current_.title, "Title");
  EXPECT_FALSE(static_cast<bool>(state_.eventCallback_));
}

TEST_F(PlayerStartup, ASecondCleanupNeitherStopsNorReleasesAnything) {
  Start();
  player_.Cleanup();
  vlc_.ClearCalls();
  player_.Cleanup();
  EXPECT_THAT(vlc_.Calls(), IsEmpty());
}

TEST_F(PlayerStartup, CleanupOfAPlayerInTheParentDoesNotDestroyTheParent) {
  Start();
  DestroyWindow(state_.vlcWindow_);
  state_.vlcWindow_ = parent_.get();
  player_.Cleanup();
  EXPECT_TRUE(IsWindow(parent_.get()));
}

TEST_F(PlayerStartup, CleanupOutlivesAChildWindowThatIsGone) {
  Start();
  DestroyWindow(state_.vlcWindow_);
  player_.Cleanup();
  EXPECT_EQ(state_.vlcWindow_, nullptr);
}

TEST_F(PlayerStartup, CleanupWithoutTheDetachFunctionStillReleases) {
  Start();
  LibVlcFunctionTable().libvlc_event_detach = nullptr;
  player_.Cleanup();
  EXPECT_EQ(vlc_.CountOf("libvlc_event_detach"), 0);
  EXPECT_EQ(vlc_.LivePlayers(), 0);
}

TEST_F(PlayerStartup, TheStopOfCleanupIsNotReportedToTheInterface) {
  Start();
  std::vector<std::string> reported;
  state_.eventCallback_ = [&](const char* name, const char*) { reported.push_back(name); };
  libvlc_media_player_t* const player = state_.mediaPlayer_.get();
  vlc_.OnCall("libvlc_media_player_stop", [&] { vlc_.Raise(player, player_event::kStopped); });
  player_.Cleanup();
  EXPECT_THAT(reported, IsEmpty());
}

TEST_F(PlayerStartup, NoEventFollowsACleanupDuringAStormOfEvents) {
  Start();
  std::atomic<int> reported{0};
  state_.eventCallback_ = [&](const char*, const char*) { ++reported; };
  std::vector<int> types;
  for (const AttachedEvent& event : kEvents) types.push_back(event.type);
  vlc_.StartStorm(state_.mediaPlayer_.get(), 2, types);
  while (reported < 50) SwitchToThread();
  player_.Cleanup();
  const int reportedByThen = reported;
  vlc_.StopStorms();
  EXPECT_EQ(reported, reportedByThen);
}

TEST_F(PlayerStartup, TheDestructorLeavesNothingAlive) {
  {
    VLCPlayer player;
    ASSERT_TRUE(player.Initialize(parent_.get()));
    ASSERT_TRUE(player.SetMedia({"http://host/a", "", 0, 0, true, false, false}));
  }
  const ScriptedObjects live = vlc_.Live();
  EXPECT_EQ(live.instances, 0);
  EXPECT_EQ(live.players, 0);
  EXPECT_EQ(live.media, 0);
  EXPECT_EQ(live.attached_events, 0);
  EXPECT_EQ(GetWindow(parent_.get(), GW_CHILD), nullptr);
}

TEST_F(PlayerStartup, APlayerCanBeInitialisedAgainAfterItsCleanup) {
  Start();
  player_.Cleanup();
  EXPECT_TRUE(Initialize());
  EXPECT_EQ(vlc_.LivePlayers(), 1);
  EXPECT_TRUE(IsWindow(state_.vlcWindow_));
}

}  // namespace
}  // namespace vantro::test
