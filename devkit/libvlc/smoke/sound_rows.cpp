// Rows about volume, mute and sound outputs. The audible sound is read from the library's own log of its players.
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "rows.h"

namespace smoke {
namespace {

constexpr char kNoWindow[] = ":vout=vdummy";

// Returns the level of a player's sound in the last whole second, full scale 1. Waits for two lines of the log, because
// the first covers earlier sound. Returns -1 if there is no such line.
double Loudness(Trial& trial, void* player) {
  auto lines = [&] {
    char wanted[64];
    snprintf(wanted, sizeof wanted, "\"player\":\"%016llX\"",
             static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(player)));
    std::vector<std::string> found;
    std::ifstream file(trial.stats);
    for (std::string line; std::getline(file, line);) {
      if (line.find(wanted) != std::string::npos && line.back() == '}') found.push_back(line);
    }
    return found;
  };
  size_t before = lines().size();
  if (!PumpUntil([&] { return lines().size() >= before + 2; }, 5000)) return -1;
  std::string last = lines().back();
  size_t at = last.find("\"rms\":");
  return at == std::string::npos ? -1 : std::strtod(last.c_str() + at + 6, nullptr);
}

bool IsSilent(double loudness) { return loudness >= 0 && loudness < 0.0005; }

// Two playing players, each with a tone. With `option` the instance has one more argument.
struct Pair {
  Pair(Trial& trial, const char* option)
      : vlc(trial.vlc), instance(vlc.New(option ? 1 : 0, &option)), first(vlc, instance), second(vlc, instance) {}
  bool Play(Trial& trial) {
    first.Play(trial.Url("tracks.mp4"), kNoWindow);
    second.Play(trial.Url("red.ts"), kNoWindow);
    return first.WaitFor(kTime, 2) && second.WaitFor(kTime, 2);
  }
  const Vlc& vlc;
  void* instance;
  Session first, second;
};

void Outputs(Trial& trial) {
  std::string names = ",";
  bool described = true;
  AudioOutput* list = trial.vlc.Outputs(trial.instance);
  for (AudioOutput* one = list; one; one = one->next) {
    names += std::string(one->name) + ",";
    described &= one->description && one->description[0];
  }
  trial.vlc.ReleaseOutputs(list);
  trial.Expect(names.find(",mmdevice,") != std::string::npos && names.find(",waveout,") != std::string::npos,
               "mmdevice and waveout are listed, not " + names);
  trial.Expect(names.find(",directsound,") == std::string::npos, "directsound is not");
  trial.Expect(described, "each has a description");
  trial.Expect(trial.instance != nullptr, "an instance takes directsound all the same");
}

void OneSession(Trial& trial) {
  Pair players(trial, "--aout=directsound");
  const Vlc& vlc = trial.vlc;
  trial.Expect(players.Play(trial), "both play");
  trial.Expect(vlc.SetVolume(players.first.player, 100) == 0 && vlc.SetVolume(players.second.player, 0) == 0 &&
                   vlc.SetVolume(players.second.player, -1) == -1,
               "a volume is taken, a negative one refused");
  trial.Expect(vlc.GetVolume(players.first.player) == 0, "the last volume is that of both");
  trial.Expect(IsSilent(Loudness(trial, players.first.player)), "neither is heard");
  vlc.SetVolume(players.first.player, 100);
  vlc.SetMute(players.first.player, 1);
  trial.Expect(vlc.GetMute(players.second.player) == 1, "the last mute is that of both");
  vlc.SetMute(players.second.player, 0);
  trial.Expect(vlc.GetMute(players.first.player) == 0, "so is its end");
  trial.Expect(Loudness(trial, players.first.player) > 0.01, "both are heard");
  trial.Expect(Loudness(trial, players.second.player) > 0.01, "the other as well");
}

void SessionHolds(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  trial.vlc.SetVolume(session.player, 0);
  session.PlayUntilTimes(trial.Url("tracks.mp4"), kNoWindow);
  trial.Expect(IsSilent(Loudness(trial, session.player)), "sound begins with the volume of the process");
  trial.vlc.SetVolume(session.player, 100);
  trial.Expect(Loudness(trial, session.player) > 0.01, "and is heard with 100");
}

void PerPlayer(Trial& trial) {
  Pair players(trial, "--aout=waveout");
  const Vlc& vlc = trial.vlc;
  vlc.SetVolume(players.first.player, 0);
  vlc.SetMute(players.second.player, 1);
  trial.Expect(players.Play(trial), "both play");
  trial.Expect(Loudness(trial, players.first.player) > 0.01 && Loudness(trial, players.second.player) > 0.01,
               "what was set before the sound does not count");
  trial.Expect(vlc.GetVolume(players.first.player) == 100 && vlc.GetMute(players.second.player) == 0,
               "and is not read any more");
  vlc.SetVolume(players.first.player, 0);
  vlc.SetMute(players.second.player, 0);
  trial.Expect(vlc.GetVolume(players.second.player) == 100, "a volume is its player's alone");
  trial.Expect(IsSilent(Loudness(trial, players.first.player)), "the one at 0 is silent");
  trial.Expect(Loudness(trial, players.second.player) > 0.01, "the other is heard");
  vlc.SetMute(players.second.player, 1);
  trial.Expect(vlc.GetMute(players.first.player) == 0, "a mute is its player's alone");
  players.first.PlayUntilTimes(trial.Url("tracks.mp4"), kNoWindow);
  trial.Expect(Loudness(trial, players.first.player) > 0.01, "the next sound begins with 100 again");
}

void MuteStays(Trial& trial) {
  for (const char* output : {"--aout=mmdevice", "--aout=waveout"}) {
    void* instance = trial.vlc.New(1, &output);
    {
      Session session(trial.vlc, instance);
      session.PlayUntilTimes(trial.Url("tracks.mp4"), kNoWindow);
      trial.vlc.SetMute(session.player, 1);
      trial.vlc.SetVolume(session.player, 80);
      trial.Expect(trial.vlc.GetMute(session.player) == 1 && trial.vlc.GetVolume(session.player) == 80,
                   std::string(output) + ": a volume leaves the mute");
      trial.Expect(IsSilent(Loudness(trial, session.player)), std::string(output) + ": nothing is heard");
      trial.vlc.SetMute(session.player, 0);
      trial.vlc.SetVolume(session.player, 100);
    }
    trial.vlc.Release(instance);
  }
}

void BeforeOutput(Trial& trial) {
  const char* output = "--aout=waveout";
  void* instance = trial.vlc.New(1, &output);
  {
    Session session(trial.vlc, instance);
    trial.Expect(trial.vlc.GetVolume(session.player) == 100 && trial.vlc.GetMute(session.player) == -1,
                 "before a sound the volume is 100 and the mute unknown");
    trial.Expect(trial.vlc.SetVolume(session.player, 40) == 0 && trial.vlc.GetVolume(session.player) == 40,
                 "a volume set then is read back");
    trial.vlc.SetMute(session.player, 1);
    trial.Expect(trial.vlc.GetMute(session.player) == 1, "a mute as well");
  }
  trial.vlc.Release(instance);
}

}  // namespace

std::vector<Row> SoundRows() {
  return {{"sound_outputs", Outputs},
          {"one_volume_for_the_process", OneSession},
          {"volume_of_the_process_holds", SessionHolds},
          {"waveout_volume_per_player", PerPlayer},
          {"mute_stays", MuteStays},
          {"volume_before_output", BeforeOutput}};
}

}  // namespace smoke
