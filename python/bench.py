"""Speed of the Python module: Decoder.decode of a Command Block Wrapper, and
Decoder.decode_many over 100,000 HCI command payloads (the samples in
samples/hci.txt, repeated), in one call and 1,000 a call. Prints the best of
several runs, in CPU time.

    PYTHONPATH=<build>/python /usr/bin/python3 python/bench.py
"""

import gc
import pathlib
import time

import busdecode

CBW = bytes.fromhex("55534243 01000000 24000000 80 00 06 12000000 24000000 00000000 00000000")
SAMPLES = pathlib.Path(__file__).resolve().parent.parent / "samples" / "hci.txt"


def best(fn, repeat):
    """The least CPU time of the process (user and system) for fn() over
    repeat runs, the collector off: on a shared machine the wall clock also
    counts the time other programs hold the processor."""
    times = []
    for _ in range(repeat):
        gc.collect()
        gc.disable()
        start = time.process_time()
        fn()
        times.append(time.process_time() - start)
        gc.enable()
    return min(times)


def main():
    decoder = busdecode.Decoder("bot")
    calls = 100_000

    def decode_calls():
        for _ in range(calls):
            decoder.decode(CBW)

    t = best(decode_calls, 7)
    print(f"Decoder('bot').decode(CBW): {t / calls * 1e6:.2f} us per call")

    lines = [line for line in SAMPLES.read_text().splitlines() if line.strip() and not line.startswith("#")]
    payloads = [bytes.fromhex(line) for line in lines]
    batch = (payloads * (100_000 // len(payloads) + 1))[:100_000]
    hci = busdecode.Decoder("hci")
    t = best(lambda: hci.decode_many(batch), 5)
    print(f"Decoder('hci').decode_many(100,000 payloads): {len(batch) / t:,.0f} payloads per s")

    # The same payloads 1,000 at a time, each list dropped before the next is
    # made, so the memory of the dicts is used again instead of taken afresh.
    def in_slices():
        for start in range(0, len(batch), 1000):
            hci.decode_many(batch[start : start + 1000])

    t = best(in_slices, 5)
    print(f"Decoder('hci').decode_many, 1,000 payloads a call: {len(batch) / t:,.0f} payloads per s")


if __name__ == "__main__":
    main()
