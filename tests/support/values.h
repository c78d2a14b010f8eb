// Channel values that own their memory, for tests.
#pragma once

#include <initializer_list>
#include <ostream>
#include <string>
#include <vector>

#include "flutter_host/value_arena.h"

namespace vantro {

// Lets GoogleTest print a value.
void PrintTo(const EncodableValue& value, std::ostream* out);
void PrintTo(const OwnedValue& value, std::ostream* out);

namespace test {

using Value = OwnedValue;

// A key that is text or any other value.
struct Entry {
  Value key;
  Value value;

  Entry(Value entryKey, Value entryValue) : key(std::move(entryKey)), value(std::move(entryValue)) {}
  Entry(const char* entryKey, Value entryValue) : Entry(Value(entryKey), std::move(entryValue)) {}
  Entry(const char* entryKey, const char* text) : Entry(Value(entryKey), Value(text)) {}
};
// Makes a map from entries in any order. Of equal keys the last is kept.
Value MapOf(const std::vector<Entry>& entries);
Value ListOf(const std::vector<Value>& elements);

std::string Describe(const Value& value);

}  // namespace test
}  // namespace vantro
