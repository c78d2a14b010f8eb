// The volume slider of the title bar: its clicks, its drag, its drawing. Outside the player, no other code sets the
// player's volume.
//
//   Idle -- left button down on the slider --> Dragging -- left button up on the main window --> Idle
//
// While Dragging, the main window has the mouse capture and the slider shows its percentage. Only the release of the
// button ends the drag. If another window takes the capture, the drag continues, and the pointer's moves still set the
// volume.
//
// A main window creates one before its native window. Main thread.
#pragma once

#include <windows.h>

#include <memory>

#include "common/measures.h"
#include "player/vlc_player.h"
#include "shell/title_bar.h"
#include "shell/volume_geometry.h"

namespace vantro {

class VolumeControl {
 public:
  // All references are to members of the owner. They are read at each use. The handle and the player are null until the
  // owner's start has set them.
  VolumeControl(const HWND& mainWindow, const TitleBar& titleBar, const std::unique_ptr<VLCPlayer>& player);
  VolumeControl(const VolumeControl&) = delete;
  VolumeControl& operator=(const VolumeControl&) = delete;

  bool IsDragging() const { return isVolumeDragging_; }

  // Null until the title bar has created it.
  HWND Window() const { return titleBar_.Controls().volumeControl_; }
  // Returns whether the point, in client coordinates of the main window, is on the slider. All four edges are included.
  bool Covers(POINT point) const;

  // Handles a press of the left button on the slider: starts a drag at the pointer's current position.
  void BeginDragAtPointer();
  // Handles a move of the pointer during a drag: sets the volume for the pointer's current position.
  void DragToPointer();
  // Handles the slider's own click notification: starts a drag at the pointer's current position, which is at or near
  // the press.
  void OnClickNotification();
  // Starts a drag at this position, relative to the slider's top left corner.
  void BeginVolumeDrag(int x, int y);
  void EndVolumeDrag();
  // Sets the volume for a position relative to the slider's top left corner. A position beyond the ends is clamped.
  void HandleVolumeClick(int x, int y);
  // Sets the player's volume, in percent. Without a player it only logs a warning.
  void SetVlcVolume(int volume);
  // Handles WM_DRAWITEM of the slider.
  void DrawVolumeControl(const DRAWITEMSTRUCT& item) const;

 private:
  void Redraw();

  const HWND& hwnd_;
  const TitleBar& titleBar_;
  const std::unique_ptr<VLCPlayer>& vlcPlayer_;
  int volume_ = kFullVolume;  // percent
  bool isVolumeDragging_ = false;
  bool showVolumePercent_ = false;  // set and cleared with the drag

  friend struct RoomPeer;
};

}  // namespace vantro
