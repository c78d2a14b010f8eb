// The search for an installed VLC in real folders.
#include "player/vlc_runtime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <shlobj.h>
#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/support/import_hook.h"
#include "tests/support/line_order.h"
#include "tests/support/log_capture.h"

namespace vantro::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

// A temporary folder of this program, removed at the end.
class RuntimeFolders : public testing::Test {
 protected:
  RuntimeFolders() {
    fs::remove_all(root_);
    fs::create_directories(local_);
    fs::create_directories(programs_);
    SetEnvironmentVariableA("VLC_PLUGIN_PATH", nullptr);
  }
  ~RuntimeFolders() override {
    SetEnvironmentVariableA("VLC_PLUGIN_PATH", nullptr);
    fs::remove_all(root_);
  }

  static void Write(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
  }
  static std::string Read(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  static std::string PluginPath() {
    char text[MAX_PATH] = "";
    GetEnvironmentVariableA("VLC_PLUGIN_PATH", text, MAX_PATH);
    return text;
  }

  // Installs a VLC with plugins and both libraries.
  void Install() {
    fs::create_directories(installed_ / "plugins");
    Write(installed_ / "libvlc.dll", "installed vlc");
    Write(installed_ / "libvlccore.dll", "installed core");
  }
  bool SetUpEnvironment() { return SetupVlcEnvironmentIn(programs_.string(), local_.string()); }
  std::string Find(const std::vector<std::string>& installs = {}) {
    return FindVlcPath(local_.string() + "\\", installs);
  }
  bool LocalIsEmpty() const { return fs::is_empty(local_); }

  const fs::path root_ = fs::current_path() / "runtime_folders";
  const fs::path local_ = root_ / "exe";
  const fs::path programs_ = root_ / "Program Files";
  const fs::path installed_ = programs_ / "VideoLAN" / "VLC";
  LogCapture log_;
};

// GetVlcPath.

TEST_F(RuntimeFolders, AFolderVlcBesideTheExecutableWinsEvenWithoutALibrary) {
  Install();
  fs::create_directories(local_ / "vlc");
  fs::create_directories(local_ / "lib" / "vlc");
  Write(local_ / "libvlc.dll", "");
  EXPECT_EQ(Find({installed_.string()}), local_.string() + "\\vlc");
}

TEST_F(RuntimeFolders, AFolderLibVlcComesNext) {
  fs::create_directories(local_ / "lib" / "vlc");
  Write(local_ / "libvlc.dll", "");
  EXPECT_EQ(Find(), local_.string() + "\\lib\\vlc");
}

TEST_F(RuntimeFolders, ALibraryBesideTheExecutableGivesItsDirectoryWithTheTrailingBackslash) {
  Install();
  Write(local_ / "libvlc.dll", "");
  EXPECT_EQ(Find({installed_.string()}), local_.string() + "\\");
}

TEST_F(RuntimeFolders, TheFirstInstalledVlcThatExistsIsNamed) {
  Install();
  const std::string missing = (root_ / "missing").string();
  EXPECT_EQ(Find({missing, installed_.string()}), installed_.string());
  EXPECT_EQ(Find({installed_.string(), local_.string()}), installed_.string());
}

TEST_F(RuntimeFolders, WithoutAnyVlcTheExecutablesDirectoryIsNamed) {
  EXPECT_EQ(Find({(root_ / "missing").string()}), local_.string() + "\\");
}

TEST_F(RuntimeFolders, AFileCalledVlcCountsAsWell) {
  Write(local_ / "vlc", "");
  EXPECT_EQ(Find(), local_.string() + "\\vlc");
}

TEST_F(RuntimeFolders, ATestForExistenceThatFailsRaisesTheFileSystemsException) {
  const std::string tooLong = "C:\\" + std::string(70000, 'a') + "\\";
  try {
    FindVlcPath(tooLong, {});
    FAIL() << "no exception";
  } catch (const fs::filesystem_error& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr(": exists: "));
    EXPECT_TRUE(error.code());
  }
}

