// The window's settings in the registry of the current user. Each window holds its own copy and writes all of them, so
// the window that is destroyed last decides what the next start finds.
#include <windows.h>

#include <optional>
#include <string>

#include "common/log.h"
#include "common/text.h"
#include "shell/scoped_handles.h"
#include "shell/vantro_window.h"

namespace vantro {

namespace {

constexpr wchar_t kSettingsKey[] = L"Software\\Vantro\\WindowSettings";
constexpr DWORD kReadBufferBytes = 512;  // a longer text counts as absent

// A line of the log with the value in it.
using LogValue = void (*)(const char* value);

// One registry value and its member: a flag (REG_DWORD) or a text (REG_SZ), the other pointer being null.
struct Setting {
  const wchar_t* name;
  bool VantroWindow::*flag;
  std::string VantroWindow::*text;
  LogValue logLoaded;
  LogValue logSaved;
};

// In the order in which they are read and written.
constexpr Setting kSettings[] = {
    {L"AlwaysOnTop", &VantroWindow::alwaysOnTop_, nullptr,
     [](const char* value) { LOG_INFO("LoadSettings: Always on top setting loaded: %s", value); },
     [](const char* value) { LOG_INFO("SaveSettings: Always on top setting saved: %s", value); }},
    {L"VLCHwAccel", nullptr, &VantroWindow::vlcHwAccel_,
     [](const char* value) { LOG_INFO("LoadSettings: VLC Hardware Acceleration loaded: %s", value); },
     [](const char* value) { LOG_INFO("SaveSettings: VLC Hardware Acceleration saved: %s", value); }},
    {L"VLCAudioOutput", nullptr, &VantroWindow::vlcAudioOutput_,
     [](const char* value) { LOG_INFO("LoadSettings: VLC Audio Output loaded: %s", value); },
     [](const char* value) { LOG_INFO("SaveSettings: VLC Audio Output saved: %s", value); }},
    {L"VLCDeinterlace", nullptr, &VantroWindow::vlcDeinterlace_,
     [](const char* value) { LOG_INFO("LoadSettings: VLC Deinterlacing loaded: %s", value); },
     [](const char* value) { LOG_INFO("SaveSettings: VLC Deinterlacing saved: %s", value); }},
    {L"VLCEqualizerEnabled", &VantroWindow::vlcEqualizerEnabled_, nullptr,
     [](const char* value) { LOG_INFO("LoadSettings: VLC Equalizer enabled loaded: %s", value); },
     [](const char* value) { LOG_INFO("SaveSettings: VLC Equalizer enabled saved: %s", value); }},
    {L"VLCCompressorEnabled", &VantroWindow::vlcCompressorEnabled_, nullptr,
     [](const char* value) { LOG_INFO("LoadSettings: VLC Compressor enabled loaded: %s", value); },
     [](const char* value) { LOG_INFO("SaveSettings: VLC Compressor enabled saved: %s", value); }},
};
constexpr const Setting& kAlwaysOnTopSetting = kSettings[0];

const char* EnabledOrDisabled(bool value) { return value ? "enabled" : "disabled"; }

// The type is not looked at: four bytes of anything count, and more than four do not.
std::optional<bool> ReadFlag(HKEY key, const wchar_t* name) {
  DWORD value = 0;
  DWORD size = sizeof value;
  if (RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(&value), &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  return value != 0;
}

std::optional<std::string> ReadText(HKEY key, const wchar_t* name) {
  // One character more than is read: a value without a terminator ends there.
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

// Stored with its terminator and one further zero.
LSTATUS WriteText(HKEY key, const wchar_t* name, const std::string& text) {
  std::wstring value = WideFromNarrow(text);
  value.append(2, L'\0');
  return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.data()),
                        static_cast<DWORD>(value.size() * sizeof(wchar_t)));
}

// An absent value leaves the member as it is.
bool LoadSetting(HKEY key, const Setting& setting, VantroWindow& window) {
  if (setting.flag) {
    const std::optional<bool> flag = ReadFlag(key, setting.name);
    if (!flag) return false;
    window.*setting.flag = *flag;
    setting.logLoaded(EnabledOrDisabled(*flag));
    return true;
  }
  std::optional<std::string> text = ReadText(key, setting.name);
  if (!text) return false;
  setting.logLoaded(text->c_str());
  window.*setting.text = *std::move(text);
  return true;
}

LSTATUS SaveSetting(HKEY key, const Setting& setting, const VantroWindow& window) {
  const LSTATUS status = setting.flag ? WriteFlag(key, setting.name, window.*setting.flag)
                                      : WriteText(key, setting.name, window.*setting.text);
  if (status == ERROR_SUCCESS) {
    setting.logSaved(setting.flag ? EnabledOrDisabled(window.*setting.flag) : (window.*setting.text).c_str());
  }
  return status;
}

void LoadAllSettings(HKEY key, VantroWindow& window) {
  for (const Setting& setting : kSettings) {
    if (LoadSetting(key, setting, window) || &setting != &kAlwaysOnTopSetting) continue;
    window.alwaysOnTop_ = false;
    LOG_DEBUG("LoadSettings: Always on top setting not found in registry, using default (disabled)");
  }
}

}  // namespace

void VantroWindow::LoadSettings() {
  LOG_INFO("LoadSettings: Loading application settings from registry");
  ScopedRegistryKey key;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kSettingsKey, 0, KEY_READ, key.Receive()) == ERROR_SUCCESS) {
    LoadAllSettings(key.Get(), *this);
  } else {
    LOG_DEBUG("LoadSettings: Registry key not found, using default settings");
    alwaysOnTop_ = false;
  }
  if (!alwaysOnTop_) return;
  LOG_INFO("LoadSettings: Applying always on top setting");
  overlay_.ApplyTopmost(true);
}

void VantroWindow::SaveSettings() {
  LOG_INFO("SaveSettings: Saving application settings to registry");
  ScopedRegistryKey key;
  const LSTATUS opened =
      RegCreateKeyExW(HKEY_CURRENT_USER, kSettingsKey, 0, nullptr, 0, KEY_WRITE, nullptr, key.Receive(), nullptr);
  if (opened != ERROR_SUCCESS) {
    LOG_ERROR("SaveSettings: Failed to create registry key: %ld", opened);
    return;
  }
  for (const Setting& setting : kSettings) {
    const LSTATUS status = SaveSetting(key.Get(), setting, *this);
    if (status != ERROR_SUCCESS && &setting == &kAlwaysOnTopSetting) {
      LOG_ERROR("SaveSettings: Failed to save always on top setting: %ld", status);
    }
  }
}

}  // namespace vantro
