#include "capture/CaptureReader.h"

#include <cerrno>
#include <cstring>

#include <pcap/pcap.h>
#include <sys/stat.h>

namespace {

std::uint32_t BigEndian32(const std::uint8_t* p)
{
    return static_cast<std::uint32_t>(p[0]) << 24 | static_cast<std::uint32_t>(p[1]) << 16 |
           static_cast<std::uint32_t>(p[2]) << 8 | p[3];
}

std::uint64_t BigEndian64(const std::uint8_t* p)
{
    return static_cast<std::uint64_t>(BigEndian32(p)) << 32 | BigEndian32(p + 4);
}

void PutLE16(std::uint8_t* p, std::uint32_t v)
{
    p[0] = static_cast<std::uint8_t>(v);
    p[1] = static_cast<std::uint8_t>(v >> 8);
}

void PutLE32(std::uint8_t* p, std::uint32_t v)
{
    PutLE16(p, v);
    PutLE16(p + 2, v >> 16);
}

void PutLE64(std::uint8_t* p, std::uint64_t v)
{
    PutLE32(p, static_cast<std::uint32_t>(v));
    PutLE32(p + 4, static_cast<std::uint32_t>(v >> 32));
}

std::string Where(std::uint64_t nNumber, std::uint64_t nOffset)
{
    return "record " + std::to_string(nNumber) + " at byte offset " + std::to_string(nOffset);
}

// ------------------------------------------------------------------ pcap

// pcap and pcapng through libpcap, fed from our input so that standard
// input and the sniffed bytes work alike.
class CPcapReader : public CCaptureReader {
public:
    CPcapReader(ECaptureFormat eFormat, std::unique_ptr<CInput> pInput) : CCaptureReader(eFormat, std::move(pInput))
    {
    }
    ~CPcapReader() override
    {
        if (m_pPcap)
            pcap_close(m_pPcap);  // closes the stdio stream, not the input
    }

    bool Start(std::string& strError)
    {
        std::FILE* pStream = m_pInput->AsStdioStream();
        if (!pStream) {
            strError = "cannot read the file";
            return false;
        }
        char szError[PCAP_ERRBUF_SIZE] = "";
        m_pPcap = pcap_fopen_offline_with_tstamp_precision(pStream, PCAP_TSTAMP_PRECISION_MICRO, szError);
        if (!m_pPcap) {
            std::fclose(pStream);
            strError = std::string("not a readable ") + FormatName(m_eFormat) + " file: " + szError;
            return false;
        }
        m_nLinkType = pcap_datalink(m_pPcap);
        return true;
    }

    ECaptureStatus Next(SCaptureRecord& record) override
    {
        const long nOffset = std::ftell(pcap_file(m_pPcap));
        pcap_pkthdr* pHeader = nullptr;
        const u_char* pData = nullptr;
        const int nResult = pcap_next_ex(m_pPcap, &pHeader, &pData);
        const std::uint64_t nNumber = m_nRecords + 1;
        if (nResult == PCAP_ERROR_BREAK)
            return CaptureEnd;
        if (nResult != 1)
            return Damaged(nNumber, nOffset < 0 ? 0 : static_cast<std::uint64_t>(nOffset), pcap_geterr(m_pPcap));
        if (pHeader->caplen > kMaxCaptureRecord)
            return Damaged(nNumber, static_cast<std::uint64_t>(nOffset),
                           "record length " + std::to_string(pHeader->caplen) + " is larger than " +
                               std::to_string(kMaxCaptureRecord) + " bytes");
        ++m_nRecords;
        record.nNumber = nNumber;
        record.nTimeMicros = static_cast<std::int64_t>(pHeader->ts.tv_sec) * 1000000 + pHeader->ts.tv_usec;
        record.nLinkType = m_nLinkType;
        record.nFlags = 0;
        record.nOriginalLength = pHeader->len;
        record.nOffset = nOffset < 0 ? 0 : static_cast<std::uint64_t>(nOffset);
        record.pData = pData;
        record.nData = pHeader->caplen;
        return CaptureRecord;
    }

private:
    pcap_t* m_pPcap = nullptr;
    std::uint64_t m_nRecords = 0;
};

// --------------------------------------------------------------- btsnoop

class CBtSnoopReader : public CCaptureReader {
public:
    static constexpr std::size_t kFileHeader = 16;
    static constexpr std::size_t kRecordHeader = 24;
    // Microseconds from 0000-01-01 to 1970-01-01, as btsnoop counts time.
    static constexpr std::uint64_t kEpochOffset = 0x00DCDDB30F2F8000ull;

