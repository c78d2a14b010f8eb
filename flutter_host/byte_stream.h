// The byte streams of the codec. All numbers are little endian, as on this machine.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "flutter_host/value_arena.h"

namespace vantro {

static_assert(std::endian::native == std::endian::little, "the streams copy numbers as they lie in memory");

// Reads a message, starting at its first byte.
class ByteStreamReader {
 public:
  virtual ~ByteStreamReader() = default;
  // Returns 0 at the end of the message.
  virtual uint8_t ReadByte() = 0;
  // Copies all bytes, or none if fewer are left.
  virtual void ReadBytes(uint8_t* buffer, size_t length) = 0;
  // Skips to the next multiple of the alignment, a power of two, counted from the message's first byte.
  virtual void ReadAlignment(uint8_t alignment) = 0;
};

// Reads from an aligned copy of a message, into which text and typed lists point. After the first read beyond the end
// the reader has failed and returns no more data. Each such read is reported on the standard error stream.
class ByteBufferStreamReader final : public ByteStreamReader {
 public:
  // The deepest nesting of lists and maps. A message that goes deeper is hostile and refused as a whole, so that
  // decoding, and everything that later walks the value, needs only a small stack.
  static constexpr int kMaximumNesting = 256;

  // Copies the message into the arena. Everything that is read is also in the arena, which must outlive the reader and
  // the values.
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

  // Returns the next bytes, which are in the arena, or null if fewer are left.
  const uint8_t* Take(size_t length) {
    if (length > Left()) [[unlikely]]
      return ReportInvalidRead();
    return std::exchange(at_, at_ + length);
  }
  // Like ReadAlignment. Returns false if the padding is incomplete.
  bool Align(size_t alignment) {
    const size_t padding = (begin_ - at_) & (alignment - 1);
    return padding == 0 || Take(padding);
  }
  size_t position() const { return static_cast<size_t>(at_ - begin_); }
  bool failed() const { return failed_; }
  // The message nests too deeply. No value read from it may be used.
  bool isRefused() const { return isRefused_; }

  // Enters a list or map. Returns false, and fails and refuses the message, if it nests too deeply. After a success,
  // Leave must be called.
  bool Enter();
  void Leave() { --nesting_; }
  // Returns room for the values that the list or map just entered claims to have; in the outermost one, for at most as
  // many as bytes are left. All those inside it together may claim at most as many values as the message has bytes.
  // Beyond that, data must be missing, since a value takes at least a byte; the reader then fails and returns null. So
  // the room is at most 32 bytes per byte: 16 for the outermost, and 16 for all inside it.
  EncodableValue* MakeRoom(size_t claimed);

 private:
  size_t Left() const { return static_cast<size_t>(end_ - at_); }
  const uint8_t* ReportInvalidRead();

  const uint8_t* begin_;
  const uint8_t* at_;
  const uint8_t* end_;
  ValueArena* arena_;
  size_t claimable_;  // values that the lists and maps inside the outermost one may still claim
  int nesting_ = 0;
  bool failed_ = false;
  bool isRefused_ = false;
};

// A growing buffer of bytes. A short one, like the player's events and most answers, is inside the object, on the stack
// of its user, and costs no allocation.
class ByteVector {
 public:
  // The array starts uninitialised: only bytes that were written are read. With a defaulted constructor, ByteVector{}
  // would clear it.
  // cppcheck-suppress uninitMemberVar
  ByteVector() {}
  ByteVector(const ByteVector&) = delete;
  ByteVector& operator=(const ByteVector&) = delete;

  // Valid until more bytes are added.
  const uint8_t* data() const { return begin_; }
  size_t size() const { return static_cast<size_t>(at_ - begin_); }
  // Returns the place of the next bytes, with room for the given number.
  uint8_t* Room(size_t length) {
    if (length > static_cast<size_t>(end_ - at_)) [[unlikely]]
      Grow(length);
    return at_;
  }
  // Adds the bytes up to this end, which must be within the room.
  void AddUntil(uint8_t* end) { at_ = end; }

 private:
  void Grow(size_t length);

  uint8_t* begin_ = short_;
  uint8_t* at_ = short_;
  uint8_t* end_ = short_ + sizeof short_;
  std::unique_ptr<uint8_t[]> long_;
  uint8_t short_[256];
};

// Writes a message, starting at its first byte.
class ByteStreamWriter {
 public:
  virtual ~ByteStreamWriter() = default;
  virtual void WriteByte(uint8_t byte) = 0;
  virtual void WriteBytes(const uint8_t* bytes, size_t length) = 0;
  // Pads with zeros to the next multiple of the alignment, a power of two, counted from the message's first byte.
  virtual void WriteAlignment(uint8_t alignment) = 0;
};

// Appends to a byte vector that it does not own. The first byte of the vector is the first byte of the message.
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
  // For writes of several parts in one piece.
  ByteVector& bytes() { return *bytes_; }

 private:
  ByteVector* bytes_;
};

}  // namespace vantro
