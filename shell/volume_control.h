// The volume slider of the title bar: its clicks, its drag, its drawing. It alone sets the player's volume.
//
//   Idle -- left button down on the slider --> Dragging -- left button up on the main window --> Idle
//
// While Dragging the main window has the mouse and the slider shows its percentage. A capture that another window takes
// away does not end the drag: only the button's release does, and until then the pointer's moves set the volume.
//
// A window makes one before its native window. Main thread.
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
  // All are the owner's own and read anew at each use; handle and player are null until its start has made them.
  VolumeControl(const HWND& mainWindow, const TitleBar& titleBar, const std::unique_ptr<VLCPlayer>& player);
  VolumeControl(const VolumeControl&) = delete;
  VolumeControl& operator=(const VolumeControl&) = delete;

  bool IsDragging() const { return isVolumeDragging_; }

  // Null before the title bar has made it.
  HWND Window() const { return titleBar_.Controls().volumeControl_; }
  // Whether the point, in client coordinates of the main window, lies on the slider. All four edges belong to it.
  bool Covers(POINT point) const;

  // The left button went down on the slider: drags from where the pointer is now.
  void BeginDragAtPointer();
  // The pointer moved while dragging: sets the volume for where it is now.
  void DragToPointer();
  // The slider's own notification of a click: the pointer is where the press was, or near it.
  void OnClickNotification();
  // Drags from this position on, relative to the slider.
  void BeginVolumeDrag(int x, int y);
  void EndVolumeDrag();
  // Sets the volume for a position relative to the slider's left and top. Beyond the ends it is clamped.
  void HandleVolumeClick(int x, int y);
  // Hands percent on to the player; without one this is logged.
  void SetVlcVolume(int volume);
  // Serves WM_DRAWITEM of the slider.
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
