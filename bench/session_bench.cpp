// Decode cost of the session decoders: a payload of AT command lines, an
// OBEX put with 20 headers, and both grown to 4 KiB and 64 KiB, where the
// cost per byte must stay flat.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "core/AdvAnlzData.h"
#include "serial/ATCommand.h"
#include "serial/OBEX.h"

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace {

#if defined(__GLIBC__)
// glibc gives heap memory back to the kernel whenever more than 128 KiB at
// the top of the heap is free. A loop that decodes one 64 KiB OBEX packet at
// a time frees three 64 KiB copies on every decode (the walk's, the value's
// and the packet's), and would then measure the page faults of growing the
// heap again rather than the decode. A host that decodes a capture keeps its
// heap; so does this program.
const int g_nKeepHeap = mallopt(M_TRIM_THRESHOLD, 64 * 1024 * 1024);
#endif

CAdvAnlzData FromBytes(const std::vector<std::uint8_t>& aBytes)
{
    return CAdvAnlzData::FromBytes(aBytes.data(), static_cast<std::uint32_t>(aBytes.size() * 8));
}

template <class TPacket>
void DecodeLoop(benchmark::State& state, const CAdvAnlzData& payload)
{
    TPacket packet;
    for (auto _ : state) {
        benchmark::DoNotOptimize(packet.RestructBy(payload));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * payload.GetByteLength());
    state.counters["fields"] = packet.GetFieldCount();
    state.counters["ns_per_byte"] = benchmark::Counter(
        static_cast<double>(payload.GetByteLength()) * static_cast<double>(state.iterations()),
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// Command lines of every kind: category bodies, several bodies on a line,
// dial strings, '+' commands and unknown commands.
const char* const kATLines[] = {
    "ATE0V1&K3\r", "ATD5551234\r", "AT+CHLD=?\r", "AT\\N3%C2\r", "AT+CMER=3,0,0,1\r",
    "ATDT\"555\"\r", "AT+BRSF=59\r", "ATH0\r",      "AT&F1\r",    "AT+VGS=09\r",
};

std::vector<std::uint8_t> ATLines(std::size_t nLines, std::size_t nMaxBytes)
{
    std::vector<std::uint8_t> a;
    for (std::size_t i = 0; i < nLines; ++i) {
        const std::string s = kATLines[i % std::size(kATLines)];
        if (a.size() + s.size() > nMaxBytes)
            break;
        a.insert(a.end(), s.begin(), s.end());
    }
    return a;
}

void BM_ATFiftyCommandLines(benchmark::State& state)
{
    DecodeLoop<CATCommandPacket>(state, FromBytes(ATLines(50, SIZE_MAX)));
}
BENCHMARK(BM_ATFiftyCommandLines);

// Command lines up to the given size; the packet is full after some 60
// lines, the walk goes on to the end.
void BM_ATLongPayload(benchmark::State& state)
{
    DecodeLoop<CATCommandPacket>(state, FromBytes(ATLines(SIZE_MAX, static_cast<std::size_t>(state.range(0)))));
}
BENCHMARK(BM_ATLongPayload)->Arg(4096)->Arg(65536);

// A put with 20 headers: name, type, length, connection id, then 16 short
// body headers.
void BM_OBEXPutTwentyHeaders(benchmark::State& state)
{
    std::vector<std::uint8_t> a = {0x02, 0x00, 0x00,
                                   0x01, 0x00, 0x0B, 0x00, 'a', 0x00, '.', 0x00, 'b', 0x00, 0x00,
                                   0x42, 0x00, 0x07, 't', 'x', 't', 0x00,
                                   0xC3, 0x00, 0x00, 0x01, 0x00,
                                   0xCB, 0x00, 0x00, 0x00, 0x01};
    for (int i = 0; i < 16; ++i) {
        a.insert(a.end(), {0x48, 0x00, 0x0B});
        for (int j = 0; j < 8; ++j)
            a.push_back(static_cast<std::uint8_t>(i * 8 + j));
    }
    a[1] = static_cast<std::uint8_t>(a.size() >> 8);
    a[2] = static_cast<std::uint8_t>(a.size());
    DecodeLoop<COBEXPacket>(state, FromBytes(a));
}
BENCHMARK(BM_OBEXPutTwentyHeaders);

// A final put whose one End of Body header holds the rest of the payload.
void BM_OBEXLongBody(benchmark::State& state)
{
    const std::size_t nSize = static_cast<std::size_t>(state.range(0));
    std::vector<std::uint8_t> a(nSize, 0x5A);
    const std::size_t nHeader = nSize - 3;
    a[0] = 0x82;
    a[1] = static_cast<std::uint8_t>(nSize >> 8);
    a[2] = static_cast<std::uint8_t>(nSize);
    a[3] = 0x49;
    a[4] = static_cast<std::uint8_t>(nHeader >> 8);
    a[5] = static_cast<std::uint8_t>(nHeader);
    DecodeLoop<COBEXPacket>(state, FromBytes(a));
}
BENCHMARK(BM_OBEXLongBody)->Arg(4096)->Arg(65535);

// A put made of 11-byte body headers up to the given size: past the
// packet's 255 fields the walk still reads every header.
void BM_OBEXManyHeaders(benchmark::State& state)
{
    const std::size_t nSize = static_cast<std::size_t>(state.range(0));
    std::vector<std::uint8_t> a = {0x02, 0xFF, 0xFF};
    while (a.size() + 11 <= nSize) {
        a.insert(a.end(), {0x48, 0x00, 0x0B});
        a.insert(a.end(), 8, 0x33);
    }
    DecodeLoop<COBEXPacket>(state, FromBytes(a));
}
BENCHMARK(BM_OBEXManyHeaders)->Arg(4096)->Arg(65536);

}  // namespace
