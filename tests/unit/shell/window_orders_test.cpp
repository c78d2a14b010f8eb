// The creation of a native window, and the order of the steps of a start and an end that depend on each other.
#include <string>

#include "flutter_host/embedding_api.h"
#include "shell/gdiplus_drawing.h"
#include "tests/support/flag_names.h"
#include "tests/support/import_hook.h"
#include "tests/support/line_order.h"
#include "tests/unit/shell/window_fixture.h"

namespace vantro {
namespace {

using test::ImportHook;
using test::InOrder;
using test::Inside;
using test::Note;

// Calls the system's function directly, without import hooks.
template <typename Function, typename... Arguments>
auto CallSystem(const char* library, const char* name, Function*, Arguments... arguments) {
  return reinterpret_cast<Function*>(GetProcAddress(GetModuleHandleA(library), name))(arguments...);
}
#define CALL_SYSTEM(library, function, ...) CallSystem(library, #function, ::function, __VA_ARGS__)

class WindowOrders : public test::WindowTest {
 protected:
  template <typename Function>
  void Hook(const char* library, const char* name, Function* replacement) {
    hooks_.push_back(std::make_unique<ImportHook>(library, name, replacement));
  }
  ~WindowOrders() override { hooks_.clear(); }

  std::vector<std::unique_ptr<ImportHook>> hooks_;
};

// The native window.

HWND WINAPI OnCreateWindow(DWORD exStyle, const wchar_t* className, const wchar_t* title, DWORD style, int x, int y,
                           int width, int height, HWND parent, HMENU menu, HINSTANCE instance, void* data) {
  if (std::wstring(className) == L"VantroWindowClass" && !(style & WS_POPUP)) {
    Note("main window: " + test::ExStyleNames(exStyle) + " " + test::StyleNames(style) +
         (x == CW_USEDEFAULT && y == CW_USEDEFAULT ? " at the system's choice " : " at a given place ") +
         std::to_string(width) + "x" + std::to_string(height) +
         (parent || menu || data ? " with parent, menu or data" : " alone"));
  }
  return CALL_SYSTEM("user32.dll", CreateWindowExW, exStyle, className, title, style, x, y, width, height, parent, menu,
                     instance, data);
}

LONG_PTR WINAPI OnSetWindowLong(HWND window, int index, LONG_PTR value) {
  if (index == GWLP_USERDATA) Note("object pointer stored");
  return CALL_SYSTEM("user32.dll", SetWindowLongPtrA, window, index, value);
}

TEST_F(WindowOrders, NativeWindowIsPlainAndPlacedByTheSystemAndThenReceivesItsObject) {
  Hook("user32.dll", "CreateWindowExW", OnCreateWindow);
  Hook("user32.dll", "SetWindowLongPtrA", OnSetWindowLong);
  OpenWindow();
  EXPECT_TRUE(InOrder(log_, {"INFO VantroWindow::InitializeWindow() started", "DEBUG Window title: Vantro",
                             "DEBUG (call) main window: 0 WS_OVERLAPPEDWINDOW at the system's choice 1280x720 alone",
                             "(call) object pointer stored", "INFO Window created successfully with HWND: "}));
}

// The construction.

Gdiplus::Status WINAPI OnGdiplusStartup(ULONG_PTR* token, const Gdiplus::GdiplusStartupInput* input,
                                        Gdiplus::GdiplusStartupOutput* output) {
  Note("GdiplusStartup version " + std::to_string(input->GdiplusVersion) + " token " + std::to_string(*token) +
       (output ? " with output" : ""));
  return CallSystem("gdiplus.dll", "GdiplusStartup", Gdiplus::GdiplusStartup, token, input, output);
}
HBRUSH WINAPI OnCreateSolidBrush(COLORREF color) {
  Note("CreateSolidBrush " + std::to_string(color));
  return CALL_SYSTEM("gdi32.dll", CreateSolidBrush, color);
}

TEST_F(WindowOrders, ConstructionStartsGdiplusAndThenMakesTheBackground) {
  Hook("gdiplus.dll", "GdiplusStartup", OnGdiplusStartup);
  Hook("gdi32.dll", "CreateSolidBrush", OnCreateSolidBrush);
  VantroWindow window(GetModuleHandleA(nullptr));
  EXPECT_TRUE(InOrder(log_, {"(call) CreateSolidBrush 6243910", "(call) GdiplusStartup version 1 token 0",
                             "INFO === NEW VANTRO SESSION STARTED - KEYBOARD LOGGING ENABLED ===",
                             "(call) CreateSolidBrush 0", "INFO VantroWindow constructor called"}));
  EXPECT_EQ(log_.CountContaining(" with output"), 0);
  EXPECT_TRUE(Inside(window).reservedFlag_);
  EXPECT_EQ(Inside(window).reservedFactor_, 1.0);
  EXPECT_EQ(Inside(window).reservedTimerId_, 0u);
}

// The end of a start.

HWND WINAPI NothingOnTop(HWND) { return nullptr; }

constexpr UINT kRaise = SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE;

BOOL WINAPI OnSetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
  if (flags == kRaise || after == HWND_TOPMOST || flags == (kRaise | SWP_SHOWWINDOW)) {
    Note("SetWindowPos " + test::InsertAfter(after) + " " + test::PlacementFlags(flags));
  }
  return CALL_SYSTEM("user32.dll", SetWindowPos, window, after, x, y, width, height, flags);
}

TEST_F(WindowOrders, StartEnablesInputThenRaisesThenLoadsTheSettings) {
  HKEY key = nullptr;
  RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Vantro\\WindowSettings", 0, nullptr, 0, KEY_WRITE, nullptr, &key,
                  nullptr);
  const DWORD on = 1;
  RegSetValueExW(key, L"AlwaysOnTop", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&on), sizeof on);
  RegCloseKey(key);
  Hook("user32.dll", "SetWindowPos", OnSetWindowPos);
  Hook("user32.dll", "GetTopWindow", NothingOnTop);  // so that the overlay has to be raised

  const auto window = BringUp();

  const std::string enabling = "(call) SetWindowPos HWND_TOP SWP_NOSIZE|SWP_NOMOVE|SWP_NOACTIVATE|SWP_SHOWWINDOW";
  const std::string topmost = "(call) SetWindowPos HWND_TOPMOST SWP_NOSIZE|SWP_NOMOVE";
  EXPECT_TRUE(InOrder(log_, {"INFO Window hook installed successfully for window synchronization", enabling, enabling,
                             enabling, "DEBUG === EnableOverlayMouseInput COMPLETED ===",
                             "(call) SetWindowPos HWND_TOP SWP_NOSIZE|SWP_NOMOVE|SWP_NOACTIVATE",
                             "DEBUG Final Z-order: Set Flutter overlay on top after all initialization",
                             "INFO VantroWindow::InitializeFlutter() succeeded",
                             "INFO LoadSettings: Loading application settings from registry",
                             "INFO LoadSettings: Applying always on top setting", topmost, topmost,
                             "INFO VantroWindow::Initialize() completed successfully"}));
  DestroyWindow(window->hwnd_);
}

