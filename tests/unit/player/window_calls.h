// Records as text lines, in order, the calls with which the player makes, moves and repaints windows. Each call is
// passed on to the system.
#pragma once

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/flag_names.h"
#include "tests/support/import_hook.h"

namespace vantro::test {

// Only one object may exist at a time.
class WindowCalls {
 public:
  // The names of windows in the lines, both for the moved window and for the window to insert after.
  using Names = std::vector<std::pair<HWND, std::string>>;

  // Without names every window appears as "window".
  explicit WindowCalls(Names names = {}) : names_(std::move(names)) { recorder_ = this; }
  ~WindowCalls() { recorder_ = nullptr; }
  WindowCalls(const WindowCalls&) = delete;
  WindowCalls& operator=(const WindowCalls&) = delete;

  // For example "SetWindowPos tile HWND_TOP 405,0 395x600 SWP_SHOWWINDOW". If there are names, neither calls on other
  // windows nor the creation of a window are recorded.
  const std::vector<std::string>& Lines() const { return lines_; }

 private:
  static HWND WINAPI Create(DWORD exStyle, LPCWSTR className, LPCWSTR title, DWORD style, int x, int y, int width,
                            int height, HWND parent, HMENU menu, HINSTANCE instance, void* data) {
    recorder_->Add("CreateWindowExW", nullptr,
                   std::to_string(x) + "," + std::to_string(y) + " " + std::to_string(width) + "x" +
                       std::to_string(height) + " " + StyleNames(style) + " " + ExStyleNames(exStyle) +
                       (menu || data ? " with menu or data" : "") +
                       (instance == GetModuleHandleW(nullptr) ? " of this program" : ""));
    return recorder_->create_.As(CreateWindowExW)(exStyle, className, title, style, x, y, width, height, parent, menu,
                                                  instance, data);
  }
  static BOOL WINAPI Place(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
    const std::string behind = recorder_->NameOf(after);
    recorder_->Add("SetWindowPos", window,
                   (behind.empty() ? InsertAfter(after) : behind) + " " + std::to_string(x) + "," + std::to_string(y) +
                       " " + std::to_string(width) + "x" + std::to_string(height) + " " + PlacementFlags(flags));
    return recorder_->place_.As(SetWindowPos)(window, after, x, y, width, height, flags);
  }
  static BOOL WINAPI Move(HWND window, int x, int y, int width, int height, BOOL repaint) {
    recorder_->Add("MoveWindow", window,
                   std::to_string(x) + "," + std::to_string(y) + " " + std::to_string(width) + "x" +
                       std::to_string(height) + (repaint ? " repaint" : ""));
    return recorder_->move_.As(MoveWindow)(window, x, y, width, height, repaint);
  }
  static BOOL WINAPI Invalidate(HWND window, const RECT* part, BOOL erase) {
    recorder_->Add("InvalidateRect", window, std::string(part ? "part" : "whole") + (erase ? " erase" : ""));
    return recorder_->invalidate_.As(InvalidateRect)(window, part, erase);
  }
  static BOOL WINAPI Update(HWND window) {
    recorder_->Add("UpdateWindow", window, "");
    return recorder_->update_.As(UpdateWindow)(window);
  }

  struct Hook : ImportHook {
    Hook(const char* function, void* replacement) : ImportHook("user32.dll", function, replacement) {}
    template <typename Function>
    Function* As(Function&) const {
      return reinterpret_cast<Function*>(Original());
    }
  };

  std::string NameOf(HWND window) const {
    for (const auto& [known, name] : names_)
      if (known && known == window) return name;
    return "";
  }
  void Add(const std::string& function, HWND window, const std::string& arguments) {
    const std::string name = names_.empty() ? "window" : NameOf(window);
    if (!name.empty()) lines_.push_back(function + " " + name + (arguments.empty() ? "" : " " + arguments));
  }

  static inline WindowCalls* recorder_ = nullptr;
  const Names names_;
  std::vector<std::string> lines_;
  const Hook create_{"CreateWindowExW", reinterpret_cast<void*>(Create)};
  const Hook place_{"SetWindowPos", reinterpret_cast<void*>(Place)};
  const Hook move_{"MoveWindow", reinterpret_cast<void*>(Move)};
  const Hook invalidate_{"InvalidateRect", reinterpret_cast<void*>(Invalidate)};
  const Hook update_{"UpdateWindow", reinterpret_cast<void*>(Update)};
};

}  // namespace vantro::test
