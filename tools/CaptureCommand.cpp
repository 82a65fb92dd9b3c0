#include "tools/CaptureCommand.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>

#include "capture/CaptureReader.h"
#include "capture/CaptureRouter.h"
#include "core/AdvAnlzData.h"
#include "tools/PacketWriter.h"

namespace {

constexpr int kExitDamaged = 1;
constexpr int kExitUnreadable = 2;

std::string Name(const std::string& strPath)
{
    return strPath == "-" ? std::string("standard input") : "capture " + Quoted(strPath);
}

int Fail(int nStatus, const std::string& strWhat)
{
    std::cout.flush();
    std::cerr << "busdecode: error: " << strWhat << "\n";
    return nStatus;
}

// A progress line on standard error, redrawn a few times a second while a
// long capture is read; only on a terminal, and not over packets that go to
// the same terminal.
class CProgress {
public:
    CProgress(bool bQuiet, std::uint64_t nFileSize)
        : m_bOn(::isatty(2) && (bQuiet || !::isatty(1))), m_nFileSize(nFileSize),
          m_start(std::chrono::steady_clock::now()), m_next(m_start + std::chrono::milliseconds(500))
    {
    }

    void Tick(std::uint64_t nRecords, std::uint64_t nBytes)
    {
        if (!m_bOn || (nRecords & 1023) != 0)
            return;
        const auto now = std::chrono::steady_clock::now();
        if (now < m_next)
            return;
        m_next = now + std::chrono::milliseconds(250);
        const double dSeconds = std::chrono::duration<double>(now - m_start).count();
        const double dMB = static_cast<double>(nBytes) / 1e6;
        char sz[160];
        int n = std::snprintf(sz, sizeof sz, "\rbusdecode: %llu records, %.1f MB, %.1f MB/s",
                              static_cast<unsigned long long>(nRecords), dMB, dSeconds > 0 ? dMB / dSeconds : 0.0);
        if (m_nFileSize > 0 && n > 0)
            std::snprintf(sz + n, sizeof sz - static_cast<std::size_t>(n), ", %.0f%%",
                          100.0 * static_cast<double>(nBytes) / static_cast<double>(m_nFileSize));
        std::cerr << sz << "\033[K" << std::flush;
        m_bShown = true;
    }

    void Clear()
    {
        if (m_bShown)
            std::cerr << "\r\033[K" << std::flush;
        m_bShown = false;
    }

private:
    bool m_bOn;
    bool m_bShown = false;
    std::uint64_t m_nFileSize;
    std::chrono::steady_clock::time_point m_start, m_next;
};

// Decodes the payloads the router hands over, one packet per decoder kept
// for the whole run, and writes and counts them.
class CCaptureOutput : public ICaptureSink {
public:
    CCaptureOutput(const SCaptureOptions& options, CPacketWriter& writer) : m_options(options), m_writer(writer) {}

    void Payload(const SRoutedPayload& payload) override
    {
        CProtocolPacket& packet = PacketFor(*payload.pEntry, payload.options);
        const CAdvAnlzData data =
            CAdvAnlzData::FromBytes(payload.pData, static_cast<std::uint32_t>(payload.nData * 8));
        const int nResult = payload.pEntry->pfnDecode(packet, data, payload.options);
        if (!m_options.bQuiet) {
            SPacketOrigin origin;
            origin.nFrame = payload.nFrame;
            origin.nTime = payload.nTime;
            origin.link = payload.link;
            m_writer.Packet(*payload.pEntry, packet, nResult, payload.nData, 0, &origin);
        }
        ++m_stats.nPackets;
        if (m_options.bStats) {
            SCaptureStats::SDecoder& decoder = m_stats.mapDecoders[payload.pEntry->pszClassName];
            ++decoder.nPackets;
            const CReqRespProtocolPacket* pRR = dynamic_cast<const CReqRespProtocolPacket*>(&packet);
            ++decoder.mapRequests[pRR ? pRR->m_strRequestName.ToStdString() : std::string()];
        }
    }

    void Unrouted(const SUnroutedRecord& record) override
    {
        ++m_stats.mapUnrouted[*record.pReason];
        if (m_options.bAll && !m_options.bQuiet)
            m_writer.Undecoded(record);
    }

    SCaptureStats& Stats() { return m_stats; }

private:
    // One packet per decoder and HID selector, made when first needed.
    CProtocolPacket& PacketFor(const SDecoderEntry& entry, const SDecodeOptions& options)
    {
        for (SPacket& p : m_aPackets)
            if (p.pEntry == &entry && p.nHIDSelector == options.nHIDSelector)
                return *p.pPacket;
        m_aPackets.push_back({&entry, options.nHIDSelector, entry.pfnNewPacket(options)});
        return *m_aPackets.back().pPacket;
    }

    struct SPacket {
        const SDecoderEntry* pEntry;
        int nHIDSelector;
        std::unique_ptr<CProtocolPacket> pPacket;
    };
    const SCaptureOptions& m_options;
    CPacketWriter& m_writer;
    std::vector<SPacket> m_aPackets;
    SCaptureStats m_stats;
};

}  // namespace

int RunCapture(const SCaptureOptions& options)
{
    SDecodeOptions forcedOptions;
    forcedOptions.nHCIKind = options.nHCIKind;
    CPacketWriter writer(options.bJson);
    CCaptureOutput output(options, writer);
    CCaptureRouter router(output, options.pForced, forcedOptions);
    for (const std::string& strClass : options.aUsbClasses) {
        std::string strError;
        if (!router.AddUsbClass(strClass, strError))
            return Fail(kExitUnreadable, "--usb-class: " + strError);
    }

    std::string strError;
    const std::unique_ptr<CCaptureReader> pReader = CCaptureReader::Open(options.strPath, strError);
    if (!pReader)
        return Fail(kExitUnreadable, "cannot read " + Name(options.strPath) + ": " + strError);

    CProgress progress(options.bQuiet, pReader->FileSize());
    SCaptureStats& stats = output.Stats();
    SCaptureRecord record;
    ECaptureStatus eStatus;
    while ((eStatus = pReader->Next(record)) == CaptureRecord) {
        ++stats.nRecords;
        router.Feed(record);
        progress.Tick(stats.nRecords, pReader->BytesRead());
    }
    progress.Clear();
    // Whatever the end, the commands still open are decoded with what
    // they hold, and nothing decoded is held back.
    router.Finish();
    if (options.bStats)
        writer.Stats(stats);
    writer.Flush();
    if (eStatus == CaptureDamaged)
        return Fail(kExitDamaged, Name(options.strPath) + " is damaged: " + pReader->ErrorText());
    if (stats.nPackets == 0 && stats.nRecords > 0 && !options.bStats)
        std::cerr << "busdecode: note: no record of " << Name(options.strPath)
                  << " went to a decoder (--stats says why; a DECODER argument forces one)\n";
    return 0;
}
