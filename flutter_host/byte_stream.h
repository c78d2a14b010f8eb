// Streams of bytes under the codec. All numbers are little endian, which is also this machine's order.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "flutter_host/value_arena.h"

namespace vantro {

static_assert(std::endian::native == std::endian::little, "the streams copy numbers as they lie in memory");

// Reads a message from its first byte on.
class ByteStreamReader {
 public:
  virtual ~ByteStreamReader() = default;
  // 0 when the reader is at its end.
  virtual uint8_t ReadByte() = 0;
  // Copies all or, when fewer are left, nothing.
  virtual void ReadBytes(uint8_t* buffer, size_t length) = 0;
  // Skips to the next multiple of the alignment, a power of two, counted from the message's first byte.
  virtual void ReadAlignment(uint8_t alignment) = 0;
};

// Reads from a copy of a message, which text and typed lists view and which is aligned for them. It fails once and
// stays failed: after the first read beyond the end nothing that follows is taken for data. Each such read is reported
// on the standard error stream.
class ByteBufferStreamReader final : public ByteStreamReader {
 public:
  // Lists and maps may nest this deep. A message that goes deeper is hostile and refused as a whole: the bound keeps
  // decoding, and everything that later walks the value, within a small stack.
  static constexpr int kMaximumNesting = 256;

  // The message is copied into the arena, in which all that is read lies too. The arena outlives the reader and the
  // values.
  ByteBufferStreamReader(const uint8_t* message, size_t size, ValueArena* arena);

  uint8_t ReadByte() override {
    const uint8_t* byte = Take(1);
    return byte ? *byte : 0;
  }
  void ReadBytes(uint8_t* buffer, size_t length) override {
    const uint8_t* const bytes = Take(length);
    if (bytes && length != 0) std::memcpy(buffer, bytes, length);
  }
  void ReadAlignment(uint8_t alignment) override { Align(alignment); }

  // The next bytes, which lie in the arena, or null when fewer are left.
  const uint8_t* Take(size_t length) {
    if (length > Left()) [[unlikely]]
      return ReportInvalidRead();
    return std::exchange(at_, at_ + length);
  }
  // As ReadAlignment; false when the padding is cut short.
  bool Align(size_t alignment) {
    const size_t padding = (begin_ - at_) & (alignment - 1);
    return padding == 0 || Take(padding);
  }
  size_t position() const { return static_cast<size_t>(at_ - begin_); }
  bool failed() const { return failed_; }
  // The message nests too deeply: no value read from it is to be used.
  bool isRefused() const { return isRefused_; }

  // False, failed and refused when one more list or map would nest too deeply. Each success is paired with Leave.
  bool Enter();
  void Leave() { --nesting_; }
  // Room for the values that the list or map just entered claims to have: for all of them or, in the outermost, for as
  // many as there are bytes left. Fails, with null, when an enclosing one must come to be cut short and drops this one.
  // That is known once all inside the outermost one have claimed more values than the message has bytes, since a value
  // takes a byte at least. So the room takes at most 32 bytes a byte: 16 for the outermost, and 16 for all inside it.
  EncodableValue* MakeRoom(size_t claimed);

 private:
  size_t Left() const { return static_cast<size_t>(end_ - at_); }
  const uint8_t* ReportInvalidRead();

  const uint8_t* begin_;
  const uint8_t* at_;
  const uint8_t* end_;
  ValueArena* arena_;
  size_t claimable_;  // by all lists and maps inside the outermost one
  int nesting_ = 0;
  bool failed_ = false;
  bool isRefused_ = false;
};

// A run of bytes that grows. A short one, as the player's events and most answers are, lies in the object itself, on
// its maker's stack, and costs no allocation.
class ByteVector {
 public:
  // The array begins uninitialised: only what has been written is read. A defaulted constructor would let ByteVector{}
  // clear it.
  // cppcheck-suppress uninitMemberVar
  ByteVector() {}
  ByteVector(const ByteVector&) = delete;
  ByteVector& operator=(const ByteVector&) = delete;

  // Valid until the next bytes are added.
  const uint8_t* data() const { return begin_; }
  size_t size() const { return static_cast<size_t>(at_ - begin_); }
  // Where the next bytes go; so many fit there.
  uint8_t* Room(size_t length) {
    if (length > static_cast<size_t>(end_ - at_)) [[unlikely]]
      Grow(length);
    return at_;
  }
  // Takes the bytes up to here, within the room, for written.
  void AddUntil(uint8_t* end) { at_ = end; }

 private:
  void Grow(size_t length);

  uint8_t* begin_ = short_;
  uint8_t* at_ = short_;
  uint8_t* end_ = short_ + sizeof short_;
  std::unique_ptr<uint8_t[]> long_;
  uint8_t short_[256];
};

// Writes a message from its first byte on.
class ByteStreamWriter {
 public:
  virtual ~ByteStreamWriter() = default;
  virtual void WriteByte(uint8_t byte) = 0;
  virtual void WriteBytes(const uint8_t* bytes, size_t length) = 0;
  // Pads with zeros to the next multiple of the alignment, a power of two, counted from the message's first byte.
  virtual void WriteAlignment(uint8_t alignment) = 0;
};

// Appends to a byte vector that it does not own; the message begins with the vector's first byte.
class ByteBufferStreamWriter final : public ByteStreamWriter {
 public:
  explicit ByteBufferStreamWriter(ByteVector* bytes) : bytes_(bytes) {}

  void WriteByte(uint8_t byte) override { WriteBytes(&byte, 1); }
  void WriteBytes(const uint8_t* bytes, size_t length) override {
    uint8_t* const at = bytes_->Room(length);
    if (length != 0) std::memcpy(at, bytes, length);
    bytes_->AddUntil(at + length);
  }
  void WriteAlignment(uint8_t alignment) override {
    while ((bytes_->size() & (alignment - 1u)) != 0) WriteByte(0);
  }
  // For what is written in one piece.
  ByteVector& bytes() { return *bytes_; }

 private:
  ByteVector* bytes_;
};

}  // namespace vantro
