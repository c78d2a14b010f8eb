"""Reads the exception and the modules of a minidump.

python3 -m tests.support.minidump DUMP prints the code of the exception, and the module and the offset in it where it
happened.
"""

import pathlib
import struct
import sys
from dataclasses import dataclass

MODULE_LIST_STREAM = 4
EXCEPTION_STREAM = 6
MODULE_SIZE = 108
SYSTEM_TEXT = "utf-16-le"


@dataclass(frozen=True)
class Module:
    name: str
    base: int
    size: int


@dataclass(frozen=True)
class Minidump:
    code: int
    address: int
    modules: tuple

    def module_at_fault(self):
        """Returns the module that contains the faulting address, or None for an address outside all modules."""
        return next((module for module in self.modules if 0 <= self.address - module.base < module.size), None)

    def __str__(self):
        module = self.module_at_fault()
        place = f"{module.name} {self.address - module.base:#x}" if module else f"no module {self.address:#x}"
        return f"{self.code:#010x} {place}"


def _streams(data):
    signature, _, count, directory = struct.unpack_from("<4sIII", data)
    assert signature == b"MDMP"
    return {kind: place for kind, _, place in (struct.unpack_from("<III", data, directory + 12 * index) for index in range(count))}


def _text(data, place):
    (size,) = struct.unpack_from("<I", data, place)
    return data[place + 4:place + 4 + size].decode(SYSTEM_TEXT)


def _modules(data, place):
    (count,) = struct.unpack_from("<I", data, place)
    for index in range(count):
        base, size, _, _, name = struct.unpack_from("<QIIII", data, place + 4 + MODULE_SIZE * index)
        yield Module(_text(data, name), base, size)


def read(path):
    data = pathlib.Path(path).read_bytes()
    streams = _streams(data)
    _, _, code, _, _, address = struct.unpack_from("<IIIIQQ", data, streams[EXCEPTION_STREAM])
    return Minidump(code, address, tuple(_modules(data, streams[MODULE_LIST_STREAM])))


if __name__ == "__main__":
    print(read(sys.argv[1]))
