// The system calls of the crash filter. The integration tests check a real crash of a whole host.
#include "shell/crash_filter.h"

#include <gtest/gtest.h>
#include <windows.h>
// After windows.h.
#include <dbghelp.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/import_hook.h"
#include "tests/support/line_order.h"
#include "tests/support/log_capture.h"

namespace vantro {
namespace {

using test::ImportHook;
using test::InOrder;
using test::Note;

char fileObject;
const HANDLE kFile = &fileObject;
bool refuseFile = false;
EXCEPTION_POINTERS crash{};

HANDLE WINAPI OnCreateFile(const wchar_t* name, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                           DWORD creation, DWORD attributes, HANDLE templateFile) {
  EXPECT_EQ(security, nullptr);
  EXPECT_EQ(templateFile, nullptr);
  const std::wstring wide = name;
  char text[160];
  std::snprintf(text, sizeof text, "CreateFileW %s 0x%lX %lu %lu %lu", std::string(wide.begin(), wide.end()).c_str(),
                access, share, creation, attributes);
  Note(text);
  return refuseFile ? INVALID_HANDLE_VALUE : kFile;
}
BOOL WINAPI OnWriteDump(HANDLE process, DWORD processId, HANDLE file, MINIDUMP_TYPE type,
                        MINIDUMP_EXCEPTION_INFORMATION* exception, MINIDUMP_USER_STREAM_INFORMATION* streams,
                        MINIDUMP_CALLBACK_INFORMATION* callback) {
  EXPECT_EQ(process, GetCurrentProcess());
  EXPECT_EQ(processId, GetCurrentProcessId());
  EXPECT_EQ(file, kFile);
  EXPECT_EQ(exception->ThreadId, GetCurrentThreadId());
  EXPECT_EQ(exception->ExceptionPointers, &crash);
  EXPECT_EQ(streams, nullptr);
  EXPECT_EQ(callback, nullptr);
  Note("MiniDumpWriteDump type " + std::to_string(type) + " client pointers " +
       std::to_string(exception->ClientPointers));
  return FALSE;  // the result is ignored
}
BOOL WINAPI OnCloseHandle(HANDLE handle) {
  if (handle == kFile) Note("CloseHandle of the file");
  return TRUE;
}
int WINAPI OnMessageBox(HWND owner, const wchar_t* text, const wchar_t* caption, UINT style) {
  EXPECT_EQ(owner, nullptr);
  EXPECT_STREQ(text,
               L"Vantro has encountered a fatal error and needs to close. A crash report (Vantro_Crash.dmp) has been "
               L"generated.");
  const std::wstring wide = caption;
  Note("MessageBoxW " + std::string(wide.begin(), wide.end()) + " (" + std::to_string(style) + ")");
  return IDOK;
}

class CrashFilter : public testing::Test {
 protected:
  test::LogCapture log_;
  ImportHook createFile_{"kernel32.dll", "CreateFileW", OnCreateFile};
  ImportHook writeDump_{"dbghelp.dll", "MiniDumpWriteDump", OnWriteDump};
  ImportHook closeHandle_{"kernel32.dll", "CloseHandle", OnCloseHandle};
  ImportHook messageBox_{"user32.dll", "MessageBoxW", OnMessageBox};
};

TEST_F(CrashFilter, WritesASmallDumpOfTheFaultThenShowsTheBox) {
  refuseFile = false;
  EXPECT_EQ(UnhandledExceptionHandler(&crash), EXCEPTION_EXECUTE_HANDLER);
  EXPECT_TRUE(InOrder(
      log_, {"ERROR CRASH DETECTED! Generating minidump...", "(call) CreateFileW Vantro_Crash.dmp 0x40000000 0 2 128",
             "(call) MiniDumpWriteDump type 0 client pointers 1", "(call) CloseHandle of the file",
             "ERROR Minidump generated: Vantro_Crash.dmp", "(call) MessageBoxW Fatal Error (16)"}));
}

TEST_F(CrashFilter, WithoutAFileWritesNoDumpAndShowsTheSameBox) {
  refuseFile = true;
  EXPECT_EQ(UnhandledExceptionHandler(&crash), EXCEPTION_EXECUTE_HANDLER);
  EXPECT_TRUE(InOrder(log_, {"ERROR Failed to create minidump file", "(call) MessageBoxW Fatal Error (16)"}));
  EXPECT_EQ(log_.CountContaining("MiniDumpWriteDump"), 0);
}

struct Raised {
  DWORD code, flags, count;
  const ULONG_PTR* arguments;

  bool operator==(const Raised&) const = default;
};
constexpr DWORD kThrow = 0x20474343;  // with which this program's runtime library raises a throw
std::vector<Raised> raised;
decltype(&RaiseException) realRaise = nullptr;
void WINAPI OnRaise(DWORD code, DWORD flags, DWORD count, const ULONG_PTR* arguments) {
  if (code == kThrow) return realRaise(code, flags, count, arguments);
  raised.push_back({code, flags, count, arguments});
}
struct Aborted {};
void OnAbort() { throw Aborted{}; }

TEST(UncaughtException, IsRaisedWithTheCodeOfCppExceptionsAndNeverContinued) {
  const ImportHook raise("kernel32.dll", "RaiseException", OnRaise);
  const ImportHook abort("msvcrt.dll", "abort", OnAbort);
  realRaise = raise.Original<decltype(realRaise)>();
  raised.clear();
  EXPECT_THROW(RaiseUncaughtException(), Aborted);
  EXPECT_EQ(raised, (std::vector<Raised>{{0xE06D7363, EXCEPTION_NONCONTINUABLE, 0, nullptr}}));
}

}  // namespace
}  // namespace vantro
