// Values of the channels that own their memory, as tests write and keep them.
#pragma once

#include <initializer_list>
#include <ostream>
#include <string>
#include <vector>

#include "flutter_host/value_arena.h"

namespace vantro {

// What GoogleTest prints of a value.
void PrintTo(const EncodableValue& value, std::ostream* out);
void PrintTo(const OwnedValue& value, std::ostream* out);

namespace test {

using Value = OwnedValue;

// A key that is text, or any value.
struct Entry {
  Value key;
  Value value;

  Entry(Value entryKey, Value entryValue) : key(std::move(entryKey)), value(std::move(entryValue)) {}
  Entry(const char* entryKey, Value entryValue) : Entry(Value(entryKey), std::move(entryValue)) {}
  Entry(const char* entryKey, const char* text) : Entry(Value(entryKey), Value(text)) {}
};
// Of entries in any order; of equal keys the last stays.
Value MapOf(const std::vector<Entry>& entries);
Value ListOf(const std::vector<Value>& elements);

std::string Describe(const Value& value);

}  // namespace test
}  // namespace vantro
