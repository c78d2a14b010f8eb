#include "shell/menu_tables.h"

namespace vantro {

namespace {

constexpr MenuItem kSeparator{};

constexpr MenuItem kHwAccelMenu[] = {
    {L"&Auto", kHwAccelAutoCommand, {}},
    {L"&None", kHwAccelNoneCommand, {}},
    {L"&DXVA2", kHwAccelDxva2Command, {}},
    {L"D3&D11VA", kHwAccelD3d11vaCommand, {}},
};

constexpr MenuItem kAudioOutputMenu[] = {
    {L"&DirectSound", kAudioDirectSoundCommand, {}},
    {L"&WASAPI", kAudioWasapiCommand, {}},
    {L"&MMDevice", kAudioMmdeviceCommand, {}},
};

constexpr MenuItem kDeinterlaceMenu[] = {
    {L"&Off", kDeinterlaceOffCommand, {}},
    {L"&Linear", kDeinterlaceLinearCommand, {}},
    {L"&Blend", kDeinterlaceBlendCommand, {}},
    {L"&Mean", kDeinterlaceMeanCommand, {}},
};

constexpr MenuItem kVlcSettingsMenu[] = {
    {L"&Hardware Acceleration", 0, kHwAccelMenu},
    {L"&Audio Output", 0, kAudioOutputMenu},
    {L"&Deinterlacing", 0, kDeinterlaceMenu},
    kSeparator,
    {L"&Equalizer", kEqualizerCommand, {}},
    {L"&Compressor", kCompressorCommand, {}},
    kSeparator,
    {L"&Restore Defaults", kRestoreDefaultsCommand, {}},
};

constexpr MenuItem kFileMenu[] = {
    {L"&New Window", kNewWindowCommand, {}},
    kSeparator,
    {L"&Settings...", kSettingsCommand, {}},
    {L"&VLC Settings", 0, kVlcSettingsMenu},
    kSeparator,
    {L"Always on &Top", kAlwaysOnTopCommand, {}},
    {L"Always on Top - &This Window", kAlwaysOnTopThisWindowCommand, {}},
    kSeparator,
    {L"&Fullscreen\tF11", kFullscreenCommand, {}},
    kSeparator,
    {L"E&xit", kExitCommand, {}},
};

constexpr MenuItem kHelpMenu[] = {
    {L"&About Vantro...", kAboutCommand, {}},
};

constexpr MediaChoice kMediaChoices[] = {
    {kHwAccelAutoCommand, MediaSetting::kHwAccel, "auto", "HandleMenuCommand: VLC Hardware Acceleration - Auto"},
    {kHwAccelNoneCommand, MediaSetting::kHwAccel, "none", "HandleMenuCommand: VLC Hardware Acceleration - None"},
    {kHwAccelDxva2Command, MediaSetting::kHwAccel, "dxva2", "HandleMenuCommand: VLC Hardware Acceleration - DXVA2"},
    {kHwAccelD3d11vaCommand, MediaSetting::kHwAccel, "d3d11va",
     "HandleMenuCommand: VLC Hardware Acceleration - D3D11VA"},
    {kAudioDirectSoundCommand, MediaSetting::kAudioOutput, "directsound",
     "HandleMenuCommand: VLC Audio Output - DirectSound"},
    {kAudioWasapiCommand, MediaSetting::kAudioOutput, "wasapi", "HandleMenuCommand: VLC Audio Output - WASAPI"},
    {kAudioMmdeviceCommand, MediaSetting::kAudioOutput, "mmdevice", "HandleMenuCommand: VLC Audio Output - MMDevice"},
    {kDeinterlaceOffCommand, MediaSetting::kDeinterlace, "off", "HandleMenuCommand: VLC Deinterlacing - Off"},
    {kDeinterlaceLinearCommand, MediaSetting::kDeinterlace, "linear", "HandleMenuCommand: VLC Deinterlacing - Linear"},
    {kDeinterlaceBlendCommand, MediaSetting::kDeinterlace, "blend", "HandleMenuCommand: VLC Deinterlacing - Blend"},
    {kDeinterlaceMeanCommand, MediaSetting::kDeinterlace, "mean", "HandleMenuCommand: VLC Deinterlacing - Mean"},
};

const std::string& ValueOf(MediaSetting setting, const MenuState& state) {
  switch (setting) {
    case MediaSetting::kHwAccel:
      return state.hwAccel;
    case MediaSetting::kAudioOutput:
      return state.audioOutput;
    case MediaSetting::kDeinterlace:
      break;
  }
  return state.deinterlace;
}

bool IsMenuItemChecked(WORD id, const MenuState& state) {
  switch (id) {
    case kAlwaysOnTopCommand:
      return state.alwaysOnTop;
    case kAlwaysOnTopThisWindowCommand:
      return state.alwaysOnTopThisWindow;
    case kFullscreenCommand:
      return state.isFullscreen;
    case kEqualizerCommand:
      return state.equalizerEnabled;
    case kCompressorCommand:
      return state.compressorEnabled;
    default:
      break;
  }
  for (const MediaChoice& choice : kMediaChoices) {
    if (choice.id == id) return ValueOf(choice.setting, state) == choice.value;
  }
  return false;
}

}  // namespace

std::span<const MenuItem> FileMenuItems() { return kFileMenu; }

std::span<const MenuItem> HelpMenuItems() { return kHelpMenu; }

std::span<const MediaChoice> MediaChoices() { return kMediaChoices; }

bool IsMenuItemShown(WORD id, const MenuState& state) {
  return id != kAlwaysOnTopThisWindowCommand || state.activeWindows > 1;
}

UINT MenuItemFlags(WORD id, const MenuState& state) {
  // While every window's setting says topmost, the choice for this one has nothing to change.
  const bool grayed = id == kAlwaysOnTopThisWindowCommand && state.alwaysOnTop;
  return (IsMenuItemChecked(id, state) ? MF_CHECKED : 0u) | (grayed ? MF_GRAYED : 0u);
}

}  // namespace vantro
