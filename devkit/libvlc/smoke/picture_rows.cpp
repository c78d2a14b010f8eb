// Rows about windows, pictures and snapshots.
#include "rows.h"

namespace smoke {
namespace {

constexpr char kNoWindow[] = ":vout=vdummy";

std::string PictureFile(const char* name) {
  char folder[MAX_PATH];
  GetTempPathA(sizeof folder, folder);
  std::string path = std::string(folder) + name;
  DeleteFileA(path.c_str());
  return path;
}

bool Exists(const std::string& path) { return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

bool ThreadOwns(HWND window) { return GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId(); }

// Counts the messages that another thread sends to the window.
int sentMessages = 0;
LRESULT CALLBACK CountSent(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (InSendMessage()) ++sentMessages;
  return DefWindowProcW(window, message, first, second);
}

void GivenWindow(Trial& trial) {
  HWND window = MakeWindow();
  {
    Session session(trial.vlc, trial.instance);
    trial.vlc.SetHwnd(session.player, window);
    trial.Expect(session.PlayUntilTimes(trial.Url("red.ts")), "it plays");
    HWND child = ChildOf(window);
    trial.Expect(child && !ThreadOwns(child), "a child window of a thread of the library is in it");
    trial.Expect(PumpUntil([&] { return LitPoints(window) == 39; }), "the picture fills the width");
    trial.Expect(ForeignWindows().empty(), "there is no other window of the library");
    trial.vlc.SetScale(session.player, 0.5f);
    trial.Expect(PumpUntil([&] { return LitPoints(window) > 10 && LitPoints(window) < 25; }), "scale 0.5 is smaller");
    trial.vlc.SetScale(session.player, 0.0f);
    SetWindowPos(window, nullptr, 0, 0, 500, 400, SWP_NOMOVE | SWP_NOZORDER);
    trial.Expect(PumpUntil([&] {
                   RECT area, inside;
                   GetClientRect(window, &area);
                   GetClientRect(child, &inside);
                   return area.right == inside.right && area.bottom == inside.bottom && LitPoints(window) == 39;
                 }),
                 "the child follows the window's size");
    trial.vlc.Pause(session.player);
    session.WaitFor(kPaused);
    InvalidateRect(child, nullptr, TRUE);
    trial.Expect(PumpUntil([&] { return LitPoints(window) == 39; }), "a paused picture is drawn again");
    session.StopAndWait();
    trial.Expect(!ChildOf(window), "after a stop the child is gone");
    trial.Expect(PumpUntil([&] { return LitPoints(window) == 0; }), "the window has its background back");
  }
  DestroyWindow(window);
}

void SentMessages(Trial& trial) {
  HWND window = MakeWindow();
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CountSent));
  {
    Session session(trial.vlc, trial.instance);
    trial.vlc.SetHwnd(session.player, window);
    sentMessages = 0;
    session.Play(trial.Url("red.ts"));
    Sleep(1500);  // without a look at messages
    trial.Expect(session.Count(kTime) < 3 && LitPoints(window) == 0, "no picture opens while the thread looks at none");
    trial.Expect(session.WaitFor(kTime, 4) && PumpUntil([&] { return LitPoints(window) == 39; }), "then it opens");
    trial.Expect(sentMessages > 0, "messages are sent while a picture opens");
    sentMessages = 0;
    trial.vlc.StopAsync(session.player);
    Sleep(500);
    trial.Expect(trial.vlc.GetState(session.player) != 5, "a stop does not end while the thread looks at none");
    trial.Expect(session.WaitFor(kStopped), "then it ends");
    trial.Expect(sentMessages > 0, "messages are sent while a picture closes");
  }
  DestroyWindow(window);
}

void NoWindow(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.Play(trial.Url("red.ts"));
  trial.Expect(session.WaitFor(kTime, 2) && ForeignWindows().size() == 1, "the library opens a window");
  if (ForeignWindows().empty()) return;
  HWND window = ForeignWindows()[0];
  RECT place;
  GetWindowRect(window, &place);
  LONG style = GetWindowLongW(window, GWL_STYLE);
  trial.Expect((style & WS_CAPTION) == WS_CAPTION && (style & WS_VISIBLE) && !(style & WS_CHILD), "framed, visible");
  trial.Expect(place.left == 0 && place.top == 0 && !ThreadOwns(window), "at 0,0, of the library's thread");
  trial.Expect(PumpUntil([&] { return LitPoints(window) == 39; }), "with the picture");
  session.StopAndWait();
  trial.Expect(ForeignWindows().empty(), "it goes with the stop");
}

void Vdummy(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  bool none = true;
  session.Play(trial.Url("red.ts"), kNoWindow);
  PumpUntil([&] {
    none &= ForeignWindows().empty();
    return session.Count(kTime) > 2;
  });
  trial.Expect(none, "there is never a window");
  std::string path = PictureFile("devlib_smoke_vdummy.png");
  trial.Expect(
      trial.vlc.Snapshot(session.player, 0, path.c_str(), 320, 180) == 0 && PumpUntil([&] { return Exists(path); }),
      "a snapshot works");
  DeleteFileA(path.c_str());
}

void HiddenWindow(Trial& trial) {
  HWND window = MakeWindow(WS_OVERLAPPEDWINDOW);
  {
    Session session(trial.vlc, trial.instance);
    trial.vlc.SetHwnd(session.player, window);
    trial.Expect(session.PlayUntilTimes(trial.Url("red.ts")), "it plays");
    Pump(500);
    trial.Expect(!ChildOf(window) && ForeignWindows().empty(), "no picture comes");
    std::string path = PictureFile("devlib_smoke_hidden.png");
    trial.Expect(trial.vlc.Snapshot(session.player, 0, path.c_str(), 320, 180) == 0, "a snapshot is 0");
    Pump(500);
    trial.Expect(!Exists(path), "and writes nothing");
  }
  DestroyWindow(window);
}

void Snapshots(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  std::string path = PictureFile("devlib_smoke_none.png");
  trial.Expect(trial.vlc.Snapshot(session.player, 0, path.c_str(), 320, 180) == 0, "without a picture it is 0");
  session.PlayUntilTimes(trial.Url("red.ts"), kNoWindow);
  PumpUntil([&] { return session.Count(kTime) > 3; });
  std::string missing = path + ".no\\such\\folder.png";
  trial.Expect(trial.vlc.Snapshot(session.player, 0, missing.c_str(), 320, 180) == 0, "without a folder it is 0");
  trial.Expect(!Exists(path), "no file was written");
  std::string jpeg = PictureFile("devlib_smoke_named.jpg");
  trial.vlc.Snapshot(session.player, 0, jpeg.c_str(), 320, 180);
  trial.Expect(PumpUntil([&] { return Exists(jpeg); }), "a file is written");
  FILE* file = fopen(jpeg.c_str(), "rb");
  char head[4] = {};
  if (file) {
    trial.Expect(fread(head, 1, sizeof head, file) == sizeof head && head[1] == 'P' && head[2] == 'N', "always PNG");
    fclose(file);
  }
  DeleteFileA(jpeg.c_str());
  session.StopAndWait();
  trial.Expect(trial.vlc.Snapshot(session.player, 0, path.c_str(), 320, 180) == 0 && !Exists(path),
               "after a stop it is 0 without a file");
}

void LostWindow(Trial& trial) {
  HWND window = MakeWindow();
  Session session(trial.vlc, trial.instance);
  trial.vlc.SetHwnd(session.player, window);
  session.PlayUntilTimes(trial.Url("red.ts"));
  PumpUntil([&] { return LitPoints(window) == 39; });
  int64_t before = session.Time();
  DestroyWindow(window);
  trial.Expect(PumpUntil([&] { return session.Time() > before + 500; }), "playing goes on without its window");
  trial.Expect(session.StopAndWait(), "and stops");
}

void Statistics(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.PlayUntilTimes(trial.Url("test.ts"), kNoWindow);
  void* media = trial.vlc.GetMedia(session.player);
  Stats first{}, second{};
  trial.Expect(trial.vlc.GetStats(media, &first), "statistics are there");
  trial.Expect(PumpUntil([&] {
                 trial.vlc.GetStats(media, &second);
                 return second.displayed >= first.displayed + 10 && second.playedBuffers >= first.playedBuffers + 10;
               }),
               "displayed pictures and played buffers rise");
  trial.vlc.MediaRelease(media);
}

void ReleaseWhilePlaying(Trial& trial) {
  HWND window = MakeWindow();
  {
    Session session(trial.vlc, trial.instance);
    trial.vlc.SetHwnd(session.player, window);
    session.PlayUntilTimes(trial.Url("red.ts"));
  }
  trial.Expect(PumpUntil([&] { return !ChildOf(window); }), "the child is destroyed after a release");
  DestroyWindow(window);
}

}  // namespace

std::vector<Row> PictureRows() {
  return {{"given_window", GivenWindow},
          {"sent_messages", SentMessages},
          {"player_without_window", NoWindow},
          {"vdummy", Vdummy},
          {"hidden_window", HiddenWindow},
          {"snapshots", Snapshots},
          {"lost_window", LostWindow},
          {"statistics", Statistics},
          {"release_while_playing", ReleaseWhilePlaying}};
}

}  // namespace smoke
