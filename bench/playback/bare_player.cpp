// The floor for the benchmarks of playback: a bare Win32 program that makes a player's libvlc calls and nothing else.
// At the start it makes one window with one player. Then it reads commands from standard input, one a line:
//
//   play URL            stops what plays in the window and plays the URL instead
//   stop                stops it, waits for the Stopped event, and prints how many milliseconds that took
//   place X Y W H       moves the window's video, in client pixels
//   tile X Y W H URL    adds a player in a child window, which plays the URL
//   window              adds a window with its own instance and player
//   popup               adds an empty window, owned by the first
//   engine              adds a view of the embedding, with its own engine
//
// The development library reports (VANTRO_LIBVLC_TIMES) when a picture was drawn.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "flutter_host/embedding_api.h"
#include "player/libvlc_api.h"

namespace {

constexpr UINT kCommandMessage = WM_APP + 1;  // lParam: the line, a std::string that the receiver deletes
constexpr const wchar_t* kWindowClass = L"BarePlayer";
constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr const char* kArguments[] = {"--intf=dummy", "--no-video-title-show", "--aout=directsound",
                                      "--http-reconnect"};
constexpr int kPlayerEvents[] = {0x102, 0x103, 0x104, 0x100, 0x105, 0x106, 0x10A, 0x10C, 0x10B, 0x10D};
constexpr int kStopped = 0x106;
constexpr DWORD kLongestStop = 5000;  // milliseconds
constexpr int kTileEvents[] = {0x104, 0x100};

template <typename Function>
Function Resolve(const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("libvlc.dll"), name)));
}

struct Library {
  using SetWindow = void (*)(libvlc_media_player_t*, void*);
  using EventManager = libvlc_event_manager_t* (*)(libvlc_media_player_t*);
  using EventAttach = int (*)(libvlc_event_manager_t*, int, libvlc_callback_t, void*);
  using AddOption = void (*)(libvlc_media_t*, const char*);
  using SetInt = int (*)(libvlc_media_player_t*, int);
  using GetInt = int (*)(libvlc_media_player_t*);
  SetWindow setWindow = Resolve<SetWindow>("libvlc_media_player_set_hwnd");
  EventManager eventManager = Resolve<EventManager>("libvlc_media_player_event_manager");
  EventAttach eventAttach = Resolve<EventAttach>("libvlc_event_attach");
  AddOption addOption = Resolve<AddOption>("libvlc_media_add_option");
  SetInt setVolume = Resolve<SetInt>("libvlc_audio_set_volume");
  GetInt getVolume = Resolve<GetInt>("libvlc_audio_get_volume");
  GetInt getMute = Resolve<GetInt>("libvlc_audio_get_mute");
};

HWND MakeWindow(HWND parent, int x, int y, int width, int height) {
  static const bool registered = [] {
    WNDCLASSW description{};
    description.lpfnWndProc = DefWindowProcW;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
    description.lpszClassName = kWindowClass;
    return RegisterClassW(&description) != 0;
  }();
  if (!registered) return nullptr;
  const DWORD style = parent ? WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN : WS_OVERLAPPEDWINDOW;
  return CreateWindowExW(0, kWindowClass, L"Bare player", style, x, y, width, height, parent, nullptr,
                         GetModuleHandleW(nullptr), nullptr);
}

void Ignore(const libvlc_event_t*, void*) {}

void Signal(const libvlc_event_t*, void* event) { SetEvent(event); }

double Milliseconds() {
  LARGE_INTEGER count, frequency;
  QueryPerformanceCounter(&count);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(count.QuadPart) * 1000 / static_cast<double>(frequency.QuadPart);
}

class BarePlayer {
 public:
  bool Start() {
    instance_ = libvlc_new(static_cast<int>(std::size(kArguments)), kArguments);
    if (!instance_) return false;
    window_ = MakeWindow(nullptr, CW_USEDEFAULT, CW_USEDEFAULT, kWidth, kHeight);
    RECT client;
    GetClientRect(window_, &client);
    video_ = MakeWindow(window_, 0, 0, client.right, client.bottom);
    player_ = MakePlayer(instance_, video_);
    for (int type : kPlayerEvents) library_.eventAttach(library_.eventManager(player_), type, Ignore, nullptr);
    library_.eventAttach(library_.eventManager(player_), kStopped, Signal, stopped_);
    library_.setVolume(player_, 100);
    ShowWindow(window_, SW_SHOW);
    UpdateWindow(window_);
    return true;
  }

  void Obey(const std::string& line) {
    char verb[16] = "";
    std::sscanf(line.c_str(), "%15s", verb);
    const std::string command = verb;
    if (command == "play") Play(line.substr(command.size() + 1).c_str());
    const double began = Milliseconds();
    if (command == "stop") Stop();
    if (command == "place") Place(line.c_str());
    if (command == "tile") AddTile(line.c_str());
    if (command == "window") AddWindow();
    if (command == "popup") AddPopup();
    if (command == "engine") AddEngine();
    std::printf("did %s %.3f\n", verb, Milliseconds() - began);
    std::fflush(stdout);
  }

