// Libraries that the adapter can't use: the adapter returns no instance and one sentence with the reason.
//
// A library without a function is a copy of the scripted library with one changed name in its export table. The change
// keeps the order of the table.
#include <cstring>

#include "runtime/real_library.h"
#include "tests/unit/runtime/adapter.h"

namespace vantro::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// Takes the function from a library's bytes.
std::string Without(const std::string& function, std::string bytes) {
  // In the text of a forwarder a different character precedes the name.
  const std::string name = '\0' + function + '\0';
  const size_t at = bytes.find(name);
  EXPECT_NE(at, std::string::npos) << function;
  bytes[at + function.size()] = '_';
  return bytes;
}

std::string Without(const std::string& function, Variant variant) {
  return Without(function, ReadFileBytes(RealLibraryFile(variant)));
}

std::string AdapterBytes() { return ReadFileBytes(RealLibraryFile(Variant::kEvents).replace_filename("libvlc.dll")); }

class Refusal : public testing::Test {
 protected:
  void SetUp() override { published::Reset(); }

  void ExpectRefused(const FreshAdapter& vlc, const testing::Matcher<std::string>& sentence) {
    EXPECT_EQ(vlc.functions().libvlc_new(0, nullptr), nullptr);
    const std::string text = vlc.functions().libvlc_errmsg();
    EXPECT_THAT(text, sentence);
    EXPECT_EQ(text.find('.', text.size() - 1), text.size() - 1) << text;
    EXPECT_EQ(vlc.functions().NewPath("C:\\a"), nullptr);
    EXPECT_EQ(vlc.functions().NewLocation("http://host/a"), nullptr);
    EXPECT_EQ(vlc.functions().libvlc_media_player_new(nullptr), nullptr);
    EXPECT_EQ(vlc.functions().libvlc_media_player_play(nullptr), -1);
    vlc.functions().libvlc_release(nullptr);
  }
};

struct Absence {
  const char* function;
  Variant variant;
};

std::string NameOfAbsence(const testing::TestParamInfo<Absence>& info) {
  return NameOf(info.param.variant) + "_" + info.param.function;
}

std::vector<Absence> Absences() {
  std::vector<Absence> absences;
#define ABSENCE(name, result, parameters) absences.push_back({#name, Variant::kEvents});
  RUNTIME_NEEDED_FUNCTIONS(ABSENCE)
#undef ABSENCE
  absences.push_back({"libvlc_media_player_new", Variant::kEvents});
  absences.push_back({"libvlc_event_attach", Variant::kEvents});
  absences.push_back({"libvlc_event_detach", Variant::kEvents});
  absences.push_back({"libvlc_media_player_new", Variant::kCallbacks});
  return absences;
}

class NeededFunction : public Refusal, public testing::WithParamInterface<Absence> {};
INSTANTIATE_TEST_SUITE_P(Absent, NeededFunction, testing::ValuesIn(Absences()), NameOfAbsence);

TEST_P(NeededFunction, IsNamedWhenItIsAbsent) {
  const FreshAdapter vlc(Without(GetParam().function, GetParam().variant));
  ExpectRefused(vlc,
                std::string("libvlc-real.dll lacks ") + GetParam().function + ", which the runtime adapter needs.");
  EXPECT_THAT(published::CallsOf("libvlc_new"), testing::IsEmpty());
}

// The functions of the interface with event managers, after the one that tells the interface.
TEST_F(Refusal, OfSeveralAbsentFunctionsNamesTheFirst) {
  const std::string withoutDetach = Without("libvlc_event_detach", Variant::kEvents);
  const std::string withoutBoth = Without("libvlc_event_attach", withoutDetach);
  const auto lacks = [](const std::string& name) {
    return "libvlc-real.dll lacks " + name + ", which the runtime adapter needs.";
  };
  ExpectRefused(FreshAdapter(withoutBoth), lacks("libvlc_event_attach"));
  ExpectRefused(FreshAdapter(Without("libvlc_media_player_new", withoutDetach)), lacks("libvlc_media_player_new"));
}

class OptionalFunction : public Refusal, public testing::WithParamInterface<const char*> {};
INSTANTIATE_TEST_SUITE_P(Absent, OptionalFunction, testing::Values("libvlc_set_fullscreen", "libvlc_get_fullscreen"));

TEST_P(OptionalFunction, IsNotMissed) {
  const FreshAdapter vlc(Without(GetParam(), Variant::kEvents));
  libvlc_instance_t* const instance = vlc.functions().libvlc_new(0, nullptr);
  ASSERT_NE(instance, nullptr);
  libvlc_media_player_t* const player = vlc.functions().libvlc_media_player_new(instance);
  vlc.functions().libvlc_set_fullscreen(player, 1);
  EXPECT_EQ(vlc.functions().libvlc_get_fullscreen(player), 0);
  vlc.functions().libvlc_media_player_release(player);
  vlc.functions().libvlc_release(instance);
}

