// The File and Help menus, and the effect of every command.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "shell/shell_ids.h"
#include "shell/window_manager.h"
#include "tests/support/message_queue.h"
#include "tests/unit/shell/call_log.h"
#include "tests/unit/shell/shell_fixture.h"

namespace vantro {
namespace {

using test::CallLog;
using test::Inside;
using test::LogCapture;
using Lines = std::vector<std::string>;

constexpr UINT kGetMenuOfPopup = 0x1E1;  // MN_GETHMENU

std::string Narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }

// Writes a menu as lines: "[x]" for checked, "[-]" for grey, submenus indented.
void Describe(HMENU menu, const std::string& indent, Lines* lines) {
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    wchar_t text[128] = L"";
    MENUITEMINFOW item{};
    item.cbSize = sizeof item;
    item.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_ID | MIIM_SUBMENU | MIIM_STRING;
    item.dwTypeData = text;
    item.cch = 128;
    EXPECT_TRUE(GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &item));
    if (item.fType & MFT_SEPARATOR) {
      lines->push_back(indent + "---");
      continue;
    }
    std::string line = indent;
    if (item.fState & MFS_CHECKED) line += "[x] ";
    if (item.fState & MFS_GRAYED) line += "[-] ";
    line += Narrow(text);
    if (!item.hSubMenu) line += " (" + std::to_string(item.wID) + ")";
    lines->push_back(line);
    if (item.hSubMenu) Describe(item.hSubMenu, indent + "  ", lines);
  }
}

// What the test reads from an open menu and the keys that it presses. A timer does this, because the menu's modal loop
// runs timers.
struct OpenMenu {
  Lines lines;
  RECT place{};
  std::vector<WPARAM> keys;
  bool seen = false;
};
OpenMenu* awaited = nullptr;

void CALLBACK LookAtMenu(HWND, UINT, UINT_PTR timer, DWORD) {
  const HWND popup = FindWindowW(L"#32768", nullptr);
  if (!popup || !IsWindowVisible(popup) || !awaited) return;
  KillTimer(nullptr, timer);
  awaited->seen = true;
  GetWindowRect(popup, &awaited->place);
  Describe(reinterpret_cast<HMENU>(SendMessageW(popup, kGetMenuOfPopup, 0, 0)), "", &awaited->lines);
  for (const WPARAM key : awaited->keys) PostMessageW(popup, WM_KEYDOWN, key, 0);
  if (awaited->keys.empty()) EndMenu();
}

class Menus : public test::ShellTest {
 protected:
  // Opens a real menu, reads it, and presses the keys in it. Closes it if there are no keys.
  OpenMenu Open(const std::function<void()>& show, std::vector<WPARAM> keys = {}) {
    OpenMenu menu;
    menu.keys = std::move(keys);
    awaited = &menu;
    const UINT_PTR timer = SetTimer(nullptr, 0, 10, LookAtMenu);
    show();
    KillTimer(nullptr, timer);
    awaited = nullptr;
    EXPECT_TRUE(menu.seen);
    test::DrainQueue();
    return menu;
  }
  OpenMenu OpenFile(std::vector<WPARAM> keys = {}) {
    return Open([this] { Inside(Window()).commands_.ShowFileMenu(); }, std::move(keys));
  }
  OpenMenu OpenHelp(std::vector<WPARAM> keys = {}) {
    return Open([this] { Inside(Window()).commands_.ShowHelpMenu(); }, std::move(keys));
  }
  bool FileMenuHas(const std::string& line) {
    const Lines lines = OpenFile().lines;
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  }
};

