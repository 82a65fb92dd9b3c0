// Hub class requests by request and recipient, the paths that stop early or
// read a field of no bits, the hub descriptor's per-port bit maps, and the
// hub's status change bit map.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tests/TestUtil.h"
#include "usbclass/HubClass.h"
#include "usbclass/HubNotification.h"

namespace {

using Hub = CHubClassSpec;

std::vector<unsigned short> Join(std::vector<unsigned short> a, const std::vector<unsigned short>& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

const std::vector<unsigned short> kHead = {23000, 23001, 23002, 23003};
const std::vector<unsigned short> kPlain = Join(kHead, {23005, 23011, 23014});
const std::vector<unsigned short> kHubStatus = {23016, 23017, 23018, 23019, 23020, 23021};
const std::vector<unsigned short> kPortStatus = {23022, 23023, 23024, 23025, 23026, 23027, 23028, 23029, 23030,
                                                 23031, 23032, 23033, 23034, 23035, 23036, 23037, 23038, 23039};

struct SHubCase {
    const char* pszName;
    std::string strHex;
    std::vector<unsigned short> aIds;
    const char* pszRequest;
    const char* pszResponse;
    int bHasResponse;
    int nRequestFields;
    int nResponseFields;
};

class HubRequest : public ::testing::TestWithParam<SHubCase> {};

TEST_P(HubRequest, ReadsTheFieldsOfItsPath)
{
    const SHubCase& c = GetParam();
    CHubClassPacket packet(Hex(c.strHex));
    EXPECT_EQ(IdsOf(packet), c.aIds);
    EXPECT_EQ(packet.m_strRequestName, c.pszRequest);
    EXPECT_EQ(packet.m_strResponseName, c.pszResponse);
    EXPECT_EQ(packet.m_bHasResponse, c.bHasResponse);
    EXPECT_EQ(packet.m_nRequestFields, c.nRequestFields);
    EXPECT_EQ(packet.m_nResponseFields, c.nResponseFields);
}

INSTANTIATE_TEST_SUITE_P(
    Requests, HubRequest,
    ::testing::Values(
        SHubCase{"GetStatusHubSetupOnly", "a0 00 0000 0000 0400", kPlain, "Get Status", "", 0, 7, 0},
        SHubCase{"GetStatusHub", "a0 00 0000 0000 0400 01000300", Join(kPlain, kHubStatus), "Get Status",
                 "Hub Status", 1, 7, 6},
        SHubCase{"GetStatusPort", "a3 00 0000 0100 0400 03011000", Join(kPlain, kPortStatus), "Get Status",
                 "Port Status", 1, 7, 18},
        // Another recipient has a response but no name and no fields for it.
        SHubCase{"GetStatusInterface", "a1 00 0000 0100 0400 03011000", kPlain, "Get Status", "", 1, 7, 0},
        SHubCase{"ClearFeaturePort", "23 01 1400 0102 0000", Join(kHead, {23005, 23012, 23013, 23014}),
                 "Clear Feature", "Fselector", 0, 8, 0},
        SHubCase{"ClearFeatureHub", "20 01 0100 0000 0000", kPlain, "Clear Feature", "Fselector", 0, 7, 0},
        SHubCase{"ReservedForGetState", "a3 02 0000 0100 0100", kPlain, "Reserved For Get State", "", 0, 7, 0},
        SHubCase{"SetFeaturePort", "23 03 0400 0200 0000", kPlain, "Set Feature", "", 0, 7, 0},
        SHubCase{"ReservedForFeature", "23 04 0000 0100 0000", kPlain, "Reserved For Feature", "", 0, 7, 0},
        SHubCase{"Request5EndsBehindBRequest", "23 05 0000 0100 0000", kHead, "", "", 0, 4, 0},
        // Only the hub's own descriptor is read from the data stage.
        SHubCase{"GetDescriptorPort", "a3 06 0029 0100 0900 0929020000320001ff", kPlain, "Get Descriptor",
                 "Descriptor", 1, 7, 0},
        SHubCase{"SetDescriptorHubSetupOnly", "20 07 0029 0000 0900", kPlain, "Set Descriptor", "Descriptor", 1, 7,
                 0},
        SHubCase{"ClearTTBufferPort", "23 08 5290 0100 0000",
                 Join(kHead, {23006, 23007, 23008, 23009, 23010, 23011, 23014}), "Clear TT Buffer", "TT Buffer", 0,
                 11, 0},
        SHubCase{"ClearTTBufferInterface", "21 08 0000 0100 0000", kPlain, "Clear TT Buffer", "TT Buffer", 0, 7, 0},
        SHubCase{"ClearTTBufferInterfaceTwice", "21 08 0000 0100 0000 0200 0000", Join(kPlain, {23011, 23014}),
                 "Clear TT Buffer", "TT Buffer", 0, 9, 0},
        // To the device, wValue and wIndex are read as wIndex and wLength.
        SHubCase{"ClearTTBufferDevice", "20 08 1234 5678 0000", Join(kHead, {23011, 23014}), "Clear TT Buffer",
                 "TT Buffer", 0, 6, 0},
        SHubCase{"ResetTT", "23 09 0000 0100 0000", kPlain, "Reset TT", "", 0, 7, 0},
        SHubCase{"GetTTState", "a3 0a 0000 0100 0800 0102030405060708", Join(kPlain, {23055, 23056}),
                 "Get TT State", "TT State", 1, 7, 2},
        SHubCase{"GetTTStateSetupOnly", "a3 0a 0000 0100 0800", kPlain, "Get TT State", "TT State", 0, 7, 0},
        SHubCase{"StopTT", "23 0b 0000 0100 0000", kPlain, "Stop TT", "", 0, 7, 0},
        SHubCase{"Request12IsSetFeature", "23 0c 0000 0100 0000", kPlain, "Set Feature", "", 0, 7, 0},
        // Above 12 the low six bits decide: under 12 ends, the rest is unknown.
        SHubCase{"Request13", "23 0d 0000 0100 0000", kPlain, "UnKnown", "", 0, 7, 0},
        SHubCase{"Request64", "23 40 0000 0100 0000", kHead, "", "", 0, 4, 0},
        SHubCase{"Request75", "23 4b 0000 0100 0000", kHead, "", "", 0, 4, 0},
        SHubCase{"Request76", "23 4c 0000 0100 0000", kPlain, "UnKnown", "", 0, 7, 0},
        SHubCase{"Request100", "23 64 0000 0100 0000", kPlain, "UnKnown", "", 0, 7, 0},
        SHubCase{"Request255", "23 ff 0000 0100 0000", kPlain, "UnKnown", "", 0, 7, 0}),
    [](const ::testing::TestParamInfo<SHubCase>& info) { return std::string(info.param.pszName); });

// Two-byte payloads: some paths read the feature selector with no bits left,
// the others stop; response names set ahead of the setup fields stand.
struct SShortCase {
    const char* pszName;
    std::string strHex;
    std::size_t nFields;
    const char* pszRequest;
    const char* pszResponse;
    int bHasResponse;
};

class HubShortPayload : public ::testing::TestWithParam<SShortCase> {};

TEST_P(HubShortPayload, ReadsAFieldOfNoBitsOrStops)
{
    const SShortCase& c = GetParam();
    CHubClassPacket packet(Hex(c.strHex));
    const std::vector<SFieldView> aFields = FieldsOf(packet);
    ASSERT_EQ(aFields.size(), c.nFields);
    if (c.nFields == 5) {
        EXPECT_EQ(aFields[4].nId, 23005);
        EXPECT_EQ(aFields[4].nBits, 0u);
    }
    EXPECT_EQ(packet.m_strRequestName, c.pszRequest);
    EXPECT_EQ(packet.m_strResponseName, c.pszResponse);
    EXPECT_EQ(packet.m_bHasResponse, c.bHasResponse);
    EXPECT_EQ(packet.m_nRequestFields, c.nFields);
}

INSTANTIATE_TEST_SUITE_P(
    TwoBytes, HubShortPayload,
    ::testing::Values(SShortCase{"OneByte", "a3", 3, "", "", 0},
                      SShortCase{"GetStatus", "a3 00", 5, "Get Status", "", 0},
                      SShortCase{"ClearFeature", "23 01", 4, "Clear Feature", "Fselector", 0},
                      SShortCase{"ReservedForGetState", "a3 02", 5, "Reserved For Get State", "", 0},
                      SShortCase{"SetFeature", "23 03", 5, "Set Feature", "", 0},
                      SShortCase{"ReservedForFeature", "23 04", 5, "Reserved For Feature", "", 0},
                      SShortCase{"GetDescriptor", "a0 06", 4, "Get Descriptor", "Descriptor", 1},
                      SShortCase{"SetDescriptor", "20 07", 4, "Set Descriptor", "Descriptor", 1},
                      SShortCase{"ClearTTBufferPort", "23 08", 4, "Clear TT Buffer", "TT Buffer", 0},
                      SShortCase{"ClearTTBufferInterface", "21 08", 5, "Clear TT Buffer", "TT Buffer", 0},
                      SShortCase{"ResetTT", "23 09", 5, "Reset TT", "", 0},
                      SShortCase{"GetTTState", "a3 0a", 5, "Get TT State", "TT State", 0},
                      SShortCase{"StopTT", "23 0b", 5, "Stop TT", "", 0},
                      SShortCase{"Unknown", "23 0d", 5, "UnKnown", "", 0}),
    [](const ::testing::TestParamInfo<SShortCase>& info) { return std::string(info.param.pszName); });

TEST(HubRequestFields, SplitsTheTTEndpointAndThePortSelector)
{
    // wValue 0x9052: endpoint 2 of device 5, a bulk endpoint, IN.
    CHubClassPacket tt(Hex("23 08 5290 0100 0000"));
    const std::vector<SFieldView> aTT = FieldsOf(tt);
    ASSERT_EQ(aTT.size(), 11u);
    EXPECT_EQ(std::vector<SFieldView>(aTT.begin() + 4, aTT.begin() + 9),
              (std::vector<SFieldView>{{23006, 4, "02"}, {23007, 7, "05"}, {23008, 2, "02"}, {23009, 2, "00"},
                                       {23010, 1, "01"}}));
    CHubClassSpec* pSpec = CHubClassSpec::GetInstance();
    EXPECT_EQ(pSpec->GetFieldOptionName(23010, *tt.GetFieldValue(9)), "In");

    // CLEAR_FEATURE C_PORT_RESET of port 4, selector byte 0.
    CHubClassPacket clear(Hex("23 01 1400 0400 0000"));
    EXPECT_EQ(pSpec->GetFieldOptionName(23005, *clear.GetFieldValue(5)), "C_Port reset");
    EXPECT_EQ(pSpec->GetFieldOptionAbbr(23005, *clear.GetFieldValue(5)), "C_Port over current");
    EXPECT_EQ(FieldsOf(clear)[5], (SFieldView{23012, 8, "04"}));
    EXPECT_EQ(FieldsOf(clear)[6], (SFieldView{23013, 8, "00"}));
}

// ------------------------------------------------------------ hub descriptor

// Bit k of a port bit map (k from 1) for the ports that are set.
bool RemovableBit(unsigned k) { return k % 3 == 1; }
bool PowerMaskBit(unsigned k) { return k % 2 == 0; }

std::string HexByte(unsigned n)
{
    char sz[4];
    std::snprintf(sz, sizeof sz, "%02x", n & 0xFF);
    return sz;
}

// A bit map of nPorts + 1 bits rounded up to bytes, bit 0 reserved.
std::string Bitmap(unsigned nPorts, bool (*pfnBit)(unsigned))
{
    std::string str;
    const unsigned nBytes = (nPorts + 1 + 7) / 8;
    for (unsigned b = 0; b < nBytes; ++b) {
        unsigned n = 0;
        for (unsigned i = 0; i < 8; ++i)
            if (b * 8 + i >= 1 && b * 8 + i <= nPorts && pfnBit(b * 8 + i))
                n |= 1u << i;
        str += HexByte(n);
    }
    return str;
}

// The fields of one bit map: the reserved bit, the port bits, the pad.
void ExpectBitmap(const CHubClassPacket& packet, unsigned& nIndex, unsigned nPorts, unsigned short nBitId,
                  unsigned short nPadId, const char* pszPrefix, bool (*pfnBit)(unsigned))
{
    EXPECT_EQ(FieldsOf(packet)[nIndex - 1], (SFieldView{nPadId, 1, "00"}));
    ++nIndex;
    for (unsigned k = 1; k <= nPorts; ++k, ++nIndex) {
        const unsigned char i = static_cast<unsigned char>(nIndex);
        EXPECT_EQ(packet.GetFieldId(i), nBitId);
        EXPECT_EQ(packet.GetFieldName(i), CString(pszPrefix) + CString(std::to_string(k))) << "port " << k;
        EXPECT_EQ(packet.GetFieldValue(i)->GetBit(0), pfnBit(k) ? 1 : 0) << "port " << k;
    }
    if ((nPorts + 1) % 8 != 0) {
        EXPECT_EQ(FieldsOf(packet)[nIndex - 1], (SFieldView{nPadId, 8 - (nPorts + 1) % 8, "00"}));
        ++nIndex;
    }
}

class HubDescriptor : public ::testing::TestWithParam<unsigned> {};

TEST_P(HubDescriptor, NamesEachPortBitAndPadsBothMaps)
{
    const unsigned nPorts = GetParam();
    const std::string strMaps = Bitmap(nPorts, RemovableBit) + Bitmap(nPorts, PowerMaskBit);
    const unsigned nLength = 7 + static_cast<unsigned>(strMaps.size() / 2);
    // Individual power switching and over-current protection, port
    // indicators, 100 ms to power good, 100 mA.
    CHubClassPacket packet(Hex("a0 06 0029 0000 4700 " + HexByte(nLength) + "29" + HexByte(nPorts) + "8900 32 64" +
                               strMaps));
    EXPECT_EQ(packet.m_nRequestFields, 7);
    const std::vector<SFieldView> aFields = FieldsOf(packet);
    ASSERT_GE(aFields.size(), 18u);
    EXPECT_EQ(std::vector<SFieldView>(aFields.begin() + 7, aFields.begin() + 18),
              (std::vector<SFieldView>{{23040, 8, HexByte(nLength)},
                                       {23041, 8, "29"},
                                       {23042, 8, HexByte(nPorts)},
                                       {23043, 2, "01"},
                                       {23044, 1, "00"},
                                       {23045, 2, "01"},
                                       {23046, 2, "00"},
                                       {23047, 1, "01"},
                                       {23048, 8, "00"},
                                       {23049, 8, "32"},
                                       {23050, 8, "64"}}));
    unsigned nIndex = 19;
    ExpectBitmap(packet, nIndex, nPorts, 23052, 23051, "Device Removable-Port", RemovableBit);
    ExpectBitmap(packet, nIndex, nPorts, 23053, 23054, "Port Pwr Ctrl Mask-Port", PowerMaskBit);
    EXPECT_EQ(nIndex - 1, packet.GetFieldCount());
    EXPECT_EQ(packet.m_nResponseFields, packet.GetFieldCount() - 7);
    // Every bit of the payload lies in a field.
    EXPECT_EQ(packet.GetPacketLength(), (8 + nLength) * 8);
}

INSTANTIATE_TEST_SUITE_P(Ports, HubDescriptor, ::testing::Values(0u, 1u, 4u, 7u, 15u),
                         [](const ::testing::TestParamInfo<unsigned>& info) {
                             return "Ports" + std::to_string(info.param);
                         });

TEST(HubDescriptorNames, InstanceNamesStayApartFromTheCatalogueAndFromEachOther)
{
    CHubClassPacket four(Hex("a0 06 0029 0000 4700 09 29 04 0000 32 64 1e 1e"));
    CHubClassPacket two(Hex("a0 06 0029 0000 4700 09 29 02 0000 32 64 06 06"));
    // The second decode shares records with the first, by name.
    EXPECT_EQ(four.GetFieldName(20), "Device Removable-Port1");
    EXPECT_EQ(two.GetFieldName(20), "Device Removable-Port1");
    EXPECT_EQ(four.GetFieldAttr(20), two.GetFieldAttr(20));
    EXPECT_EQ(four.GetFieldName(23), "Device Removable-Port4");
    EXPECT_EQ(four.GetFieldAbbr(23), "Device Removable-Ports");
    EXPECT_EQ(four.GetFieldName(29), "Port Pwr Ctrl Mask-Port4");
    EXPECT_EQ(CHubClassSpec::GetInstance()->GetDefaultFieldAttr(23052)->m_strName, "Device Removable-Ports");
    // Options go by the id, whatever the instance is called.
    EXPECT_EQ(CHubClassSpec::GetInstance()->GetFieldOptionName(23052, *four.GetFieldValue(21)), "Not Removable");
}

TEST(HubDescriptorNames, ACutInsideThePortLoopKeepsWhatWasRead)
{
    // 15 ports, the payload ends behind the first byte of DeviceRemovable.
    CHubClassPacket packet(Hex("a0 06 0029 0000 4700 0b 29 0f 0000 32 64 fe"));
    const std::vector<unsigned short> aIds = IdsOf(packet);
    ASSERT_EQ(aIds.size(), 26u);
    EXPECT_EQ(aIds[18], 23051);
    EXPECT_EQ(packet.GetFieldName(26), "Device Removable-Port7");
    EXPECT_EQ(packet.m_nResponseFields, 19);
}

// ------------------------------------------------------------ hub notification

TEST(HubNotification, OneBitForTheHubAndOneNamedBitPerPort)
{
    CHubNotificationPacket packet(Hex("05"));
    ASSERT_EQ(packet.GetFieldCount(), 8);
    CHubNotificationSpec* pSpec = CHubNotificationSpec::GetInstance();
    EXPECT_EQ(packet.GetFieldId(1), 23500);
    EXPECT_EQ(pSpec->GetFieldOptionName(23500, *packet.GetFieldValue(1)), "Hub Notification-Hub-Changed");
    for (unsigned char i = 2; i <= 8; ++i) {
        EXPECT_EQ(packet.GetFieldId(i), 23501);
        EXPECT_EQ(packet.GetFieldName(i), CString("Status of port") + CString(std::to_string(i - 1)));
        EXPECT_EQ(packet.GetFieldAbbr(i), "Hub Notification-PortStatus");
    }
    EXPECT_EQ(pSpec->GetFieldOptionName(23501, *packet.GetFieldValue(3)), "Hub Notification-Port-Changed");
    EXPECT_EQ(pSpec->GetFieldOptionAbbr(23501, *packet.GetFieldValue(2)), "NoChanged");
    EXPECT_EQ(packet.m_strRequestName, "HUB_CHANGED_STATUS");
    EXPECT_EQ(packet.m_nRequestFields, 8);
    EXPECT_EQ(packet.m_bHasResponse, 0);
}

TEST(HubNotification, LengthFollowsThePayload)
{
    CHubNotificationPacket two(Hex("0080"));
    ASSERT_EQ(two.GetFieldCount(), 16);
    EXPECT_EQ(two.GetFieldName(16), "Status of port15");
    EXPECT_EQ(two.GetFieldValue(16)->GetBit(0), 1);

    CHubNotificationPacket fiveBits(CAdvAnlzData(0x1F, 5));
    EXPECT_EQ(fiveBits.GetFieldCount(), 5);

    CHubNotificationPacket empty(CAdvAnlzData{});
    EXPECT_EQ(empty.GetFieldCount(), 0);
    EXPECT_EQ(empty.m_strRequestName, "");

    // A long bit map fills the packet and the counts stay with it.
    CHubNotificationPacket full(Hex(std::string(2 * 40, 'f')));
    EXPECT_EQ(full.GetFieldCount(), CProtocolPacket::kMaxFields);
    EXPECT_EQ(full.m_nRequestFields, CProtocolPacket::kMaxFields);
    EXPECT_EQ(full.GetFieldName(255), "Status of port254");
}

}  // namespace
