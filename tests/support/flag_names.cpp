#include "tests/support/flag_names.h"

#include <cstdio>
#include <span>

namespace vantro::test {

namespace {

struct Name {
  long long value;
  const char* text;
};

#define NAME(value) \
  { static_cast<long long>(value), #value }

// Combined styles come before their bits.
constexpr Name kPlacement[] = {NAME(SWP_NOSIZE),        NAME(SWP_NOMOVE),         NAME(SWP_NOZORDER),
                               NAME(SWP_NOREDRAW),      NAME(SWP_NOACTIVATE),     NAME(SWP_FRAMECHANGED),
                               NAME(SWP_SHOWWINDOW),    NAME(SWP_HIDEWINDOW),     NAME(SWP_NOCOPYBITS),
                               NAME(SWP_NOOWNERZORDER), NAME(SWP_NOSENDCHANGING), NAME(SWP_DEFERERASE),
                               NAME(SWP_ASYNCWINDOWPOS)};
constexpr Name kRedraw[] = {NAME(RDW_INVALIDATE), NAME(RDW_INTERNALPAINT),   NAME(RDW_ERASE),
                            NAME(RDW_VALIDATE),   NAME(RDW_NOINTERNALPAINT), NAME(RDW_NOERASE),
                            NAME(RDW_NOCHILDREN), NAME(RDW_ALLCHILDREN),     NAME(RDW_UPDATENOW),
                            NAME(RDW_ERASENOW),   NAME(RDW_FRAME),           NAME(RDW_NOFRAME)};
constexpr Name kStyles[] = {NAME(WS_OVERLAPPEDWINDOW), NAME(WS_CAPTION),    NAME(WS_POPUP),    NAME(WS_CHILD),
                            NAME(WS_MINIMIZE),         NAME(WS_VISIBLE),    NAME(WS_DISABLED), NAME(WS_CLIPSIBLINGS),
                            NAME(WS_CLIPCHILDREN),     NAME(WS_MAXIMIZE),   NAME(WS_BORDER),   NAME(WS_DLGFRAME),
                            NAME(WS_VSCROLL),          NAME(WS_HSCROLL),    NAME(WS_SYSMENU),  NAME(WS_THICKFRAME),
                            NAME(WS_MINIMIZEBOX),      NAME(WS_MAXIMIZEBOX)};
constexpr Name kExStyles[] = {NAME(WS_EX_DLGMODALFRAME), NAME(WS_EX_NOPARENTNOTIFY), NAME(WS_EX_TOPMOST),
                              NAME(WS_EX_ACCEPTFILES),   NAME(WS_EX_TRANSPARENT),    NAME(WS_EX_TOOLWINDOW),
                              NAME(WS_EX_WINDOWEDGE),    NAME(WS_EX_CLIENTEDGE),     NAME(WS_EX_LAYERED),
                              NAME(WS_EX_NOACTIVATE),    NAME(WS_EX_APPWINDOW)};
constexpr Name kShow[] = {NAME(SW_HIDE),     NAME(SW_SHOWNORMAL),      NAME(SW_SHOWMINIMIZED),
                          NAME(SW_MAXIMIZE), NAME(SW_SHOWNOACTIVATE),  NAME(SW_SHOW),
                          NAME(SW_MINIMIZE), NAME(SW_SHOWMINNOACTIVE), NAME(SW_SHOWNA),
                          NAME(SW_RESTORE),  NAME(SW_SHOWDEFAULT)};
constexpr Name kWindowLongs[] = {NAME(GWL_STYLE), NAME(GWL_EXSTYLE), NAME(GWL_ID), NAME(GWLP_USERDATA)};
constexpr Name kMessages[] = {NAME(WM_CLOSE), NAME(WM_SIZE), NAME(WM_COMMAND), NAME(WM_TIMER), NAME(WM_APP)};
// Handles made of numbers, which are not constants in C++.
constexpr Name kInsertAfter[] = {{0, "HWND_TOP"}, {1, "HWND_BOTTOM"}, {-1, "HWND_TOPMOST"}, {-2, "HWND_NOTOPMOST"}};

#undef NAME

std::string Hexadecimal(unsigned long long value) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%llX", value);
  return text;
}

std::string JoinBits(unsigned long flags, std::span<const Name> names) {
  std::string text;
  const auto add = [&](const std::string& name) { text += (text.empty() ? "" : "|") + name; };
  for (const auto& [value, name] : names) {
    const auto bits = static_cast<unsigned long>(value);
    if ((flags & bits) != bits) continue;
    add(name);
    flags &= ~bits;
  }
  if (flags) add(Hexadecimal(flags));
  return text.empty() ? "0" : text;
}

std::string NameOf(long long value, std::span<const Name> names) {
  for (const Name& name : names) {
    if (name.value == value) return name.text;
  }
  return Hexadecimal(static_cast<unsigned long long>(value));
}

}  // namespace

std::string PlacementFlags(UINT flags) { return JoinBits(flags, kPlacement); }
std::string InsertAfter(HWND after) { return NameOf(reinterpret_cast<INT_PTR>(after), kInsertAfter); }
std::string ShowCommand(int command) { return NameOf(command, kShow); }
std::string RedrawFlags(UINT flags) { return JoinBits(flags, kRedraw); }
std::string StyleNames(DWORD style) { return JoinBits(style, kStyles); }
std::string ExStyleNames(DWORD exStyle) { return JoinBits(exStyle, kExStyles); }
std::string MessageName(UINT message) { return NameOf(message, kMessages); }
std::string WindowLongName(int index) { return NameOf(index, kWindowLongs); }

}  // namespace vantro::test
