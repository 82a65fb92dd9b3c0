// pcapng read block by block. Each interface description block gives its
// own link type, snapshot length and time resolution, so one file may hold
// USB and Bluetooth interfaces side by side; every packet record carries the
// link type of its interface.

#include <algorithm>
#include <cstring>

#include "capture/CaptureReader.h"

namespace {

constexpr std::uint32_t kSectionHeader = 0x0A0D0D0A;
constexpr std::uint32_t kInterfaceDescription = 1;
constexpr std::uint32_t kObsoletePacket = 2;
constexpr std::uint32_t kSimplePacket = 3;
constexpr std::uint32_t kEnhancedPacket = 6;
// Blocks other than packets (name resolution, statistics, secrets) are read
// past; a length beyond this is taken for damage, not for a block.
constexpr std::uint32_t kMaxBlock = 16 * 1024 * 1024;
constexpr std::uint16_t kOptionEnd = 0;
constexpr std::uint16_t kOptionTsResol = 9;
constexpr std::uint16_t kOptionTsOffset = 14;

class CPcapNgReader : public CCaptureReader {
public:
    explicit CPcapNgReader(std::unique_ptr<CInput> pInput) : CCaptureReader(CaptureFormatPcapNg, std::move(pInput)) {}

    // Reads the section header and the blocks up to the first interface, so
    // that the file's link type is known before the first record.
    bool Start(std::string& strError)
    {
        std::uint64_t nOffset = 0;
        std::uint32_t nType = 0;
        if (!ReadBlock(nType, nOffset) || nType != kSectionHeader) {
            strError = "not a readable pcapng file: " + (m_strError.empty() ? "no section header" : m_strError);
            return false;
        }
        while (m_aInterfaces.empty()) {
            if (!ReadBlock(nType, nOffset)) {
                if (!m_strError.empty()) {
                    strError = "not a readable pcapng file: " + m_strError;
                    return false;
                }
                break;  // a file of no interface holds no packet
            }
            if (IsPacket(nType)) {
                strError = "not a readable pcapng file: a packet block at byte offset " + std::to_string(nOffset) +
                           " comes before any interface description";
                return false;
            }
            if (!TakeBlock(nType, nOffset)) {
                strError = m_strError;
                return false;
            }
        }
        m_nLinkType = m_aInterfaces.empty() ? 0 : m_aInterfaces.front().nLinkType;
        return true;
    }

    ECaptureStatus Next(SCaptureRecord& record) override
    {
        for (;;) {
            std::uint32_t nType = 0;
            std::uint64_t nOffset = 0;
            if (!ReadBlock(nType, nOffset))
                return m_strError.empty() ? CaptureEnd : CaptureDamaged;
            if (!IsPacket(nType)) {
                if (!TakeBlock(nType, nOffset))
                    return CaptureDamaged;
                continue;
            }
            return TakePacket(nType, nOffset, record);
        }
    }

private:
    struct SInterface {
        int nLinkType = 0;
        std::uint32_t nSnapLength = 0;
        std::uint8_t nResolution = 6;  // 10^-6 s; bit 7 set: 2^-n s
        std::int64_t nOffsetSeconds = 0;
    };

    static bool IsPacket(std::uint32_t nType)
    {
        return nType == kEnhancedPacket || nType == kSimplePacket || nType == kObsoletePacket;
    }

    std::uint32_t U32(const std::uint8_t* p) const
    {
        return m_bBigEndian ? static_cast<std::uint32_t>(p[0]) << 24 | static_cast<std::uint32_t>(p[1]) << 16 |
                                  static_cast<std::uint32_t>(p[2]) << 8 | p[3]
                            : static_cast<std::uint32_t>(p[3]) << 24 | static_cast<std::uint32_t>(p[2]) << 16 |
                                  static_cast<std::uint32_t>(p[1]) << 8 | p[0];
    }
    std::uint16_t U16(const std::uint8_t* p) const
    {
        return static_cast<std::uint16_t>(m_bBigEndian ? p[0] << 8 | p[1] : p[1] << 8 | p[0]);
    }

    bool Fail(std::uint64_t nOffset, const std::string& strWhat)
    {
        Damaged(m_nRecords + 1, nOffset, strWhat);
        return false;
    }

