// A CD-ROM drive of a real capture, reached over iSCSI: the command blocks
// and their data-in are taken out of the iSCSI PDUs of the TCP streams and
// decoded through the ATAPI decoder. The optical commands (READ TOC, READ
// CAPACITY) must show the numbers that the raw bytes hold; the shared ones
// must come out as the SCSI decode. TCP segments that the capture lacks
// leave some data incomplete; such commands are decoded without data.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "capture/CaptureReader.h"
#include "storage/ATAPISpec.h"
#include "storage/RBCProtocol.h"
#include "tests/StorageTestUtil.h"
#include "tests/TestUtil.h"

namespace {

using namespace ATAPIField;

const std::string kCapture = std::string(BUSDECODE_CAPTURES_DIR) + "/wireshark-wiki/iscsi-scsi-data-cdrom.log";
constexpr std::uint16_t kISCSIPort = 3260;

// One direction of a TCP connection: its segments by sequence number,
// joined where they touch.
class CTcpStream {
public:
    void Add(std::uint32_t nSeq, const std::uint8_t* p, std::size_t n)
    {
        if (!m_bStarted) {
            m_nFirst = nSeq;
            m_bStarted = true;
        }
        const std::uint64_t nAt = static_cast<std::uint32_t>(nSeq - m_nFirst);
        std::vector<std::uint8_t>& a = m_mapSegments[nAt];
        if (a.size() < n)
            a.assign(p, p + n);
    }
    // Joins touching and overlapping segments into runs.
    void Close()
    {
        std::map<std::uint64_t, std::vector<std::uint8_t>> mapRuns;
        for (const auto& segment : m_mapSegments) {
            if (!mapRuns.empty()) {
                auto& last = *mapRuns.rbegin();
                const std::uint64_t nEnd = last.first + last.second.size();
                if (segment.first <= nEnd) {
                    const std::size_t nOverlap = static_cast<std::size_t>(nEnd - segment.first);
                    if (nOverlap < segment.second.size())
                        last.second.insert(last.second.end(), segment.second.begin() + nOverlap, segment.second.end());
                    continue;
                }
            }
            mapRuns[segment.first] = segment.second;
        }
        m_mapSegments.swap(mapRuns);
    }
    // n bytes at a stream position, or null when the capture lacks any.
    const std::uint8_t* At(std::uint64_t nAt, std::size_t n) const
    {
        auto it = m_mapSegments.upper_bound(nAt);
        if (it == m_mapSegments.begin())
            return nullptr;
        --it;
        if (nAt + n > it->first + it->second.size())
            return nullptr;
        return it->second.data() + (nAt - it->first);
    }
    const std::map<std::uint64_t, std::vector<std::uint8_t>>& Runs() const { return m_mapSegments; }
    std::uint64_t End() const
    {
        return m_mapSegments.empty() ? 0 : m_mapSegments.rbegin()->first + m_mapSegments.rbegin()->second.size();
    }

private:
    bool m_bStarted = false;
    std::uint32_t m_nFirst = 0;
    std::map<std::uint64_t, std::vector<std::uint8_t>> m_mapSegments;
};

// One iSCSI PDU: its 48-byte basic header and its data segment (empty when
// the capture lacks part of it).
struct SPdu {
    std::vector<std::uint8_t> aHeader;
    std::vector<std::uint8_t> aData;
    bool bDataWhole = true;
};

bool LooksLikeHeader(const std::uint8_t* p)
{
    const std::uint8_t nOp = p[0] & 0x3F;
    const bool bKnown = nOp == 0x01 || nOp == 0x00 || nOp == 0x20 || nOp == 0x21 || nOp == 0x25 || nOp == 0x31 ||
                        nOp == 0x3F;
    return bKnown && p[4] == 0 && BigEndian(p + 5, 3) <= 65536;
}

// The PDUs of a stream: PDU lengths lead from one header to the next; when
// a header falls into a gap, the walk goes on at the next run that begins
// with something like a header.
std::vector<SPdu> PdusOf(const CTcpStream& stream)
{
    std::vector<SPdu> aPdus;
    std::uint64_t nAt = stream.Runs().empty() ? 0 : stream.Runs().begin()->first;
    while (nAt < stream.End()) {
        const std::uint8_t* pHeader = stream.At(nAt, 48);
        if (!pHeader) {
            auto it = stream.Runs().upper_bound(nAt);
            while (it != stream.Runs().end() && (it->second.size() < 48 || !LooksLikeHeader(it->second.data())))
                ++it;
            if (it == stream.Runs().end())
                break;
            nAt = it->first;
            continue;
        }
        SPdu pdu;
        pdu.aHeader.assign(pHeader, pHeader + 48);
        const std::uint32_t nAHS = pHeader[4] * 4u;
        const std::uint32_t nData = BigEndian(pHeader + 5, 3);
        if (const std::uint8_t* pData = stream.At(nAt + 48 + nAHS, nData))
            pdu.aData.assign(pData, pData + nData);
        else
            pdu.bDataWhole = false;
        aPdus.push_back(pdu);
        nAt += 48 + nAHS + ((nData + 3) & ~3u);
    }
    return aPdus;
}

// A SCSI command of the session with the data it read.
struct SSCSICommand {
    std::vector<std::uint8_t> aBlock;
    std::map<std::uint32_t, std::vector<std::uint8_t>> mapData;  // by buffer offset
    bool bFinal = false;
    bool bDataLost = false;
    bool bAnswered = false;

