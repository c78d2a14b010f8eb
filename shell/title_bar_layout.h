// The title bar's controls as data: how each is created, which ones the layout moves, and which ones are hidden and
// shown in fullscreen.
#pragma once

#include <windows.h>

#include "shell/shell_ids.h"
#include "shell/title_bar.h"
#include "shell/title_bar_places.h"

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
  Rect createdAt;
};

// The window buttons are created with the height of the bar.
constexpr Rect kNewWindowButton{0, 0, kWindowButtonSize.width, TITLE_BAR_HEIGHT};

// In the order of creation. The layout moves the right-aligned controls before they are visible.
inline constexpr TitleBarControl kTitleBarControls[] = {
    {&TitleBarControls::appIconStatic_, L"STATIC", L"", 0, kIconStaticStyle, 0, kAppIconPlace},
    {&TitleBarControls::titleStatic_, L"STATIC", L"Vantro", 0, kTitleStaticStyle, 0, kTitlePlace},
    {&TitleBarControls::fileButton_, L"BUTTON", L"File", 0, kTitleButtonStyle, kFileButtonId, kFileButtonPlace},
    {&TitleBarControls::helpButton_, L"BUTTON", L"Help", 0, kTitleButtonStyle, kHelpButtonId, kHelpButtonPlace},
    {&TitleBarControls::searchBox_, L"EDIT", L"", WS_EX_CLIENTEDGE, kSearchBoxStyle, kSearchBoxId,
     RectAt(200, 5, kSearchBoxSize)},
    {&TitleBarControls::closeButton_, L"BUTTON", L"", 0, kTitleButtonStyle, kCloseButtonId, kNewWindowButton},
    {&TitleBarControls::maximizeButton_, L"BUTTON", L"", 0, kTitleButtonStyle, kMaximizeButtonId, kNewWindowButton},
    {&TitleBarControls::minimizeButton_, L"BUTTON", L"", 0, kTitleButtonStyle, kMinimizeButtonId, kNewWindowButton},
    {&TitleBarControls::speakerIcon_, L"STATIC", L"", 0, kSpeakerStyle, kSpeakerIconId, RectAt(0, 0, kSpeakerIconSize)},
    {&TitleBarControls::volumeControl_, L"STATIC", L"", 0, kSliderStyle, kVolumeControlId,
     RectAt(0, 0, kVolumeControlSize)},
};

struct RightAlignedControl {
  HWND TitleBarControls::*member;
  RightAlignedPlace place;
};

inline constexpr RightAlignedControl kRightAlignedControls[] = {
    {&TitleBarControls::closeButton_, kCloseButtonPlace},
    {&TitleBarControls::maximizeButton_, kMaximizeButtonPlace},
    {&TitleBarControls::minimizeButton_, kMinimizeButtonPlace},
    {&TitleBarControls::searchBox_, kSearchBoxPlace},
};

// Moved only if both exist.
inline constexpr RightAlignedControl kRightAlignedVolumeControls[] = {
    {&TitleBarControls::speakerIcon_, kSpeakerIconPlace},
    {&TitleBarControls::volumeControl_, kVolumeControlPlace},
};

// Hidden and shown with the bar in fullscreen, in this order.
inline constexpr HWND TitleBarControls::*kAutoHiddenControls[] = {
    &TitleBarControls::closeButton_,   &TitleBarControls::maximizeButton_, &TitleBarControls::minimizeButton_,
    &TitleBarControls::searchBox_,     &TitleBarControls::fileButton_,     &TitleBarControls::helpButton_,
    &TitleBarControls::volumeControl_, &TitleBarControls::speakerIcon_,    &TitleBarControls::appIconStatic_,
    &TitleBarControls::titleStatic_,
};

}  // namespace vantro
