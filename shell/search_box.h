// The search box: waits for a pause in the typing, then sends the text to the interface.
//
// A main window creates one before its native window. Main thread.
#pragma once

#include <windows.h>

#include <memory>

#include "channel/method_channel_handler.h"
#include "shell/title_bar.h"

namespace vantro {

class SearchBox {
 public:
  // All references are to members of the owner. They are read at each use. The handle and the handler are null until
  // the owner's start has set them.
  SearchBox(const HWND& mainWindow, const TitleBar& titleBar, const std::unique_ptr<MethodChannelHandler>& handler);
  SearchBox(const SearchBox&) = delete;
  SearchBox& operator=(const SearchBox&) = delete;

  HWND Window() const { return titleBar_.Controls().searchBox_; }

  // Handles a change of the text: restarts the wait.
  void HandleSearchInput();
  // Handles the end of the wait: sends the text to the interface. Without box or channel nothing is sent.
  void OnSearchDebounceTimer();
  // Cancels a wait without sending.
  void StopDebounceTimer();
  // Records a press of the left button on the main window. isOnBox says whether it was on the box.
  void NoteLeftButtonDown(bool isOnBox) { searchBoxClicked_ = isOnBox; }

 private:
  const HWND& hwnd_;
  const TitleBar& titleBar_;
  const std::unique_ptr<MethodChannelHandler>& methodChannelHandler_;
  UINT_PTR searchDebounceTimer_ = 0;  // 0 while the timer does not run
  bool searchBoxClicked_ = false;     // never read

  friend struct RoomPeer;
};

}  // namespace vantro
