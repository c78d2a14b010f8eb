// Rows about loading, playing, seeking and stopping, and the events of each.
#include <climits>

#include "rows.h"

namespace smoke {
namespace {

constexpr char kNoWindow[] = ":vout=vdummy";

bool Is(const std::vector<int>& order, const std::vector<int>& wanted) { return order == wanted; }

std::string Text(const std::vector<int>& order) {
  std::string text = "reported";
  for (int type : order) {
    char one[16];
    snprintf(one, sizeof one, " %X", static_cast<unsigned>(type));
    text += one;
  }
  return text;
}

void MediaChangedInside(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.Load(trial.Url("test.ts"));
  std::vector<RecordedEvent> events = session.All();
  trial.Expect(events.size() == 1 && events[0].type == kMediaChanged, "only MediaChanged is reported");
  trial.Expect(!events.empty() && events[0].insideCall && events[0].thread == GetCurrentThreadId(),
               "it comes inside set_media on the calling thread");
}

void FirstPlay(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  trial.Expect(session.PlayUntilTimes(trial.Url("tracks.mp4"), kNoWindow), "the time rises");
  std::vector<int> order = session.Order();
  if (order.size() > 2 && order[2] == kSeekable) order.erase(order.begin() + 2);
  order.resize(5);
  trial.Expect(order[0] == kMediaChanged && order[1] == kOpening,
               "MediaChanged and Opening come first, " + Text(order));
  trial.Expect(session.First(kPlaying) > session.First(kOpening) && session.First(kTime) > session.First(kPlaying),
               "Playing comes after Opening, times after Playing");
  trial.Expect(session.Last(kBuffering) == 100, "buffering ends at 100 per cent");
  DWORD thread = 0;
  for (const RecordedEvent& one : session.All()) {
    if (one.type == kMediaChanged) continue;
    trial.Expect(one.thread != GetCurrentThreadId() && (!thread || one.thread == thread),
                 "all others come on one thread of the library");
    thread = one.thread;
  }
  trial.Expect(trial.vlc.GetState(session.player) == 3, "the state is Playing");
  int64_t length = trial.vlc.GetLength(session.player) / trial.vlc.ticks;
  trial.Expect(length > 59000 && length < 61000, "the length is reported in the interface's unit");
}

void ChangeWhilePlaying(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.PlayUntilTimes(trial.Url("tracks.mp4"), kNoWindow);
  trial.Expect(session.Last(kSeekable) == 1, "the first media is seekable");
  session.Clear();
  DWORD start = GetTickCount();
  session.Load(trial.Url("tracks.mp4"), kNoWindow);
  bool stays = true;
  PumpUntil([&] {
    stays &= trial.vlc.GetState(session.player) == 3 && trial.vlc.IsPlaying(session.player);
    return session.Count(kTime) > 1;
  });
  trial.Expect(stays, "state and is_playing stay Playing");
  std::vector<int> order = session.Order();
  std::vector<int> wanted = {kSeekable, kMediaChanged, kBuffering, kSeekable, kTime};
  std::vector<int> seekableFirst = {kSeekable, kMediaChanged, kBuffering, kSeekable, kBuffering, kTime};
  std::vector<int> early = {kSeekable, kMediaChanged, kSeekable, kBuffering, kTime};
  trial.Expect(Is(order, wanted) || Is(order, seekableFirst) || Is(order, early), Text(order));
  std::vector<RecordedEvent> events = session.All();
  trial.Expect(events[0].value == 0 && session.Last(kSeekable) == 1, "seekable goes to 0 and comes back");
  DWORD delay = events.size() > 1 ? events[1].at - start : 0;
  trial.Expect(delay >= 40 && delay < 300, "MediaChanged comes some 50 ms later, not " + std::to_string(delay));
  trial.Expect(events[0].thread != GetCurrentThreadId() && events[1].thread == events[0].thread,
               "on the library's thread");
}

void ChangeInPause(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.PlayUntilTimes(trial.Url("tracks.mp4"), kNoWindow);
  trial.vlc.Pause(session.player);
  trial.Expect(session.WaitFor(kPaused), "Paused comes");
  trial.Expect(trial.vlc.GetState(session.player) == 4 && !trial.vlc.IsPlaying(session.player), "the state is Paused");
  session.Clear();
  session.Load(trial.Url("red.ts"), kNoWindow);
  trial.Expect(session.WaitFor(kPlaying) && session.First(kOpening) > session.First(kMediaChanged),
               "MediaChanged, Opening and Playing come");
}

void ChangeAfterStop(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.PlayUntilTimes(trial.Url("tracks.mp4"), kNoWindow);
  trial.Expect(session.StopAndWait(), "it stops");
  session.Clear();
  session.Play(trial.Url("red.ts"), kNoWindow);
  trial.Expect(session.WaitFor(kPlaying) && session.Count(kOpening) == 1, "Opening and Playing come");
}

void ChangeAfterError(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.Play(trial.Url("missing.ts"), kNoWindow);
  trial.Expect(session.WaitFor(kStopped), "Stopped comes");
  std::vector<int> order = session.Order();
  if (!order.empty() && order.back() == kStopped) order.pop_back();
  trial.Expect(session.First(kError) > session.First(kOpening) && session.Count(kPlaying) == 0,
               "Opening and an error are reported, no Playing, " + Text(order));
  trial.Expect(session.Time() == 0, "the time is 0 after an error");
  session.Clear();
  session.Play(trial.Url("red.ts"), kNoWindow);
  trial.Expect(session.WaitFor(kPlaying) && session.Count(kOpening) == 1, "Opening and Playing come after it");
}

void MissingWhilePlaying(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.PlayUntilTimes(trial.Url("red.ts"), kNoWindow);
  session.Clear();
  session.Load(trial.Url("missing.ts"), kNoWindow);
  trial.Expect(session.WaitFor(kStopped), "Stopped comes");
  trial.Expect(session.Count(kOpening) == 0 && session.Count(kPlaying) == 0, "neither Opening nor Playing is reported");
  trial.Expect(session.Count(kError) == 1 && session.First(kError) > session.First(kMediaChanged),
               "an error is reported after MediaChanged");
  trial.Expect(trial.vlc.GetState(session.player) == 5, "the state is Stopped");
}

void Garbage(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.Play(trial.Fault("garbage"), kNoWindow);
  trial.Expect(session.WaitFor(kStopped), "Stopped comes");
  trial.Expect(session.Count(kSeekable) == 0, "no Seekable is reported");
}

void TwoLoads(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.PlayUntilTimes(trial.Url("red.ts"), kNoWindow);
  session.Clear();
  session.Load(trial.Url("missing.ts"), kNoWindow);
  session.Load(trial.Url("tracks.mp4"), kNoWindow);
  trial.Expect(session.WaitFor(kTime, 2), "the last one plays");
  trial.Expect(session.Count(kMediaChanged) == 1 && session.Count(kError) == 0, "only the last one is reported");
  trial.Expect(trial.vlc.GetLength(session.player) / trial.vlc.ticks > 59000, "it is the last one that plays");
}

void SeekBeforePlay(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.Load(trial.Url("tracks.mp4"), kNoWindow);
  session.Seek(30000);
  trial.vlc.Play(session.player);
  trial.Expect(session.WaitFor(kTime, 2) && session.Last(kTime) >= 29000 && session.Last(kTime) < 33000,
               "it starts at 30 s, not at " + std::to_string(session.Last(kTime)));
  session.StopAndWait();
  session.Clear();
  trial.vlc.Play(session.player);
  trial.Expect(session.WaitFor(kTime, 2) && session.Last(kTime) < 3000, "the next play starts at 0");
}

void SeekAtChange(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.PlayUntilTimes(trial.Url("red.ts"), kNoWindow);
  session.Clear();
  session.Load(trial.Url("tracks.mp4"), kNoWindow);
  session.Seek(30000);
  trial.vlc.Play(session.player);
  trial.Expect(session.WaitFor(kMediaChanged) && session.WaitFor(kTime, session.Count(kTime) + 2), "it plays");
  if (trial.vlc.events) {
    trial.Expect(session.Last(kTime) < 5000, "the seek is lost while the old input closes");
  } else {
    trial.Expect(session.Last(kTime) >= 29000, "the seek holds, since the media is open");
  }
}

void SeekWhilePlaying(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.Play(trial.Url("tracks.mp4"), kNoWindow);
  session.Seek(30000);
  trial.Expect(PumpUntil([&] { return session.Last(kTime) >= 29000; }, 3000), "a seek right after play takes effect");
  session.Seek(10000);
  trial.Expect(PumpUntil([&] { return session.Last(kTime) > 9000 && session.Last(kTime) < 13000; }, 3000),
               "a later one too");
}

void PauseAtChange(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.PlayUntilTimes(trial.Url("red.ts"), kNoWindow);
  session.Clear();
  session.Load(trial.Url("tracks.mp4"), kNoWindow);
  trial.vlc.Pause(session.player);
  trial.Expect(session.WaitFor(kMediaChanged) && session.WaitFor(kTime, 3), "the new media plays");
  trial.Expect(session.Count(kPaused) == 0, "the pause is lost");
}

void PauseAndResume(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.PlayUntilTimes(trial.Url("tracks.mp4"), kNoWindow);
  trial.vlc.Pause(session.player);
  trial.Expect(session.WaitFor(kPaused), "Paused comes");
  Pump(300);
  int64_t before = session.Time();
  Pump(700);
  trial.Expect(session.Time() - before < 100, "the time does not change");
  session.Clear();
  trial.vlc.Play(session.player);
  trial.Expect(session.WaitFor(kPlaying), "play resumes");
  trial.vlc.Pause(session.player);
  trial.Expect(session.WaitFor(kPaused), "pause pauses again");
  trial.vlc.Pause(session.player);
  trial.Expect(session.WaitFor(kPlaying, 2), "pause resumes");
}

void Stop(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  trial.Expect(trial.vlc.StopAsync(session.player) == INT_MIN, "a stop before a media has nothing to stop");
  session.Load(trial.Url("tracks.mp4"), kNoWindow);
  trial.Expect(trial.vlc.StopAsync(session.player) == INT_MIN, "nor has one before play");
  trial.Expect(trial.vlc.GetState(session.player) == 0, "the state is NothingSpecial");
  trial.vlc.Play(session.player);
  session.WaitFor(kTime, 2);
  session.Clear();
  trial.Expect(trial.vlc.StopAsync(session.player) == 0, "a stop while playing is 0");
  trial.Expect(trial.vlc.IsPlaying(session.player), "is_playing is true until it has stopped");
  trial.Expect(trial.vlc.StopAsync(session.player) == INT_MIN, "a second stop has nothing to stop");
  trial.Expect(session.WaitFor(kStopped), "Stopped comes");
  trial.Expect(Is(session.Order(), {kStopping, kMediaStopping, kSeekable, kStopped}), Text(session.Order()));
  trial.Expect(!trial.vlc.IsPlaying(session.player) && trial.vlc.GetState(session.player) == 5, "it is Stopped");
  trial.Expect(session.Time() == 0, "the time is 0");
}

void End(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.Load(trial.Url("tracks.mp4"), kNoWindow);
  session.Seek(57000);
  trial.vlc.Play(session.player);
  session.WaitFor(kTime, 2);
  session.Clear();
  trial.Expect(session.WaitFor(kStopped, 1, 15000), "Stopped comes");
  std::vector<int> order = session.Order();
  while (!order.empty() && (order[0] == kTime || order[0] == kBuffering)) order.erase(order.begin());
  trial.Expect(Is(order, {kStopping, kMediaStopping, kSeekable, kStopped}), Text(order));
  trial.Expect(session.Count(kError) == 0, "no error is reported");
  trial.Expect(session.Time() == 0, "the time is 0");
  session.Clear();
  trial.vlc.Play(session.player);
  trial.Expect(session.WaitFor(kTime, 2) && session.Last(kTime) < 5000, "play begins again");
  trial.Expect(session.Count(kStopped) == 0, "Stopped is reported once");
}

// Pictures end at 8 s, the sound continues.
void TimeWithSound(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.Play(trial.Url("video-stops.ts"), kNoWindow);
  trial.Expect(PumpUntil([&] { return session.Last(kTime) > 7000; }, 15000), "it comes to 7 s");
  Pump(3000);
  int times = session.Count(kTime);
  int64_t before = session.Time();
  Pump(1500);
  int64_t rise = session.Time() - before;
  trial.Expect(session.Count(kTime) == times,
               "no more times are reported, but " + std::to_string(session.Count(kTime) - times));
  trial.Expect(rise > 1000 && rise < 2200, "get_time goes on rising, by " + std::to_string(rise));
}

}  // namespace

std::vector<Row> TransportRows() {
  return {
      {"media_changed_inside_set_media", MediaChangedInside},
      {"first_play", FirstPlay},
      {"change_while_playing", ChangeWhilePlaying},
      {"change_in_pause", ChangeInPause},
      {"change_after_stop", ChangeAfterStop},
      {"change_after_error", ChangeAfterError},
      {"missing_while_playing", MissingWhilePlaying},
      {"garbage", Garbage},
      {"two_loads_at_once", TwoLoads},
      {"seek_before_play", SeekBeforePlay},
      {"seek_at_change", SeekAtChange},
      {"seek_while_playing", SeekWhilePlaying},
      {"pause_at_change", PauseAtChange},
      {"pause_and_resume", PauseAndResume},
      {"stop", Stop},
      {"end", End},
      {"time_with_sound", TimeWithSound},
  };
}

}  // namespace smoke
