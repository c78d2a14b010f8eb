// Commands with which an interface program inspects the host's process, so that a black-box test sees the same windows
// as a user:
//
//   windows  JSON list of the process's windows: handle, parent, owner, class, title, rectangle, styles, visible
//   focus    JSON with the active, focused and capturing windows of the window thread
//   post     payload: u64 handle, u32 message, u64 wParam, i64 lParam. Posts it; JSON with ok
// send     the same, but sent, with a time limit of 5 s; JSON with ok and result
//   capture  payload: u64 handle. A BMP file of the window's picture, children included; empty on failure
//   fault    writes to address 0 on the window thread, as a fault in the host's own code there would; JSON with ok
//
// All commands except fault run on the socket's thread. They need the window thread only to answer sent messages.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vantro::loopback {

std::vector<uint8_t> RunCommand(const std::string& name, const std::vector<uint8_t>& arguments, uint32_t window_thread);

}  // namespace vantro::loopback
