// The adapter's calls of the system, with their arguments.
#include "tests/unit/runtime/system_calls.h"

#include <utility>

#include "tests/unit/flutter_host/captured_stderr.h"

namespace vantro::test {
namespace {

using testing::Contains;
using testing::ElementsAre;

TEST_F(SystemCallsTest, LibraryIsLoadedFromTheAdaptersFolderWithoutABox) {
  DWORD former = 0;
  SetThreadErrorMode(SEM_NOGPFAULTERRORBOX, &former);
  LoadAdapter();
  EXPECT_EQ(GetThreadErrorMode(), static_cast<DWORD>(SEM_NOGPFAULTERRORBOX));
  SetThreadErrorMode(former, nullptr);
  // SEM_FAILCRITICALERRORS, LOAD_WITH_ALTERED_SEARCH_PATH, and the mode of before
  EXPECT_THAT(calls_.lines, ElementsAre("SetThreadErrorMode 1 keeps the former", "GetModuleFileNameW adapter 260",
                                        "LoadLibraryExW libvlc-real.dll 0000000000000000 8", "SetThreadErrorMode 2"));
}

TEST_F(SystemCallsTest, LongPathOfTheAdapterIsReadWithTwiceTheRoom) {
  const std::wstring folder =
      L"C:\\" + std::wstring(260 - 3 - 11, L'x') + L"\\";  // with the file's name 260 characters
  calls_.path = folder + L"libvlc.dll";
  calls_.loadError = ERROR_MOD_NOT_FOUND;
  LoadAdapter();
  EXPECT_EQ(vlc().libvlc_new(0, nullptr), nullptr);
  EXPECT_EQ(calls_.loaded, folder + L"libvlc-real.dll");
  EXPECT_THAT(calls_.lines,
              testing::IsSupersetOf({"GetModuleFileNameW adapter 260", "GetModuleFileNameW adapter 520"}));
}

TEST_F(SystemCallsTest, UnknownPathOfTheAdapterLoadsNothingElse) {
  calls_.pathFails = true;
  calls_.loadError = ERROR_MOD_NOT_FOUND;
  LoadAdapter();
  EXPECT_EQ(vlc().libvlc_new(0, nullptr), nullptr);
  EXPECT_EQ(calls_.loaded, L"");
}

struct LoadFailure {
  DWORD error;
  const char* sentence;
};

class FailedLoad : public SystemCallsTest, public testing::WithParamInterface<LoadFailure> {};

TEST_P(FailedLoad, IsReportedWithItsReasonAndNumber) {
  calls_.loadError = GetParam().error;
  CapturedStderr errors;
  LoadAdapter();
  EXPECT_EQ(vlc().libvlc_new(0, nullptr), nullptr);
  EXPECT_EQ(errors.Take(), "vantro runtime: " + std::string(GetParam().sentence) + "\n");
  EXPECT_STREQ(vlc().libvlc_errmsg(), GetParam().sentence);
  EXPECT_THAT(calls_.ofTheLog, Contains("fflush"));  // of the error output, since the log is off
}

INSTANTIATE_TEST_SUITE_P(
    Of, FailedLoad,
    testing::Values(
        LoadFailure{ERROR_FILE_NOT_FOUND,
                    "libvlc-real.dll, or a library that it needs, was not found beside libvlc.dll (error 2)."},
        LoadFailure{ERROR_MOD_NOT_FOUND,
                    "libvlc-real.dll, or a library that it needs, was not found beside libvlc.dll (error 126)."},
        LoadFailure{ERROR_BAD_EXE_FORMAT, "libvlc-real.dll is not a library for 64-bit Windows (error 193)."},
        LoadFailure{ERROR_ACCESS_DENIED, "libvlc-real.dll can't be loaded (error 5)."}),
    [](const auto& row) { return std::to_string(row.param.error); });

TEST_F(SystemCallsTest, PlayerMakesOneEventThatResetsItselfAndClosesIt) {
  LoadAdapter();
  instance_ = vlc().libvlc_new(0, nullptr);
  calls_.lines.clear();
  player_ = vlc().libvlc_media_player_new(instance_);
  EXPECT_THAT(calls_.lines, ElementsAre("CreateEventW 0 0 0 0"));
  EXPECT_EQ(calls_.closed, 0);
  vlc().libvlc_media_player_release(std::exchange(player_, nullptr));
  EXPECT_EQ(calls_.closed, 1);
}

TEST_F(SystemCallsTest, StopWaitsForItsEventAndServesSentMessagesAlone) {
  MakePlayer();
  published::SetState(published::Player(1), published::kPlaying);
  published::SetResult("libvlc_media_player_stop_async", 0);
  calls_.waitsFor = [] {
    published::SetState(published::Player(1), published::kStopped);
    return DWORD{WAIT_OBJECT_0 + 1};
  };
  vlc().libvlc_media_player_stop(player_);
  // QS_SENDMESSAGE, MWMO_INPUTAVAILABLE, PM_NOREMOVE with PM_QS_SENDMESSAGE
  EXPECT_THAT(calls_.lines,
              ElementsAre("MsgWaitForMultipleObjectsEx 1 event 10 0x40 0x4", "PeekMessageW 0 0 0 0x400000"));
}

TEST_F(SystemCallsTest, StopThatIsWokenByItsEventServesNoMessage) {
  MakePlayer();
  published::SetState(published::Player(1), published::kPlaying);
  published::SetResult("libvlc_media_player_stop_async", 0);
  int waits = 0;
  calls_.waitsFor = [&waits] {
    if (++waits == 2) published::SetState(published::Player(1), published::kStopped);
    return waits == 1 ? DWORD{WAIT_OBJECT_0} : DWORD{WAIT_TIMEOUT};
  };
  vlc().libvlc_media_player_stop(player_);
  EXPECT_EQ(waits, 2);
  EXPECT_THAT(calls_.lines, testing::Not(Contains(testing::StartsWith("PeekMessageW"))));
}

}  // namespace
}  // namespace vantro::test
