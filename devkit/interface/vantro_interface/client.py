"""An interface for a host: connects to its loopback engine, calls the host's methods, and keeps its messages.

    client = Client(port)
    client.invoke("setMedia", {"url": "http://..."})
    client.wait_for("onPlaying")

One thread reads the socket; every other method may be called from any thread.
"""

import dataclasses
import json
import socket
import struct
import threading
import time

from . import codec
from .frames import Frame, Kind, read_frame

PLAYER_CHANNEL = "org.vantro.player/communicate"
THUMBNAIL_CHANNEL = "org.vantro.thumbnail/worker"
DEFAULT_TIMEOUT = 20.0


class ConnectionLost(Exception):
    """The host's process ended or closed the socket."""


class NoListener(Exception):
    """No listener is registered on the channel of that engine."""


class NotAnswered(Exception):
    """The host's handler returned without an answer."""


class WaitTimeout(AssertionError):
    """The awaited condition did not hold in time; the text lists what came instead."""


@dataclasses.dataclass
class Event:
    """One method call of the host. The time is in seconds of the host's clock, taken when the call was sent."""

    engine: int
    channel: str
    method: str
    arguments: object
    time: float
    thread: int

    def __str__(self):
        arguments = "" if self.arguments is None else f" {shorten(self.arguments)}"
        return f"{self.method}{arguments}"


@dataclasses.dataclass
class Input:
    """One key or mouse message that reached a view's window."""

    engine: int
    message: int
    wparam: int
    lparam: int


@dataclasses.dataclass
class Window:
    """One window of the host's process, as it was at the time of the request."""

    handle: int
    parent: int
    owner: int
    id: int
    class_name: str
    title: str
    rect: tuple
    style: int
    exstyle: int
    visible: bool
    enabled: bool

    @property
    def size(self):
        return self.rect[2] - self.rect[0], self.rect[3] - self.rect[1]


def shorten(value, limit=160):
    text = repr(value)
    return text if len(text) <= limit else f"{text[:limit]}... ({len(text)} characters)"


