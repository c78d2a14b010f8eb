#include "flutter_host/value_arena.h"

#include <cstring>
#include <new>

namespace vantro {

namespace {

constexpr size_t kSmallestBlock = 1024;
constexpr size_t kLargestBlock = 1024 * 1024;  // unless more is asked for in one piece

}  // namespace

ValueArena::~ValueArena() {
  while (blocks_) ::operator delete(std::exchange(blocks_, blocks_->next));
}

// Each block is twice as large as the one before, so that their number stays small.
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
  if (const auto list = value.Get<EncodableList>()) {
    auto* const copy = reinterpret_cast<EncodableValue*>(Take(list->size_bytes()));
    std::transform(list->begin(), list->end(), copy, [this](const EncodableValue& element) { return Copy(element); });
    return EncodableValue(EncodableList(copy, list->size()));
  }
  if (const auto map = value.Get<EncodableMap>()) {
    auto* const copy = reinterpret_cast<EncodableEntry*>(Take(map->size() * sizeof(EncodableEntry)));
    std::transform(map->begin(), map->end(), copy, [this](const EncodableEntry& entry) {
      return EncodableEntry{Copy(entry.key), Copy(entry.value)};
    });
    return EncodableValue(EncodableMap(copy, map->size()));
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
