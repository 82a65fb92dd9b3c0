"""The module shares strings and copies dicts from templates kept by content;
an object made for other content must never come back. With one slot per
cache every lookup is checked against the last object made, and runs of short
payloads make neighbouring packets differ in one thing at a time: a length, a
value, an option, a name, a count."""

import random

import pytest

import busdecode
from conftest import ALIASES
from test_json import assert_same_packets
from test_sequence import long_sequence


@pytest.fixture
def one_slot():
    busdecode._set_cache_slots(1)
    yield
    busdecode._set_cache_slots()


def short_payloads(count):
    rng = random.Random(5)
    return [rng.randbytes(rng.randint(1, 4)) for _ in range(count)]


@pytest.mark.parametrize(
    "alias,kind",
    [(alias, kind) for alias in ALIASES for kind in (range(5) if alias == "hci" else [0])],
    ids=lambda v: str(v),
)
def test_one_slot_caches_give_the_tools_packets(alias, kind, one_slot, tool, tmp_path):
    payloads = short_payloads(2000) + long_sequence(500)
    expected = tool("--hci-kind", str(kind), alias, payloads=payloads, tmp_dir=tmp_path)
    assert_same_packets(busdecode.Decoder(alias, hci_kind=kind).decode_many(payloads), expected)


def test_decoding_from_a_finaliser_while_dicts_are_made(one_slot):
    # Making dicts runs collections; a finaliser that decodes then takes the
    # caches' only slots and the thread's batch while the outer decode is
    # using them.
    payloads = long_sequence(600)
    expected = busdecode.Decoder("hci").decode_many(payloads)
    inner = []

    class Cycle:
        def __init__(self):
            self.me = self

        def __del__(self):
            inner.append(busdecode.Decoder("bot").decode_many(short_payloads(5)))
            inner.append(busdecode.decode("scsi", b"\x12\x00\x00\x00\x24\x00"))

    def garbage():
        for _ in range(100):
            Cycle()

    decoder = busdecode.Decoder("hci")
    got = []
    for start in range(0, len(payloads), 50):
        garbage()
        got += decoder.decode_many(payloads[start : start + 50])
        garbage()
        got += [decoder.decode(p) for p in payloads[start : start + 5]]
    assert inner, "no finaliser ran during the decodes"
    assert got == [p for start in range(0, len(payloads), 50)
                   for p in expected[start : start + 50] + expected[start : start + 5]]
