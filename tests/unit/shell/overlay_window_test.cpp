// The overlay's creation, its position, its raise, and its change from click-through to capturing input.
#include <dwmapi.h>
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "shell/window_manager.h"
#include "tests/support/flag_names.h"
#include "tests/support/format.h"
#include "tests/support/import_hook.h"
#include "tests/support/line_order.h"
#include "tests/unit/shell/call_log.h"
#include "tests/unit/shell/window_fixture.h"

namespace vantro {
namespace {

using test::CallLog;
using test::ClientRectOnScreen;
using test::DrainQueue;
using test::ImportHook;
using test::InOrder;
using test::InsertAfter;
using test::Inside;
using test::Note;
using test::PlacementFlags;
using test::WindowRectOf;
using test::operator==;
using Lines = std::vector<std::string>;

// Records the program's own calls of SetWindowPos and passes them on.
struct PlaceCall {
  HWND window;
  std::string line;
};
std::vector<PlaceCall> placeCalls;
decltype(&SetWindowPos) realSetWindowPos = nullptr;
FlutterOverlay* syncedAgain = nullptr;  // synced during each call, if set

std::string PlaceLine(HWND after, int x, int y, int width, int height, UINT flags) {
  return InsertAfter(after) + " " + std::to_string(x) + "," + std::to_string(y) + " " + std::to_string(width) + "x" +
         std::to_string(height) + " " + PlacementFlags(flags);
}

BOOL WINAPI RecordSetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
  placeCalls.push_back({window, PlaceLine(after, x, y, width, height, flags)});
  if (FlutterOverlay* const overlay = std::exchange(syncedAgain, nullptr)) overlay->SyncFlutterOverlayPosition(false);
  return realSetWindowPos(window, after, x, y, width, height, flags);
}

class PlaceCalls {
 public:
  PlaceCalls() : hook_("user32.dll", "SetWindowPos", RecordSetWindowPos) {
    realSetWindowPos = hook_.Original<decltype(&SetWindowPos)>();
    placeCalls.clear();
  }
  // The calls for one window, for example "HWND_TOP 0,30 800x570 SWP_NOACTIVATE|SWP_SHOWWINDOW".
  std::vector<std::string> Of(HWND window) const {
    std::vector<std::string> some;
    for (const auto& call : placeCalls) {
      if (call.window == window) some.push_back(call.line);
    }
    return some;
  }

 private:
  ImportHook hook_;
};

HRESULT WINAPI FailToExtendFrame(HWND, const MARGINS*) { return E_FAIL; }

MARGINS extendedBy{};
HRESULT WINAPI RecordMargins(HWND, const MARGINS* margins) {
  extendedBy = *margins;
  return S_OK;
}

RECT BelowTitleBar(HWND window) {
  RECT rect = ClientRectOnScreen(window);
  rect.top += TITLE_BAR_HEIGHT;
  return rect;
}

class Overlay : public test::WindowTest {};

// A main window on which the rest of a start has not run.
class BareOverlay : public test::WindowTest {
 protected:
  BareOverlay() : window_(GetModuleHandleA(nullptr)) {
    RoomPeer::InitializeWindow(window_);
    test::KeepWindowClass();
  }
  ~BareOverlay() override { DestroyWindow(window_.hwnd_); }

