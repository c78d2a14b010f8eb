// The File and Help menus as data: their items, and how each looks for a given state of the window.
#pragma once

#include <windows.h>

#include <span>

#include "shell/settings.h"

namespace vantro {

// What the menus show, as it is at the moment a menu opens.
struct MenuState {
  WindowSettings settings;
  bool alwaysOnTopThisWindow = false;
  bool isFullscreen = false;
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

// Whether the item is in the menu at all.
bool IsMenuItemShown(WORD id, const MenuState& state);
// MF_CHECKED and MF_GRAYED as they apply, else 0.
UINT MenuItemFlags(WORD id, const MenuState& state);

}  // namespace vantro
