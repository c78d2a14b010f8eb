#include "devkit/engine/inspect.h"

#include <windows.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace vantro::loopback {

namespace {

constexpr UINT kSendLimit = 5000;  // ms

std::string Quoted(const std::wstring& text) {
  std::string json = "\"";
  for (const wchar_t c : text) {
    char escaped[8];
    if (c >= 0x20 && c < 0x7F && c != '"' && c != '\\') {
      json += static_cast<char>(c);
    } else {
      std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
      json += escaped;
    }
  }
  return json + "\"";
}

uint64_t Number(HWND hwnd) { return reinterpret_cast<uintptr_t>(hwnd); }
HWND Handle(uint64_t number) { return reinterpret_cast<HWND>(static_cast<uintptr_t>(number)); }

std::string Format(const char* format, ...) __attribute__((format(__MINGW_PRINTF_FORMAT, 1, 2)));
std::string Format(const char* format, ...) {
  char text[512];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  return text;
}

std::string Describe(HWND hwnd) {
  wchar_t name[256] = L"";
  wchar_t title[512] = L"";
  GetClassNameW(hwnd, name, 256);
  GetWindowTextW(hwnd, title, 512);
  RECT rect{};
  GetWindowRect(hwnd, &rect);
  const HWND parent = GetAncestor(hwnd, GA_PARENT);
  return Format("{\"handle\":%llu,\"parent\":%llu,\"owner\":%llu,\"id\":%d,", Number(hwnd),
                Number(parent == GetDesktopWindow() ? nullptr : parent), Number(GetWindow(hwnd, GW_OWNER)),
                GetDlgCtrlID(hwnd)) +
         "\"class\":" + Quoted(name) + ",\"title\":" + Quoted(title) +
         Format(",\"rect\":[%ld,%ld,%ld,%ld],\"style\":%lu,\"exstyle\":%lu,\"visible\":%s,\"enabled\":%s}", rect.left,
                rect.top, rect.right, rect.bottom, static_cast<DWORD>(GetWindowLongW(hwnd, GWL_STYLE)),
                static_cast<DWORD>(GetWindowLongW(hwnd, GWL_EXSTYLE)), IsWindowVisible(hwnd) ? "true" : "false",
                IsWindowEnabled(hwnd) ? "true" : "false");
}

BOOL CALLBACK Collect(HWND hwnd, LPARAM list) {
  DWORD process = 0;
  GetWindowThreadProcessId(hwnd, &process);
  if (process == GetCurrentProcessId()) reinterpret_cast<std::vector<HWND>*>(list)->push_back(hwnd);
  return TRUE;
}

std::string Windows() {
  std::vector<HWND> top;
  EnumWindows(Collect, reinterpret_cast<LPARAM>(&top));
  std::vector<HWND> all;
  for (const HWND hwnd : top) {
    all.push_back(hwnd);
    EnumChildWindows(hwnd, Collect, reinterpret_cast<LPARAM>(&all));
  }
  std::string json = "[";
  for (const HWND hwnd : all) {
    if (json.size() > 1) json += ',';
    json += Describe(hwnd);
  }
  return json + "]";
}

std::string Focus(uint32_t window_thread) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(window_thread, &info);
  return Format("{\"active\":%llu,\"focus\":%llu,\"capture\":%llu,\"menu\":%llu}", Number(info.hwndActive),
                Number(info.hwndFocus), Number(info.hwndCapture), Number(info.hwndMenuOwner));
}

struct MessageArguments {
  uint64_t hwnd;
  uint32_t message;
  uint64_t wparam;
  int64_t lparam;
};

bool ReadArguments(const std::vector<uint8_t>& bytes, MessageArguments* to) {
  if (bytes.size() != 28) return false;
  std::memcpy(&to->hwnd, bytes.data(), 8);
  std::memcpy(&to->message, bytes.data() + 8, 4);
  std::memcpy(&to->wparam, bytes.data() + 12, 8);
  std::memcpy(&to->lparam, bytes.data() + 20, 8);
  return true;
}

std::string Post(const MessageArguments& to) {
  const bool ok = PostMessageA(Handle(to.hwnd), to.message, to.wparam, to.lparam);
  return Format("{\"ok\":%s,\"result\":0}", ok ? "true" : "false");
}

std::string Send(const MessageArguments& to) {
  DWORD_PTR result = 0;
  const LRESULT ok =
      SendMessageTimeoutA(Handle(to.hwnd), to.message, to.wparam, to.lparam, SMTO_NORMAL, kSendLimit, &result);
  return Format("{\"ok\":%s,\"result\":%lld}", ok ? "true" : "false", static_cast<long long>(result));
}

std::vector<uint8_t> Capture(HWND hwnd) {
  RECT rect{};
  if (!GetWindowRect(hwnd, &rect)) return {};
  const int width = rect.right - rect.left;
  const int height = rect.bottom - rect.top;
  if (width <= 0 || height <= 0) return {};
  BITMAPINFO info{};
  info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* pixels = nullptr;
  const HDC source = GetWindowDC(hwnd);
  const HDC memory = CreateCompatibleDC(source);
  const HBITMAP bitmap = CreateDIBSection(memory, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
  std::vector<uint8_t> file;
  if (bitmap) {
    const HGDIOBJ former = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, source, 0, 0, SRCCOPY);
    GdiFlush();
    const size_t size = static_cast<size_t>(width) * static_cast<size_t>(height) * 4;
    BITMAPFILEHEADER header{};
    header.bfType = 0x4D42;  // "BM"
    header.bfOffBits = sizeof header + sizeof info.bmiHeader;
    header.bfSize = header.bfOffBits + static_cast<DWORD>(size);
    file.resize(header.bfSize);
    std::memcpy(file.data(), &header, sizeof header);
    std::memcpy(file.data() + sizeof header, &info.bmiHeader, sizeof info.bmiHeader);
    std::memcpy(file.data() + header.bfOffBits, pixels, size);
    SelectObject(memory, former);
    DeleteObject(bitmap);
  }
  DeleteDC(memory);
  ReleaseDC(hwnd, source);
  return file;
}

std::vector<uint8_t> AsBytes(const std::string& text) { return {text.begin(), text.end()}; }

}  // namespace

std::vector<uint8_t> RunCommand(const std::string& name, const std::vector<uint8_t>& arguments,
                                uint32_t window_thread) {
  MessageArguments to{};
  if (name == "windows") return AsBytes(Windows());
  if (name == "focus") return AsBytes(Focus(window_thread));
  if (name == "post" && ReadArguments(arguments, &to)) return AsBytes(Post(to));
  if (name == "send" && ReadArguments(arguments, &to)) return AsBytes(Send(to));
  if (name == "capture" && arguments.size() == sizeof to.hwnd) {
    std::memcpy(&to.hwnd, arguments.data(), sizeof to.hwnd);
    return Capture(Handle(to.hwnd));
  }
  return AsBytes("{\"ok\":false,\"error\":\"unknown command or arguments\"}");
}

}  // namespace vantro::loopback
