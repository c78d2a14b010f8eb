// Looks for the switch of the log in the file of a host. Works on plain bytes and may be called from any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace vantro::log_tool {

// The offset, in bytes from where the image is loaded, of what a program for 64-bit Windows exports under this name.
// Nothing when the bytes are no such program, or one without that export. The bytes may be anything.
std::optional<uint32_t> ExportOffset(std::span<const std::byte> file, std::string_view name);

}  // namespace vantro::log_tool