TEST_F(Menus, FileMenuOfANewWindow) {
  EXPECT_EQ(OpenFile().lines, (Lines{
                                  "&New Window (40001)",
                                  "---",
                                  "&Settings... (40002)",
                                  "&VLC Settings",
                                  "  &Hardware Acceleration",
                                  "    [x] &Auto (40020)",
                                  "    &None (40021)",
                                  "    &DXVA2 (40022)",
                                  "    D3&D11VA (40023)",
                                  "  &Audio Output",
                                  "    [x] &DirectSound (40030)",
                                  "    &WASAPI (40031)",
                                  "    &MMDevice (40032)",
                                  "  &Deinterlacing",
                                  "    [x] &Off (40040)",
                                  "    &Linear (40041)",
                                  "    &Blend (40042)",
                                  "    &Mean (40043)",
                                  "  ---",
                                  "  &Equalizer (40050)",
                                  "  &Compressor (40051)",
                                  "  ---",
                                  "  &Restore Defaults (40052)",
                                  "---",
                                  "Always on &Top (40003)",
                                  "---",
                                  "&Fullscreen\tF11 (40008)",
                                  "---",
                                  "E&xit (40004)",
                              }));
}

TEST_F(Menus, HelpMenuHasItsOneItem) { EXPECT_EQ(OpenHelp().lines, (Lines{"&About Vantro... (40005)"})); }

// The calls that build a menu, each as "flags id text".
Lines appended;
decltype(&AppendMenuW) realAppend = nullptr;
BOOL WINAPI RecordAppend(HMENU menu, UINT flags, UINT_PTR id, const wchar_t* text) {
  const std::string shownId = flags == MF_POPUP ? "menu" : std::to_string(id);
  appended.push_back(std::to_string(flags) + " " + shownId + " " + (text ? Narrow(text) : "null"));
  return realAppend(menu, flags, id, text);
}

TEST_F(Menus, AppendPlainItemsCheckedAndGreyOnesSeparatorsAndSubmenus) {
  AddWindow();
  Inside(Window()).alwaysOnTop_ = true;
  const test::ImportHook hook("user32.dll", "AppendMenuW", RecordAppend);
  realAppend = hook.Original<decltype(realAppend)>();
  appended.clear();
  OpenFile();
  EXPECT_EQ(appended, (Lines{"0 40001 &New Window",
                             "2048 0 null",
                             "0 40002 &Settings...",
                             "8 40020 &Auto",
                             "0 40021 &None",
                             "0 40022 &DXVA2",
                             "0 40023 D3&D11VA",
                             "16 menu &Hardware Acceleration",
                             "8 40030 &DirectSound",
                             "0 40031 &WASAPI",
                             "0 40032 &MMDevice",
                             "16 menu &Audio Output",
                             "8 40040 &Off",
                             "0 40041 &Linear",
                             "0 40042 &Blend",
                             "0 40043 &Mean",
                             "16 menu &Deinterlacing",
                             "2048 0 null",
                             "0 40050 &Equalizer",
                             "0 40051 &Compressor",
                             "2048 0 null",
                             "0 40052 &Restore Defaults",
                             "16 menu &VLC Settings",
                             "2048 0 null",
                             "8 40003 Always on &Top",
                             "1 40006 Always on Top - &This Window",
                             "2048 0 null",
                             "0 40008 &Fullscreen\tF11",
                             "2048 0 null",
                             "0 40004 E&xit"}));
}

TEST_F(Menus, OpenBelowTheirButtons) {
  RECT file{}, help{};
  GetWindowRect(Inside(Window()).fileButton_, &file);
  GetWindowRect(Inside(Window()).helpButton_, &help);
  CallLog calls(Window());
  OpenFile();
  OpenHelp();
  const auto expected = [](const RECT& button) {
    return "TrackPopupMenu main " + std::to_string(button.left) + "," + std::to_string(button.bottom) + " flags=0";
  };
  EXPECT_EQ(calls.Of("TrackPopupMenu"), (Lines{expected(file), expected(help)}));
}

TEST_F(Menus, OpeningIsLogged) {
  LogCapture log;
  OpenFile();
  OpenHelp();
  EXPECT_TRUE(log.Has("DEBUG ShowFileMenu: Showing File popup menu"));
  EXPECT_TRUE(log.Has("DEBUG ShowHelpMenu: Showing Help popup menu"));
}

