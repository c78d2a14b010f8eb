// Finds the switch of the log in the file of a host. Works on plain bytes and may be called from any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace vantro::log_tool {

// Returns the offset of the export with this name, in bytes from the start of the loaded image. Returns nothing when
// the bytes are not a program for 64-bit Windows or the program has no such export. Accepts any bytes.
std::optional<uint32_t> ExportOffset(std::span<const std::byte> file, std::string_view name);

}  // namespace vantro::log_tool
