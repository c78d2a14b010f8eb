#include "shell/popup_menu.h"

#include "common/log.h"
#include "shell/scoped_handles.h"

namespace vantro {

namespace {

void AppendItems(HMENU menu, std::span<const MenuItem> items, const MenuState& state);

// A submenu that cannot be created is left out.
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
      AppendMenuW(menu, MenuItemFlags(item.id, state), item.id, item.text);
    }
  }
}

// Shows the menu below the button, aligned with its left edge. Without the button no menu appears. Returns when the
// menu has closed.
void TrackMenuBelowButton(HMENU menu, HWND window, int buttonId) {
  const HWND button = GetDlgItem(window, buttonId);
  if (!button) return;
  RECT place{};
  GetWindowRect(button, &place);
  TrackPopupMenu(menu, 0, place.left, place.bottom, 0, window, nullptr);
}

}  // namespace

void ShowPopupMenu(HWND window, const PopupMenu& menu, const MenuState& state) {
  LOG_DEBUG("%s", menu.shownLine);
  const ScopedMenu popup(CreatePopupMenu());
  if (!popup) {
    LOG_ERROR("%s", menu.failedLine);
    return;
  }
  AppendItems(popup.Get(), menu.items, state);
  TrackMenuBelowButton(popup.Get(), window, menu.buttonId);
}

}  // namespace vantro
