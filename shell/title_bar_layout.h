// The title bar's controls as data: how each is created, where each stands, and which come and go in fullscreen.
#pragma once

#include <windows.h>

#include "shell/shell_ids.h"
#include "shell/title_bar.h"
#include "shell/volume_geometry.h"

namespace vantro {

constexpr DWORD kIconStaticStyle = WS_CHILD | WS_VISIBLE | SS_ICON | SS_CENTERIMAGE;
constexpr DWORD kTitleStaticStyle = WS_CHILD | WS_VISIBLE | SS_CENTERIMAGE;
constexpr DWORD kTitleButtonStyle = WS_CHILD | WS_VISIBLE | BS_OWNERDRAW;
constexpr DWORD kSpeakerStyle = WS_CHILD | WS_VISIBLE | SS_OWNERDRAW;
constexpr DWORD kSliderStyle = kSpeakerStyle | SS_NOTIFY;
constexpr DWORD kSearchBoxStyle = WS_CHILD | WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL;

struct TitleBarControl {
  HWND TitleBarControls::*member;
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

// In the order of creation. The window buttons and what follows them come up at 0, 0; the layout moves them.
inline constexpr TitleBarControl kTitleBarControls[] = {
    {&TitleBarControls::appIconStatic_, L"STATIC", L"", 0, kIconStaticStyle, 0, 8, 7, 16, 16},
    {&TitleBarControls::titleStatic_, L"STATIC", L"Vantro", 0, kTitleStaticStyle, 0, 32, 6, 50, 18},
    {&TitleBarControls::fileButton_, L"BUTTON", L"File", 0, kTitleButtonStyle, kFileButtonId, 90, 5, 35, 20},
    {&TitleBarControls::helpButton_, L"BUTTON", L"Help", 0, kTitleButtonStyle, kHelpButtonId, 135, 5, 35, 20},
    {&TitleBarControls::searchBox_, L"EDIT", L"", WS_EX_CLIENTEDGE, kSearchBoxStyle, kSearchBoxId, 200, 5, 150, 20},
    {&TitleBarControls::closeButton_, L"BUTTON", L"", 0, kTitleButtonStyle, kCloseButtonId, 0, 0, 45, 30},
    {&TitleBarControls::maximizeButton_, L"BUTTON", L"", 0, kTitleButtonStyle, kMaximizeButtonId, 0, 0, 45, 30},
    {&TitleBarControls::minimizeButton_, L"BUTTON", L"", 0, kTitleButtonStyle, kMinimizeButtonId, 0, 0, 45, 30},
    {&TitleBarControls::speakerIcon_, L"STATIC", L"", 0, kSpeakerStyle, kSpeakerIconId, 0, 0, 20, 20},
    {&TitleBarControls::volumeControl_, L"STATIC", L"", 0, kSliderStyle, kVolumeControlId, 0, 0, kVolumeControlWidth,
     kVolumeControlHeight},
};

// A control that keeps its distance from the client area's right edge.
struct RightAlignedControl {
  HWND TitleBarControls::*member;
  int fromRight;  // x is the client width less this
  int y;
  int width;
  int height;
};

// The window buttons stand below the 3 pixels of the top sizing edge.
inline constexpr RightAlignedControl kRightAlignedControls[] = {
    {&TitleBarControls::closeButton_, 45, 3, 45, 27},
    {&TitleBarControls::maximizeButton_, 90, 3, 45, 27},
    {&TitleBarControls::minimizeButton_, 135, 3, 45, 27},
    {&TitleBarControls::searchBox_, 295, 5, 150, 20},
};

// Moved only if both exist.
inline constexpr RightAlignedControl kRightAlignedVolumeControls[] = {
    {&TitleBarControls::speakerIcon_, 410, 5, 20, 20},
    {&TitleBarControls::volumeControl_, 385, 5, 80, 20},
};

// Hidden and shown with the bar in fullscreen, in this order.
inline constexpr HWND TitleBarControls::*kAutoHiddenControls[] = {
    &TitleBarControls::closeButton_,   &TitleBarControls::maximizeButton_, &TitleBarControls::minimizeButton_,
    &TitleBarControls::searchBox_,     &TitleBarControls::fileButton_,     &TitleBarControls::helpButton_,
    &TitleBarControls::volumeControl_, &TitleBarControls::speakerIcon_,    &TitleBarControls::appIconStatic_,
    &TitleBarControls::titleStatic_,
};

}  // namespace vantro
