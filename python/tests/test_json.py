"""Every decoded dict equals json.loads of the tool's --json line for the same
payload, decoded in the same order by one decoder."""

import random

import pytest

import busdecode
from conftest import ALIASES, all_sample_payloads, read_payloads, sample_files

# Sample files not named after their decoder's alias.
SAMPLE_DECODER = {"bulk_only": "bot"}


def assert_same_packets(got, expected):
    """Compares packet by packet, so a failure shows the first differing pair."""
    assert len(got) == len(expected)
    for n, (g, e) in enumerate(zip(got, expected), 1):
        assert g == e, f"payload {n}"
        assert list(g) == list(e), f"payload {n}: key order"


def edge_payloads():
    rng = random.Random(9)
    fixed = [b"\x00", b"\xff\xff\xff", bytes(64), b"USBC" + bytes(27), b"USBS" + bytes(9)]
    return fixed + [rng.randbytes(rng.randint(1, 80)) for _ in range(60)] + [rng.randbytes(700)]


@pytest.mark.parametrize("path", sample_files(), ids=lambda p: p.stem)
def test_sample_file_decodes_as_the_tool_does(path, tool):
    alias = SAMPLE_DECODER.get(path.stem, path.stem)
    if alias not in ALIASES:
        pytest.skip(f"no decoder is named {alias!r}; the every-decoder test covers the file")
    payloads = read_payloads(path)
    expected = tool(alias, "-f", str(path))
    decoder = busdecode.Decoder(alias)
    assert_same_packets([decoder.decode(p) for p in payloads], expected)
    assert_same_packets(busdecode.Decoder(alias).decode_many(payloads), expected)
    assert_same_packets([busdecode.decode(alias, p) for p in payloads[:1]], expected[:1])


@pytest.mark.parametrize(
    "alias,kind",
    [(alias, kind) for alias in ALIASES for kind in (range(5) if alias == "hci" else [0])],
    ids=lambda v: str(v),
)
def test_every_decoder_on_every_payload(alias, kind, tool, tmp_path):
    # The empty payload goes first, as an empty HEX argument: a listing has no empty payloads.
    payloads = [b""] + all_sample_payloads() + edge_payloads()
    expected = tool("--hci-kind", str(kind), alias, "", payloads=payloads[1:], tmp_dir=tmp_path)
    assert_same_packets(busdecode.Decoder(alias, hci_kind=kind).decode_many(payloads), expected)


def test_payload_types_give_the_same_packet():
    payload = read_payloads(sample_files()[0])[0]
    decoder = busdecode.Decoder("bot")
    expected = decoder.decode(payload)
    import array
    import mmap

    mapped = mmap.mmap(-1, len(payload))
    mapped.write(payload)
    for kind, value in [
        ("bytearray", bytearray(payload)),
        ("memoryview", memoryview(payload)),
        ("slice", memoryview(b"xx" + payload)[2:]),
        ("array", array.array("B", payload)),
        ("mmap", mapped),
    ]:
        assert decoder.decode(value) == expected, kind
    assert decoder.decode_many([bytearray(payload), memoryview(payload)]) == [expected, expected]




def test_packet_class_keys_of_every_kind():
    # No decoder adds every kind of key yet, so the keys are handed in: they
    # come out as the tool writes them, after the fields, a key the packet
    # has already keeping its place, texts that are not UTF-8 as U+FFFD.
    cbw = read_payloads(sample_files()[0])[0]
    plain = busdecode.decode("bot", cbw)
    got = busdecode._decode_with_extras("bot", cbw, [
        ("count", 7),
        ("negative", -(2**40)),
        ("ids", [1, 27005, -3]),
        ("none", []),
        ("items", [(b"  Usage Page (Generic Desktop)", b"\x05\x01"),
                   (b"bad \xff\xfe text \xe2\x82", b""),
                   (b"long", bytes(range(20)))]),
        ("result", 99),
    ])
    assert got == dict(plain, count=7, negative=-(2**40), ids=[1, 27005, -3], none=[], result=99, items=[
        {"text": "  Usage Page (Generic Desktop)", "value": "0501"},
        {"text": "bad \ufffd\ufffd text \ufffd", "value": ""},
        {"text": "long", "value": bytes(range(20)).hex()},
    ])
    assert list(got) == list(plain) + ["count", "negative", "ids", "none", "items"]
    assert list(got["items"][0]) == ["text", "value"]
