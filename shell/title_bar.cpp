// The self-drawn title bar: takes the system's bar away, makes the controls, keeps them in place, hands their drawing
// out.
#include <windows.h>
// After windows.h, whose types they use.
#include <commctrl.h>
#include <dwmapi.h>

#include "common/log.h"
#include "shell/button_painter.h"
#include "shell/title_bar_layout.h"
#include "shell/vantro_window.h"

namespace vantro {

namespace {

// Newer than some of the SDKs that this builds with.
constexpr DWORD kDwmBorderColorAttribute = 34;
constexpr DWORD kDwmCaptionColorAttribute = 35;

constexpr LONG kStandardTitleBarStyles = WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
constexpr int kAppIconSize = 16;

const char* YesOrNo(bool value) { return value ? "YES" : "NO"; }

HWND CreateTitleBarControl(const TitleBarControl& control, HWND parent, HINSTANCE instance) {
  // A child window's id travels in the place of a menu handle.
  const HMENU id = reinterpret_cast<HMENU>(UINT_PTR{control.id});
  return CreateWindowExW(control.exStyle, control.className, control.text, control.style, control.x, control.y,
                         control.width, control.height, parent, id, instance, nullptr);
}

// The static does not own its icon: it lives until the process ends. Without the resource the static stays empty.
void SetAppIcon(HWND iconStatic, HINSTANCE instance) {
  const HANDLE icon =
      LoadImageA(instance, MAKEINTRESOURCEA(kAppIconResource), IMAGE_ICON, kAppIconSize, kAppIconSize, LR_DEFAULTCOLOR);
  if (icon) SendMessageA(iconStatic, STM_SETICON, reinterpret_cast<WPARAM>(icon), 0);
}

// Moves the focus into the search box and back, which proves in the log that the box can be typed into. A focus that
// nobody had is not given back.
void TestSearchBoxFocus(HWND searchBox) {
  const HWND oldFocus = GetFocus();
  SetFocus(searchBox);
  const HWND newFocus = GetFocus();
  LOG_INFO("Focus test - Old: %p, New: %p, Expected: %p", static_cast<void*>(oldFocus), static_cast<void*>(newFocus),
           static_cast<void*>(searchBox));
  LOG_INFO("Search box can accept focus: %s", YesOrNo(newFocus == searchBox));
  LOG_INFO("Search box styles - Style: 0x%08X, ExStyle: 0x%08X",
           static_cast<unsigned>(GetWindowLongA(searchBox, GWL_STYLE)),
           static_cast<unsigned>(GetWindowLongA(searchBox, GWL_EXSTYLE)));
  if (oldFocus && IsWindow(oldFocus)) SetFocus(oldFocus);
}

void PrepareSearchBox(HWND searchBox) {
  LOG_INFO("Search box created: %p", static_cast<void*>(searchBox));
  const LRESULT hintSet = SendMessageW(searchBox, EM_SETCUEBANNER, FALSE, reinterpret_cast<LPARAM>(L"Search"));
  LOG_INFO("Search box hint text set, result: %d", static_cast<int>(hintSet));
  EnableWindow(searchBox, TRUE);
  LOG_INFO("Search box enabled: %s", YesOrNo(IsWindowEnabled(searchBox)));
  LOG_INFO("Search box visible: %s", YesOrNo(IsWindowVisible(searchBox)));
  TestSearchBoxFocus(searchBox);
}

void PlaceRightAligned(HWND window, const RightAlignedControl& place, int clientWidth) {
  if (!window) return;
  SetWindowPos(window, nullptr, clientWidth - place.fromRight, place.y, place.width, place.height, SWP_NOZORDER);
}

}  // namespace

void VantroWindow::RemoveStandardTitleBar() {
  LOG_INFO("RemoveStandardTitleBar: Removing Windows title bar");
  const LONG style = GetWindowLongA(hwnd_, GWL_STYLE);
  // The sizing frame stays: it is what keeps the window resizable.
  SetWindowLongA(hwnd_, GWL_STYLE, (style & ~kStandardTitleBarStyles) | WS_THICKFRAME);
  // A system without these attributes keeps its default border.
  DwmSetWindowAttribute(hwnd_, kDwmBorderColorAttribute, &kTitleBarColor, sizeof kTitleBarColor);
  DwmSetWindowAttribute(hwnd_, kDwmCaptionColorAttribute, &kTitleBarColor, sizeof kTitleBarColor);
  SetWindowPos(hwnd_, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_FRAMECHANGED);
  LOG_INFO("Windows title bar removed, custom border color set");
}

void VantroWindow::CreateCustomTitleBar() {
  LOG_INFO("CreateCustomTitleBar: Creating controls in DWM extended area");
  for (const TitleBarControl& control : kTitleBarControls) {
    this->*control.member = CreateTitleBarControl(control, hwnd_, hInstance_);
    if (control.member == &VantroWindow::appIconStatic_) SetAppIcon(appIconStatic_, hInstance_);
  }
  CreateSpeakerIcon();
  CreateVolumeControl();
  if (searchBox_) {
    PrepareSearchBox(searchBox_);
  } else {
    LOG_ERROR("Failed to create search box window!");
  }
  LayoutTitleBarControls();
  LOG_INFO("Custom title bar controls created in DWM extended area");
}

void VantroWindow::LayoutTitleBarControls() {
  RECT client{};
  GetClientRect(hwnd_, &client);
  for (const RightAlignedControl& place : kRightAlignedControls) {
    PlaceRightAligned(this->*place.member, place, client.right);
  }
  if (!speakerIcon_ || !volumeControl_) return;
  for (const RightAlignedControl& place : kRightAlignedVolumeControls) {
    PlaceRightAligned(this->*place.member, place, client.right);
  }
}

LRESULT VantroWindow::OnDrawItem(WPARAM wParam, LPARAM lParam) {
  const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
  if (item.CtlType == ODT_BUTTON) {
    PaintTitleBarButton(item, isFullscreen_, titleBarBrush_);
  } else if (item.CtlType == ODT_STATIC && item.CtlID == kVolumeControlId) {
    DrawVolumeControl(item);
  } else if (item.CtlType == ODT_STATIC && item.CtlID == kSpeakerIconId) {
    DrawSpeakerIcon(item);
  }
  return TRUE;
}

}  // namespace vantro
