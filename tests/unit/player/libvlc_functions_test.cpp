// The table of libvlc's functions, the detected version, and the search for the libraries.
#include "player/libvlc_functions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <filesystem>

#include "tests/support/import_hook.h"
#include "tests/support/log_capture.h"
#include "tests/support/scripted_vlc.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;

constexpr const char* kSlotNames[] = {
    "libvlc_new",
    "libvlc_release",
    "libvlc_errmsg",
    "libvlc_get_version",
    "libvlc_abi_version",
    "libvlc_media_player_new",
    "libvlc_media_player_release",
    "libvlc_media_player_set_hwnd",
    "libvlc_media_player_event_manager",
    "libvlc_media_player_stop",
    "libvlc_media_player_play",
    "libvlc_media_player_pause",
    "libvlc_media_player_is_playing",
    "libvlc_media_player_get_length",
    "libvlc_media_player_get_time",
    "libvlc_media_player_set_time",
    "libvlc_media_player_get_media",
    "libvlc_set_fullscreen",
    "libvlc_get_fullscreen",
    "libvlc_media_new_path",
    "libvlc_media_new_location",
    "libvlc_media_new_uri",
    "libvlc_media_add_option",
    "libvlc_media_player_set_media",
    "libvlc_media_release",
    "libvlc_audio_set_volume",
    "libvlc_audio_get_volume",
    "libvlc_audio_set_mute",
    "libvlc_audio_get_mute",
    "libvlc_audio_get_track_description",
    "libvlc_audio_set_track",
    "libvlc_video_set_scale",
    "libvlc_video_get_width",
    "libvlc_video_get_height",
    "libvlc_video_set_viewport",
    "libvlc_video_get_spu_description",
    "libvlc_video_set_spu",
    "libvlc_event_attach",
    "libvlc_event_detach",
    "libvlc_track_description_list_release",
};

HMODULE ScriptedModule() { return GetModuleHandleA("libvlc.dll"); }

void* SlotPointer(const LibVlcFunctions& functions, const LibVlcSlot& slot) {
  void* pointer = nullptr;
  std::memcpy(&pointer, reinterpret_cast<const char*>(&functions) + slot.offset, sizeof pointer);
  return pointer;
}

TEST(LibVlcTable, HoldsTheFortyFunctionsInTheirOrder) {
  std::vector<std::string> names;
  for (const LibVlcSlot& slot : LibVlcSlots()) names.push_back(slot.name);
  EXPECT_THAT(names, testing::ElementsAreArray(kSlotNames));
}

TEST(LibVlcTable, EachSlotHasThePlaceOfItsNumber) {
  size_t offset = 0;
  for (const LibVlcSlot& slot : LibVlcSlots()) {
    EXPECT_EQ(slot.offset, offset) << slot.name;
    offset += sizeof(void*);
  }
}

TEST(LibVlcTable, EachSlotPointsToTheExportOfItsName) {
  const LibVlcFunctions functions = GetLibVlcFunctions();
  for (const LibVlcSlot& slot : LibVlcSlots()) {
    EXPECT_EQ(SlotPointer(functions, slot), reinterpret_cast<void*>(GetProcAddress(ScriptedModule(), slot.name)))
        << slot.name;
    EXPECT_NE(SlotPointer(functions, slot), nullptr) << slot.name;
  }
}

TEST(LibVlcTable, AModuleWithoutTheFunctionsCountsAsLoadedWithEmptySlots) {
  LibVlcFunctions functions{};
  ResolveLibVlcFunctions(GetModuleHandleA("kernel32.dll"), functions);
  for (const LibVlcSlot& slot : LibVlcSlots()) EXPECT_EQ(SlotPointer(functions, slot), nullptr) << slot.name;
  EXPECT_EQ(functions.abiVersion, 0u);
  EXPECT_TRUE(functions.legacyMediaCreation);
  EXPECT_TRUE(functions.loaded);
}

TEST(LibVlcTable, IsResolvedOnceAndThenOnlyCopied) {
  GetLibVlcFunctions();
  ScriptedVlc vlc;
  EXPECT_TRUE(GetLibVlcFunctions().loaded);
  EXPECT_TRUE(vlc.Calls().empty());
}

struct VersionRow {
  const char* name;
  uint32_t abi;
  const char* text;
  bool legacy;
  const char* line;
};

class LibVlcVersion : public testing::TestWithParam<VersionRow> {};

TEST_P(LibVlcVersion, DecidesTheFormOfTheMediaCreators) {
  const VersionRow& row = GetParam();
  ScriptedVlc vlc;
  LogCapture log;
  vlc.SetResult("libvlc_abi_version", row.abi);
  vlc.SetText("libvlc_get_version", row.text);
  LibVlcFunctions functions{};
  ResolveLibVlcFunctions(ScriptedModule(), functions);
  EXPECT_EQ(functions.abiVersion, row.abi);
  EXPECT_EQ(functions.legacyMediaCreation, row.legacy);
  EXPECT_THAT(log.Lines(), ElementsAre(std::string("INFO ") + row.line));
}

