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
