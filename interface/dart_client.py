"""Generates the Dart client's class of one channel."""

import json
import textwrap

DART_TYPES = {"integer": "int", "integer32": "int", "integer64": "int", "number": "double", "double": "double",
              "boolean": "bool", "string": "String", "bytes": "Uint8List", "map": "Map<Object?, Object?>"}
# How an event's text is converted to a value.
EVENT_READERS = {"string": ("String", "_text(call)"), "decimal": ("double", "double.parse(_text(call))"),
                 "milliseconds": ("int", "int.parse(_text(call))"), "boolean": ("bool", "_text(call) == 'true'"),
                 "map": ("Map<Object?, Object?>", "call.arguments as Map<Object?, Object?>"),
                 "Toast": ("Toast", "Toast.fromMap(call.arguments as Map<Object?, Object?>)"),
                 "AppEvent": ("AppEvent", "AppEvent.fromMap(call.arguments as Map<Object?, Object?>)")}


def plain(text):
    """Returns a cell of the page as plain text: without links, and with [code] references instead of backquotes."""
    while "](" in text:
        before, _, rest = text.partition("](")
        text = before.replace("[", "", 1) + rest.partition(")")[2]
    return text.replace(" (more)", "")


def documented(text, indent="  "):
    return "".join(f"{line}\n" for line in textwrap.wrap(
        text, 100, initial_indent=f"{indent}/// ", subsequent_indent=f"{indent}/// ", break_on_hyphens=False))


def sentence(text):
    text = plain(text)
    return text[0].upper() + text[1:] + "."


def taken(method):
    """Returns the arguments of the Dart method, without second names of the same key."""
    return [argument for argument in method.get("arguments", []) if "otherNameOf" not in argument]


def name_of(entry):
    return entry.get("dart", entry.get("key", entry.get("name")))


def parameter(argument):
    kind, name = DART_TYPES[argument["type"]], name_of(argument)
    if argument.get("required"):
        return f"required {kind} {name}"
    if "defaultKey" in argument:
        return f"{kind}? {name}"
    default = argument["default"]
    return f"{kind} {name} = {json.dumps(default) if not isinstance(default, str) else repr(default)}"


def entry(argument):
    key, name = argument["key"], name_of(argument)
    value = f"'{key}': {name},"
    return f"if ({name} != null) {value}" if "defaultKey" in argument else value


def signature(method):
    parameters = [parameter(argument) for argument in taken(method)]
    if "moreEntries" in method:
        parameters.append("Map<String, Object?> entries = const <String, Object?>{}")
    if not parameters:
        return "()"
    if sum(map(len, parameters)) < 60:
        return "({" + ", ".join(parameters) + "})"
    return "({\n" + "".join(f"    {text},\n" for text in parameters) + "  })"


def call(method):
    """Returns the call's arguments as Dart: the name, and the map if there is one."""
    entries = [entry(argument) for argument in taken(method)]
    if "moreEntries" in method:
        entries.insert(0, "...entries,")
    if not entries:
        return f"'{method['name']}'"
    inner = "".join(f"      {text}\n" for text in entries)
    return f"'{method['name']}', <String, Object?>{{\n{inner}    }}"


def body(method):
    """Returns the Dart type of the reply and the method's body."""
    reply = method["reply"]
    if reply["type"] in ("true", "null"):
        return "void", f"{{\n    await _invoke<Object?>({call(method)});\n  }}"
    if reply.get("dart") == "WindowInfo":
        return "WindowInfo", (f"{{\n    final reply = await _invoke<Map<Object?, Object?>>({call(method)});\n"
                              "    return WindowInfo.fromMap(reply!);\n  }")
    if reply.get("dart") == "frame":
        return "Uint8List", (f"{{\n    final reply = await _invoke<Map<Object?, Object?>>({call(method)});\n"
                             "    return frameOf(reply!);\n  }")
    kind = DART_TYPES[reply["type"]]
    return kind, f"{{\n    final reply = await _invoke<{kind}>({call(method)});\n    return reply!;\n  }}"


