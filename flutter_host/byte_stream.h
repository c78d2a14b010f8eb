// Streams of bytes under the codec. All numbers are little endian, which is also this machine's order.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace vantro {

static_assert(std::endian::native == std::endian::little, "the streams copy numbers as they lie in memory");

class ByteBufferStreamReader;
class ByteBufferStreamWriter;

// Reads a message from its first byte on. A reader fails once and stays failed: after the first read beyond the end
// nothing that follows is taken for data.
class ByteStreamReader {
 public:
  // Containers may nest this deep. A message that goes deeper is hostile: the bound keeps decoding, and everything that
  // later walks the value, within a small stack.
  static constexpr int kMaximumNesting = 256;

  virtual ~ByteStreamReader() = default;

  // 0 when the reader is at its end.
  virtual uint8_t ReadByte() = 0;
  // Copies all or, when fewer are left, nothing.
  virtual void ReadBytes(uint8_t* buffer, size_t length) = 0;
  // Skips to the next multiple of the alignment, a power of two, counted from the message's first byte.
  virtual void ReadAlignment(uint8_t alignment) = 0;

  bool failed() const { return failed_; }
  // From here on every read is one beyond the end.
  void Fail() { failed_ = true; }

  // The reader itself when it reads from a buffer, else null: lets the codec take runs of bytes without a virtual call.
  ByteBufferStreamReader* AsBuffer() { return buffer_; }

  // False, and failed, when one more container would nest too deeply. Each success is paired with LeaveContainer.
  bool EnterContainer() {
    if (nesting_ < kMaximumNesting) return ++nesting_, true;
    Fail();
    return false;
  }
  void LeaveContainer() { --nesting_; }

  // How many of the claimed elements may be reserved in advance. An element takes a byte at least, so that all grants
  // together never exceed the size of the message, however many lists claim to be long.
  size_t GrantElements(size_t claimed) {
    const size_t granted = claimed < grantable_ ? claimed : grantable_;
    grantable_ -= granted;
    return granted;
  }

 protected:
  ByteStreamReader() = default;
  ByteStreamReader(ByteBufferStreamReader* buffer, size_t size) : buffer_(buffer), grantable_(size) {}

 private:
  ByteBufferStreamReader* buffer_ = nullptr;
  size_t grantable_ = 0;
  int nesting_ = 0;
  bool failed_ = false;
};

// Reads from bytes that it does not own. Each read beyond the end is reported on the standard error stream.
class ByteBufferStreamReader final : public ByteStreamReader {
 public:
  ByteBufferStreamReader(const uint8_t* bytes, size_t size)
      : ByteStreamReader(this, size), bytes_(bytes), size_(size) {}

  uint8_t ReadByte() override {
    const uint8_t* byte = Take(1);
    return byte ? *byte : 0;
  }
  void ReadBytes(uint8_t* buffer, size_t length) override;
  void ReadAlignment(uint8_t alignment) override {
    const size_t padding = (alignment - position_ % alignment) % alignment;
    if (padding != 0) Take(padding);
  }

  // The next bytes, borrowed from the message, or null when fewer are left.
  const uint8_t* Take(size_t length) {
    if (failed() || length > size_ - position_) [[unlikely]]
      return ReportInvalidRead();
    const uint8_t* taken = bytes_ + position_;
    position_ += length;
    return taken;
  }
  size_t position() const { return position_; }

 private:
  const uint8_t* ReportInvalidRead();

  const uint8_t* bytes_;
  size_t size_;
  size_t position_ = 0;
};

// Writes a message from its first byte on.
class ByteStreamWriter {
 public:
  virtual ~ByteStreamWriter() = default;

  virtual void WriteByte(uint8_t byte) = 0;
  virtual void WriteBytes(const uint8_t* bytes, size_t length) = 0;
  // Pads with zeros to the next multiple of the alignment, a power of two, counted from the message's first byte.
  virtual void WriteAlignment(uint8_t alignment) = 0;

  // The writer itself when it appends to a buffer, else null.
  ByteBufferStreamWriter* AsBuffer() { return buffer_; }

 protected:
  explicit ByteStreamWriter(ByteBufferStreamWriter* buffer = nullptr) : buffer_(buffer) {}

 private:
  ByteBufferStreamWriter* buffer_;
};

// Appends to a vector that it does not own; the message begins with the vector's first byte.
class ByteBufferStreamWriter final : public ByteStreamWriter {
 public:
  explicit ByteBufferStreamWriter(std::vector<uint8_t>* bytes) : ByteStreamWriter(this), bytes_(bytes) {}

  void WriteByte(uint8_t byte) override { bytes_->push_back(byte); }
  void WriteBytes(const uint8_t* bytes, size_t length) override {
    bytes_->insert(bytes_->end(), bytes, bytes + length);
  }
  void WriteAlignment(uint8_t alignment) override {
    const size_t padding = (alignment - bytes_->size() % alignment) % alignment;
    bytes_->insert(bytes_->end(), padding, uint8_t{0});
  }

  size_t size() const { return bytes_->size(); }
  void Reserve(size_t more) { bytes_->reserve(bytes_->size() + more); }

 private:
  std::vector<uint8_t>* bytes_;
};

// Holds the message that is written to it. A short one, as the player's events and most answers are, stays in the
// writer itself, on its caller's stack, and costs no allocation.
class ShortMessageWriter final : public ByteStreamWriter {
 public:
  // The array begins uninitialised: only what has been written is read. A defaulted constructor would let
  // ShortMessageWriter{} clear it.
  // cppcheck-suppress uninitMemberVar
  ShortMessageWriter() {}
  ShortMessageWriter(const ShortMessageWriter&) = delete;
  ShortMessageWriter& operator=(const ShortMessageWriter&) = delete;

  void WriteByte(uint8_t byte) override { WriteBytes(&byte, 1); }
  void WriteBytes(const uint8_t* bytes, size_t length) override {
    if (length > sizeof short_ - size_) [[unlikely]]
      return WriteLong(bytes, length);
    std::memcpy(short_ + size_, bytes, length);
    size_ += length;
  }
  void WriteAlignment(uint8_t alignment) override;

  // Valid until the next write.
  const uint8_t* data() const { return long_.empty() ? short_ : long_.data(); }
  size_t size() const { return long_.empty() ? size_ : long_.size(); }

 private:
  void WriteLong(const uint8_t* bytes, size_t length);

  uint8_t short_[256];
  size_t size_ = 0;
  std::vector<uint8_t> long_;  // the whole message, once it has outgrown the array
};

}  // namespace vantro
