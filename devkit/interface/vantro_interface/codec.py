"""Flutter's standard message codec and standard method codec, written from the published format.

Each value of the channel has its own Python type, so that a decoded value can be encoded again:

    None, bool, float, str, list, dict  null, Boolean, double, string, list, map
    int                                 32-bit if it fits, else 64-bit; Int64 forces 64 bits
    bytes                               byte list
    array.array of "i", "q", "d", "f"   32-bit, 64-bit, double and float lists
    BigInteger                          an integer as hexadecimal text

The decoder is strict: it raises CodecError for bytes that no encoder writes. The host's own decoder is lenient; the two
share no code.
"""

import array
import struct

NULL, TRUE, FALSE, INT32, INT64, BIG_INTEGER, DOUBLE, STRING = range(8)
BYTES, INT32_LIST, INT64_LIST, DOUBLE_LIST, LIST, MAP, FLOAT_LIST = range(8, 15)

_TYPED_LISTS = {INT32_LIST: ("i", 4), INT64_LIST: ("q", 8), DOUBLE_LIST: ("d", 8), FLOAT_LIST: ("f", 4)}
_LIST_TYPES = {code: kind for kind, (code, _) in _TYPED_LISTS.items()}


class CodecError(ValueError):
    """The bytes are not a valid value, or the value has no encoding."""


class Int64(int):
    """An integer that is always encoded in eight bytes."""


class BigInteger(str):
    """An integer as hexadecimal text (type 5)."""


class Writer:
    def __init__(self):
        self.bytes = bytearray()

    def align(self, size):
        self.bytes.extend(b"\0" * (-len(self.bytes) % size))

    def size(self, size):
        if size < 254:
            self.bytes.append(size)
        elif size <= 0xFFFF:
            self.bytes += struct.pack("<BH", 254, size)
        else:
            self.bytes += struct.pack("<BI", 255, size)

    def value(self, value):
        if value is None:
            self.bytes.append(NULL)
        elif isinstance(value, bool):
            self.bytes.append(TRUE if value else FALSE)
        elif isinstance(value, int):
            self._integer(value)
        elif isinstance(value, float):
            self.bytes.append(DOUBLE)
            self.align(8)
            self.bytes += struct.pack("<d", value)
        elif isinstance(value, str):
            kind = BIG_INTEGER if isinstance(value, BigInteger) else STRING
            self._sized(kind, value.encode("utf-8", "surrogateescape"))
        elif isinstance(value, (bytes, bytearray)):
            self._sized(BYTES, value)
        elif isinstance(value, array.array):
            self._typed_list(value)
        elif isinstance(value, (list, tuple)):
            self.bytes.append(LIST)
            self.size(len(value))
            for item in value:
                self.value(item)
        elif isinstance(value, dict):
            self.bytes.append(MAP)
            self.size(len(value))
            for key, item in value.items():
                self.value(key)
                self.value(item)
        else:
            raise CodecError(f"no wire type for {type(value).__name__}")

    def _integer(self, value):
        if -(2**31) <= value < 2**31 and not isinstance(value, Int64):
            self.bytes += struct.pack("<Bi", INT32, value)
        elif -(2**63) <= value < 2**63:
            self.bytes += struct.pack("<Bq", INT64, value)
        else:
            raise CodecError(f"{value} does not fit 64 bits")

    def _sized(self, kind, content):
        self.bytes.append(kind)
        self.size(len(content))
        self.bytes += content

    def _typed_list(self, value):
        if value.typecode not in _LIST_TYPES:
            raise CodecError(f"no wire type for an array of '{value.typecode}'")
        kind = _LIST_TYPES[value.typecode]
        self.bytes.append(kind)
        self.size(len(value))
        self.align(_TYPED_LISTS[kind][1])
        self.bytes += value.tobytes()


