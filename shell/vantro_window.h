// One top-level window: the native window with its chrome, its player, its Flutter view and its channels.
//
// Main thread. All handles are plain Win32 handles, null when absent. The system destroys child and owned windows with
// hwnd_, so every use of a handle that may be destroyed tests it with IsWindow.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "channel/method_channel_handler.h"
#include "flutter_host/flutter_engine.h"
#include "player/vlc_player.h"
#include "services/vod_thumbnail_worker_plugin.h"
#include "shell/flutter_overlay.h"
#include "shell/fullscreen.h"
#include "shell/keyboard_router.h"
#include "shell/mouse_router.h"
#include "shell/search_box.h"
#include "shell/title_bar.h"
#include "shell/volume_control.h"
#include "shell/window_commands.h"
#include "shell/window_metrics.h"

namespace vantro {

class VantroWindow {
 public:
  explicit VantroWindow(HINSTANCE hInstance);
  ~VantroWindow();
  VantroWindow(const VantroWindow&) = delete;
  VantroWindow& operator=(const VantroWindow&) = delete;

  // Creates the native window, hidden, and everything in it. Returns false on failure; the object can then only be
  // destroyed.
  bool Initialize();

  // The procedure of the window class. Passes each message to the object of its native window.
  static LRESULT CALLBACK WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

  // Enters fullscreen, or leaves it.
  void ToggleFullscreen() { fullscreen_.ToggleFullscreen(); }
  bool isFullscreen() const { return fullscreen_.IsFullscreen(); }
  // Handles a move of the pointer over one of the two native windows. In fullscreen it may show the bar or start its
  // auto-hide timer.
  void FollowPointer(TopAreaCaller caller) { fullscreen_.FollowPointer(caller); }

  // The overlay, for the hook, and its native window.
  FlutterOverlay& Overlay() { return overlay_; }
  HWND flutterHostWindow() const { return overlay_.Window(); }

  HINSTANCE Instance() const { return hInstance_; }
  const WindowSize& Size() const { return size_; }

  // The window that was constructed last. The static hook and overlay procedures reach a window only through it. Null
  // after that window's object is destroyed, even while older windows exist.
  static VantroWindow* instance_;

  // Read by the other parts of the host.
  HWND hwnd_ = nullptr;
  std::unique_ptr<VLCPlayer> vlcPlayer_;
  std::unique_ptr<FlutterEngine> flutterEngine_;
  std::unique_ptr<MethodChannelHandler> methodChannelHandler_;
  bool isClosing_ = false;  // set on WM_CLOSE, never cleared

 private:
  // The steps of Initialize.
  bool InitializeWindow();
  bool InitializeVLC();
  bool InitializeFlutter();
  bool RegisterWindowClass();
  bool CreateMethodChannelHandler();
  void CreateThumbnailWorker();

  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
  // Offers the message to the view, then to the system.
  LRESULT OnDefault(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT OnDestroy();
  LRESULT OnMove();
  LRESULT OnSize();
  LRESULT OnPaint();
  LRESULT OnNcPaint();
  LRESULT OnClose(WPARAM wParam, LPARAM lParam);
  LRESULT OnGetMinMaxInfo(LPARAM lParam);
  LRESULT OnHitTest(LPARAM lParam);
  LRESULT OnCommand(WPARAM wParam, LPARAM lParam);
  LRESULT OnTimer(WPARAM timerId);
  LRESULT OnControlColor(WPARAM wParam);
  LRESULT OnDrawItem(LPARAM lParam);
  LRESULT OnNewWindowRequest();

  HINSTANCE hInstance_;
  std::wstring className_ = L"VantroWindowClass";
  std::wstring windowTitle_ = L"Vantro";
  WindowSize size_;
  std::unique_ptr<vod_thumbnail::VodThumbnailWorkerPlugin> vodThumbnailPlugin_;
  bool reservedFlag_ = true;  // these two are never read
  double reservedFactor_ = 1.0;
  ULONG_PTR gdiplusToken_ = 0;
  UINT_PTR reservedTimerId_ = 0;  // never set; the destructor still tests it
  HBRUSH backgroundBrush_ = nullptr;

  // The rooms: the parts of the window, each with private state.
  TitleBar titleBar_{hwnd_};
  FlutterOverlay overlay_{hwnd_, flutterEngine_};
  Fullscreen fullscreen_{hwnd_, size_, titleBar_, overlay_};
  VolumeControl volumeControl_{hwnd_, titleBar_, vlcPlayer_};
  SearchBox search_{hwnd_, titleBar_, methodChannelHandler_};
  WindowCommands commands_{*this, overlay_, fullscreen_, volumeControl_, search_};
  KeyboardRouter keyboard_{hwnd_, titleBar_, overlay_, fullscreen_, flutterEngine_};
  MouseRouter mouse_{hwnd_, fullscreen_, volumeControl_, search_, flutterEngine_};

  friend struct RoomPeer;
};

}  // namespace vantro
