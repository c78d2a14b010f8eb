// Readers of a request's arguments. All have one shape: the arguments have to be a map, the key has to be a string in
// it, and the value has to be of a type that the reader takes; otherwise the fallback is the result. A wrong type is
// the same as an absent key, and no reader raises an error. Standard library only; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "flutter_host/method_call.h"

namespace vantro {

// A 32-bit integer as it is, a 64-bit integer cut to its low 32 bits, a double truncated toward zero (to the nearest
// end of the range beyond it, 0 for a NaN).
int32_t ReadIntArgument(const MethodCall& call, std::string_view key, int32_t fallback);
// A Boolean only: no integer is taken for one.
bool ReadBoolArgument(const MethodCall& call, std::string_view key, bool fallback);
// A string only; empty otherwise.
std::string ReadStringArgument(const MethodCall& call, std::string_view key);
// A double as it is, or an integer of either size as a double.
double ReadNumberArgument(const MethodCall& call, std::string_view key, double fallback);

}  // namespace vantro
