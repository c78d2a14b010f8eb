// The host of one window's Flutter view.
#pragma once

#include <windows.h>

#include <filesystem>
#include <memory>
#include <optional>

#include "flutter_host/binary_messenger.h"

namespace vantro {

class FlutterViewController;

// Main thread. GetMessenger's result is also used from libvlc's threads, through the channel.
class FlutterEngine {
 public:
  FlutterEngine();
  ~FlutterEngine();

  // Checks and logs the bundle, makes the view controller and puts the view's window into the parent as a child. Called
  // once. False when the embedding gives no controller. A failing file system query throws std::filesystem errors.
  bool Initialize(HWND parentWindow);
  // The running engine's messenger, owned by the engine; null before Initialize or without an engine. A channel over it
  // that outlives the engine is inert.
  BinaryMessenger* GetMessenger();
  // Offers a top-level message to the view; a value when the engine took it.
  std::optional<LRESULT> HandleWindowMessage(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

  // "data" beside the executable.
  static std::filesystem::path DataDirectory();

  std::unique_ptr<FlutterViewController> viewController_;
  HWND parentWindow_ = nullptr;
  HWND flutterWindow_ = nullptr;  // the view's window, the "Flutter child" of the shell
  bool visible_ = true;
  double alpha_ = 1.0;
};

}  // namespace vantro
