// Track lists in the form of libvlc 3, and the selection of a track by its number.
#include <malloc.h>

#include "tests/support/import_hook.h"
#include "tests/unit/runtime/adapter.h"

namespace vantro::test {
namespace {

using published::Track;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class TracksTest : public AdapterTest {
 protected:
  using Entries = std::vector<std::pair<int, std::string>>;

  Entries Read(libvlc_track_description_t* list) {
    Entries entries;
    for (const auto* entry = list; entry; entry = entry->next) entries.emplace_back(entry->id, entry->name);
    vlc().libvlc_track_description_list_release(list);
    return entries;
  }
  Entries Audio() { return Read(vlc().libvlc_audio_get_track_description(player_)); }
  Entries Subtitles() { return Read(vlc().libvlc_video_get_spu_description(player_)); }
};
OVER_BOTH_VARIANTS(TracksTest);

TEST_P(TracksTest, AListBeforeTheTracksAreKnownHoldsTheDisablingEntryAlone) {
  EXPECT_THAT(Audio(), ElementsAre(Pair(-1, "Disable")));
  EXPECT_THAT(Subtitles(), ElementsAre(Pair(-1, "Disable")));
}

TEST_P(TracksTest, EachTrackHasAnEntryWithANameThatAPersonCanRead) {
  published::SetTracks(real_, published::kAudio,
                       {{"a/1", "Commentary", "en", "Stereo"},
                        {"a/2", "", "de", "Surround"},
                        {"a/3", nullptr, "fr", ""},
                        {"a/4", nullptr, nullptr, "Mono"},
                        {"a/5", nullptr, nullptr, nullptr}});
  EXPECT_THAT(Audio(), ElementsAre(Pair(-1, "Disable"), Pair(0, "Commentary"), Pair(1, "de - Surround"), Pair(2, "fr"),
                                   Pair(3, "Mono"), Pair(4, "Track 5")));
  EXPECT_THAT(Subtitles(), ElementsAre(Pair(-1, "Disable")));
}

TEST_P(TracksTest, ATrackIsChosenByItsNumberBeforeAnyListWasAskedFor) {
  published::SetTracks(real_, published::kAudio, {{"a/1", "One", "", ""}, {"a/2", "Two", "", ""}});
  EXPECT_EQ(vlc().libvlc_audio_set_track(player_, 1), 0);
  EXPECT_THAT(published::CallsOf("libvlc_media_player_select_tracks_by_ids"),
              ElementsAre("libvlc_media_player_select_tracks_by_ids(player1, 0, \"a/2\")"));
  EXPECT_THAT(Audio(), ElementsAre(Pair(-1, "Disable"), Pair(0, "One"), Pair(1, "Two")));
}

TEST_P(TracksTest, AListAsksForAllTracksOfItsType) {
  Audio();
  Subtitles();
  EXPECT_THAT(published::CallsOf("libvlc_media_player_get_tracklist"),
              ElementsAre("libvlc_media_player_get_tracklist(player1, 0, 0)",
                          "libvlc_media_player_get_tracklist(player1, 2, 0)"));
}

TEST_P(TracksTest, NumbersHoldWhileTracksComeAndGo) {
  published::SetTracks(real_, published::kText, {{"s/1", "one"}, {"s/2", "two"}});
  EXPECT_THAT(Subtitles(), ElementsAre(Pair(-1, "Disable"), Pair(0, "one"), Pair(1, "two")));
  published::SetTracks(real_, published::kText, {{"s/3", "three"}, {"s/2", "two"}});
  EXPECT_THAT(Subtitles(), ElementsAre(Pair(-1, "Disable"), Pair(2, "three"), Pair(1, "two")));
  published::SetTracks(real_, published::kText, {});
  EXPECT_THAT(Subtitles(), ElementsAre(Pair(-1, "Disable")));
  published::SetTracks(real_, published::kText, {{"s/1", "one"}});
  EXPECT_THAT(Subtitles(), ElementsAre(Pair(-1, "Disable"), Pair(0, "one")));
}

TEST_P(TracksTest, NumbersAreCountedForEachTypeAndPlayer) {
  published::SetTracks(real_, published::kText, {{"s/1", "one"}});
  published::SetTracks(real_, published::kAudio, {{"a/1", "one"}});
  EXPECT_EQ(Subtitles()[1].first, 0);
  EXPECT_EQ(Audio()[1].first, 0);
  libvlc_media_player_t* const other = vlc().libvlc_media_player_new(instance_);
  published::SetTracks(published::Player(2), published::kAudio, {{"a/9", "nine"}});
  EXPECT_EQ(Read(vlc().libvlc_audio_get_track_description(other))[1].first, 0);
  vlc().libvlc_media_player_release(other);
}

TEST_P(TracksTest, ATrackIsChosenByItsText) {
  published::SetTracks(real_, published::kAudio, {{"a/1", "one"}, {"a/2", "two"}});
  published::SetTracks(real_, published::kText, {{"s/1", "one"}});
  Audio();
  Subtitles();
  EXPECT_EQ(vlc().libvlc_audio_set_track(player_, 1), 0);
  EXPECT_EQ(vlc().libvlc_video_set_spu(player_, 0), 0);
  EXPECT_THAT(published::CallsOf("libvlc_media_player_select_tracks_by_ids"),
              ElementsAre("libvlc_media_player_select_tracks_by_ids(player1, 0, \"a/2\")",
                          "libvlc_media_player_select_tracks_by_ids(player1, 2, \"s/1\")"));
}

TEST_P(TracksTest, MinusOneUnselectsTheType) {
  EXPECT_EQ(vlc().libvlc_audio_set_track(player_, -1), 0);
  EXPECT_EQ(vlc().libvlc_video_set_spu(player_, -1), 0);
  EXPECT_THAT(published::CallsOf("libvlc_media_player_unselect_track_type"),
              ElementsAre("libvlc_media_player_unselect_track_type(player1, 0)",
                          "libvlc_media_player_unselect_track_type(player1, 2)"));
}

TEST_P(TracksTest, ATrackThatIsNotThereIsNotChosen) {
  published::SetTracks(real_, published::kAudio, {{"a/1", "one"}});
  Audio();
  published::SetTracks(real_, published::kAudio, {{"a/2", "two"}});
  EXPECT_EQ(vlc().libvlc_audio_set_track(player_, 0), -1);
  EXPECT_EQ(vlc().libvlc_audio_set_track(player_, 7), -1);
  EXPECT_EQ(vlc().libvlc_audio_set_track(player_, -2), -1);
  EXPECT_THAT(published::CallsOf("libvlc_media_player_select_tracks_by_ids"), IsEmpty());
}

TEST_P(TracksTest, ATrackWithoutAnIdentityIsLeftOut) {
  published::SetTracks(real_, published::kAudio, {{nullptr, "nobody"}, {"a/1", "one"}});
  EXPECT_THAT(Audio(), ElementsAre(Pair(-1, "Disable"), Pair(0, "one")));
}

// Lets the adapter have only that many entries of a list.
class ScarceEntries {
 public:
  ScarceEntries(HMODULE adapter, int entries) : hook_("msvcrt.dll", "malloc", &Allocate, adapter) { left = entries; }

