"""Tests the simulator's codec against bytes worked out by hand from the published format."""

import array
import math

import pytest

from vantro_interface import codec
from vantro_interface.codec import BigInteger, Int64

VALUES = [
    (None, "00"),
    (True, "01"),
    (False, "02"),
    (0, "03 00000000"),
    (-1, "03 ffffffff"),
    (2**31 - 1, "03 ffffff7f"),
    (-(2**31), "03 00000080"),
    (Int64(2**31), "04 0000008000000000"),
    (Int64(5), "04 0500000000000000"),
    (Int64(-(2**63)), "04 0000000000000080"),
    (BigInteger("-1ff"), "05 04 2d316666"),
    (1.5, "06 00000000000000 000000000000f83f"),
    ("", "07 00"),
    ("aé€😀", "07 0a 61c3a9e282acf09f9880"),
    (b"", "08 00"),
    (b"\xfe\x00", "08 02 fe00"),
    (array.array("i"), "09 00 0000"),
    (array.array("i", [1, -2]), "09 02 0000 01000000 feffffff"),
    (array.array("q"), "0a 00 000000000000"),
    (array.array("q", [3]), "0a 01 000000000000 0300000000000000"),
    (array.array("d"), "0b 00 000000000000"),
    (array.array("d", [1.5]), "0b 01 000000000000 000000000000f83f"),
    (array.array("f"), "0e 00 0000"),
    (array.array("f", [1.5]), "0e 01 0000 0000c03f"),
    ([], "0c 00"),
    ([None, [True]], "0c 02 00 0c 01 01"),
    ({}, "0d 00"),
    ({"a": 1, 2: "b"}, "0d 02 07 01 61 03 01000000 03 02000000 07 01 62"),
]


def plain(value):
    return (value.typecode, value.tolist()) if isinstance(value, array.array) else (type(value), value)


@pytest.mark.parametrize("value,hexadecimal", VALUES, ids=[repr(v) for v, _ in VALUES])
def test_each_value_has_its_bytes_in_both_directions(value, hexadecimal):
    data = bytes.fromhex(hexadecimal)
    assert codec.encode_message(value) == data
    assert plain(codec.decode_message(data)) == plain(value)


def test_an_integer_beyond_32_bits_takes_64_by_itself():
    assert codec.encode_message(2**31) == codec.encode_message(Int64(2**31))


@pytest.mark.parametrize(
    "size,prefix", [(253, "fd"), (254, "fe fe00"), (0xFFFF, "fe ffff"), (0x10000, "ff 00000100")]
)
def test_a_size_takes_one_three_or_five_bytes(size, prefix):
    data = b"\x07" + bytes.fromhex(prefix) + b"x" * size
    assert codec.encode_message("x" * size) == data
    assert codec.decode_message(data) == "x" * size


def test_alignment_counts_from_the_start_of_the_call():
    data = codec.encode_method_call("ab", 1.5)
    assert data.hex(" ") == "07 02 61 62 06 00 00 00 00 00 00 00 00 00 f8 3f"
    assert codec.decode_method_call(data) == ("ab", 1.5)


def test_alignment_counts_the_envelope_byte():
    data = codec.encode_success(array.array("i", [7]))
    assert data.hex(" ") == "00 09 01 00 07 00 00 00"
    assert codec.decode_envelope(data).tolist() == [7]


def test_an_error_envelope_raises_its_parts():
    data = codec.encode_error("CODE", "words", False)
    assert data.hex(" ") == "01 07 04 43 4f 44 45 07 05 77 6f 72 64 73 02"
    with pytest.raises(codec.MethodError) as caught:
        codec.decode_envelope(data)
    assert caught.value == codec.MethodError("CODE", "words", False)


def test_an_empty_answer_means_not_implemented():
    with pytest.raises(codec.NotImplementedByHost):
        codec.decode_envelope(b"")


def test_not_a_number_is_encoded_and_decoded():
    assert math.isnan(codec.decode_message(codec.encode_message(math.nan)))


@pytest.mark.parametrize("cut", range(1, 40))
def test_every_truncation_is_an_error(cut):
    whole = codec.encode_method_call("m", {"k": [1.5, b"xyz", array.array("q", [1])]})
    assert cut < len(whole)
    with pytest.raises(codec.CodecError):
        codec.decode_method_call(whole[:cut])


@pytest.mark.parametrize("data", ["0f", "80", "07 01 ff", "00 00"],
                         ids=["type 15", "type 128", "not UTF-8", "trailing"])
def test_bytes_that_no_encoder_writes_are_an_error(data):
    with pytest.raises(codec.CodecError):
        codec.decode_message(bytes.fromhex(data))


@pytest.mark.parametrize("value", [2**63, object(), array.array("b", [1])], ids=["65 bits", "object", "array of b"])
def test_a_value_without_a_wire_type_is_an_error(value):
    with pytest.raises(codec.CodecError):
        codec.encode_message(value)
