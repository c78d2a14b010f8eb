#include "log_tool/host_image.h"

#include <cstring>

namespace vantro::log_tool {

namespace {

constexpr uint16_t kDosMagic = 0x5A4D;
constexpr uint32_t kPeMagic = 0x00004550;
constexpr uint16_t kMachine = 0x8664;
constexpr uint16_t kPe32Plus = 0x20B;

// The offsets of the fields, in bytes from the PE header, the section header or the export directory.
constexpr uint64_t kPeHeaderAt = 0x3C;
constexpr uint64_t kMachineAt = 4;
constexpr uint64_t kSectionCountAt = 6;
constexpr uint64_t kOptionalSizeAt = 20;
constexpr uint64_t kOptionalAt = 24;
constexpr uint64_t kDirectoryCountAt = kOptionalAt + 108;
constexpr uint64_t kExportsAt = kOptionalAt + 112;
constexpr uint64_t kSectionSize = 40;
constexpr uint64_t kSectionVirtualAt = 12;
constexpr uint64_t kSectionRawSizeAt = 16;
constexpr uint64_t kSectionRawAt = 20;
constexpr uint64_t kFunctionCountAt = 20;
constexpr uint64_t kNameCountAt = 24;
constexpr uint64_t kFunctionsAt = 28;
constexpr uint64_t kNamesAt = 32;
constexpr uint64_t kOrdinalsAt = 36;

// Reads little-endian numbers. A read beyond the end returns nothing.
class Reader {
 public:
  explicit Reader(std::span<const std::byte> file) : file_(file) {}

  template <typename Number>
  std::optional<Number> At(uint64_t offset) const {
    if (offset > file_.size() || file_.size() - offset < sizeof(Number)) return std::nullopt;
    Number number;
    std::memcpy(&number, file_.data() + offset, sizeof number);
    return number;
  }

  bool TextAt(uint64_t offset, std::string_view text) const {
    if (offset > file_.size() || file_.size() - offset <= text.size()) return false;
    const std::byte* const begin = file_.data() + offset;
    return std::memcmp(begin, text.data(), text.size()) == 0 && begin[text.size()] == std::byte{0};
  }

 private:
  std::span<const std::byte> file_;
};

// Returns the offset in the file for an offset in the loaded image.
std::optional<uint64_t> FileOffset(const Reader& file, uint64_t header, uint32_t imageOffset) {
  const uint64_t sections = header + kOptionalAt + file.At<uint16_t>(header + kOptionalSizeAt).value_or(0);
  const uint16_t count = file.At<uint16_t>(header + kSectionCountAt).value_or(0);
  for (uint64_t section = sections; section < sections + count * kSectionSize; section += kSectionSize) {
    const auto begin = file.At<uint32_t>(section + kSectionVirtualAt);
    const auto size = file.At<uint32_t>(section + kSectionRawSizeAt);
    const auto raw = file.At<uint32_t>(section + kSectionRawAt);
    if (!begin || !size || !raw) return std::nullopt;
    if (imageOffset >= *begin && imageOffset - *begin < *size) return uint64_t{*raw} + (imageOffset - *begin);
  }
  return std::nullopt;
}

// Returns the offset of the PE header. Returns nothing unless the file is a program for 64-bit Windows with an export
// directory.
std::optional<uint64_t> HeaderOf(const Reader& file) {
  const auto header = file.At<uint32_t>(kPeHeaderAt);
  if (file.At<uint16_t>(0) != kDosMagic || !header || file.At<uint32_t>(*header) != kPeMagic) return std::nullopt;
  if (file.At<uint16_t>(uint64_t{*header} + kMachineAt) != kMachine) return std::nullopt;
  if (file.At<uint16_t>(uint64_t{*header} + kOptionalAt) != kPe32Plus) return std::nullopt;
  if (file.At<uint32_t>(uint64_t{*header} + kDirectoryCountAt).value_or(0) == 0) return std::nullopt;
  return *header;
}

}  // namespace

std::optional<uint32_t> ExportOffset(std::span<const std::byte> bytes, std::string_view name) {
  const Reader file(bytes);
  const auto header = HeaderOf(file);
  if (!header) return std::nullopt;
  // Returns the file offset of the table whose image offset is stored at this file offset.
  const auto follow = [&](uint64_t place) -> std::optional<uint64_t> {
    const auto offset = file.At<uint32_t>(place);
    return offset ? FileOffset(file, *header, *offset) : std::nullopt;
  };
  const auto directory = follow(*header + kExportsAt);
  if (!directory) return std::nullopt;
  const auto functions = follow(*directory + kFunctionsAt);
  const auto names = follow(*directory + kNamesAt);
  const auto ordinals = follow(*directory + kOrdinalsAt);
  if (!functions || !names || !ordinals) return std::nullopt;
  const uint32_t functionCount = file.At<uint32_t>(*directory + kFunctionCountAt).value_or(0);
  const uint32_t nameCount = file.At<uint32_t>(*directory + kNameCountAt).value_or(0);
  for (uint64_t index = 0; index < nameCount; ++index) {
    const auto ordinal = file.At<uint16_t>(*ordinals + 2 * index);
    if (!ordinal) return std::nullopt;  // the count is larger than the table
    const auto text = follow(*names + 4 * index);
    if (!text || !file.TextAt(*text, name)) continue;
    if (*ordinal >= functionCount) return std::nullopt;
    return file.At<uint32_t>(*functions + uint64_t{4} * *ordinal);
  }
  return std::nullopt;
}

}  // namespace vantro::log_tool
