// The memory that contains values.
#pragma once

#include <concepts>
#include <cstddef>
#include <memory>
#include <utility>

#include "flutter_host/encodable_value.h"

namespace vantro {

// Memory that only grows, and is freed all at once. One thread at a time may take memory from it. Its contents are
// immutable once they can be read, so any number of threads may read them.
class ValueArena {
 public:
  ValueArena() = default;
  // Starts with memory that the arena does not own. It must start at a multiple of 16 bytes.
  ValueArena(std::byte* first, size_t size) : at_(first), end_(first + size) {}
  ~ValueArena();
  ValueArena(const ValueArena&) = delete;
  ValueArena& operator=(const ValueArena&) = delete;

  // Returns uninitialised memory at a multiple of 16 bytes. Throws std::bad_alloc.
  std::byte* Take(size_t size) {
    size = (size + 15) & ~size_t{15};
    if (size > static_cast<size_t>(end_ - at_)) [[unlikely]]
      AddBlock(size);
    return std::exchange(at_, at_ + size);
  }
  // Reserves one block with room for this many bytes.
  void Expect(size_t size) {
    if (size > static_cast<size_t>(end_ - at_)) AddBlock(size);
  }
  // Returns an equal value, with all its text, lists and maps in this memory.
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

// An arena whose first memory is in the object itself, so that small contents cost no allocation.
class LocalArena : public ValueArena {
 public:
  // The memory starts uninitialised.
  // cppcheck-suppress uninitMemberVar
  LocalArena() : ValueArena(&first_[0], sizeof first_) {}

 private:
  alignas(16) std::byte first_[1280];
};

// A value together with its memory, to keep the value after the call that brought it. Copies share the memory, which is
// counted atomically and freed with the last copy. The memory is immutable, so sharing makes no difference to users.
class OwnedValue {
 public:
  OwnedValue() = default;
  // Copies the value and all that it views.
  explicit OwnedValue(const EncodableValue& value);
  template <class T>
  requires std::constructible_from<EncodableValue, const T&>
  explicit OwnedValue(const T& value) : OwnedValue(EncodableValue(value)) {}
  // Shares the given memory, which contains the value.
  OwnedValue(const EncodableValue& value, std::shared_ptr<const ValueArena> memory)
      : value_(value), memory_(std::move(memory)) {}

  // Valid while this owner or a copy of it lives.
  const EncodableValue& value() const { return value_; }
  const std::shared_ptr<const ValueArena>& memory() const { return memory_; }

  friend bool operator==(const OwnedValue& left, const OwnedValue& right) { return left.value_ == right.value_; }

 private:
  EncodableValue value_;
  std::shared_ptr<const ValueArena> memory_;
};

}  // namespace vantro
