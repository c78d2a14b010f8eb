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

// The replaced functions.
decltype(&Gdiplus::DllExports::GdipCreateFromHDC) realCreateGraphics;
decltype(&Gdiplus::DllExports::GdipCreatePen1) realCreatePen;
decltype(&Gdiplus::DllExports::GdipCreateSolidFill) realCreateFill;
decltype(&Gdiplus::DllExports::GdipDeleteGraphics) realDeleteGraphics;
decltype(&Gdiplus::DllExports::GdipDeletePen) realDeletePen;
decltype(&Gdiplus::DllExports::GdipDeleteBrush) realDeleteBrush;
decltype(&Gdiplus::DllExports::GdipDisposeImage) realDisposeImage;

Gdiplus::GpStatus Created(const char* kind, Gdiplus::GpStatus status, const void* object) {
  createdObjects.push_back(kind);
  livingObjects.insert(object);
  return status;
}
Gdiplus::GpStatus WINAPI OnCreateGraphics(HDC dc, Gdiplus::GpGraphics** graphics) {
  const Gdiplus::GpStatus status = realCreateGraphics(dc, graphics);
  return Created("graphics", status, *graphics);
}
Gdiplus::GpStatus WINAPI OnCreatePen(Gdiplus::ARGB color, Gdiplus::REAL width, Gdiplus::GpUnit unit,
                                     Gdiplus::GpPen** pen) {
  const Gdiplus::GpStatus status = realCreatePen(color, width, unit, pen);
  return Created("pen", status, *pen);
}
Gdiplus::GpStatus WINAPI OnCreateFill(Gdiplus::ARGB color, Gdiplus::GpSolidFill** fill) {
  const Gdiplus::GpStatus status = realCreateFill(color, fill);
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
  return realDeleteGraphics(graphics);
}
Gdiplus::GpStatus WINAPI OnDeletePen(Gdiplus::GpPen* pen) {
  livingObjects.erase(pen);
  return realDeletePen(pen);
}
Gdiplus::GpStatus WINAPI OnDeleteBrush(Gdiplus::GpBrush* brush) {
  livingObjects.erase(brush);
  return realDeleteBrush(brush);
}
Gdiplus::GpStatus WINAPI OnDisposeImage(Gdiplus::GpImage* image) {
  livingObjects.erase(image);
  return realDisposeImage(image);
}

class GdiplusObjects : public testing::Test {
 protected:
  GdiplusObjects() {
    createdObjects.clear();
    livingObjects.clear();
    realCreateGraphics = createGraphics_.Original<decltype(realCreateGraphics)>();
    realCreatePen = createPen_.Original<decltype(realCreatePen)>();
    realCreateFill = createFill_.Original<decltype(realCreateFill)>();
    realDeleteGraphics = deleteGraphics_.Original<decltype(realDeleteGraphics)>();
    realDeletePen = deletePen_.Original<decltype(realDeletePen)>();
    realDeleteBrush = deleteBrush_.Original<decltype(realDeleteBrush)>();
    realDisposeImage = disposeImage_.Original<decltype(realDisposeImage)>();
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
  const ImportHook createGraphics_{"gdiplus.dll", "GdipCreateFromHDC", OnCreateGraphics};
  const ImportHook createPen_{"gdiplus.dll", "GdipCreatePen1", OnCreatePen};
  const ImportHook createFill_{"gdiplus.dll", "GdipCreateSolidFill", OnCreateFill};
  const ImportHook loadPicture_{"gdiplus.dll", "GdipLoadImageFromFile", OnLoadPicture};
  const ImportHook deleteGraphics_{"gdiplus.dll", "GdipDeleteGraphics", OnDeleteGraphics};
  const ImportHook deletePen_{"gdiplus.dll", "GdipDeletePen", OnDeletePen};
  const ImportHook deleteBrush_{"gdiplus.dll", "GdipDeleteBrush", OnDeleteBrush};
  const ImportHook disposeImage_{"gdiplus.dll", "GdipDisposeImage", OnDisposeImage};
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
