// USB mass-storage sessions of real captures: every command block with its
// data through the SCSI, RBC and ATAPI decoders. Commands that RBC and
// ATAPI hand to the SCSI decoder must come out as the SCSI decode; those
// they read themselves must show the numbers that the raw bytes hold.
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "capture/CaptureReader.h"
#include "capture/UsbPacket.h"
#include "storage/ATAPISpec.h"
#include "storage/RBCProtocol.h"
#include "tests/StorageTestUtil.h"
#include "tests/TestUtil.h"

namespace {

const std::string kCaptures = BUSDECODE_CAPTURES_DIR;

// One bulk-only command: the block out of the command wrapper and the bytes
// of its data stage, as far as the capture holds them.
struct SCommand {
    std::uint64_t nFrame = 0;
    std::vector<std::uint8_t> aBlock;
    std::vector<std::uint8_t> aData;
    bool bDataIn = false;
    std::uint32_t nExpected = 0;  // the wrapper's transfer length
};

bool Starts(const SUsbPacket& packet, const char* pszSignature, std::size_t nLength)
{
    return packet.nData == nLength && std::equal(pszSignature, pszSignature + 4, packet.pData);
}

// The commands of every device of a capture, each with the data up to its
// status wrapper, or up to the next command or the end of the capture when
// the status never came.
std::vector<SCommand> MassStorageCommands(const std::string& strPath)
{
    std::vector<SCommand> aCommands;
    std::string strError;
    std::unique_ptr<CCaptureReader> pReader = CCaptureReader::Open(strPath, strError);
    if (!pReader) {
        ADD_FAILURE() << strPath << ": " << strError;
        return aCommands;
    }
    std::map<std::uint32_t, SCommand> mapOpen;  // by bus and device
    SCaptureRecord record;
    while (pReader->Next(record) == CaptureRecord) {
        SUsbPacket packet;
        if (!ParseUsbPacket(record.nLinkType, record.pData, record.nData, packet) || packet.eTransfer != UsbBulk)
            continue;
        const std::uint32_t nKey = static_cast<std::uint32_t>(packet.nBus) << 16 | packet.nDevice;
        if (!packet.bIn && packet.eEvent == UsbSubmit && Starts(packet, "USBC", 31)) {
            SCommand c;
            c.nFrame = record.nNumber;
            const std::uint8_t nBlockLength = packet.pData[14] & 0x1F;
            c.aBlock.assign(packet.pData + 15, packet.pData + 15 + (nBlockLength <= 16 ? nBlockLength : 16));
            c.nExpected = packet.pData[8] | packet.pData[9] << 8 | packet.pData[10] << 16 |
                          static_cast<std::uint32_t>(packet.pData[11]) << 24;
            c.bDataIn = (packet.pData[12] & 0x80) != 0;
            const auto it = mapOpen.find(nKey);
            if (it != mapOpen.end())
                aCommands.push_back(it->second);
            mapOpen[nKey] = c;
            continue;
        }
        const auto it = mapOpen.find(nKey);
        if (it == mapOpen.end() || packet.nData == 0)
            continue;
        if (packet.bIn && packet.eEvent == UsbComplete && Starts(packet, "USBS", 13)) {
            aCommands.push_back(it->second);
            mapOpen.erase(it);
        } else if (packet.bIn == it->second.bDataIn &&
                   packet.eEvent == (packet.bIn ? UsbComplete : UsbSubmit)) {
            it->second.aData.insert(it->second.aData.end(), packet.pData, packet.pData + packet.nData);
        }
    }
    for (const auto& open : mapOpen)
        aCommands.push_back(open.second);
    return aCommands;
}

struct SCrossCheck {
    std::map<int, int> mapCommands;  // by operation code
    int nCapacities = 0;
    int nFullReads = 0;
};

void CrossCheck(const SCommand& c, SCrossCheck& result)
{
    ASSERT_FALSE(c.aBlock.empty());
    std::vector<std::uint8_t> aPayload = c.aBlock;
    aPayload.insert(aPayload.end(), c.aData.begin(), c.aData.end());
    const CAdvAnlzData payload =
        CAdvAnlzData::FromBytes(aPayload.data(), static_cast<std::uint32_t>(aPayload.size() * 8));
    const std::uint8_t nOp = c.aBlock[0];
    ++result.mapCommands[nOp];
    SCOPED_TRACE("frame " + std::to_string(c.nFrame) + ", operation code " + std::to_string(nOp));

    const CSCSIProtocolPacket scsi(payload);
    const CRBCProtocolPacket rbc(payload);
    const bool bRBCPassedOn = CRBCProtocolSpec::GetInstance()->IsPassedToSCSI();
    const CATAPIPacket atapi(payload);
    const bool bATAPIHandedOver = CATAPISpec::GetInstance()->IsHandedToSCSI();

    switch (nOp) {
    case 0x00:  // TEST UNIT READY
    case 0x03:  // REQUEST SENSE
    case 0x12:  // INQUIRY
    case 0x1E:  // PREVENT ALLOW MEDIUM REMOVAL
        EXPECT_TRUE(bRBCPassedOn);
        EXPECT_TRUE(bATAPIHandedOver);
        ExpectSameDecode(rbc, scsi);
        ExpectSameDecode(atapi, scsi);
        break;
    case 0x1A:  // MODE SENSE(6): RBC passes it on, ATAPI does not know it
        EXPECT_TRUE(bRBCPassedOn);
        ExpectSameDecode(rbc, scsi);
        EXPECT_EQ(atapi.m_strRequestName, "Unknown");
        break;
    case 0x25: {  // READ CAPACITY(10): RBC and ATAPI each read the answer
        EXPECT_EQ(scsi.m_strRequestName, "Unknown");
        EXPECT_EQ(rbc.m_strResponseName, "READ_CAPACITY Data");
        EXPECT_EQ(atapi.m_strResponseName, "Capacity");
        ASSERT_GE(c.aData.size(), 8u);
        const std::uint32_t nLastBlock = BigEndian(c.aData.data(), 4);
        const std::uint32_t nBlockLength = BigEndian(c.aData.data() + 4, 4);
        EXPECT_EQ(ValuesOf(rbc, CRBCProtocolSpec::FieldReturnedLogicalBlockAddress),
                  std::vector<std::uint32_t>{nLastBlock});
        EXPECT_EQ(ValuesOf(rbc, CRBCProtocolSpec::FieldBlockLength), std::vector<std::uint32_t>{nBlockLength});
        EXPECT_EQ(ValuesOf(atapi, ATAPIField::LogicalBlockAddress), (std::vector<std::uint32_t>{0, nLastBlock}));
        EXPECT_EQ(ValuesOf(atapi, ATAPIField::BlockLength), std::vector<std::uint32_t>{nBlockLength});
        EXPECT_EQ(rbc.m_nRequestFields, 10);
        EXPECT_EQ(rbc.m_nResponseFields, 2);
        ++result.nCapacities;
        break;
    }
    case 0x28: {  // READ(10): RBC reads the block, the data is one field
        EXPECT_EQ(scsi.m_strRequestName, "Unknown");
        EXPECT_EQ(rbc.m_strRequestName, "READ (10)");
        EXPECT_EQ(ValuesOf(rbc, CRBCProtocolSpec::FieldLogicalBlockAddress),
                  std::vector<std::uint32_t>{BigEndian(c.aBlock.data() + 2, 4)});
        EXPECT_EQ(ValuesOf(rbc, CRBCProtocolSpec::FieldTransferLength),
                  std::vector<std::uint32_t>{BigEndian(c.aBlock.data() + 7, 2)});
        const std::uint32_t nDataBits = static_cast<std::uint32_t>(c.aData.size() * 8);
        CByteArray aIndexes;
        rbc.GetFieldIndex(CRBCProtocolSpec::FieldCommandDataBlock, aIndexes);
        if (nDataBits > 0) {
            ASSERT_EQ(aIndexes.GetSize(), 1);
            EXPECT_EQ(rbc.GetFieldValue(aIndexes[0])->GetLength(), std::min<std::uint32_t>(nDataBits, 65535));
            EXPECT_EQ(rbc.m_nResponseFields, 1);
        }
        // A whole data stage holds the blocks the command asked for.
        if (c.aData.size() == c.nExpected) {
            EXPECT_EQ(c.aData.size() % BigEndian(c.aBlock.data() + 7, 2), 0u);
            ++result.nFullReads;
        }
        ASSERT_EQ(atapi.GetFieldCount(), 2);
        EXPECT_EQ(atapi.GetFieldValue(2)->GetLength(), payload.GetLength() - 8);
        break;
    }
    default:
        break;
    }
}

struct SCaptureCase {
    const char* pszName;
    const char* pszFile;
    std::map<int, int> mapExpected;  // commands by operation code
};

class MassStorageCapture : public ::testing::TestWithParam<SCaptureCase> {};

TEST_P(MassStorageCapture, CommandsDecodeAlikeThroughTheThreeDecoders)
{
    const SCaptureCase& c = GetParam();
    const std::string strPath = kCaptures + "/" + c.pszFile;
    if (!std::ifstream(strPath).good())
        GTEST_SKIP() << "capture not present: " << strPath;
    SCrossCheck result;
    for (const SCommand& command : MassStorageCommands(strPath))
        CrossCheck(command, result);
    for (const auto& expected : c.mapExpected)
        EXPECT_EQ(result.mapCommands[expected.first], expected.second) << "operation code " << expected.first;
    EXPECT_EQ(result.nCapacities, result.mapCommands[0x25]);
    std::string strSummary;
    for (const auto& n : result.mapCommands)
        strSummary += " " + std::to_string(n.first) + ":" + std::to_string(n.second);
    RecordProperty("commands", strSummary);
    RecordProperty("whole_reads", result.nFullReads);
}

INSTANTIATE_TEST_SUITE_P(
    Captures, MassStorageCapture,
    ::testing::Values(
        SCaptureCase{"Stick", "ctf-usb-capture/book-frames1-800.pcapng",
                     {{0x12, 1}, {0x00, 14}, {0x25, 3}, {0x1A, 6}, {0x1E, 1}, {0x03, 1}, {0x28, 73}}},
        SCaptureCase{"StickMidSession", "ctf-usb-capture/image.pcapng", {{0x00, 3}, {0x28, 1}}},
        SCaptureCase{"PhoneModemSwitch", "usbmon-text/motorokr-modem.txt",
                     {{0x12, 1}, {0x00, 14}, {0x25, 2}, {0x1A, 2}, {0x1E, 11}, {0x28, 106}}},
        SCaptureCase{"Phone", "usbmon-text/motorokr-E6e.txt",
                     {{0x12, 1}, {0x00, 15}, {0x25, 2}, {0x1A, 2}, {0x1E, 9}, {0x28, 90}}},
        SCaptureCase{"PhoneWithoutMedium", "usbmon-text/x2-android-mobile.txt",
                     {{0x12, 6}, {0x00, 165}, {0x03, 165}, {0x1E, 8}}}),
    [](const ::testing::TestParamInfo<SCaptureCase>& info) { return info.param.pszName; });

}  // namespace