TEST_F(Menus, ThisWindowItemNeedsMoreThanOneActiveWindow) {
  const std::string item = "Always on Top - &This Window (40006)";
  EXPECT_FALSE(FileMenuHas(item));
  VantroWindow& second = AddWindow();
  EXPECT_TRUE(FileMenuHas(item));
  const Lines ofSecond = Open([&] { Inside(second).commands_.ShowFileMenu(); }).lines;
  EXPECT_NE(std::find(ofSecond.begin(), ofSecond.end(), item), ofSecond.end());
  second.isClosing_ = true;
  EXPECT_FALSE(FileMenuHas(item));
}

TEST_F(Menus, ThisWindowItemFollowsAlwaysOnTop) {
  AddWindow();
  const Lines lines = OpenFile().lines;
  const auto top = std::find(lines.begin(), lines.end(), "Always on &Top (40003)");
  ASSERT_NE(top, lines.end());
  EXPECT_EQ(*(top + 1), "Always on Top - &This Window (40006)");
  EXPECT_EQ(*(top + 2), "---");
}

TEST_F(Menus, ThisWindowItemIsGreyWhileAlwaysOnTopIsSet) {
  AddWindow();
  Inside(Window()).alwaysOnTop_ = true;
  EXPECT_TRUE(FileMenuHas("[-] Always on Top - &This Window (40006)"));
  Inside(Window()).alwaysOnTopThisWindow_ = true;
  EXPECT_TRUE(FileMenuHas("[x] [-] Always on Top - &This Window (40006)"));
}

TEST_F(Menus, CheckMarksFollowTheFlagsAtTheMomentOfOpening) {
  AddWindow();
  Inside(Window()).alwaysOnTopThisWindow_ = true;
  Inside(Window()).vlcEqualizerEnabled_ = true;
  Inside(Window()).vlcCompressorEnabled_ = true;
  Inside(Window()).isFullscreen_ = true;
  const Lines lines = OpenFile().lines;
  Inside(Window()).isFullscreen_ = false;
  for (const char* checked : {"[x] Always on Top - &This Window (40006)", "  [x] &Equalizer (40050)",
                              "  [x] &Compressor (40051)", "[x] &Fullscreen\tF11 (40008)", "Always on &Top (40003)"}) {
    EXPECT_NE(std::find(lines.begin(), lines.end(), checked), lines.end()) << checked;
  }
  Inside(Window()).alwaysOnTop_ = true;
  EXPECT_TRUE(FileMenuHas("[x] Always on &Top (40003)"));
}

TEST_F(Menus, CheckMarksFollowTheMediaSettings) {
  Inside(Window()).vlcHwAccel_ = "d3d11va";
  Inside(Window()).vlcAudioOutput_ = "mmdevice";
  Inside(Window()).vlcDeinterlace_ = "mean";
  const Lines lines = OpenFile().lines;
  for (const char* checked :
       {"    [x] D3&D11VA (40023)", "    [x] &MMDevice (40032)", "    [x] &Mean (40043)", "    &Auto (40020)"}) {
    EXPECT_NE(std::find(lines.begin(), lines.end(), checked), lines.end()) << checked;
  }
}

TEST_F(Menus, UnknownHardwareAccelerationChecksNoItem) {
  Inside(Window()).vlcHwAccel_ = "vulkan";
  const Lines lines = OpenFile().lines;
  EXPECT_EQ(Lines(lines.begin() + 5, lines.begin() + 9),
            (Lines{"    &Auto (40020)", "    &None (40021)", "    &DXVA2 (40022)", "    D3&D11VA (40023)"}));
}

TEST_F(Menus, ChosenItemComesBackAsACommand) {
  LogCapture log;
  OpenHelp({VK_DOWN, VK_RETURN});
  EXPECT_TRUE(log.Has("INFO HandleMenuCommand: About menu item selected"));
}

TEST_F(Menus, ItemIsChosenByItsKey) {
  LogCapture log;
  OpenFile({'T'});
  EXPECT_TRUE(log.Has("INFO HandleMenuCommand: Always on Top menu item selected"));
  EXPECT_TRUE(Inside(Window()).alwaysOnTop_);
}

