// The messages of the codec benchmarks.
#pragma once

#include "tests/support/values.h"

namespace vantro::bench {

using test::Value;

// Returns the arguments of a "setMedia" request, with all its keys.
Value SetMediaArguments();
// Returns a provider chunk of this many channel records: strings, numbers, nested lists.
Value ProviderChunk(int records);
// Returns the same value with the entries of all maps in an unsorted order. The result is good only for encoding.
Value WithKeysUnsorted(const Value& value);
// Returns a byte list of this many bytes.
Value ByteList(size_t size);

}  // namespace vantro::bench
