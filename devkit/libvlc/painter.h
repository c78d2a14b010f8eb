// The one Windows thread that draws every player's newest picture into its window.
//
// The window belongs to another thread that may hide or destroy it at any time. Each drawing therefore reads the
// window's state again, and no lock is held meanwhile.
#pragma once

#include <functional>
#include <memory>

namespace vantro::devlib {

class Canvas;

class Painter {
 public:
  // Shows `canvas` until it is closed. Windows threads only: the first call makes the thread. Returns false if that
  // failed.
  static bool Add(std::shared_ptr<Canvas> canvas);

  // Runs `task`, which must not block, on the painter's thread. For native threads, which cannot call Windows.
  static void Post(std::function<void()> task);

  // Reports that a canvas has something new. Any thread.
  static void Wake();
};

}  // namespace vantro::devlib
