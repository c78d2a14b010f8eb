// The GDI+ objects with which the volume slider and the speaker are drawn.
#include <gtest/gtest.h>
#include <windows.h>

#include <set>
#include <string>
#include <vector>

#include "shell/gdiplus_drawing.h"
#include "shell/shell_ids.h"
#include "tests/support/import_hook.h"
#include "tests/unit/shell/picture.h"
#include "tests/unit/shell/shell_fixture.h"

namespace vantro {
namespace {

using test::Canvas;
using test::ImportHook;
using test::Inside;
using Lines = std::vector<std::string>;

// The kinds of the objects in the order of their creation, and the objects that are not deleted yet.
Lines createdObjects;
std::set<const void*> livingObjects;

template <typename Function, typename... Arguments>
Gdiplus::GpStatus PassToGdiplus(const char* name, Arguments... arguments) {
  return reinterpret_cast<Function*>(GetProcAddress(GetModuleHandleA("gdiplus.dll"), name))(arguments...);
}
Gdiplus::GpStatus Created(const char* kind, Gdiplus::GpStatus status, const void* object) {
  createdObjects.push_back(kind);
  livingObjects.insert(object);
  return status;
}
Gdiplus::GpStatus WINAPI OnCreateGraphics(HDC dc, Gdiplus::GpGraphics** graphics) {
  using Function = decltype(Gdiplus::DllExports::GdipCreateFromHDC);
  const Gdiplus::GpStatus status = PassToGdiplus<Function>("GdipCreateFromHDC", dc, graphics);
  return Created("graphics", status, *graphics);
}
Gdiplus::GpStatus WINAPI OnCreatePen(Gdiplus::ARGB color, Gdiplus::REAL width, Gdiplus::GpUnit unit,
                                     Gdiplus::GpPen** pen) {
  using Function = decltype(Gdiplus::DllExports::GdipCreatePen1);
  const Gdiplus::GpStatus status = PassToGdiplus<Function>("GdipCreatePen1", color, width, unit, pen);
  return Created("pen", status, *pen);
}
Gdiplus::GpStatus WINAPI OnCreateFill(Gdiplus::ARGB color, Gdiplus::GpSolidFill** fill) {
  using Function = decltype(Gdiplus::DllExports::GdipCreateSolidFill);
  const Gdiplus::GpStatus status = PassToGdiplus<Function>("GdipCreateSolidFill", color, fill);
  return Created("fill", status, *fill);
}
Gdiplus::GpStatus WINAPI OnLoadPicture(const WCHAR*, Gdiplus::GpImage** image) {
  Gdiplus::GpBitmap* bitmap = nullptr;
  const Gdiplus::GpStatus status =
      Gdiplus::DllExports::GdipCreateBitmapFromScan0(8, 8, 0, PixelFormat32bppRGB, nullptr, &bitmap);
  *image = bitmap;
  return Created("image", status, *image);
}
Gdiplus::GpStatus WINAPI OnDeleteGraphics(Gdiplus::GpGraphics* graphics) {
  livingObjects.erase(graphics);
  return PassToGdiplus<decltype(Gdiplus::DllExports::GdipDeleteGraphics)>("GdipDeleteGraphics", graphics);
}
Gdiplus::GpStatus WINAPI OnDeletePen(Gdiplus::GpPen* pen) {
  livingObjects.erase(pen);
  return PassToGdiplus<decltype(Gdiplus::DllExports::GdipDeletePen)>("GdipDeletePen", pen);
}
Gdiplus::GpStatus WINAPI OnDeleteBrush(Gdiplus::GpBrush* brush) {
  livingObjects.erase(brush);
  return PassToGdiplus<decltype(Gdiplus::DllExports::GdipDeleteBrush)>("GdipDeleteBrush", brush);
}
Gdiplus::GpStatus WINAPI OnDisposeImage(Gdiplus::GpImage* image) {
  livingObjects.erase(image);
  return PassToGdiplus<decltype(Gdiplus::DllExports::GdipDisposeImage)>("GdipDisposeImage", image);
}

class GdiplusObjects : public testing::Test {
 protected:
  GdiplusObjects() {
    createdObjects.clear();
    livingObjects.clear();
  }
  void Draw(const Canvas& canvas, UINT id) {
    DRAWITEMSTRUCT item{};
    item.CtlType = ODT_STATIC;
    item.CtlID = id;
    item.hDC = canvas.Dc();
    item.rcItem = canvas.Area();
    EXPECT_EQ(RoomPeer::DrawItem(window_, item), TRUE);
  }

  VantroWindow window_{GetModuleHandleW(nullptr)};
  const ImportHook hooks_[8] = {
      {"gdiplus.dll", "GdipCreateFromHDC", OnCreateGraphics},  {"gdiplus.dll", "GdipCreatePen1", OnCreatePen},
      {"gdiplus.dll", "GdipCreateSolidFill", OnCreateFill},    {"gdiplus.dll", "GdipLoadImageFromFile", OnLoadPicture},
      {"gdiplus.dll", "GdipDeleteGraphics", OnDeleteGraphics}, {"gdiplus.dll", "GdipDeletePen", OnDeletePen},
      {"gdiplus.dll", "GdipDeleteBrush", OnDeleteBrush},       {"gdiplus.dll", "GdipDisposeImage", OnDisposeImage},
  };
};

TEST_F(GdiplusObjects, OfTheSliderAreDeletedAfterItsPaint) {
  Inside(window_).volume_ = 50;
  Draw(Canvas(80, 20), kVolumeControlId);
  EXPECT_EQ(createdObjects, (Lines{"graphics", "pen", "fill"}));
  EXPECT_TRUE(livingObjects.empty());
}

TEST_F(GdiplusObjects, OfTheEmptySliderAreDeletedAfterItsPaint) {
  Inside(window_).volume_ = 0;
  Draw(Canvas(80, 20), kVolumeControlId);
  EXPECT_EQ(createdObjects, (Lines{"graphics", "pen"}));
  EXPECT_TRUE(livingObjects.empty());
}

TEST_F(GdiplusObjects, OfTheSpeakersPictureAreDeletedAfterItsPaint) {
  Draw(Canvas(20, 20), kSpeakerIconId);
  EXPECT_EQ(createdObjects, (Lines{"image", "graphics"}));
  EXPECT_TRUE(livingObjects.empty());
}

}  // namespace
}  // namespace vantro
