#include "player/alternating_switch.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace vantro {
namespace {

using Turn = AlternatingSwitch::Turn;

TEST(AlternatingSwitch, IsOffAtFirst) {
  const AlternatingSwitch light;
  EXPECT_FALSE(light);
}

TEST(AlternatingSwitch, ATurnToTheCurrentStateIsNone) {
  AlternatingSwitch light;
  EXPECT_EQ(light.TurnTo(false), Turn::kNone);
  EXPECT_EQ(light.TurnTo(true), Turn::kOwn);
  EXPECT_EQ(light.TurnTo(true), Turn::kNone);
  EXPECT_TRUE(light);
}

// Records each turn that is carried out.
struct Recorder {
  void operator()(bool on) const { written += on ? '+' : '-'; }
  std::string& written;
};

TEST(AlternatingSwitch, ATurnAfterAFinishedOneIsCarriedOutByTheCaller) {
  AlternatingSwitch light;
  std::string written;
  light.TurnTo(true);
  light.CarryOutTurns(true, Recorder{written});
  EXPECT_EQ(light.TurnTo(false), Turn::kOwn);
  light.CarryOutTurns(false, Recorder{written});
  EXPECT_FALSE(light);
  EXPECT_EQ(written, "+-");
}

TEST(AlternatingSwitch, TurnsDuringAnotherTurnAreCarriedOutByThatThread) {
  AlternatingSwitch light;
  std::string written;
  EXPECT_EQ(light.TurnTo(true), Turn::kOwn);
  EXPECT_EQ(light.TurnTo(false), Turn::kByAnother);
  EXPECT_EQ(light.TurnTo(true), Turn::kByAnother);
  light.CarryOutTurns(true, Recorder{written});
  EXPECT_EQ(written, "+-+");
  EXPECT_TRUE(light);
}

TEST(AlternatingSwitch, ATurnToOffInProgressIsCarriedOutByItsThreadWithTheNextOne) {
  AlternatingSwitch light;
  std::string written;
  light.TurnTo(true);
  light.CarryOutTurns(true, Recorder{written});
  EXPECT_EQ(light.TurnTo(false), Turn::kOwn);
  EXPECT_EQ(light.TurnTo(true), Turn::kByAnother);
  light.CarryOutTurns(false, Recorder{written});
  EXPECT_EQ(written, "+-+");
}

TEST(AlternatingSwitch, ASingleTurnBackIsCarriedOutToo) {
  AlternatingSwitch light;
  std::string written;
  light.TurnTo(true);
  light.TurnTo(false);
  light.CarryOutTurns(true, Recorder{written});
  EXPECT_EQ(written, "+-");
}

TEST(AlternatingSwitch, AfterSixteenTurnsInOneGoTheOpenPairsAreDropped) {
  AlternatingSwitch light;
  std::string written;
  for (int pair = 0; pair < 19; ++pair) {
    light.TurnTo(true);
    light.TurnTo(false);
  }
  light.CarryOutTurns(true, Recorder{written});
  EXPECT_EQ(written, "+-+-+-+-+-+-+-+-");
  EXPECT_FALSE(light);
  EXPECT_EQ(light.TurnTo(true), Turn::kOwn);
}

TEST(AlternatingSwitch, EndlessTurnsDoNotKeepTheThreadThatCarriesThemOut) {
  AlternatingSwitch light;
  int count = 0;
  light.TurnTo(true);
  light.CarryOutTurns(true, [&](bool) {
    ++count;
    ASSERT_LT(count, 1000);
    light.TurnTo(false);
    light.TurnTo(true);
  });
  EXPECT_GE(count, AlternatingSwitch::kTurnsInOneGo);
  EXPECT_TRUE(light);
  EXPECT_EQ(light.TurnTo(false), Turn::kOwn);
}

TEST(AlternatingSwitch, TurnsOfManyThreadsAreCarriedOutOneByOne) {
  AlternatingSwitch light;
  std::string written;  // written only by the thread that carries out the turns
  const auto turn = [&](bool on) {
    if (light.TurnTo(on) == Turn::kOwn) light.CarryOutTurns(on, Recorder{written});
  };
  std::vector<std::thread> threads;
  for (int index = 0; index < 4; ++index) {
    threads.emplace_back([&, index] {
      for (int i = 0; i < 20000; ++i) turn((i + index) % 2 == 0);
    });
  }
  for (std::thread& thread : threads) thread.join();
  ASSERT_FALSE(written.empty());
  EXPECT_EQ(written.find("++"), std::string::npos);
  EXPECT_EQ(written.find("--"), std::string::npos);
  EXPECT_EQ(written.back() == '+', light.IsOn());
}

}  // namespace
}  // namespace vantro
