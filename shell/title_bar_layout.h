// The title bar's controls as data: how each is created, where each stands, and which come and go in fullscreen.
#pragma once

#include <windows.h>

#include "shell/shell_ids.h"
#include "shell/vantro_window.h"

namespace vantro {

constexpr DWORD kIconStaticStyle = WS_CHILD | WS_VISIBLE | SS_ICON | SS_CENTERIMAGE;
constexpr DWORD kTitleStaticStyle = WS_CHILD | WS_VISIBLE | SS_CENTERIMAGE;
constexpr DWORD kTitleButtonStyle = WS_CHILD | WS_VISIBLE | BS_OWNERDRAW;
constexpr DWORD kSearchBoxStyle = WS_CHILD | WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL;

struct TitleBarControl {
  HWND VantroWindow::*member;
  const wchar_t* className;
  const wchar_t* text;
  DWORD exStyle;
  DWORD style;
  WORD id;  // 0: none
  int x;
  int y;
  int width;
  int height;
};

// In the order of creation. The volume control's two statics follow them.
inline constexpr TitleBarControl kTitleBarControls[] = {
    {&VantroWindow::appIconStatic_, L"STATIC", L"", 0, kIconStaticStyle, 0, 8, 7, 16, 16},
    {&VantroWindow::titleStatic_, L"STATIC", L"Vantro", 0, kTitleStaticStyle, 0, 32, 6, 50, 18},
    {&VantroWindow::fileButton_, L"BUTTON", L"File", 0, kTitleButtonStyle, kFileButtonId, 90, 5, 35, 20},
    {&VantroWindow::helpButton_, L"BUTTON", L"Help", 0, kTitleButtonStyle, kHelpButtonId, 135, 5, 35, 20},
    {&VantroWindow::searchBox_, L"EDIT", L"", WS_EX_CLIENTEDGE, kSearchBoxStyle, kSearchBoxId, 200, 5, 150, 20},
    {&VantroWindow::closeButton_, L"BUTTON", L"", 0, kTitleButtonStyle, kCloseButtonId, 0, 0, 45, 30},
    {&VantroWindow::maximizeButton_, L"BUTTON", L"", 0, kTitleButtonStyle, kMaximizeButtonId, 0, 0, 45, 30},
    {&VantroWindow::minimizeButton_, L"BUTTON", L"", 0, kTitleButtonStyle, kMinimizeButtonId, 0, 0, 45, 30},
};

// A control that keeps its distance from the client area's right edge.
struct RightAlignedControl {
  HWND VantroWindow::*member;
  int fromRight;  // x is the client width less this
  int y;
  int width;
  int height;
};

// The window buttons stand below the 3 pixels of the top sizing edge.
inline constexpr RightAlignedControl kRightAlignedControls[] = {
    {&VantroWindow::closeButton_, 45, 3, 45, 27},
    {&VantroWindow::maximizeButton_, 90, 3, 45, 27},
    {&VantroWindow::minimizeButton_, 135, 3, 45, 27},
    {&VantroWindow::searchBox_, 295, 5, 150, 20},
};

// Moved only if both exist.
inline constexpr RightAlignedControl kRightAlignedVolumeControls[] = {
    {&VantroWindow::speakerIcon_, 410, 5, 20, 20},
    {&VantroWindow::volumeControl_, 385, 5, 80, 20},
};

// Hidden and shown with the bar in fullscreen, in this order.
inline constexpr HWND VantroWindow::*kAutoHiddenControls[] = {
    &VantroWindow::closeButton_,   &VantroWindow::maximizeButton_, &VantroWindow::minimizeButton_,
    &VantroWindow::searchBox_,     &VantroWindow::fileButton_,     &VantroWindow::helpButton_,
    &VantroWindow::volumeControl_, &VantroWindow::speakerIcon_,    &VantroWindow::appIconStatic_,
    &VantroWindow::titleStatic_,
};

}  // namespace vantro
