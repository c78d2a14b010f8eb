// The Flutter view's window. It is a child of the overlay and normally has the keyboard focus. Main thread.
#pragma once

#include <windows.h>

#include <memory>

#include "flutter_host/flutter_engine.h"

namespace vantro {

// Returns null without an engine or if the engine has no view. The returned window may already be destroyed.
inline HWND FlutterChild(const std::unique_ptr<FlutterEngine>& engine) {
  return engine ? engine->flutterWindow_ : nullptr;
}

// The same, but returns null for a destroyed window as well.
inline HWND LiveFlutterChild(const std::unique_ptr<FlutterEngine>& engine) {
  const HWND child = FlutterChild(engine);
  return child && IsWindow(child) ? child : nullptr;
}

}  // namespace vantro
