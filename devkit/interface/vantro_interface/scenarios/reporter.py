"""Reports a scenario while it runs: each request, reply and event with its time, and a progress line."""

import contextlib
import sys
import threading
import time

from ..client import PLAYER_CHANNEL, shorten
from ..codec import MethodError, NotImplementedByHost

# Shown only in the progress line; the trace file has all of them.
FREQUENT = {"onTimeChanged", "onPositionChanged", "onBuffering"}


class StepFailed(Exception):
    """A step failed. The text is shown to the user of the demo."""


class Reporter:
    def __init__(self, trace_path):
        self._began = time.monotonic()
        self._trace = open(trace_path, "w", encoding="utf-8")
        self._lock = threading.Lock()
        self._progress = {}
        self._progress_shown = 0.0
        self._progress_width = 0
        self._terminal = sys.stdout.isatty()
        self.steps = []
        self.requests = 0
        self.events = 0

    def close(self):
        self._trace.close()

    def line(self, text, trace_only=False):
        stamp = f"{time.monotonic() - self._began:8.3f}"
        with self._lock:
            if not self._trace.closed:
                self._trace.write(f"{stamp}  {text}\n")
            if not trace_only:
                self._clear_progress()
                print(f"{stamp}  {text}", flush=True)

    @contextlib.contextmanager
    def step(self, title):
        """Runs one step. Its duration goes into the summary."""
        self.line(f"== {title}")
        began = time.monotonic()
        yield
        self.steps.append((title, time.monotonic() - began))

    def on_event(self, event):
        self.events += 1
        frequent = event.method in FREQUENT
        self.line(f"<- [{event.engine}] {event}", trace_only=frequent)
        if frequent:
            self._progress[event.method] = event.arguments
            self._show_progress()

    def invoke(self, client, method, arguments=None, *, engine=None, channel=PLAYER_CHANNEL, timeout=None):
        """Sends a request and reports it and its reply."""
        self.requests += 1
        text = "" if arguments is None else f" {shorten(arguments)}"
        self.line(f"-> {f'[{engine}] ' if engine else ''}{method}{text}")
        try:
            reply = client.invoke(method, arguments, engine=engine, channel=channel, timeout=timeout)
        except MethodError as error:
            self.line(f" = error {error.code}: {error.message}")
            raise StepFailed(f"{method} failed: {error.code}: {error.message}") from error
        except NotImplementedByHost as error:
            self.line(" = not implemented")
            raise StepFailed(f"the host has no method {method}") from error
        self.line(f" = {shorten(reply)}")
        return reply

    def expect(self, client, method, arguments=None, *, reply=True, **options):
        """Like invoke, for a request whose reply is known."""
        actual = self.invoke(client, method, arguments, **options)
        if actual != reply:
            raise StepFailed(f"{method} answered {actual!r}, not {reply!r}")

    def _show_progress(self):
        # A terminal is updated often, a log file gets one line a second.
        now = time.monotonic()
        if now - self._progress_shown < (0.1 if self._terminal else 1.0):
            return
        self._progress_shown = now
        milliseconds = int(self._progress.get("onTimeChanged") or 0)
        text = (f"{now - self._began:8.3f}  .. onTimeChanged {milliseconds} ms, position "
                f"{self._progress.get('onPositionChanged', '-')}, buffer {self._progress.get('onBuffering', '-')}")
        with self._lock:
            if self._terminal:
                self._clear_progress()
                sys.stdout.write(text)
                sys.stdout.flush()
                self._progress_width = len(text)
            else:
                print(text, flush=True)

    def _clear_progress(self):
        if self._progress_width:
            sys.stdout.write("\r" + " " * self._progress_width + "\r")
            self._progress_width = 0
