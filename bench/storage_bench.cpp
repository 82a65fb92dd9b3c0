// Decode cost of the command-set decoders derived from the SCSI decoder,
// per packet and per field: ATAPI responses with long descriptor lists (a
// READ TOC answer with 20 track descriptors, a GET CONFIGURATION answer with
// 30 feature descriptors), a command handed to the SCSI decoder, and RBC
// reads; the SCSI decoder's INQUIRY beside them as the yardstick.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "core/AdvAnlzData.h"
#include "storage/ATAPISpec.h"
#include "storage/RBCProtocol.h"
#include "storage/SCSIProtocol.h"

namespace {

CAdvAnlzData Bytes(const std::vector<std::uint8_t>& a)
{
    return CAdvAnlzData::FromBytes(a.data(), static_cast<std::uint32_t>(a.size() * 8));
}

void PushBigEndian(std::vector<std::uint8_t>& a, std::uint32_t n, int nBytes)
{
    for (int i = nBytes - 1; i >= 0; --i)
        a.push_back(static_cast<std::uint8_t>(n >> (8 * i)));
}

template <class TPacket>
void DecodeLoop(benchmark::State& state, const CAdvAnlzData& payload)
{
    TPacket packet;
    packet.RestructBy(payload);  // warm: records interned
    for (auto _ : state) {
        benchmark::DoNotOptimize(packet.RestructBy(payload));
        benchmark::DoNotOptimize(packet.GetFieldCount());
    }
    const double dFields = packet.GetFieldCount();
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * payload.GetByteLength());
    state.counters["fields"] = dFields;
    // Seconds per field, printed with the unit's prefix (e.g. "35n" is 35 ns).
    state.counters["s_per_field"] =
        benchmark::Counter(dFields, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// READ TOC, format 0, with the answer for a disc of 20 tracks and the
// lead-out: 4 header bytes and 21 descriptors of 8 bytes.
CAdvAnlzData ReadTOCWith20Tracks()
{
    std::vector<std::uint8_t> a = {0x43, 0x02, 0x00, 0x00, 0x00, 0x00, 0x01, 0x00, 0xB0, 0x00};
    PushBigEndian(a, 2 + 21 * 8, 2);
    a.push_back(1);
    a.push_back(20);
    for (std::uint32_t nTrack = 1; nTrack <= 21; ++nTrack) {
        a.push_back(0x00);
        a.push_back(0x10);
        a.push_back(static_cast<std::uint8_t>(nTrack <= 20 ? nTrack : 0xAA));
        a.push_back(0x00);
        PushBigEndian(a, nTrack * 15000, 4);
    }
    return Bytes(a);
}

// GET CONFIGURATION for all features, answered with the feature header and
// 30 feature descriptors of 8 bytes.
CAdvAnlzData GetConfigurationWith30Features()
{
    std::vector<std::uint8_t> a = {0x46, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00};
    PushBigEndian(a, 4 + 30 * 8, 4);
    PushBigEndian(a, 0, 2);
    PushBigEndian(a, 0x0008, 2);
    for (std::uint32_t nFeature = 0; nFeature < 30; ++nFeature) {
        PushBigEndian(a, nFeature, 2);
        a.push_back(0x03);
        a.push_back(0x04);
        PushBigEndian(a, 0x00010000 | nFeature, 4);
    }
    return Bytes(a);
}

// READ TRACK INFORMATION with its 36-byte track information block.
CAdvAnlzData ReadTrackInformation()
{
    std::vector<std::uint8_t> a = {0x52, 0x01, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x24, 0x00};
    PushBigEndian(a, 34, 2);
    a.insert(a.end(), {0x01, 0x01, 0x00, 0x04, 0x01, 0x00});
    for (std::uint32_t n : {0u, 0x100u, 0x1000u, 0x10u, 0x2000u, 0xFFu})
        PushBigEndian(a, n, 4);
    a.insert(a.end(), {0x00, 0x00, 0x00, 0x00});
    return Bytes(a);
}

// INQUIRY with 96 bytes of inquiry data: the SCSI decoder's benchmark.
CAdvAnlzData InquiryWithData()
{
    std::vector<std::uint8_t> a = {0x12, 0x00, 0x00, 0x00, 0x60, 0x00, 0x05, 0x80, 0x04, 0x02, 0x5B, 0x00, 0x10, 0x02};
    for (char c : std::string("VENDOR  PRODUCT NAME    1.00"))
        a.push_back(static_cast<std::uint8_t>(c));
    a.resize(6 + 96, 0x00);
    return Bytes(a);
}

CAdvAnlzData Read10WithSector()
{
    std::vector<std::uint8_t> a = {0x28, 0x00, 0x00, 0x00, 0x10, 0x00, 0x00, 0x00, 0x01, 0x00};
    a.resize(10 + 512, 0xA5);
    return Bytes(a);
}

void BM_ATAPIReadTOC20Tracks(benchmark::State& state)
{
    DecodeLoop<CATAPIPacket>(state, ReadTOCWith20Tracks());
}
BENCHMARK(BM_ATAPIReadTOC20Tracks);

void BM_ATAPIGetConfiguration30Features(benchmark::State& state)
{
    DecodeLoop<CATAPIPacket>(state, GetConfigurationWith30Features());
}
BENCHMARK(BM_ATAPIGetConfiguration30Features);

void BM_ATAPIReadTrackInformation(benchmark::State& state)
{
    DecodeLoop<CATAPIPacket>(state, ReadTrackInformation());
}
BENCHMARK(BM_ATAPIReadTrackInformation);

void BM_ATAPIInquiryHandedToSCSI(benchmark::State& state)
{
    DecodeLoop<CATAPIPacket>(state, InquiryWithData());
}
BENCHMARK(BM_ATAPIInquiryHandedToSCSI);

void BM_SCSIInquiry(benchmark::State& state)
{
    DecodeLoop<CSCSIProtocolPacket>(state, InquiryWithData());
}
BENCHMARK(BM_SCSIInquiry);

void BM_RBCRead10WithSector(benchmark::State& state)
{
    DecodeLoop<CRBCProtocolPacket>(state, Read10WithSector());
}
BENCHMARK(BM_RBCRead10WithSector);

void BM_RBCInquiryPassedOn(benchmark::State& state)
{
    DecodeLoop<CRBCProtocolPacket>(state, InquiryWithData());
}
BENCHMARK(BM_RBCInquiryPassedOn);

}  // namespace
