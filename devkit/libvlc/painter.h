// The one Windows thread that draws every player's newest picture into its window.
//
// The window belongs to another thread that may hide or destroy it at any time: each drawing asks anew what the window
// is like and holds no lock meanwhile.
#pragma once

#include <functional>
#include <memory>

namespace vantro::devlib {

class Canvas;

class Painter {
 public:
  // Shows `canvas` from now on until it is closed. Windows threads only: the first call makes the thread. False if that
  // failed.
  static bool Add(std::shared_ptr<Canvas> canvas);

  // Runs `task`, which must not wait, on the painter's thread: for native threads, which can't call Windows.
  static void Post(std::function<void()> task);

  // A canvas has something new. Any thread.
  static void Wake();
};

}  // namespace vantro::devlib
