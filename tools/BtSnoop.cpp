#include "tools/BtSnoop.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

namespace {

constexpr std::size_t kFileHeader = 16;
constexpr std::size_t kRecordHeader = 24;
constexpr std::uint32_t kDatalinkHCI = 1001;
constexpr std::uint32_t kDatalinkH4 = 1002;

std::uint32_t BigEndian32(const std::uint8_t* p)
{
    return static_cast<std::uint32_t>(p[0]) << 24 | static_cast<std::uint32_t>(p[1]) << 16 |
           static_cast<std::uint32_t>(p[2]) << 8 | p[3];
}

// The kind of an H4 packet: type 1 command, 2 ACL, 3 SCO, 4 event; ACL takes
// its direction from bit 0 of the record flags (1 = received by the host).
int KindOfH4(std::uint8_t nType, std::uint32_t dwFlags)
{
    switch (nType) {
    case 1: return 0;
    case 2: return (dwFlags & 1) ? 2 : 1;
    case 3: return 3;
    case 4: return 4;
    default: return -1;
    }
}

}  // namespace

SBtSnoopFile ReadBtSnoop(const std::string& strPath)
{
    SBtSnoopFile file;
    std::ifstream in(strPath, std::ios::binary);
    if (!in) {
        file.strError = std::strerror(errno);
        return file;
    }
    const std::vector<std::uint8_t> a((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad()) {
        file.strError = "read error";
        return file;
    }
    if (a.size() < kFileHeader || std::memcmp(a.data(), "btsnoop\0", 8) != 0) {
        file.strError = "not a btsnoop file";
        return file;
    }
    const std::uint32_t dwDatalink = BigEndian32(&a[12]);
    if (dwDatalink != kDatalinkHCI && dwDatalink != kDatalinkH4) {
        file.strError = "btsnoop datalink " + std::to_string(dwDatalink) + " is not HCI (1001) or HCI UART (1002)";
        return file;
    }
    std::size_t nPos = kFileHeader;
    while (a.size() - nPos >= kRecordHeader) {
        const std::uint32_t dwIncluded = BigEndian32(&a[nPos + 4]);
        const std::uint32_t dwFlags = BigEndian32(&a[nPos + 8]);
        nPos += kRecordHeader;
        if (dwIncluded > a.size() - nPos)
            break;
        const std::uint8_t* p = &a[nPos];
        nPos += dwIncluded;
        int nKind;
        if (dwDatalink == kDatalinkH4) {
            if (dwIncluded == 0 || (nKind = KindOfH4(p[0], dwFlags)) < 0) {
                ++file.nSkipped;
                continue;
            }
            file.aPackets.push_back({nKind, std::vector<std::uint8_t>(p + 1, p + dwIncluded)});
        } else {
            // Flags: bit 1 command or event, bit 0 received by the host.
            nKind = (dwFlags & 2) ? ((dwFlags & 1) ? 4 : 0) : ((dwFlags & 1) ? 2 : 1);
            file.aPackets.push_back({nKind, std::vector<std::uint8_t>(p, p + dwIncluded)});
        }
    }
    file.bOK = true;
    return file;
}
