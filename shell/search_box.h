// The search box: waits for the typing to pause, then hands the text to the interface.
//
// A window makes one before its native window. Main thread.
#pragma once

#include <windows.h>

#include <memory>

#include "channel/method_channel_handler.h"
#include "shell/title_bar.h"

namespace vantro {

class SearchBox {
 public:
  // All are the owner's own and read anew at each use; handle and handler are null until its start has made them.
  SearchBox(const HWND& mainWindow, const TitleBar& titleBar, const std::unique_ptr<MethodChannelHandler>& handler);
  SearchBox(const SearchBox&) = delete;
  SearchBox& operator=(const SearchBox&) = delete;

  HWND Window() const { return titleBar_.Controls().searchBox_; }

  // Its text changed: starts the wait anew.
  void HandleSearchInput();
  // The pause has come: sends the text to the interface. Without box or channel nothing is sent.
  void OnSearchDebounceTimer();
  // Ends a wait without sending.
  void StopDebounceTimer();
  // The left button went down on the main window; tells whether it was on the box.
  void NoteLeftButtonDown(bool isOnBox) { searchBoxClicked_ = isOnBox; }

 private:
  const HWND& hwnd_;
  const TitleBar& titleBar_;
  const std::unique_ptr<MethodChannelHandler>& methodChannelHandler_;
  UINT_PTR searchDebounceTimer_ = 0;  // 0 while the timer does not run
  bool searchBoxClicked_ = false;     // read by nothing

  friend struct RoomPeer;
};

}  // namespace vantro