// Takes the place of the system's test for existence: no path exists, and the reason is the given error.
std::vector<std::string> askedPaths;
DWORD reasonOfAbsence = 0;
DWORD WINAPI Absent(const char* path) {
  askedPaths.push_back(path);
  SetLastError(reasonOfAbsence);
  return INVALID_FILE_ATTRIBUTES;
}

class AbsentFiles : public testing::Test {
 protected:
  AbsentFiles() {
    askedPaths.clear();
    reasonOfAbsence = ERROR_FILE_NOT_FOUND;
  }
  const ImportHook hook_{"KERNEL32.dll", "GetFileAttributesA", &Absent};
};

TEST_F(AbsentFiles, FiveErrorsMeanThatAPathDoesNotExist) {
  for (const DWORD error : {2u, 3u, 53u, 123u, 267u}) {
    reasonOfAbsence = error;
    EXPECT_EQ(FindVlcPath("C:\\exe\\", {}), "C:\\exe\\") << error;
  }
}

TEST_F(AbsentFiles, AnotherErrorIsRaisedWithItsNumber) {
  reasonOfAbsence = ERROR_ACCESS_DENIED;
  try {
    FindVlcPath("C:\\exe\\", {});
    FAIL() << "no exception";
  } catch (const fs::filesystem_error& error) {
    EXPECT_EQ(error.code(), std::error_code(5, std::system_category()));
  }
}

TEST_F(AbsentFiles, GetVlcPathLooksBesideTheExecutableAndThenForAnInstalledVlc) {
  const std::string beside = GetExeDirectory();
  EXPECT_EQ(GetVlcPath(), beside);
  EXPECT_THAT(askedPaths, ElementsAre(beside + "vlc", beside + "lib\\vlc", beside + "libvlc.dll",
                                      "C:\\Program Files\\VideoLAN\\VLC", "C:\\Program Files (x86)\\VideoLAN\\VLC"));
}

TEST(VlcPath, IsTheDirectoryOfTheLibraryBesideThisProgram) { EXPECT_EQ(GetVlcPath(), GetExeDirectory()); }

