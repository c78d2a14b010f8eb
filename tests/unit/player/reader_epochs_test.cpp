#include "player/reader_epochs.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "player/event_callback.h"

namespace vantro {
namespace {

// Says when it is destroyed.
struct Witness {
  explicit Witness(bool& witnessDestroyed) : destroyed(witnessDestroyed) {}
  ~Witness() { destroyed = true; }
  bool& destroyed;
};

TEST(ReaderEpochs, ARetiredObjectGoesAtOnceWhenNobodyReads) {
  ReaderEpochs epochs;
  bool destroyed = false;
  epochs.Retire(std::make_shared<Witness>(destroyed));
  EXPECT_TRUE(destroyed);
  EXPECT_EQ(epochs.RetiredCount(), 0u);
}

TEST(ReaderEpochs, ARetiredObjectStaysWhileAReaderFromBeforeIsInside) {
  ReaderEpochs epochs;
  bool destroyed = false;
  std::optional<ReaderEpochs::Reader> reader(std::in_place, epochs);
  epochs.Retire(std::make_shared<Witness>(destroyed));
  for (int i = 0; i < 10; ++i) epochs.Reclaim();
  EXPECT_FALSE(destroyed);
  reader.reset();
  epochs.Reclaim();
  EXPECT_TRUE(destroyed);
}

TEST(ReaderEpochs, ReadersThatFollowOneAnotherDoNotHoldUpReclamation) {
  ReaderEpochs epochs;
  bool destroyed = false;
  auto reader = std::make_unique<ReaderEpochs::Reader>(epochs);
  epochs.Retire(std::make_shared<Witness>(destroyed));
  for (int i = 0; i < 4; ++i) {
    auto next = std::make_unique<ReaderEpochs::Reader>(epochs);
    reader = std::move(next);
    epochs.Reclaim();
  }
  EXPECT_TRUE(destroyed);
}

TEST(ReaderEpochs, NestedReadersCountAsOne) {
  ReaderEpochs epochs;
  bool destroyed = false;
  {
    const ReaderEpochs::Reader outer(epochs);
    { const ReaderEpochs::Reader inner(epochs); }
    epochs.Retire(std::make_shared<Witness>(destroyed));
    EXPECT_FALSE(destroyed);
  }
  epochs.Reclaim();
  EXPECT_TRUE(destroyed);
}

TEST(ReaderEpochs, TheDestructorReleasesWhatIsRetired) {
  bool destroyed = false;
  {
    ReaderEpochs epochs;
    const ReaderEpochs::Reader* reader = new ReaderEpochs::Reader(epochs);
    epochs.Retire(std::make_shared<Witness>(destroyed));
    delete reader;
    EXPECT_FALSE(destroyed);
  }
  EXPECT_TRUE(destroyed);
}

// Objects that readers check while they hold them: a freed one has lost its mark.
struct Marked {
  static constexpr uint32_t kAlive = 0xA11CE;
  ~Marked() { mark = 0; }
  std::atomic<uint32_t> mark{kAlive};
};

TEST(Published, ReadersNeverSeeAnObjectThatIsGone) {
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
  for (int i = 0; i < 20000 || reads < 10000; ++i) published.Replace(std::make_unique<const Marked>());
  stop = true;
  for (std::thread& reader : readers) reader.join();
  EXPECT_EQ(dead, 0);
  epochs.Reclaim();
  EXPECT_EQ(epochs.RetiredCount(), 0u);
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