TEST_F(Refusal, OfAnUnchangedCopyDoesNotHappen) {
  const FreshAdapter vlc(ReadFileBytes(RealLibraryFile(Variant::kEvents)));
  libvlc_instance_t* const instance = vlc.functions().libvlc_new(0, nullptr);
  EXPECT_NE(instance, nullptr);
  EXPECT_STREQ(vlc.functions().libvlc_errmsg(), "published error");
  vlc.functions().libvlc_release(instance);
}

TEST_F(Refusal, OfAMissingLibrarySaysThatItWasNotFound) {
  const FreshAdapter vlc("");
  ExpectRefused(vlc, StartsWith("libvlc-real.dll, or a library that it needs, was not found beside libvlc.dll"));
  EXPECT_EQ(vlc.functions().libvlc_abi_version(), 0u);
  EXPECT_STREQ(vlc.functions().libvlc_get_version(), "0 (libvlc-real.dll can't be used)");
}

TEST_F(Refusal, OfALibvlc3NamesItsVersion) {
  published::SetResult("libvlc_abi_version", 0x03000000);
  published::SetText("libvlc_get_version", "3.0.20 Vetinari");
  const FreshAdapter vlc(ReadFileBytes(RealLibraryFile(Variant::kEvents)));
  ExpectRefused(vlc, "libvlc-real.dll is version 3.0.20 Vetinari, and the runtime adapter needs a libvlc 4.");
}

TEST_F(Refusal, OfALaterMajorVersionNamesIt) {
  published::SetResult("libvlc_abi_version", 0x05000000);
  published::SetText("libvlc_get_version", "5.0.0");
  const FreshAdapter vlc(ReadFileBytes(RealLibraryFile(Variant::kCallbacks)));
  ExpectRefused(vlc, HasSubstr("is version 5.0.0"));
}

TEST_F(Refusal, OfAnotherMajorVersionWithoutATextCallsItUnknown) {
  published::SetResult("libvlc_abi_version", 0x05000000);
  const FreshAdapter vlc(Without("libvlc_get_version", Variant::kEvents));
  ExpectRefused(vlc, HasSubstr("is version unknown,"));
}

TEST_F(Refusal, OfA32BitLibrarySaysSo) {
  std::string bytes = ReadFileBytes(RealLibraryFile(Variant::kEvents));
  uint32_t header = 0;
  std::memcpy(&header, &bytes[offsetof(IMAGE_DOS_HEADER, e_lfanew)], sizeof header);
  const WORD machine = IMAGE_FILE_MACHINE_I386;
  const WORD magic = IMAGE_NT_OPTIONAL_HDR32_MAGIC;
  std::memcpy(&bytes[header + offsetof(IMAGE_NT_HEADERS64, FileHeader.Machine)], &machine, sizeof machine);
  std::memcpy(&bytes[header + offsetof(IMAGE_NT_HEADERS64, OptionalHeader.Magic)], &magic, sizeof magic);
  const FreshAdapter vlc(bytes);
  ExpectRefused(vlc, StartsWith("libvlc-real.dll is not a library for 64-bit Windows"));
}

TEST_F(Refusal, OfAFileThatIsNoLibrarySaysSo) {
  const FreshAdapter vlc("This is not a library.");
  ExpectRefused(vlc, StartsWith("libvlc-real.dll is not a library for 64-bit Windows"));
}

const char* const kItself = "libvlc-real.dll is the runtime adapter itself, not the libvlc 4 that it needs.";

TEST_F(Refusal, OfASecondCopyOfTheAdapterSaysSo) {
  const FreshAdapter vlc(AdapterBytes());
  ExpectRefused(vlc, kItself);
  EXPECT_EQ(vlc.functions().libvlc_abi_version(), 0u);
}

// Such a copy finds itself, whatever calls it.
TEST_F(Refusal, OfTheAdapterUnderTheNameOfTheLibrarySaysSo) {
  const FreshAdapter vlc(AdapterBytes(), L"runtime", L"libvlc-real.dll");
  ExpectRefused(vlc, kItself);
  EXPECT_EQ(vlc.functions().libvlc_abi_version(), 0u);
}

TEST_F(Refusal, OfAnUnknownInterfaceNamesWhatWasLookedFor) {
  const FreshAdapter vlc(Without("libvlc_media_player_set_next_media", Variant::kCallbacks));
  ExpectRefused(
      vlc,
      "libvlc-real.dll has an interface of libvlc 4 that the runtime adapter doesn't know: it exports neither "
      "libvlc_media_player_event_manager nor libvlc_media_player_set_next_media.");
}

TEST_F(Refusal, DoesNotComeFromALongPath) {
  const FreshAdapter vlc(ReadFileBytes(RealLibraryFile(Variant::kEvents)), std::wstring(180, L'p'));
  libvlc_instance_t* const instance = vlc.functions().libvlc_new(0, nullptr);
  EXPECT_NE(instance, nullptr) << vlc.functions().libvlc_errmsg();
  vlc.functions().libvlc_release(instance);
}

}  // namespace
}  // namespace vantro::test
