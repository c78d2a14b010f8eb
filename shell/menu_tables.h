// The File and Help menus as data: their items, and how each item looks for a given state of the window.
#pragma once

#include <windows.h>

#include <span>

#include "shell/settings.h"

namespace vantro {

// The state that the menus show, read when a menu opens.
struct MenuState {
  WindowSettings settings;
  bool alwaysOnTopThisWindow;
  bool isFullscreen;
  size_t activeWindows;
};

// A separator has no text, no id and no submenu. An item with a submenu has no id.
struct MenuItem {
  const wchar_t* text = nullptr;
  WORD id = 0;
  std::span<const MenuItem> submenu;
};

std::span<const MenuItem> FileMenuItems();
std::span<const MenuItem> HelpMenuItems();

// Returns whether the menu contains the item.
bool IsMenuItemShown(WORD id, const MenuState& state);
// Returns MF_CHECKED, MF_GRAYED, both or 0.
UINT MenuItemFlags(WORD id, const MenuState& state);

}  // namespace vantro
