"""The frames of the loopback socket; devkit/engine/frame.h describes them."""

import dataclasses
import enum
import struct

_HEADER = struct.Struct("<BiQQIH")
_MAXIMUM = 256 << 20


class Kind(enum.IntEnum):
    HELLO = 1
    ENGINE_CREATED = 2
    ENGINE_DESTROYED = 3
    MESSAGE = 4
    REPLY = 5
    NO_LISTENER = 6
    NOT_ANSWERED = 7
    VIOLATION = 8
    DROPPED = 9
    INPUT = 10
    RESULT = 11
    COMMAND = 20


@dataclasses.dataclass
class Frame:
    kind: Kind
    engine: int = 0
    id: int = 0
    time: int = 0
    thread: int = 0
    channel: str = ""
    payload: bytes = b""

    def encode(self):
        channel = self.channel.encode()
        header = _HEADER.pack(self.kind, self.engine, self.id, self.time, self.thread, len(channel))
        return struct.pack("<I", len(header) + len(channel) + len(self.payload)) + header + channel + self.payload


def read_frame(connection):
    """Returns the next frame of a socket, or None at its end."""
    size = _receive(connection, 4)
    if size is None:
        return None
    (length,) = struct.unpack("<I", size)
    if not _HEADER.size <= length <= _MAXIMUM:
        raise ValueError(f"a frame of {length} bytes")
    body = _receive(connection, length)
    if body is None:
        return None
    kind, engine, number, time, thread, name = _HEADER.unpack_from(body)
    start = _HEADER.size + name
    return Frame(Kind(kind), engine, number, time, thread, body[_HEADER.size : start].decode(), body[start:])


def _receive(connection, size):
    pieces = bytearray()
    while len(pieces) < size:
        piece = connection.recv(min(size - len(pieces), 1 << 20))
        if not piece:
            return None
        pieces += piece
    return bytes(pieces)