    explicit CBtSnoopReader(std::unique_ptr<CInput> pInput) : CCaptureReader(CaptureFormatBtSnoop, std::move(pInput))
    {
    }

    bool Start(std::string& strError)
    {
        std::uint8_t aHeader[kFileHeader];
        if (m_pInput->Read(aHeader, kFileHeader) != kFileHeader) {
            strError = "btsnoop file ends inside its header";
            return false;
        }
        const std::uint32_t nVersion = BigEndian32(aHeader + 8);
        m_nLinkType = static_cast<int>(BigEndian32(aHeader + 12));
        if (nVersion != 1) {
            strError = "btsnoop version " + std::to_string(nVersion) + " is not 1";
            return false;
        }
        if (m_nLinkType != LinkTypeBtSnoopHCI && m_nLinkType != LinkTypeBtSnoopH4 &&
            m_nLinkType != LinkTypeBtSnoopMonitor) {
            strError = "btsnoop datalink " + std::to_string(m_nLinkType) +
                       " is not HCI (1001), HCI UART (1002) or Linux monitor (2001)";
            return false;
        }
        return true;
    }

    ECaptureStatus Next(SCaptureRecord& record) override
    {
        const std::uint64_t nOffset = m_pInput->Position();
        const std::uint64_t nNumber = m_nRecords + 1;
        std::uint8_t aHeader[kRecordHeader];
        const std::size_t nGot = m_pInput->Read(aHeader, kRecordHeader);
        if (nGot == 0 && !m_pInput->Failed())
            return CaptureEnd;
        if (nGot != kRecordHeader)
            return Damaged(nNumber, nOffset, m_pInput->Failed() ? "read error" : "the file ends inside the record header");
        const std::uint32_t nOriginal = BigEndian32(aHeader);
        const std::uint32_t nIncluded = BigEndian32(aHeader + 4);
        if (nIncluded > kMaxCaptureRecord)
            return Damaged(nNumber, nOffset,
                           "record length " + std::to_string(nIncluded) + " is larger than " +
                               std::to_string(kMaxCaptureRecord) + " bytes");
        if (nIncluded > nOriginal)
            return Damaged(nNumber, nOffset,
                           "included length " + std::to_string(nIncluded) + " is larger than the original length " +
                               std::to_string(nOriginal));
        m_aData.resize(nIncluded);
        if (m_pInput->Read(m_aData.data(), nIncluded) != nIncluded)
            return Damaged(nNumber, nOffset,
                           m_pInput->Failed() ? "read error"
                                              : "the file ends inside the record (" + std::to_string(nIncluded) +
                                                    " bytes announced)");
        ++m_nRecords;
        record.nNumber = nNumber;
        record.nTimeMicros = static_cast<std::int64_t>(BigEndian64(aHeader + 16) - kEpochOffset);
        record.nLinkType = m_nLinkType;
        record.nFlags = BigEndian32(aHeader + 8);
        record.nOriginalLength = nOriginal;
        record.nOffset = nOffset;
        record.pData = m_aData.data();
        record.nData = nIncluded;
        return CaptureRecord;
    }

private:
    std::vector<std::uint8_t> m_aData;
    std::uint64_t m_nRecords = 0;
};

// ----------------------------------------------------------- usbmon text

// One line of the usbmon text interface:
//   TAG TIMESTAMP EVENT ADDRESS STATUS|s SETUP... LENGTH [TAG DATA...]
// e.g. "e8531100 0.314988 S Ci:1:001:0 s a3 00 0000 0003 0004 4 <" or
// "e8531100 0.315029 C Ci:1:001:0 0 4 = 01050100". The timestamp is the
// kernel's microseconds, or seconds with a fraction where a tool rewrote it.
class CUsbmonTextReader : public CCaptureReader {
public:
    static constexpr std::size_t kHeader = 48;

    explicit CUsbmonTextReader(std::unique_ptr<CInput> pInput)
        : CCaptureReader(CaptureFormatUsbmonText, std::move(pInput))
    {
        m_nLinkType = LinkTypeUsbLinux;
    }