// The closing.

TEST_F(WindowOrders, ClosingWindowSavesItsSettingsBeforeItsPlayerStops) {
  VantroWindow& window = OpenWindow();
  vlc_.OnCall("libvlc_media_player_stop", [] { Note("libvlc_media_player_stop"); });
  SendMessageA(window.hwnd_, WM_CLOSE, 0, 0);
  EXPECT_TRUE(InOrder(log_, {"INFO WM_DESTROY: Window ", "INFO SaveSettings: VLC Compressor enabled saved: ",
                             "INFO Stopping VLC playback for closing window", "(call) libvlc_media_player_stop"}));
  vlc_.OnCall("libvlc_media_player_stop", {});
  test::DrainQueue();
}

// The end of the object.

VantroWindow* ending = nullptr;

std::string Alive(bool alive) { return alive ? " with" : " without"; }

BOOL WINAPI OnUnhook(HHOOK hook) {
  Note("UnhookWindowsHookEx" + Alive(ending->methodChannelHandler_ != nullptr) + " handler" +
       Alive(Inside(*ending).reservedTimerId_ != 0) + " reserved timer");
  return CALL_SYSTEM("user32.dll", UnhookWindowsHookEx, hook);
}
BOOL WINAPI OnKillTimer(HWND window, UINT_PTR id) {
  Note("KillTimer " + std::to_string(id) + (window == ending->hwnd_ ? " of the main window" : ""));
  return CALL_SYSTEM("user32.dll", KillTimer, window, id);
}
void OnDestroyView(FlutterDesktopViewControllerRef controller) {
  Note("FlutterDesktopViewControllerDestroy" + Alive(ending->methodChannelHandler_ != nullptr) + " handler");
  CallSystem("flutter_windows.dll", "FlutterDesktopViewControllerDestroy", FlutterDesktopViewControllerDestroy,
             controller);
}
BOOL WINAPI OnDestroyWindow(HWND window) {
  if (window == Inside(*ending).flutterHostWindow_) {
    Note("DestroyWindow of the overlay" + Alive(ending->vlcPlayer_ != nullptr) + " player");
  }
  return CALL_SYSTEM("user32.dll", DestroyWindow, window);
}
BOOL WINAPI OnUnregisterClass(const wchar_t* name, HINSTANCE instance) {
  const std::wstring wide = name;
  Note("UnregisterClassW " + std::string(wide.begin(), wide.end()));
  return CALL_SYSTEM("user32.dll", UnregisterClassW, name, instance);
}
BOOL WINAPI OnDeleteObject(HGDIOBJ object) {
  LOGBRUSH brush{};
  if (GetObjectType(object) == OBJ_BRUSH && GetObjectA(object, sizeof brush, &brush)) {
    Note("DeleteObject of the brush " + std::to_string(brush.lbColor));
  }
  return CALL_SYSTEM("gdi32.dll", DeleteObject, object);
}
void WINAPI OnGdiplusShutdown(ULONG_PTR token) {
  Note("GdiplusShutdown" + Alive(Inside(*ending).vodThumbnailPlugin_ != nullptr) + " thumbnails" +
       Alive(VantroWindow::instance_ == ending) + " the newest window");
  CallSystem("gdiplus.dll", "GdiplusShutdown", Gdiplus::GdiplusShutdown, token);
}

