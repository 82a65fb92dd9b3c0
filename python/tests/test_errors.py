"""Bad input raises ValueError or TypeError with the tool's message for the
same mistake, and leaves the decoder usable."""

import mmap
import re

import pytest

import busdecode

CBW = bytes.fromhex("55534243 01000000 24000000 80 00 06 12000000 24000000 00000000 00000000")
# The longest payload a decoder takes: its length in bits must fit 32 bits.
MAX_PAYLOAD = 0xFFFFFFFF // 8


@pytest.mark.parametrize("name", ["nope", "Bot", "no\x01pe", ""])
def test_unknown_decoder(name, tool_error):
    # The tool adds where the name stood; the module says where names are listed.
    expected = tool_error(name, "00").split(" (argument 1;")[0]
    for call in (
        lambda: busdecode.Decoder(name),
        lambda: busdecode.decode(name, CBW),
        lambda: busdecode.fields(name),
        lambda: busdecode.formats(name),
    ):
        with pytest.raises(ValueError) as error:
            call()
        assert str(error.value) == expected + " (busdecode.decoders() names them)"


@pytest.mark.parametrize("kind", [-1, 5, 7])
def test_hci_kind_out_of_range(kind, tool_error):
    expected = tool_error("--hci-kind", str(kind), "hci", "00").replace("--hci-kind", "hci_kind")
    decoder = busdecode.Decoder("hci")
    for call in (
        lambda: busdecode.Decoder("hci", hci_kind=kind),
        lambda: busdecode.decode("hci", b"\x03\x0c\x00", hci_kind=kind),
        lambda: decoder.decode(b"\x03\x0c\x00", hci_kind=kind),
        lambda: decoder.decode_many([b"\x03\x0c\x00"], hci_kind=kind),
    ):
        with pytest.raises(ValueError, match=f"^{re.escape(expected)}$"):
            call()


def test_payload_longer_than_a_decoder_takes():
    # An anonymous mapping: its pages are never touched.
    huge = mmap.mmap(-1, MAX_PAYLOAD + 1)
    message = f"payload of {MAX_PAYLOAD + 1} bytes is longer than the {MAX_PAYLOAD} bytes a decoder takes"
    decoder = busdecode.Decoder("bot")
    with pytest.raises(ValueError, match=f"^{re.escape(message)}$"):
        decoder.decode(huge)
    with pytest.raises(ValueError, match=f"^item 2: {re.escape(message)}$"):
        decoder.decode_many([CBW, huge, CBW])
    assert decoder.decode(CBW)["request_name"] == "Command Block Wrapper"


@pytest.mark.parametrize(
    "payload,type_name",
    [("55534243", "str"), (None, "NoneType"), (17, "int"), ([0x55, 0x53], "list"),
     (memoryview(bytes(8))[::2], "memoryview")],
    ids=["str", "None", "int", "list", "strided memoryview"],
)
def test_payload_that_is_not_bytes(payload, type_name):
    message = f"a payload is bytes, bytearray or another contiguous buffer, not {type_name}"
    decoder = busdecode.Decoder("bot")
    with pytest.raises(TypeError, match=f"^{re.escape(message)}$"):
        decoder.decode(payload)
    with pytest.raises(TypeError, match=f"^item 3: {re.escape(message)}$"):
        decoder.decode_many([CBW, CBW, payload])


def test_bad_batch_source():
    decoder = busdecode.Decoder("bot")
    with pytest.raises(TypeError):
        decoder.decode_many(42)

    def failing():
        yield CBW
        raise RuntimeError("source failed")

    with pytest.raises(RuntimeError, match="source failed"):
        decoder.decode_many(failing())
    with pytest.raises(TypeError):
        busdecode.decode("bot", CBW, hid_kind=1)
    assert decoder.decode_many([CBW])[0]["request_name"] == "Command Block Wrapper"
