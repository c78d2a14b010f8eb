// The windows that pictures are drawn in: a child of the window that the program gave, or a window of its own for a
// player without one. One Windows thread of the library makes and destroys them all, and handles their messages.
//
// While a window is made or destroyed, that thread sends messages to the thread of the program's window and waits for
// them. A program's thread that waits for libvlc meanwhile has to serve sent messages, else both wait for good.
#pragma once

#include <memory>

namespace vantro::devlib {

class Canvas;

class PictureWindows {
 public:
  // Starts the thread if it does not run. Windows threads only. False if no thread could be made.
  static bool Start();

  // Gives `canvas` its window, for pictures of that size, and waits until it stands. A program's window that is hidden
  // gets none, and no pictures before the next Open. Any thread that is not the windows' own.
  static void Open(Canvas* canvas, unsigned width, unsigned height);
  // Takes the window away and waits until it is gone.
  static void Close(Canvas* canvas);

  // Makes the child as large as the program's window again, soon. Any Windows thread.
  static void Fit(void* child);
};

}  // namespace vantro::devlib
