// A separate program, because the log file is opened once per process.
#include "common/log.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "tests/support/log_capture.h"

namespace vantro {
namespace {

// Its name makes it run first, so the log is still off.
TEST(ALogThatNobodySwitchedOn, WritesNothingAndCreatesNoFile) {
  DeleteFileA("vantro_debug.log");
  EXPECT_FALSE(debugLoggingEnabled);
  LOG_INFO("dropped");
  EXPECT_EQ(GetFileAttributesA("vantro_debug.log"), INVALID_FILE_ATTRIBUTES);
}

TEST(ALogThatNobodySwitchedOn, DoesNotEvaluateItsArguments) {
  int evaluated = 0;
  LOG_INFO("%d", ++evaluated);
  EXPECT_EQ(evaluated, 0);
}

TEST(Log, LineHasLevelWordLocalTimeAndText) {
  test::LogCapture capture;
  LOG_WARNING("value %d", 7);
  std::ifstream file("vantro_debug.log");
  std::string line, last;
  while (std::getline(file, line)) last = line;
  if (!last.empty() && last.back() == '\r') last.pop_back();
  EXPECT_TRUE(std::regex_match(
      last, std::regex(R"(\[WARNING\] \d{4}-\d{2}-\d{2} \d{2}:\d{2}:\d{2}\.\d{3} value 7)"))) << last;
}

TEST(Log, EachLevelHasItsWord) {
  test::LogCapture capture;
  LOG_INFO("a");
  LOG_WARNING("b");
  LOG_ERROR("c");
  LOG_DEBUG("d");
  EXPECT_EQ(capture.Lines(), (std::vector<std::string>{"INFO a", "WARNING b", "ERROR c", "DEBUG d"}));
}

TEST(Log, LevelAboveThreeIsDropped) {
  test::LogCapture capture;
  WriteLog(4, "dropped");
  EXPECT_TRUE(capture.Lines().empty());
}

TEST(Log, NegativeLevelPrintsUnknown) {
  test::LogCapture capture;
  WriteLog(-1, "odd");
  EXPECT_TRUE(capture.Has("UNKNOWN odd"));
}

TEST(Log, FormatsTextOfAnyLength) {
  test::LogCapture capture;
  const std::string longText(100000, 'x');
  LOG_INFO("%s", longText.c_str());
  EXPECT_TRUE(capture.Has("INFO " + longText));
}

}  // namespace
}  // namespace vantro
