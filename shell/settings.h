// The window's settings: their values, and one table for loading, saving and showing them in the menus. A new setting
// is one member and one row.
//
// They are stored in the current user's registry. Each window has its own copy and writes all of them, so the window
// that is destroyed last decides what the next start reads. Main thread.
#pragma once

#include <windows.h>

#include <span>
#include <string>

namespace vantro {

// The defaults are the values of a first start.
struct WindowSettings {
  bool alwaysOnTop_ = false;
  std::string vlcHwAccel_ = "auto";
  std::string vlcAudioOutput_ = "directsound";
  std::string vlcDeinterlace_ = "off";
  bool vlcEqualizerEnabled_ = false;
  bool vlcCompressorEnabled_ = false;
};

// A value that the menu offers for a text setting. A stored text that the menu does not offer is kept.
struct SettingChoice {
  WORD id;
  const wchar_t* menuText;
  const char* value;
  const char* logLine;  // logged when it is chosen
};

// Writes one log line that contains the value.
using LogValue = void (*)(const char* value);

struct Setting {
  const wchar_t* valueName;  // name in the registry
  // A flag (REG_DWORD) or a text (REG_SZ); the other pointer is null.
  bool WindowSettings::*flag;
  std::string WindowSettings::*text;
  LogValue logLoaded;
  LogValue logSaved;
  const char* toggledLine;  // logged when a flag is toggled
  const wchar_t* menuText;  // of the flag's item or of the text's submenu; null for always-on-top
  WORD menuId;              // of the flag's item
  std::span<const SettingChoice> choices;
};

// Returns all settings, in the order in which they are read and written.
std::span<const Setting> Settings();
// Returns the settings of the media engine, which the menu shows in their own submenu.
std::span<const Setting> MediaSettings();

// Reads the stored values. An absent value leaves its member unchanged, except for always-on-top, which is then set to
// off.
void LoadSettings(WindowSettings* settings);
// Writes all values. A failure is logged for the key and for the first value; for other values it is ignored.
void SaveSettings(const WindowSettings& settings);

}  // namespace vantro