INSTANTIATE_TEST_SUITE_P(
    Table, LibVlcVersion,
    testing::Values(VersionRow{"AnAbiVersionWithTopByte3IsLegacy", 0x03FFFFFF, "4.0.0", true,
                               "[VLC] Detected libvlc ABI 0x03FFFFFF (major=3, legacyMediaCreation=1)"},
                    VersionRow{"AnAbiVersionWithTopByte4IsNotLegacy", 0x04000000, "3.0.0", false,
                               "[VLC] Detected libvlc ABI 0x04000000 (major=4, legacyMediaCreation=0)"},
                    VersionRow{"AnAbiVersionWithTheHighestTopByteIsNotLegacy", 0xFF000000, "", false,
                               "[VLC] Detected libvlc ABI 0xFF000000 (major=255, legacyMediaCreation=0)"},
                    VersionRow{"AnAbiVersionOf1IsMajor0", 1, "4.0.0", true,
                               "[VLC] Detected libvlc ABI 0x00000001 (major=0, legacyMediaCreation=1)"},
                    VersionRow{"AnAbiVersionOf0FallsBackToTheText", 0, "4.0.0-dev Otto Chriek", false,
                               "[VLC] libvlc ABI symbol missing, inferred major=4 (legacyMediaCreation=0)"},
                    VersionRow{"ATextOfTwoDigitsIsReadWhole", 0, "12.1", false,
                               "[VLC] libvlc ABI symbol missing, inferred major=12 (legacyMediaCreation=0)"},
                    VersionRow{"ATextOfMajor3IsLegacy", 0, "3.0.18 Vetinari", true,
                               "[VLC] libvlc ABI symbol missing, inferred major=3 (legacyMediaCreation=1)"},
                    VersionRow{"ATextOfMajor9IsNotLegacy", 0, "9.0.0", false,
                               "[VLC] libvlc ABI symbol missing, inferred major=9 (legacyMediaCreation=0)"},
                    VersionRow{"ATextWithALeadingZeroIsReadWhole", 0, "04.0.0", false,
                               "[VLC] libvlc ABI symbol missing, inferred major=4 (legacyMediaCreation=0)"},
                    VersionRow{"ATextThatBeginsWithALetterLeavesMajor0", 0, "v4.0.0", true,
                               "[VLC] libvlc ABI symbol missing, inferred major=0 (legacyMediaCreation=1)"},
                    VersionRow{"ATextThatBeginsWithABlankLeavesMajor0", 0, " 4.0.0", true,
                               "[VLC] libvlc ABI symbol missing, inferred major=0 (legacyMediaCreation=1)"},
                    VersionRow{"AnEmptyTextLeavesMajor0", 0, "", true,
                               "[VLC] libvlc ABI symbol missing, inferred major=0 (legacyMediaCreation=1)"},
                    VersionRow{"ANullTextLeavesMajor0", 0, nullptr, true,
                               "[VLC] libvlc ABI symbol missing, inferred major=0 (legacyMediaCreation=1)"}),
    [](const testing::TestParamInfo<VersionRow>& row) { return row.param.name; });

TEST(LibVlcVersionText, IsNotReadWhenThereIsAnAbiVersion) {
  ScriptedVlc vlc;
  LibVlcFunctions functions{};
  ResolveLibVlcFunctions(ScriptedModule(), functions);
  EXPECT_THAT(vlc.Calls(), ElementsAre("libvlc_abi_version()"));
}

TEST(LibVlcErrorText, ReplacesAnEmptySlotAndANullText) {
  ScriptedVlc vlc;
  LibVlcFunctions functions = GetLibVlcFunctions();
  vlc.SetText("libvlc_errmsg", "no demuxer");
  EXPECT_STREQ(LibVlcErrorText(functions), "no demuxer");
  vlc.SetText("libvlc_errmsg", nullptr);
  EXPECT_STREQ(LibVlcErrorText(functions), "No error message available");
  functions.libvlc_errmsg = nullptr;
  EXPECT_STREQ(LibVlcErrorText(functions), "No error message available");
}

TEST(LibVlcLibraries, AreTheOnesThatTheProcessHasLoaded) {
  EXPECT_EQ(GetLibVlcModule(), GetModuleHandleA("libvlc.dll"));
  EXPECT_NE(GetLibVlcCoreModule(), nullptr);
  EXPECT_EQ(GetLibVlcCoreModule(), GetModuleHandleA("libvlccore.dll"));
}

