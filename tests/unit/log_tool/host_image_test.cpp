#include "log_tool/host_image.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace vantro::log_tool {
namespace {

constexpr uint32_t kSwitchOffset = 0x5010;

// A program with one section and the exports "another" and "switch". Image offsets are file offsets plus 0x1000.
class Image {
 public:
  Image() : bytes_(0x400) {
    Put<uint16_t>(0, 0x5A4D);
    Put<uint32_t>(0x3C, 0x80);
    Put<uint32_t>(0x80, 0x4550);
    Put<uint16_t>(0x84, 0x8664);
    Put<uint16_t>(0x86, 1);     // sections
    Put<uint16_t>(0x94, 0xF0);  // size of the optional header
    Put<uint16_t>(0x98, 0x20B);
    Put<uint32_t>(0x98 + 108, 16);
    Put<uint32_t>(0x98 + 112, 0x1200);  // the export directory
    Put<uint32_t>(0x188 + 12, 0x1000);  // the section
    Put<uint32_t>(0x188 + 16, 0x400);
    Put<uint32_t>(0x188 + 20, 0);
    Put<uint32_t>(0x200 + 20, 2);  // functions
    Put<uint32_t>(0x200 + 24, 2);  // names
    Put<uint32_t>(0x200 + 28, 0x1240);
    Put<uint32_t>(0x200 + 32, 0x1260);
    Put<uint32_t>(0x200 + 36, 0x1280);
    Put<uint32_t>(0x240, kSwitchOffset);
    Put<uint32_t>(0x244, 0x5000);
    Put<uint32_t>(0x260, 0x12A0);
    Put<uint32_t>(0x264, 0x12B0);
    Put<uint16_t>(0x280, 1);
    Put<uint16_t>(0x282, 0);
    std::memcpy(bytes_.data() + 0x2A0, "another", 8);
    std::memcpy(bytes_.data() + 0x2B0, "switch", 7);
  }

  template <typename Number>
  Image& Put(size_t offset, Number number) {
    std::memcpy(bytes_.data() + offset, &number, sizeof number);
    return *this;
  }

  std::optional<uint32_t> Offset(std::string_view name, size_t size = 0x400) const {
    // A copy of exactly this size, so that the sanitizer reports a read beyond the end.
    const std::vector<std::byte> cut(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(size));
    return ExportOffset(cut, name);
  }

 private:
  std::vector<std::byte> bytes_;
};

TEST(ExportOffset, FollowsTheOrdinalOfTheName) {
  EXPECT_EQ(Image().Offset("switch"), kSwitchOffset);
  EXPECT_EQ(Image().Offset("another"), 0x5000u);
}

TEST(ExportOffset, IsNothingForANameThatIsNotExported) {
  for (const char* name : {"swit", "switches", "", "Switch"}) EXPECT_EQ(Image().Offset(name), std::nullopt) << name;
}

TEST(ExportOffset, IsNothingForWhatIsNoProgramForWindowsOn64Bits) {
  EXPECT_EQ(Image().Put<uint16_t>(0, 0x5A4E).Offset("switch"), std::nullopt);
  EXPECT_EQ(Image().Put<uint32_t>(0x80, 0).Offset("switch"), std::nullopt);
  EXPECT_EQ(Image().Put<uint16_t>(0x84, 0x14C).Offset("switch"), std::nullopt);
  EXPECT_EQ(Image().Put<uint16_t>(0x98, 0x10B).Offset("switch"), std::nullopt);
  EXPECT_EQ(Image().Put<uint32_t>(0x98 + 108, 0).Offset("switch"), std::nullopt);
  EXPECT_EQ(ExportOffset({}, "switch"), std::nullopt);
}

TEST(ExportOffset, NeedsTheWholeTable) {
  // The last needed byte is the end of the last name.
  for (size_t size = 0; size <= 0x2B6; ++size) EXPECT_EQ(Image().Offset("switch", size), std::nullopt) << size;
  EXPECT_EQ(Image().Offset("switch", 0x2B7), kSwitchOffset);
}

TEST(ExportOffset, IsNothingForHostileNumbers) {
  for (const size_t field : {0x3Cu, 0x98u + 112u, 0x188u + 20u, 0x200u + 28u, 0x200u + 32u, 0x200u + 36u, 0x264u}) {
    EXPECT_EQ(Image().Put<uint32_t>(field, 0xFFFFFFFF).Offset("switch"), std::nullopt) << field;
  }
  EXPECT_EQ(Image().Put<uint16_t>(0x282, 2).Offset("switch"), std::nullopt);  // an ordinal beyond the functions
  EXPECT_EQ(Image().Put<uint32_t>(0x200 + 24, 0xFFFFFFFF).Offset("missing"), std::nullopt);
}

}  // namespace
}  // namespace vantro::log_tool
