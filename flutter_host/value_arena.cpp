#include "flutter_host/value_arena.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace vantro {

namespace {

constexpr size_t kSmallestBlock = 1024;
constexpr size_t kLargestBlock = size_t{1024} * 1024;  // except for a larger single piece

}  // namespace

ValueArena::~ValueArena() {
  while (blocks_) ::operator delete(std::exchange(blocks_, blocks_->next));
}

// Each block is twice as large as the previous one, so that there are few.
void ValueArena::AddBlock(size_t size) {
  const size_t doubled = blocks_ ? static_cast<size_t>(end_ - reinterpret_cast<std::byte*>(blocks_ + 1)) * 2 : 0;
  const size_t room = std::max(size, blocks_ ? std::clamp(doubled, kSmallestBlock, kLargestBlock) : size);
  auto* const block = static_cast<Block*>(::operator new(sizeof(Block) + room));
  block->next = blocks_;
  blocks_ = block;
  at_ = reinterpret_cast<std::byte*>(block + 1);
  end_ = at_ + room;
}

EncodableValue ValueArena::Copy(const EncodableValue& value) {
  const EncodableList contents = value.contents();
  if (!contents.empty()) {
    auto* const copy = reinterpret_cast<EncodableValue*>(Take(contents.size_bytes()));
    std::transform(contents.begin(), contents.end(), copy, [this](const EncodableValue& each) { return Copy(each); });
    return {value.kind(), copy, value.size()};
  }
  if (value.size() == 0) return value;
  const size_t length = value.size() * ElementSize(value.kind());
  return {value.kind(), std::memcpy(Take(length), value.elements(), length), value.size()};
}

OwnedValue::OwnedValue(const EncodableValue& value) : value_(value) {
  if (value.size() == 0) return;
  const auto memory = std::make_shared<ValueArena>();
  value_ = memory->Copy(value);
  memory_ = memory;
}

}  // namespace vantro