TEST(ExeDirectory, IsTheProgramsFolderWithABackslashAtTheEnd) {
  char path[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  const std::string directory = GetExeDirectory();
  EXPECT_EQ(directory.back(), '\\');
  EXPECT_EQ(directory + fs::path(path).filename().string(), path);
}

// SetupVlcEnvironment.

TEST_F(RuntimeFolders, AnInstalledVlcIsReadiedForTheNextStart) {
  Install();
  EXPECT_TRUE(SetUpEnvironment());
  EXPECT_EQ(PluginPath(), (installed_ / "plugins").string());
  EXPECT_TRUE(fs::is_directory(local_ / "plugins"));
  EXPECT_TRUE(fs::is_empty(local_ / "plugins"));
  EXPECT_EQ(Read(local_ / "libvlc.dll"), "installed vlc");
  EXPECT_EQ(Read(local_ / "libvlccore.dll"), "installed core");
}

TEST_F(RuntimeFolders, EachStepIsLogged) {
  Install();
  ASSERT_TRUE(SetUpEnvironment());
  const std::string installed = installed_.string();
  const std::string local = local_.string();
  EXPECT_THAT(log_.Lines(),
              ElementsAre("DEBUG Found VLC installation at: " + installed,
                          "DEBUG Setting VLC_PLUGIN_PATH to: " + installed + "\\plugins",
                          "DEBUG Creating local plugins directory: " + local + "\\plugins",
                          "DEBUG Copying libvlc.dll from: " + installed + "\\libvlc.dll to: " + local + "\\libvlc.dll",
                          "DEBUG Copying libvlccore.dll from: " + installed + "\\libvlccore.dll to: " + local +
                              "\\libvlccore.dll"));
}

decltype(&SetEnvironmentVariableA) realSetVariable = nullptr;
decltype(&CreateDirectoryA) realCreateDirectory = nullptr;
decltype(&CopyFileA) realCopyFile = nullptr;
BOOL WINAPI NoteVariable(const char* name, const char* value) {
  Note(std::string("set ") + name);
  return realSetVariable(name, value);
}
BOOL WINAPI NoteDirectory(const char* path, SECURITY_ATTRIBUTES* security) {
  Note(std::string("create folder") + (security ? " with security" : ""));
  return realCreateDirectory(path, security);
}
BOOL WINAPI NoteCopy(const char* from, const char* to, BOOL keepOld) {
  Note(std::string("copy") + (keepOld ? " unless there" : ""));
  return realCopyFile(from, to, keepOld);
}

TEST_F(RuntimeFolders, EachStepIsLoggedBeforeItIsTaken) {
  Install();
  const ImportHook variable("KERNEL32.dll", "SetEnvironmentVariableA", &NoteVariable);
  const ImportHook directory("KERNEL32.dll", "CreateDirectoryA", &NoteDirectory);
  const ImportHook copy("KERNEL32.dll", "CopyFileA", &NoteCopy);
  realSetVariable = variable.Original<decltype(realSetVariable)>();
  realCreateDirectory = directory.Original<decltype(realCreateDirectory)>();
  realCopyFile = copy.Original<decltype(realCopyFile)>();
  ASSERT_TRUE(SetUpEnvironment());
  using testing::HasSubstr;
  EXPECT_THAT(log_.Lines(), ElementsAre(HasSubstr("Found VLC"), HasSubstr("Setting VLC_PLUGIN_PATH"),
                                        "DEBUG (call) set VLC_PLUGIN_PATH", HasSubstr("Creating local"),
                                        "DEBUG (call) create folder", HasSubstr("Copying libvlc.dll"),
                                        "DEBUG (call) copy", HasSubstr("Copying libvlccore.dll"), "DEBUG (call) copy"));
}

TEST_F(RuntimeFolders, ALaterRunFindsAllInPlaceAndDoesNothingNew) {
  Install();
  ASSERT_TRUE(SetUpEnvironment());
  Write(installed_ / "libvlc.dll", "another vlc");
  const size_t before = log_.Lines().size();
  EXPECT_TRUE(SetUpEnvironment());
  EXPECT_EQ(log_.Lines().size(), before + 2);
  EXPECT_EQ(Read(local_ / "libvlc.dll"), "installed vlc");
}

TEST_F(RuntimeFolders, TheVariableIsNotSeenByGetenv) {
  Install();
  ASSERT_TRUE(SetUpEnvironment());
  EXPECT_EQ(std::getenv("VLC_PLUGIN_PATH"), nullptr);
}

TEST_F(RuntimeFolders, WithoutAnInstalledVlcNothingIsChanged) {
  EXPECT_FALSE(SetUpEnvironment());
  EXPECT_EQ(PluginPath(), "");
  EXPECT_TRUE(LocalIsEmpty());
  EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(RuntimeFolders, WithoutAPluginsFolderAnInstalledVlcIsNotFoundAndNotCopied) {
  Install();
  fs::remove(installed_ / "plugins");
  EXPECT_FALSE(SetUpEnvironment());
  EXPECT_EQ(PluginPath(), "");
  EXPECT_TRUE(LocalIsEmpty());
  EXPECT_THAT(log_.Lines(), ElementsAre("DEBUG Found VLC installation at: " + installed_.string()));
}

TEST_F(RuntimeFolders, ALibvlcBesideTheExecutableStaysWhileAMissingCoreIsCopied) {
  Install();
  Write(local_ / "libvlc.dll", "old vlc");
  EXPECT_TRUE(SetUpEnvironment());
  EXPECT_EQ(Read(local_ / "libvlc.dll"), "old vlc");
  EXPECT_EQ(Read(local_ / "libvlccore.dll"), "installed core");
}

TEST_F(RuntimeFolders, ACoreBesideTheExecutableStaysWhileAMissingLibraryIsCopied) {
  Install();
  Write(local_ / "libvlccore.dll", "old core");
  EXPECT_TRUE(SetUpEnvironment());
  EXPECT_EQ(Read(local_ / "libvlc.dll"), "installed vlc");
  EXPECT_EQ(Read(local_ / "libvlccore.dll"), "old core");
}

TEST_F(RuntimeFolders, AnInstalledVlcWithoutItsLibrariesIsTakenAndNothingIsCopied) {
  fs::create_directories(installed_ / "plugins");
  EXPECT_TRUE(SetUpEnvironment());
  EXPECT_FALSE(fs::exists(local_ / "libvlc.dll"));
  EXPECT_FALSE(fs::exists(local_ / "libvlccore.dll"));
  EXPECT_EQ(log_.CountContaining("Copying"), 0);
}

TEST_F(RuntimeFolders, APluginsFolderThatCannotBeMadeStopsNothing) {
  Install();
  fs::remove(local_);
  EXPECT_TRUE(SetUpEnvironment());
  EXPECT_EQ(log_.CountContaining("Copying"), 2);
  EXPECT_FALSE(fs::exists(local_));
}

// Redirects the program files folders of Windows for this process. The system reads them from the registry.
class ProgramFilesFolder : public RuntimeFolders {
 protected:
  ProgramFilesFolder() {
    RegCreateKeyExW(HKEY_CURRENT_USER, kScratch, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &machine_, nullptr);
    Set(L"ProgramFilesDir", programs_);
    Set(L"ProgramFilesDir (x86)", programs32_);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine_);
  }
  ~ProgramFilesFolder() override {
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    RegCloseKey(machine_);
    RegDeleteTreeW(HKEY_CURRENT_USER, kScratch);
    fs::remove(fs::path(GetExeDirectory()) / "plugins");
  }
  void Set(const wchar_t* name, const fs::path& folder) {
    const std::wstring text = folder.wstring();
    RegSetKeyValueW(machine_, L"Software\\Microsoft\\Windows\\CurrentVersion", name, REG_SZ, text.c_str(),
                    static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }

  static constexpr wchar_t kScratch[] = L"Software\\VantroRuntimeTest";
  const fs::path programs32_ = root_ / "Program Files (x86)";
  HKEY machine_ = nullptr;
};

TEST_F(ProgramFilesFolder, IsWhereSetupVlcEnvironmentLooks) {
  fs::create_directories(installed_ / "plugins");
  EXPECT_TRUE(SetupVlcEnvironment());
  EXPECT_EQ(PluginPath(), (installed_ / "plugins").string());
  EXPECT_TRUE(fs::is_directory(fs::path(GetExeDirectory()) / "plugins"));
}

std::string askedFolder;
HRESULT WINAPI RefuseTheFolder(HWND window, int folder, HANDLE token, DWORD flags, char*) {
  askedFolder = std::to_string(folder) + " " + std::to_string(flags) + (window || token ? " of someone" : "");
  return E_FAIL;
}

TEST_F(ProgramFilesFolder, IsAskedForAsTheCurrentOneAndMayBeUnknown) {
  fs::create_directories(installed_ / "plugins");
  const ImportHook hook("SHELL32.dll", "SHGetFolderPathA", &RefuseTheFolder);
  EXPECT_FALSE(SetupVlcEnvironment());
  EXPECT_EQ(askedFolder, "38 0");
  EXPECT_EQ(PluginPath(), "");
}

TEST_F(ProgramFilesFolder, WithoutAVlcIsLoggedAsAWarning) {
  EXPECT_FALSE(SetupVlcEnvironment());
  EXPECT_THAT(log_.Lines(), ElementsAre("WARNING Could not find VLC installation or set up environment"));
}

TEST_F(ProgramFilesFolder, Of32BitsIsNamedByGetVlcPathButNotSetUp) {
  const fs::path installed32 = programs32_ / "VideoLAN" / "VLC";
  fs::create_directories(installed32 / "plugins");
  EXPECT_FALSE(SetupVlcEnvironment());
  EXPECT_EQ(PluginPath(), "");
  EXPECT_EQ(Find({installed_.string(), installed32.string()}), installed32.string());
}

}  // namespace
}  // namespace vantro::test
