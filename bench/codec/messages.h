// The messages that the codec benchmarks carry.
#pragma once

#include "flutter_host/encodable_value.h"

namespace vantro::bench {

// The arguments of a "setMedia" request, with all its keys.
EncodableValue SetMediaArguments();
// A provider chunk of this many channel records: strings, numbers, nested lists.
EncodableValue ProviderChunk(int records);
// A byte list of this many bytes.
EncodableValue ByteList(size_t size);

}  // namespace vantro::bench