TEST_F(WindowOrders, EndReleasesOverlayThenClassThenBrushesThenGdiplus) {
  OpenWindow();  // another window, so that the process is not asked to end
  Hook("flutter_windows.dll", "FlutterDesktopViewControllerDestroy", OnDestroyView);
  auto window = BringUp();
  ending = window.get();
  const HWND native = window->hwnd_;
  vlc_.OnCall("libvlc_media_player_release", [] {
    Note("libvlc_media_player_release" + Alive(ending->flutterEngine_ != nullptr) + " engine" +
         Alive(Inside(*ending).vodThumbnailPlugin_ != nullptr) + " thumbnails");
  });
  Hook("user32.dll", "KillTimer", OnKillTimer);
  Hook("user32.dll", "UnhookWindowsHookEx", OnUnhook);
  Hook("user32.dll", "DestroyWindow", OnDestroyWindow);
  Hook("user32.dll", "UnregisterClassW", OnUnregisterClass);
  Hook("gdi32.dll", "DeleteObject", OnDeleteObject);
  Hook("gdiplus.dll", "GdiplusShutdown", OnGdiplusShutdown);

  window.reset();

  hooks_.clear();
  vlc_.OnCall("libvlc_media_player_release", {});
  EXPECT_TRUE(InOrder(
      log_, {"(call) UnhookWindowsHookEx with handler", "(call) FlutterDesktopViewControllerDestroy without handler",
             "(call) libvlc_media_player_release without engine with thumbnails",
             "(call) DestroyWindow of the overlay without player", "(call) UnregisterClassW VantroWindowClass",
             "(call) DeleteObject of the brush 0", "(call) DeleteObject of the brush 6243910",
             "(call) GdiplusShutdown with thumbnails with the newest window"}));
  EXPECT_EQ(log_.CountContaining("(call) DeleteObject of the brush"), 2);
  EXPECT_EQ(log_.CountContaining("(call) KillTimer"), 0) << "no timer runs";
  EXPECT_EQ(VantroWindow::instance_, nullptr);
  DestroyWindow(native);
}

TEST_F(WindowOrders, EndKillsTheReservedTimerThenTheSearchTimerThenUnhooks) {
  OpenWindow();  // another window, so that the process is not asked to end
  auto window = BringUp();
  ending = window.get();
  const HWND native = window->hwnd_;
  Inside(*window).reservedTimerId_ = 77;
  Inside(*window).searchDebounceTimer_ = 1001;
  Hook("user32.dll", "KillTimer", OnKillTimer);
  Hook("user32.dll", "UnhookWindowsHookEx", OnUnhook);

  window.reset();

  hooks_.clear();
  EXPECT_TRUE(InOrder(log_, {"(call) KillTimer 77 of the main window", "(call) KillTimer 1001 of the main window",
                             "(call) UnhookWindowsHookEx with handler without reserved timer"}));
  DestroyWindow(native);
}

void WINAPI OnPostQuit(int exitCode) { Note("PostQuitMessage " + std::to_string(exitCode)); }

TEST_F(WindowOrders, EndOfTheLastWindowIsLoggedBeforeItEndsTheLoopWithoutAnError) {
  auto window = BringUp();
  Hook("user32.dll", "PostQuitMessage", OnPostQuit);
  Destroy(std::move(window));
  EXPECT_TRUE(InOrder(
      log_, {"INFO ~VantroWindow: This was the last window - forcing application exit", "(call) PostQuitMessage 0"}));
}

}  // namespace
}  // namespace vantro