    // Whether a first line looks like usbmon text.
    static bool LooksLikeUsbmon(const std::string& strLine)
    {
        std::vector<std::string> aTokens;
        Split(strLine, aTokens, 5);
        if (aTokens.size() < 5 || aTokens[2].size() != 1 || std::strchr("SCE", aTokens[2][0]) == nullptr)
            return false;
        SAddress address;
        return ParseAddress(aTokens[3], address) && aTokens[0].find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
    }

    ECaptureStatus Next(SCaptureRecord& record) override
    {
        for (;;) {
            const std::uint64_t nOffset = m_pInput->Position();
            const std::uint64_t nNumber = m_nRecords + 1;
            if (!ReadLine())
                return m_pInput->Failed() ? Damaged(nNumber, nOffset, "read error") : CaptureEnd;
            if (m_strLine.find_first_not_of(" \t\r") == std::string::npos)
                continue;  // blank lines carry nothing
            std::string strWhat;
            if (!ParseLine(strWhat))
                return Damaged(nNumber, nOffset, "not a usbmon text line: " + strWhat);
            ++m_nRecords;
            record.nNumber = nNumber;
            record.nTimeMicros = m_nTime;
            record.nLinkType = LinkTypeUsbLinux;
            record.nFlags = 0;
            record.nOriginalLength = static_cast<std::uint32_t>(m_aRecord.size());
            record.nOffset = nOffset;
            record.pData = m_aRecord.data();
            record.nData = m_aRecord.size();
            return CaptureRecord;
        }
    }

private:
    struct SAddress {
        char cType = 0;  // C control, Z isochronous, I interrupt, B bulk
        bool bIn = false;
        unsigned nBus = 0, nDevice = 0, nEndpoint = 0;
    };

    static void Split(const std::string& s, std::vector<std::string>& aTokens, std::size_t nMax = ~std::size_t(0))
    {
        aTokens.clear();
        std::size_t i = 0;
        while (i < s.size() && aTokens.size() < nMax) {
            while (i < s.size() && (s[i] == ' ' || s[i] == '\t' || s[i] == '\r' || s[i] == '\n'))
                ++i;
            const std::size_t nStart = i;
            while (i < s.size() && s[i] != ' ' && s[i] != '\t' && s[i] != '\r' && s[i] != '\n')
                ++i;
            if (i > nStart)
                aTokens.emplace_back(s, nStart, i - nStart);
        }
    }

    static bool ParseUnsigned(const std::string& s, unsigned long long& n, int nBase)
    {
        if (s.empty() || s.size() > 16)
            return false;
        char* pEnd = nullptr;
        errno = 0;
        n = std::strtoull(s.c_str(), &pEnd, nBase);
        return errno == 0 && *pEnd == '\0' && s[0] != '-' && s[0] != '+';
    }

    // "Ci:1:001:0": type and direction, bus, device, endpoint.
    static bool ParseAddress(const std::string& s, SAddress& a)
    {
        if (s.size() < 8 || std::strchr("CZIB", s[0]) == nullptr || (s[1] != 'i' && s[1] != 'o') || s[2] != ':')
            return false;
        a.cType = s[0];
        a.bIn = s[1] == 'i';
        const std::size_t p1 = s.find(':', 3), p2 = p1 == std::string::npos ? p1 : s.find(':', p1 + 1);
        if (p2 == std::string::npos)
            return false;
        unsigned long long nBus = 0, nDevice = 0, nEndpoint = 0;
        if (!ParseUnsigned(s.substr(3, p1 - 3), nBus, 10) || !ParseUnsigned(s.substr(p1 + 1, p2 - p1 - 1), nDevice, 10) ||
            !ParseUnsigned(s.substr(p2 + 1), nEndpoint, 10) || nBus > 0xFFFF || nDevice > 127 || nEndpoint > 15)
            return false;
        a.nBus = static_cast<unsigned>(nBus);
        a.nDevice = static_cast<unsigned>(nDevice);
        a.nEndpoint = static_cast<unsigned>(nEndpoint);
        return true;
    }