 private:
  libvlc_media_player_t* MakePlayer(libvlc_instance_t* instance, HWND window) {
    libvlc_media_player_t* const player = libvlc_media_player_new(instance);
    library_.setWindow(player, window);
    return player;
  }

  // Meanwhile it handles messages that the library's threads send to the window.
  void Stop() {
    ResetEvent(stopped_);
    if (libvlc_media_player_stop_async(player_) != 0) return;
    while (MsgWaitForMultipleObjectsEx(1, &stopped_, kLongestStop, QS_SENDMESSAGE, MWMO_INPUTAVAILABLE) ==
           WAIT_OBJECT_0 + 1) {
      MSG message;
      PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }
  }

  void Play(const char* url) {
    Stop();
    libvlc_media_t* const media = libvlc_media_new_location(url);
    library_.addOption(media, ":no-video-title-show");
    library_.addOption(media, ":network-caching=300");
    libvlc_media_player_set_media(player_, media);
    libvlc_media_player_play(player_);
    library_.getVolume(player_);
    library_.getMute(player_);
    libvlc_media_release(media);
  }

  void Place(const char* line) {
    int x, y, width, height;
    if (std::sscanf(line, "place %d %d %d %d", &x, &y, &width, &height) == 4) {
      MoveWindow(video_, x, y, width, height, TRUE);
    }
  }

  void AddTile(const char* line) {
    int x, y, width, height;
    char url[1024];
    if (std::sscanf(line, "tile %d %d %d %d %1023s", &x, &y, &width, &height, url) != 5) return;
    libvlc_media_player_t* const player = MakePlayer(instance_, MakeWindow(window_, x, y, width, height));
    libvlc_media_t* const media = libvlc_media_new_location(url);
    libvlc_media_player_set_media(player, media);
    libvlc_media_release(media);
    library_.setVolume(player, 0);
    libvlc_media_player_play(player);
    for (int type : kTileEvents) library_.eventAttach(library_.eventManager(player), type, Ignore, nullptr);
  }

  void AddWindow() {
    libvlc_instance_t* const instance = libvlc_new(static_cast<int>(std::size(kArguments)), kArguments);
    const HWND window = MakeWindow(nullptr, CW_USEDEFAULT, CW_USEDEFAULT, kWidth, kHeight);
    const HWND video = MakeWindow(window, 0, 0, kWidth, kHeight);
    libvlc_media_player_t* const player = MakePlayer(instance, video);
    for (int type : kPlayerEvents) library_.eventAttach(library_.eventManager(player), type, Ignore, nullptr);
    ShowWindow(window, SW_SHOW);
    UpdateWindow(window);
  }

  void AddPopup() {
    const HWND popup = CreateWindowExW(0, kWindowClass, L"", WS_POPUP | WS_VISIBLE, 0, 0, kWidth, kHeight, window_,
                                       nullptr, GetModuleHandleW(nullptr), nullptr);
    UpdateWindow(popup);
  }

  void AddEngine() {
    FlutterDesktopEngineProperties properties{};
    const auto view = FlutterDesktopViewControllerCreate(kWidth, kHeight, FlutterDesktopEngineCreate(&properties));
    if (!view) std::abort();
    const HWND child = FlutterDesktopViewGetHWND(FlutterDesktopViewControllerGetView(view));
    SetParent(child, window_);
    ShowWindow(child, SW_SHOW);
  }

  const Library library_{};
  HANDLE stopped_ = CreateEventW(nullptr, FALSE, FALSE, nullptr);  // set with each Stopped event
  libvlc_instance_t* instance_ = nullptr;
  libvlc_media_player_t* player_ = nullptr;
  HWND window_ = nullptr;
  HWND video_ = nullptr;
};

// Reads the commands and passes them to the thread with the message loop. Ends the loop when the input ends.
DWORD WINAPI ReadCommands(void* mainThread) {
  const DWORD thread = *static_cast<const DWORD*>(mainThread);
  char line[2048];
  while (std::fgets(line, sizeof line, stdin)) {
    line[std::strcspn(line, "\r\n")] = 0;
    PostThreadMessageA(thread, kCommandMessage, 0, reinterpret_cast<LPARAM>(new std::string(line)));
  }
  PostThreadMessageA(thread, WM_QUIT, 0, 0);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  static BarePlayer player;
  if (!player.Start()) return 1;
  static DWORD thread = GetCurrentThreadId();
  // Timed starts (start_time.exe) send no input.
  if (argc > 1 && std::strcmp(argv[1], "commands") == 0) CreateThread(nullptr, 0, ReadCommands, &thread, 0, nullptr);
  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    if (message.message == kCommandMessage) {
      const std::unique_ptr<std::string> line(reinterpret_cast<std::string*>(message.lParam));
      player.Obey(*line);
    } else {
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
  }
  // Ends while streams play, because their end is not measured.
  std::_Exit(0);
}