class Reader:
    def __init__(self, data):
        self.data = bytes(data)
        self.at = 0

    def take(self, size):
        if self.at + size > len(self.data):
            raise CodecError(f"{size} bytes needed at {self.at} of {len(self.data)}")
        piece = self.data[self.at : self.at + size]
        self.at += size
        return piece

    def unpack(self, form):
        return struct.unpack("<" + form, self.take(struct.calcsize("<" + form)))[0]

    def align(self, size):
        self.take(-self.at % size)

    def size(self):
        first = self.unpack("B")
        return first if first < 254 else self.unpack("H") if first == 254 else self.unpack("I")

    def text(self):
        try:
            return self.take(self.size()).decode("utf-8")
        except UnicodeDecodeError as error:
            raise CodecError(f"a string is not UTF-8: {error}") from error

    def value(self):
        kind = self.unpack("B")
        if kind in _TYPED_LISTS:
            code, width = _TYPED_LISTS[kind]
            count = self.size()
            self.align(width)
            return array.array(code, self.take(count * width))
        reader = _READERS.get(kind)
        if not reader:
            raise CodecError(f"type {kind} at {self.at - 1} is unknown")
        return reader(self)

    def _double(self):
        self.align(8)
        return self.unpack("d")

    def _list(self):
        return [self.value() for _ in range(self.size())]

    def _map(self):
        return {self.value(): self.value() for _ in range(self.size())}

    def end(self):
        if self.at != len(self.data):
            raise CodecError(f"{len(self.data) - self.at} bytes follow the value")


def _read_int64(reader):
    value = reader.unpack("q")
    return Int64(value)


_READERS = {
    NULL: lambda reader: None,
    TRUE: lambda reader: True,
    FALSE: lambda reader: False,
    INT32: lambda reader: reader.unpack("i"),
    INT64: _read_int64,
    BIG_INTEGER: lambda reader: BigInteger(reader.text()),
    DOUBLE: Reader._double,
    STRING: Reader.text,
    BYTES: lambda reader: reader.take(reader.size()),
    LIST: Reader._list,
    MAP: Reader._map,
}


class MethodError(Exception):
    """An error envelope: the host reported an error."""

    def __init__(self, code, message=None, details=None):
        super().__init__(f"{code}: {message}")
        self.code, self.message, self.details = code, message, details

    def __eq__(self, other):
        return isinstance(other, MethodError) and self.args == other.args and self.details == other.details

    __hash__ = None


def encode_message(value):
    writer = Writer()
    writer.value(value)
    return bytes(writer.bytes)


def decode_message(data):
    if not data:
        return None
    reader = Reader(data)
    value = reader.value()
    reader.end()
    return value


def encode_method_call(method, arguments=None):
    writer = Writer()
    writer.value(method)
    writer.value(arguments)
    return bytes(writer.bytes)


def decode_method_call(data):
    """Returns the method's name and its arguments."""
    reader = Reader(data)
    method, arguments = reader.value(), reader.value()
    reader.end()
    if not isinstance(method, str):
        raise CodecError("a method's name is not a string")
    return method, arguments


def encode_success(value=None):
    writer = Writer()
    writer.bytes.append(0)
    writer.value(value)
    return bytes(writer.bytes)


def encode_error(code, message=None, details=None):
    writer = Writer()
    writer.bytes.append(1)
    for part in (code, message, details):
        writer.value(part)
    return bytes(writer.bytes)


class NotImplementedByHost(Exception):
    """An empty answer: the host does not implement the method."""


def decode_envelope(data):
    """Returns the value of a success envelope. Raises MethodError for an error envelope, NotImplementedByHost for empty
    bytes."""
    if not data:
        raise NotImplementedByHost()
    reader = Reader(data)
    kind = reader.unpack("B")
    if kind == 0:
        value = reader.value()
        reader.end()
        return value
    if kind != 1:
        raise CodecError(f"an envelope begins with {kind}")
    code, message, details = reader.value(), reader.value(), reader.value()
    reader.end()
    raise MethodError(code, message, details)
