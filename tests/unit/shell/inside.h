// What a window keeps to itself, for tests that set it up or look at it.
#pragma once

#include <windows.h>

#include <string>

#include "shell/flutter_child.h"
#include "shell/vantro_window.h"

namespace vantro {

// The one friend of the rooms.
struct RoomPeer {
  static TitleBarControls& Controls(VantroWindow& window) { return window.titleBar_.controls_; }
  static HWND& Overlay(VantroWindow& window) { return window.overlay_.flutterHostWindow_; }
  static bool& Syncing(VantroWindow& window) { return window.overlay_.isSyncingOverlay_; }
  static HHOOK& Hook(VantroWindow& window) { return window.overlay_.windowHook_; }
  static HBRUSH& Brush(VantroWindow& window) { return window.titleBar_.titleBarBrush_; }
};

}  // namespace vantro

namespace vantro::test {

// The private state of a window's rooms under the names of the members, whichever room holds them.
struct WindowInside {
  HWND& flutterHostWindow_;
  HWND& searchBox_;
  HWND& fileButton_;
  HWND& helpButton_;
  HWND& closeButton_;
  HWND& maximizeButton_;
  HWND& minimizeButton_;
  HWND& volumeControl_;
  HWND& speakerIcon_;
  HWND& appIconStatic_;
  HWND& titleStatic_;
  int& width_;
  int& height_;
  bool& isFullscreen_;
  bool& alwaysOnTop_;
  bool& alwaysOnTopThisWindow_;
  bool& searchBoxClicked_;
  RECT& savedWindowRect_;
  DWORD& savedStyle_;
  DWORD& savedExStyle_;
  std::string& vlcHwAccel_;
  std::string& vlcAudioOutput_;
  std::string& vlcDeinterlace_;
  bool& vlcEqualizerEnabled_;
  bool& vlcCompressorEnabled_;
  bool& isSyncingOverlay_;
  int& volume_;
  bool& isVolumeDragging_;
  bool& showVolumePercent_;
  HHOOK& windowHook_;
  UINT_PTR& searchDebounceTimer_;
  UINT_PTR& titleBarAutoHideTimer_;
  UINT_PTR& mouseTrackingTimer_;
  bool& isTitleBarVisible_;
  bool& isMouseInTopArea_;
  HBRUSH& titleBarBrush_;
  std::unique_ptr<vod_thumbnail::VodThumbnailWorkerPlugin>& vodThumbnailPlugin_;
};

inline WindowInside Inside(VantroWindow& window) {
  return {RoomPeer::Overlay(window),
          RoomPeer::Controls(window).searchBox_,
          RoomPeer::Controls(window).fileButton_,
          RoomPeer::Controls(window).helpButton_,
          RoomPeer::Controls(window).closeButton_,
          RoomPeer::Controls(window).maximizeButton_,
          RoomPeer::Controls(window).minimizeButton_,
          RoomPeer::Controls(window).volumeControl_,
          RoomPeer::Controls(window).speakerIcon_,
          RoomPeer::Controls(window).appIconStatic_,
          RoomPeer::Controls(window).titleStatic_,
          window.width_,
          window.height_,
          window.isFullscreen_,
          window.alwaysOnTop_,
          window.alwaysOnTopThisWindow_,
          window.searchBoxClicked_,
          window.savedWindowRect_,
          window.savedStyle_,
          window.savedExStyle_,
          window.vlcHwAccel_,
          window.vlcAudioOutput_,
          window.vlcDeinterlace_,
          window.vlcEqualizerEnabled_,
          window.vlcCompressorEnabled_,
          RoomPeer::Syncing(window),
          window.volume_,
          window.isVolumeDragging_,
          window.showVolumePercent_,
          RoomPeer::Hook(window),
          window.searchDebounceTimer_,
          window.titleBarAutoHideTimer_,
          window.mouseTrackingTimer_,
          window.isTitleBarVisible_,
          window.isMouseInTopArea_,
          RoomPeer::Brush(window),
          window.vodThumbnailPlugin_};
}

}  // namespace vantro::test
