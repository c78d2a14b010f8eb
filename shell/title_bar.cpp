#include "shell/title_bar.h"

#include <windows.h>
// After windows.h, whose types they use.
#include <commctrl.h>
#include <dwmapi.h>

#include <algorithm>

#include "common/log.h"
#include "common/measures.h"
#include "common/win32_geometry.h"
#include "shell/button_painter.h"
#include "shell/shell_ids.h"
#include "shell/speaker_icon.h"
#include "shell/title_bar_layout.h"

namespace vantro {

namespace {

// These attributes are newer than some of the SDKs that this builds with.
constexpr DWORD kDwmBorderColorAttribute = 34;
constexpr DWORD kDwmCaptionColorAttribute = 35;

constexpr LONG kStandardTitleBarStyles = WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
constexpr int kAppIconSize = 16;

// Two pixels above the client area, so that no light line is left between the edge and the bar.
constexpr LONG kPaintTop = -2;

HWND CreateTitleBarControl(const TitleBarControl& control, HWND parent, HINSTANCE instance) {
  // For a child window the menu argument is the window's id.
  const HMENU id = reinterpret_cast<HMENU>(UINT_PTR{control.id});
  const Rect& place = control.createdAt;
  return CreateWindowExW(control.exStyle, control.className, control.text, control.style, place.left, place.top,
                         place.Width(), place.Height(), parent, id, instance, nullptr);
}

// The static control does not own its icon, which exists until the process ends. Without the resource the control stays
// empty.
void SetAppIcon(HWND iconStatic, HINSTANCE instance) {
  const HANDLE icon =
      LoadImageA(instance, MAKEINTRESOURCEA(kAppIconResource), IMAGE_ICON, kAppIconSize, kAppIconSize, LR_DEFAULTCOLOR);
  if (icon) SendMessageA(iconStatic, STM_SETICON, reinterpret_cast<WPARAM>(icon), 0);
}

// Moves the focus into the search box and back, and logs whether the box can have it. If no window had the focus, it
// stays in the box.
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
  if (IsWindow(oldFocus)) SetFocus(oldFocus);
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

// Logs the creation of the two volume controls. The other controls are not logged here.
void LogCreation(const TitleBarControl& control, HWND window) {
  if (control.id == kSpeakerIconId) {
    if (window) {
      LOG_INFO("Speaker icon created successfully: %p", static_cast<void*>(window));
    } else {
      LOG_ERROR("Failed to create speaker icon");
    }
  } else if (control.id == kVolumeControlId) {
    if (window) {
      LOG_INFO("Volume control created successfully: %p", static_cast<void*>(window));
    } else {
      LOG_ERROR("Failed to create volume control");
    }
  }
}

void PlaceControl(HWND window, const Rect& place) {
  if (!window) return;
  SetWindowPos(window, nullptr, place.left, place.top, place.Width(), place.Height(), SWP_NOZORDER);
}

}  // namespace

TitleBar::TitleBar(const HWND& mainWindow) : hwnd_(mainWindow), titleBarBrush_(CreateSolidBrush(kTitleBarColor)) {}

TitleBar::~TitleBar() { EndDrawing(); }

void TitleBar::EndDrawing() {
  if (titleBarBrush_) DeleteObject(titleBarBrush_);
  titleBarBrush_ = nullptr;
}

void TitleBar::RemoveStandardTitleBar() {
  LOG_INFO("RemoveStandardTitleBar: Removing Windows title bar");
  const LONG style = GetWindowLongA(hwnd_, GWL_STYLE);
  // The sizing frame stays, so that the window is resizable.
  SetWindowLongA(hwnd_, GWL_STYLE, (style & ~kStandardTitleBarStyles) | WS_THICKFRAME);
  // A system without these attributes keeps its default border.
  DwmSetWindowAttribute(hwnd_, kDwmBorderColorAttribute, &kTitleBarColor, sizeof kTitleBarColor);
  DwmSetWindowAttribute(hwnd_, kDwmCaptionColorAttribute, &kTitleBarColor, sizeof kTitleBarColor);
  SetWindowPos(hwnd_, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_FRAMECHANGED);
  LOG_INFO("Windows title bar removed, custom border color set");
}

void TitleBar::CreateCustomTitleBar(HINSTANCE instance) {
  LOG_INFO("CreateCustomTitleBar: Creating controls in DWM extended area");
  for (const TitleBarControl& control : kTitleBarControls) {
    HWND& window = controls_.*control.member;
    window = CreateTitleBarControl(control, hwnd_, instance);
    if (control.member == &TitleBarControls::appIconStatic_) SetAppIcon(window, instance);
    LogCreation(control, window);
  }
  if (controls_.searchBox_) {
    PrepareSearchBox(controls_.searchBox_);
  } else {
    LOG_ERROR("Failed to create search box window!");
  }
  LayoutTitleBarControls();
  LOG_INFO("Custom title bar controls created in DWM extended area");
}

void TitleBar::LayoutTitleBarControls() {
  const int clientWidth = ClientSize(hwnd_).width;
  for (const auto& [member, place] : kRightAlignedControls) PlaceControl(controls_.*member, place.In(clientWidth));
  if (!controls_.speakerIcon_ || !controls_.volumeControl_) return;
  for (const auto& [member, place] : kRightAlignedVolumeControls) {
    PlaceControl(controls_.*member, place.In(clientWidth));
  }
}

void TitleBar::ShowControls(int command) {
  for (const auto member : kAutoHiddenControls) {
    if (const HWND control = controls_.*member) ShowWindow(control, command);
  }
}

void TitleBar::RedrawMaximizeButton() {
  // A null handle would invalidate every window of the desktop.
  if (controls_.maximizeButton_) InvalidateRect(controls_.maximizeButton_, nullptr, TRUE);
}

void TitleBar::Paint(bool isFullscreen, bool isVisible) {
  PAINTSTRUCT paint;
  const HDC dc = BeginPaint(hwnd_, &paint);
  if (isFullscreen && !isVisible) {
    LOG_DEBUG("WM_PAINT: Skipping title bar paint - isFullscreen=%d, isTitleBarVisible=%d", isFullscreen, isVisible);
  } else {
    RECT bar{};
    GetClientRect(hwnd_, &bar);
    bar.top = kPaintTop;
    bar.bottom = TITLE_BAR_HEIGHT;
    LOG_DEBUG("WM_PAINT: Painting title bar - isFullscreen=%d, isTitleBarVisible=%d, rect=%ld,%ld to %ld,%ld",
              isFullscreen, isVisible, bar.left, bar.top, bar.right, bar.bottom);
    FillRect(dc, &bar, titleBarBrush_);
  }
  EndPaint(hwnd_, &paint);
}

void TitleBar::PaintFrameEdge() {
  const HDC dc = GetWindowDC(hwnd_);
  if (!dc) return;
  RECT strip{};
  GetWindowRect(hwnd_, &strip);
  OffsetRect(&strip, -strip.left, -strip.top);
  strip.bottom = kTopEdge;
  FillRect(dc, &strip, titleBarBrush_);
  ReleaseDC(hwnd_, dc);
}

bool TitleBar::PaintNow() {
  const HDC dc = GetDC(hwnd_);
  if (!dc) return false;
  RECT strip{};  // begins at 0,0
  GetClientRect(hwnd_, &strip);
  strip.bottom = TITLE_BAR_HEIGHT;
  FillRect(dc, &strip, titleBarBrush_);
  ReleaseDC(hwnd_, dc);
  return true;
}

void TitleBar::Repaint(bool erase, int width) {
  RECT strip{};
  if (GetClientRect(hwnd_, &strip)) {
    strip.bottom = std::min(strip.bottom, LONG{TITLE_BAR_HEIGHT});
  } else {
    strip = {0, 0, width, TITLE_BAR_HEIGHT};
  }
  InvalidateRect(hwnd_, &strip, erase);
  UpdateWindow(hwnd_);
}

void TitleBar::DrawItem(const DRAWITEMSTRUCT& item, bool isFullscreen) const {
  if (item.CtlType == ODT_BUTTON) {
    PaintTitleBarButton(item, isFullscreen, titleBarBrush_);
  } else if (item.CtlType == ODT_STATIC && item.CtlID == kSpeakerIconId) {
    DrawSpeakerIcon(item, titleBarBrush_);
  }
}

HBRUSH TitleBar::ColorControl(HDC dc) const {
  SetTextColor(dc, RGB(255, 255, 255));
  SetBkColor(dc, kTitleBarColor);
  return titleBarBrush_;
}

}  // namespace vantro
