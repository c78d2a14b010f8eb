// Renders into memory and compares pixel by pixel with a picture in the folder of the tests.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vantro::test {

// A bitmap and device context of a fixed size. The bitmap is filled with a colour that the shell never paints, so that
// a pixel that was not painted is visible.
class Canvas {
 public:
  static constexpr COLORREF kUntouched = RGB(255, 0, 255);

  Canvas(int width, int height);
  ~Canvas();
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  HDC Dc() const { return dc_; }
  RECT Area() const { return {0, 0, width_, height_}; }
  int Width() const { return width_; }
  int Height() const { return height_; }
  COLORREF Pixel(int x, int y) const;
  // Returns the number of pixels with the colour.
  int Count(COLORREF color) const;

  // Fails the current test unless every pixel equals the picture "<name>.png". Reports the first different pixel and
  // writes the drawn picture to "<name>.actual.png" beside the test program. If the environment variable
  // VANTRO_UPDATE_PICTURES is set, writes "<name>.png" instead. Look at it before you commit it.
  void ExpectEqualsPicture(const std::string& name) const;
  void SavePng(const std::wstring& path) const;

 private:
  int width_;
  int height_;
  HDC dc_;
  HBITMAP bitmap_;
  HGDIOBJ previousBitmap_;
  uint32_t* pixels_ = nullptr;  // top row first, 0xXXRRGGBB
};

}  // namespace vantro::test
