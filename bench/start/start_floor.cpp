// The floor of a start: makes only the system calls that the host's first window needs, in the host's order. It makes
// the windows, title bar, player, overlay, engine with its view and channels, hook and settings, and then shows the
// window. It writes no log and checks only results that a later call needs.
//
//   start_floor                    runs until it is ended
//   start_floor chrome SECONDS     prints the times of its chrome (floor_chrome.h), and ends
#include <windows.h>
// After windows.h, whose types they use.
#include <commctrl.h>
#include <dwmapi.h>
#include <objbase.h>
#include <shlobj.h>
#include <shlwapi.h>
// After all of them.
#include <gdiplus.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>

#include "bench/start/floor_chrome.h"
#include "bench/start/floor_windows.h"
#include "player/libvlc_api.h"

namespace floor_program {

namespace {

constexpr wchar_t kMainClass[] = L"StartFloor";
constexpr wchar_t kOverlayClass[] = L"StartFloorOverlay";
constexpr wchar_t kVideoClass[] = L"StartFloorVideo";
constexpr DWORD kButton = WS_CHILD | WS_VISIBLE | BS_OWNERDRAW;
constexpr DWORD kStatic = WS_CHILD | WS_VISIBLE;
constexpr const char* kArguments[] = {"--intf=dummy", "--no-video-title-show", "--aout=directsound",
                                      "--http-reconnect"};
constexpr int kEvents[] = {0x102, 0x103, 0x104, 0x100, 0x105, 0x106, 5, 0x10A, 0x10C, 0x10B, 0x10D};
// Every function that the host looks up when its player starts.
constexpr const char* kFunctions[] = {"libvlc_new",
                                      "libvlc_release",
                                      "libvlc_errmsg",
                                      "libvlc_get_version",
                                      "libvlc_abi_version",
                                      "libvlc_media_player_new",
                                      "libvlc_media_player_release",
                                      "libvlc_media_player_set_hwnd",
                                      "libvlc_media_player_event_manager",
                                      "libvlc_media_player_stop",
                                      "libvlc_media_player_play",
                                      "libvlc_media_player_pause",
                                      "libvlc_media_player_is_playing",
                                      "libvlc_media_player_get_length",
                                      "libvlc_media_player_get_time",
                                      "libvlc_media_player_set_time",
                                      "libvlc_media_player_get_media",
                                      "libvlc_set_fullscreen",
                                      "libvlc_get_fullscreen",
                                      "libvlc_media_new_path",
                                      "libvlc_media_new_location",
                                      "libvlc_media_new_uri",
                                      "libvlc_media_add_option",
                                      "libvlc_media_player_set_media",
                                      "libvlc_media_release",
                                      "libvlc_audio_set_volume",
                                      "libvlc_audio_get_volume",
                                      "libvlc_audio_set_mute",
                                      "libvlc_audio_get_mute",
                                      "libvlc_audio_get_track_description",
                                      "libvlc_audio_set_track",
                                      "libvlc_video_set_scale",
                                      "libvlc_video_get_width",
                                      "libvlc_video_get_height",
                                      "libvlc_video_set_viewport",
                                      "libvlc_video_get_spu_description",
                                      "libvlc_video_set_spu",
                                      "libvlc_event_attach",
                                      "libvlc_event_detach",
                                      "libvlc_track_description_list_release"};

template <typename Function>
Function Find(HMODULE library, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

void MakeMainWindow(HINSTANCE instance) {
  Window& window = TheWindow();
  WNDCLASSEXW description{};
  description.cbSize = sizeof description;
  description.style = CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS;
  description.lpfnWndProc = MainProcedure;
  description.cbWndExtra = sizeof(LONG_PTR);
  description.hInstance = instance;
  description.hIcon = LoadIconA(instance, MAKEINTRESOURCEA(101));
  description.hCursor = LoadCursor(nullptr, IDC_ARROW);
  description.hbrBackground = window.backgroundBrush;
  description.lpszClassName = kMainClass;
  description.hIconSm = LoadIconA(instance, MAKEINTRESOURCEA(102));
  RegisterClassExW(&description);
  window.main = CreateWindowExW(0, kMainClass, L"Floor", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT, 1280, 720,
                                nullptr, nullptr, instance, nullptr);
  SetWindowLongPtrA(window.main, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&window));
  const LONG style = GetWindowLongA(window.main, GWL_STYLE);
  SetWindowLongA(window.main, GWL_STYLE,
                 (style & ~(WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_MAXIMIZEBOX)) | WS_THICKFRAME);
  const COLORREF colour = RGB(70, 70, 95);
  DwmSetWindowAttribute(window.main, 34, &colour, sizeof colour);
  DwmSetWindowAttribute(window.main, 35, &colour, sizeof colour);
  SetWindowPos(window.main, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_FRAMECHANGED);
}

HWND MakeControl(const wchar_t* className, const wchar_t* text, DWORD exStyle, DWORD style, UINT_PTR id, int x, int y,
                 int width, int height) {
  return CreateWindowExW(exStyle, className, text, style, x, y, width, height, TheWindow().main,
                         reinterpret_cast<HMENU>(id), GetModuleHandleW(nullptr), nullptr);
}

void MakeTitleBar(HINSTANCE instance) {
  TitleBarControls& controls = TheWindow().controls;
  controls.icon = MakeControl(L"STATIC", L"", 0, kStatic | SS_ICON | SS_CENTERIMAGE, 0, 8, 7, 16, 16);
  const HANDLE icon = LoadImageA(instance, MAKEINTRESOURCEA(101), IMAGE_ICON, 16, 16, LR_DEFAULTCOLOR);
  SendMessageA(controls.icon, STM_SETICON, reinterpret_cast<WPARAM>(icon), 0);
  controls.title = MakeControl(L"STATIC", L"Vantro", 0, kStatic | SS_CENTERIMAGE, 0, 32, 6, 50, 18);
  controls.file = MakeControl(L"BUTTON", L"File", 0, kButton, 40010, 90, 5, 35, 20);
  controls.help = MakeControl(L"BUTTON", L"Help", 0, kButton, 40011, 135, 5, 35, 20);
  controls.search =
      MakeControl(L"EDIT", L"", WS_EX_CLIENTEDGE, kStatic | WS_TABSTOP | ES_AUTOHSCROLL, 104, 200, 5, 150, 20);
  controls.close = MakeControl(L"BUTTON", L"", 0, kButton, 999, 0, 0, 45, 30);
  controls.maximize = MakeControl(L"BUTTON", L"", 0, kButton, 998, 0, 0, 45, 30);
  controls.minimize = MakeControl(L"BUTTON", L"", 0, kButton, 997, 0, 0, 45, 30);
  controls.speaker = MakeControl(L"STATIC", L"", 0, kStatic | SS_OWNERDRAW, 1002, 0, 0, 20, 20);
  controls.volume = MakeControl(L"STATIC", L"", 0, kStatic | SS_OWNERDRAW | SS_NOTIFY, 1001, 0, 0, 80, 20);
  SendMessageW(controls.search, EM_SETCUEBANNER, FALSE, reinterpret_cast<LPARAM>(L"Search"));
  EnableWindow(controls.search, TRUE);
  const HWND focus = GetFocus();
  SetFocus(controls.search);
  GetFocus();
  if (focus && IsWindow(focus)) SetFocus(focus);
  LayoutControls();
}

void MakeVideoWindow() {
  Window& window = TheWindow();
  WNDCLASSW description{};
  description.lpfnWndProc = DefWindowProcW;
  description.hInstance = GetModuleHandleW(nullptr);
  description.hCursor = LoadCursor(nullptr, IDC_ARROW);
  description.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
  description.lpszClassName = kVideoClass;
  RegisterClassW(&description);
  RECT client{};
  GetClientRect(window.main, &client);
  window.video =
      CreateWindowExW(WS_EX_NOPARENTNOTIFY, kVideoClass, L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN,
                      0, 0, client.right, client.bottom, window.main, nullptr, GetModuleHandleW(nullptr), nullptr);
  SetWindowPos(window.video, HWND_BOTTOM, 0, 0, client.right, client.bottom, SWP_NOACTIVATE);
}

HMODULE LoadBeside(const char* name) {
  if (const HMODULE loaded = GetModuleHandleA(name)) return loaded;
  char path[MAX_PATH];
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  PathRemoveFileSpecA(path);
  PathAppendA(path, (std::string("vlc\\") + name).c_str());
  if (const HMODULE beside = LoadLibraryA(path)) return beside;
  return LoadLibraryA(name);
}

void Ignore(const libvlc_event_t*, void*) {}

bool StartPlayer() {
  if (!std::getenv("VLC_PLUGIN_PATH")) {
    char folder[MAX_PATH];
    SHGetFolderPathA(nullptr, CSIDL_PROGRAM_FILES, nullptr, SHGFP_TYPE_CURRENT, folder);
    PathFileExistsA((std::string(folder) + "\\VideoLAN\\VLC").c_str());
  }
  MakeVideoWindow();
  const HMODULE library = LoadBeside("libvlc.dll");
  LoadBeside("libvlccore.dll");
  for (const char* name : kFunctions) GetProcAddress(library, name);
  if (const auto abi = Find<unsigned (*)()>(library, "libvlc_abi_version")) abi();
  Find<const char* (*)()>(library, "libvlc_get_version")();
  libvlc_instance_t* const vlc = libvlc_new(static_cast<int>(std::size(kArguments)), kArguments);
  if (!vlc) return false;
  libvlc_media_player_t* const player = libvlc_media_player_new(vlc);
  Find<void (*)(libvlc_media_player_t*, void*)>(library, "libvlc_media_player_set_hwnd")(player, TheWindow().video);
  auto* const events =
      Find<libvlc_event_manager_t* (*)(libvlc_media_player_t*)>(library, "libvlc_media_player_event_manager")(player);
  const auto attach =
      Find<int (*)(libvlc_event_manager_t*, int, libvlc_callback_t, void*)>(library, "libvlc_event_attach");
  for (int type : kEvents) attach(events, type, Ignore, nullptr);
  Find<int (*)(libvlc_media_player_t*, int)>(library, "libvlc_audio_set_volume")(player, 100);
  return true;
}

void MakeOverlay(HINSTANCE instance) {
  Window& window = TheWindow();
  WNDCLASSEXW description{};
  description.cbSize = sizeof description;
  description.style = CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS;
  description.lpfnWndProc = OverlayProcedure;
  description.hInstance = instance;
  description.hCursor = LoadCursor(nullptr, IDC_ARROW);
  description.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
  description.lpszClassName = kOverlayClass;
  RegisterClassExW(&description);
  RECT client{};
  GetClientRect(window.main, &client);
  POINT corner{client.left, client.top + kTitleBarHeight};
  ClientToScreen(window.main, &corner);
  window.overlay = CreateWindowExW(WS_EX_TRANSPARENT | WS_EX_TOOLWINDOW, kOverlayClass, L"Floor's view",
                                   WS_POPUP | WS_VISIBLE, corner.x, corner.y, client.right,
                                   client.bottom - kTitleBarHeight, window.main, nullptr, instance, nullptr);
  const MARGINS whole{-1, -1, -1, -1};
  DwmExtendFrameIntoClientArea(window.overlay, &whole);
}

void AskForSize(const std::filesystem::path& file) {
  if (std::filesystem::exists(file)) static_cast<void>(std::filesystem::file_size(file));
}

// A start checks the bundle twice, once in the window and once in its engine. An error of the file system can end it.
void LookAtBundle(const std::filesystem::path& data) {
  const std::filesystem::path icu = data / L"icudtl.dat";
  const std::filesystem::path assets = data / L"flutter_assets";
  if (std::filesystem::exists(assets)) {
    AskForSize(assets / L"kernel_blob.bin");
    AskForSize(assets / L"app.so");
  }
  AskForSize(icu);

  AskForSize(icu);
  if (!std::filesystem::exists(assets)) return;
  for (const auto& entry : std::filesystem::directory_iterator(assets)) {
    if (!entry.is_directory()) static_cast<void>(std::filesystem::file_size(entry.path()));
  }
  AskForSize(assets / L"kernel_blob.bin");
}

void IgnoreMessage(FlutterDesktopMessengerRef, const FlutterDesktopMessage*, void*) {}

// Writes the file from which the next start reads how this one ended.
void WriteMarker() {
  wchar_t folder[MAX_PATH + 1];
  GetTempPathW(MAX_PATH + 1, folder);
  GetFileAttributesW(folder);
  const std::filesystem::path path = std::filesystem::path(folder) / L"vantro_start_floor_marker.txt";
  const std::string narrow = path.string();
  char text[256];
  if (FILE* const file = std::fopen(narrow.c_str(), "r")) {
    while (std::fread(text, 1, sizeof text, file) > 0) continue;
    std::fclose(file);
  }
  if (FILE* const file = std::fopen(narrow.c_str(), "w")) {
    std::fputs("running=1\nlastAction=startup\n", file);
    std::fclose(file);
  }
}

bool StartEngine() {
  Window& window = TheWindow();
  wchar_t program[MAX_PATH];
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  const std::filesystem::path data = std::filesystem::path(program).parent_path() / L"data";
  LookAtBundle(data);
  const std::wstring assets = data / L"flutter_assets", icu = data / L"icudtl.dat", library = data / L"app.so";
  const char* arguments[] = {"floor", "--no-sound-null-safety", "--enable-dart-profiling", "--start-paused",
                             "--dart-flags=--observe"};
  FlutterDesktopEngineProperties properties{};
  properties.assets_path = assets.c_str();
  properties.icu_data_path = icu.c_str();
  properties.aot_library_path = library.c_str();
  properties.dart_entrypoint_argc = static_cast<int>(std::size(arguments));
  properties.dart_entrypoint_argv = arguments;
  window.view = FlutterDesktopViewControllerCreate(800, 600, FlutterDesktopEngineCreate(&properties));
  if (!window.view) return false;
  const FlutterDesktopEngineRef engine = FlutterDesktopViewControllerGetEngine(window.view);
  const FlutterDesktopMessengerRef messenger = FlutterDesktopMessengerAddRef(FlutterDesktopEngineGetMessenger(engine));
  window.viewWindow = FlutterDesktopViewGetHWND(FlutterDesktopViewControllerGetView(window.view));
  SetParent(window.viewWindow, window.overlay);
  SetWindowLongPtrA(window.viewWindow, GWL_STYLE, GetWindowLongPtrA(window.viewWindow, GWL_STYLE) | WS_CHILD);
  SetWindowPos(window.viewWindow, HWND_TOP, 0, 0, 800, 600, SWP_SHOWWINDOW);
  ShowWindow(window.viewWindow, SW_SHOW);
  WriteMarker();
  FlutterDesktopMessengerSetCallback(messenger, "org.vantro.player/communicate", IgnoreMessage, nullptr);
  window.listens = true;
  FlutterDesktopMessengerSetCallback(messenger, "org.vantro.thumbnail/worker", IgnoreMessage, nullptr);
  return true;
}

void OpenOverlayForInput() {
  const Window& window = TheWindow();
  SetWindowLongPtrA(window.overlay, GWL_EXSTYLE,
                    GetWindowLongPtrA(window.overlay, GWL_EXSTYLE) & ~LONG_PTR{WS_EX_TRANSPARENT});
  constexpr UINT kRaise = SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE;
  for (int raise = 0; raise < 3; ++raise) {
    SetWindowPos(window.overlay, HWND_TOP, 0, 0, 0, 0, kRaise | SWP_SHOWWINDOW);
  }
  PlaceOverlay(0, SWP_NOACTIVATE | SWP_SHOWWINDOW);
  ShowWindow(window.viewWindow, SW_SHOW);
  SetFocus(window.viewWindow);
  if (GetTopWindow(GetDesktopWindow()) != window.overlay) SetWindowPos(window.overlay, HWND_TOP, 0, 0, 0, 0, kRaise);
}

void ReadSettings() {
  HKEY key;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Vantro\\WindowSettings", 0, KEY_READ, &key) != ERROR_SUCCESS) return;
  for (const wchar_t* name : {L"AlwaysOnTop", L"VLCHwAccel", L"VLCAudioOutput", L"VLCDeinterlace",
                              L"VLCEqualizerEnabled", L"VLCCompressorEnabled"}) {
    BYTE value[512];
    DWORD size = sizeof value;
    RegQueryValueExW(key, name, nullptr, nullptr, value, &size);
  }
  RegCloseKey(key);
}

LONG WINAPI Pass(EXCEPTION_POINTERS*) { return EXCEPTION_CONTINUE_SEARCH; }

int Run(HINSTANCE instance, const char* arguments, int showCommand) {
  SetUnhandledExceptionFilter(Pass);
  CreateMutexW(nullptr, FALSE, L"Vantro_StartFloor_Mutex");
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  Window& window = TheWindow();
  window.titleBarBrush = CreateSolidBrush(RGB(70, 70, 95));
  Gdiplus::GdiplusStartupInput input;
  ULONG_PTR token;
  Gdiplus::GdiplusStartup(&token, &input, nullptr);
  window.backgroundBrush = CreateSolidBrush(RGB(0, 0, 0));
  MakeMainWindow(instance);
  MakeTitleBar(instance);
  if (!StartPlayer()) return 1;
  MakeOverlay(instance);
  if (!StartEngine()) return 1;
  window.hook = SetWindowsHookExA(WH_CALLWNDPROC, FollowMainWindow, GetModuleHandleA(nullptr), GetCurrentThreadId());
  OpenOverlayForInput();
  ReadSettings();
  ShowWindow(window.main, showCommand);
  UpdateWindow(window.main);
  double seconds;
  if (std::sscanf(arguments, "chrome %lf", &seconds) == 1) {
    PrintChromeTimes(seconds);
    std::_Exit(0);
  }
  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  // Ends without releasing anything, because only the start is measured.
  std::_Exit(0);
}

}  // namespace

}  // namespace floor_program

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR arguments, int showCommand) {
  return floor_program::Run(instance, arguments, showCommand);
}
