#include "vlc.h"

#include <string>
#include <utility>

namespace smoke {

HMODULE library;

bool Exports(const char* name) { return GetProcAddress(library, name) != nullptr; }

namespace {

constexpr int kTypes[] = {kMediaChanged, kOpening, kBuffering, kPlaying,  kPaused,   kStopped,
                          kStopping,     kError,   kTime,      kPosition, kSeekable, kMediaStopping};
constexpr wchar_t kClass[] = L"DevlibSmoke";

void OnEvent(const Event* event, void* data) {
  double value = 0;
  if (event->type == kBuffering) value = event->u.cache;
  if (event->type == kTime) value = static_cast<double>(event->u.time);
  if (event->type == kPosition) value = event->u.position;
  if (event->type == kSeekable) value = event->u.seekable;
  static_cast<Session*>(data)->Record(event->type, value);
}

int TypeOfState(int state) {
  constexpr int kOfState[] = {0x101, kOpening, 0, kPlaying, kPaused, kStopped, kStopping, 0};
  return kOfState[state];
}

Session* Of(void* opaque) { return static_cast<Session*>(opaque); }

Callbacks MakeCallbacks() {
  Callbacks table{};
  table.mediaChanged = [](void* session, void*) { Of(session)->Record(kMediaChanged, 0); };
  table.mediaStopping = [](void* session, void*, int reason) {
    if (reason == 0) Of(session)->Record(kError, 0);
    Of(session)->Record(kMediaStopping, reason);
  };
  table.stateChanged = [](void* session, int state) { Of(session)->Record(TypeOfState(state), 0); };
  table.buffering = [](void* session, float part) { Of(session)->Record(kBuffering, part * 100.0); };
  table.capabilities = [](void* session, int before, int now) {
    if ((before ^ now) & 1) Of(session)->Record(kSeekable, now & 1);
  };
  table.position = [](void* session, int64_t time, double position) {
    Of(session)->Record(kPosition, position);
    Of(session)->Record(kTime, static_cast<double>(time) / 1000);
  };
  return table;
}

}  // namespace

Session::Session(const Vlc& functions, void* instance) : vlc(functions), callbacks(MakeCallbacks()) {
  player = vlc.events ? vlc.PlayerNew(instance) : vlc.PlayerNewWith(instance, &callbacks, this);
  if (!vlc.events) return;
  for (int type : kTypes) vlc.Attach(vlc.Manager(player), type, OnEvent, this);
}

Session::~Session() { vlc.PlayerRelease(player); }

void Session::Load(const std::string& text, const char* option) {
  bool path = text.find("://") == std::string::npos;
  void* media = path ? vlc.MediaNewPath(text.c_str()) : vlc.MediaNew(text.c_str());
  vlc.AddOption(media, ":network-caching=300");
  if (option) vlc.AddOption(media, option);
  calling = true;
  vlc.SetMedia(player, media);
  calling = false;
  vlc.MediaRelease(media);
}

void Session::Play(const std::string& text, const char* option) {
  Load(text, option);
  vlc.Play(player);
}

bool Session::PlayUntilTimes(const std::string& text, const char* option) {
  StopAndWait();
  Clear();
  Play(text, option);
  return WaitFor(kTime, 2);
}

bool Session::StopAndWait() {
  if (vlc.StopAsync(player) != 0) return false;
  return PumpUntil([this] { return vlc.GetState(player) == 5; });
}

void Session::Inside(std::function<void(int type)> call) {
  std::lock_guard guard(lock);
  inside = std::move(call);
}

void Session::Record(int type, double value) {
  std::function<void(int)> call;
  {
    std::lock_guard guard(lock);
    events.push_back({type, value, GetCurrentThreadId(), GetTickCount(), calling});
    call = inside;
  }
  if (call) call(type);
}

std::vector<RecordedEvent> Session::All() {
  std::lock_guard guard(lock);
  return events;
}

int Session::Count(int type) {
  int count = 0;
  for (const RecordedEvent& one : All()) count += one.type == type;
  return count;
}

int Session::First(int type) {
  std::vector<RecordedEvent> all = All();
  for (size_t i = 0; i < all.size(); ++i) {
    if (all[i].type == type) return static_cast<int>(i);
  }
  return -1;
}

double Session::Last(int type) {
  double last = -1;
  for (const RecordedEvent& one : All()) {
    if (one.type == type) last = one.value;
  }
  return last;
}

bool Session::WaitFor(int type, int count, DWORD milliseconds) {
  return PumpUntil([&] { return Count(type) >= count; }, milliseconds);
}

void Session::Clear() {
  std::lock_guard guard(lock);
  events.clear();
}

std::vector<int> Session::Order() {
  std::vector<int> order;
  for (const RecordedEvent& one : All()) {
    int type = one.type == kPosition ? static_cast<int>(kTime) : one.type;
    bool runs = type == kTime || type == kBuffering;
    if (!runs || order.empty() || order.back() != type) order.push_back(type);
  }
  return order;
}

bool PumpUntil(const std::function<bool()>& condition, DWORD milliseconds) {
  DWORD start = GetTickCount();
  while (!condition()) {
    if (GetTickCount() - start > milliseconds) return false;
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
  }
  return true;
}

void Pump(DWORD milliseconds) {
  PumpUntil([] { return false; }, milliseconds);
}

HWND MakeWindow(DWORD style) {
  static const bool registered = [] {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
    windowClass.lpszClassName = kClass;
    return RegisterClassW(&windowClass) != 0;
  }();
  if (!registered) return nullptr;
  return CreateWindowW(kClass, L"devlib smoke", style, 20, 20, 700, 480, nullptr, nullptr, GetModuleHandleW(nullptr),
                       nullptr);
}

int LitPoints(HWND window) {
  RECT area;
  GetClientRect(window, &area);
  HDC dc = GetDC(window);
  int lit = 0;
  for (int i = 1; i < 40; ++i) {
    COLORREF colour = GetPixel(dc, area.right * i / 40, area.bottom / 3);
    lit += colour != CLR_INVALID && colour != 0;
  }
  ReleaseDC(window, dc);
  return lit;
}

std::vector<HWND> ForeignWindows() {
  std::vector<HWND> found;
  EnumWindows(
      [](HWND window, LPARAM list) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        wchar_t name[64];
        GetClassNameW(window, name, 64);
        bool video = wcsstr(name, L"video") != nullptr;
        if (process == GetCurrentProcessId() && video) reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&found));
  return found;
}

HWND ChildOf(HWND window) { return GetWindow(window, GW_CHILD); }

}  // namespace smoke
