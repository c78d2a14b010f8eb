// Rows about track lists, selection and the picture's size.
#include <cstring>

#include "rows.h"

namespace smoke {
namespace {

constexpr char kNoWindow[] = ":vout=vdummy";
constexpr int kAudio = 0, kVideo = 1, kText = 2;

// Returns the text ids of a kind, each with an asterisk when it is selected.
std::vector<std::string> Ids(Trial& trial, void* player, int type, bool selected = false) {
  std::vector<std::string> ids;
  void* list = trial.vlc.Tracks(player, type, selected);
  if (!list) return {"null"};
  for (size_t i = 0; i < trial.vlc.TrackCount(list); ++i) {
    Track* track = trial.vlc.TrackAt(list, i);
    ids.push_back(std::string(track->id) + (track->selected ? "*" : ""));
  }
  trial.vlc.DeleteTracks(list);
  return ids;
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += " " + text;
  return joined;
}

bool BeginWith(const std::vector<std::string>& ids, const char* kind) {
  for (const std::string& id : ids) {
    if (id.compare(0, strlen(kind), kind) != 0) return false;
  }
  return true;
}

void Lists(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.Load(trial.Url("tracks.mp4"), kNoWindow);
  trial.Expect(Ids(trial, session.player, kAudio).empty(), "before play a list is empty");
  trial.vlc.Play(session.player);
  session.WaitFor(kTime, 2);
  std::vector<std::string> audio = Ids(trial, session.player, kAudio), video = Ids(trial, session.player, kVideo),
                           text = Ids(trial, session.player, kText);
  trial.Expect(audio.size() == 2 && video.size() == 1 && text.size() == 1,
               "two of sound, one of pictures, one of text:" + Joined(audio) + Joined(video) + Joined(text));
  trial.Expect(BeginWith(audio, "audio/") && BeginWith(video, "video/") && BeginWith(text, "spu/"), "text ids");
  trial.Expect(audio.size() == 2 && audio[0].back() == '*' && audio[1].back() != '*', "the first sound is selected");
  trial.Expect(Ids(trial, session.player, kAudio, true).size() == 1, "a list of the selected ones has one");
  void* list = trial.vlc.Tracks(session.player, kAudio, false);
  Track* track = trial.vlc.TrackAt(list, 1);
  trial.Expect(trial.vlc.HoldTrack(track) == track, "a track is held");
  trial.vlc.DeleteTracks(list);
  trial.Expect(track->type == kAudio && track->idStable && track->language && !strcmp(track->language, "fra") &&
                   track->name && track->name[0] && track->details[1] == 48000,
               std::string("and has kind, name, language and rate after its list is released: ") +
                   (track->language ? track->language : "?"));
  trial.vlc.ReleaseTrack(track);
  std::vector<std::string> again = Ids(trial, session.player, kAudio);
  trial.Expect(again == audio, "ids stay");
  session.StopAndWait();
  trial.Expect(Ids(trial, session.player, kAudio).empty(), "after a stop a list is empty");
}

void Selection(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.PlayUntilTimes(trial.Url("tracks.mp4"), kNoWindow);
  auto selected = [&](int type) { return Joined(Ids(trial, session.player, type, true)); };
  void* list = trial.vlc.Tracks(session.player, kAudio, false);
  if (trial.vlc.TrackCount(list) != 2) return trial.Expect(false, "there are two of sound");
  Track* other = trial.vlc.TrackAt(list, 1);
  trial.vlc.SelectTrack(session.player, other);
  trial.Expect(PumpUntil([&] { return selected(kAudio) == std::string(" ") + other->id + "*"; }), "select_track");
  trial.vlc.Unselect(session.player, kAudio);
  trial.Expect(PumpUntil([&] { return selected(kAudio).empty(); }), "unselect_track_type");
  trial.vlc.SelectIds(session.player, kAudio, trial.vlc.TrackAt(list, 0)->id);
  trial.Expect(PumpUntil([&] { return selected(kAudio).size() > 1; }), "select_tracks_by_ids");
  trial.vlc.DeleteTracks(list);
  trial.Expect(selected(kText).empty(), "no text is selected");
  list = trial.vlc.Tracks(session.player, kText, false);
  trial.vlc.SelectTrack(session.player, trial.vlc.TrackAt(list, 0));
  trial.vlc.DeleteTracks(list);
  trial.Expect(PumpUntil([&] { return selected(kText).size() > 1; }), "text is selected");
}

void Size(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  unsigned width = 1, height = 1;
  trial.Expect(trial.vlc.GetSize(session.player, 0, &width, &height) == -1, "without a video it is -1");
  session.PlayUntilTimes(trial.Url("tracks.mp4"), kNoWindow);
  trial.Expect(PumpUntil([&] { return trial.vlc.GetSize(session.player, 0, &width, &height) == 0; }) && width == 640 &&
                   height == 360,
               "640 by 360");
  trial.Expect(trial.vlc.GetSize(session.player, 1, &width, &height) == -1, "of another video it is -1");
}

}  // namespace

std::vector<Row> TrackRows() {
  return {{"track_lists", Lists}, {"track_selection", Selection}, {"picture_size", Size}};
}

}  // namespace smoke
