// A running engine with its view, through the embedding's C interface.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>

#include "flutter_host/binary_messenger.h"
#include "flutter_host/embedding_api.h"
#include "flutter_host/flutter_bundle.h"

namespace vantro {

// Owns the embedding's controller, which owns the engine and the view's window. Main thread.
class FlutterViewController {
 public:
  // Makes an engine for the project and runs it in a view of the given size in pixels. Null if the embedding fails.
  static std::unique_ptr<FlutterViewController> Create(int width, int height, const DartProject& project);
  // Returns the engine's messenger, or null. Its channels do nothing once the controller is destroyed.
  BinaryMessenger* messenger() const { return messenger_.get(); }
  // Returns the view's window, or null without a view or window.
  HWND ViewWindow() const;
  // Passes a message of the top-level window to the engine and its plugins. Returns the result if they handled it.
  std::optional<LRESULT> HandleTopLevelWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

 private:
  explicit FlutterViewController(FlutterDesktopViewControllerRef controller);

  // The last member is destroyed first. The controller, whose end shuts down the engine and destroys the view's window,
  // must go before the messenger, whose handlers the embedding calls until then.
  std::shared_ptr<BinaryMessenger> messenger_;
  std::unique_ptr<FlutterDesktopViewController, decltype(&FlutterDesktopViewControllerDestroy)> controller_;
};

}  // namespace vantro
