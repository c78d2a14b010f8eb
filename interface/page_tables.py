"""Generates the tables of docs/channel.md as Markdown."""

import json
import re

TYPE_NAMES = {"integer": "integer", "number": "number", "boolean": "Boolean", "string": "string", "double": "double",
              "integer32": "32-bit integer"}
# A table is between these two comments.
PLACE = re.compile(r"(<!-- table: ([\w ]+) -->\n).*?(<!-- end -->)", re.DOTALL)


def row(*cells):
    return "| " + " | ".join(cells) + " |"


def table(header, rows):
    return "\n".join([row(*header), "|" + "---|" * len(header), *rows]) + "\n"


def code(value):
    return f"`{value}`"


def default_of(argument):
    """Returns the default as the page shows it: texts unchanged, true and false as code."""
    if "defaultKey" in argument:
        return f"the value of `{argument['defaultKey']}`"
    value = argument["default"]
    if value == "":
        return "empty"
    return code(json.dumps(value)) if isinstance(value, bool) else json.dumps(value)


def arguments_text(method):
    if "argumentsText" in method:
        return method["argumentsText"]
    keys = [f"{code(argument['key'])} {TYPE_NAMES[argument['type']]} ({default_of(argument)})"
            for argument in method.get("arguments", [])]
    return ", ".join(keys) or "none"


def errors_of(channel, method):
    return [error for error in channel["errors"] if method["name"] in error["methods"]]


def reply_text(channel, method):
    reply = method["reply"]
    if "text" in reply:
        return reply["text"]
    if reply["type"] == "true":
        return "`true`, or error" if errors_of(channel, method) else "`true`, always"
    return "Boolean"


def methods(channel):
    return table(["Method", "Arguments", "What it does", "Reply"],
                 [row(code(method["name"]), arguments_text(method), method["does"], reply_text(channel, method))
                  for method in channel["methods"]])


def find(channel, name):
    return next(method for method in channel["methods"] if method["name"] == name)


def set_media(channel):
    return table(["Key", "Type", "Default", "Use"],
                 [row(code(argument["key"]), TYPE_NAMES[argument["type"]],
                      code(default_of(argument).strip("`")) if argument["type"] == "boolean" else default_of(argument),
                      argument["use"])
                  for argument in find(channel, "setMedia")["arguments"]])


def get_frame(channel):
    return table(["Key of `getFrame`", "Type", "Meaning"],
                 [row(code(argument["key"]), TYPE_NAMES[argument["type"]], argument["use"])
                  for argument in find(channel, "getFrame")["arguments"]])


def errors(channel):
    """Merges rows with the same code and message into one."""
    merged = {}
    for error in channel["errors"]:
        names = ", ".join(map(code, error["methods"])) + (f" {error['when']}" if "when" in error else "")
        details = code(json.dumps(error["details"])) if "details" in error else "none"
        merged.setdefault((code(error["code"]), code(error["message"]), details), []).append(names)
    return table(["Code", "Message", "Details", "Methods"],
                 [row(*key, ", ".join(names)) for key, names in merged.items()])


def toasts(channel):
    return table(["Message", "`short`", "Sent by"],
                 [row(code(toast["message"]), code(json.dumps(toast["short"])), toast["sent"])
                  for toast in channel["toasts"]])


def events(channel):
    return table(["Method", "Argument", "Sent"],
                 [row(code(event["name"]), event.get("argument", "none"), event["sent"]) for event in channel["events"]])


def failures(channel, limits):
    def wait(failure):
        waits = failure["waits"]
        return "until it fails" if waits is None else f"{sum(limits[name] for name in waits)} ms" if waits else "none"

    return table(["`error`", "When", "Waits", "Temporary file", "Player"],
                 [row(code(failure["error"]), failure["when"], wait(failure), failure["file"], failure["player"])
                  for failure in channel["failures"]])


def fill(page, description):
    """Returns the page with each table generated from the description."""
    player, thumbnail = description["channels"]
    made = {
        "channels": table(["Channel", "Serves"], [row(code(channel["name"]), channel["serves"])
                                                  for channel in description["channels"]]),
        "player methods": methods(player),
        "setMedia": set_media(player),
        "player errors": errors(player),
        "toasts": toasts(player),
        "events": events(player),
        "thumbnail methods": methods(thumbnail),
        "getFrame": get_frame(thumbnail),
        "getFrame failures": failures(thumbnail, description["limits"]),
    }
    places = [match[2] for match in PLACE.finditer(page)]
    if sorted(places) != sorted(made):
        raise ValueError(f"docs/channel.md has places for {places}, and these tables are made: {list(made)}")
    return PLACE.sub(lambda match: match[1] + made[match[2]] + match[3], page)
