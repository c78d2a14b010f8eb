// The one Windows thread that draws every player's newest picture into its window.
//
// The window belongs to another thread that may move, hide or destroy it at any time: each drawing asks anew what the
// window is like and holds no lock meanwhile.
#pragma once

#include <memory>

namespace vantro::devlib {

class Canvas;

class Painter {
 public:
  // Shows `canvas` from now on until it is closed. Windows threads only: the first call makes the thread. False if that
  // failed.
  static bool Add(std::shared_ptr<Canvas> canvas);

  // A canvas has something new. Any thread.
  static void Wake();
};

}  // namespace vantro::devlib
