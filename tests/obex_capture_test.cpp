// Real OBEX traffic: an Object Push of a vCard over RFCOMM, carried in HCI
// ACL packets on the bulk endpoints of a USB Bluetooth dongle (usbmon).
#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "capture/CaptureReader.h"
#include "capture/UsbPacket.h"
#include "serial/OBEX.h"
#include "tests/TestUtil.h"
#include "tests/at_rfcomm.h"

namespace {

using Spec = CAdvAnlzOBEXSpec;

// HCI ACL packets out of one bulk endpoint's byte stream, which USB may cut
// anywhere.
class CAclStream {
public:
    void Add(const std::uint8_t* p, std::size_t n, bool bFromController, CRfcommExtractor& extractor,
             std::vector<SRfcommPayload>& aOut)
    {
        m_aBuffer.insert(m_aBuffer.end(), p, p + n);
        while (m_aBuffer.size() >= 4) {
            const std::size_t nPacket = 4 + (m_aBuffer[2] | (m_aBuffer[3] << 8));
            if (m_aBuffer.size() < nPacket)
                break;
            extractor.AddAcl(m_aBuffer.data(), nPacket, bFromController, aOut);
            m_aBuffer.erase(m_aBuffer.begin(), m_aBuffer.begin() + static_cast<long>(nPacket));
        }
    }

private:
    std::vector<std::uint8_t> m_aBuffer;
};

// OBEX packets out of one direction of an RFCOMM channel: each begins with
// its opcode and a big-endian packet length.
class CObexStream {
public:
    void Add(const std::vector<std::uint8_t>& a, std::vector<std::vector<std::uint8_t>>& aOut)
    {
        m_aBuffer.insert(m_aBuffer.end(), a.begin(), a.end());
        while (m_aBuffer.size() >= 3) {
            const std::size_t nPacket = (m_aBuffer[1] << 8) | m_aBuffer[2];
            if (nPacket < 3 || m_aBuffer.size() < nPacket)
                break;
            aOut.emplace_back(m_aBuffer.begin(), m_aBuffer.begin() + static_cast<long>(nPacket));
            m_aBuffer.erase(m_aBuffer.begin(), m_aBuffer.begin() + static_cast<long>(nPacket));
        }
    }

private:
    std::vector<std::uint8_t> m_aBuffer;
};

// A header value as text: UTF-16 big-endian ("Name"), or bytes, without the
// closing NUL.
std::string TextOf(const CAdvAnlzData& value, bool bUnicode)
{
    std::string s;
    for (std::uint32_t i = bUnicode ? 1 : 0; i < value.GetByteLength(); i += bUnicode ? 2 : 1)
        if (value[i] != 0)
            s += static_cast<char>(value[i]);
    return s;
}

// The value of the field behind the first header with this id.
const CAdvAnlzData* HeaderValue(const CProtocolPacket& packet, std::uint8_t nHeaderId)
{
    for (unsigned char i = 1; i < packet.GetFieldCount(); ++i) {
        if (packet.GetFieldId(i) != Spec::FieldHeaderId || *packet.GetFieldValue(i) != CAdvAnlzData(nHeaderId, 8))
            continue;
        const bool bLength = (nHeaderId >> 6) < 2;
        const unsigned char nValue = static_cast<unsigned char>(i + (bLength ? 2 : 1));
        return nValue <= packet.GetFieldCount() ? packet.GetFieldValue(nValue) : nullptr;
    }
    return nullptr;
}

TEST(OBEXCapture, ObjectPushOverRfcommOverUsb)
{
    const std::string strPath =
        std::string(BUSDECODE_CAPTURES_DIR) + "/wireshark-wiki/Bluetooth_HCI_and_OBEX_Transaction_over_USB.filtered.pcapng";
    if (!std::ifstream(strPath))
        GTEST_SKIP() << "capture not found: " << strPath;
    std::string strError;
    std::unique_ptr<CCaptureReader> pReader = CCaptureReader::Open(strPath, strError);
    ASSERT_NE(pReader, nullptr) << strError;

    // ACL goes out in bulk OUT submissions and comes back in bulk IN
    // completions.
    CRfcommExtractor extractor;
    CAclStream toController, fromController;
    CObexStream obexOut, obexIn;
    std::vector<std::vector<std::uint8_t>> aObex;
    SCaptureRecord record;
    while (pReader->Next(record) == CaptureRecord) {
        SUsbPacket usb;
        if (!ParseUsbPacket(record.nLinkType, record.pData, record.nData, usb) || usb.eTransfer != UsbBulk ||
            usb.nData == 0)
            continue;
        std::vector<SRfcommPayload> aPayloads;
        if (!usb.bIn && usb.eEvent == UsbSubmit)
            toController.Add(usb.pData, usb.nData, false, extractor, aPayloads);
        else if (usb.bIn && usb.eEvent == UsbComplete)
            fromController.Add(usb.pData, usb.nData, true, extractor, aPayloads);
        for (const SRfcommPayload& payload : aPayloads) {
            ASSERT_EQ(payload.nDLCI, 18u);  // server channel 9
            (payload.bFromController ? obexIn : obexOut).Add(payload.aData, aObex);
        }
    }
    EXPECT_EQ(extractor.BadFrames(), 0u);

    const struct {
        const char* pszOpcode;
        unsigned char nFormat;
    } aExpected[] = {{"Connect", 0x80},   {"Success", 0xA0},  {"Put", 0x02},        {"Continue", 0x90},
                     {"Final Put", 0x82}, {"Success", 0xA0},  {"DisConnect", 0x81}, {"Success", 0xA0}};
    ASSERT_EQ(aObex.size(), std::size(aExpected));

    std::vector<COBEXPacket> aPackets(aObex.size());
    for (std::size_t i = 0; i < aObex.size(); ++i) {
        COBEXPacket& packet = aPackets[i];
        const CAdvAnlzData data = CAdvAnlzData::FromBytes(aObex[i].data(), static_cast<std::uint32_t>(aObex[i].size() * 8));
        EXPECT_EQ(packet.RestructBy(data), 1) << i;
        EXPECT_EQ(packet.GetPErrors().GetSize(), 0) << i;
        EXPECT_EQ(packet.m_byPacketFormat, aExpected[i].nFormat) << i;
        EXPECT_EQ(Spec::GetInstance()->GetFieldOptionName(Spec::FieldOpCode, *packet.GetFieldValue(1)),
                  aExpected[i].pszOpcode)
            << i;
        // Every byte is in a field, in order.
        std::uint32_t dwBits = 0;
        for (unsigned char n = 1; n <= packet.GetFieldCount(); ++n) {
            EXPECT_EQ(packet.GetFieldAttr(n)->m_dwOffset, dwBits) << i << " " << int(n);
            dwBits += packet.GetFieldValue(n)->GetLength();
        }
        EXPECT_EQ(dwBits, data.GetLength()) << i;
    }

    // The connect and its response: version 1.0, no flags, the largest
    // packets each side takes.
    EXPECT_EQ(IdsOf(aPackets[0]), (std::vector<unsigned short>{5000, 5001, 5002, 5003, 5004}));
    EXPECT_EQ(static_cast<std::uint8_t>(*aPackets[0].GetFieldValue(3)), 0x10);
    EXPECT_EQ(static_cast<std::uint16_t>(*aPackets[0].GetFieldValue(5)), 4000);
    EXPECT_EQ(IdsOf(aPackets[1]), (std::vector<unsigned short>{5000, 5001, 5002, 5003, 5004}));
    EXPECT_EQ(static_cast<std::uint16_t>(*aPackets[1].GetFieldValue(5)), 0x7FFF);

    // The put: name, length, type and time of the vCard.
    const COBEXPacket& put = aPackets[2];
    ASSERT_NE(HeaderValue(put, 0x01), nullptr);
    EXPECT_EQ(TextOf(*HeaderValue(put, 0x01), true), "44@tel.vcf");
    ASSERT_NE(HeaderValue(put, 0xC3), nullptr);
    EXPECT_EQ(static_cast<std::uint32_t>(*HeaderValue(put, 0xC3)), 73u);
    ASSERT_NE(HeaderValue(put, 0x42), nullptr);
    EXPECT_EQ(TextOf(*HeaderValue(put, 0x42), false), "text/x-vCard");
    ASSERT_NE(HeaderValue(put, 0x44), nullptr);
    EXPECT_EQ(TextOf(*HeaderValue(put, 0x44), false).substr(0, 8), "20090628");
    EXPECT_EQ(Spec::GetInstance()->GetFieldOptionAbbr(Spec::FieldHeaderId, CAdvAnlzData(0x44, 8)), "Time1");

    // The final put carries the whole object in End of Body.
    const CAdvAnlzData* pBody = HeaderValue(aPackets[4], 0x49);
    ASSERT_NE(pBody, nullptr);
    EXPECT_EQ(pBody->GetByteLength(), 73u);
    EXPECT_EQ(TextOf(*pBody, false).substr(0, 11), "BEGIN:VCARD");
}

}  // namespace
