// The blocks from which an arena gives memory, counted by the allocations that it makes.
#include "flutter_host/value_arena.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tests/unit/flutter_host/allocation_meter.h"

namespace vantro {
namespace {

using test::AllocationMeter;

constexpr size_t kLink = 16;  // the part of a block that links it to the previous one

// Returns the bytes that the arena allocates when it gives a piece of this size.
size_t AllocatedFor(ValueArena& arena, size_t size) {
  const AllocationMeter meter;
  static_cast<void>(arena.Take(size));
  return meter.bytes();
}

TEST(LocalArena, TheFirst1280BytesCostNoAllocation) {
  LocalArena arena;
  EXPECT_EQ(AllocatedFor(arena, 1264), 0u);
  EXPECT_EQ(AllocatedFor(arena, 16), 0u);
  EXPECT_EQ(AllocatedFor(arena, 1), 16 + kLink);
}

TEST(ValueArena, GivesPiecesAtMultiplesOf16Bytes) {
  ValueArena arena;
  arena.Expect(256);
  std::byte* const first = arena.Take(1);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(first) % 16, 0u);
  EXPECT_EQ(arena.Take(16), first + 16);
  EXPECT_EQ(arena.Take(17), first + 32);
  EXPECT_EQ(arena.Take(0), first + 64);
  EXPECT_EQ(arena.Take(1), first + 64);
}

TEST(ValueArena, AnExpectedSizeIsOneBlock) {
  ValueArena arena;
  {
    const AllocationMeter meter;
    arena.Expect(96);
    EXPECT_EQ(meter.bytes(), 96 + kLink);
  }
  EXPECT_EQ(AllocatedFor(arena, 96), 0u);
  const AllocationMeter meter;
  arena.Expect(0);
  EXPECT_EQ(meter.count(), 0u);
}

TEST(ValueArena, ABlockIsTwiceAsLargeAsTheOneBeforeItFrom1024BytesToAMebibyte) {
  constexpr size_t kMebibyte = size_t{1024} * 1024;
  ValueArena arena;
  EXPECT_EQ(AllocatedFor(arena, 16), 16 + kLink);
  size_t expected = 1024;
  for (int block = 0; block < 13; ++block) {
    EXPECT_EQ(AllocatedFor(arena, 16), expected + kLink) << block;
    EXPECT_EQ(AllocatedFor(arena, expected - 16), 0u) << block;
    expected = expected < kMebibyte ? 2 * expected : kMebibyte;
  }
  EXPECT_EQ(AllocatedFor(arena, kMebibyte + 16), kMebibyte + 16 + kLink);
}

TEST(ValueArena, AnEmptyTextOrListIsCopiedWithoutMemory) {
  ValueArena arena;
  const AllocationMeter meter;
  static_cast<void>(arena.Copy(EncodableValue("")));
  static_cast<void>(arena.Copy(EncodableValue(EncodableList{})));
  EXPECT_EQ(meter.count(), 0u);
}

}  // namespace
}  // namespace vantro
