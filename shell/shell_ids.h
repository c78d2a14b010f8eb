// Control and command ids, timer ids and private messages of the shell, each stated once.
#pragma once

#include <windows.h>

namespace vantro {

// Posted by a second launch: open one more window. wParam and lParam are 0.
constexpr UINT WM_VANTRO_NEW_WINDOW = WM_USER + 1;

// Timers, all on the main window and without a timer procedure. The player's own timers have ids made from addresses.
constexpr UINT_PTR kSearchDebounceTimerId = 1001;
constexpr UINT kSearchDebounceMs = 500;
constexpr UINT_PTR kMouseTrackingTimerId = 1002;
constexpr UINT kMouseTrackingMs = 100;
constexpr UINT_PTR kTitleBarAutoHideTimerId = 1003;
constexpr UINT kTitleBarAutoHideMs = 3000;

// Controls of the title bar.
constexpr WORD kSearchBoxId = 104;
constexpr WORD kMinimizeButtonId = 997;
constexpr WORD kMaximizeButtonId = 998;
constexpr WORD kCloseButtonId = 999;
constexpr WORD kVolumeControlId = 1001;
constexpr WORD kSpeakerIconId = 1002;
constexpr WORD kFileButtonId = 40010;
constexpr WORD kHelpButtonId = 40011;

// Icon resources.
constexpr WORD kAppIconResource = 101;
constexpr WORD kSmallIconResource = 102;

}  // namespace vantro
