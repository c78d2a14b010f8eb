#include "common/standard_error.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

namespace vantro {
namespace {

constexpr char kFile[] = "standard_error_test.txt";

std::string FileText() {
  std::ifstream file(kFile);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Redirects the stream to a file for the rest of the program. The stream is buffered, so lines that are not flushed do
// not reach the file.
class ReportedLines : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    ASSERT_NE(std::freopen(kFile, "w", stderr), nullptr);
    ASSERT_EQ(std::setvbuf(stderr, nullptr, _IOFBF, 4096), 0);
  }
};

TEST_F(ReportedLines, LineIsInTheFileWhenTheCallReturns) {
  ReportLine("one");
  EXPECT_EQ(FileText(), "one\n");
}

TEST_F(ReportedLines, SecondTextFollowsTheFirstInTheSameLine) {
  const std::string before = FileText();
  ReportLine("channel ", "a/b");
  EXPECT_EQ(FileText(), before + "channel a/b\n");
}

TEST_F(ReportedLines, EmptyTextIsAnEmptyLine) {
  const std::string before = FileText();
  ReportLine("");
  EXPECT_EQ(FileText(), before + "\n");
}

}  // namespace
}  // namespace vantro
