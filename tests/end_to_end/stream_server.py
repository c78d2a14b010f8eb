"""Serves the streams of devkit/streams/make-streams on loopback, healthy and broken. Needs no Python packages.

    with StreamServer(streams_dir) as server:
        server.url("test.ts")                      # served by nginx, with ranges
        server.fault_url("stall?at=700000&for=5")  # served by a small server that misbehaves on purpose

nginx serves the addresses of url():

    test.ts, red.ts, tracks.mp4, ...   the files that make-streams lists, seekable by ranges
    hls/index.m3u8                     a playlist with an end
    live/index.m3u8                    a live playlist with a sliding window of 4 segments of 1 s; the encoder starts
                                       with the first call of live_url(), pause_live() stops it, resume_live() lets
                                       it continue
    redirect/NAME                      302 to NAME
    missing.ts                         404 (like any unknown name)

The addresses of fault_url(). file=NAME is the file that is sent, test.ts by default. Byte positions refer to it:

    stall?at=BYTES&for=SECONDS   sends up to BYTES, nothing for SECONDS (default 15) on an open connection, then the
                                 rest; a client that reads ahead shows the gap when it has played those BYTES
    reset?at=BYTES               sends up to BYTES, then resets the connection
    garbage?bytes=N              N (default 1 MiB) bytes that are no stream, the same each time
    slow?wait=SECONDS            accepts the connection and answers after SECONDS (default 2)
    paced?seconds=S              sends the file evenly over S seconds (default 30), like a live source

As a command, `stream_server.py STREAMS_DIR` serves until it is terminated. When all addresses answer, it prints a line
for each: "NAME URL".
"""

import ctypes
import fcntl
import random
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import termios
import threading
import time
from pathlib import Path
from urllib.parse import parse_qsl, urlsplit

_CHUNK = 16384
_PR_SET_PDEATHSIG = 1
_NGINX_CONFIGURATION = """
daemon off;
master_process off;
pid nginx.pid;
events {{ worker_connections 256; }}
http {{
  access_log access.log;
  client_body_temp_path body; proxy_temp_path proxy; fastcgi_temp_path fastcgi; uwsgi_temp_path uwsgi;
  scgi_temp_path scgi;
  sendfile on;
  default_type application/octet-stream;
  types {{ video/mp2t ts; video/mp4 mp4; application/vnd.apple.mpegurl m3u8; }}
  server {{
    listen 127.0.0.1:{port};
    root {streams};
    location /live/ {{ alias {live}/; add_header Cache-Control no-cache; }}
    location ~ ^/redirect/(?<target>.+)$ {{ return 302 /$target; }}
  }}
}}
"""


def _die_with_parent():
    ctypes.CDLL(None).prctl(_PR_SET_PDEATHSIG, signal.SIGTERM)


def _spawn(arguments, log):
    return subprocess.Popen(
        arguments, stdin=subprocess.DEVNULL, stdout=log, stderr=log, preexec_fn=_die_with_parent
    )


def _free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def _wait_for(condition, seconds, what):
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise TimeoutError(f"{what} did not come within {seconds} s")
        time.sleep(0.02)


def _end(process):
    if process.poll() is None:
        process.send_signal(signal.SIGCONT)
        process.terminate()
    try:
        process.wait(10)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


class FaultServer:
    """Answers each GET with one of the faults that this module's docstring lists. requests lists the paths in order."""

    def __init__(self, streams_dir):
        self._streams = Path(streams_dir)
        self._ending = threading.Event()
        self._connections = set()
        self._lock = threading.Lock()
        self.requests = []
        self._listener = socket.create_server(("127.0.0.1", 0), backlog=64)
        self.port = self._listener.getsockname()[1]
        self._thread = threading.Thread(target=self._accept, daemon=True)
        self._thread.start()

    def close(self):
        self._ending.set()
        self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()
        with self._lock:
            for connection in self._connections:
                try:
                    connection.shutdown(socket.SHUT_RDWR)
                except OSError:
                    pass
        self._thread.join()

    def _accept(self):
        while not self._ending.is_set():
            try:
                connection, _ = self._listener.accept()
            except OSError:
                return
            with self._lock:
                self._connections.add(connection)
            threading.Thread(target=self._serve, args=(connection,), daemon=True).start()

    def _serve(self, connection):
        try:
            request = b""
            while b"\r\n\r\n" not in request:
                received = connection.recv(4096)
                if not received:
                    return
                request += received
            path = request.split(b" ")[1].decode()
            self.requests.append(path)
            address = urlsplit(path)
            self._answer(connection, address.path.strip("/"), dict(parse_qsl(address.query)))
        except OSError:
            pass  # The client disconnected, or this server is ending.
        finally:
            with self._lock:
                self._connections.discard(connection)
            connection.close()

    def _answer(self, connection, fault, options):
        faults = {
            "stall": self._stall,
            "reset": self._reset,
            "garbage": self._garbage,
            "slow": self._slow,
            "paced": self._paced,
        }
        if fault not in faults:
            connection.sendall(b"HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n")
            return
        faults[fault](connection, options)

    def _content(self, options):
        return (self._streams / options.get("file", "test.ts")).read_bytes()

    @staticmethod
    def _send_head(connection, length):
        head = f"HTTP/1.1 200 OK\r\nContent-Type: video/mp2t\r\nContent-Length: {length}\r\nConnection: close\r\n\r\n"
        connection.sendall(head.encode())

    def _stall(self, connection, options):
        content = self._content(options)
        at = int(options["at"])
        self._send_head(connection, len(content))
        connection.sendall(content[:at])
        self._ending.wait(float(options.get("for", "15")))
        connection.sendall(content[at:])

    def _reset(self, connection, options):
        content = self._content(options)
        self._send_head(connection, len(content))
        connection.sendall(content[: int(options["at"])])
        # Unsent bytes would be lost with the connection, so the client receives them first.
        _wait_for(lambda: self._ending.is_set() or _unsent(connection) == 0, 60, "the client's reading")
        connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))

    def _garbage(self, connection, options):
        content = random.Random(4).randbytes(int(options.get("bytes", 1 << 20)))
        self._send_head(connection, len(content))
        connection.sendall(content)

    def _slow(self, connection, options):
        self._ending.wait(float(options.get("wait", "2")))
        content = self._content(options)
        self._send_head(connection, len(content))
        connection.sendall(content)

    def _paced(self, connection, options):
        content = self._content(options)
        seconds = float(options.get("seconds", "30"))
        self._send_head(connection, len(content))
        start = time.monotonic()
        for offset in range(0, len(content), _CHUNK):
            due = start + seconds * offset / len(content)
            if self._ending.wait(max(0.0, due - time.monotonic())):
                return
            connection.sendall(content[offset : offset + _CHUNK])


