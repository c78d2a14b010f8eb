#include "tests/unit/shell/call_log.h"

#include <dwmapi.h>

#include "shell/vantro_window.h"
#include "tests/support/flag_names.h"
#include "tests/support/format.h"
#include "tests/support/line_order.h"
#include "tests/unit/shell/inside.h"

namespace vantro::test {

namespace {

CallLog* current = nullptr;

}  // namespace

// The functions in the places of the system's. A hook's own original is called through the system's export, which the
// import hooks leave alone.
struct RecordedCalls {
  template <typename Function, typename... Arguments>
  static auto Pass(const char* library, const char* name, const std::string& line, Arguments... arguments) {
    if (current->depth_ == 0) current->Add(name + line);
    const auto original = reinterpret_cast<Function*>(GetProcAddress(GetModuleHandleA(library), name));
    ++current->depth_;
    const auto result = original(arguments...);
    --current->depth_;
    return result;
  }
  static std::string Name(HWND window) { return Format(" %s", current->NameOf(window)); }

#define PASS(function, line, ...) RecordedCalls::Pass<decltype(::function)>("user32.dll", #function, line, __VA_ARGS__)

  static BOOL WINAPI OnSetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
    return PASS(SetWindowPos,
                Name(window) + " after=" + InsertAfter(after) + Format(" %d,%d %dx%d ", x, y, width, height) +
                    PlacementFlags(flags),
                window, after, x, y, width, height, flags);
  }
  static BOOL WINAPI OnShowWindow(HWND window, int command) {
    return PASS(ShowWindow, Name(window) + " " + ShowCommand(command), window, command);
  }
  static LONG WINAPI OnSetWindowLongA(HWND window, int index, LONG value) {
    const auto bits = static_cast<DWORD>(value);
    const std::string names = index == GWL_EXSTYLE ? ExStyleNames(bits) : StyleNames(bits);
    return PASS(SetWindowLongA, Name(window) + " " + WindowLongName(index) + " " + names, window, index, value);
  }
  static UINT_PTR WINAPI OnSetTimer(HWND window, UINT_PTR id, UINT milliseconds, TIMERPROC procedure) {
    return PASS(SetTimer,
                Name(window) + Format(" %llu %ums%s", static_cast<unsigned long long>(id), milliseconds,
                                      procedure ? " with procedure" : ""),
                window, id, milliseconds, procedure);
  }
  static BOOL WINAPI OnKillTimer(HWND window, UINT_PTR id) {
    return PASS(KillTimer, Name(window) + Format(" %llu", static_cast<unsigned long long>(id)), window, id);
  }
  static BOOL WINAPI OnInvalidateRect(HWND window, const RECT* area, BOOL erase) {
    const std::string place =
        area ? Format(" %ld,%ld-%ld,%ld", area->left, area->top, area->right, area->bottom) : " all";
    return PASS(InvalidateRect, Name(window) + place + (erase ? " erase" : " keep"), window, area, erase);
  }
  static BOOL WINAPI OnUpdateWindow(HWND window) { return PASS(UpdateWindow, Name(window), window); }
  static HWND WINAPI OnSetFocus(HWND window) { return PASS(SetFocus, Name(window), window); }
  static HWND WINAPI OnSetCapture(HWND window) { return PASS(SetCapture, Name(window), window); }
  static BOOL WINAPI OnPostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return PASS(PostMessageA,
                Name(window) + " " + MessageName(message) +
                    Format(" %llu %lld", static_cast<unsigned long long>(wParam), static_cast<long long>(lParam)),
                window, message, wParam, lParam);
  }
  static BOOL WINAPI OnTrackPopupMenu(HMENU menu, UINT flags, int x, int y, int reserved, HWND window,
                                      const RECT* area) {
    const std::string mustBeZero = reserved == 0 ? "" : Format(" reserved=%d", reserved);
    return PASS(TrackPopupMenu, Name(window) + Format(" %d,%d flags=%u", x, y, flags) + mustBeZero, menu, flags, x, y,
                reserved, window, area);
  }
  static BOOL WINAPI OnEnableWindow(HWND window, BOOL enable) {
    return PASS(EnableWindow, Name(window) + Format(" %d", enable), window, enable);
  }
#undef PASS

  static HRESULT WINAPI OnDwmSetWindowAttribute(HWND window, DWORD attribute, LPCVOID value, DWORD size) {
    const unsigned number = size == 4 ? *static_cast<const unsigned*>(value) : 0;
    return Pass<decltype(::DwmSetWindowAttribute)>("dwmapi.dll", "DwmSetWindowAttribute",
                                                   Name(window) + Format(" %lu %u size=%lu", attribute, number, size),
                                                   window, attribute, value, size);
  }
};

CallLog::CallLog(VantroWindow& window) : window_(window) {
  current = this;
  const auto hook = [this](const char* library, const char* function, auto* replacement) {
    hooks_.push_back(std::make_unique<ImportHook>(library, function, replacement));
  };
  hook("user32.dll", "SetWindowPos", &RecordedCalls::OnSetWindowPos);
  hook("user32.dll", "ShowWindow", &RecordedCalls::OnShowWindow);
  hook("user32.dll", "SetWindowLongA", &RecordedCalls::OnSetWindowLongA);
  hook("user32.dll", "SetTimer", &RecordedCalls::OnSetTimer);
  hook("user32.dll", "KillTimer", &RecordedCalls::OnKillTimer);
  hook("user32.dll", "InvalidateRect", &RecordedCalls::OnInvalidateRect);
  hook("user32.dll", "UpdateWindow", &RecordedCalls::OnUpdateWindow);
  hook("user32.dll", "SetFocus", &RecordedCalls::OnSetFocus);
  hook("user32.dll", "SetCapture", &RecordedCalls::OnSetCapture);
  hook("user32.dll", "PostMessageA", &RecordedCalls::OnPostMessageA);
  hook("user32.dll", "TrackPopupMenu", &RecordedCalls::OnTrackPopupMenu);
  hook("user32.dll", "EnableWindow", &RecordedCalls::OnEnableWindow);
  hook("dwmapi.dll", "DwmSetWindowAttribute", &RecordedCalls::OnDwmSetWindowAttribute);
}

void CallLog::Add(const std::string& call) {
  calls_.push_back(call);
  if (state_) Note(call + state_());
}

CallLog::~CallLog() {
  hooks_.clear();
  current = nullptr;
}

std::vector<std::string> CallLog::Of(const std::string& function) const {
  std::vector<std::string> calls;
  for (const std::string& call : calls_) {
    if (call.starts_with(function + " ")) calls.push_back(call);
  }
  return calls;
}

const char* CallLog::NameOf(HWND window) const {
  if (!window) return "null";
  const std::pair<HWND, const char*> names[] = {
      {window_.hwnd_, "main"},
      {Inside(window_).flutterHostWindow_, "overlay"},
      {window_.flutterEngine_ ? window_.flutterEngine_->flutterWindow_ : nullptr, "view"},
      {Inside(window_).searchBox_, "search"},
      {Inside(window_).fileButton_, "file"},
      {Inside(window_).helpButton_, "help"},
      {Inside(window_).closeButton_, "close"},
      {Inside(window_).maximizeButton_, "maximize"},
      {Inside(window_).minimizeButton_, "minimize"},
      {Inside(window_).volumeControl_, "volume"},
      {Inside(window_).speakerIcon_, "speaker"},
      {Inside(window_).appIconStatic_, "icon"},
      {Inside(window_).titleStatic_, "title"},
  };
  for (const auto& [handle, name] : names) {
    if (handle == window) return name;
  }
  return "other";
}

}  // namespace vantro::test
