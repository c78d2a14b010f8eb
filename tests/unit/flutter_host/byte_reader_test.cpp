// What a reader returns from a complete message.
#include <gtest/gtest.h>

#include <vector>

#include "flutter_host/byte_stream.h"

namespace vantro {
namespace {

class ByteReader : public testing::Test {
 protected:
  const std::vector<uint8_t> message_{1, 2, 3, 4, 5, 6, 7, 8, 9};
  LocalArena arena_;
  ByteBufferStreamReader reader_{message_.data(), message_.size(), &arena_};
};

TEST_F(ByteReader, CopiesTheGivenNumberOfBytesAndContinuesAfterThem) {
  uint8_t buffer[4] = {0, 0, 0, 99};
  reader_.ReadBytes(buffer, 3);
  EXPECT_EQ(std::vector<uint8_t>(buffer, buffer + 4), (std::vector<uint8_t>{1, 2, 3, 99}));
  EXPECT_EQ(reader_.ReadByte(), 4);
}

TEST_F(ByteReader, CopiesASingleByte) {
  uint8_t buffer[2] = {0, 99};
  reader_.ReadBytes(buffer, 1);
  EXPECT_EQ(std::vector<uint8_t>(buffer, buffer + 2), (std::vector<uint8_t>{1, 99}));
}

TEST_F(ByteReader, CopiesNothingForALengthOfZero) {
  reader_.ReadBytes(nullptr, 0);
  EXPECT_EQ(reader_.position(), 0u);
  EXPECT_FALSE(reader_.failed());
}

TEST_F(ByteReader, SkipsToTheNextMultipleAndNotBeyondOne) {
  reader_.ReadByte();
  reader_.ReadAlignment(8);
  EXPECT_EQ(reader_.position(), 8u);
  reader_.ReadAlignment(8);
  EXPECT_EQ(reader_.position(), 8u);
  EXPECT_EQ(reader_.ReadByte(), 9);
}

TEST_F(ByteReader, SkipsAPaddingOfOneByte) {
  uint8_t buffer[7];
  reader_.ReadBytes(buffer, sizeof buffer);
  reader_.ReadAlignment(8);
  EXPECT_EQ(reader_.position(), 8u);
}

}  // namespace
}  // namespace vantro
