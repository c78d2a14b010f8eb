// What passes over the loopback socket.
//
// A frame is, little-endian: u32 number of bytes that follow; u8 kind; i32 engine; u64 id; u64 time; u32 thread; u16
// length of the channel's name; the name; the payload, to the end. The time is microseconds since the engine's library
// was first used and the thread is the sender's, both 0 towards the host.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vantro::loopback {

enum class FrameKind : uint8_t {
  // To the interface.
  kHello = 1,            // payload: JSON with protocol, pid and the engines alive; the first frame of a connection
  kEngineCreated = 2,    // engine
  kEngineDestroyed = 3,  // engine
  kMessage = 4,          // a message of the host on the channel; an id other than 0 wants a reply. Both directions
  kReply = 5,            // the answer to the message with this id. Both directions
  kNoListener = 6,       // the message with this id went to a channel that nobody listens on, or to no engine
  kNotAnswered = 7,      // the host's handler returned without an answer to the message with this id
  kViolation = 8,        // payload: what rule of answering the host broke
  kDropped = 9,          // payload: u64, how many messages were dropped while no interface was connected
  kInput = 10,           // payload: u32 message, u64 wParam, i64 lParam that reached the view's window
  kResult = 11,          // payload: what the command with this id came to
  // To the host only.
  kCommand = 20,  // channel: the command's name, payload: its arguments; see inspect.h
};

struct Frame {
  FrameKind kind{};
  int32_t engine = 0;
  uint64_t id = 0;
  uint64_t time = 0;
  uint32_t thread = 0;
  std::string channel;
  std::vector<uint8_t> payload;
};

constexpr size_t kFrameHeaderSize = 1 + 4 + 8 + 8 + 4 + 2;  // without the leading length
constexpr uint32_t kMaximumFrameSize = 256u << 20;

// The frame with its leading length. The channel's name is cut at 65,535 bytes.
std::vector<uint8_t> EncodeFrame(const Frame& frame);
// From the bytes after the leading length; nothing if they do not make a frame.
std::optional<Frame> DecodeFrame(const std::vector<uint8_t>& bytes);

}  // namespace vantro::loopback
