#include "devkit/engine/frame.h"

#include <algorithm>
#include <cstring>

namespace vantro::loopback {

namespace {

template <typename Number>
void Put(std::vector<uint8_t>* bytes, Number number) {
  const size_t at = bytes->size();
  bytes->resize(at + sizeof number);
  std::memcpy(bytes->data() + at, &number, sizeof number);
}

template <typename Number>
Number Take(const uint8_t** at) {
  Number number;
  std::memcpy(&number, *at, sizeof number);
  *at += sizeof number;
  return number;
}

}  // namespace

std::vector<uint8_t> EncodeFrame(const Frame& frame) {
  const auto name_size = static_cast<uint16_t>(std::min<size_t>(frame.channel.size(), 0xFFFF));
  std::vector<uint8_t> bytes;
  bytes.reserve(4 + kFrameHeaderSize + name_size + frame.payload.size());
  Put(&bytes, static_cast<uint32_t>(kFrameHeaderSize + name_size + frame.payload.size()));
  Put(&bytes, static_cast<uint8_t>(frame.kind));
  Put(&bytes, frame.engine);
  Put(&bytes, frame.id);
  Put(&bytes, frame.time);
  Put(&bytes, frame.thread);
  Put(&bytes, name_size);
  bytes.insert(bytes.end(), frame.channel.begin(), frame.channel.begin() + name_size);
  bytes.insert(bytes.end(), frame.payload.begin(), frame.payload.end());
  return bytes;
}

std::optional<Frame> DecodeFrame(const std::vector<uint8_t>& bytes) {
  if (bytes.size() < kFrameHeaderSize) return std::nullopt;
  const uint8_t* at = bytes.data();
  Frame frame;
  frame.kind = static_cast<FrameKind>(Take<uint8_t>(&at));
  frame.engine = Take<int32_t>(&at);
  frame.id = Take<uint64_t>(&at);
  frame.time = Take<uint64_t>(&at);
  frame.thread = Take<uint32_t>(&at);
  const size_t name_size = Take<uint16_t>(&at);
  if (bytes.size() < kFrameHeaderSize + name_size) return std::nullopt;
  frame.channel.assign(at, at + name_size);
  frame.payload.assign(at + name_size, bytes.data() + bytes.size());
  return frame;
}

}  // namespace vantro::loopback
