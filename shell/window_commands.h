// The File and Help menus, and every command of the menus, the window buttons and the volume control.
//
// A menu lives for the one call that shows it; the chosen item comes back as WM_COMMAND. Main thread.
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
  // All are the owner's own. The window is asked for its handle, its channel and its view, and stands beside the
  // windows that are opened from it.
  WindowCommands(VantroWindow& window, FlutterOverlay& overlay, Fullscreen& fullscreen, VolumeControl& volumeControl,
                 SearchBox& search);
  WindowCommands(const WindowCommands&) = delete;
  WindowCommands& operator=(const WindowCommands&) = delete;

  // Serves WM_COMMAND: the search box's text, the menu buttons, any other command. Then the view has the focus, unless
  // the search box has it.
  void OnCommand(WPARAM wParam, LPARAM lParam);

  // Below their buttons; return when the menu has closed.
  void ShowFileMenu();
  void ShowHelpMenu();
  // Runs a command by its id. An id that is none does nothing.
  void HandleMenuCommand(WORD commandId);

  // Reads the stored settings, and raises window and overlay if they say so.
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
