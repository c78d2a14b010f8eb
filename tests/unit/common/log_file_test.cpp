// The file of the log. A separate program, because the file is opened once per process.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "common/log.h"
#include "tests/support/import_hook.h"

namespace vantro {
namespace {

constexpr char kLogFile[] = "vantro_debug.log";

std::string LogText() {
  std::ifstream file(kLogFile);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string LocalTime() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%03d", now.wYear, now.wMonth, now.wDay, now.wHour,
                now.wMinute, now.wSecond, now.wMilliseconds);
  return text;
}

// The first test of the program: no line has been written yet.
TEST(ALogFile, StartsEmptyInEachProcess) {
  std::ofstream(kLogFile) << "of an earlier run\n";
  WriteLog(kLogInfo, "first");
  const std::string text = LogText();
  EXPECT_EQ(text.find("of an earlier run"), std::string::npos);
  EXPECT_TRUE(text.starts_with("[INFO] ")) << text;
}

TEST(LogFile, HoldsEachLineAsSoonAsItIsWritten) {
  WriteLog(kLogInfo, "one");
  EXPECT_TRUE(LogText().ends_with(" one\n"));
  WriteLog(kLogDebug, "two");
  EXPECT_TRUE(LogText().ends_with(" two\n"));
}

int flushes = 0;

// Wine's C library writes such a line without being asked, so the call is counted.
TEST(LogFile, IsFlushedOnceAfterEachLine) {
  const test::ImportHook hook(
      "msvcrt.dll", "fflush", +[](FILE* file) {
        EXPECT_NE(file, nullptr);
        return ++flushes, 0;
      });
  WriteLog(kLogInfo, "one");
  EXPECT_EQ(flushes, 1);
  WriteLog(kLogDebug + 1, "dropped");
  WriteLog(kLogInfo, "two");
  EXPECT_EQ(flushes, 2);
}

TEST(LogFile, LineHasTheLocalTime) {
  const std::string before = LocalTime();
  WriteLog(kLogError, "timed");
  const std::string after = LocalTime();
  const std::string text = LogText();
  const size_t at = text.rfind("[ERROR] ") + 8;
  const std::string time = text.substr(at, before.size());
  EXPECT_LE(before, time);
  EXPECT_LE(time, after);
  EXPECT_EQ(text.substr(at + before.size()), " timed\n");
}

TEST(LogFile, TextIsWrittenUnchanged) {
  WriteLog(kLogInfo, "100 %s %d");
  EXPECT_TRUE(LogText().ends_with(" 100 %s %d\n"));
}

TEST(LogFile, FormattedTextMayBeEmpty) {
  WriteLogFormatted(kLogInfo, "%s", "");
  EXPECT_TRUE(LogText().ends_with(" \n"));
}

TEST(LogFile, StatementsWriteOnlyWhileTheSwitchIsOn) {
  const std::string before = LogText();
  LOG_INFO("off");
  EXPECT_EQ(LogText(), before);
  debugLoggingEnabled = true;
  LOG_INFO("on %d", 1);
  debugLoggingEnabled = false;
  EXPECT_TRUE(LogText().ends_with(" on 1\n"));
}

TEST(LogFile, IsLogOnReturnsTheSwitch) {
  EXPECT_FALSE(IsLogOn());
  debugLoggingEnabled = true;
  EXPECT_TRUE(IsLogOn());
  debugLoggingEnabled = false;
}

}  // namespace
}  // namespace vantro
