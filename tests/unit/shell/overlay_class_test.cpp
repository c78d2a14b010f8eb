// The overlay's class, and the hook after its own sync has changed the newest window.
#include "tests/support/import_hook.h"
#include "tests/unit/shell/window_fixture.h"

namespace vantro {
namespace {

using test::ImportHook;
using test::Inside;

class OverlayClass : public test::WindowTest {};

TEST_F(OverlayClass, IsBlackReceivesDoubleClicksAndHasNoIconsAndMenu) {
  OpenWindow();
  WNDCLASSEXW registered{};
  registered.cbSize = sizeof registered;
  ASSERT_TRUE(GetClassInfoExW(GetModuleHandleW(nullptr), L"VantroFlutterOverlay", &registered));
  EXPECT_EQ(registered.style, UINT{CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS});
  EXPECT_EQ(registered.hbrBackground, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  EXPECT_EQ(registered.hCursor, LoadCursor(nullptr, IDC_ARROW));
  EXPECT_EQ(registered.hIcon, nullptr);
  EXPECT_EQ(registered.hIconSm, nullptr);
  EXPECT_EQ(registered.lpszMenuName, nullptr);
  EXPECT_EQ(registered.cbClsExtra, 0);
  EXPECT_EQ(registered.cbWndExtra, 0);
}

class HookChain : public test::WindowTest {
 protected:
  // Returns the hook that the procedure passes to CallNextHookEx for a move of the newest window.
  static HHOOK HookPassedOnFor(const VantroWindow& newest) {
    CWPSTRUCT sent{0, 0, WM_MOVE, newest.hwnd_};
    const ImportHook place("user32.dll", "SetWindowPos", ChangeTheNewest);
    const ImportHook next("user32.dll", "CallNextHookEx", RecordNext);
    handedOn_ = reinterpret_cast<HHOOK>(-1);
    FlutterOverlay::WindowSyncHookProc(0, 0, reinterpret_cast<LPARAM>(&sent));
    return handedOn_;
  }
  // Replaces the overlay's move, and makes another window the newest one.
  static BOOL WINAPI ChangeTheNewest(HWND, HWND, int, int, int, int, UINT) {
    VantroWindow::instance_ = next_;
    return TRUE;
  }
  static LRESULT WINAPI RecordNext(HHOOK hook, int, WPARAM, LPARAM) {
    handedOn_ = hook;
    return 0;
  }

  static inline VantroWindow* next_ = nullptr;
  static inline HHOOK handedOn_ = nullptr;
};

TEST_F(HookChain, PassesOnWithTheNewestWindowsHookAfterTheSync) {
  VantroWindow& other = OpenWindow();
  VantroWindow& newest = OpenWindow();
  next_ = &other;
  EXPECT_EQ(HookPassedOnFor(newest), Inside(other).windowHook_);
  VantroWindow::instance_ = &newest;
}

TEST_F(HookChain, PassesOnWithNoHookWhenTheSyncEndedTheNewestWindow) {
  VantroWindow& newest = OpenWindow();
  next_ = nullptr;
  EXPECT_EQ(HookPassedOnFor(newest), nullptr);
  VantroWindow::instance_ = &newest;
}

}  // namespace
}  // namespace vantro
