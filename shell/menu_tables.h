// The File and Help menus as data: their items, and how each looks for a given state of the window.
#pragma once

#include <windows.h>

#include <span>
#include <string>

#include "shell/shell_ids.h"

namespace vantro {

// What the menus show, as it is at the moment a menu opens.
struct MenuState {
  bool alwaysOnTop = false;
  bool alwaysOnTopThisWindow = false;
  bool isFullscreen = false;
  bool equalizerEnabled = false;
  bool compressorEnabled = false;
  std::string hwAccel;
  std::string audioOutput;
  std::string deinterlace;
  size_t activeWindows = 1;
};

// A separator has neither text, id nor submenu; a submenu has no id.
struct MenuItem {
  const wchar_t* text = nullptr;
  WORD id = 0;
  std::span<const MenuItem> submenu;
};

std::span<const MenuItem> FileMenuItems();
std::span<const MenuItem> HelpMenuItems();

// A choice of one of the media settings: the item's id, the setting it belongs to and the value it stands for.
enum class MediaSetting { kHwAccel, kAudioOutput, kDeinterlace };
struct MediaChoice {
  WORD id;
  MediaSetting setting;
  const char* value;
  const char* logLine;  // when it is chosen
};
std::span<const MediaChoice> MediaChoices();

// Whether the item is in the menu at all.
bool IsMenuItemShown(WORD id, const MenuState& state);
// MF_CHECKED and MF_GRAYED as they apply, else 0.
UINT MenuItemFlags(WORD id, const MenuState& state);

}  // namespace vantro
