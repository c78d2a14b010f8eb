// Opens a menu below a button of the title bar.
#pragma once

#include <windows.h>

#include <span>

#include "shell/menu_tables.h"

namespace vantro {

struct PopupMenu {
  const char* shownLine;   // of the log
  const char* failedLine;  // of the log
  int buttonId;
  std::span<const MenuItem> items;
};

// Flush with the button's left edge; without the button no menu appears. Returns when the menu has closed; the chosen
// item comes to the window as WM_COMMAND. Main thread.
void ShowPopupMenu(HWND window, const PopupMenu& menu, const MenuState& state);

}  // namespace vantro
