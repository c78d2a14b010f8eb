#include "shell/settings.h"

#include <windows.h>

#include <optional>
#include <string>

#include "common/log.h"
#include "common/text.h"
#include "shell/scoped_handles.h"
#include "shell/shell_ids.h"

namespace vantro {

namespace {

constexpr wchar_t kSettingsKey[] = L"Software\\Vantro\\WindowSettings";
constexpr DWORD kReadBufferBytes = 512;  // a longer text counts as absent

constexpr SettingChoice kHwAccelChoices[] = {
    {kHwAccelAutoCommand, L"&Auto", "auto", "HandleMenuCommand: VLC Hardware Acceleration - Auto"},
    {kHwAccelNoneCommand, L"&None", "none", "HandleMenuCommand: VLC Hardware Acceleration - None"},
    {kHwAccelDxva2Command, L"&DXVA2", "dxva2", "HandleMenuCommand: VLC Hardware Acceleration - DXVA2"},
    {kHwAccelD3d11vaCommand, L"D3&D11VA", "d3d11va", "HandleMenuCommand: VLC Hardware Acceleration - D3D11VA"},
};
constexpr SettingChoice kAudioOutputChoices[] = {
    {kAudioDirectSoundCommand, L"&DirectSound", "directsound", "HandleMenuCommand: VLC Audio Output - DirectSound"},
    {kAudioWasapiCommand, L"&WASAPI", "wasapi", "HandleMenuCommand: VLC Audio Output - WASAPI"},
    {kAudioMmdeviceCommand, L"&MMDevice", "mmdevice", "HandleMenuCommand: VLC Audio Output - MMDevice"},
};
constexpr SettingChoice kDeinterlaceChoices[] = {
    {kDeinterlaceOffCommand, L"&Off", "off", "HandleMenuCommand: VLC Deinterlacing - Off"},
    {kDeinterlaceLinearCommand, L"&Linear", "linear", "HandleMenuCommand: VLC Deinterlacing - Linear"},
    {kDeinterlaceBlendCommand, L"&Blend", "blend", "HandleMenuCommand: VLC Deinterlacing - Blend"},
    {kDeinterlaceMeanCommand, L"&Mean", "mean", "HandleMenuCommand: VLC Deinterlacing - Mean"},
};

// The first setting is the window's; the media engine's settings follow. Log lines are whole literals, so that they can
// be searched for.
constexpr Setting kSettings[] = {
    {L"AlwaysOnTop",
     &WindowSettings::alwaysOnTop_,
     nullptr,
     [](const char* value) { LOG_INFO("LoadSettings: Always on top setting loaded: %s", value); },
     [](const char* value) { LOG_INFO("SaveSettings: Always on top setting saved: %s", value); },
     nullptr,
     nullptr,
     kAlwaysOnTopCommand,
     {}},
    {L"VLCHwAccel", nullptr, &WindowSettings::vlcHwAccel_,
     [](const char* value) { LOG_INFO("LoadSettings: VLC Hardware Acceleration loaded: %s", value); },
     [](const char* value) { LOG_INFO("SaveSettings: VLC Hardware Acceleration saved: %s", value); }, nullptr,
     L"&Hardware Acceleration", 0, kHwAccelChoices},
    {L"VLCAudioOutput", nullptr, &WindowSettings::vlcAudioOutput_,
     [](const char* value) { LOG_INFO("LoadSettings: VLC Audio Output loaded: %s", value); },
     [](const char* value) { LOG_INFO("SaveSettings: VLC Audio Output saved: %s", value); }, nullptr, L"&Audio Output",
     0, kAudioOutputChoices},
    {L"VLCDeinterlace", nullptr, &WindowSettings::vlcDeinterlace_,
     [](const char* value) { LOG_INFO("LoadSettings: VLC Deinterlacing loaded: %s", value); },
     [](const char* value) { LOG_INFO("SaveSettings: VLC Deinterlacing saved: %s", value); }, nullptr,
     L"&Deinterlacing", 0, kDeinterlaceChoices},
    {L"VLCEqualizerEnabled",
     &WindowSettings::vlcEqualizerEnabled_,
     nullptr,
     [](const char* value) { LOG_INFO("LoadSettings: VLC Equalizer enabled loaded: %s", value); },
     [](const char* value) { LOG_INFO("SaveSettings: VLC Equalizer enabled saved: %s", value); },
     "HandleMenuCommand: VLC Equalizer toggled",
     L"&Equalizer",
     kEqualizerCommand,
     {}},
    {L"VLCCompressorEnabled",
     &WindowSettings::vlcCompressorEnabled_,
     nullptr,
     [](const char* value) { LOG_INFO("LoadSettings: VLC Compressor enabled loaded: %s", value); },
     [](const char* value) { LOG_INFO("SaveSettings: VLC Compressor enabled saved: %s", value); },
     "HandleMenuCommand: VLC Compressor toggled",
     L"&Compressor",
     kCompressorCommand,
     {}},
};

bool IsAlwaysOnTop(const Setting& setting) { return setting.flag == &WindowSettings::alwaysOnTop_; }

const char* EnabledOrDisabled(bool value) { return value ? "enabled" : "disabled"; }

// Does not check the type: any value of at most four bytes is accepted, and a longer one counts as absent.
std::optional<bool> ReadFlag(HKEY key, const wchar_t* name) {
  DWORD value = 0;
  DWORD size = sizeof value;
  if (RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(&value), &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  return value != 0;
}

std::optional<std::string> ReadText(HKEY key, const wchar_t* name) {
  // One character more than is read, so that a value without a terminator gets one.
  wchar_t value[kReadBufferBytes / sizeof(wchar_t) + 1] = {};
  DWORD size = kReadBufferBytes;
  if (RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(value), &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  return NarrowFromWide(value);
}

LSTATUS WriteFlag(HKEY key, const wchar_t* name, bool flag) {
  const DWORD value = flag ? 1 : 0;
  return RegSetValueExW(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), sizeof value);
}

// Stores the text with its terminator and one more zero.
LSTATUS WriteText(HKEY key, const wchar_t* name, const std::string& text) {
  std::wstring value = WideFromNarrow(text);
  value.append(2, L'\0');
  return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.data()),
                        static_cast<DWORD>(value.size() * sizeof(wchar_t)));
}

// Returns false if the flag is absent; the member is then unchanged.
bool LoadFlag(HKEY key, const Setting& setting, WindowSettings* settings) {
  const std::optional<bool> flag = ReadFlag(key, setting.valueName);
  if (!flag) return false;
  settings->*setting.flag = *flag;
  setting.logLoaded(EnabledOrDisabled(*flag));
  return true;
}

// Leaves the member unchanged if the text is absent.
void LoadText(HKEY key, const Setting& setting, WindowSettings* settings) {
  std::optional<std::string> text = ReadText(key, setting.valueName);
  if (!text) return;
  setting.logLoaded(text->c_str());
  settings->*setting.text = *std::move(text);
}

LSTATUS SaveSetting(HKEY key, const Setting& setting, const WindowSettings& settings) {
  const LSTATUS status = setting.flag ? WriteFlag(key, setting.valueName, settings.*setting.flag)
                                      : WriteText(key, setting.valueName, settings.*setting.text);
  if (status == ERROR_SUCCESS) {
    setting.logSaved(setting.flag ? EnabledOrDisabled(settings.*setting.flag) : (settings.*setting.text).c_str());
  }
  return status;
}

}  // namespace

