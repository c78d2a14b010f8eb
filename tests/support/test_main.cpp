// The main of every unit test program. Runs the tests under a watchdog that ends a hung program and reports where it
// hung.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

constexpr int kTestLimitSeconds = 60;
// Sets another limit in seconds, for runs with checks that slow the program down.
constexpr char kLimitVariable[] = "VANTRO_TEST_LIMIT";
constexpr int kHungExitCode = 97;

std::atomic<long long> testBegan{0};

long long Now() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

class Clock : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo& info) override {
    std::snprintf(name, sizeof name, "%s.%s", info.test_suite_name(), info.name());
    testBegan = Now();
  }
  void OnTestEnd(const testing::TestInfo&) override { testBegan = 0; }

 public:
  static char name[512];
};
char Clock::name[512] = "";

int TestLimitSeconds() {
  const char* const limit = std::getenv(kLimitVariable);
  return limit ? std::atoi(limit) : kTestLimitSeconds;
}

void Watch() {
  const int limit = TestLimitSeconds();
  for (;;) {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    const long long began = testBegan;
    if (began == 0 || Now() - began < 1000LL * limit) continue;
    std::fprintf(stderr, "HUNG: %s did not end within %d s\n", Clock::name, limit);
    std::fflush(stderr);
    std::_Exit(kHungExitCode);
  }
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new Clock);
  std::thread(Watch).detach();
  const int result = RUN_ALL_TESTS();
  std::fflush(nullptr);
  std::_Exit(result);
}
