// The messages that the codec benchmarks carry.
#pragma once

#include "tests/support/values.h"

namespace vantro::bench {

using test::Value;

// The arguments of a "setMedia" request, with all its keys.
Value SetMediaArguments();
// A provider chunk of this many channel records: strings, numbers, nested lists.
Value ProviderChunk(int records);
// The same with the entries of all maps in another order than that of their keys: only good for being encoded.
Value WithKeysUnsorted(const Value& value);
// A byte list of this many bytes.
Value ByteList(size_t size);

}  // namespace vantro::bench