class Client:
    def __init__(self, port, timeout=DEFAULT_TIMEOUT, on_event=None):
        """Connects and waits for the greeting. on_event, if given, is called on the reading thread with each Event."""
        self.timeout = timeout
        self.events = []
        self.inputs = []
        self.violations = []
        self.undecodable = []
        self.dropped = 0
        self.engines = []
        self.hello = None
        self._on_event = on_event
        self._answers = {}
        self._next_id = 1
        self._closed = None
        self._changed = threading.Condition()
        self._send_lock = threading.Lock()
        self._socket = socket.create_connection(("127.0.0.1", port), timeout)
        self._socket.settimeout(None)
        self._socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        threading.Thread(target=self._read, daemon=True).start()
        self._wait(lambda: self.hello, timeout, "the greeting")

    def close(self):
        try:
            self._socket.shutdown(socket.SHUT_RDWR)
        except OSError:
            pass
        self._socket.close()

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.close()

    @property
    def connected(self):
        return self._closed is None

    # Requests.

    def invoke(self, method, arguments=None, *, engine=None, channel=PLAYER_CHANNEL, timeout=None):
        """Calls a method and returns its result. Raises MethodError or NotImplementedByHost according to the host's
        answer, and NoListener or NotAnswered when there is none."""
        answer = self.send_bytes(codec.encode_method_call(method, arguments), engine=engine, channel=channel,
                                 timeout=timeout)
        return codec.decode_envelope(answer)

    def send_bytes(self, data, *, engine=None, channel=PLAYER_CHANNEL, timeout=None):
        """Sends the bytes unchanged and returns the bytes of the answer."""
        frame = self._ask(Frame(Kind.MESSAGE, self._engine(engine), channel=channel, payload=bytes(data)), timeout)
        if frame.kind == Kind.NO_LISTENER:
            raise NoListener(f"engine {frame.engine}, {channel}")
        if frame.kind == Kind.NOT_ANSWERED:
            raise NotAnswered(f"engine {frame.engine}, {channel}")
        return frame.payload

    def settle(self, timeout=None):
        """Returns when the host's message loop has handled a message. Everything posted before it is then done."""
        try:
            self.send_bytes(b"", channel="settle", timeout=timeout)
        except NoListener:
            pass

    def command(self, name, payload=b"", timeout=None):
        """Sends a command about the process to the engine; devkit/engine/inspect.h lists the commands."""
        return self._ask(Frame(Kind.COMMAND, channel=name, payload=payload), timeout).payload

    # Windows.

    def windows(self, class_name=None):
        """Returns the process's windows in the system's order: owners before owned windows, parents before
        children."""
        rows = json.loads(self.command("windows"))
        windows = [
            Window(row["handle"], row["parent"], row["owner"], row["id"], row["class"], row["title"],
                   tuple(row["rect"]), row["style"], row["exstyle"], row["visible"], row["enabled"])
            for row in rows
        ]
        return [window for window in windows if class_name in (None, window.class_name)]

    def focus(self):
        return json.loads(self.command("focus"))

    def post(self, handle, message, wparam=0, lparam=0):
        return json.loads(self.command("post", _message(handle, message, wparam, lparam)))["ok"]

    def send(self, handle, message, wparam=0, lparam=0):
        """Sends the message and returns its result; None if the window's thread did not answer within 5 s."""
        answer = json.loads(self.command("send", _message(handle, message, wparam, lparam)))
        return answer["result"] if answer["ok"] else None

    def capture(self, handle):
        """Returns the window's picture as the bytes of a BMP file."""
        return self.command("capture", struct.pack("<Q", handle))

    # Waiting. Only poll asks the host repeatedly.

    def mark(self):
        """Returns a position in the events. wait_for ignores the events before the position that it is given."""
        with self._changed:
            return len(self.events)

    def since(self, mark=0):
        with self._changed:
            return list(self.events[mark:])

    def wait_for(self, method, condition=None, *, after=0, engine=None, timeout=None):
        """Returns the first event of that method after the position for which the condition holds."""

        def found():
            for event in self.events[after:]:
                if event.method == method and engine in (None, event.engine) and (not condition or condition(event)):
                    return event
            return None

        return self._wait(found, timeout, f"the event {method}", after)

    def wait_until(self, condition, what, timeout=None):
        """Waits until the condition holds. It is tested after each frame that arrives."""
        return self._wait(condition, timeout, what)

    def wait_closed(self, timeout=None):
        self._wait(lambda: self._closed is not None, timeout, "the end of the connection", end=False)

    def poll(self, question, condition, what, timeout=None, pause=0.02):
        """Calls question until the condition holds for its answer, and returns the answer. For state that no event
        reports."""
        limit = time.monotonic() + (timeout or self.timeout)
        while True:
            answer = question()
            if condition(answer):
                return answer
            if time.monotonic() > limit:
                raise WaitTimeout(f"{what} did not come within {timeout or self.timeout} s; last: {shorten(answer)}")
            time.sleep(pause)

    # The socket.

    def _engine(self, engine):
        if engine is not None:
            return engine
        with self._changed:
            return self.engines[0] if self.engines else 1

    def _ask(self, frame, timeout):
        with self._changed:
            if self._closed is not None:
                raise ConnectionLost(self._closed)
            frame.id = self._next_id
            self._next_id += 1
        try:
            with self._send_lock:
                self._socket.sendall(frame.encode())
        except OSError as error:
            raise ConnectionLost(str(error)) from error
        what = f"the answer to {frame.channel or frame.kind.name}"
        self._wait(lambda: frame.id in self._answers, timeout, what)
        with self._changed:
            return self._answers.pop(frame.id)

    def _wait(self, condition, timeout, what, after=0, end=True):
        limit = time.monotonic() + (timeout or self.timeout)
        with self._changed:
            while True:
                value = condition()
                if value:
                    return value
                if end and self._closed is not None:
                    raise ConnectionLost(f"{self._closed}, while waiting for {what}")
                left = limit - time.monotonic()
                if left <= 0:
                    seen = ", ".join(str(event) for event in self.events[after:][-12:]) or "nothing"
                    raise WaitTimeout(f"{what} did not come within {timeout or self.timeout} s; seen: {seen}")
                self._changed.wait(left)

    def _read(self):
        reason = "the host closed the connection"
        try:
            while frame := read_frame(self._socket):
                self._take(frame)
        except (OSError, ValueError) as error:
            reason = str(error)
        with self._changed:
            self._closed = reason
            self._changed.notify_all()

    def _take(self, frame):
        event = None
        with self._changed:
            if frame.kind == Kind.HELLO:
                self.hello = json.loads(frame.payload)
                self.engines = list(self.hello["engines"])
            elif frame.kind == Kind.ENGINE_CREATED:
                if frame.engine not in self.engines:
                    self.engines.append(frame.engine)
            elif frame.kind == Kind.ENGINE_DESTROYED:
                if frame.engine in self.engines:
                    self.engines.remove(frame.engine)
            elif frame.kind == Kind.MESSAGE:
                event = self._take_message(frame)
            elif frame.kind == Kind.VIOLATION:
                self.violations.append(frame.payload.decode())
            elif frame.kind == Kind.DROPPED:
                self.dropped += struct.unpack("<Q", frame.payload)[0]
            elif frame.kind == Kind.INPUT:
                self.inputs.append(Input(frame.engine, *struct.unpack("<IQq", frame.payload)))
            else:
                self._answers[frame.id] = frame
            self._changed.notify_all()
        if event and self._on_event:
            self._on_event(event)

    def _take_message(self, frame):
        try:
            method, arguments = codec.decode_method_call(frame.payload)
        except codec.CodecError as error:
            self.undecodable.append((frame.channel, frame.payload, str(error)))
            return None
        event = Event(frame.engine, frame.channel, method, arguments, frame.time / 1e6, frame.thread)
        self.events.append(event)
        return event


def _message(handle, message, wparam, lparam):
    return struct.pack("<QIQq", handle, message, wparam & (2**64 - 1), lparam)
