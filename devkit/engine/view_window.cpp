#include "devkit/engine/view_window.h"

#include <windows.h>

#include <string>

#include "devkit/engine/interface_server.h"
#include "devkit/engine/registry.h"

namespace vantro::loopback {

namespace {

constexpr wchar_t kViewClass[] = L"LoopbackEngineView";
constexpr wchar_t kEngineProperty[] = L"LoopbackEngineNumber";
constexpr int kBadgeWidth = 150;
constexpr int kBadgeHeight = 22;
constexpr int kBadgeMargin = 8;
constexpr COLORREF kBadgeColor = RGB(32, 120, 80);

bool GlassStandIn() {
  static const bool asked = [] {
    char value[8] = "";
    return GetEnvironmentVariableA("VANTRO_LOOPBACK_GLASS", value, sizeof value) > 0 && value[0] == '1';
  }();
  return asked;
}

RECT BadgeIn(HWND view) {
  RECT client{};
  GetClientRect(view, &client);
  return {client.right - kBadgeMargin - kBadgeWidth, kBadgeMargin, client.right - kBadgeMargin,
          kBadgeMargin + kBadgeHeight};
}

// Cuts the popup that carries the view down to the badge. A window without an owner is left unchanged, because nothing
// is under it.
void CutCarrier(HWND view) {
  const HWND carrier = GetAncestor(view, GA_ROOT);
  if (!carrier || carrier == view || !GetWindow(carrier, GW_OWNER)) return;
  RECT badge = BadgeIn(view);
  MapWindowPoints(view, carrier, reinterpret_cast<POINT*>(&badge), 2);
  const bool fits = badge.left >= 0;
  const HRGN shape = fits ? CreateRectRgn(badge.left, badge.top, badge.right, badge.bottom) : CreateRectRgn(0, 0, 0, 0);
  if (!SetWindowRgn(carrier, shape, TRUE)) DeleteObject(shape);
}

void PaintBadge(HWND view) {
  PAINTSTRUCT paint;
  const HDC dc = BeginPaint(view, &paint);
  if (GlassStandIn()) {
    RECT badge = BadgeIn(view);
    const HBRUSH brush = CreateSolidBrush(kBadgeColor);
    FillRect(dc, &badge, brush);
    DeleteObject(brush);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, RGB(255, 255, 255));
    DrawTextW(dc, L"interface (loopback)", -1, &badge, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  }
  EndPaint(view, &paint);
}

bool IsInput(UINT message) {
  return (message >= WM_KEYFIRST && message <= WM_KEYLAST) || (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST);
}

LRESULT CALLBACK ViewProcedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
    const auto* view = static_cast<const std::pair<int32_t, FlutterDesktopView*>*>(creation->lpCreateParams);
    SetPropW(hwnd, kEngineProperty, reinterpret_cast<HANDLE>(static_cast<intptr_t>(view->first)));
    SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(view->second));
  }
  const auto engine = static_cast<int32_t>(reinterpret_cast<intptr_t>(GetPropW(hwnd, kEngineProperty)));
  LRESULT result = 0;
  bool answered = false;
  Registry::Get().view_observer.Notify([&](LoopbackViewObserver observer, void* data) {
    answered = observer(engine, hwnd, message, wParam, lParam, &result, data) != 0;
  });
  if (message == WM_NCDESTROY) {
    if (auto* view = reinterpret_cast<FlutterDesktopView*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA))) {
      view->window = nullptr;
    }
    RemovePropW(hwnd, kEngineProperty);
  }
  if (answered) return result;
  if (IsInput(message)) {
    if (auto* server = InterfaceServer::Active()) server->Input(engine, message, wParam, lParam);
    return 0;
  }
  switch (message) {
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      PaintBadge(hwnd);
      return 0;
    case WM_WINDOWPOSCHANGED:
    case WM_SHOWWINDOW:
      if (GlassStandIn()) CutCarrier(hwnd);
      break;
    default:
      break;
  }
  return DefWindowProcW(hwnd, message, wParam, lParam);
}

HINSTANCE OwnModule() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<const wchar_t*>(&ViewProcedure), &module);
  return module;
}

}  // namespace

void CreateViewWindow(int32_t engine, int width, int height, FlutterDesktopView* view) {
  static const ATOM registered = [] {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
    windowClass.lpfnWndProc = ViewProcedure;
    windowClass.hInstance = OwnModule();
    windowClass.hCursor = LoadCursorW(nullptr, reinterpret_cast<const wchar_t*>(32512));  // the arrow
    windowClass.lpszClassName = kViewClass;
    return RegisterClassExW(&windowClass);
  }();
  if (!registered) return;
  std::pair<int32_t, FlutterDesktopView*> creation{engine, view};
  view->window = CreateWindowExW(0, kViewClass, L"", WS_CHILD | WS_VISIBLE, 0, 0, width, height, HWND_MESSAGE, nullptr,
                                 OwnModule(), &creation);
}

void DestroyViewWindow(FlutterDesktopView* view) {
  const HWND window = view->window;
  if (!window) return;
  DestroyWindow(window);
  view->window = nullptr;
}

}  // namespace vantro::loopback
