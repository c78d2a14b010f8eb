// The adapter's own log. An environment variable switches it on.
#include "tests/unit/runtime/system_calls.h"

namespace vantro::test {
namespace {

using testing::HasSubstr;

constexpr wchar_t kVariable[] = L"VANTRO_RUNTIME_LOG";

class LogTest : public testing::Test {
 protected:
  void SetUp() override { published::Reset(); }
  void TearDown() override { SetEnvironmentVariableW(kVariable, nullptr); }

  // Sets the variable to the path and loads an adapter. Creates an instance and a player, and stops the player.
  void Use(const std::filesystem::path& log, Variant variant = Variant::kEvents) {
    SetEnvironmentVariableW(kVariable, log.c_str());
    const FreshAdapter vlc(ReadFileBytes(RealLibraryFile(variant)));
    libvlc_instance_t* const instance = vlc.functions().libvlc_new(0, nullptr);
    ASSERT_NE(instance, nullptr);
    libvlc_media_player_t* const player = vlc.functions().libvlc_media_player_new(instance);
    published::SetState(published::Player(1), published::kPlaying);
    published::OnCall("libvlc_media_player_stop_async",
                      [] { published::SetState(published::Player(1), published::kStopped); });
    published::SetResult("libvlc_media_player_stop_async", 0);
    vlc.functions().libvlc_media_player_stop(player);
    vlc.functions().libvlc_media_player_release(player);
    vlc.functions().libvlc_release(instance);
  }

  ScratchFolder scratch_;
};

class LogCallsTest : public SystemCallsTest {
 protected:
  LogCallsTest() : file_(scratch_ / "a.log") { SetEnvironmentVariableW(kVariable, file_.c_str()); }
  ~LogCallsTest() override { SetEnvironmentVariableW(kVariable, nullptr); }
  std::string LastLine() const {
    const std::string log = ReadFileBytes(file_);
    const size_t end = log.rfind('\n');
    return log.substr(log.rfind('\n', end - 1) + 1);
  }

