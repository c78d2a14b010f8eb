// What an interface program may ask about the host's process, so that a black-box test sees windows as a user would:
//
//   windows  JSON list of the process's windows: handle, parent, owner, class, title, rectangle, styles, visible
//   focus    JSON with the active, focused and capturing windows of the window thread
//   post     payload: u64 handle, u32 message, u64 wParam, i64 lParam. Posts it; JSON with ok
//   send     the same, sent with a limit of 5 s; JSON with ok and result
//   capture  payload: u64 handle. A BMP file of the window's picture, children included; empty on failure
//   fault    writes to address 0 on the window thread, as a fault in the host's own code there would; JSON with ok
//
// All of it but the fault runs on the socket's thread and needs nothing of the window thread but that it answers sent
// messages.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vantro::loopback {

std::vector<uint8_t> RunCommand(const std::string& name, const std::vector<uint8_t>& arguments, uint32_t window_thread);

}  // namespace vantro::loopback