    bool ReadLine()
    {
        m_strLine.clear();
        char c = 0;
        bool bAny = false;
        while (m_pInput->Read(&c, 1) == 1) {
            bAny = true;
            if (c == '\n')
                return true;
            if (m_strLine.size() < kMaxCaptureRecord * 3)  // a data word takes 2.25 characters a byte
                m_strLine.push_back(c);
        }
        return bAny;
    }

    bool ParseLine(std::string& strWhat)
    {
        Split(m_strLine, m_aTokens);
        if (m_aTokens.size() < 5) {
            strWhat = "too few words";
            return false;
        }
        unsigned long long nTag = 0;
        if (!ParseUnsigned(m_aTokens[0], nTag, 16)) {
            strWhat = "bad URB tag";
            return false;
        }
        const std::string& strTime = m_aTokens[1];
        if (strTime.find('.') != std::string::npos) {
            char* pEnd = nullptr;
            const double dSeconds = std::strtod(strTime.c_str(), &pEnd);
            if (*pEnd != '\0' || !(dSeconds >= 0) || dSeconds > 1e12) {
                strWhat = "bad timestamp";
                return false;
            }
            m_nTime = static_cast<std::int64_t>(dSeconds * 1e6 + 0.5);
        } else {
            unsigned long long nMicros = 0;
            if (!ParseUnsigned(strTime, nMicros, 10)) {
                strWhat = "bad timestamp";
                return false;
            }
            m_nTime = static_cast<std::int64_t>(nMicros);
        }
        if (m_aTokens[2].size() != 1 || std::strchr("SCE", m_aTokens[2][0]) == nullptr) {
            strWhat = "bad event type";
            return false;
        }
        SAddress address;
        if (!ParseAddress(m_aTokens[3], address)) {
            strWhat = "bad address";
            return false;
        }

        m_aRecord.assign(kHeader, 0);
        std::uint8_t* h = m_aRecord.data();
        PutLE64(h, nTag);
        h[8] = static_cast<std::uint8_t>(m_aTokens[2][0]);
        h[9] = address.cType == 'Z' ? 0 : address.cType == 'I' ? 1 : address.cType == 'C' ? 2 : 3;
        h[10] = static_cast<std::uint8_t>(address.nEndpoint | (address.bIn ? 0x80 : 0));
        h[11] = static_cast<std::uint8_t>(address.nDevice);
        PutLE16(h + 12, address.nBus);
        h[14] = '-';  // no setup packet
        h[15] = '<';  // no data
        PutLE64(h + 16, static_cast<std::uint64_t>(m_nTime / 1000000));
        PutLE32(h + 24, static_cast<std::uint32_t>(m_nTime % 1000000));

        std::size_t i = 4;
        if (m_aTokens[i] == "s") {
            // The setup packet: bmRequestType, bRequest, wValue, wIndex, wLength.
            if (m_aTokens.size() < i + 6) {
                strWhat = "setup packet cut short";
                return false;
            }
            unsigned long long v[5] = {};
            for (int k = 0; k < 5; ++k)
                if (!ParseUnsigned(m_aTokens[i + 1 + k], v[k], 16) || v[k] > (k < 2 ? 0xFFu : 0xFFFFu)) {
                    strWhat = "bad setup packet";
                    return false;
                }
            h[14] = 0;
            h[40] = static_cast<std::uint8_t>(v[0]);
            h[41] = static_cast<std::uint8_t>(v[1]);
            PutLE16(h + 42, static_cast<std::uint32_t>(v[2]));
            PutLE16(h + 44, static_cast<std::uint32_t>(v[3]));
            PutLE16(h + 46, static_cast<std::uint32_t>(v[4]));
            i += 6;
        } else {
            // The status, with ":interval" (and ":start frame") for
            // interrupt and isochronous URBs; "-" when there is none.
            const std::string strStatus = m_aTokens[i].substr(0, m_aTokens[i].find(':'));
            char* pEnd = nullptr;
            const long nStatus = std::strtol(strStatus.c_str(), &pEnd, 10);
            if (strStatus != "-" && (strStatus.empty() || *pEnd != '\0')) {
                strWhat = "bad status";
                return false;
            }
            PutLE32(h + 28, static_cast<std::uint32_t>(strStatus == "-" ? 0 : nStatus));
            ++i;
            // Isochronous lines carry an error count and descriptors before
            // the length; they hold colons or stand before another number.
            if (address.cType == 'Z')
                while (i + 1 < m_aTokens.size() && (m_aTokens[i].find(':') != std::string::npos ||
                                                    m_aTokens[i + 1].find_first_not_of("0123456789") == std::string::npos))
                    ++i;
        }
        if (i >= m_aTokens.size()) {
            strWhat = "no data length";
            return false;
        }
        unsigned long long nLength = 0;
        if (!ParseUnsigned(m_aTokens[i], nLength, 10) || nLength > 0xFFFFFFFFull) {
            strWhat = "bad data length";
            return false;
        }
        PutLE32(h + 32, static_cast<std::uint32_t>(nLength));
        ++i;
        if (i < m_aTokens.size() && m_aTokens[i] == "=") {
            h[15] = 0;
            for (++i; i < m_aTokens.size(); ++i) {
                const std::string& strWord = m_aTokens[i];
                // Recorded text may hold stray bytes inside a word: the
                // data is taken as far as the text holds it.
                if (strWord.size() % 2 || strWord.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
                    break;
                for (std::size_t k = 0; k < strWord.size() && m_aRecord.size() < kHeader + kMaxCaptureRecord; k += 2)
                    m_aRecord.push_back(static_cast<std::uint8_t>(std::stoul(strWord.substr(k, 2), nullptr, 16)));
            }
        }
        PutLE32(m_aRecord.data() + 36, static_cast<std::uint32_t>(m_aRecord.size() - kHeader));
        return true;
    }

    std::string m_strLine;
    std::vector<std::string> m_aTokens;
    std::vector<std::uint8_t> m_aRecord;
    std::int64_t m_nTime = 0;
    std::uint64_t m_nRecords = 0;
};

}  // namespace

// ----------------------------------------------------------------- input

CCaptureReader::CInput::~CInput()
{
    if (m_pFile && m_bOwn)
        std::fclose(m_pFile);
}

std::unique_ptr<CCaptureReader::CInput> CCaptureReader::CInput::Open(const std::string& strPath,
                                                                     std::string& strError, std::uint64_t& nSize)
{
    std::unique_ptr<CInput> pInput(new CInput());
    nSize = 0;
    if (strPath == "-") {
        pInput->m_pFile = stdin;
        return pInput;
    }
    struct stat st {};
    if (::stat(strPath.c_str(), &st) != 0) {
        strError = std::strerror(errno);
        return nullptr;
    }
    if (S_ISDIR(st.st_mode)) {
        strError = "is a directory";
        return nullptr;
    }
    if (!S_ISREG(st.st_mode) && !S_ISFIFO(st.st_mode)) {
        strError = "is not a regular file";
        return nullptr;
    }
    pInput->m_pFile = std::fopen(strPath.c_str(), "rb");
    if (!pInput->m_pFile) {
        strError = std::strerror(errno);
        return nullptr;
    }
    pInput->m_bOwn = true;
    if (S_ISREG(st.st_mode))
        nSize = static_cast<std::uint64_t>(st.st_size);
    return pInput;
}

std::size_t CCaptureReader::CInput::Read(void* pBuffer, std::size_t n)
{
    std::uint8_t* p = static_cast<std::uint8_t*>(pBuffer);
    std::size_t nDone = 0;
    while (nDone < n && !m_aPushed.empty()) {
        p[nDone++] = m_aPushed.back();
        m_aPushed.pop_back();
    }
    if (nDone < n) {
        const std::size_t nGot = std::fread(p + nDone, 1, n - nDone, m_pFile);
        if (nGot < n - nDone && std::ferror(m_pFile))
            m_bFailed = true;
        nDone += nGot;
    }
    m_nPosition += nDone;
    return nDone;
}

void CCaptureReader::CInput::Unread(const std::uint8_t* pBytes, std::size_t n)
{
    // Kept in reverse, so that the next read takes pBytes[0] first.
    for (std::size_t i = n; i > 0; --i)
        m_aPushed.push_back(pBytes[i - 1]);
    m_nPosition -= n;
}

std::FILE* CCaptureReader::CInput::AsStdioStream()
{
    cookie_io_functions_t functions{};
    functions.read = [](void* pCookie, char* pBuffer, std::size_t n) -> ssize_t {
        CInput* pInput = static_cast<CInput*>(pCookie);
        const std::size_t nGot = pInput->Read(pBuffer, n);
        return nGot == 0 && pInput->Failed() ? -1 : static_cast<ssize_t>(nGot);
    };
    // ftell asks for the position only; nothing seeks.
    functions.seek = [](void* pCookie, off64_t* pOffset, int nWhence) -> int {
        CInput* pInput = static_cast<CInput*>(pCookie);
        const off64_t nHere = static_cast<off64_t>(pInput->Position());
        if ((nWhence == SEEK_CUR && *pOffset == 0) || (nWhence == SEEK_SET && *pOffset == nHere)) {
            *pOffset = nHere;
            return 0;
        }
        return -1;
    };
    return fopencookie(this, "rb", functions);
}

// ---------------------------------------------------------------- reader

CCaptureReader::CCaptureReader(ECaptureFormat eFormat, std::unique_ptr<CInput> pInput)
    : m_eFormat(eFormat), m_pInput(std::move(pInput))
{
}

std::uint64_t CCaptureReader::BytesRead() const noexcept
{
    return m_pInput ? m_pInput->Position() : 0;
}

ECaptureStatus CCaptureReader::Damaged(std::uint64_t nNumber, std::uint64_t nOffset, const std::string& strWhat)
{
    m_strError = Where(nNumber, nOffset) + ": " + strWhat;
    return CaptureDamaged;
}

const char* CCaptureReader::FormatName(ECaptureFormat eFormat) noexcept
{
    switch (eFormat) {
    case CaptureFormatPcap: return "pcap";
    case CaptureFormatPcapNg: return "pcapng";
    case CaptureFormatBtSnoop: return "btsnoop";
    case CaptureFormatUsbmonText: return "usbmon text";
    }
    return "unknown";
}

std::unique_ptr<CCaptureReader> CCaptureReader::Open(const std::string& strPath, std::string& strError)
{
    std::uint64_t nSize = 0;
    std::unique_ptr<CInput> pInput = CInput::Open(strPath, strError, nSize);
    if (!pInput)
        return nullptr;

    // Sniff the format from the first bytes, then give them back.
    std::uint8_t aHead[8] = {};
    const std::size_t nHead = pInput->Read(aHead, sizeof aHead);
    if (pInput->Failed()) {
        strError = "read error";
        return nullptr;
    }
    pInput->Unread(aHead, nHead);
    if (nHead == 0) {
        strError = "is empty, not a capture";
        return nullptr;
    }

    const std::uint32_t nMagic = nHead >= 4 ? BigEndian32(aHead) : 0;
    std::unique_ptr<CCaptureReader> pReader;
    if (nMagic == 0xA1B2C3D4 || nMagic == 0xD4C3B2A1 || nMagic == 0xA1B23C4D || nMagic == 0x4D3CB2A1 ||
        nMagic == 0x0A0D0D0A) {
        auto pPcap = std::make_unique<CPcapReader>(nMagic == 0x0A0D0D0A ? CaptureFormatPcapNg : CaptureFormatPcap,
                                                   std::move(pInput));
        if (!pPcap->Start(strError))
            return nullptr;
        pReader = std::move(pPcap);
    } else if (nHead == 8 && std::memcmp(aHead, "btsnoop\0", 8) == 0) {
        auto pBtSnoop = std::make_unique<CBtSnoopReader>(std::move(pInput));
        if (!pBtSnoop->Start(strError))
            return nullptr;
        pReader = std::move(pBtSnoop);
    } else {
        // Text: the first line decides.
        std::string strLine;
        std::vector<std::uint8_t> aLine;
        char c = 0;
        while (aLine.size() < 4096 && pInput->Read(&c, 1) == 1) {
            aLine.push_back(static_cast<std::uint8_t>(c));
            if (c == '\n')
                break;
        }
        pInput->Unread(aLine.data(), aLine.size());
        strLine.assign(aLine.begin(), aLine.end());
        if (!CUsbmonTextReader::LooksLikeUsbmon(strLine)) {
            strError = "is not a capture of a known format (pcap, pcapng, btsnoop or usbmon text)";
            return nullptr;
        }
        pReader = std::make_unique<CUsbmonTextReader>(std::move(pInput));
    }
    pReader->m_nFileSize = nSize;
    return pReader;
}