std::span<const Setting> Settings() { return kSettings; }

std::span<const Setting> MediaSettings() { return std::span(kSettings).subspan(1); }

void LoadSettings(WindowSettings* settings) {
  LOG_INFO("LoadSettings: Loading application settings from registry");
  ScopedRegistryKey key;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kSettingsKey, 0, KEY_READ, key.Receive()) != ERROR_SUCCESS) {
    LOG_DEBUG("LoadSettings: Registry key not found, using default settings");
    settings->alwaysOnTop_ = false;
    return;
  }
  for (const Setting& setting : kSettings) {
    if (setting.text) {
      LoadText(key.Get(), setting, settings);
    } else if (!LoadFlag(key.Get(), setting, settings) && IsAlwaysOnTop(setting)) {
      settings->alwaysOnTop_ = false;
      LOG_DEBUG("LoadSettings: Always on top setting not found in registry, using default (disabled)");
    }
  }
}

void SaveSettings(const WindowSettings& settings) {
  LOG_INFO("SaveSettings: Saving application settings to registry");
  ScopedRegistryKey key;
  const LSTATUS opened =
      RegCreateKeyExW(HKEY_CURRENT_USER, kSettingsKey, 0, nullptr, 0, KEY_WRITE, nullptr, key.Receive(), nullptr);
  if (opened != ERROR_SUCCESS) {
    LOG_ERROR("SaveSettings: Failed to create registry key: %ld", opened);
    return;
  }
  for (const Setting& setting : kSettings) {
    const LSTATUS status = SaveSetting(key.Get(), setting, settings);
    if (status != ERROR_SUCCESS && IsAlwaysOnTop(setting)) {
      LOG_ERROR("SaveSettings: Failed to save always on top setting: %ld", status);
    }
  }
}

}  // namespace vantro
