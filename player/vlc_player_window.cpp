// The single view's video window: its creation, its size, and its order below the overlay.
#include <windows.h>

#include <algorithm>

#include "common/log.h"
#include "common/win32_geometry.h"
#include "player/vlc_player.h"

namespace vantro {

namespace {

constexpr DWORD kVideoWindowStyle = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;

constexpr UINT kKeepPlaceAndFocus = SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE;
constexpr UINT kKeepPlaceAndShow = kKeepPlaceAndFocus | SWP_SHOWWINDOW;

void StackWindow(HWND window, HWND insertAfter, UINT flags) { SetWindowPos(window, insertAfter, 0, 0, 0, 0, flags); }

}  // namespace

void VLCPlayer::CreateVideoWindow() {
  if (!RegisterVlcHostWindowClass()) return;
  const Size parent = ClientSize(ParentWindow());
  const int width = std::max(1, parent.width);
  const int height = std::max(1, parent.height);
  vlcWindow_ = CreateWindowExW(WS_EX_NOPARENTNOTIFY, kVlcHostWindowClass, L"", kVideoWindowStyle, 0, 0, width, height,
                               ParentWindow(), nullptr, GetModuleHandleW(nullptr), nullptr);
  if (!vlcWindow_) {
    vlcWindow_ = ParentWindow();
    LOG_WARNING("Failed to create VLC child window, using parent window");
    return;
  }
  SetWindowPos(vlcWindow_, HWND_BOTTOM, 0, 0, width, height, SWP_NOACTIVATE);
  LOG_INFO("*** CORE FIX *** Created VLC child window: %p (%dx%d) for original player", static_cast<void*>(vlcWindow_),
           width, height);
}

void VLCPlayer::Resize(int x, int y, int width, int height) {
  LOG_INFO("[Resize] Called with %dx%d isMultiViewMode=%d", width, height, IsMultiViewMode());
  if (IsMultiViewMode()) {
    LOG_INFO("[Resize] In multiview mode - updating grid layout for new size");
    UpdateGridLayout();
    return;
  }
  if (!vlcWindow_ || vlcWindow_ == ParentWindow()) return;
  MoveWindow(vlcWindow_, x, y, width, height, TRUE);
  EnsureZOrder();
  LOG_INFO("[Resize] Resized VLC window to %dx%d", width, height);
}

void VLCPlayer::EnsureZOrder() {
  if (!vlcWindow_ || vlcWindow_ == ParentWindow()) return;
  LOG_INFO("EnsureZOrder: parent=%p vlc=%p overlay=%p", static_cast<void*>(ParentWindow()),
           static_cast<void*>(vlcWindow_), static_cast<void*>(overlayWindow_));
  if (!overlayWindow_ || !IsWindow(overlayWindow_)) {
    if (IsWindow(vlcWindow_)) StackWindow(vlcWindow_, HWND_NOTOPMOST, kKeepPlaceAndFocus);
    return;
  }
  if (GetWindowLongPtrA(overlayWindow_, GWL_STYLE) & WS_CHILD) {
    StackWindow(vlcWindow_, HWND_BOTTOM, kKeepPlaceAndFocus);
    StackWindow(overlayWindow_, vlcWindow_, kKeepPlaceAndShow);
    StackWindow(overlayWindow_, HWND_TOP, kKeepPlaceAndShow);
    return;
  }
  if (IsWindow(vlcWindow_)) StackWindow(vlcWindow_, HWND_NOTOPMOST, kKeepPlaceAndFocus);
  StackWindow(overlayWindow_, vlcWindow_, kKeepPlaceAndShow);
}

}  // namespace vantro