 private:
  static void* Allocate(size_t size) {
    if (size == sizeof(libvlc_track_description_t) && left-- <= 0) return nullptr;
    return malloc(size);
  }
  static inline int left = 0;
  ImportHook hook_;
};

TEST_P(TracksTest, AListEndsWhereMemoryEnds) {
  published::SetTracks(real_, published::kAudio, {{"a/1", "one"}, {"a/2", "two"}});
  Audio();  // the first call allocates locks as well
  const HMODULE adapter = GetModuleHandleW(RealLibraryFile(GetParam()).replace_filename("libvlc.dll").c_str());
  for (int entries = 0; entries < 3; ++entries) {
    const ScarceEntries scarce(adapter, entries);
    EXPECT_EQ(Audio().size(), static_cast<size_t>(entries));
  }
}

// Blocks in use on the heap that the adapter shares with this program.
size_t BlocksInUse() {
  size_t blocks = 0;
  _HEAPINFO entry{};
  while (_heapwalk(&entry) == _HEAPOK) blocks += entry._useflag == _USEDENTRY;
  return blocks;
}

TEST_P(TracksTest, TenThousandListsLeaveNothingBehind) {
  published::SetTracks(real_, published::kAudio, {{"a/1", "one"}, {"a/2", "two"}, {"a/3", nullptr, "en", "three"}});
  const auto read = [&](int times) {
    for (int i = 0; i < times; ++i) {
      Audio();
      vlc().libvlc_audio_set_track(player_, 1);
      published::ClearCalls();
    }
  };
  read(10);
  const size_t before = BlocksInUse();
  ASSERT_GT(before, 0u);
  read(10'000);
  EXPECT_LT(BlocksInUse(), before + 100);
  EXPECT_EQ(published::Live().trackLists, 0);
}

}  // namespace
}  // namespace vantro::test
