// The memory in which values lie.
#pragma once

#include <concepts>
#include <cstddef>
#include <memory>
#include <utility>

#include "flutter_host/encodable_value.h"

namespace vantro {

// Memory that only grows and goes at once, with everything in it. One thread at a time may take from it; what lies in
// it never changes once it is read, so that any number may read.
class ValueArena {
 public:
  ValueArena() = default;
  // Begins with memory that the arena does not own and that starts at a multiple of 16 bytes.
  ValueArena(std::byte* first, size_t size) : at_(first), end_(first + size) {}
  ~ValueArena();
  ValueArena(const ValueArena&) = delete;
  ValueArena& operator=(const ValueArena&) = delete;

  // Uninitialised, at a multiple of 16 bytes. Throws std::bad_alloc.
  std::byte* Take(size_t size) {
    size = (size + 15) & ~size_t{15};
    if (size > static_cast<size_t>(end_ - at_)) [[unlikely]]
      AddBlock(size);
    return std::exchange(at_, at_ + size);
  }
  // Sees to it that so much can be taken from one block.
  void Expect(size_t size) {
    if (size > static_cast<size_t>(end_ - at_)) AddBlock(size);
  }
  // A value equal to the given one, with all its text, lists and maps in this memory.
  EncodableValue Copy(const EncodableValue& value);

 private:
  struct alignas(16) Block {
    Block* next;
  };
  void AddBlock(size_t size);

  std::byte* at_ = nullptr;
  std::byte* end_ = nullptr;
  Block* blocks_ = nullptr;
};

// An arena whose first memory lies in the object itself, so that little costs no allocation.
class LocalArena : public ValueArena {
 public:
  // The memory begins uninitialised.
  // cppcheck-suppress uninitMemberVar
  LocalArena() : ValueArena(&first_[0], sizeof first_) {}

 private:
  alignas(16) std::byte first_[1280];
};

// A value with the memory in which it lies: what keeps a value beyond the call that brought it. Copies share the
// memory, which is counted atomically and goes with the last of them. As nothing in it ever changes, a copy that shares
// cannot be told from one that does not.
class OwnedValue {
 public:
  OwnedValue() = default;
  // Copies the value and all that it views.
  explicit OwnedValue(const EncodableValue& value);
  template <class T>
  requires std::constructible_from<EncodableValue, const T&>
  explicit OwnedValue(const T& value) : OwnedValue(EncodableValue(value)) {}
  // Shares the memory, in which the value lies.
  OwnedValue(const EncodableValue& value, std::shared_ptr<const ValueArena> memory)
      : value_(value), memory_(std::move(memory)) {}

  // Borrowed from this owner and from its copies.
  const EncodableValue& value() const { return value_; }
  const std::shared_ptr<const ValueArena>& memory() const { return memory_; }

  friend bool operator==(const OwnedValue& left, const OwnedValue& right) { return left.value_ == right.value_; }

 private:
  EncodableValue value_;
  std::shared_ptr<const ValueArena> memory_;
};

}  // namespace vantro
