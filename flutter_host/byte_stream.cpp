#include "flutter_host/byte_stream.h"

#include <algorithm>

#include "common/standard_error.h"

namespace vantro {

ByteBufferStreamReader::ByteBufferStreamReader(const uint8_t* message, size_t size, ValueArena* arena)
    : arena_(arena), claimable_(size) {
  std::byte* const copy = arena->Take(size);
  if (size != 0) std::memcpy(copy, message, size);
  at_ = begin_ = reinterpret_cast<const uint8_t*>(copy);
  end_ = begin_ + size;
}

// Not inline, so that the usual path of a read is only a comparison.
const uint8_t* ByteBufferStreamReader::ReportInvalidRead() {
  ReportLine("Invalid read in StandardCodecByteStreamReader");
  failed_ = true;
  at_ = end_;
  return nullptr;
}

bool ByteBufferStreamReader::Enter() {
  if (nesting_ < kMaximumNesting) return ++nesting_, true;
  ReportLine("Value nested too deeply in StandardCodecSerializer::ReadValueOfType");
  failed_ = isRefused_ = true;
  at_ = end_;
  return false;
}

EncodableValue* ByteBufferStreamReader::MakeRoom(size_t claimed) {
  size_t room = claimed;
  if (nesting_ <= 1) {
    room = std::min(claimed, Left());
  } else if (claimed <= claimable_) {
    claimable_ -= claimed;
  } else {
    ReportInvalidRead();
    return nullptr;
  }
  return reinterpret_cast<EncodableValue*>(arena_->Take(room * sizeof(EncodableValue)));
}

void ByteVector::Grow(size_t length) {
  const size_t used = size();
  const size_t capacity = std::max(2 * static_cast<size_t>(end_ - begin_), used + length);
  // Not make_unique, which would clear bytes that are about to be written.
  std::unique_ptr<uint8_t[]> grown(new uint8_t[capacity]);
  std::memcpy(grown.get(), begin_, used);
  long_ = std::move(grown);
  begin_ = long_.get();
  at_ = begin_ + used;
  end_ = begin_ + capacity;
}

}  // namespace vantro
