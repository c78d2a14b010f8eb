#include "tests/support/local_app_data.h"

namespace vantro::test {

namespace {

constexpr wchar_t kShellFolders[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";
constexpr wchar_t kScratchKey[] = L"Software\\VantroLocalAppDataTest";

}  // namespace

LocalAppDataAt::LocalAppDataAt(const std::filesystem::path& folder)
    : name_(kScratchKey + std::to_wstring(GetCurrentProcessId())) {
  RegCreateKeyExW(HKEY_CURRENT_USER, name_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &user_, nullptr);
  const std::wstring text = folder.wstring();
  RegSetKeyValueW(user_, kShellFolders, L"Local AppData", REG_SZ, text.c_str(),
                  static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  RegOverridePredefKey(HKEY_CURRENT_USER, user_);
}

LocalAppDataAt::~LocalAppDataAt() {
  RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
  RegCloseKey(user_);
  RegDeleteTreeW(HKEY_CURRENT_USER, name_.c_str());
}

}  // namespace vantro::test
