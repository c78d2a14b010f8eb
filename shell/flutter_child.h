// The Flutter view's window, which lies in the overlay and is the home of the keyboard focus. Main thread.
#pragma once

#include <windows.h>

#include <memory>

#include "flutter_host/flutter_engine.h"

namespace vantro {

// Null with no engine or with an engine without a view; the window may be gone.
inline HWND FlutterChild(const std::unique_ptr<FlutterEngine>& engine) {
  return engine ? engine->flutterWindow_ : nullptr;
}

// Null also for a window that is gone.
inline HWND LiveFlutterChild(const std::unique_ptr<FlutterEngine>& engine) {
  const HWND child = FlutterChild(engine);
  return child && IsWindow(child) ? child : nullptr;
}

}  // namespace vantro
