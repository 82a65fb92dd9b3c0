// Capture files read record by record: pcap and pcapng (through libpcap),
// btsnoop, and the Linux usbmon text format. One record is held at a time,
// so memory stays flat whatever the size of the file.
//
// usbmon text lines are turned into records of link type 189 (Linux USB,
// the 48-byte usbmon header followed by the data the line holds), so that
// the binary and the text forms of usbmon reach the same USB parser.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

enum ECaptureFormat : int {
    CaptureFormatPcap = 0,
    CaptureFormatPcapNg = 1,
    CaptureFormatBtSnoop = 2,
    CaptureFormatUsbmonText = 3,
};

// Link types: pcap's numbers, and the btsnoop datalinks as they stand in the
// btsnoop header (they do not collide with pcap's).
enum : int {
    LinkTypePPP = 9,
    LinkTypePPPHDLC = 50,
    LinkTypeBluetoothH4 = 187,
    LinkTypeUsbLinux = 189,
    LinkTypeBluetoothH4WithPhdr = 201,
    LinkTypeUsbLinuxMmapped = 220,
    LinkTypeUsbPcap = 249,
    LinkTypeBtSnoopHCI = 1001,     // HCI without transport byte; kind from the flags
    LinkTypeBtSnoopH4 = 1002,      // HCI UART: an H4 type byte leads each record
    LinkTypeBtSnoopMonitor = 2001, // Linux monitor: flags hold the index (high half) and the opcode (low half)
};

// The largest record any reader accepts.
constexpr std::uint32_t kMaxCaptureRecord = 256 * 1024;

struct SCaptureRecord {
    std::uint64_t nNumber = 0;       // from 1, in file order
    std::int64_t nTimeMicros = 0;    // microseconds since the epoch (usbmon text: as the file counts)
    int nLinkType = 0;
    std::uint32_t nFlags = 0;        // btsnoop: the record flags; else 0
    std::uint32_t nOriginalLength = 0;
    std::uint64_t nOffset = 0;       // byte offset of the record (of its line, for text) in the file
    const std::uint8_t* pData = nullptr;  // valid until the next call of Next
    std::size_t nData = 0;
};

enum ECaptureStatus : int {
    CaptureRecord = 0,   // a record was read
    CaptureEnd = 1,      // the file ended cleanly
    CaptureDamaged = 2,  // the file is damaged here; ErrorText says how
};

class CCaptureReader {
public:
    virtual ~CCaptureReader() = default;

    // Opens a capture ("-" is standard input) and recognises its format from
    // its first bytes. Null with strError set when the path cannot be read or
    // holds no capture of a known format; the text names no path (the
    // caller does).
    static std::unique_ptr<CCaptureReader> Open(const std::string& strPath, std::string& strError);

    // The next record. After CaptureDamaged, ErrorText names the record
    // number and byte offset and what is wrong; every record before it was
    // whole.
    virtual ECaptureStatus Next(SCaptureRecord& record) = 0;
    const std::string& ErrorText() const noexcept { return m_strError; }

    ECaptureFormat Format() const noexcept { return m_eFormat; }
    // The file's link type (for pcapng: that of the first interface).
    int LinkType() const noexcept { return m_nLinkType; }
    // Bytes of the file read so far, and the file's size (0 when unknown,
    // e.g. standard input).
    std::uint64_t BytesRead() const noexcept;
    std::uint64_t FileSize() const noexcept { return m_nFileSize; }

    static const char* FormatName(ECaptureFormat eFormat) noexcept;

protected:
    class CInput;
    CCaptureReader(ECaptureFormat eFormat, std::unique_ptr<CInput> pInput);
    ECaptureStatus Damaged(std::uint64_t nNumber, std::uint64_t nOffset, const std::string& strWhat);

    ECaptureFormat m_eFormat;
    int m_nLinkType = 0;
    std::uint64_t m_nFileSize = 0;
    std::unique_ptr<CInput> m_pInput;
    std::string m_strError;
};

// A readable stream with a few bytes of look-ahead pushed back, counting the
// bytes taken from it.
class CCaptureReader::CInput {
public:
    ~CInput();
    // Opens a path ("-": standard input). A directory or a device is refused.
    static std::unique_ptr<CInput> Open(const std::string& strPath, std::string& strError, std::uint64_t& nSize);

    // Reads up to n bytes; returns how many were read (fewer only at the end
    // of the input or on a read error).
    std::size_t Read(void* pBuffer, std::size_t n);
    // Gives bytes back to be read again (the format sniffing).
    void Unread(const std::uint8_t* pBytes, std::size_t n);
    bool Failed() const noexcept { return m_bFailed; }
    std::uint64_t Position() const noexcept { return m_nPosition; }
    // A stdio stream over this input for libpcap; it owns nothing and must
    // be closed before the input goes.
    std::FILE* AsStdioStream();

private:
    CInput() = default;
    std::FILE* m_pFile = nullptr;
    bool m_bOwn = false;
    bool m_bFailed = false;
    std::vector<std::uint8_t> m_aPushed;
    std::uint64_t m_nPosition = 0;
};