    // Reads one whole block into m_aBlock (its body, without the type, the
    // lengths and the trailer). False at the clean end of the file (no error
    // text) or at damage (error text set).
    bool ReadBlock(std::uint32_t& nType, std::uint64_t& nOffset)
    {
        nOffset = m_pInput->Position();
        std::uint8_t aHead[12];
        const std::size_t nGot = m_pInput->Read(aHead, 8);
        if (nGot == 0 && !m_pInput->Failed())
            return false;
        if (nGot != 8)
            return Fail(nOffset, m_pInput->Failed() ? "read error" : "the file ends inside a block header");
        nType = U32(aHead);
        std::uint32_t nHeader = 8;
        if (std::memcmp(aHead, "\x0A\x0D\x0D\x0A", 4) == 0) {
            // A new section: its byte-order magic says how to read the rest.
            nType = kSectionHeader;
            if (m_pInput->Read(aHead + 8, 4) != 4)
                return Fail(nOffset, "the file ends inside a section header");
            if (std::memcmp(aHead + 8, "\x1A\x2B\x3C\x4D", 4) == 0)
                m_bBigEndian = true;
            else if (std::memcmp(aHead + 8, "\x4D\x3C\x2B\x1A", 4) == 0)
                m_bBigEndian = false;
            else
                return Fail(nOffset, "section header of unknown byte order");
            nHeader = 12;
        }
        const std::uint32_t nLength = U32(aHead + 4);
        if (nLength < nHeader + 4 || nLength % 4 != 0 || nLength > kMaxBlock)
            return Fail(nOffset, "block length " + std::to_string(nLength) + " is impossible");
        const std::uint32_t nBody = nLength - nHeader - 4;
        if (IsPacket(nType) || nType == kSectionHeader || nType == kInterfaceDescription) {
            m_aBlock.resize(nBody + 4);
            if (m_pInput->Read(m_aBlock.data(), nBody + 4) != nBody + 4)
                return Fail(nOffset, m_pInput->Failed() ? "read error"
                                                        : "the file ends inside a block of " +
                                                              std::to_string(nLength) + " bytes");
        } else {
            // Blocks we do not read are skipped in small steps.
            std::uint8_t aChunk[4096];
            for (std::uint32_t nLeft = nBody; nLeft > 0;) {
                const std::uint32_t n = std::min<std::uint32_t>(nLeft, sizeof aChunk);
                if (m_pInput->Read(aChunk, n) != n)
                    return Fail(nOffset, "the file ends inside a block of " + std::to_string(nLength) + " bytes");
                nLeft -= n;
            }
            m_aBlock.resize(4);
            if (m_pInput->Read(m_aBlock.data(), 4) != 4)
                return Fail(nOffset, "the file ends inside a block of " + std::to_string(nLength) + " bytes");
        }
        const std::uint32_t nTrailer = U32(m_aBlock.data() + m_aBlock.size() - 4);
        if (nTrailer != nLength)
            return Fail(nOffset, "block length " + std::to_string(nLength) + " and its trailing copy " +
                                     std::to_string(nTrailer) + " differ");
        m_aBlock.resize(m_aBlock.size() - 4);
        return true;
    }

    // A section header or an interface description; other blocks carry
    // nothing we use.
    bool TakeBlock(std::uint32_t nType, std::uint64_t nOffset)
    {
        if (nType == kSectionHeader) {
            // The interfaces of an earlier section do not carry over.
            if (m_aBlock.size() < 12 || U16(m_aBlock.data()) != 1)
                return Fail(nOffset, "section header of an unknown version");
            m_aInterfaces.clear();
            return true;
        }
        if (nType != kInterfaceDescription)
            return true;
        if (m_aBlock.size() < 8)
            return Fail(nOffset, "interface description too short");
        SInterface interface;
        interface.nLinkType = U16(m_aBlock.data());
        interface.nSnapLength = U32(m_aBlock.data() + 4);
        if (!KnownLinkType(interface.nLinkType))
            return Fail(nOffset, "interface " + std::to_string(m_aInterfaces.size()) + " has the unknown link type " +
                                     std::to_string(interface.nLinkType));
        for (std::size_t i = 8; i + 4 <= m_aBlock.size();) {
            const std::uint16_t nCode = U16(&m_aBlock[i]);
            const std::uint16_t nLength = U16(&m_aBlock[i + 2]);
            i += 4;
            if (nCode == kOptionEnd || nLength > m_aBlock.size() - i)
                break;
            if (nCode == kOptionTsResol && nLength >= 1)
                interface.nResolution = m_aBlock[i];
            if (nCode == kOptionTsOffset && nLength >= 8)
                interface.nOffsetSeconds = static_cast<std::int64_t>(
                    m_bBigEndian ? static_cast<std::uint64_t>(U32(&m_aBlock[i])) << 32 | U32(&m_aBlock[i + 4])
                                 : static_cast<std::uint64_t>(U32(&m_aBlock[i + 4])) << 32 | U32(&m_aBlock[i]));
            i += (nLength + 3u) & ~3u;
        }
        m_aInterfaces.push_back(interface);
        return true;
    }

