#include "tests/support/values.h"

#include <sstream>

namespace vantro {

namespace {

void Write(std::ostream& out, const EncodableValue& value) {
  if (const auto flag = value.Get<bool>()) {
    out << (*flag ? "true" : "false");
  } else if (const auto text = value.Get<std::string_view>()) {
    out << '"' << *text << '"';
  } else if (const auto narrow = value.Get<int32_t>()) {
    out << *narrow;
  } else if (const auto wide = value.Get<int64_t>()) {
    out << *wide << "L";
  } else if (const auto real = value.Get<double>()) {
    out << *real << "d";
  } else if (const auto list = value.Get<EncodableList>()) {
    out << "[";
    for (const EncodableValue& element : *list) Write(out << " ", element);
    out << " ]";
  } else if (const auto map = value.Get<EncodableMap>()) {
    out << "{";
    for (const EncodableEntry& entry : *map) {
      Write(out << " ", entry.key);
      Write(out << ": ", entry.value);
    }
    out << " }";
  } else if (value.IsNull()) {
    out << "null";
  } else {
    out << "[" << value.size() << " elements]";
  }
}

}  // namespace

void PrintTo(const EncodableValue& value, std::ostream* out) { Write(*out, value); }
void PrintTo(const OwnedValue& value, std::ostream* out) { Write(*out, value.value()); }

test::Value test::MapOf(const std::vector<Entry>& entries) {
  std::vector<EncodableEntry> views;
  for (const Entry& entry : entries) views.push_back({entry.key.value(), entry.value.value()});
  return Value(EncodableMap(views.data(), SortEntries(views.data(), views.size())));
}

test::Value test::ListOf(const std::vector<Value>& elements) {
  std::vector<EncodableValue> views;
  for (const Value& element : elements) views.push_back(element.value());
  return Value(views);
}

std::string test::Describe(const Value& value) {
  std::ostringstream text;
  Write(text, value.value());
  return text.str();
}

}  // namespace vantro
