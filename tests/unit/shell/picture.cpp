#include "tests/unit/shell/picture.h"

#include <gtest/gtest.h>
#include <objidl.h>
// After objidl.h, because it needs its types.
#include <gdiplus.h>

#include <algorithm>
#include <cstdlib>
#include <iomanip>
#include <optional>

#include "common/text.h"

namespace vantro::test {

namespace {

namespace gdip = Gdiplus::DllExports;

constexpr uint32_t kRgbMask = 0xFFFFFF;
constexpr CLSID kPngEncoder = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

COLORREF ColorFrom(uint32_t pixel) { return RGB((pixel >> 16) & 0xFF, (pixel >> 8) & 0xFF, pixel & 0xFF); }

// Starts GDI+ for the whole program.
void StartGdiplus() {
  static const bool started = [] {
    ULONG_PTR token;
    const Gdiplus::GdiplusStartupInput input;
    return Gdiplus::GdiplusStartup(&token, &input, nullptr) == Gdiplus::Ok;
  }();
  ASSERT_TRUE(started);
}

struct Pixels {
  int width;
  int height;
  std::vector<uint32_t> values;
};

std::optional<Pixels> LoadPng(const std::wstring& path) {
  Gdiplus::GpBitmap* bitmap = nullptr;
  if (gdip::GdipCreateBitmapFromFile(path.c_str(), &bitmap) != Gdiplus::Ok) return std::nullopt;
  UINT width = 0, height = 0;
  gdip::GdipGetImageWidth(bitmap, &width);
  gdip::GdipGetImageHeight(bitmap, &height);
  Pixels pixels{static_cast<int>(width), static_cast<int>(height), {}};
  for (int y = 0; y < pixels.height; ++y) {
    for (int x = 0; x < pixels.width; ++x) {
      Gdiplus::ARGB color = 0;
      gdip::GdipBitmapGetPixel(bitmap, x, y, &color);
      pixels.values.push_back(color & kRgbMask);
    }
  }
  gdip::GdipDisposeImage(bitmap);
  return pixels;
}

std::wstring PicturePath(const std::string& name) { return WideFromNarrow(VANTRO_PICTURES "/" + name + ".png"); }

}  // namespace

Canvas::Canvas(int width, int height) : width_(width), height_(height), dc_(CreateCompatibleDC(nullptr)) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;  // top row first
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  bitmap_ = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  pixels_ = static_cast<uint32_t*>(bits);
  previousBitmap_ = SelectObject(dc_, bitmap_);
  const HBRUSH untouched = CreateSolidBrush(kUntouched);
  const RECT area = Area();
  FillRect(dc_, &area, untouched);
  DeleteObject(untouched);
}

Canvas::~Canvas() {
  SelectObject(dc_, previousBitmap_);
  DeleteObject(bitmap_);
  DeleteDC(dc_);
}

COLORREF Canvas::Pixel(int x, int y) const {
  GdiFlush();
  return ColorFrom(pixels_[y * width_ + x]);
}

int Canvas::Count(COLORREF color) const {
  GdiFlush();
  return static_cast<int>(std::count_if(pixels_, pixels_ + width_ * height_,
                                        [&](uint32_t pixel) { return ColorFrom(pixel) == color; }));
}

void Canvas::ExpectEqualsPicture(const std::string& name) const {
  StartGdiplus();
  if (std::getenv("VANTRO_UPDATE_PICTURES")) return SavePng(PicturePath(name));
  const std::optional<Pixels> expected = LoadPng(PicturePath(name));
  ASSERT_TRUE(expected) << "no picture " << name;
  ASSERT_EQ(expected->width, width_);
  ASSERT_EQ(expected->height, height_);
  GdiFlush();
  for (int i = 0; i < width_ * height_; ++i) {
    if ((pixels_[i] & kRgbMask) == expected->values[static_cast<size_t>(i)]) continue;
    SavePng(WideFromNarrow(name + ".actual.png"));
    FAIL() << name << ": pixel " << i % width_ << "," << i / width_ << " is " << std::hex << (pixels_[i] & kRgbMask)
           << " and was to be " << expected->values[static_cast<size_t>(i)];
  }
}

void Canvas::SavePng(const std::wstring& path) const {
  StartGdiplus();
  GdiFlush();
  Gdiplus::GpBitmap* bitmap = nullptr;
  gdip::GdipCreateBitmapFromScan0(width_, height_, width_ * 4, PixelFormat32bppRGB,
                                  reinterpret_cast<BYTE*>(pixels_), &bitmap);
  EXPECT_EQ(gdip::GdipSaveImageToFile(bitmap, path.c_str(), &kPngEncoder, nullptr), Gdiplus::Ok);
  gdip::GdipDisposeImage(bitmap);
}

}  // namespace vantro::test