TEST_F(Menus, FileAndHelpButtonsOpenTheirMenus) {
  const auto click = [this](HWND button) { return Open([=] { SendMessageA(button, BM_CLICK, 0, 0); }).lines.size(); };
  EXPECT_EQ(click(Inside(Window()).fileButton_), 29u);
  EXPECT_EQ(click(Inside(Window()).helpButton_), 1u);
}

TEST_F(Menus, MissingButtonMeansNoMenu) {
  DestroyWindow(Inside(Window()).fileButton_);
  CallLog calls(Window());
  Inside(Window()).commands_.ShowFileMenu();
  EXPECT_TRUE(calls.Of("TrackPopupMenu").empty());
}

int menusRefusedAfter = 0;
HMENU WINAPI RefuseMenu() {
  if (menusRefusedAfter-- > 0) {
    return reinterpret_cast<decltype(&CreatePopupMenu)>(
        GetProcAddress(GetModuleHandleA("user32.dll"), "CreatePopupMenu"))();
  }
  return nullptr;
}

TEST_F(Menus, MenuThatCannotBeCreatedIsLogged) {
  menusRefusedAfter = 0;
  const test::ImportHook hook("user32.dll", "CreatePopupMenu", &RefuseMenu);
  LogCapture log;
  Inside(Window()).commands_.ShowFileMenu();
  Inside(Window()).commands_.ShowHelpMenu();
  EXPECT_EQ(log.Lines(),
            (Lines{"DEBUG ShowFileMenu: Showing File popup menu", "ERROR ShowFileMenu: Failed to create popup menu",
                   "DEBUG ShowHelpMenu: Showing Help popup menu", "ERROR ShowHelpMenu: Failed to create popup menu"}));
}

TEST_F(Menus, VlcSettingsThatCannotBeCreatedAreLeftOut) {
  menusRefusedAfter = 1;
  const test::ImportHook hook("user32.dll", "CreatePopupMenu", &RefuseMenu);
  EXPECT_EQ(OpenFile().lines,
            (Lines{"&New Window (40001)", "---", "&Settings... (40002)", "---", "Always on &Top (40003)", "---",
                   "&Fullscreen\tF11 (40008)", "---", "E&xit (40004)"}));
}

using Commands = test::ShellTest;

struct MediaRow {
  WORD id;
  std::string WindowSettings::*member;
  const char* value;
  const char* logLine;
};
constexpr MediaRow kMediaRows[] = {
    {40020, &WindowSettings::vlcHwAccel_, "auto", "VLC Hardware Acceleration - Auto"},
    {40021, &WindowSettings::vlcHwAccel_, "none", "VLC Hardware Acceleration - None"},
    {40022, &WindowSettings::vlcHwAccel_, "dxva2", "VLC Hardware Acceleration - DXVA2"},
    {40023, &WindowSettings::vlcHwAccel_, "d3d11va", "VLC Hardware Acceleration - D3D11VA"},
    {40030, &WindowSettings::vlcAudioOutput_, "directsound", "VLC Audio Output - DirectSound"},
    {40031, &WindowSettings::vlcAudioOutput_, "wasapi", "VLC Audio Output - WASAPI"},
    {40032, &WindowSettings::vlcAudioOutput_, "mmdevice", "VLC Audio Output - MMDevice"},
    {40040, &WindowSettings::vlcDeinterlace_, "off", "VLC Deinterlacing - Off"},
    {40041, &WindowSettings::vlcDeinterlace_, "linear", "VLC Deinterlacing - Linear"},
    {40042, &WindowSettings::vlcDeinterlace_, "blend", "VLC Deinterlacing - Blend"},
    {40043, &WindowSettings::vlcDeinterlace_, "mean", "VLC Deinterlacing - Mean"},
};

