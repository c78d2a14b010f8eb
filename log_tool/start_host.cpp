#include "log_tool/start_host.h"

#include <windows.h>
#include <winternl.h>

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

#include "log_tool/files.h"
#include "log_tool/host_image.h"

namespace vantro::log_tool {

namespace {

constexpr wchar_t kHostFile[] = L"vantro.exe";
constexpr wchar_t kLogFile[] = L"vantro_debug.log";
constexpr wchar_t kInstanceMutex[] = L"Vantro_SingleInstance_Mutex";
constexpr char kSwitch[] = "debugLoggingEnabled";
constexpr size_t kImageBaseInPeb = 0x10;  // bytes into the process environment block of a 64-bit process

// Owns a process that was started suspended. The destructor ends the process if it has not been resumed.
class SuspendedProcess {
 public:
  SuspendedProcess() = default;
  SuspendedProcess(const SuspendedProcess&) = delete;
  SuspendedProcess& operator=(const SuspendedProcess&) = delete;
  ~SuspendedProcess() {
    if (!information_.hProcess) return;
    if (suspended_) TerminateProcess(information_.hProcess, kNotStarted);
    CloseHandle(information_.hThread);
    CloseHandle(information_.hProcess);
  }

  bool Create(const std::filesystem::path& program) {
    std::wstring command = L"\"" + program.native() + L"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    suspended_ = CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr,
                                nullptr, &startup, &information_);
    return suspended_;
  }

  // Sets one byte of the loaded program.
  bool SetByte(uint32_t offset) const {
    PROCESS_BASIC_INFORMATION basic{};
    if (NtQueryInformationProcess(information_.hProcess, ProcessBasicInformation, &basic, sizeof basic, nullptr) < 0) {
      return false;
    }
    const std::byte* base = nullptr;
    const std::byte* const field = reinterpret_cast<const std::byte*>(basic.PebBaseAddress) + kImageBaseInPeb;
    SIZE_T moved = 0;
    if (!ReadProcessMemory(information_.hProcess, field, &base, sizeof base, &moved) || moved != sizeof base)
      return false;
    const char on = 1;
    void* const target = const_cast<std::byte*>(base + offset);
    return WriteProcessMemory(information_.hProcess, target, &on, sizeof on, &moved) && moved == sizeof on;
  }

  bool Resume() {
    if (ResumeThread(information_.hThread) == static_cast<DWORD>(-1)) return false;
    suspended_ = false;
    return true;
  }

  DWORD WaitForEnd() const {
    DWORD code = 0;
    WaitForSingleObject(information_.hProcess, INFINITE);
    GetExitCodeProcess(information_.hProcess, &code);
    return code;
  }

 private:
  PROCESS_INFORMATION information_{};
  bool suspended_ = false;
};

bool HostIsRunning() {
  const HANDLE mutex = OpenMutexW(SYNCHRONIZE, FALSE, kInstanceMutex);
  if (mutex) CloseHandle(mutex);
  return mutex || GetLastError() == ERROR_ACCESS_DENIED;
}

// Empties the log of an earlier run, so that the file contains only the lines of this run.
bool ClearLog(const std::filesystem::path& log) { return WriteWholeFile(log, {}); }

ExitCode Fail(ExitCode code, const std::string& reason) {
  std::fprintf(stderr, "vantro-log: %s\n", reason.c_str());
  return code;
}

}  // namespace

ExitCode StartHostWithLog(const std::filesystem::path& folder) {
  const std::filesystem::path program = folder / kHostFile;
  const std::filesystem::path log = std::filesystem::current_path() / kLogFile;
  std::string image;
  switch (ReadWholeFile(program, &image)) {
    case ReadResult::kRead:
      break;
    case ReadResult::kNotReadable:
      return Fail(kNoHost, "there is no vantro.exe in " + Utf8(folder) + ". Put vantro-log.exe beside it.");
    case ReadResult::kTooLarge:
      return Fail(kWrongHost, Utf8(program) + " is too large to be Vantro.");
  }
  const std::optional<uint32_t> offset = ExportOffset(std::as_bytes(std::span(image)), kSwitch);
  if (!offset) return Fail(kWrongHost, Utf8(program) + " does not export " + kSwitch + ", so it is not Vantro.");
  if (HostIsRunning())
    return Fail(kAlreadyRunning, "Vantro is running already. Close it, then start vantro-log again.");
  if (!ClearLog(log)) return Fail(kNotWritable, Utf8(log) + " can't be written. Start vantro-log in another folder.");

  SuspendedProcess host;
  if (!host.Create(program)) {
    return Fail(kNotStarted, Utf8(program) + " could not be started: error " + std::to_string(GetLastError()) + ".");
  }
  if (!host.SetByte(*offset) || !host.Resume()) return Fail(kNotStarted, "the log of Vantro could not be switched on.");
  std::printf("Vantro is running. Its log is written to %s\n", Utf8(log).c_str());
  std::fflush(stdout);
  std::printf("Vantro has ended with the exit code 0x%lX. Its log is in %s\n", host.WaitForEnd(), Utf8(log).c_str());
  std::printf("Run \"vantro-log --redact vantro_debug.log\" before you send it to someone.\n");
  return kDone;
}

}  // namespace vantro::log_tool
