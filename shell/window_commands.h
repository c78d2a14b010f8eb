// The File and Help menus, and every command of the menus, the window buttons and the volume control.
//
// A menu exists only during the call that shows it. The chosen item arrives as WM_COMMAND. Main thread.
#pragma once

#include <windows.h>

#include "shell/flutter_overlay.h"
#include "shell/fullscreen.h"
#include "shell/search_box.h"
#include "shell/settings.h"
#include "shell/volume_control.h"

namespace vantro {

class VantroWindow;

class WindowCommands {
 public:
  // All references are to the owner and its members. The commands use the window's handle, channel and view, and place
  // new windows next to it.
  WindowCommands(VantroWindow& window, FlutterOverlay& overlay, Fullscreen& fullscreen, VolumeControl& volumeControl,
                 SearchBox& search);
  WindowCommands(const WindowCommands&) = delete;
  WindowCommands& operator=(const WindowCommands&) = delete;

  // Handles WM_COMMAND: text changes of the search box, the menu buttons, and all other commands. Gives the view the
  // focus after a menu button or a command, unless the search box has the focus.
  void OnCommand(WPARAM wParam, LPARAM lParam);

  // Show a menu below its button. Return when the menu has closed.
  void ShowFileMenu();
  void ShowHelpMenu();
  // Runs the command with this id. An unknown id is only logged.
  void HandleMenuCommand(WORD commandId);

  // Reads the stored settings, and makes window and overlay topmost if the settings say so.
  void LoadSettings();
  void SaveSettings();

 private:
  bool RunCommand(WORD id);
  bool ChangeMediaSetting(WORD id);
  void OpenNewWindow();
  void RequestSettings();
  void RequestAbout();
  void PostClose();
  void Minimize();
  void ToggleFullscreen();
  void ToggleAlwaysOnTop();
  void ToggleAlwaysOnTopThisWindow();
  void RestoreMediaDefaults();
  void ClickVolumeControl() { volumeControl_.OnClickNotification(); }
  void RedirectFocusAfterCommand();

  VantroWindow& window_;
  FlutterOverlay& overlay_;
  Fullscreen& fullscreen_;
  VolumeControl& volumeControl_;
  SearchBox& search_;
  WindowSettings settings_;
  bool alwaysOnTopThisWindow_ = false;  // not stored

  friend struct RoomPeer;
};

}  // namespace vantro
