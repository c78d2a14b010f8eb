// The adapter's own log. An environment variable switches it on.
#include "tests/unit/runtime/adapter.h"

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
