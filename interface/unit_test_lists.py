"""Generates the lists with which the unit tests of channel/ compare the host, as a C++ header."""

HEAD = """// Made from interface/channel.json by interface/generate: the required channels of the host.
#pragma once

// clang-format off

namespace vantro::test {

// The error of a request without arguments, in a process with neither window nor stream.
struct BareError {
  const char* method;
  const char* code;
  const char* message;
  bool detailsAreFalse;
  bool declines;  // the handler's second answer is dropped
};

"""


def listed(name, values):
    rows = "".join(f'    "{value}",\n' for value in values)
    return f"inline constexpr const char* {name}[] = {{\n{rows}}};\n"


def header(description):
    player = description["channels"][0]
    always_true = [method["name"] for method in player["methods"] if method["reply"]["type"] == "true"
                   and not any(method["name"] in error["methods"] for error in player["errors"])]
    errors = [f'    {{"{method}", "{error["code"]}", "{error["message"]}", {str("details" in error).lower()}, '
              f'{str(error.get("declines", False)).lower()}}},\n'
              for error in player["errors"] if error.get("bare", True) for method in error["methods"]]
    return "\n".join([
        HEAD + "// In the order in which the host compares them.",
        listed("kPlayerMethods", [method["name"] for method in player["methods"]]),
        listed("kAlwaysTrueMethods", always_true),
        f"inline constexpr BareError kBareErrors[] = {{\n{''.join(errors)}}};\n",
        "// The events that the host sends to the interface.",
        listed("kEvents", [event["name"] for event in player["events"]]),
        "// The events that libvlc raises, in the order of attachment.",
        listed("kPlayerEventNames", [event["name"] for event in player["events"] if event.get("player")]),
        "}  // namespace vantro::test\n"])
