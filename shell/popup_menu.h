// Opens a menu below a button of the title bar.
#pragma once

#include <windows.h>

#include <span>

#include "shell/menu_tables.h"

namespace vantro {

struct PopupMenu {
  const char* shownLine;   // logged before the menu opens
  const char* failedLine;  // logged if the menu cannot be created
  int buttonId;
  std::span<const MenuItem> items;
};

// Shows the menu below its button, aligned with the button's left edge. Without the button no menu appears. Returns
// when the menu has closed; the chosen item reaches the window as WM_COMMAND. Main thread.
void ShowPopupMenu(HWND window, const PopupMenu& menu, const MenuState& state);

}  // namespace vantro