TEST_F(Commands, MediaChoicesSetTheirMemberLogAndSave) {
  for (const MediaRow& row : kMediaRows) {
    SCOPED_TRACE(row.id);
    Inside(Window()).settings_.*row.member = "other";
    LogCapture log;
    Inside(Window()).commands_.HandleMenuCommand(row.id);
    EXPECT_EQ(Inside(Window()).settings_.*row.member, row.value);
    const Lines lines = log.Lines();
    ASSERT_EQ(lines.size(), 9u);
    EXPECT_EQ(lines[0], "DEBUG HandleMenuCommand: Received command " + std::to_string(row.id));
    EXPECT_EQ(lines[1], std::string("INFO HandleMenuCommand: ") + row.logLine);
    EXPECT_EQ(lines[2], "INFO SaveSettings: Saving application settings to registry");
    EXPECT_EQ(log.CountContaining(std::string(" saved: ") + row.value), 1);
  }
}

TEST_F(Commands, EqualizerAndCompressorToggleAndSave) {
  LogCapture log;
  Inside(Window()).commands_.HandleMenuCommand(40050);
  EXPECT_TRUE(Inside(Window()).vlcEqualizerEnabled_);
  EXPECT_FALSE(Inside(Window()).vlcCompressorEnabled_);
  Inside(Window()).commands_.HandleMenuCommand(40051);
  EXPECT_TRUE(Inside(Window()).vlcCompressorEnabled_);
  Inside(Window()).commands_.HandleMenuCommand(40050);
  EXPECT_FALSE(Inside(Window()).vlcEqualizerEnabled_);
  EXPECT_EQ(log.Count("INFO HandleMenuCommand: VLC Equalizer toggled"), 2);
  EXPECT_EQ(log.Count("INFO HandleMenuCommand: VLC Compressor toggled"), 1);
  EXPECT_EQ(log.Count("INFO SaveSettings: Saving application settings to registry"), 3);
  EXPECT_EQ(log.Count("INFO SaveSettings: VLC Equalizer enabled saved: enabled"), 2);
  EXPECT_EQ(log.Count("INFO SaveSettings: VLC Compressor enabled saved: enabled"), 2);
  EXPECT_EQ(log.CountContaining("Unknown command"), 0);
}

TEST_F(Commands, RestoreDefaultsResetsTheFiveMediaSettingsAndSaves) {
  Inside(Window()).vlcHwAccel_ = "none";
  Inside(Window()).vlcAudioOutput_ = "wasapi";
  Inside(Window()).vlcDeinterlace_ = "mean";
  Inside(Window()).vlcEqualizerEnabled_ = true;
  Inside(Window()).vlcCompressorEnabled_ = true;
  Inside(Window()).alwaysOnTop_ = true;
  LogCapture log;
  Inside(Window()).commands_.HandleMenuCommand(40052);
  EXPECT_TRUE(Inside(Window()).alwaysOnTop_) << "no media setting";
  EXPECT_EQ(Inside(Window()).vlcHwAccel_, "auto");
  EXPECT_EQ(Inside(Window()).vlcAudioOutput_, "directsound");
  EXPECT_EQ(Inside(Window()).vlcDeinterlace_, "off");
  EXPECT_FALSE(Inside(Window()).vlcEqualizerEnabled_);
  EXPECT_FALSE(Inside(Window()).vlcCompressorEnabled_);
  EXPECT_EQ(log.Lines()[1], "INFO HandleMenuCommand: VLC Restore Defaults selected");
  EXPECT_EQ(log.Lines()[2], "INFO SaveSettings: Saving application settings to registry");
  EXPECT_TRUE(log.Has("INFO SaveSettings: Always on top setting saved: enabled"));
  EXPECT_TRUE(log.Has("INFO SaveSettings: VLC Hardware Acceleration saved: auto"));
  EXPECT_EQ(log.Lines().back(), "INFO VLC settings restored to defaults");
}

