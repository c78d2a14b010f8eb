// The frames of the loopback socket.
//
// A frame is little-endian: u32 number of bytes that follow; u8 kind; i32 engine; u64 id; u64 time; u32 thread; u16
// length of the channel's name; the name; the payload, up to the end. The time is in microseconds since the first use
// of the engine's library. The thread is the sender's. Both are 0 in frames to the host.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vantro::loopback {

enum class FrameKind : uint8_t {
  // To the interface.
  kHello = 1,            // payload: JSON with protocol, pid and the live engines; the first frame of a connection
  kEngineCreated = 2,    // engine
  kEngineDestroyed = 3,  // engine
  kMessage = 4,          // a message of the host on the channel; an id other than 0 asks for a reply. Both directions
  kReply = 5,            // the answer to the message with this id. Both directions
  kNoListener = 6,       // the message with this id had no listener on its channel, or no such engine
  kNotAnswered = 7,      // the host's handler returned without answering the message with this id
  kViolation = 8,        // payload: which rule of answering the host broke
  kDropped = 9,          // payload: u64, the number of messages dropped while no interface was connected
  kInput = 10,           // payload: u32 message, u64 wParam, i64 lParam that reached the view's window
  kResult = 11,          // payload: the result of the command with this id
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

// Returns the frame with its leading length. A channel name longer than 65,535 bytes is cut.
std::vector<uint8_t> EncodeFrame(const Frame& frame);
// Decodes the bytes after the leading length. Returns nothing when they are not a valid frame.
std::optional<Frame> DecodeFrame(const std::vector<uint8_t>& bytes);

}  // namespace vantro::loopback
