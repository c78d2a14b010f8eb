// Control and command ids, timer ids and private messages of the shell. Each is defined only here.
#pragma once

#include <windows.h>

namespace vantro {

// Posted by a second launch to open one more window. wParam and lParam are 0.
constexpr UINT WM_VANTRO_NEW_WINDOW = WM_USER + 1;

// Timers, all on the main window and without a timer procedure. The ids of the player's timers are derived from
// addresses.
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

// Commands of the menus. The buttons' and the volume control's ids above are commands as well.
constexpr WORD kNewWindowCommand = 40001;
constexpr WORD kSettingsCommand = 40002;
constexpr WORD kAlwaysOnTopCommand = 40003;
constexpr WORD kExitCommand = 40004;
constexpr WORD kAboutCommand = 40005;
constexpr WORD kAlwaysOnTopThisWindowCommand = 40006;
constexpr WORD kFullscreenCommand = 40008;
constexpr WORD kHwAccelAutoCommand = 40020;
constexpr WORD kHwAccelNoneCommand = 40021;
constexpr WORD kHwAccelDxva2Command = 40022;
constexpr WORD kHwAccelD3d11vaCommand = 40023;
constexpr WORD kAudioDirectSoundCommand = 40030;
constexpr WORD kAudioWasapiCommand = 40031;
constexpr WORD kAudioMmdeviceCommand = 40032;
constexpr WORD kDeinterlaceOffCommand = 40040;
constexpr WORD kDeinterlaceLinearCommand = 40041;
constexpr WORD kDeinterlaceBlendCommand = 40042;
constexpr WORD kDeinterlaceMeanCommand = 40043;
constexpr WORD kEqualizerCommand = 40050;
constexpr WORD kCompressorCommand = 40051;
constexpr WORD kRestoreDefaultsCommand = 40052;

// Icon resources.
constexpr WORD kAppIconResource = 101;
constexpr WORD kSmallIconResource = 102;

}  // namespace vantro
