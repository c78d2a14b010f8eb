// The host of one window's Flutter view.
#pragma once

#include <windows.h>

#include <filesystem>
#include <memory>
#include <optional>

#include "flutter_host/binary_messenger.h"

namespace vantro {

class FlutterViewController;

// Main thread. The messenger of GetMessenger is also used on libvlc's threads, through the channel.
class FlutterEngine {
 public:
  FlutterEngine();
  ~FlutterEngine();

  // Checks and logs the bundle, makes the view controller, and puts the view's window into the parent as a child. May
  // be called once. Returns false if the embedding makes no controller. A failing file system query throws
  // std::filesystem::filesystem_error.
  bool Initialize(HWND parentWindow);
  // Returns the messenger of the running engine, which owns it; null before Initialize or without an engine. A channel
  // that outlives the engine does nothing.
  BinaryMessenger* GetMessenger();
  // Passes a message of the top-level window to the view. Returns a value if the engine handled it.
  std::optional<LRESULT> HandleWindowMessage(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

  // Returns the directory "data" beside the executable.
  static std::filesystem::path DataDirectory();

  std::unique_ptr<FlutterViewController> viewController_;
  HWND parentWindow_ = nullptr;
  HWND flutterWindow_ = nullptr;  // the view's window, the "Flutter child" of the shell
  bool visible_ = true;
  double alpha_ = 1.0;
};

}  // namespace vantro
