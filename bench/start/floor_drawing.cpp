// Draws the host's controls with the same calls.
#include <windows.h>
// After windows.h, whose types it uses.
#include <objidl.h>
// After both.
#include <gdiplus.h>

#include <iterator>
#include <string>

#include "bench/start/floor_windows.h"

namespace floor_program {

namespace {

namespace gdip = Gdiplus::DllExports;

constexpr UINT kVolume = 1001;
constexpr UINT kSpeaker = 1002;

void Lines(HDC dc, int x, int y, std::initializer_list<POINT> points) {
  bool begin = true;
  for (const POINT& point : points) {
    if (begin)
      MoveToEx(dc, x + point.x, y + point.y, nullptr);
    else
      LineTo(dc, x + point.x, y + point.y);
    begin = false;
  }
}

void DrawButton(const DRAWITEMSTRUCT& item) {
  const int x = (item.rcItem.left + item.rcItem.right) / 2;
  const int y = (item.rcItem.top + item.rcItem.bottom) / 2;
  const HPEN pen = CreatePen(PS_SOLID, 1, RGB(255, 255, 255));
  const HGDIOBJ before = SelectObject(item.hDC, pen);
  if (item.CtlID == 999) {
    Lines(item.hDC, x, y, {{-5, -5}, {6, 6}});
    Lines(item.hDC, x, y, {{5, -5}, {-6, 6}});
  }
  if (item.CtlID == 998) Lines(item.hDC, x, y, {{-5, -5}, {5, -5}, {5, 5}, {-5, 5}, {-5, -5}});
  if (item.CtlID == 997) Lines(item.hDC, x, y, {{-5, 0}, {6, 0}});
  SelectObject(item.hDC, before);
  DeleteObject(pen);
  if (item.CtlID != 40010 && item.CtlID != 40011) return;
  RECT area = item.rcItem;
  SetTextColor(item.hDC, RGB(255, 255, 255));
  SetBkMode(item.hDC, TRANSPARENT);
  DrawTextW(item.hDC, item.CtlID == 40010 ? L"File" : L"Help", -1, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
}

// Looks for the picture files without finding them, because the program has none beside it.
void LookForSpeakerPictures() {
  wchar_t folder[MAX_PATH], program[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, folder);
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  const std::wstring working = std::wstring(folder) + L"\\";
  const std::wstring beside = std::wstring(program).substr(0, std::wstring(program).rfind(L'\\'));
  for (const std::wstring& path : {working + L"speaker.png", beside + L"\\img\\speaker.png"}) {
    Gdiplus::GpImage* image = nullptr;
    if (gdip::GdipLoadImageFromFile(path.c_str(), &image) == Gdiplus::Ok) gdip::GdipDisposeImage(image);
  }
  for (const std::wstring& path : {working + L"speaker.ico", beside + L"\\speaker.ico"}) {
    LoadImageW(nullptr, path.c_str(), IMAGE_ICON, 0, 0, LR_LOADFROMFILE | LR_DEFAULTSIZE);
  }
}

void DrawSpeaker(const DRAWITEMSTRUCT& item) {
  LookForSpeakerPictures();
  const LONG x = (item.rcItem.left + item.rcItem.right) / 2;
  const LONG y = (item.rcItem.top + item.rcItem.bottom) / 2;
  const HPEN pen = CreatePen(PS_SOLID, 2, RGB(255, 255, 255));
  const HBRUSH brush = CreateSolidBrush(RGB(255, 255, 255));
  const RECT body{x - 4, y - 3, x - 1, y + 3};
  FillRect(item.hDC, &body, brush);
  const HGDIOBJ before = SelectObject(item.hDC, pen);
  const POINT cone[] = {{x - 1, y - 3}, {x + 3, y - 1}, {x + 3, y + 1}, {x - 1, y + 3}};
  Polyline(item.hDC, cone, static_cast<int>(std::size(cone)));
  Lines(item.hDC, x, y, {{5, -1}, {5, 1}});
  Lines(item.hDC, x, y, {{7, -2}, {7, 2}});
  SelectObject(item.hDC, before);
  DeleteObject(brush);
  DeleteObject(pen);
}

void DrawWedge(const DRAWITEMSTRUCT& item) {
  const RECT& area = item.rcItem;
  const Gdiplus::GpPoint wedge[] = {{area.left, area.bottom - 1},
                                    {area.right - 1, area.top},
                                    {area.right - 1, area.bottom - 1},
                                    {area.left, area.bottom - 1}};
  Gdiplus::GpGraphics* graphics = nullptr;
  Gdiplus::GpPen* pen = nullptr;
  Gdiplus::GpSolidFill* fill = nullptr;
  gdip::GdipCreateFromHDC(item.hDC, &graphics);
  gdip::GdipSetSmoothingMode(graphics, Gdiplus::SmoothingModeAntiAlias);
  gdip::GdipCreatePen1(0xFFFFFFFF, 1.0f, Gdiplus::UnitWorld, &pen);
  gdip::GdipDrawLinesI(graphics, pen, wedge, static_cast<INT>(std::size(wedge)));
  gdip::GdipCreateSolidFill(0xFF00C800, &fill);
  gdip::GdipFillPolygonI(graphics, fill, wedge, 3, Gdiplus::FillModeAlternate);
  gdip::GdipDeleteBrush(fill);
  gdip::GdipDeletePen(pen);
  gdip::GdipDeleteGraphics(graphics);
}

}  // namespace

void DrawControl(const DRAWITEMSTRUCT& item, HBRUSH background) {
  FillRect(item.hDC, &item.rcItem, background);
  if (item.CtlType == ODT_BUTTON) DrawButton(item);
  if (item.CtlType == ODT_STATIC && item.CtlID == kSpeaker) DrawSpeaker(item);
  if (item.CtlType == ODT_STATIC && item.CtlID == kVolume) DrawWedge(item);
}

}  // namespace floor_program
