#include "shell/window_commands.h"

#include "common/log.h"
#include "shell/flutter_child.h"
#include "shell/popup_menu.h"
#include "shell/shell_ids.h"
#include "shell/vantro_window.h"
#include "shell/window_manager.h"

namespace vantro {

WindowCommands::WindowCommands(VantroWindow& window, FlutterOverlay& overlay, Fullscreen& fullscreen,
                               VolumeControl& volumeControl, SearchBox& search)
    : window_(window), overlay_(overlay), fullscreen_(fullscreen), volumeControl_(volumeControl), search_(search) {}

void WindowCommands::OnCommand(WPARAM wParam, LPARAM lParam) {
  const WORD id = LOWORD(wParam);
  const WORD notification = HIWORD(wParam);
  LOG_DEBUG("WM_COMMAND: Control interaction - ID: %d, Handle: %p, Type: %d", id, reinterpret_cast<void*>(lParam),
            notification);
  if (notification == EN_CHANGE && id == kSearchBoxId) {
    search_.HandleSearchInput();
    LOG_DEBUG("WM_COMMAND: Skipping focus redirect for search box text change");
    return;
  }
  if (notification == BN_CLICKED && id == kFileButtonId) {
    ShowFileMenu();
  } else if (notification == BN_CLICKED && id == kHelpButtonId) {
    ShowHelpMenu();
  } else {
    HandleMenuCommand(id);
  }
  RedirectFocusAfterCommand();
}

// Otherwise a clicked button would keep the focus, and the view would receive no keys.
void WindowCommands::RedirectFocusAfterCommand() {
  if (GetFocus() == search_.Window()) {
    LOG_DEBUG("WM_COMMAND: Search box has focus, not stealing it");
  } else if (const HWND child = LiveFlutterChild(window_.flutterEngine_)) {
    SetFocus(child);
    LOG_DEBUG("WM_COMMAND: Redirected focus back to Flutter window %p", static_cast<void*>(child));
  }
}

void WindowCommands::ShowFileMenu() {
  ShowPopupMenu(window_.hwnd_,
                {"ShowFileMenu: Showing File popup menu", "ShowFileMenu: Failed to create popup menu", kFileButtonId,
                 FileMenuItems()},
                {settings_, alwaysOnTopThisWindow_, fullscreen_.IsFullscreen(), CountActiveWindows()});
}

void WindowCommands::ShowHelpMenu() {
  ShowPopupMenu(window_.hwnd_,
                {"ShowHelpMenu: Showing Help popup menu", "ShowHelpMenu: Failed to create popup menu", kHelpButtonId,
                 HelpMenuItems()},
                {});
}

void WindowCommands::HandleMenuCommand(WORD commandId) {
  LOG_DEBUG("HandleMenuCommand: Received command %d", commandId);
  if (RunCommand(commandId) || ChangeMediaSetting(commandId)) return;
  LOG_DEBUG("HandleMenuCommand: Unknown command %d", commandId);
}

bool WindowCommands::RunCommand(WORD id) {
  struct Command {
    WORD id;
    const char* logLine;
    void (WindowCommands::*run)();
  };
  static constexpr Command kCommands[] = {
      {kMinimizeButtonId, "HandleMenuCommand: Minimize button clicked", &WindowCommands::Minimize},
      // There is no maximized state: the maximize button enters and leaves fullscreen.
      {kMaximizeButtonId, "HandleMenuCommand: Maximize button clicked - toggling fullscreen",
       &WindowCommands::ToggleFullscreen},
      {kCloseButtonId, "HandleMenuCommand: Close button clicked", &WindowCommands::PostClose},
      {kVolumeControlId, "HandleMenuCommand: Volume control clicked (ID 1001)", &WindowCommands::ClickVolumeControl},
      {kNewWindowCommand, "HandleMenuCommand: New Window menu item selected", &WindowCommands::OpenNewWindow},
      {kSettingsCommand, "HandleMenuCommand: Settings menu item selected", &WindowCommands::RequestSettings},
      {kAlwaysOnTopCommand, "HandleMenuCommand: Always on Top menu item selected", &WindowCommands::ToggleAlwaysOnTop},
      {kExitCommand, "HandleMenuCommand: Exit menu item selected", &WindowCommands::PostClose},
      {kAboutCommand, "HandleMenuCommand: About menu item selected", &WindowCommands::RequestAbout},
      {kAlwaysOnTopThisWindowCommand, "HandleMenuCommand: Always on Top - This Window menu item selected",
       &WindowCommands::ToggleAlwaysOnTopThisWindow},
      {kFullscreenCommand, "HandleMenuCommand: Fullscreen menu item selected", &WindowCommands::ToggleFullscreen},
      {kRestoreDefaultsCommand, "HandleMenuCommand: VLC Restore Defaults selected",
       &WindowCommands::RestoreMediaDefaults},
  };
  for (const Command& command : kCommands) {
    if (command.id != id) continue;
    LOG_INFO("%s", command.logLine);
    (this->*command.run)();
    return true;
  }
  return false;
}

bool WindowCommands::ChangeMediaSetting(WORD id) {
  for (const Setting& setting : MediaSettings()) {
    if (setting.flag && setting.menuId == id) {
      LOG_INFO("%s", setting.toggledLine);
      settings_.*setting.flag = !(settings_.*setting.flag);
      SaveSettings();
      return true;
    }
    for (const SettingChoice& choice : setting.choices) {
      if (choice.id != id) continue;
      LOG_INFO("%s", choice.logLine);
      settings_.*setting.text = choice.value;
      SaveSettings();
      return true;
    }
  }
  return false;
}

void WindowCommands::OpenNewWindow() { CreateNewWindow(window_); }

// Without a channel to the interface the command does nothing.
void WindowCommands::RequestSettings() {
  if (window_.methodChannelHandler_) window_.methodChannelHandler_->SendChannelEvent("settings_requested", "");
}

void WindowCommands::RequestAbout() {
  if (window_.methodChannelHandler_) window_.methodChannelHandler_->SendChannelEvent("about_requested", "");
}

void WindowCommands::PostClose() { PostMessageA(window_.hwnd_, WM_CLOSE, 0, 0); }

void WindowCommands::Minimize() { ShowWindow(window_.hwnd_, SW_MINIMIZE); }

void WindowCommands::ToggleFullscreen() { fullscreen_.ToggleFullscreen(); }

// Changes this window only. The others keep their own state.
void WindowCommands::ToggleAlwaysOnTop() {
  settings_.alwaysOnTop_ = !settings_.alwaysOnTop_;
  overlay_.ApplyTopmost(settings_.alwaysOnTop_);
  if (settings_.alwaysOnTop_) {
    LOG_INFO("Always on top enabled");
  } else {
    LOG_INFO("Always on top disabled");
  }
  SaveSettings();
}

// The flag changes even while the setting overrides it. The change takes effect at the next toggle without the setting.
void WindowCommands::ToggleAlwaysOnTopThisWindow() {
  alwaysOnTopThisWindow_ = !alwaysOnTopThisWindow_;
  if (settings_.alwaysOnTop_) {
    LOG_INFO("Global always on top is enabled - window-specific setting has no effect");
    return;
  }
  overlay_.ApplyTopmost(alwaysOnTopThisWindow_);
  if (alwaysOnTopThisWindow_) {
    LOG_INFO("Always on top enabled for this window only");
  } else {
    LOG_INFO("Always on top disabled for this window only");
  }
}

void WindowCommands::RestoreMediaDefaults() {
  WindowSettings defaults;
  defaults.alwaysOnTop_ = settings_.alwaysOnTop_;
  settings_ = defaults;
  SaveSettings();
  LOG_INFO("VLC settings restored to defaults");
}

void WindowCommands::LoadSettings() {
  vantro::LoadSettings(&settings_);
  if (!settings_.alwaysOnTop_) return;
  LOG_INFO("LoadSettings: Applying always on top setting");
  overlay_.ApplyTopmost(true);
}

void WindowCommands::SaveSettings() { vantro::SaveSettings(settings_); }

}  // namespace vantro
