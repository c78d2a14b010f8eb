// The file of the session marker, and the report of a crash. No failure here is reported: the marker must never disturb
// a session.
#include <windows.h>

#include <chrono>
#include <cstdio>
#include <iterator>
#include <memory>
#include <string>

#include "channel/method_channel_handler.h"

namespace vantro {

namespace {

using File = std::unique_ptr<FILE, int (*)(FILE*)>;

// Returns the temporary folder, or an empty text if there is none. GetTempPath2W gives a process of the system account
// a folder that other accounts cannot write to. Older systems lack this function.
std::wstring TemporaryFolder() {
  using TemporaryPath = DWORD(WINAPI*)(DWORD, LPWSTR);
  const auto newer =
      reinterpret_cast<TemporaryPath>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "GetTempPath2W"));
  wchar_t buffer[MAX_PATH + 1] = L"";
  const DWORD length = (newer ? newer : &GetTempPathW)(static_cast<DWORD>(std::size(buffer)), buffer);
  if (length == 0 || length >= std::size(buffer)) return {};
  const DWORD attributes = GetFileAttributesW(buffer);
  // Both functions return the folder of the environment, even if it does not exist.
  if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_DIRECTORY)) return {};
  return std::wstring(buffer, length);
}

// Converts a path to the code page that fopen uses. Returns an empty text if the code page lacks a character of the
// path, because a similar character would name another file.
std::string NarrowForFileFunctions(const std::wstring& wide) {
  const UINT codePage = AreFileApisANSI() ? GetACP() : GetOEMCP();
  const bool everythingFits = codePage == CP_UTF8;
  const DWORD flags = everythingFits ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
  BOOL replaced = FALSE;
  BOOL* const replacedOut = everythingFits ? nullptr : &replaced;  // must be null with UTF-8
  const int wideLength = static_cast<int>(wide.size());
  const int length = WideCharToMultiByte(codePage, flags, wide.data(), wideLength, nullptr, 0, nullptr, replacedOut);
  if (replaced) return {};  // after a failure the length is 0
  std::string narrow(static_cast<size_t>(length), '\0');
  WideCharToMultiByte(codePage, flags, wide.data(), wideLength, narrow.data(), length, nullptr, nullptr);
  return narrow;
}

}  // namespace

int64_t CurrentUnixTimeMs() {
  using std::chrono::duration_cast;
  return duration_cast<std::chrono::milliseconds>(std::chrono::system_clock::now().time_since_epoch()).count();
}

std::string MethodChannelHandler::ResolveNativeMarkerPath() {
  std::wstring path = TemporaryFolder();
  if (path.empty()) return kNativeMarkerFileName;
  if (path.back() != L'\\' && path.back() != L'/') path += L'\\';
  path.append(std::begin(kNativeMarkerFileName), std::end(kNativeMarkerFileName) - 1);
  const std::string narrow = NarrowForFileFunctions(path);
  return narrow.empty() ? kNativeMarkerFileName : narrow;
}

NativeMarkerState MethodChannelHandler::ReadNativeMarker() const {
  const File file(std::fopen(markerPath_.c_str(), "r"), &std::fclose);
  if (!file) return {};
  std::string text;
  char block[1024];
  for (size_t read; (read = std::fread(block, 1, sizeof block, file.get())) > 0;) text.append(block, read);
  return ParseNativeMarker(text);
}

// The file is opened, written and closed at each call, without buffering across calls: if a method crashes the process,
// its name must already be in the file.
void MethodChannelHandler::WriteNativeMarker(bool running, std::string_view lastAction, int64_t lastActionTs) const {
  const File file(std::fopen(markerPath_.c_str(), "w"), &std::fclose);
  if (!file) return;
  const std::string text = FormatNativeMarker(running, lastAction, lastActionTs);
  std::fwrite(text.data(), 1, text.size(), file.get());
}

void MethodChannelHandler::HandleStartupMarker() {
  if (markerPath_.empty()) return;
  const NativeMarkerState state = ReadNativeMarker();
  if (state.running) {
    const std::string last = state.lastAction.empty() ? "unknown" : state.lastAction;
    ShowToast("Recovered from crash (last: " + last + ")", false);
    if (methodChannel_) {
      const LocalMap event({
          {EncodableValue("type"), EncodableValue("nativeCrashRecovered")},
          {EncodableValue("platform"), EncodableValue("windows")},
          {EncodableValue("lastAction"), EncodableValue(last)},
      });
      methodChannel_->InvokeMethod("appEvent", event.value());
    }
  }
  WriteNativeMarker(true, "startup", CurrentUnixTimeMs());
}

}  // namespace vantro
