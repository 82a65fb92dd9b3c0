"""One Decoder over many payloads decodes them as one tool run does: what a
decoder keeps from one payload to the next carries over, across decode and
decode_many calls and across the batches decode_many works in."""

import random
import struct

import pytest

import busdecode
from conftest import ALIASES, CAPTURES_DIR, all_sample_payloads
from test_json import assert_same_packets, edge_payloads


def long_sequence(count):
    """Sample and edge payloads mixed with random ones, so that names, options,
    lengths and values keep changing from packet to packet."""
    rng = random.Random(count)
    pool = all_sample_payloads() + edge_payloads()
    return [rng.choice(pool) if rng.random() < 0.5 else rng.randbytes(rng.randint(1, 40)) for _ in range(count)]


@pytest.mark.parametrize("alias", ALIASES)
def test_one_decoder_over_many_payloads(alias, tool, tmp_path):
    # More payloads than decode_many takes in one batch.
    payloads = long_sequence(5000)
    expected = tool(alias, payloads=payloads, tmp_dir=tmp_path)
    decoder = busdecode.Decoder(alias)
    got = [decoder.decode(p) for p in payloads[:100]]
    got += decoder.decode_many(payloads[100:4700])
    got += decoder.decode_many(iter(payloads[4700:]))
    assert_same_packets(got, expected)


def btsnoop_packets(path):
    """(kind, bytes) of every HCI packet of a btsnoop capture, as the tool reads them."""
    data = path.read_bytes()
    assert data[:8] == b"btsnoop\0"
    datalink = struct.unpack(">I", data[12:16])[0]
    packets, pos = [], 16
    while len(data) - pos >= 24:
        included, flags = struct.unpack(">II", data[pos + 4 : pos + 12])
        pos += 24
        if included > len(data) - pos:
            break
        record, pos = data[pos : pos + included], pos + included
        if datalink == 1002:
            kinds = {1: 0, 2: 2 if flags & 1 else 1, 3: 3, 4: 4}
            if record and record[0] in kinds:
                packets.append((kinds[record[0]], record[1:]))
        else:
            packets.append(((4 if flags & 1 else 0) if flags & 2 else (2 if flags & 1 else 1), record))
    return packets


CAPTURES = ["a2dp/motog_btsnoop_hci.log", "a2dp/lg750.cap", "btsnoop-rs/btsnoop_hci_android.log"]


@pytest.mark.parametrize("name", CAPTURES)
def test_btsnoop_capture_with_each_packets_kind(name, tool):
    path = CAPTURES_DIR / name
    if not path.exists():
        pytest.skip(f"{path} is not here")
    packets = btsnoop_packets(path)
    # The tool's capture lines carry the record's frame, time and link too.
    expected = [{k: v for k, v in line.items() if k not in ("frame", "time", "link")}
                for line in tool("-r", str(path))]
    decoder = busdecode.Decoder("hci")
    got = [decoder.decode(payload, hci_kind=kind) for kind, payload in packets]
    assert_same_packets(got, expected)
    # The same in batches of one kind each.
    decoder, got, start = busdecode.Decoder("hci"), [], 0
    for end in range(1, len(packets) + 1):
        if end == len(packets) or packets[end][0] != packets[start][0]:
            got += decoder.decode_many([p for _, p in packets[start:end]], hci_kind=packets[start][0])
            start = end
    assert_same_packets(got, expected)
