// The windows that pictures are drawn in: a child of the program's window, or a separate window for a player without
// one. One Windows thread of the library makes and destroys them all and handles their messages.
//
// While it makes or destroys a window, that thread sends messages to the thread of the program's window and waits for
// them. A program's thread that waits for libvlc meanwhile has to handle sent messages, otherwise both wait forever.
#pragma once

#include <memory>

namespace vantro::devlib {

class Canvas;

class PictureWindows {
 public:
  // Starts the thread if it is not running. Windows threads only. Returns false if the thread could not be made.
  static bool Start();

  // Makes the window of `canvas` for pictures of that size and waits until it exists. When the program's window is
  // hidden, no window is made and no pictures are shown before the next Open. Any thread except the windows' own.
  static void Open(Canvas* canvas, unsigned width, unsigned height);
  // Destroys the window and waits until it is destroyed.
  static void Close(Canvas* canvas);

  // Soon makes the child as large as the program's window again. Any Windows thread.
  static void Fit(void* child);
};

}  // namespace vantro::devlib