    // The data read, when the capture holds all of it.
    bool DataIn(std::vector<std::uint8_t>& aData) const
    {
        aData.clear();
        if (bDataLost || (!mapData.empty() && !bFinal))
            return false;
        for (const auto& part : mapData) {
            if (part.first != aData.size())
                return false;
            aData.insert(aData.end(), part.second.begin(), part.second.end());
        }
        return true;
    }
};

std::size_t CommandBlockLength(std::uint8_t nOp)
{
    switch (nOp >> 5) {
    case 0:
        return 6;
    case 1:
    case 2:
        return 10;
    case 4:
        return 16;
    case 5:
        return 12;
    default:
        return 16;
    }
}

// The SCSI commands of every iSCSI connection in the capture, in the order
// they were sent.
std::vector<SSCSICommand> SCSICommandsOf(const std::string& strPath)
{
    std::vector<SSCSICommand> aCommands;
    std::string strError;
    std::unique_ptr<CCaptureReader> pReader = CCaptureReader::Open(strPath, strError);
    if (!pReader) {
        ADD_FAILURE() << strError;
        return aCommands;
    }
    // Streams by addresses and ports; initiator to target first.
    using TKey = std::tuple<std::uint32_t, std::uint16_t, std::uint32_t, std::uint16_t>;
    std::map<TKey, CTcpStream> mapStreams;
    SCaptureRecord record;
    while (pReader->Next(record) == CaptureRecord) {
        const std::uint8_t* p = record.pData;
        std::size_t n = record.nData;
        if (record.nLinkType != 1 || n < 14 + 20 || p[12] != 0x08 || p[13] != 0x00)
            continue;
        p += 14;
        n -= 14;
        const std::size_t nIPHeader = (p[0] & 0x0F) * 4u;
        const std::size_t nIPTotal = std::min<std::size_t>(BigEndian(p + 2, 2), n);
        if ((p[0] >> 4) != 4 || p[9] != 6 || nIPTotal < nIPHeader + 20)
            continue;
        const std::uint8_t* pTcp = p + nIPHeader;
        const std::size_t nTcp = nIPTotal - nIPHeader;
        const std::size_t nTcpHeader = (pTcp[12] >> 4) * 4u;
        if (nTcpHeader < 20 || nTcpHeader > nTcp)
            continue;
        const std::uint16_t nSource = static_cast<std::uint16_t>(BigEndian(pTcp, 2));
        const std::uint16_t nDestination = static_cast<std::uint16_t>(BigEndian(pTcp + 2, 2));
        if ((nSource != kISCSIPort && nDestination != kISCSIPort) || nTcp == nTcpHeader)
            continue;
        mapStreams[TKey(BigEndian(p + 12, 4), nSource, BigEndian(p + 16, 4), nDestination)].Add(
            BigEndian(pTcp + 4, 4), pTcp + nTcpHeader, nTcp - nTcpHeader);
    }

    for (auto& entry : mapStreams) {
        if (std::get<3>(entry.first) != kISCSIPort)
            continue;
        const TKey& key = entry.first;
        const auto reply =
            mapStreams.find(TKey(std::get<2>(key), std::get<3>(key), std::get<0>(key), std::get<1>(key)));
        if (reply == mapStreams.end())
            continue;
        entry.second.Close();
        reply->second.Close();
        std::map<std::uint32_t, std::size_t> mapByTag;  // initiator task tag to command
        for (const SPdu& pdu : PdusOf(entry.second)) {
            if ((pdu.aHeader[0] & 0x3F) != 0x01)
                continue;
            SSCSICommand command;
            const auto itBlock = pdu.aHeader.begin() + 32;
            command.aBlock.assign(itBlock, itBlock + CommandBlockLength(pdu.aHeader[32]));
            mapByTag[BigEndian(pdu.aHeader.data() + 16, 4)] = aCommands.size();
            aCommands.push_back(command);
        }
        for (const SPdu& pdu : PdusOf(reply->second)) {
            const std::uint8_t nOp = pdu.aHeader[0] & 0x3F;
            const auto it = mapByTag.find(BigEndian(pdu.aHeader.data() + 16, 4));
            if (it == mapByTag.end() || (nOp != 0x25 && nOp != 0x21))
                continue;
            SSCSICommand& command = aCommands[it->second];
            command.bAnswered = true;
            if (nOp == 0x21)
                continue;
            command.mapData[BigEndian(pdu.aHeader.data() + 40, 4)] = pdu.aData;
            command.bDataLost = command.bDataLost || !pdu.bDataWhole;
            command.bFinal = command.bFinal || (pdu.aHeader[1] & 0x80) != 0;
        }
    }
    return aCommands;
}

// The last field with this id, as a number.
std::uint32_t LastOf(const CProtocolPacket& packet, unsigned short nId)
{
    const std::vector<std::uint32_t> a = ValuesOf(packet, nId);
    return a.empty() ? 0xFFFFFFFFu : a.back();
}

TEST(ATAPICapture, CDROMOverISCSI)
{
    if (!std::ifstream(kCapture).good())
        GTEST_SKIP() << "capture not present: " << kCapture;
    const std::vector<SSCSICommand> aCommands = SCSICommandsOf(kCapture);
    std::map<int, int> mapCommands;
    int nTOCs = 0, nCapacities = 0, nWithData = 0;
    CATAPISpec* pSpec = CATAPISpec::GetInstance();
    for (std::size_t i = 0; i < aCommands.size(); ++i) {
        const SSCSICommand& c = aCommands[i];
        const std::uint8_t nOp = c.aBlock[0];
        ++mapCommands[nOp];
        SCOPED_TRACE("command " + std::to_string(i) + ", operation code " + std::to_string(nOp));
        std::vector<std::uint8_t> aData;
        if (!c.DataIn(aData))
            aData.clear();
        nWithData += aData.empty() ? 0 : 1;
        std::vector<std::uint8_t> aPayload = c.aBlock;
        aPayload.insert(aPayload.end(), aData.begin(), aData.end());
        const CAdvAnlzData payload =
            CAdvAnlzData::FromBytes(aPayload.data(), static_cast<std::uint32_t>(aPayload.size() * 8));
        const CATAPIPacket packet(payload);

        switch (nOp) {
        case 0x00:  // TEST UNIT READY
        case 0x12:  // INQUIRY
        case 0x1E:  // PREVENT ALLOW MEDIUM REMOVAL
        case 0x5A:  // MODE SENSE(10), page 2Ah
            EXPECT_TRUE(pSpec->IsHandedToSCSI());
            ExpectSameDecode(packet, CSCSIProtocolPacket(payload));
            break;
        case 0x25:  // READ CAPACITY
            ASSERT_EQ(aData.size(), 8u);
            EXPECT_EQ(packet.m_strResponseName, "Capacity");
            EXPECT_EQ(LastOf(packet, LogicalBlockAddress), BigEndian(aData.data(), 4));
            EXPECT_EQ(LastOf(packet, BlockLength), BigEndian(aData.data() + 4, 4));
            EXPECT_EQ(LastOf(packet, LogicalBlockAddress), 0x4F926u);
            EXPECT_EQ(LastOf(packet, BlockLength), 2048u);
            ++nCapacities;
            break;
        case 0x43: {  // READ TOC/PMA/ATIP: the header and the first track
            ASSERT_GE(aData.size(), 12u);
            EXPECT_EQ(LastOf(packet, MSF), (c.aBlock[1] >> 1) & 1u);
            ASSERT_EQ(LastOf(packet, TOCFormat), c.aBlock[2] & 0x0Fu);
            ASSERT_EQ(c.aBlock[2] & 0x0F, 0);
            EXPECT_EQ(packet.m_strResponseName, "TOSTrackDes");
            EXPECT_EQ(packet.m_nRequestFields, 9);
            EXPECT_EQ(packet.m_nResponseFields, 9);
            EXPECT_EQ(LastOf(packet, TOCDataLength), BigEndian(aData.data(), 2));
            EXPECT_EQ(LastOf(packet, FirstTrackSession), aData[2]);
            EXPECT_EQ(LastOf(packet, LastTrackSession), aData[3]);
            EXPECT_EQ(LastOf(packet, TOCControl), aData[5] & 0x0Fu);
            EXPECT_EQ(LastOf(packet, TOCAddress), aData[5] >> 4u);
            EXPECT_EQ(LastOf(packet, TOCTrackNumber), aData[6]);
            EXPECT_EQ(LastOf(packet, TOCLogicalBlockAddress), BigEndian(aData.data() + 8, 4));
            // A data track (control 4) of a disc with one track.
            EXPECT_EQ(LastOf(packet, TOCControl), 4u);
            EXPECT_EQ(LastOf(packet, TOCTrackNumber), 1u);
            ++nTOCs;
            break;
        }
        case 0x28: {  // READ(10): opaque here; RBC reads the block
            ASSERT_EQ(packet.GetFieldCount(), 2);
            EXPECT_EQ(packet.GetFieldId(2), Data);
            const CRBCProtocolPacket rbc(payload);
            EXPECT_EQ(ValuesOf(rbc, CRBCProtocolSpec::FieldLogicalBlockAddress),
                      std::vector<std::uint32_t>{BigEndian(c.aBlock.data() + 2, 4)});
            EXPECT_EQ(ValuesOf(rbc, CRBCProtocolSpec::FieldTransferLength),
                      std::vector<std::uint32_t>{BigEndian(c.aBlock.data() + 7, 2)});
            break;
        }
        case 0xA0:  // REPORT LUNS: not an optical drive command
            EXPECT_EQ(packet.m_strRequestName, "Unknown");
            EXPECT_EQ(packet.GetFieldCount(), 3);
            break;
        default:
            ADD_FAILURE() << "unexpected command";
            break;
        }
    }
    const std::map<int, int> kExpected = {{0x00, 532}, {0x28, 159}, {0x43, 6}, {0x5A, 2},
                                          {0x25, 5},   {0x12, 2},   {0x1E, 2}, {0xA0, 1}};
    EXPECT_EQ(mapCommands, kExpected);
    EXPECT_EQ(nTOCs, 6);
    EXPECT_EQ(nCapacities, 5);
    RecordProperty("commands", static_cast<int>(aCommands.size()));
    RecordProperty("with_data", nWithData);
}

}  // namespace
