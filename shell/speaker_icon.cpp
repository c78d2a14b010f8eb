#include "shell/speaker_icon.h"

#include <iterator>
#include <string>

#include "common/executable.h"
#include "common/log.h"
#include "common/text.h"
#include "common/win32_geometry.h"
#include "shell/gdiplus_drawing.h"
#include "shell/volume_geometry.h"

namespace vantro {

namespace {

constexpr COLORREF kSpeakerColor = 0xFFFFFF;

std::wstring InWorkingDirectory(const wchar_t* fileName) {
  std::wstring folder(GetCurrentDirectoryW(0, nullptr), L'\0');
  folder.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
  if (folder.empty() || folder.back() != L'\\') folder += L'\\';  // a drive's root already ends in a backslash
  return folder + fileName;
}

ScopedImage LoadPicture(const std::wstring& path) {
  ScopedImage image;
  if (Gdiplus::DllExports::GdipLoadImageFromFile(path.c_str(), image.Receive()) != Gdiplus::Ok) return {};
  return image;
}

ScopedIcon LoadIconFile(const std::wstring& path) {
  return ScopedIcon(
      static_cast<HICON>(LoadImageW(nullptr, path.c_str(), IMAGE_ICON, 0, 0, LR_LOADFROMFILE | LR_DEFAULTSIZE)));
}

ScopedImage FindPicture() {
  std::wstring path = InWorkingDirectory(L"speaker.png");
  LOG_DEBUG("Speaker icon: Looking for PNG in working directory: %s", NarrowFromWide(path).c_str());
  if (ScopedImage image = LoadPicture(path)) return image;
  path = ExecutableFolder() + L"\\img\\speaker.png";
  LOG_DEBUG("Speaker icon: PNG not in working dir, trying exe directory: %s", NarrowFromWide(path).c_str());
  return LoadPicture(path);
}

ScopedIcon FindIcon() {
  LOG_DEBUG("Speaker icon: PNG failed, trying ICO in working directory");
  if (ScopedIcon icon = LoadIconFile(InWorkingDirectory(L"speaker.ico"))) return icon;
  LOG_DEBUG("Speaker icon: ICO not in working dir, trying exe directory");
  return LoadIconFile(ExecutableFolder() + L"\\speaker.ico");
}

void DrawLine(HDC dc, POINT from, POINT to) {
  MoveToEx(dc, from.x, from.y, nullptr);
  LineTo(dc, to.x, to.y);
}

void DrawSpeakerByHand(HDC dc, const RECT& control) {
  const LONG cx = control.left + (control.right - control.left) / 2;
  const LONG cy = control.top + (control.bottom - control.top) / 2;
  const ScopedPen pen(CreatePen(PS_SOLID, 2, kSpeakerColor));
  const ScopedBrush brush(CreateSolidBrush(kSpeakerColor));
  const RECT body{cx - 4, cy - 3, cx - 1, cy + 3};
  FillRect(dc, &body, brush.Get());

  const ScopedSelection selection(dc, pen.Get());
  const POINT cone[] = {{cx - 1, cy - 3}, {cx + 3, cy - 1}, {cx + 3, cy + 1}, {cx - 1, cy + 3}};
  Polyline(dc, cone, static_cast<int>(std::size(cone)));
  DrawLine(dc, {cx + 5, cy - 1}, {cx + 5, cy + 1});
  DrawLine(dc, {cx + 7, cy - 2}, {cx + 7, cy + 2});
}

}  // namespace

void DrawSpeakerIcon(const DRAWITEMSTRUCT& item, HBRUSH background) {
  FillRect(item.hDC, &item.rcItem, background);
  const Rect place = SpeakerPictureSquare(FromWin32(item.rcItem));
  const int side = place.Width();
  if (const ScopedImage picture = FindPicture()) {
    LOG_DEBUG("Speaker icon: Successfully loaded PNG");
    ScopedGraphics graphics;
    Gdiplus::DllExports::GdipCreateFromHDC(item.hDC, graphics.Receive());
    Gdiplus::DllExports::GdipDrawImageRectI(graphics.Get(), picture.Get(), place.left, place.top, side, side);
    return;
  }
  if (const ScopedIcon icon = FindIcon()) {
    DrawIconEx(item.hDC, place.left, place.top, icon.Get(), side, side, 0, nullptr, DI_NORMAL);
    return;
  }
  LOG_DEBUG("Speaker icon: Could not load PNG or ICO, using fallback drawing");
  DrawSpeakerByHand(item.hDC, item.rcItem);
}

}  // namespace vantro
