#include "picture_windows.h"

#include <windows.h>

#include <future>
#include <mutex>

#include "canvas.h"
#include "painter.h"
#include "windows_thread.h"

namespace vantro::devlib {
namespace {

constexpr UINT kOpen = WM_APP + 1;
constexpr UINT kClose = WM_APP + 2;
constexpr UINT kFit = WM_APP + 3;

constexpr WCHAR kClass[] = u"VLC development video";

struct Request {
  Canvas* canvas;
  int width;
  int height;
  std::promise<void> done;
};

DWORD threadId = 0;

LRESULT CALLBACK HandleMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
  // Only the program closes windows.
  if (message == WM_CLOSE) return 0;
  return DefWindowProcW(window, message, first, second);
}

void RegisterVideoClass() {
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = HandleMessage;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
  windowClass.lpszClassName = kClass;
  RegisterClassW(&windowClass);
}

HWND MakeTopLevel(int width, int height) {
  constexpr DWORD kStyle = WS_OVERLAPPEDWINDOW | WS_VISIBLE;
  RECT frame{0, 0, width, height};
  AdjustWindowRect(&frame, kStyle, FALSE);
  return CreateWindowExW(0, kClass, kClass, kStyle, 0, 0, frame.right - frame.left, frame.bottom - frame.top, nullptr,
                         nullptr, GetModuleHandleW(nullptr), nullptr);
}

// The child is disabled, so that mouse messages go to the program's window.
HWND MakeChild(HWND parent) {
  SendMessageW(parent, WM_NULL, 0, 0);
  RECT area{};
  GetClientRect(parent, &area);
  return CreateWindowExW(0, kClass, kClass, WS_CHILD | WS_VISIBLE | WS_DISABLED | WS_CLIPSIBLINGS, 0, 0, area.right,
                         area.bottom, parent, nullptr, GetModuleHandleW(nullptr), nullptr);
}

void Open(Request* request) {
  Canvas* canvas = request->canvas;
  HWND given = static_cast<HWND>(canvas->window());
  if (canvas->target() || canvas->windowless()) return;
  if (!given) {
    canvas->SetTarget(MakeTopLevel(request->width, request->height));
  } else if (IsWindowVisible(given)) {
    canvas->SetTarget(MakeChild(given));
  }
}

void Close(Canvas* canvas) {
  HWND target = static_cast<HWND>(canvas->target());
  canvas->SetTarget(nullptr);
  if (!target || !IsWindow(target)) return;
  HWND parent = GetAncestor(target, GA_PARENT);
  bool child = (GetWindowLongW(target, GWL_STYLE) & WS_CHILD) != 0;
  if (child) SendMessageW(parent, WM_NULL, 0, 0);
  DestroyWindow(target);
}

void FitToParent(HWND child) {
  RECT area;
  if (!IsWindow(child) || !GetClientRect(GetAncestor(child, GA_PARENT), &area)) return;
  SetWindowPos(child, nullptr, 0, 0, area.right, area.bottom, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

void Run(std::promise<void>* started) {
  MSG message;
  PeekMessageW(&message, nullptr, WM_USER, WM_USER, PM_NOREMOVE);
  threadId = GetCurrentThreadId();
  RegisterVideoClass();
  started->set_value();
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    auto* request = reinterpret_cast<Request*>(message.lParam);
    if (message.hwnd) {
      DispatchMessageW(&message);
    } else if (message.message == kFit) {
      FitToParent(reinterpret_cast<HWND>(message.lParam));
    } else if (message.message == kOpen || message.message == kClose) {
      message.message == kOpen ? Open(request) : Close(request->canvas);
      request->done.set_value();
    }
  }
}

// The caller may be a native thread, which cannot post a message, so the painter posts it.
void Ask(UINT what, Canvas* canvas, unsigned width, unsigned height) {
  Request request{canvas, static_cast<int>(width), static_cast<int>(height), {}};
  std::future<void> done = request.done.get_future();
  Painter::Post([what, &request] { PostThreadMessageW(threadId, what, 0, reinterpret_cast<LPARAM>(&request)); });
  done.wait();
}

}  // namespace

bool PictureWindows::Start() {
  static const bool running = [] {
    std::promise<void> started;
    std::future<void> ready = started.get_future();
    if (!StartWindowsThread([&started] { Run(&started); })) return false;
    ready.wait();
    return true;
  }();
  return running;
}

void PictureWindows::Open(Canvas* canvas, unsigned width, unsigned height) { Ask(kOpen, canvas, width, height); }

void PictureWindows::Close(Canvas* canvas) { Ask(kClose, canvas, 0, 0); }

void PictureWindows::Fit(void* child) { PostThreadMessageW(threadId, kFit, 0, reinterpret_cast<LPARAM>(child)); }

}  // namespace vantro::devlib
