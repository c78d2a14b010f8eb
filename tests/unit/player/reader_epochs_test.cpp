#include "player/reader_epochs.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "player/event_callback.h"

namespace vantro {
namespace {

// A thread that waits for the readers.
class Waiter {
 public:
  explicit Waiter(ReaderEpochs& epochs)
      : thread_([this, &epochs] {
          epochs.WaitForReaders();
          ended_ = true;
        }) {}
  ~Waiter() { thread_.join(); }
  Waiter(const Waiter&) = delete;
  Waiter& operator=(const Waiter&) = delete;

  // Returns whether the wait ends within the limit.
  bool EndsWithin(std::chrono::milliseconds limit) const {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!ended_ && std::chrono::steady_clock::now() < end) std::this_thread::yield();
    return ended_;
  }

 private:
  std::atomic<bool> ended_{false};
  std::thread thread_;
};

constexpr std::chrono::milliseconds kLongEnoughToEnd{5000};
constexpr std::chrono::milliseconds kLongEnoughToSeeItWait{30};

TEST(ReaderEpochs, AWaitEndsAtOnceWhenNobodyReads) {
  ReaderEpochs epochs([] { FAIL() << "idled"; });
  { const ReaderEpochs::Reader gone(epochs); }
  epochs.WaitForReaders();
  epochs.WaitForReaders();
}

TEST(ReaderEpochs, AWaitLastsWhileAReaderFromBeforeIsInside) {
  ReaderEpochs epochs;
  std::optional<ReaderEpochs::Reader> reader(std::in_place, epochs);
  const Waiter waiter(epochs);
  EXPECT_FALSE(waiter.EndsWithin(kLongEnoughToSeeItWait));
  reader.reset();
  EXPECT_TRUE(waiter.EndsWithin(kLongEnoughToEnd));
}

TEST(ReaderEpochs, ReadersThatFollowOneAnotherDoNotHoldUpAWait) {
  ReaderEpochs epochs;
  auto reader = std::make_unique<ReaderEpochs::Reader>(epochs);
  const Waiter waiter(epochs);
  // At least one reader is inside at any time.
  const auto end = std::chrono::steady_clock::now() + kLongEnoughToEnd;
  while (!waiter.EndsWithin(std::chrono::milliseconds(1)) && std::chrono::steady_clock::now() < end) {
    auto next = std::make_unique<ReaderEpochs::Reader>(epochs);
    reader = std::move(next);
  }
  EXPECT_TRUE(waiter.EndsWithin(std::chrono::milliseconds(0)));
  reader.reset();
}

TEST(ReaderEpochs, ANestedReaderThatLeavesKeepsTheOuterOneInside) {
  ReaderEpochs epochs;
  std::optional<ReaderEpochs::Reader> outer(std::in_place, epochs);
  { const ReaderEpochs::Reader inner(epochs); }
  const Waiter waiter(epochs);
  EXPECT_FALSE(waiter.EndsWithin(kLongEnoughToSeeItWait));
  outer.reset();
  EXPECT_TRUE(waiter.EndsWithin(kLongEnoughToEnd));
}

std::atomic<int> idled{0};

TEST(ReaderEpochs, ALongWaitForAReaderIdlesBetweenItsChecks) {
  idled = 0;
  ReaderEpochs epochs([] { ++idled; });
  std::optional<ReaderEpochs::Reader> reader(std::in_place, epochs);
  const Waiter waiter(epochs);
  while (idled < 3) std::this_thread::yield();
  reader.reset();
  EXPECT_TRUE(waiter.EndsWithin(kLongEnoughToEnd));
}

std::optional<ReaderEpochs::Reader> early;
std::optional<ReaderEpochs::Reader> late;
ReaderEpochs* waitedFor = nullptr;
int waits = 0;

// While the wait idles, another reader enters and the first one leaves. A second time, the other one leaves too.
void ChangeReaders() {
  if (++waits == 1) {
    late.emplace(*waitedFor);
    early.reset();
  } else {
    late.reset();
  }
}

TEST(ReaderEpochs, AWaitDoesNotLastForAReaderThatEntersLater) {
  ReaderEpochs epochs(ChangeReaders);
  waitedFor = &epochs;
  waits = 0;
  early.emplace(epochs);
  epochs.WaitForReaders();
  EXPECT_EQ(waits, 1);
  late.reset();
}

TEST(Published, ReturnsTheObjectThatWasReplaced) {
  ReaderEpochs epochs;
  Published<int> published(epochs);
  EXPECT_EQ(published.Load(), nullptr);
  EXPECT_EQ(published.Replace(std::make_unique<int>(1)), nullptr);
  EXPECT_EQ(*published.Load(), 1);
  EXPECT_EQ(*published.Replace(std::make_unique<int>(2)), 1);
}

TEST(Published, DestroysItsObjectAtItsEnd) {
  const auto object = std::make_shared<int>(1);
  {
    ReaderEpochs epochs;
    Published<std::shared_ptr<int>> published(epochs);
    published.Replace(std::make_unique<std::shared_ptr<int>>(object));
    EXPECT_EQ(object.use_count(), 2);
  }
  EXPECT_EQ(object.use_count(), 1);
}

// An object that readers check while they hold it. A freed object no longer has its mark.
struct Marked {
  static constexpr uint32_t kAlive = 0xA11CE;
  ~Marked() { mark = 0; }
  std::atomic<uint32_t> mark{kAlive};
};

TEST(Published, ReadersNeverSeeADestroyedObject) {
  ReaderEpochs epochs;
  Published<Marked> published(epochs);
  std::atomic<bool> stop{false};
  std::atomic<int> dead{0};
  std::atomic<int64_t> reads{0};
  std::vector<std::thread> readers;
  for (int i = 0; i < 4; ++i) {
    readers.emplace_back([&] {
      while (!stop) {
        const ReaderEpochs::Reader reader(epochs);
        const Marked* const object = published.Load();
        if (object && object->mark != Marked::kAlive) ++dead;
        ++reads;
      }
    });
  }
  for (int i = 0; i < 20000 || reads < 10000; ++i) published.Replace(std::make_unique<Marked>());
  stop = true;
  for (std::thread& reader : readers) reader.join();
  EXPECT_EQ(dead, 0);
}

TEST(EventCallbackSlot, IsEmptyAtFirstAndAfterItIsEmptied) {
  ReaderEpochs epochs;
  EventCallbackSlot slot(epochs);
  EXPECT_FALSE(slot);
  slot("onPlaying", "");
  slot = [](const char*, const char*) {};
  EXPECT_TRUE(slot);
  slot = nullptr;
  EXPECT_FALSE(slot);
}

TEST(EventCallbackSlot, CallsWhatIsInstalledAndSwapsTheOldOneOut) {
  ReaderEpochs epochs;
  EventCallbackSlot slot(epochs);
  std::string called;
  slot = [&called](const char* name, const char* argument) { called += std::string(name) + ":" + argument + " "; };
  slot("onError", "text");
  EventCallback other = [&called](const char*, const char*) { called += "other "; };
  slot.swap(other);
  slot("onError", "text");
  other("again", "");
  EXPECT_EQ(called, "onError:text other again: ");
}

TEST(EventCallbackSlot, AReplacedCallableIsOutOfUseWhenTheReplacementReturns) {
  ReaderEpochs epochs;
  EventCallbackSlot slot(epochs);
  std::atomic<bool> entered{false};
  std::atomic<bool> left{false};
  std::atomic<bool> mayLeave{false};
  slot = [&](const char*, const char*) {
    entered = true;
    while (!mayLeave) std::this_thread::yield();
    left = true;
  };
  std::thread caller([&] { slot("onPlaying", ""); });
  while (!entered) std::this_thread::yield();
  std::thread opener([&] { mayLeave = true; });
  slot = nullptr;
  EXPECT_TRUE(left);
  caller.join();
  opener.join();
}

}  // namespace
}  // namespace vantro
