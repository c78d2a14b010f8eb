// One running engine with its view, over the embedding's C interface.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>

#include "flutter_host/binary_messenger.h"
#include "flutter_host/embedding_api.h"
#include "flutter_host/flutter_bundle.h"

namespace vantro {

// Owns the embedding's controller, and with it the engine and the view's window. Main thread.
class FlutterViewController {
 public:
  // Makes an engine for the project and runs it in a view of the given size in pixels. Null when the embedding refuses.
  static std::unique_ptr<FlutterViewController> Create(int width, int height, const DartProject& project);
  // The engine's messenger, null without an engine. Channels over it fall silent when the controller goes.
  BinaryMessenger* messenger() const { return messenger_.get(); }
  // The view's window, null without a view or without a window.
  HWND ViewWindow() const;
  // Offers a top-level window's message to the engine and its plugins; the result when they took it.
  std::optional<LRESULT> HandleTopLevelWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

 private:
  explicit FlutterViewController(FlutterDesktopViewControllerRef controller);

  // Destroyed from the last to the first: the controller, by which the engine shuts down and the view's window goes,
  // before the messenger, whose handlers the embedding calls until then.
  std::shared_ptr<BinaryMessenger> messenger_;
  std::unique_ptr<FlutterDesktopViewController, decltype(&FlutterDesktopViewControllerDestroy)> controller_;
};

}  // namespace vantro
