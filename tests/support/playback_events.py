"""The rules for the events of any stream, healthy or broken, checked on recorded events."""

import re

ERROR = "Media player encountered an error"
WITHOUT_ARGUMENT = {"onOpening", "onPlaying", "onMediaChanged", "onPaused", "onStopped"}
_SIX_DECIMALS = re.compile(r"-?\d+\.\d{6}")
_INTEGER = re.compile(r"-?\d+")


def _six_decimals(low, high):
    return lambda text: bool(_SIX_DECIMALS.fullmatch(text)) and low <= float(text) <= high


WITH_ARGUMENT = {
    "onBuffering": _six_decimals(0, 100),
    "onPositionChanged": _six_decimals(0, 1),
    "onTimeChanged": lambda text: bool(_INTEGER.fullmatch(text)),
    "onSeekableChanged": lambda text: text in ("true", "false"),
    "onError": lambda text: text == ERROR,
}


def times(events):
    """Returns the milliseconds of the time events."""
    return [int(event.arguments) for event in events if event.method == "onTimeChanged"]


def broken_rules(events, main_thread):
    """Returns a sentence for each rule that one stream's events break, from its setMedia on. A correct host breaks
    none.

    When the player is idle, libvlc raises onMediaChanged inside the call that sets the media, so on the main thread."""
    return [*_wrong_arguments(events), *_wrong_order([event.method for event in events]),
            *[f"{event} came from the main thread" for event in events
              if event.thread == main_thread and event.method != "onMediaChanged"]]


def _wrong_arguments(events):
    for event in events:
        if event.method in WITHOUT_ARGUMENT:
            if event.arguments is not None:
                yield f"{event} has an argument"
        elif event.method not in WITH_ARGUMENT:
            yield f"{event} is not an event of a single stream"
        elif not isinstance(event.arguments, str) or not WITH_ARGUMENT[event.method](event.arguments):
            yield f"{event} has a wrong argument"


def _wrong_order(methods):
    for method in ("onMediaChanged", "onOpening"):
        if methods.count(method) != 1:
            yield f"{method} came {methods.count(method)} times"
    order = [method for method in methods if method in ("onMediaChanged", "onOpening", "onPlaying")]
    if order[:3] != ["onMediaChanged", "onOpening", "onPlaying"][:len(order)]:
        yield f"the stream began with {order}"
    if "onTimeChanged" in methods and "onPlaying" not in methods[:methods.index("onTimeChanged")]:
        yield "the time ran before onPlaying"
    if "onStopped" in methods and methods.index("onStopped") != len(methods) - 1:
        yield f"after onStopped came {methods[methods.index('onStopped') + 1:]}"
