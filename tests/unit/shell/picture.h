// Renders into memory and compares with a picture that lies beside the tests, pixel by pixel.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vantro::test {

// Bitmap and device context of one size, filled with a colour that nothing of the shell paints, so that an untouched
// pixel shows.
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
  // How many pixels have the colour.
  int Count(COLORREF color) const;

  // Fails the current test unless every pixel equals the picture "<name>.png". A difference is told by its first pixel,
  // and what was drawn is left beside the test program as "<name>.actual.png". With VANTRO_UPDATE_PICTURES set in the
  // environment the picture is written instead, to be looked at before it is committed.
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