// A library with another file name in the folder "vlc" beside the executable.
class BundledLibrary : public testing::Test {
 protected:
  BundledLibrary() {
    std::filesystem::create_directories(folder_);
    std::filesystem::copy_file("libvlccore.dll", folder_ / "bundledprobe.dll",
                               std::filesystem::copy_options::overwrite_existing);
  }
  ~BundledLibrary() override {
    if (library_) FreeLibrary(library_);
    std::filesystem::remove_all(folder_);
  }

  const std::filesystem::path folder_ = std::filesystem::current_path() / "vlc";
  HMODULE library_ = nullptr;
};

TEST_F(BundledLibrary, IsFoundInTheFolderVlcBesideTheExecutable) {
  library_ = FindVlcLibrary("bundledprobe.dll", "vlc\\bundledprobe.dll");
  ASSERT_NE(library_, nullptr);
  char path[MAX_PATH] = "";
  GetModuleFileNameA(library_, path, MAX_PATH);
  EXPECT_THAT(path, testing::EndsWith("\\vlc\\bundledprobe.dll"));
}

TEST(LibVlcLibraries, AreFoundOnTheSearchPathLast) {
  const HMODULE library = FindVlcLibrary("msimg32.dll", "vlc\\msimg32.dll");
  EXPECT_NE(library, nullptr);
  FreeLibrary(library);
}

TEST(LibVlcLibraries, ThatAreNowhereGiveNullAndTheLoadersError) {
  EXPECT_EQ(FindVlcLibrary("nosuchlibrary.dll", "vlc\\nosuchlibrary.dll"), nullptr);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
}

std::vector<std::string> onceCalls;
decltype(&InitOnceBeginInitialize) realBegin = nullptr;
decltype(&InitOnceComplete) realComplete = nullptr;

BOOL WINAPI RefuseToBegin(INIT_ONCE*, DWORD, BOOL*, void**) { return FALSE; }
BOOL WINAPI RecordBegin(INIT_ONCE* once, DWORD flags, BOOL* pending, void** context) {
  onceCalls.push_back("begin " + std::to_string(flags) + (context ? " with context" : ""));
  return realBegin(once, flags, pending, context);
}
BOOL WINAPI RecordComplete(INIT_ONCE* once, DWORD flags, void* context) {
  onceCalls.push_back("complete " + std::to_string(flags) + (context ? " with context" : ""));
  return realComplete(once, flags, context);
}

decltype(&RegisterClassW) realRegister = nullptr;
ATOM WINAPI RecordRegister(const WNDCLASSW* windowClass) {
  onceCalls.push_back(windowClass->hInstance == GetModuleHandleW(nullptr) ? "register for this program" : "register");
  return realRegister(windowClass);
}

TEST(VlcHostWindowClass, IsRegisteredWithinOneInitialisation) {
  {
    const ImportHook begin("KERNEL32.dll", "InitOnceBeginInitialize", &RefuseToBegin);
    EXPECT_EQ(RegisterVlcHostWindowClass(), 0);
  }
  const ImportHook begin("KERNEL32.dll", "InitOnceBeginInitialize", &RecordBegin);
  const ImportHook complete("KERNEL32.dll", "InitOnceComplete", &RecordComplete);
  realBegin = begin.Original<decltype(realBegin)>();
  realComplete = complete.Original<decltype(realComplete)>();
  const ImportHook registration("user32.dll", "RegisterClassW", &RecordRegister);
  realRegister = registration.Original<decltype(realRegister)>();
  onceCalls.clear();
  const ATOM atom = RegisterVlcHostWindowClass();
  EXPECT_NE(atom, 0);
  EXPECT_EQ(RegisterVlcHostWindowClass(), atom);
  EXPECT_THAT(onceCalls, ElementsAre("begin 0", "register for this program", "complete 0", "begin 0"));
}

TEST(VlcHostWindowClass, IsABlackWindowOfTheSystemsProcedureRegisteredOnce) {
  const ATOM atom = RegisterVlcHostWindowClass();
  ASSERT_NE(atom, 0);
  EXPECT_EQ(RegisterVlcHostWindowClass(), atom);
  WNDCLASSW registered{};
  ASSERT_TRUE(GetClassInfoW(GetModuleHandleW(nullptr), L"VantroVlcHostWindow", &registered));
  EXPECT_EQ(registered.style, 0u);
  EXPECT_EQ(registered.lpfnWndProc, DefWindowProcW);
  EXPECT_EQ(registered.hCursor, LoadCursorA(nullptr, IDC_ARROW));
  EXPECT_EQ(registered.hbrBackground, GetStockObject(BLACK_BRUSH));
  EXPECT_EQ(registered.hIcon, nullptr);
  EXPECT_EQ(registered.cbClsExtra, 0);
  EXPECT_EQ(registered.cbWndExtra, 0);
}

}  // namespace
}  // namespace vantro::test
