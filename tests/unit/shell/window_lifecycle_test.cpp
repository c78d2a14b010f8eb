// The start of a window, the failures of a start, and the end of a window object.
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <stdexcept>

#include "flutter_host/embedding_api.h"
#include "player/libvlc_functions.h"
#include "shell/shell_ids.h"
#include "shell/window_manager.h"
#include "tests/support/import_hook.h"
#include "tests/support/line_order.h"
#include "tests/support/line_states.h"
#include "tests/unit/shell/window_fixture.h"

namespace {
size_t refusedSize = 0;
}

// Replaces operator new for the whole program. Returns null for objects of one size, and notes it in the log.
void* operator new(size_t size, const std::nothrow_t&) noexcept {
  if (size != refusedSize) return std::malloc(size);
  vantro::test::Note("no memory");
  return nullptr;
}
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }

namespace vantro {
namespace {

using test::DrainQueue;
using test::ImportHook;
using test::InOrder;
using test::Inside;

class WindowStart : public test::WindowTest {
 protected:
  // Runs a start, expects it to fail, and destroys the object.
  void FailToStart() {
    auto window = std::make_unique<VantroWindow>(GetModuleHandleA(nullptr));
    EXPECT_FALSE(window->Initialize());
    Destroy(std::move(window));
  }
};

TEST_F(WindowStart, RunsItsStepsInOrder) {
  const auto window = BringUp();
  EXPECT_TRUE(InOrder(log_, {
                                "INFO === NEW VANTRO SESSION STARTED - KEYBOARD LOGGING ENABLED ===",
                                "INFO VantroWindow constructor called",
                                "DEBUG Window class name: VantroWindowClass",
                                "DEBUG Window title: Vantro",
                                "INFO VantroWindow::Initialize() started",
                                "INFO VantroWindow::InitializeWindow() started",
                                "DEBUG Creating window with class name: VantroWindowClass",
                                "INFO Window created successfully with HWND: ",
                                "INFO Set this pointer in GWLP_USERDATA: ",
                                "RemoveStandardTitleBar: Removing Windows title bar",
                                "CreateCustomTitleBar: Creating controls in DWM extended area",
                                "INFO VantroWindow::InitializeWindow() succeeded",
                                "INFO VantroWindow::InitializeVLC() started",
                                "VLC path: ",
                                "INFO Creating VLCPlayer instance",
                                "INFO Calling VLCPlayer::Initialize",
                                "INFO VLC initialized successfully",
                                "INFO VantroWindow::InitializeVLC() succeeded",
                                "CreateFlutterOverlay: Starting Flutter overlay creation",
                                "CreateFlutterOverlay: Created overlay window: ",
                                "INFO VantroWindow::CreateFlutterOverlay() succeeded",
                                "INFO VantroWindow::InitializeFlutter() started",
                                "DEBUG Checking for Flutter assets...",
                                "WARNING WARNING: Flutter assets directory not found at: ",
                                "WARNING WARNING: ICU data file not found at: ",
                                "DEBUG InitializeFlutter: Checking overlay handle: ",
                                "INFO Initializing Flutter with SEPARATE window: ",
                                "INFO Flutter engine initialized successfully",
                                "INFO Method channel handler created successfully",
                                "INFO Binary messenger is available",
                                "INFO VOD thumbnail worker plugin created successfully",
                                "INFO Flutter initialization completed successfully",
                                "DEBUG After Flutter init - IsWindow check: VALID",
                                "INFO Window hook installed successfully for window synchronization",
                                "DEBUG === EnableOverlayMouseInput CALLED ===",
                                "DEBUG Final Z-order: Set Flutter overlay on top after all initialization",
                                "INFO VantroWindow::InitializeFlutter() succeeded",
                                "INFO VantroWindow::Initialize() completed successfully",
                            }));
  EXPECT_FALSE(IsWindowVisible(window->hwnd_));
  DestroyWindow(window->hwnd_);
}

TEST_F(WindowStart, RegistersTheClassOnceAProcess) {
  OpenWindow();
  const test::LogCapture later;
  OpenWindow();
  EXPECT_TRUE(later.Has("INFO Window class already registered - skipping registration"));
  EXPECT_EQ(later.CountContaining("Registering window class for the first time"), 0);
}

TEST_F(WindowStart, EveryWindowAnnouncesANewSession) {
  OpenWindow();
  OpenWindow();
  EXPECT_EQ(log_.Count("INFO === NEW VANTRO SESSION STARTED - KEYBOARD LOGGING ENABLED ==="), 2);
}

TEST_F(WindowStart, EveryWindowInstallsItsOwnHook) {
  VantroWindow& first = OpenWindow();
  VantroWindow& second = OpenWindow();
  EXPECT_NE(Inside(first).windowHook_, nullptr);
  EXPECT_NE(Inside(second).windowHook_, nullptr);
  EXPECT_NE(Inside(first).windowHook_, Inside(second).windowHook_);
}

TEST_F(WindowStart, OnlyTheWindowBeforeAllOthersIsMaster) {
  EXPECT_TRUE(OpenWindow().methodChannelHandler_->isMasterWindow_);
  EXPECT_FALSE(OpenWindow().methodChannelHandler_->isMasterWindow_);
  EXPECT_FALSE(OpenWindow().methodChannelHandler_->isMasterWindow_);
}

TEST_F(WindowStart, MissingAssetsAreWarningsOnly) {
  OpenWindow();
  EXPECT_EQ(log_.CountContaining("WARNING: Flutter assets directory not found at: "), 1);
  EXPECT_TRUE(log_.Has("INFO VantroWindow::Initialize() completed successfully"));
}

TEST_F(WindowStart, WithoutIconResourcesTheSystemIconIsUsed) {
  OpenWindow();
  WNDCLASSEXW registered{};
  registered.cbSize = sizeof registered;
  ASSERT_TRUE(GetClassInfoExW(GetModuleHandleW(nullptr), L"VantroWindowClass", &registered));
  EXPECT_EQ(registered.hIcon, LoadIconA(nullptr, IDI_APPLICATION));
  EXPECT_EQ(registered.style, 11u);
  EXPECT_EQ(registered.cbWndExtra, 8);
}

// Failures of a start.

HWND WINAPI FailToCreateMainWindow(DWORD, const wchar_t*, const wchar_t*, DWORD, int, int, int, int, HWND, HMENU,
                                   HINSTANCE, void*) {
  SetLastError(ERROR_INVALID_WINDOW_HANDLE);
  return nullptr;
}

TEST_F(WindowStart, AnEmptyClassNameIsLoggedAsEmpty) {
  Destroy(BringUp());  // registers the class, which stays registered
  auto window = std::make_unique<VantroWindow>(GetModuleHandleA(nullptr));
  Inside(*window).className_.clear();
  EXPECT_FALSE(window->Initialize());
  EXPECT_TRUE(log_.Has("DEBUG Creating window with class name: empty"));
}

TEST_F(WindowStart, FailsWithoutANativeWindowAndDiagnoses) {
  Destroy(BringUp());  // registers the class, which stays registered
  const test::LogCapture failure;
  const ImportHook hook("user32.dll", "CreateWindowExW", FailToCreateMainWindow);
  auto window = std::make_unique<VantroWindow>(GetModuleHandleA(nullptr));
  EXPECT_FALSE(window->Initialize());
  EXPECT_TRUE(InOrder(
      failure, {
                   "ERROR CreateWindowW failed with error: 1400",
                   "ERROR Invalid window handle - this may be due to an issue with the window class registration",
                   "ERROR Test window creation also failed with error: 1400",
                   "ERROR VantroWindow::InitializeWindow() failed",
               }));
  EXPECT_EQ(failure.CountContaining("InitializeVLC"), 0);
  window.reset();
  DrainQueue();
}

TEST_F(WindowStart, FailsWithoutThePlayerAndDiagnosesTheLibrary) {
  vlc_.Fail("libvlc_new", 100);
  FailToStart();
  EXPECT_TRUE(InOrder(log_, {
                                "VLC path: ",
                                "VLC directory exists",
                                "libvlc.dll exists at: ",
                                "libvlccore.dll exists at: ",
                                "ERROR VLC initialization failed",
                                "Manually loading libvlc.dll succeeded",
                                "Found libvlc_new function in libvlc.dll",
                                "ERROR VantroWindow::InitializeVLC() failed",
                            }));
  EXPECT_EQ(log_.CountContaining("CreateFlutterOverlay"), 0);
}

// By name, so that only the overlay's creation fails.
decltype(&CreateWindowExW) realCreateWindow = nullptr;
HWND WINAPI FailToCreateOverlay(DWORD exStyle, const wchar_t* className, const wchar_t* title, DWORD style, int x,
                                int y, int width, int height, HWND parent, HMENU menu, HINSTANCE instance, void* data) {
  if (std::wstring(className) == L"VantroFlutterOverlay") {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
  }
  return realCreateWindow(exStyle, className, title, style, x, y, width, height, parent, menu, instance, data);
}

TEST_F(WindowStart, WithoutAnOverlayFailsAtTheViewAndNotSooner) {
  const ImportHook hook("user32.dll", "CreateWindowExW", FailToCreateOverlay);
  realCreateWindow = hook.Original<decltype(&CreateWindowExW)>();
  FailToStart();
  EXPECT_TRUE(InOrder(log_, {
                                "ERROR CreateFlutterOverlay: Failed to create overlay window: 8",
                                "WARNING VantroWindow::CreateFlutterOverlay() failed",
                                "INFO VantroWindow::InitializeFlutter() started",
                                "ERROR ERROR: No separate Flutter window available! Cannot initialize Flutter.",
                                "ERROR ERROR: flutterHostWindow_ is NULL in InitializeFlutter!",
                                "ERROR VantroWindow::InitializeFlutter() failed",
                            }));
}

TEST_F(WindowStart, DeadOverlayFailsTheView) {
  auto window = std::make_unique<VantroWindow>(GetModuleHandleA(nullptr));
  ASSERT_TRUE(RoomPeer::InitializeWindow(*window));
  ASSERT_TRUE(Inside(*window).overlay_.CreateFlutterOverlay(GetModuleHandleW(nullptr)));
  DestroyWindow(Inside(*window).flutterHostWindow_);
  EXPECT_FALSE(RoomPeer::InitializeFlutter(*window));
  EXPECT_TRUE(log_.Has("ERROR ERROR: flutterHostWindow_ is not a valid window in InitializeFlutter!"));
  Destroy(std::move(window));
}

TEST_F(WindowStart, DeadMainWindowFailsThePlayer) {
  auto window = std::make_unique<VantroWindow>(GetModuleHandleA(nullptr));
  ASSERT_TRUE(RoomPeer::InitializeWindow(*window));
  test::KeepWindowClass();
  DestroyWindow(window->hwnd_);
  EXPECT_FALSE(RoomPeer::InitializeVLC(*window));
  EXPECT_TRUE(log_.Has("ERROR ERROR: Invalid window handle before VLC initialization"));
  EXPECT_TRUE(log_.Has("ERROR IsWindow() reports handle is not a valid window"));
  window->hwnd_ = nullptr;
  EXPECT_FALSE(RoomPeer::InitializeVLC(*window));
  EXPECT_TRUE(log_.Has("ERROR Window handle is NULL"));
}

int RefuseStatus(const wchar_t*, struct _stat64*) {
  errno = EACCES;
  return -1;
}

TEST_F(WindowStart, FailedQueryOfTheBundleIsRaisedBeforeAnEngineIsMade) {
  auto window = std::make_unique<VantroWindow>(GetModuleHandleA(nullptr));
  ASSERT_TRUE(RoomPeer::InitializeWindow(*window));
  {
    const ImportHook hook("msvcrt.dll", "_wstat64", RefuseStatus);
    EXPECT_THROW(RoomPeer::InitializeFlutter(*window), std::filesystem::filesystem_error);
  }
  EXPECT_EQ(window->flutterEngine_, nullptr);
  Destroy(std::move(window));
}

TEST_F(WindowStart, EngineIsMadeBeforeTheOverlayIsChecked) {
  auto window = std::make_unique<VantroWindow>(GetModuleHandleA(nullptr));
  const test::LineStates states([&] { return std::string(window->flutterEngine_ ? "engine" : "no engine"); });
  EXPECT_FALSE(RoomPeer::InitializeFlutter(*window));
  EXPECT_EQ(states.At("WARNING: ICU data file not found at: "), "no engine");
  EXPECT_EQ(states.At("InitializeFlutter: Checking overlay handle: "), "engine");
}

TEST_F(WindowStart, FailsWithoutAView) {
  LoopbackFaults faults{};
  faults.fail_view_controller_create = 1;
  loopback_.SetFaults(faults);
  FailToStart();
  EXPECT_TRUE(log_.Has("ERROR Flutter engine initialization failed"));
  EXPECT_TRUE(log_.Has("ERROR VantroWindow::InitializeFlutter() failed"));
  EXPECT_EQ(loopback_.EngineCount(), 0);
}

TEST_F(WindowStart, WithoutAMessengerGoesOnWithoutThumbnails) {
  LoopbackFaults faults{};
  faults.no_messenger = 100;
  loopback_.SetFaults(faults);
  VantroWindow& window = OpenWindow();
  EXPECT_EQ(Inside(window).vodThumbnailPlugin_, nullptr);
  EXPECT_TRUE(log_.Has("WARNING WARNING: Binary messenger is null"));
  EXPECT_TRUE(log_.Has("WARNING WARNING: Cannot create VOD thumbnail worker plugin - messenger is null"));
  EXPECT_TRUE(log_.Has("INFO VantroWindow::Initialize() completed successfully"));
}

// No memory.

TEST_F(WindowStart, WithoutMemoryForThePlayerFails) {
  refusedSize = sizeof(VLCPlayer);
  FailToStart();
  refusedSize = 0;
  EXPECT_TRUE(InOrder(log_, {"INFO Creating VLCPlayer instance", "(call) no memory",
                             "ERROR ERROR: Failed to create VLCPlayer instance"}));
  EXPECT_TRUE(log_.Has("ERROR VantroWindow::InitializeVLC() failed"));
}

TEST_F(WindowStart, WithoutMemoryForTheThumbnailsGoesOnWithoutThem) {
  refusedSize = sizeof(vod_thumbnail::VodThumbnailWorkerPlugin);
  VantroWindow& window = OpenWindow();
  refusedSize = 0;
  EXPECT_EQ(Inside(window).vodThumbnailPlugin_, nullptr);
  EXPECT_TRUE(InOrder(log_, {"INFO Binary messenger is available", "(call) no memory",
                             "WARNING WARNING: Failed to create VOD thumbnail worker plugin",
                             "INFO VantroWindow::Initialize() completed successfully"}));
}

// The exceptions of a start.

void ThrowText() { throw std::runtime_error("no more of this"); }
void ThrowNumber() { throw 7; }
void (*raise)() = ThrowText;

HWND WINAPI RaiseAtVideoWindow(DWORD exStyle, const wchar_t* className, const wchar_t* title, DWORD style, int x, int y,
                               int width, int height, HWND parent, HMENU menu, HINSTANCE instance, void* data) {
  if (std::wstring(className) == kVlcHostWindowClass) raise();
  return realCreateWindow(exStyle, className, title, style, x, y, width, height, parent, menu, instance, data);
}

TEST_F(WindowStart, ExceptionOfThePlayersStartFailsIt) {
  const ImportHook hook("user32.dll", "CreateWindowExW", RaiseAtVideoWindow);
  realCreateWindow = hook.Original<decltype(&CreateWindowExW)>();
  raise = ThrowText;
  FailToStart();
  EXPECT_TRUE(log_.Has("ERROR EXCEPTION during VLC initialization: no more of this"));
  raise = ThrowNumber;
  FailToStart();
  EXPECT_TRUE(log_.Has("ERROR UNKNOWN EXCEPTION during VLC initialization"));
  EXPECT_EQ(log_.Count("ERROR VantroWindow::InitializeVLC() failed"), 2);
}

std::string refusedChannel;
decltype(&FlutterDesktopMessengerSetCallback) realSetCallback = nullptr;
void RaiseAtChannel(FlutterDesktopMessengerRef messenger, const char* channel, FlutterDesktopMessageCallback callback,
                    void* data) {
  if (callback && refusedChannel == channel) raise();
  realSetCallback(messenger, channel, callback, data);
}

class WindowStartWithoutAChannel : public WindowStart {
 protected:
  explicit WindowStartWithoutAChannel()
      : hook_("flutter_windows.dll", "FlutterDesktopMessengerSetCallback", RaiseAtChannel) {
    realSetCallback = hook_.Original<decltype(realSetCallback)>();
  }
  ImportHook hook_;
};

TEST_F(WindowStartWithoutAChannel, ExceptionOfTheRequestsChannelFailsTheView) {
  refusedChannel = "org.vantro.player/communicate";
  raise = ThrowText;
  FailToStart();
  EXPECT_TRUE(log_.Has("ERROR Exception creating method channel handler: no more of this"));
  raise = ThrowNumber;
  FailToStart();
  EXPECT_TRUE(log_.Has("ERROR Unknown exception creating method channel handler"));
  EXPECT_EQ(log_.Count("ERROR VantroWindow::InitializeFlutter() failed"), 2);
  EXPECT_EQ(log_.CountContaining("Method channel handler created successfully"), 0);
}

TEST_F(WindowStartWithoutAChannel, ExceptionOfTheThumbnailsChannelGoesOnWithoutThumbnails) {
  refusedChannel = "org.vantro.thumbnail/worker";
  raise = ThrowText;
  EXPECT_EQ(Inside(OpenWindow()).vodThumbnailPlugin_, nullptr);
  EXPECT_TRUE(log_.Has("ERROR Exception creating VOD thumbnail worker plugin: no more of this"));
  raise = ThrowNumber;
  EXPECT_EQ(Inside(OpenWindow()).vodThumbnailPlugin_, nullptr);
  EXPECT_TRUE(log_.Has("ERROR Unknown exception creating VOD thumbnail worker plugin"));
}

HHOOK WINAPI FailToHook(int, HOOKPROC, HINSTANCE, DWORD) {
  SetLastError(ERROR_ACCESS_DENIED);
  return nullptr;
}

TEST_F(WindowStart, GoesOnWithoutAHook) {
  const ImportHook hook("user32.dll", "SetWindowsHookExA", FailToHook);
  EXPECT_EQ(Inside(OpenWindow()).windowHook_, nullptr);
  EXPECT_TRUE(log_.Has("ERROR Failed to set window hook: 5"));
}

// The newest window.

TEST_F(WindowStart, ConstructionTakesThePlaceOfTheNewestWindow) {
  VantroWindow& first = OpenWindow();
  EXPECT_EQ(VantroWindow::instance_, &first);
  VantroWindow& second = OpenWindow();
  EXPECT_EQ(VantroWindow::instance_, &second);
}

TEST_F(WindowStart, FailedWindowTakesThePlaceAndItsEndLeavesItEmpty) {
  OpenWindow();
  vlc_.Fail("libvlc_new", 100);
  auto failed = std::make_unique<VantroWindow>(GetModuleHandleA(nullptr));
  EXPECT_FALSE(failed->Initialize());
  EXPECT_EQ(VantroWindow::instance_, failed.get());
  Destroy(std::move(failed));
  EXPECT_EQ(VantroWindow::instance_, nullptr);
}

TEST_F(WindowStart, EndOfAnOlderObjectLeavesTheNewestWindowAlone) {
  auto older = BringUp();
  VantroWindow& newest = OpenWindow();
  Destroy(std::move(older));
  EXPECT_EQ(VantroWindow::instance_, &newest);
}

// The end.

TEST_F(WindowStart, EndTakesTheHandlerBeforeTheEngineBeforeThePlayer) {
  auto window = BringUp();
  vlc_.OnCall("libvlc_media_player_release", [this, w = window.get()] {
    EXPECT_EQ(w->methodChannelHandler_, nullptr);
    EXPECT_EQ(w->flutterEngine_, nullptr);
    EXPECT_EQ(loopback_.EngineCount(), 0);
    EXPECT_TRUE(IsWindow(Inside(*w).flutterHostWindow_));
  });
  const int released = vlc_.CountOf("libvlc_media_player_release");
  Destroy(std::move(window));
  EXPECT_GT(vlc_.CountOf("libvlc_media_player_release"), released);
}

TEST_F(WindowStart, EndDestroysALiveOverlayButNotTheMainWindow) {
  auto window = BringUp();
  const HWND native = window->hwnd_;
  const HWND overlay = Inside(*window).flutterHostWindow_;
  window.reset();
  EXPECT_FALSE(IsWindow(overlay));
  ASSERT_TRUE(IsWindow(native));
  // Only the system's default procedure handles its messages now.
  EXPECT_EQ(SendMessageA(native, WM_VANTRO_NEW_WINDOW, 0, 0), 0);
  EXPECT_EQ(log_.CountContaining("RECEIVED WM_VANTRO_NEW_WINDOW"), 0);
  DestroyWindow(native);
}

TEST_F(WindowStart, EndOfTheLastWindowBeforeShutdownForcesTheExit) {
  auto window = BringUp();
  DrainQueue();
  Destroy(std::move(window));
  EXPECT_EQ(log_.CountContaining("~VantroWindow: This was the last window - forcing application exit"), 1);
  EXPECT_EQ(log_.CountContaining("not found in registry"), 1);
  EXPECT_EQ(DrainQueue(), 1);
}

TEST_F(WindowStart, EndWhileOthersAreRegisteredForcesNoExit) {
  OpenWindow();
  auto window = BringUp();
  DrainQueue();
  Destroy(std::move(window));
  EXPECT_EQ(DrainQueue(), 0);
}

TEST_F(WindowStart, EndKillsTheSearchTimer) {
  auto window = BringUp();
  Inside(*window).searchDebounceTimer_ = SetTimer(window->hwnd_, 1001, 500, nullptr);
  const HWND native = window->hwnd_;
  window.reset();
  EXPECT_FALSE(KillTimer(native, 1001));
  DestroyWindow(native);
}

}  // namespace
}  // namespace vantro
