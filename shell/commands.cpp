// The commands of the menus, the window buttons and the volume control, as one table.
#include <windows.h>

#include "common/log.h"
#include "shell/menu_tables.h"
#include "shell/shell_ids.h"
#include "shell/vantro_window.h"
#include "shell/window_manager.h"

namespace vantro {

namespace {

// What the window's media settings go back to; a new window starts with the same.
constexpr char kDefaultHwAccel[] = "auto";
constexpr char kDefaultAudioOutput[] = "directsound";
constexpr char kDefaultDeinterlace[] = "off";

struct Command {
  WORD id;
  const char* logLine;
  void (*run)(VantroWindow& window);
};

void PostClose(VantroWindow& window) { PostMessageA(window.hwnd_, WM_CLOSE, 0, 0); }

void Minimize(VantroWindow& window) { ShowWindow(window.hwnd_, SW_MINIMIZE); }

void ToggleFullscreen(VantroWindow& window) { window.ToggleFullscreen(); }

// Without a channel the interface cannot be asked, and the command does nothing.
void RequestSettings(VantroWindow& window) {
  if (window.methodChannelHandler_) window.methodChannelHandler_->SendChannelEvent("settings_requested", "");
}

void RequestAbout(VantroWindow& window) {
  if (window.methodChannelHandler_) window.methodChannelHandler_->SendChannelEvent("about_requested", "");
}

// This window only: the others keep their own state.
void ToggleAlwaysOnTop(VantroWindow& window) {
  window.alwaysOnTop_ = !window.alwaysOnTop_;
  window.overlay_.ApplyTopmost(window.alwaysOnTop_);
  if (window.alwaysOnTop_) {
    LOG_INFO("Always on top enabled");
  } else {
    LOG_INFO("Always on top disabled");
  }
  window.SaveSettings();
}

// The flag flips also while the setting overrules it, and shows at the next toggle without the setting.
void ToggleAlwaysOnTopThisWindow(VantroWindow& window) {
  window.alwaysOnTopThisWindow_ = !window.alwaysOnTopThisWindow_;
  if (window.alwaysOnTop_) {
    LOG_INFO("Global always on top is enabled - window-specific setting has no effect");
    return;
  }
  window.overlay_.ApplyTopmost(window.alwaysOnTopThisWindow_);
  if (window.alwaysOnTopThisWindow_) {
    LOG_INFO("Always on top enabled for this window only");
  } else {
    LOG_INFO("Always on top disabled for this window only");
  }
}

void ToggleEqualizer(VantroWindow& window) {
  window.vlcEqualizerEnabled_ = !window.vlcEqualizerEnabled_;
  window.SaveSettings();
}

void ToggleCompressor(VantroWindow& window) {
  window.vlcCompressorEnabled_ = !window.vlcCompressorEnabled_;
  window.SaveSettings();
}

void RestoreMediaDefaults(VantroWindow& window) {
  window.vlcHwAccel_ = kDefaultHwAccel;
  window.vlcAudioOutput_ = kDefaultAudioOutput;
  window.vlcDeinterlace_ = kDefaultDeinterlace;
  window.vlcEqualizerEnabled_ = false;
  window.vlcCompressorEnabled_ = false;
  window.SaveSettings();
  LOG_INFO("VLC settings restored to defaults");
}

// The static's own notification: the pointer is where the press was, or near it.
void ClickVolumeControl(VantroWindow& window) {
  POINT cursor{};
  GetCursorPos(&cursor);
  if (!window.titleBar_.Controls().volumeControl_) return;
  RECT control{};
  GetWindowRect(window.titleBar_.Controls().volumeControl_, &control);
  const int x = static_cast<int>(cursor.x - control.left);
  const int y = static_cast<int>(cursor.y - control.top);
  LOG_DEBUG("Volume control WM_COMMAND: click at relative (%d, %d)", x, y);
  window.volumeControl_.BeginVolumeDrag(x, y);
}

constexpr Command kCommands[] = {
    {kMinimizeButtonId, "HandleMenuCommand: Minimize button clicked", Minimize},
    // There is no maximized state: the button with the square enters and leaves fullscreen.
    {kMaximizeButtonId, "HandleMenuCommand: Maximize button clicked - toggling fullscreen", ToggleFullscreen},
    {kCloseButtonId, "HandleMenuCommand: Close button clicked", PostClose},
    {kVolumeControlId, "HandleMenuCommand: Volume control clicked (ID 1001)", ClickVolumeControl},
    {kNewWindowCommand, "HandleMenuCommand: New Window menu item selected",
     [](VantroWindow& window) { CreateNewWindow(window); }},
    {kSettingsCommand, "HandleMenuCommand: Settings menu item selected", RequestSettings},
    {kAlwaysOnTopCommand, "HandleMenuCommand: Always on Top menu item selected", ToggleAlwaysOnTop},
    {kExitCommand, "HandleMenuCommand: Exit menu item selected", PostClose},
    {kAboutCommand, "HandleMenuCommand: About menu item selected", RequestAbout},
    {kAlwaysOnTopThisWindowCommand, "HandleMenuCommand: Always on Top - This Window menu item selected",
     ToggleAlwaysOnTopThisWindow},
    {kFullscreenCommand, "HandleMenuCommand: Fullscreen menu item selected", ToggleFullscreen},
    {kEqualizerCommand, "HandleMenuCommand: VLC Equalizer toggled", ToggleEqualizer},
    {kCompressorCommand, "HandleMenuCommand: VLC Compressor toggled", ToggleCompressor},
    {kRestoreDefaultsCommand, "HandleMenuCommand: VLC Restore Defaults selected", RestoreMediaDefaults},
};

std::string& MemberOf(MediaSetting setting, VantroWindow& window) {
  switch (setting) {
    case MediaSetting::kHwAccel:
      return window.vlcHwAccel_;
    case MediaSetting::kAudioOutput:
      return window.vlcAudioOutput_;
    case MediaSetting::kDeinterlace:
      break;
  }
  return window.vlcDeinterlace_;
}

bool RunCommand(WORD id, VantroWindow& window) {
  for (const Command& command : kCommands) {
    if (command.id != id) continue;
    LOG_INFO("%s", command.logLine);
    command.run(window);
    return true;
  }
  return false;
}

bool ChooseMediaSetting(WORD id, VantroWindow& window) {
  for (const MediaChoice& choice : MediaChoices()) {
    if (choice.id != id) continue;
    LOG_INFO("%s", choice.logLine);
    MemberOf(choice.setting, window) = choice.value;
    window.SaveSettings();
    return true;
  }
  return false;
}

}  // namespace

void VantroWindow::HandleMenuCommand(WORD commandId) {
  LOG_DEBUG("HandleMenuCommand: Received command %d", commandId);
  if (RunCommand(commandId, *this) || ChooseMediaSetting(commandId, *this)) return;
  LOG_DEBUG("HandleMenuCommand: Unknown command %d", commandId);
}

}  // namespace vantro