TEST_F(Commands, AlwaysOnTopTogglesWindowAndOverlayAndSaves) {
  LogCapture log;
  CallLog calls(Window());
  Inside(Window()).commands_.HandleMenuCommand(40003);
  EXPECT_TRUE(Inside(Window()).alwaysOnTop_);
  Inside(Window()).commands_.HandleMenuCommand(40003);
  EXPECT_FALSE(Inside(Window()).alwaysOnTop_);
  EXPECT_EQ(calls.Calls(), (Lines{"SetWindowPos main after=HWND_TOPMOST 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE",
                                  "SetWindowPos overlay after=HWND_TOPMOST 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE",
                                  "SetWindowPos main after=HWND_NOTOPMOST 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE",
                                  "SetWindowPos overlay after=HWND_NOTOPMOST 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE"}));
  EXPECT_EQ(log.Count("INFO HandleMenuCommand: Always on Top menu item selected"), 2);
  EXPECT_TRUE(log.Has("INFO Always on top enabled"));
  EXPECT_TRUE(log.Has("INFO Always on top disabled"));
  EXPECT_TRUE(log.Has("INFO SaveSettings: Always on top setting saved: enabled"));
  EXPECT_TRUE(log.Has("INFO SaveSettings: Always on top setting saved: disabled"));
}

TEST_F(Commands, AlwaysOnTopTouchesThisWindowOnly) {
  VantroWindow& second = AddWindow();
  Inside(Window()).commands_.HandleMenuCommand(40003);
  EXPECT_FALSE(Inside(second).alwaysOnTop_);
  EXPECT_FALSE(GetWindowLongA(Inside(second).flutterHostWindow_, GWL_EXSTYLE) & WS_EX_TOPMOST);
}

TEST_F(Commands, AlwaysOnTopWithoutAnOverlayTouchesTheWindowAlone) {
  DestroyWindow(Inside(Window()).flutterHostWindow_);
  CallLog calls(Window());
  Inside(Window()).commands_.HandleMenuCommand(40003);
  EXPECT_EQ(calls.Calls(), (Lines{"SetWindowPos main after=HWND_TOPMOST 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE"}));
}

TEST_F(Commands, ThisWindowTogglesWindowAndOverlayAndIsNotSaved) {
  LogCapture log;
  CallLog calls(Window());
  Inside(Window()).commands_.HandleMenuCommand(40006);
  EXPECT_TRUE(Inside(Window()).alwaysOnTopThisWindow_);
  Inside(Window()).commands_.HandleMenuCommand(40006);
  EXPECT_FALSE(Inside(Window()).alwaysOnTopThisWindow_);
  EXPECT_EQ(calls.Calls(), (Lines{"SetWindowPos main after=HWND_TOPMOST 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE",
                                  "SetWindowPos overlay after=HWND_TOPMOST 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE",
                                  "SetWindowPos main after=HWND_NOTOPMOST 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE",
                                  "SetWindowPos overlay after=HWND_NOTOPMOST 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE"}));
  EXPECT_EQ(log.Count("INFO HandleMenuCommand: Always on Top - This Window menu item selected"), 2);
  EXPECT_TRUE(log.Has("INFO Always on top enabled for this window only"));
  EXPECT_TRUE(log.Has("INFO Always on top disabled for this window only"));
  EXPECT_EQ(log.CountContaining("SaveSettings"), 0);
}

TEST_F(Commands, ThisWindowChosenWhileGreyFlipsTheFlagAndNothingElse) {
  Inside(Window()).alwaysOnTop_ = true;
  LogCapture log;
  CallLog calls(Window());
  Inside(Window()).commands_.HandleMenuCommand(40006);
  EXPECT_TRUE(Inside(Window()).alwaysOnTopThisWindow_);
  EXPECT_TRUE(calls.Calls().empty());
  EXPECT_EQ(log.Lines().back(), "INFO Global always on top is enabled - window-specific setting has no effect");
  // After the global setting is off, the next toggle flips the flag and applies it.
  Inside(Window()).alwaysOnTop_ = false;
  Inside(Window()).commands_.HandleMenuCommand(40006);
  EXPECT_EQ(calls.Calls().front(), "SetWindowPos main after=HWND_NOTOPMOST 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE");
}

TEST_F(Commands, SettingsAndAboutAskTheInterfaceWithoutAnArgument) {
  sent_.Clear();
  LogCapture log;
  Inside(Window()).commands_.HandleMenuCommand(40002);
  Inside(Window()).commands_.HandleMenuCommand(40005);
  EXPECT_EQ(CallsToInterface(), (Lines{"settings_requested", "about_requested"}));
  EXPECT_TRUE(log.Has("INFO HandleMenuCommand: Settings menu item selected"));
  EXPECT_TRUE(log.Has("INFO HandleMenuCommand: About menu item selected"));
}