  VantroWindow window_;
};

struct CreateCall {
  std::wstring className;
  std::wstring title;
  DWORD exStyle = 0;
  DWORD style = 0;
  RECT place{};
  HWND parent = nullptr;
  HMENU menu = nullptr;
  HINSTANCE instance = nullptr;
  void* data = nullptr;
};
CreateCall createCall;
decltype(&CreateWindowExW) realCreateWindow = nullptr;
HWND WINAPI RecordCreateWindow(DWORD exStyle, const wchar_t* className, const wchar_t* title, DWORD style, int x, int y,
                               int width, int height, HWND parent, HMENU menu, HINSTANCE instance, void* data) {
  createCall = {className, title, exStyle, style, {x, y, x + width, y + height}, parent, menu, instance, data};
  Note("CreateWindowExW");
  return realCreateWindow(exStyle, className, title, style, x, y, width, height, parent, menu, instance, data);
}

TEST_F(BareOverlay, IsAnOwnedClickThroughPopupBelowTheTitleBar) {
  const ImportHook hook("user32.dll", "CreateWindowExW", RecordCreateWindow);
  realCreateWindow = hook.Original<decltype(&CreateWindowExW)>();
  ASSERT_TRUE(Inside(window_).overlay_.CreateFlutterOverlay(GetModuleHandleW(nullptr)));
  const HWND overlay = Inside(window_).flutterHostWindow_;
  EXPECT_EQ(createCall.className, L"VantroFlutterOverlay");
  EXPECT_EQ(createCall.title, L"Flutter UI");
  EXPECT_EQ(createCall.exStyle, 0xA0u);
  EXPECT_EQ(createCall.style, 0x90000000u);
  EXPECT_TRUE(createCall.place == BelowTitleBar(window_.hwnd_));
  EXPECT_EQ(createCall.parent, window_.hwnd_);
  EXPECT_EQ(createCall.menu, nullptr);
  EXPECT_EQ(createCall.instance, GetModuleHandleW(nullptr));
  EXPECT_EQ(createCall.data, nullptr);
  EXPECT_TRUE(InOrder(log_, {"CreateFlutterOverlay: Title bar height: ", "(call) CreateWindowExW",
                             "CreateFlutterOverlay: Created overlay window"}));
  EXPECT_EQ(GetWindow(overlay, GW_OWNER), window_.hwnd_);
  EXPECT_TRUE(WindowRectOf(overlay) == BelowTitleBar(window_.hwnd_));
}

TEST_F(BareOverlay, GlassFrameCoversItsWholeClientArea) {
  const ImportHook hook("dwmapi.dll", "DwmExtendFrameIntoClientArea", RecordMargins);
  ASSERT_TRUE(Inside(window_).overlay_.CreateFlutterOverlay(GetModuleHandleW(nullptr)));
  EXPECT_EQ(extendedBy.cxLeftWidth, -1);
  EXPECT_EQ(extendedBy.cxRightWidth, -1);
  EXPECT_EQ(extendedBy.cyTopHeight, -1);
  EXPECT_EQ(extendedBy.cyBottomHeight, -1);
  EXPECT_TRUE(log_.Has("DEBUG CreateFlutterOverlay: DwmExtendFrameIntoClientArea result: SUCCESS"));
}

TEST_F(BareOverlay, FailedGlassFrameIsLoggedAndChangesNothing) {
  const ImportHook hook("dwmapi.dll", "DwmExtendFrameIntoClientArea", FailToExtendFrame);
  EXPECT_TRUE(Inside(window_).overlay_.CreateFlutterOverlay(GetModuleHandleW(nullptr)));
  EXPECT_TRUE(log_.Has("DEBUG CreateFlutterOverlay: DwmExtendFrameIntoClientArea result: FAILED"));
  EXPECT_TRUE(log_.Has("ERROR CreateFlutterOverlay: DWM error code: 0x80004005"));
}

TEST_F(BareOverlay, NeedsALiveMainWindow) {
  DestroyWindow(window_.hwnd_);
  EXPECT_FALSE(Inside(window_).overlay_.CreateFlutterOverlay(GetModuleHandleW(nullptr)));
  EXPECT_TRUE(log_.Has("WARNING CreateFlutterOverlay: Main window not ready"));
}

TEST_F(BareOverlay, SyncWithoutAnOverlayOnlyLogs) {
  Inside(window_).overlay_.SyncFlutterOverlayPosition(window_.isFullscreen());
  EXPECT_TRUE(log_.Has("ERROR SyncFlutterOverlayPosition: ERROR - flutterHostWindow_ is NULL!"));
}

TEST_F(BareOverlay, SyncWithADeadOverlayOnlyLogs) {
  ASSERT_TRUE(Inside(window_).overlay_.CreateFlutterOverlay(GetModuleHandleW(nullptr)));
  DestroyWindow(Inside(window_).flutterHostWindow_);
  Inside(window_).overlay_.SyncFlutterOverlayPosition(window_.isFullscreen());
  EXPECT_TRUE(log_.Has("ERROR SyncFlutterOverlayPosition: ERROR - flutterHostWindow_ is not a valid window!"));
}

TEST_F(BareOverlay, SyncWithADeadMainWindowIsSilent) {
  ASSERT_TRUE(Inside(window_).overlay_.CreateFlutterOverlay(GetModuleHandleW(nullptr)));
  const HWND main = window_.hwnd_;
  window_.hwnd_ = nullptr;
  const PlaceCalls calls;
  Inside(window_).overlay_.SyncFlutterOverlayPosition(window_.isFullscreen());
  EXPECT_TRUE(calls.Of(Inside(window_).flutterHostWindow_).empty());
  window_.hwnd_ = main;
}

TEST_F(BareOverlay, MouseInputCannotBeEnabledWithoutIt) {
  Inside(window_).overlay_.EnableOverlayMouseInput();
  EXPECT_TRUE(log_.Has("ERROR EnableOverlayMouseInput: ERROR - overlay window invalid!"));
  EXPECT_EQ(log_.CountContaining("EnableOverlayMouseInput COMPLETED"), 0);
}

TEST_F(BareOverlay, OperationsWithoutALiveOverlayDoNothing) {
  FlutterOverlay& overlay = Inside(window_).overlay_;
  const PlaceCalls calls;
  for (const bool isDead : {false, true}) {
    SCOPED_TRACE(isDead ? "dead" : "null");
    if (isDead) {
      ASSERT_TRUE(overlay.CreateFlutterOverlay(GetModuleHandleW(nullptr)));
      DestroyWindow(overlay.Window());
    }
    const test::LogCapture log;
    placeCalls.clear();
    EXPECT_FALSE(overlay.MoveBelow(0).has_value());
    overlay.SetFlutterOverlayTopmost();
    overlay.EnableOverlayMouseInput();
    overlay.Destroy();
    EXPECT_TRUE(placeCalls.empty());
    EXPECT_EQ(log.Lines(), (Lines{"DEBUG === EnableOverlayMouseInput CALLED ===",
                                  "ERROR EnableOverlayMouseInput: ERROR - overlay window invalid!",
                                  test::Format("ERROR EnableOverlayMouseInput: flutterHostWindow_ = %p",
                                               static_cast<void*>(overlay.Window()))}));
  }
}

BOOL WINAPI RecordDestroyWindow(HWND window) {
  Note("DestroyWindow");
  return reinterpret_cast<decltype(&DestroyWindow)>(GetProcAddress(GetModuleHandleA("user32.dll"), "DestroyWindow"))(
      window);
}

TEST_F(BareOverlay, DestroyingItIsLoggedAndForgetsTheWindow) {
  ASSERT_TRUE(Inside(window_).overlay_.CreateFlutterOverlay(GetModuleHandleW(nullptr)));
  const HWND overlay = Inside(window_).flutterHostWindow_;
  const ImportHook hook("user32.dll", "DestroyWindow", RecordDestroyWindow);
  Inside(window_).overlay_.Destroy();
  EXPECT_TRUE(
      InOrder(log_, {test::Format("DEBUG Destructor: Destroying overlay window: %p", static_cast<void*>(overlay)),
                     "DEBUG (call) DestroyWindow"}));
  EXPECT_FALSE(IsWindow(overlay));
  EXPECT_EQ(Inside(window_).flutterHostWindow_, nullptr);
}

TEST_F(Overlay, CoversTheWholeClientAreaUntilTheWindowIsFirstShown) {
  const auto window = BringUp();
  EXPECT_TRUE(WindowRectOf(Inside(*window).flutterHostWindow_) == ClientRectOnScreen(window->hwnd_));
  ShowWindow(window->hwnd_, SW_SHOWNORMAL);
  EXPECT_TRUE(WindowRectOf(Inside(*window).flutterHostWindow_) == BelowTitleBar(window->hwnd_));
  DestroyWindow(window->hwnd_);
}

TEST_F(Overlay, CapturesInputOnceTheWindowIsUp) {
  VantroWindow& window = OpenWindow();
  EXPECT_EQ(GetWindowLongPtrA(Inside(window).flutterHostWindow_, GWL_EXSTYLE) & WS_EX_TRANSPARENT, 0);
}

TEST_F(Overlay, EnablingInputKeepsItsOtherExtendedStyles) {
  VantroWindow& window = OpenWindow();
  const HWND overlay = Inside(window).flutterHostWindow_;
  SetWindowLongPtrA(overlay, GWL_EXSTYLE,
                    GetWindowLongPtrA(overlay, GWL_EXSTYLE) | WS_EX_TRANSPARENT | WS_EX_DLGMODALFRAME);
  const LONG_PTR before = GetWindowLongPtrA(overlay, GWL_EXSTYLE);
  Inside(window).overlay_.EnableOverlayMouseInput();
  EXPECT_EQ(GetWindowLongPtrA(overlay, GWL_EXSTYLE), before & ~LONG_PTR{WS_EX_TRANSPARENT});
  EXPECT_TRUE(before & WS_EX_DLGMODALFRAME);
}

TEST_F(Overlay, EnablingInputRaisesItThreeTimesThenPlacesItAndItsView) {
  VantroWindow& window = OpenWindow();
  const HWND overlay = Inside(window).flutterHostWindow_;
  const HWND child = LiveFlutterChild(window.flutterEngine_);
  const RECT client = ClientRectOnScreen(window.hwnd_);
  const int width = static_cast<int>(client.right - client.left);
  const int height = static_cast<int>(client.bottom - client.top);
  const PlaceCalls calls;
  Inside(window).overlay_.EnableOverlayMouseInput();
  const std::string raise = "HWND_TOP 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE|SWP_NOACTIVATE|SWP_SHOWWINDOW";
  const std::string place = PlaceLine(HWND_TOP, static_cast<int>(client.left), static_cast<int>(client.top), width,
                                      height, SWP_NOACTIVATE | SWP_SHOWWINDOW);
  EXPECT_EQ(calls.Of(overlay), (Lines{raise, raise, raise, place}));
  EXPECT_EQ(calls.Of(child), Lines{PlaceLine(HWND_TOP, 0, 0, width, height, SWP_NOACTIVATE | SWP_SHOWWINDOW)});
  EXPECT_EQ(GetFocus(), child);
}

TEST_F(Overlay, EnablingInputTakesItsEffectsInOrder) {
  VantroWindow& window = OpenWindow();
  const HWND overlay = Inside(window).flutterHostWindow_;
  SetWindowLongPtrA(overlay, GWL_EXSTYLE, GetWindowLongPtrA(overlay, GWL_EXSTYLE) | WS_EX_TRANSPARENT);
  const test::LogCapture log;
  CallLog calls(window);
  calls.WriteToLog();
  Inside(window).overlay_.EnableOverlayMouseInput();
  EXPECT_TRUE(InOrder(log, {"DEBUG === EnableOverlayMouseInput CALLED ===", "(call) SetWindowPos overlay",
                            "(call) SetWindowPos overlay", "(call) SetWindowPos overlay",
                            "INFO EnableOverlayMouseInput: Applied TOP positioning multiple times",
                            "(call) SetWindowPos overlay", "(call) SetWindowPos view", "(call) ShowWindow view SW_SHOW",
                            "(call) SetFocus view", "Extended style before: 0x000000A0, after: 0x00000080",
                            "DEBUG === EnableOverlayMouseInput COMPLETED ==="}));
  EXPECT_EQ(calls.Calls().size(), 7u);
}

TEST_F(Overlay, SyncFocusesTheViewBeforeItSaysSo) {
  VantroWindow& window = OpenWindow();
  const test::LogCapture log;
  CallLog calls(window);
  calls.WriteToLog();
  Inside(window).overlay_.SyncFlutterOverlayPosition(false);
  EXPECT_TRUE(InOrder(log, {"(call) SetWindowPos overlay", "(call) SetWindowPos view", "(call) SetFocus view",
                            "SyncFlutterOverlayPosition: Set focus to Flutter engine window"}));
}

TEST_F(Overlay, SyncPlacesItWithItsViewAndFocusesTheView) {
  VantroWindow& window = OpenWindow();
  SetFocus(Inside(window).searchBox_);
  const HWND overlay = Inside(window).flutterHostWindow_;
  const HWND child = LiveFlutterChild(window.flutterEngine_);
  const RECT below = BelowTitleBar(window.hwnd_);
  const int width = static_cast<int>(below.right - below.left);
  const int height = static_cast<int>(below.bottom - below.top);
  const PlaceCalls calls;
  Inside(window).overlay_.SyncFlutterOverlayPosition(window.isFullscreen());
  EXPECT_EQ(calls.Of(overlay), Lines{PlaceLine(HWND_TOP, static_cast<int>(below.left), static_cast<int>(below.top),
                                               width, height, SWP_SHOWWINDOW)});
  EXPECT_EQ(calls.Of(child), Lines{PlaceLine(HWND_TOP, 0, 0, width, height, SWP_NOACTIVATE | SWP_SHOWWINDOW)});
  EXPECT_EQ(GetFocus(), child);
}

TEST_F(Overlay, SyncInFullscreenCoversTheTitleBarEvenWhileItIsShown) {
  VantroWindow& window = OpenWindow();
  window.ToggleFullscreen();
  Inside(window).fullscreen_.ShowTitleBarControls();
  EXPECT_TRUE(WindowRectOf(Inside(window).flutterHostWindow_) == BelowTitleBar(window.hwnd_));
  Inside(window).overlay_.SyncFlutterOverlayPosition(window.isFullscreen());
  EXPECT_TRUE(WindowRectOf(Inside(window).flutterHostWindow_) == ClientRectOnScreen(window.hwnd_));
  Inside(window).fullscreen_.HideTitleBarControls();
  Inside(window).fullscreen_.ShowTitleBarControls();
  EXPECT_TRUE(WindowRectOf(Inside(window).flutterHostWindow_) == BelowTitleBar(window.hwnd_));
}

TEST_F(Overlay, SyncDoesNotNest) {
  VantroWindow& window = OpenWindow();
  Inside(window).isSyncingOverlay_ = true;
  const PlaceCalls calls;
  Inside(window).overlay_.SyncFlutterOverlayPosition(window.isFullscreen());
  EXPECT_TRUE(calls.Of(Inside(window).flutterHostWindow_).empty());
  Inside(window).isSyncingOverlay_ = false;
}

TEST_F(Overlay, SyncDuringASyncMovesNothing) {
  VantroWindow& window = OpenWindow();
  const PlaceCalls calls;
  syncedAgain = &Inside(window).overlay_;
  Inside(window).overlay_.SyncFlutterOverlayPosition(window.isFullscreen());
  EXPECT_EQ(calls.Of(Inside(window).flutterHostWindow_).size(), 1u);
  EXPECT_FALSE(Inside(window).isSyncingOverlay_);
}

TEST_F(Overlay, SyncOfAMinimizedWindowAsksForANegativeHeight) {
  VantroWindow& window = OpenWindow();
  const PlaceCalls calls;
  ShowWindow(window.hwnd_, SW_MINIMIZE);
  const auto placed = calls.Of(Inside(window).flutterHostWindow_);
  ASSERT_FALSE(placed.empty());
  EXPECT_THAT(placed.back(), testing::HasSubstr(" 0x-30 "));
}

TEST_F(Overlay, RaiseKeepsPlaceAndActivation) {
  VantroWindow& window = OpenWindow();
  // A window above the overlay, so that the overlay has to be raised.
  const HWND other =
      CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
  SetWindowPos(other, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  ASSERT_NE(GetTopWindow(GetDesktopWindow()), Inside(window).flutterHostWindow_);
  const PlaceCalls calls;
  Inside(window).overlay_.SetFlutterOverlayTopmost();
  EXPECT_EQ(calls.Of(Inside(window).flutterHostWindow_),
            Lines{"HWND_TOP 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE|SWP_NOACTIVATE"});
  EXPECT_FALSE(GetWindowLongPtrA(Inside(window).flutterHostWindow_, GWL_EXSTYLE) & WS_EX_TOPMOST);
  DestroyWindow(other);
}

HWND WINAPI NothingOnTop(HWND) { return nullptr; }

TEST_F(Overlay, RaiseIsLoggedAfterTheCall) {
  VantroWindow& window = OpenWindow();
  const ImportHook hook("user32.dll", "GetTopWindow", NothingOnTop);
  CallLog calls(window);
  calls.WriteToLog();
  Inside(window).overlay_.SetFlutterOverlayTopmost();
  EXPECT_TRUE(InOrder(log_, {"(call) SetWindowPos overlay after=HWND_TOP 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE|SWP_NOACTIVATE",
                             "SetFlutterOverlayTopmost: Top position applied with NOACTIVATE"}));
}

TEST_F(Overlay, OnTopAlreadyIsNotRaised) {
  VantroWindow& window = OpenWindow();
  SetWindowPos(Inside(window).flutterHostWindow_, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  ASSERT_EQ(GetTopWindow(GetDesktopWindow()), Inside(window).flutterHostWindow_);
  const PlaceCalls calls;
  Inside(window).overlay_.SetFlutterOverlayTopmost();
  EXPECT_TRUE(calls.Of(Inside(window).flutterHostWindow_).empty());
}

TEST_F(Overlay, GoesWithItsOwner) {
  VantroWindow& window = OpenWindow();
  const HWND overlay = Inside(window).flutterHostWindow_;
  SendMessageA(window.hwnd_, WM_CLOSE, 0, 0);
  EXPECT_FALSE(IsWindow(overlay));
  DrainQueue();
}

}  // namespace
}  // namespace vantro