  ScratchFolder scratch_;
  const std::filesystem::path file_;
};

TEST_F(LogCallsTest, LineBeginsWithTheSecondsSinceTheFirstAndTheThread) {
  calls_.clock = 10'000;
  LoadAdapter();
  instance_ = vlc().libvlc_new(0, nullptr);
  *calls_.clock = 12'345;
  player_ = vlc().libvlc_media_player_new(instance_);
  char begin[40];
  snprintf(begin, sizeof begin, "[     2.345] [%5lu] player ", GetCurrentThreadId());
  EXPECT_THAT(LastLine(), testing::StartsWith(begin));
}

TEST_F(LogCallsTest, EachLineIsWrittenThroughAtOnce) {
  MakePlayer();
  // The line of the library and the line of the player.
  EXPECT_THAT(calls_.ofTheLog, testing::ElementsAre("GetEnvironmentVariableW null 0",
                                                    testing::StartsWith("GetEnvironmentVariableW value "), "_wfopen",
                                                    "fflush", "fflush"));
}

TEST_F(LogCallsTest, WithoutTheVariableNothingIsOpened) {
  SetEnvironmentVariableW(kVariable, nullptr);
  MakePlayer();
  EXPECT_THAT(calls_.ofTheLog, testing::ElementsAre("GetEnvironmentVariableW null 0"));
}

TEST_F(LogCallsTest, LongTextIsCutAt1023Characters) {
  published::SetText("libvlc_get_version", std::string(2000, 'v'));
  LoadAdapter();
  const std::string line = LastLine();
  const std::string text = line.substr(line.find("libvlc-real.dll"));
  EXPECT_EQ(text.size(), 1023u + 1);  // and the end of the line
}

TEST_F(LogCallsTest, NamesTheTimeOfAStopThatWasGivenUp) {
  calls_.clock = 1000;
  calls_.waitsFor = [this] { return *calls_.clock += 10, DWORD{WAIT_TIMEOUT}; };
  MakePlayer();
  published::SetState(published::Player(1), published::kPlaying);
  published::SetResult("libvlc_media_player_stop_async", 0);
  vlc().libvlc_media_player_stop(player_);
  EXPECT_THAT(LastLine(), HasSubstr(": stop took 5000 ms and was given up\n"));
}

TEST_F(LogCallsTest, NamesTheVolumeAndMuteThatAreSetAgain) {
  MakePlayer();
  vlc().libvlc_audio_set_volume(player_, 40);
  vlc().libvlc_audio_set_mute(player_, 1);
  published::Raise(published::Player(1), kPlaying);
  published::Raise(published::Player(1), kTimeChanged);
  EXPECT_THAT(LastLine(), HasSubstr(": volume 40 and mute 1 set again\n"));
}

TEST_F(LogCallsTest, NamesATrackThatIsNotThere) {
  MakePlayer();
  vlc().libvlc_audio_set_track(player_, 7);
  EXPECT_THAT(LastLine(), HasSubstr("track 7 of type 0 is not there\n"));
}

TEST_F(LogCallsTest, ReleaseIsLoggedWhenTheLibrarysIsDone) {
  MakePlayer();
  std::string duringIt;
  published::OnCall("libvlc_media_player_release", [&] { duringIt = LastLine(); });
  vlc().libvlc_media_player_release(std::exchange(player_, nullptr));
  EXPECT_THAT(duringIt, testing::Not(HasSubstr("released")));
  EXPECT_THAT(LastLine(), HasSubstr("released"));
}

TEST_F(LogTest, NamesTheLibraryItsInterfaceAndTheTimeOfAStop) {
  Use(scratch_ / "a.log");
  const std::string log = ReadFileBytes(scratch_ / "a.log");
  EXPECT_THAT(log, HasSubstr("libvlc-real.dll 4.0.0-published, interface: event managers, milliseconds"));
  const std::string before = ": stop took ";
  const size_t place = log.find(before);
  ASSERT_NE(place, std::string::npos);
  EXPECT_LE(std::stoull(log.substr(place + before.size())), 10'000u);  // twice the longest wait of a stop
}

TEST_F(LogTest, NamesTheInterfaceWithCallbacks) {
  Use(scratch_ / "a.log", Variant::kCallbacks);
  EXPECT_THAT(ReadFileBytes(scratch_ / "a.log"), HasSubstr("interface: callbacks, microseconds\n"));
}

TEST_F(LogTest, IsAppendedTo) {
  WriteFileBytes(scratch_ / "a.log", "before\n");
  Use(scratch_ / "a.log");
  EXPECT_THAT(ReadFileBytes(scratch_ / "a.log"), testing::StartsWith("before\n["));
}

TEST_F(LogTest, TakesAPathLongerThanTheOldLimit) {
  std::filesystem::path folder = L"\\\\?\\" + scratch_.path().wstring();
  for (int i = 0; i < 3; ++i) folder /= std::wstring(100, L'a');
  std::filesystem::create_directories(folder);
  ASSERT_GT(folder.wstring().size(), static_cast<size_t>(MAX_PATH));
  Use(folder / "a.log");
  EXPECT_THAT(ReadFileBytes(folder / "a.log"), HasSubstr("interface: "));
}

TEST_F(LogTest, ThatCannotBeOpenedIsOff) {
  Use(scratch_ / "missing" / "a.log");
  EXPECT_FALSE(std::filesystem::exists(scratch_ / "missing"));
}

TEST_F(LogTest, NamesTheReasonOfARefusal) {
  SetEnvironmentVariableW(kVariable, (scratch_ / "a.log").c_str());
  const FreshAdapter vlc("no library");
  EXPECT_EQ(vlc.functions().libvlc_new(0, nullptr), nullptr);
  EXPECT_THAT(ReadFileBytes(scratch_ / "a.log"), HasSubstr("refused: libvlc-real.dll is not a library"));
}

}  // namespace
}  // namespace vantro::test
