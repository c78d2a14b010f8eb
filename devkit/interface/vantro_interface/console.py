"""A console for a running host: it sends typed requests and prints replies and events.

    setMedia url=http://127.0.0.1:8080/clip.ts isLiveStream=false
    seek positionMs=5000
    getFrame {"mediaId": "1", "proxyUrl": "http://...", "timeSeconds": 4.0, "width": 320, "height": 0}

Arguments are key=value pairs or one JSON value. Each value of a pair is read as JSON, or as text if it is
not JSON. The tabulator key completes names and keys. The history is kept in out/console_history. Lines that begin with a dot are
commands to the console itself.
"""

import argparse
import json
import readline
import shlex
import sys

from . import codec, methods
from .client import (PLAYER_CHANNEL, THUMBNAIL_CHANNEL, Client, ConnectionLost, NoListener, NotAnswered, WaitTimeout,
                     shorten)
from .host import ROOT

PORT_FILE = ROOT / "out/demo/host/port.txt"
HISTORY = ROOT / "out/console_history"
HELP = """  METHOD [key=value ...]   a request of the player channel, or of the thumbnail channel by its names
  .engine N                the window that requests go to
  .windows                 the windows of the process
  .quiet / .loud           hide or show time, position and buffering events
  .help  .quit"""
FREQUENT = {"onTimeChanged", "onPositionChanged", "onBuffering"}
COMMANDS = [".engine", ".windows", ".quiet", ".loud", ".help", ".quit"]


def parse_value(text):
    try:
        return json.loads(text)
    except ValueError:
        return text


def parse_request(line):
    """Returns the method of a typed line and its arguments; None for no arguments."""
    method, _, rest = line.strip().partition(" ")
    rest = rest.strip()
    if not rest:
        return method, None
    if rest[0] in "{[\"" or "=" not in rest:
        return method, parse_value(rest)
    pairs = [part.partition("=") for part in shlex.split(rest)]
    wrong = [key for key, equals, _ in pairs if not equals]
    if wrong:
        raise ValueError(f"'{wrong[0]}' is not key=value")
    return method, {key: parse_value(value) for key, _, value in pairs}


def completions(line, text):
    """Returns the possible completions of the text, which is the last word of the line."""
    words = line.split(" ")
    if len(words) == 1:
        names = [*methods.PLAYER_METHODS, *methods.THUMBNAIL_METHODS, *COMMANDS]
        return [name for name in names if name.startswith(text)]
    keys = methods.PLAYER_METHODS.get(words[0], methods.THUMBNAIL_METHODS.get(words[0], []))
    return [f"{key}=" for key in keys if key.startswith(text)]


class Console:
    def __init__(self, client):
        self.client = client
        self.engine = None
        self.quiet = True

    def event(self, event):
        if not (self.quiet and event.method in FREQUENT):
            print(f"\r  <- [{event.engine}] {event}")

    def own(self, line):
        command, _, argument = line.partition(" ")
        if command == ".engine":
            self.engine = int(argument)
        elif command in (".quiet", ".loud"):
            self.quiet = command == ".quiet"
        elif command == ".windows":
            for window in self.client.windows():
                print(f"  {window.handle:#x} {window.class_name} {window.title!r} {window.rect}"
                      f"{'' if window.visible else ' hidden'}")
        else:
            print(HELP)

    def request(self, line):
        method, arguments = parse_request(line)
        thumbnail = method in methods.THUMBNAIL_METHODS
        channel = THUMBNAIL_CHANNEL if thumbnail else PLAYER_CHANNEL
        try:
            print(f"  = {shorten(self.client.invoke(method, arguments, engine=self.engine, channel=channel), 2000)}")
        except codec.MethodError as error:
            print(f"  error {error.code}: {error.message} {'' if error.details is None else error.details}")
        except codec.NotImplementedByHost:
            print("  not implemented")
        except (NoListener, NotAnswered, WaitTimeout) as error:
            print(f"  {type(error).__name__}: {error}")

    def run(self):
        while self.client.connected:
            try:
                line = input("vantro> ").strip()
            except (EOFError, KeyboardInterrupt):
                print()
                return
            if line == ".quit":
                return
            try:
                if line.startswith("."):
                    self.own(line)
                elif line:
                    self.request(line)
            except ValueError as error:
                print(f"  {error}")


def set_up_line_editing():
    HISTORY.parent.mkdir(parents=True, exist_ok=True)
    if HISTORY.exists():
        readline.read_history_file(HISTORY)
    readline.set_completer_delims(" ")
    readline.set_completer(lambda text, state: [*completions(readline.get_line_buffer(), text), None][state])
    readline.parse_and_bind("tab: complete")


def main():
    parser = argparse.ArgumentParser(prog="./dev console", description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("port", nargs="?", type=int,
                        help="the loopback engine's port; that of the running demo if left out")
    port = parser.parse_args().port
    if port is None:
        if not PORT_FILE.exists():
            sys.exit("no host runs: start one with ./dev demo --stay in another terminal, or give its port")
        port = int(PORT_FILE.read_text())
    console = Console(None)
    try:
        console.client = Client(port, on_event=console.event)
    except OSError as error:
        sys.exit(f"nothing answers on port {port} ({error}): is the host still running?")
    set_up_line_editing()
    print(f"connected to process {console.client.hello['pid']}, engines {console.client.engines}; .help lists the commands")
    try:
        console.run()
    except ConnectionLost as error:
        print(error)
    finally:
        readline.write_history_file(HISTORY)
        console.client.close()


if __name__ == "__main__":
    main()
