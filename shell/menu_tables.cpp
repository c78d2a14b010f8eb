#include "shell/menu_tables.h"

#include <vector>

#include "shell/shell_ids.h"

namespace vantro {

namespace {

constexpr MenuItem kSeparator{};

constexpr MenuItem kHelpMenu[] = {
    {L"&About Vantro...", kAboutCommand, {}},
};

std::vector<MenuItem> ChoiceItems(const Setting& setting) {
  std::vector<MenuItem> items;
  for (const SettingChoice& choice : setting.choices) items.push_back({choice.menuText, choice.id, {}});
  return items;
}

// One submenu for each text setting, one item for each flag, then the item that restores the defaults. Built once from
// the table of settings.
std::span<const MenuItem> MediaSettingsMenu() {
  static const std::vector<std::vector<MenuItem>> submenus = [] {
    std::vector<std::vector<MenuItem>> made;
    for (const Setting& setting : MediaSettings()) made.push_back(ChoiceItems(setting));
    return made;
  }();
  static const std::vector<MenuItem> menu = [] {
    std::vector<MenuItem> texts;
    std::vector<MenuItem> flags;
    for (size_t i = 0; i < submenus.size(); ++i) {
      const Setting& setting = MediaSettings()[i];
      if (setting.text) texts.push_back({setting.menuText, 0, submenus[i]});
      if (setting.flag) flags.push_back({setting.menuText, setting.menuId, {}});
    }
    texts.push_back(kSeparator);
    texts.insert(texts.end(), flags.begin(), flags.end());
    texts.push_back(kSeparator);
    texts.push_back({L"&Restore Defaults", kRestoreDefaultsCommand, {}});
    return texts;
  }();
  return menu;
}

bool IsSettingChecked(WORD id, const WindowSettings& settings) {
  for (const Setting& setting : Settings()) {
    if (setting.flag && setting.menuId == id) return settings.*setting.flag;
    for (const SettingChoice& choice : setting.choices) {
      if (choice.id == id) return settings.*setting.text == choice.value;
    }
  }
  return false;
}

bool IsMenuItemChecked(WORD id, const MenuState& state) {
  if (id == kAlwaysOnTopThisWindowCommand) return state.alwaysOnTopThisWindow;
  if (id == kFullscreenCommand) return state.isFullscreen;
  return IsSettingChecked(id, state.settings);
}

}  // namespace

std::span<const MenuItem> FileMenuItems() {
  static const MenuItem kFileMenu[] = {
      {L"&New Window", kNewWindowCommand, {}},
      kSeparator,
      {L"&Settings...", kSettingsCommand, {}},
      {L"&VLC Settings", 0, MediaSettingsMenu()},
      kSeparator,
      {L"Always on &Top", kAlwaysOnTopCommand, {}},
      {L"Always on Top - &This Window", kAlwaysOnTopThisWindowCommand, {}},
      kSeparator,
      {L"&Fullscreen\tF11", kFullscreenCommand, {}},
      kSeparator,
      {L"E&xit", kExitCommand, {}},
  };
  return kFileMenu;
}

std::span<const MenuItem> HelpMenuItems() { return kHelpMenu; }

bool IsMenuItemShown(WORD id, const MenuState& state) {
  return id != kAlwaysOnTopThisWindowCommand || state.activeWindows > 1;
}

UINT MenuItemFlags(WORD id, const MenuState& state) {
  // While the always-on-top setting is on, the item for this window has no effect.
  const bool grayed = id == kAlwaysOnTopThisWindowCommand && state.settings.alwaysOnTop_;
  return (IsMenuItemChecked(id, state) ? MF_CHECKED : 0u) | (grayed ? MF_GRAYED : 0u);
}

}  // namespace vantro