TEST_F(Commands, SettingsAndAboutWithoutAChannelHandlerAreSwallowed) {
  Window().methodChannelHandler_.reset();
  sent_.Clear();
  Inside(Window()).commands_.HandleMenuCommand(40002);
  Inside(Window()).commands_.HandleMenuCommand(40005);
  EXPECT_TRUE(CallsToInterface().empty());
}

TEST_F(Commands, ExitAndTheCloseButtonPostTheSameCloseToThisWindow) {
  CallLog calls(Window());
  LogCapture log;
  Inside(Window()).commands_.HandleMenuCommand(40004);
  Inside(Window()).commands_.HandleMenuCommand(999);
  EXPECT_EQ(calls.Calls(), (Lines{"PostMessageA main WM_CLOSE 0 0", "PostMessageA main WM_CLOSE 0 0"}));
  EXPECT_TRUE(log.Has("INFO HandleMenuCommand: Exit menu item selected"));
  EXPECT_TRUE(log.Has("INFO HandleMenuCommand: Close button clicked"));
}

TEST_F(Commands, ExitClosesThisWindowOnly) {
  VantroWindow& second = AddWindow();
  Inside(second).commands_.HandleMenuCommand(40004);
  test::DrainQueue();
  EXPECT_FALSE(IsWindow(second.hwnd_));
  EXPECT_TRUE(IsWindow(Window().hwnd_));
}

TEST_F(Commands, MinimizeButtonMinimizes) {
  CallLog calls(Window());
  LogCapture log;
  Inside(Window()).commands_.HandleMenuCommand(997);
  EXPECT_EQ(calls.Calls(), (Lines{"ShowWindow main SW_MINIMIZE"}));
  EXPECT_TRUE(IsIconic(Window().hwnd_));
  EXPECT_TRUE(log.Has("INFO HandleMenuCommand: Minimize button clicked"));
}

TEST_F(Commands, MaximizeButtonNeverMaximizesButTogglesFullscreen) {
  LogCapture log;
  Inside(Window()).commands_.HandleMenuCommand(998);
  EXPECT_TRUE(Inside(Window()).isFullscreen_);
  EXPECT_FALSE(IsZoomed(Window().hwnd_));
  Inside(Window()).commands_.HandleMenuCommand(998);
  EXPECT_FALSE(Inside(Window()).isFullscreen_);
  EXPECT_EQ(log.Count("INFO HandleMenuCommand: Maximize button clicked - toggling fullscreen"), 2);
}

TEST_F(Commands, FullscreenItemTogglesFullscreen) {
  LogCapture log;
  Inside(Window()).commands_.HandleMenuCommand(40008);
  EXPECT_TRUE(Inside(Window()).isFullscreen_);
  EXPECT_TRUE(log.Has("INFO HandleMenuCommand: Fullscreen menu item selected"));
}

TEST_F(Commands, NewWindowOpensOneMore) {
  LogCapture log;
  Inside(Window()).commands_.HandleMenuCommand(40001);
  EXPECT_EQ(GetWindowRegistry().size(), 2u);
  EXPECT_EQ(log.Lines()[1], "INFO HandleMenuCommand: New Window menu item selected");
}

TEST_F(Commands, UnknownIdsLogAndDoNothing) {
  for (const WORD id : {0, 104, 996, 1000, 1002, 40000, 40007, 40009, 40010, 40011, 40024, 40033, 40044, 40053}) {
    SCOPED_TRACE(id);
    LogCapture log;
    CallLog calls(Window());
    Inside(Window()).commands_.HandleMenuCommand(id);
    EXPECT_EQ(log.Lines(), (Lines{"DEBUG HandleMenuCommand: Received command " + std::to_string(id),
                                  "DEBUG HandleMenuCommand: Unknown command " + std::to_string(id)}));
    EXPECT_TRUE(calls.Calls().empty());
  }
}

}  // namespace
}  // namespace vantro
