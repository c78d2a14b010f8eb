// Opens the File and Help menus. A menu lives for the one call that shows it; the chosen item comes back as WM_COMMAND.
#include <windows.h>

#include "common/log.h"
#include "shell/menu_tables.h"
#include "shell/scoped_handles.h"
#include "shell/shell_ids.h"
#include "shell/vantro_window.h"
#include "shell/window_manager.h"

namespace vantro {

namespace {

MenuState StateOf(const VantroWindow& window) {
  MenuState state;
  state.alwaysOnTop = window.alwaysOnTop_;
  state.alwaysOnTopThisWindow = window.alwaysOnTopThisWindow_;
  state.isFullscreen = window.isFullscreen();
  state.equalizerEnabled = window.vlcEqualizerEnabled_;
  state.compressorEnabled = window.vlcCompressorEnabled_;
  state.hwAccel = window.vlcHwAccel_;
  state.audioOutput = window.vlcAudioOutput_;
  state.deinterlace = window.vlcDeinterlace_;
  state.activeWindows = CountActiveWindows();
  return state;
}

void AppendItems(HMENU menu, std::span<const MenuItem> items, const MenuState& state);

// A submenu that cannot be made is left out.
void AppendSubmenu(HMENU menu, const MenuItem& item, const MenuState& state) {
  ScopedMenu submenu(CreatePopupMenu());
  if (!submenu) return;
  AppendItems(submenu.Get(), item.submenu, state);
  // The menu owns it from here on.
  if (AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(submenu.Get()), item.text)) submenu.Release();
}

void AppendItems(HMENU menu, std::span<const MenuItem> items, const MenuState& state) {
  for (const MenuItem& item : items) {
    if (!item.submenu.empty()) {
      AppendSubmenu(menu, item, state);
    } else if (item.id == 0) {
      AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    } else if (IsMenuItemShown(item.id, state)) {
      AppendMenuW(menu, MF_STRING | MenuItemFlags(item.id, state), item.id, item.text);
    }
  }
}

// Below the button, flush with its left edge. Without the button no menu appears. Returns when the menu has closed.
void TrackMenuBelowButton(HMENU menu, HWND window, int buttonId) {
  const HWND button = GetDlgItem(window, buttonId);
  if (!button) return;
  RECT place{};
  GetWindowRect(button, &place);
  TrackPopupMenu(menu, 0, place.left, place.bottom, 0, window, nullptr);
}

}  // namespace

void VantroWindow::ShowFileMenu() {
  LOG_DEBUG("ShowFileMenu: Showing File popup menu");
  const ScopedMenu menu(CreatePopupMenu());
  if (!menu) {
    LOG_ERROR("ShowFileMenu: Failed to create popup menu");
    return;
  }
  AppendItems(menu.Get(), FileMenuItems(), StateOf(*this));
  TrackMenuBelowButton(menu.Get(), hwnd_, kFileButtonId);
}

void VantroWindow::ShowHelpMenu() {
  LOG_DEBUG("ShowHelpMenu: Showing Help popup menu");
  const ScopedMenu menu(CreatePopupMenu());
  if (!menu) {
    LOG_ERROR("ShowHelpMenu: Failed to create popup menu");
    return;
  }
  AppendItems(menu.Get(), HelpMenuItems(), StateOf(*this));
  TrackMenuBelowButton(menu.Get(), hwnd_, kHelpButtonId);
}

}  // namespace vantro
