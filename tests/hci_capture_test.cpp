// Real Bluetooth traffic: every packet of the public btsnoop captures beside
// the project, decoded with the HCI decoder by its own packet kind.
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "capture/CaptureReader.h"
#include "capture/CaptureRouter.h"
#include "hci/HCISpec.h"
#include "tests/TestUtil.h"

namespace {

struct SCapture {
    const char* pszFile;
    std::array<std::size_t, 5> aKinds;  // packets per kind: command, ACL out, ACL in, SCO, event
};

void PrintTo(const SCapture& c, std::ostream* os)
{
    *os << c.pszFile;
}

// The HCI packets of a capture as the capture routes give them: bytes and kind.
struct SRawPacket {
    int nKind;
    std::vector<std::uint8_t> aBytes;
};

class CCollect : public ICaptureSink {
public:
    void Payload(const SRoutedPayload& payload) override
    {
        EXPECT_STREQ(payload.pEntry->pszAlias, "hci");
        aPackets.push_back({payload.options.nHCIKind, std::vector<std::uint8_t>(payload.pData, payload.pData + payload.nData)});
    }
    void Unrouted(const SUnroutedRecord&) override { ++nSkipped; }

    std::vector<SRawPacket> aPackets;
    std::size_t nSkipped = 0;
};

class HCICapture : public ::testing::TestWithParam<SCapture> {};

TEST_P(HCICapture, EveryPacketDecodesWhole)
{
    const std::string strPath = std::string(BUSDECODE_CAPTURES_DIR) + "/" + GetParam().pszFile;
    if (!std::ifstream(strPath))
        GTEST_SKIP() << "capture not found: " << strPath;
    std::string strError;
    const std::unique_ptr<CCaptureReader> pReader = CCaptureReader::Open(strPath, strError);
    ASSERT_TRUE(pReader) << strError;
    CCollect capture;
    CCaptureRouter router(capture);
    SCaptureRecord record;
    while (pReader->Next(record) == CaptureRecord)
        router.Feed(record);
    ASSERT_TRUE(pReader->ErrorText().empty()) << pReader->ErrorText();

    std::array<std::size_t, 5> aKinds{};
    std::map<std::string, std::size_t> mapCommandNames;
    CHCIPacket packet;
    for (const SRawPacket& raw : capture.aPackets) {
        ++aKinds[static_cast<std::size_t>(raw.nKind)];
        const CAdvAnlzData data = CAdvAnlzData::FromBytes(raw.aBytes.data(), static_cast<std::uint32_t>(raw.aBytes.size() * 8));
        ASSERT_EQ(packet.RestructBy(data, static_cast<EHCIPacketKind>(raw.nKind)), 1);

        // Every bit is in a field, unless a field hit its 65535-bit limit or
        // the packet its 255 fields.
        std::uint64_t nBits = 0;
        bool bCapped = packet.GetFieldCount() == CProtocolPacket::kMaxFields;
        for (unsigned char i = 1; i <= packet.GetFieldCount(); ++i) {
            nBits += packet.GetFieldValue(i)->GetLength();
            bCapped = bCapped || packet.GetFieldValue(i)->GetLength() == 65535;
        }
        if (!bCapped) {
            ASSERT_EQ(nBits, raw.aBytes.size() * 8) << "kind " << raw.nKind << ": " << HexOf(data);
        }
        EXPECT_EQ(packet.m_nRequestFields, packet.GetFieldCount());
        EXPECT_EQ(packet.m_nResponseFields, 0);

        switch (raw.nKind) {
        case HCICommandPacketType:
            ASSERT_GE(raw.aBytes.size(), 3u);
            EXPECT_NE(packet.GetOpCodeOCF(), 0) << HexOf(data);
            ++mapCommandNames[packet.m_strRequestName.ToStdString()];
            break;
        case HCIACLHostToHostControllerDataPacketType:
        case HCIACLHostControllerToHostDataPacketType:
            EXPECT_EQ(packet.GetFieldId(1), CHCISpec::FieldACLHandle);
            EXPECT_EQ(packet.m_strRequestName, "HCI ACL Data Packet");
            break;
        case HCIEventPacketType:
            EXPECT_EQ(packet.GetFieldId(1), CHCISpec::FieldEventCode);
            break;
        default:
            break;
        }
    }
    EXPECT_EQ(aKinds, GetParam().aKinds);
    // The start-up of a controller: these HCI 1.1 commands stand in both captures.
    for (const char* pszName : {"Reset", "HCI_Read_Local_Version_Information", "HCI_Read_BD_Address",
                                "HCI_Read_Buffer_Size", "Write_Scan_Enable"})
        EXPECT_GT(mapCommandNames[pszName], 0u) << pszName;
}

INSTANTIATE_TEST_SUITE_P(Captures, HCICapture,
                         ::testing::Values(SCapture{"a2dp/motog_btsnoop_hci.log", {93, 1678, 110, 0, 1793}},
                                           SCapture{"a2dp/lg750.cap", {204, 5090, 135, 0, 2792}}),
                         [](const ::testing::TestParamInfo<SCapture>& info) {
                             return std::string(info.index == 0 ? "MotoG" : "LG750");
                         });

}  // namespace
