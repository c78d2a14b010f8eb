// The window's settings: their values, and one table by which they are loaded, saved and shown in the menus. A further
// setting is one member and one row.
//
// They stand in the registry of the current user. Each window holds its own copy and writes all of them, so the window
// that is destroyed last decides what the next start finds. Main thread.
#pragma once

#include <windows.h>

#include <span>
#include <string>

namespace vantro {

// With the values of a first start.
struct WindowSettings {
  bool alwaysOnTop_ = false;
  std::string vlcHwAccel_ = "auto";
  std::string vlcAudioOutput_ = "directsound";
  std::string vlcDeinterlace_ = "off";
  bool vlcEqualizerEnabled_ = false;
  bool vlcCompressorEnabled_ = false;
};

// What the menu offers for a text. A stored text that is not offered is kept all the same.
struct SettingChoice {
  WORD id;
  const wchar_t* menuText;
  const char* value;
  const char* logLine;  // when it is chosen
};

// Writes a whole line of the log with the value in it.
using LogValue = void (*)(const char* value);

struct Setting {
  const wchar_t* valueName;  // in the registry
  // A flag (REG_DWORD) or a text (REG_SZ); the other pointer is null.
  bool WindowSettings::*flag;
  std::string WindowSettings::*text;
  LogValue logLoaded;
  LogValue logSaved;
  const char* toggledLine;  // of the log, when a flag is chosen
  const wchar_t* menuText;  // of the flag's item or of the text's submenu
  WORD menuId;              // of the flag's item
  std::span<const SettingChoice> choices;
};

// All, in the order in which they are read and written.
std::span<const Setting> Settings();
// Those of the media engine, which the menu shows in a submenu of their own.
std::span<const Setting> MediaSettings();

// Reads what is stored; what is absent keeps its value, but for always-on-top, which then is off.
void LoadSettings(WindowSettings* settings);
// Writes all values. A failure is logged for the key and for the first value; the other values go on in silence.
void SaveSettings(const WindowSettings& settings);

}  // namespace vantro
