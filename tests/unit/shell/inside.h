// Access to the private state of a window, for tests that set or read it.
#pragma once

#include <windows.h>

#include <string>

#include "shell/flutter_child.h"
#include "shell/vantro_window.h"

namespace vantro::test {

// The private members of a window and its rooms, each under the name of the member.
struct WindowInside {
  TitleBar& titleBar_;
  FlutterOverlay& overlay_;
  Fullscreen& fullscreen_;
  VolumeControl& volumeSlider_;
  SearchBox& search_;
  WindowCommands& commands_;
  WindowSettings& settings_;
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
  std::wstring& className_;
  bool& reservedFlag_;
  double& reservedFactor_;
  UINT_PTR& reservedTimerId_;
};

}  // namespace vantro::test

namespace vantro {

// The only friend of the window and its rooms.
struct RoomPeer {
  // The steps of a start, one by one.
  static bool InitializeWindow(VantroWindow& window) { return window.InitializeWindow(); }
  static bool InitializeVLC(VantroWindow& window) { return window.InitializeVLC(); }
  static bool InitializeFlutter(VantroWindow& window) { return window.InitializeFlutter(); }

  // Handles WM_DRAWITEM for an object without a native window.
  static LRESULT DrawItem(VantroWindow& window, const DRAWITEMSTRUCT& item) {
    return window.OnDrawItem(reinterpret_cast<LPARAM>(&item));
  }
  static test::WindowInside Inside(VantroWindow& window) {
    return {window.titleBar_,
            window.overlay_,
            window.fullscreen_,
            window.volumeControl_,
            window.search_,
            window.commands_,
            window.commands_.settings_,
            window.overlay_.flutterHostWindow_,
            window.titleBar_.controls_.searchBox_,
            window.titleBar_.controls_.fileButton_,
            window.titleBar_.controls_.helpButton_,
            window.titleBar_.controls_.closeButton_,
            window.titleBar_.controls_.maximizeButton_,
            window.titleBar_.controls_.minimizeButton_,
            window.titleBar_.controls_.volumeControl_,
            window.titleBar_.controls_.speakerIcon_,
            window.titleBar_.controls_.appIconStatic_,
            window.titleBar_.controls_.titleStatic_,
            window.size_.width_,
            window.size_.height_,
            window.fullscreen_.isFullscreen_,
            window.commands_.settings_.alwaysOnTop_,
            window.commands_.alwaysOnTopThisWindow_,
            window.search_.searchBoxClicked_,
            window.fullscreen_.savedWindowRect_,
            window.fullscreen_.savedStyle_,
            window.fullscreen_.savedExStyle_,
            window.commands_.settings_.vlcHwAccel_,
            window.commands_.settings_.vlcAudioOutput_,
            window.commands_.settings_.vlcDeinterlace_,
            window.commands_.settings_.vlcEqualizerEnabled_,
            window.commands_.settings_.vlcCompressorEnabled_,
            window.overlay_.isSyncingOverlay_,
            window.volumeControl_.volume_,
            window.volumeControl_.isVolumeDragging_,
            window.volumeControl_.showVolumePercent_,
            window.overlay_.windowHook_,
            window.search_.searchDebounceTimer_,
            window.fullscreen_.titleBarAutoHideTimer_,
            window.fullscreen_.mouseTrackingTimer_,
            window.fullscreen_.isTitleBarVisible_,
            window.fullscreen_.isMouseInTopArea_,
            window.titleBar_.titleBarBrush_,
            window.vodThumbnailPlugin_,
            window.className_,
            window.reservedFlag_,
            window.reservedFactor_,
            window.reservedTimerId_};
  }
};

}  // namespace vantro

namespace vantro::test {

inline WindowInside Inside(VantroWindow& window) { return RoomPeer::Inside(window); }

}  // namespace vantro::test
