#include "tests/unit/shell/drawing_log.h"

#include <windows.h>

#include "tests/support/format.h"
#include "tests/support/line_order.h"

namespace vantro::test {

namespace {

DrawingLog* current = nullptr;

std::string Area(const RECT& area) { return Format("%ld,%ld-%ld,%ld", area.left, area.top, area.right, area.bottom); }

std::string ColorOf(HBRUSH brush) {
  LOGBRUSH properties{};
  if (!brush || !GetObjectA(brush, sizeof properties, &properties)) return "no brush";
  return Format("%06lX", properties.lbColor);
}

std::string Narrow(const wchar_t* text) {
  const std::wstring wide = text;
  return std::string(wide.begin(), wide.end());
}

}  // namespace

struct DrawingCalls {
  // Calls the system's function directly, without import hooks.
  template <typename Function, typename... Arguments>
  static auto Pass(const char* library, const char* name, Function*, const std::string& line, Arguments... arguments) {
    current->calls_.push_back(name + (line.empty() ? line : " " + line));
    if (debugLoggingEnabled) Note(current->calls_.back());
    return reinterpret_cast<Function*>(GetProcAddress(GetModuleHandleA(library), name))(arguments...);
  }
#define PASS(library, function, line, ...) Pass(library ".dll", #function, ::function, line, __VA_ARGS__)

  static HPEN WINAPI OnCreatePen(int style, int width, COLORREF color) {
    return PASS("gdi32", CreatePen, Format("%d %d %06lX", style, width, color), style, width, color);
  }
  static BOOL WINAPI OnMoveToEx(HDC dc, int x, int y, POINT* previous) {
    return PASS("gdi32", MoveToEx, Format("%d,%d", x, y), dc, x, y, previous);
  }
  static BOOL WINAPI OnLineTo(HDC dc, int x, int y) { return PASS("gdi32", LineTo, Format("%d,%d", x, y), dc, x, y); }
  static BOOL WINAPI OnPolyline(HDC dc, const POINT* points, int count) {
    std::string line;
    for (int i = 0; i < count; ++i) line += Format("%s%ld,%ld", i ? " " : "", points[i].x, points[i].y);
    return PASS("gdi32", Polyline, line, dc, points, count);
  }
  static COLORREF WINAPI OnSetTextColor(HDC dc, COLORREF color) {
    return PASS("gdi32", SetTextColor, Format("%06lX", color), dc, color);
  }
  static COLORREF WINAPI OnSetBkColor(HDC dc, COLORREF color) {
    return PASS("gdi32", SetBkColor, Format("%06lX", color), dc, color);
  }
  static int WINAPI OnSetBkMode(HDC dc, int mode) { return PASS("gdi32", SetBkMode, Format("%d", mode), dc, mode); }
  static int WINAPI OnFillRect(HDC dc, const RECT* area, HBRUSH brush) {
    return PASS("user32", FillRect, Area(*area) + " " + ColorOf(brush), dc, area, brush);
  }
  static int WINAPI OnDrawTextW(HDC dc, const wchar_t* text, int length, RECT* area, UINT flags) {
    return PASS("user32", DrawTextW,
                Format("'%s' %d %s flags=%u", Narrow(text).c_str(), length, Area(*area).c_str(), flags), dc, text,
                length, area, flags);
  }
  static BOOL WINAPI OnDrawIconEx(HDC dc, int x, int y, HICON icon, int width, int height, UINT step, HBRUSH brush,
                                  UINT flags) {
    return PASS("user32", DrawIconEx,
                Format("%d,%d %dx%d step=%u %s flags=%u", x, y, width, height, step, ColorOf(brush).c_str(), flags), dc,
                x, y, icon, width, height, step, brush, flags);
  }
  static HDC WINAPI OnGetDC(HWND window) { return PASS("user32", GetDC, "", window); }
  static HDC WINAPI OnGetWindowDC(HWND window) { return PASS("user32", GetWindowDC, "", window); }
  static int WINAPI OnReleaseDC(HWND window, HDC dc) { return PASS("user32", ReleaseDC, "", window, dc); }
  static HDC WINAPI OnBeginPaint(HWND window, PAINTSTRUCT* paint) {
    return PASS("user32", BeginPaint, "", window, paint);
  }
  static BOOL WINAPI OnEndPaint(HWND window, const PAINTSTRUCT* paint) {
    return PASS("user32", EndPaint, "", window, paint);
  }
#undef PASS
};

DrawingLog::DrawingLog() {
  current = this;
  const auto hook = [this](const char* library, const char* function, auto* replacement) {
    hooks_.push_back(std::make_unique<ImportHook>(library, function, replacement));
  };
  hook("gdi32.dll", "CreatePen", &DrawingCalls::OnCreatePen);
  hook("gdi32.dll", "MoveToEx", &DrawingCalls::OnMoveToEx);
  hook("gdi32.dll", "LineTo", &DrawingCalls::OnLineTo);
  hook("gdi32.dll", "Polyline", &DrawingCalls::OnPolyline);
  hook("gdi32.dll", "SetTextColor", &DrawingCalls::OnSetTextColor);
  hook("gdi32.dll", "SetBkColor", &DrawingCalls::OnSetBkColor);
  hook("gdi32.dll", "SetBkMode", &DrawingCalls::OnSetBkMode);
  hook("user32.dll", "FillRect", &DrawingCalls::OnFillRect);
  hook("user32.dll", "DrawTextW", &DrawingCalls::OnDrawTextW);
  hook("user32.dll", "DrawIconEx", &DrawingCalls::OnDrawIconEx);
  hook("user32.dll", "GetDC", &DrawingCalls::OnGetDC);
  hook("user32.dll", "GetWindowDC", &DrawingCalls::OnGetWindowDC);
  hook("user32.dll", "ReleaseDC", &DrawingCalls::OnReleaseDC);
  hook("user32.dll", "BeginPaint", &DrawingCalls::OnBeginPaint);
  hook("user32.dll", "EndPaint", &DrawingCalls::OnEndPaint);
}

DrawingLog::~DrawingLog() {
  hooks_.clear();
  current = nullptr;
}

std::vector<std::string> DrawingLog::Of(const std::string& function) const {
  std::vector<std::string> calls;
  for (const std::string& call : calls_) {
    if (call == function || call.starts_with(function + " ")) calls.push_back(call);
  }
  return calls;
}

}  // namespace vantro::test