def _unsent(connection):
    return struct.unpack("i", fcntl.ioctl(connection, termios.TIOCOUTQ, b"\0" * 4))[0]


class StreamServer:
    """nginx over a folder of streams, a live encoder on request, and the fault server. All end with the block."""

    def __init__(self, streams_dir):
        self._streams = Path(streams_dir).resolve()
        self._folder = None
        self._nginx = None
        self._encoder = None
        self.faults = None

    def __enter__(self):
        self._folder = Path(tempfile.mkdtemp(prefix="vantro-streams-"))
        (self._folder / "live").mkdir()
        self._log = open(self._folder / "server.log", "wb")
        try:
            self._start_nginx()
            self.faults = FaultServer(self._streams)
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        if self.faults:
            self.faults.close()
        for process in (self._encoder, self._nginx):
            if process:
                _end(process)
        self._log.close()
        shutil.rmtree(self._folder, ignore_errors=True)

    def url(self, name):
        return f"http://127.0.0.1:{self._port}/{name}"

    def fault_url(self, fault):
        return f"http://127.0.0.1:{self.faults.port}/{fault}"

    def live_url(self):
        """Starts the encoder if it is not running, waits for a full window and returns the playlist's address."""
        playlist = self._folder / "live" / "index.m3u8"
        if not self._encoder:
            self._encoder = _spawn(
                ["ffmpeg", "-nostdin", "-hide_banner", "-loglevel", "error", "-re", "-stream_loop", "-1"]
                + ["-i", str(self._streams / "test.ts"), "-c", "copy", "-f", "hls", "-hls_time", "1"]
                + ["-hls_list_size", "4", "-hls_flags", "delete_segments+temp_file"]
                + ["-hls_segment_filename", str(playlist.parent / "live%d.ts"), str(playlist)],
                self._log,
            )
        _wait_for(
            lambda: playlist.exists() and playlist.read_text().count("#EXTINF") >= 3, 20, "the live playlist"
        )
        return self.url("live/index.m3u8")

    def pause_live(self):
        self._encoder.send_signal(signal.SIGSTOP)

    def resume_live(self):
        self._encoder.send_signal(signal.SIGCONT)

    def requests(self):
        """Returns the lines of nginx's access log so far."""
        return (self._folder / "access.log").read_text().splitlines()

    def _start_nginx(self):
        program = shutil.which("nginx") or "/usr/sbin/nginx"
        for _ in range(5):
            self._port = _free_port()
            configuration = self._folder / "nginx.conf"
            configuration.write_text(
                _NGINX_CONFIGURATION.format(port=self._port, streams=self._streams, live=self._folder / "live")
            )
            self._nginx = _spawn(
                [program, "-p", str(self._folder), "-c", str(configuration), "-e", "error.log"], self._log
            )
            _wait_for(lambda: self._answers() or self._nginx.poll() is not None, 10, "nginx's answer")
            if self._nginx.poll() is None:
                return
        raise RuntimeError("nginx does not start: " + (self._folder / "error.log").read_text())

    def _answers(self):
        try:
            socket.create_connection(("127.0.0.1", self._port), timeout=1).close()
            return True
        except OSError:
            return False


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: stream_server.py STREAMS_DIR")
    ended = threading.Event()
    for number in (signal.SIGTERM, signal.SIGINT):
        signal.signal(number, lambda *_: ended.set())
    with StreamServer(sys.argv[1]) as server:
        names = sorted(path.name for path in Path(sys.argv[1]).glob("*.*") if not path.name.startswith("."))
        for name in names + ["hls/index.m3u8", "redirect/test.ts", "missing.ts"]:
            print(name, server.url(name))
        print("live/index.m3u8", server.live_url())
        for fault in ("stall?at=700000", "reset?at=700000", "garbage", "slow", "paced"):
            print(fault, server.fault_url(fault), flush=True)
        ended.wait()


if __name__ == "__main__":
    main()
