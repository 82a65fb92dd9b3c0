"""Decoders in threads: separate Decoder objects in concurrent threads decode
exactly as they do alone, one Decoder shared by threads never breaks, and a
batch lets other Python threads run while it decodes."""

import threading

import busdecode
from conftest import ALIASES
from test_sequence import long_sequence


def run_threads(targets):
    errors = []

    def guarded(target):
        try:
            target()
        except BaseException as e:  # noqa: BLE001 - reported below
            errors.append(e)

    threads = [threading.Thread(target=guarded, args=(t,)) for t in targets]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert not errors, errors


def test_separate_decoders_in_threads_decode_as_alone():
    payloads = long_sequence(4000)
    # Two threads per decoder, so decoders of one class run concurrently too.
    jobs = [(alias, n) for alias in ALIASES for n in range(2)]
    expected = {alias: busdecode.Decoder(alias).decode_many(payloads) for alias in ALIASES}
    results = {}

    def job(alias, n):
        def run():
            decoder = busdecode.Decoder(alias)
            for _ in range(4):
                got = decoder.decode_many(payloads)
                if got != expected[alias]:
                    break
            results[alias, n] = got + [decoder.decode(p) for p in payloads[:100]]

        return run

    run_threads([job(alias, n) for alias, n in jobs])
    for alias, n in jobs:
        assert results[alias, n] == expected[alias] + expected[alias][:100], (alias, n)


def test_one_decoder_shared_by_threads():
    payloads = long_sequence(2000)
    decoder = busdecode.Decoder("hci")
    expected = busdecode.Decoder("hci").decode_many(payloads)
    counts = []

    def run():
        got = decoder.decode_many(payloads)
        got += [decoder.decode(p) for p in payloads[:200]]
        counts.append(len(got))

    run_threads([run] * 4)
    assert counts == [2200] * 4
    # The decoders keep no state across these payloads, so results match too.
    assert decoder.decode_many(payloads) == expected


def test_batch_lets_other_threads_run():
    payloads = long_sequence(40000)
    decoder = busdecode.Decoder("hci")
    ticks = [0]
    stop = threading.Event()

    def count():
        while not stop.is_set():
            ticks[0] += 1

    counter = threading.Thread(target=count)
    counter.start()
    try:
        # Read and call without giving up the interpreter lock in between: the
        # counter moves only if the batch lets go of it.
        before = ticks[0]
        decoder.decode_many(payloads)
        after = ticks[0]
    finally:
        stop.set()
        counter.join()
    assert after > before