def method_source(channel, method):
    kind, text = body(method)
    lines = documented(f"`{method['name']}`: {sentence(method['does'])}")
    if kind != "void":
        described = method["reply"].get("text")
        if described:
            lines += "  ///\n" + documented(f"Reply: {plain(described)}.")
    if taken(method):
        lines += "  ///\n"
    for argument in taken(method):
        default = "" if argument.get("required") or "defaultKey" in argument else "; optional"
        lines += documented(f"- [{name_of(argument)}]: {plain(argument['use'])}{default}")
    if "moreEntries" in method:
        lines += documented(f"- [entries]: {method['moreEntries']}")
    codes = dict.fromkeys(error["code"] for error in channel["errors"] if method["name"] in error["methods"])
    if codes:
        lines += "  ///\n" + documented(f"Throws a [HostException] with the code {' or '.join(codes)}.")
    if method["reply"].get("dart") == "frame":
        lines += documented("Throws a [FrameException] when there is no frame.")
    return f"{lines}  Future<{kind}> {name_of(method)}{signature(method)} async {text}\n"


def event_source(event):
    lines = documented(f"`{event['name']}`: {sentence(event['sent'])}")
    if "type" not in event:
        return f"{lines}  Stream<void> get {name_of(event)} => _on('{event['name']}');\n"
    lines += documented(f"Argument: {plain(event['argument'])}.")
    kind, reader = EVENT_READERS[event["type"]]
    return (f"{lines}  Stream<{kind}> get {name_of(event)} =>\n"
            f"      _on('{event['name']}').map<{kind}>((MethodCall call) => {reader});\n")


EVENT_SUPPORT = """
  Stream<MethodCall> _on(String name) =>
      _calls.stream.where((MethodCall call) => call.method == name);

  // A missing argument of an event is read as an empty text.
  static String _text(MethodCall call) => (call.arguments as String?) ?? '';
"""


def source(channel, description):
    has_events = bool(channel["events"])
    imports = (["import 'dart:async';"] if has_events else []) + ["import 'dart:typed_data';", "",
               "import 'package:flutter/services.dart';", "", "import 'errors.dart';", "import 'values.dart';"]
    if has_events:
        opening = (f"  {channel['class']}() {{\n    _channel.setMethodCallHandler((MethodCall call) async {{\n"
                   "      _calls.add(call);\n    });\n  }\n")
        fields = "  final StreamController<MethodCall> _calls =\n      StreamController<MethodCall>.broadcast();\n"
        about = ("/// Make one, in `main` before `runApp`: it sets the channel's handler, and events that "
                 "come before\n/// it exists are lost, except the last one, which the engine keeps.")
    else:
        opening, fields = f"  {channel['class']}();\n", ""
        about = "/// Make one."
    parts = [f"// Made from interface/channel.json by interface/generate. Not compiled by this project.\n\n"
             + "\n".join(imports) + "\n\n"
             f"/// The channel `{channel['name']}`: {channel['serves']}.\n///\n{about}\n"
             "/// docs/channel.md of the host is the reference.\n"
             f"class {channel['class']} {{\n{opening}\n"
             f"  /// The version of the channels that this client was made for.\n"
             f"  static const int version = {description['version']};\n\n"
             f"  static const MethodChannel _channel =\n      MethodChannel('{channel['name']}');\n{fields}\n"
             "  Future<T?> _invoke<T>(String method, [Object? arguments]) =>\n"
             "      translated<T?>(() => _channel.invokeMethod<T>(method, arguments));\n"
             + (EVENT_SUPPORT if has_events else "")]
    parts += [method_source(channel, method) for method in channel["methods"]]
    parts += [event_source(event) for event in channel["events"]]
    return "\n".join(parts) + "}\n"
