// A separate program, because each window class is registered once per process.
#include <string>

#include "tests/support/import_hook.h"
#include "tests/support/line_order.h"
#include "tests/unit/shell/window_fixture.h"

namespace vantro {
namespace {

std::wstring refusedClass;
std::wstring earlierClass;  // registered by other code just before
DWORD refusalError = 0;
WNDCLASSEXW refused{};  // the last one
decltype(&RegisterClassExW) realRegister = nullptr;
ATOM WINAPI RefuseOneClass(const WNDCLASSEXW* windowClass) {
  if (earlierClass == windowClass->lpszClassName) realRegister(windowClass);
  if (refusedClass != windowClass->lpszClassName) return realRegister(windowClass);
  refused = *windowClass;
  SetLastError(refusalError);
  return 0;
}

class ClassRegistration : public test::WindowTest {
 protected:
  ClassRegistration() : hook_("user32.dll", "RegisterClassExW", RefuseOneClass) {
    realRegister = hook_.Original<decltype(&RegisterClassExW)>();
  }
  static std::unique_ptr<VantroWindow> Make() { return std::make_unique<VantroWindow>(GetModuleHandleA(nullptr)); }

  test::ImportHook hook_;
};

TEST_F(ClassRegistration, MainWindowHasDoubleClicksABlackBrushItsIconsAndTheArrow) {
  refusedClass = L"VantroWindowClass";
  const auto window = Make();
  EXPECT_FALSE(window->Initialize());
  EXPECT_EQ(refused.style, UINT{CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS});
  LOGBRUSH brush{};
  ASSERT_TRUE(GetObjectA(refused.hbrBackground, sizeof brush, &brush));
  EXPECT_EQ(brush.lbStyle, static_cast<UINT>(BS_SOLID));
  EXPECT_EQ(brush.lbColor, RGB(0, 0, 0));
  // The test program has no icon resources, so both are the system's.
  EXPECT_EQ(refused.hIcon, LoadIconA(nullptr, IDI_APPLICATION));
  EXPECT_EQ(refused.hIconSm, LoadIconA(nullptr, IDI_APPLICATION));
  EXPECT_EQ(refused.hCursor, LoadCursor(nullptr, IDC_ARROW));
  EXPECT_EQ(refused.hInstance, GetModuleHandleA(nullptr));
  EXPECT_EQ(refused.lpszMenuName, nullptr);
  EXPECT_EQ(refused.cbClsExtra, 0);
  EXPECT_EQ(refused.cbWndExtra, 8);
}

decltype(&LoadIconA) realLoadIcon = nullptr;
HICON WINAPI OnLoadIcon(HINSTANCE instance, const char* name) {
  test::Note(std::string("LoadIconA ") + (instance ? "program " : "system ") +
             std::to_string(reinterpret_cast<ULONG_PTR>(name)));
  return realLoadIcon(instance, name);
}
decltype(&LoadCursorA) realLoadCursor = nullptr;
HCURSOR WINAPI OnLoadCursor(HINSTANCE instance, const char* name) {
  test::Note(std::string("LoadCursorA ") + (instance ? "program " : "system ") +
             std::to_string(reinterpret_cast<ULONG_PTR>(name)));
  return realLoadCursor(instance, name);
}

TEST_F(ClassRegistration, MainWindowLoadsItsIconThenTheArrowThenItsSmallIcon) {
  refusedClass = L"VantroWindowClass";
  const test::ImportHook icons("user32.dll", "LoadIconA", OnLoadIcon);
  const test::ImportHook cursors("user32.dll", "LoadCursorA", OnLoadCursor);
  realLoadIcon = icons.Original<decltype(realLoadIcon)>();
  realLoadCursor = cursors.Original<decltype(realLoadCursor)>();
  const auto window = Make();
  EXPECT_FALSE(window->Initialize());
  EXPECT_TRUE(test::InOrder(
      log_, {"(call) LoadIconA program 101", "INFO Using default icon instead", "(call) LoadIconA system 32512",
             "(call) LoadCursorA system 32512", "(call) LoadIconA program 102",
             "WARNING Warning: LoadIcon for small icon failed with error: ", "INFO Using default icon instead",
             "(call) LoadIconA system 32512"}));
}

TEST_F(ClassRegistration, RefusedClassFailsTheStartAndTheNextWindowTriesAgain) {
  refusedClass = L"VantroWindowClass";
  refusalError = ERROR_NOT_ENOUGH_MEMORY;
  auto first = Make();
  EXPECT_FALSE(first->Initialize());
  EXPECT_TRUE(log_.Has("ERROR RegisterClassExW failed with error: 8"));
  EXPECT_TRUE(log_.Has("ERROR VantroWindow::InitializeWindow() failed"));
  EXPECT_EQ(log_.CountContaining("Creating window with class name"), 0);
  first.reset();

  earlierClass = L"VantroWindowClass";
  refusedClass = L"VantroFlutterOverlay";
  refusalError = ERROR_CLASS_ALREADY_EXISTS;
  auto second = Make();
  EXPECT_FALSE(second->Initialize());
  EXPECT_TRUE(log_.Has("INFO Window class already exists - continuing"));
  EXPECT_EQ(log_.Count("INFO Registering window class for the first time"), 2);
  EXPECT_TRUE(log_.Has("ERROR CreateFlutterOverlay: Failed to register overlay class: 1410"));
  EXPECT_EQ(refused.hInstance, GetModuleHandleA(nullptr));
  EXPECT_EQ(log_.CountContaining("CreateFlutterOverlay: Failed to create overlay window"), 0);
  EXPECT_TRUE(log_.Has("ERROR VantroWindow::InitializeFlutter() failed"));
  Destroy(std::move(second));

  refusedClass.clear();
  OpenWindow();
  EXPECT_TRUE(log_.Has("INFO CreateFlutterOverlay: Overlay window class registered"));
  EXPECT_TRUE(log_.Has("INFO Window class already registered - skipping registration"));
}

}  // namespace
}  // namespace vantro