    // A timestamp in the interface's units as microseconds since the epoch.
    static std::int64_t Micros(const SInterface& interface, std::uint64_t nUnits)
    {
        const std::uint8_t r = interface.nResolution;
        std::uint64_t nMicros = nUnits;
        if (r & 0x80) {
            const unsigned n = std::min<unsigned>(r & 0x7F, 63);
            const std::uint64_t nWhole = nUnits >> n, nPart = nUnits & ((std::uint64_t(1) << n) - 1);
            nMicros = nWhole * 1000000 + static_cast<std::uint64_t>(static_cast<double>(nPart) * 1e6 /
                                                                    static_cast<double>(std::uint64_t(1) << n));
        } else if (r < 6) {
            for (unsigned i = r; i < 6; ++i)
                nMicros *= 10;
        } else {
            for (unsigned i = 6; i < r && i < 26; ++i)
                nMicros /= 10;
        }
        return static_cast<std::int64_t>(nMicros) + interface.nOffsetSeconds * 1000000;
    }

    ECaptureStatus TakePacket(std::uint32_t nType, std::uint64_t nOffset, SCaptureRecord& record)
    {
        const std::uint8_t* p = m_aBlock.data();
        const std::size_t nBody = m_aBlock.size();
        std::uint32_t nInterface = 0, nCaptured = 0, nOriginal = 0;
        std::uint64_t nUnits = 0;
        std::size_t nHeader = 0;
        if (nType == kEnhancedPacket || nType == kObsoletePacket) {
            if (nBody < 20)
                return Damaged(m_nRecords + 1, nOffset, "packet block too short");
            nInterface = nType == kEnhancedPacket ? U32(p) : U16(p);
            nUnits = static_cast<std::uint64_t>(U32(p + 4)) << 32 | U32(p + 8);
            nCaptured = U32(p + 12);
            nOriginal = U32(p + 16);
            nHeader = 20;
        } else {
            if (nBody < 4)
                return Damaged(m_nRecords + 1, nOffset, "packet block too short");
            nOriginal = U32(p);
            nCaptured = static_cast<std::uint32_t>(std::min<std::size_t>(nOriginal, nBody - 4));
            nHeader = 4;
        }
        if (nInterface >= m_aInterfaces.size())
            return Damaged(m_nRecords + 1, nOffset,
                           "packet of interface " + std::to_string(nInterface) + ", which no block described");
        const SInterface& interface = m_aInterfaces[nInterface];
        if (nType == kSimplePacket && interface.nSnapLength != 0)
            nCaptured = std::min(nCaptured, interface.nSnapLength);
        if (nCaptured > kMaxCaptureRecord || (interface.nSnapLength != 0 && nCaptured > interface.nSnapLength))
            return Damaged(m_nRecords + 1, nOffset,
                           "record length " + std::to_string(nCaptured) + " is larger than " +
                               (nCaptured > kMaxCaptureRecord
                                    ? std::to_string(kMaxCaptureRecord) + " bytes"
                                    : "the snapshot length " + std::to_string(interface.nSnapLength)));
        if (nCaptured > nBody - nHeader)
            return Damaged(m_nRecords + 1, nOffset,
                           "record length " + std::to_string(nCaptured) + " runs past its block");
        ++m_nRecords;
        record.nNumber = m_nRecords;
        record.nTimeMicros = Micros(interface, nUnits);
        record.nLinkType = interface.nLinkType;
        record.nFlags = 0;
        record.nOriginalLength = nOriginal;
        record.nOffset = nOffset;
        record.pData = p + nHeader;
        record.nData = nCaptured;
        return CaptureRecord;
    }

    bool m_bBigEndian = false;
    std::vector<SInterface> m_aInterfaces;
    std::vector<std::uint8_t> m_aBlock;
    std::uint64_t m_nRecords = 0;
};

}  // namespace

std::unique_ptr<CCaptureReader> OpenPcapNg(std::unique_ptr<CCaptureReader::CInput> pInput, std::string& strError)
{
    auto pReader = std::make_unique<CPcapNgReader>(std::move(pInput));
    if (!pReader->Start(strError))
        return nullptr;
    return pReader;
}
