// vantro-log: runs the host with its log on, or removes private data from a log.
// clang-format off
#include <windows.h>
#include <shellapi.h>  // needs the types of windows.h
// clang-format on

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "log_tool/exit_codes.h"
#include "log_tool/files.h"
#include "log_tool/redaction.h"
#include "log_tool/start_host.h"

namespace vantro::log_tool {

namespace {

constexpr char kUsage[] =
    "usage: vantro-log                          starts the vantro.exe beside it with its log on, and waits for its end\n"
    "       vantro-log --redact LOGFILE [OUT]   writes the log without user info and queries of addresses and without\n"
    "                                           search text and key codes; without OUT the copy is\n"
    "                                           LOGFILE with \".redacted.log\"\n";

ExitCode Fail(ExitCode code, const std::filesystem::path& file, const char* reason) {
  std::fprintf(stderr, "vantro-log: %s %s\n", Utf8(file).c_str(), reason);
  return code;
}

ExitCode RedactFile(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::string log;
  switch (ReadWholeFile(from, &log)) {
    case ReadResult::kRead:
      break;
    case ReadResult::kNotReadable:
      return Fail(kNotReadable, from, "is missing or can't be read.");
    case ReadResult::kTooLarge:
      return Fail(kTooLarge, from, "is larger than 256 MB.");
  }
  if (log.empty()) return Fail(kEmpty, from, "is empty.");
  if (!BeginsLogLine(log)) return Fail(kNoLog, from, "is not a log of Vantro.");
  std::error_code error;
  if (std::filesystem::equivalent(from, to, error))
    return Fail(kNotWritable, to, "is the log itself. Name another file.");
  if (!WriteWholeFile(to, RedactedLog(log))) return Fail(kNotWritable, to, "can't be written.");
  std::printf("The redacted log is in %s\n", Utf8(to).c_str());
  std::printf("Read it before you send it: names and passwords in the path of an address stay.\n");
  return kDone;
}

std::filesystem::path OwnFolder() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return std::filesystem::path(path).parent_path();
}

std::vector<std::wstring> Arguments() {
  int count = 0;
  wchar_t** const list = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::wstring> arguments(list + 1, list + count);
  LocalFree(list);
  return arguments;
}

ExitCode Run() {
  const std::vector<std::wstring> arguments = Arguments();
  if (arguments.empty()) return StartHostWithLog(OwnFolder());
  if (arguments[0] == L"--redact" && (arguments.size() == 2 || arguments.size() == 3)) {
    const std::filesystem::path from = arguments[1];
    std::filesystem::path beside = from;
    beside.replace_extension(L".redacted.log");
    return RedactFile(from, arguments.size() == 3 ? std::filesystem::path(arguments[2]) : beside);
  }
  const bool asked = arguments.size() == 1 && arguments[0] == L"--help";
  std::fputs(kUsage, asked ? stdout : stderr);
  return asked ? kDone : kWrongArguments;
}

}  // namespace

}  // namespace vantro::log_tool

int main() {
  SetConsoleOutputCP(CP_UTF8);
  return vantro::log_tool::Run();
}
