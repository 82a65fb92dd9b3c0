// PPP frames of every protocol the decoder reads, their options and their
// malformed forms with the exact protocol errors; frames cut at every byte;
// the protocol mask; the packet class; the catalogue.
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "platform/Stream.h"
#include "serial/PPPSpec.h"
#include "tests/TestUtil.h"

namespace {

using Spec = CAdvAnlzPPPSpec;

// The fields of a packet as "id:bits:hex", blank-separated.
std::string Brief(const CProtocolPacket& packet)
{
    std::ostringstream os;
    for (const SFieldView& f : FieldsOf(packet))
        os << (os.tellp() > 0 ? " " : "") << f.nId << ":" << f.nBits << ":" << f.strHex;
    return os.str();
}

std::vector<std::uint16_t> WordsOf(const CWordArray& a)
{
    std::vector<std::uint16_t> v;
    for (int i = 0; i < a.GetSize(); ++i)
        v.push_back(a[i]);
    return v;
}

std::vector<unsigned> ErrorsOf(const CProtocolPacket& packet)
{
    std::vector<unsigned> a;
    for (const std::uint16_t nCode : WordsOf(packet.GetPErrors()))
        a.push_back(nCode);
    return a;
}

struct SFrameCase {
    const char* pszName;
    const char* pszHex;
    const char* pszFields;
    std::vector<unsigned> aErrors;
    unsigned short wMask;
};

class PPPFrames : public ::testing::TestWithParam<SFrameCase> {};

TEST_P(PPPFrames, FieldsErrorsAndMask)
{
    const SFrameCase& c = GetParam();
    CPPPPacket packet;
    const int nResult = packet.RestructBy(Hex(c.pszHex));
    EXPECT_EQ(Brief(packet), c.pszFields);
    EXPECT_EQ(ErrorsOf(packet), c.aErrors);
    EXPECT_EQ(nResult, c.aErrors.empty() ? 1 : 0);
    EXPECT_EQ(packet.GetProtocolsMask(), c.wMask);
    // One list of fields, each where the ones before it end.
    EXPECT_EQ(packet.m_nRequestFields + packet.m_nResponseFields, 0);
    std::uint32_t dwOffset = 0;
    for (int i = 1; i <= packet.GetFieldCount(); ++i) {
        EXPECT_EQ(packet.GetFieldAttr(static_cast<unsigned char>(i))->m_dwOffset, dwOffset) << i;
        dwOffset += packet.GetFieldValue(static_cast<unsigned char>(i))->GetLength();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PPPFrames,
    ::testing::Values(
        // The walk stops 16 bits before the Length's end: the last two-byte option is left over.
        SFrameCase{"LcpCommonOptions", "c021 01 01 0017 0104 05dc 0305 c22305 0506 12345678 0702 0802",
                   "6000:16:21c0 6041:8:01 6042:8:01 6043:16:1700 6044:8:01 6045:8:04 6050:16:dc05 6044:8:03 "
                   "6045:8:05 6051:16:23c2 6053:8:05 6044:8:05 6045:8:06 6054:32:78563412 6044:8:07 6045:8:02 "
                   "6044:8:08 6045:8:02",
                   {57}, 0x02},
        SFrameCase{"LcpMRUThenTwoByteOption", "c021 01 01 000a 0104 05dc 0702",
                   "6000:16:21c0 6041:8:01 6042:8:01 6043:16:0a00 6044:8:01 6045:8:04 6050:16:dc05 6044:8:07 "
                   "6045:8:02",
                   {57}, 0x02},
        SFrameCase{"LcpVendorSpecific", "c021 01 01 000c 0008 00e04c 01 aabb",
                   "6000:16:21c0 6041:8:01 6042:8:01 6043:16:0c00 6044:8:00 6045:8:08 6047:24:4ce000 6048:8:01 "
                   "6049:16:bbaa",
                   {}, 0x02},
        SFrameCase{"LcpQualityProtocol", "c021 01 01 000c 0408 c025 00000064",
                   "6000:16:21c0 6041:8:01 6042:8:01 6043:16:0c00 6044:8:04 6045:8:08 6055:16:25c0 "
                   "6056:32:64000000",
                   {}, 0x02},
        SFrameCase{"LcpOneByteOptions", "c021 01 01 0015 0903 02 0a03 05 0b04 07ff 0d03 06 1104 05dc",
                   "6000:16:21c0 6041:8:01 6042:8:01 6043:16:1500 6044:8:09 6045:8:03 6057:8:02 6044:8:0a "
                   "6045:8:03 6058:8:05 6044:8:0b 6045:8:04 6073:8:07 6074:8:ff 6044:8:0d 6045:8:03 6059:8:06 "
                   "6044:8:11 6045:8:04 6061:16:dc05",
                   {}, 0x02},
        SFrameCase{"LcpCallBackEndpointMPLink", "c021 01 01 0018 0d05 01 3132 1307 01 0a000001 1604 0001 1704 0002",
                   "6000:16:21c0 6041:8:01 6042:8:01 6043:16:1800 6044:8:0d 6045:8:05 6059:8:01 6060:16:3231 "
                   "6044:8:13 6045:8:07 6062:8:01 6063:32:0100000a 6044:8:16 6045:8:04 6064:16:0100 6044:8:17 "
                   "6045:8:04 6065:16:0200",
                   {}, 0x02},
        SFrameCase{"LcpPrefixHeaderFormatLanguage", "c021 01 01 0016 1a06 01 02 aabb 1b04 02 01 1c08 0000006a 656e",
                   "6000:16:21c0 6041:8:01 6042:8:01 6043:16:1600 6044:8:1a 6045:8:06 6066:8:01 6067:8:02 "
                   "6068:16:bbaa 6044:8:1b 6045:8:04 6069:8:02 6070:8:01 6044:8:1c 6045:8:08 6071:32:6a000000 "
                   "6072:16:6e65",
                   {}, 0x02},
        SFrameCase{"LcpAuthenticationPAP", "c021 01 01 0008 0304 c023",
                   "6000:16:21c0 6041:8:01 6042:8:01 6043:16:0800 6044:8:03 6045:8:04 6051:16:23c0",
                   {}, 0x02},
        // An algorithm byte is read although the option has no room for it.
        SFrameCase{"LcpAuthenticationCHAPLength4", "c021 01 01 000c 0304 c223 05 0702 0802",
                   "6000:16:21c0 6041:8:01 6042:8:01 6043:16:0c00 6044:8:03 6045:8:04 6051:16:23c2 6053:8:05 "
                   "6044:8:07 6045:8:02 6044:8:08 6157:8:02",
                   {54, 54, 54, 55}, 0x02},
        // Whatever the code, the data is read as options: here type 18 with a length that is not 2.
        SFrameCase{"LcpEchoDataReadAsOptions", "c021 09 01 0008 12345678",
                   "6000:16:21c0 6041:8:09 6042:8:01 6043:16:0800 6044:8:12 6045:8:34 6046:16:7856",
                   {203}, 0x02},
        SFrameCase{"LcpOptionTypeTwo", "c021 01 01 0008 0200 1122",
                   "6000:16:21c0 6041:8:01 6042:8:01 6043:16:0800 6044:8:02 6045:8:00 6046:16:2211",
                   {202}, 0x02},
        SFrameCase{"LcpOptionType31", "c021 01 01 0008 1f02 1122",
                   "6000:16:21c0 6041:8:01 6042:8:01 6043:16:0800 6044:8:1f 6045:8:02 6044:8:11 6045:8:22",
                   {202, 57}, 0x02},
        SFrameCase{"LcpOptionLengthZero", "c021 01 01 000c 0104 05dc 0100 aabb",
                   "6000:16:21c0 6041:8:01 6042:8:01 6043:16:0c00 6044:8:01 6045:8:04 6050:16:dc05 6044:8:01 "
                   "6045:8:00 6050:16:bbaa",
                   {}, 0x02},
        // Lengths below 2 end the option walk; the rest of the frame is left over.
        SFrameCase{"LcpOptionLengthOne", "c021 01 01 000c 0101 05dc 0104 aabb",
                   "6000:16:21c0 6041:8:01 6042:8:01 6043:16:0c00 6044:8:01 6045:8:01 6050:16:dc05 "
                   "6157:32:bbaa0401",
                   {}, 0x02},
        SFrameCase{"LcpOptionPastTheEnd", "c021 01 01 000a 0108 05dc",
                   "6000:16:21c0 6041:8:01 6042:8:01 6043:16:0a00 6044:8:01 6045:8:08 6050:16:dc05",
                   {}, 0x02},
        // The header checks run out of fields; the length test meets the protocol number.
        SFrameCase{"LcpProtocolNumberAlone", "c021",
                   "6000:16:21c0",
                   {53, 53, 54}, 0x02},
        // A Length of 4 wraps the option limit: the check runs on into the next frame.
        SFrameCase{"LcpTerminateLength4ThenFrame", "c021 05 02 0004 c021 09 01 0008 12345678",
                   "6000:16:21c0 6041:8:05 6042:8:02 6043:16:0400 6000:16:21c0 6041:8:09 6042:8:01 6043:16:0800 "
                   "6044:8:12 6045:8:34 6046:16:7856",
                   {54, 202, 55, 54, 54, 55}, 0x02},
        SFrameCase{"ChapChallenge", "c223 01 01 000c 04 11223344 616263",
                   "6000:16:23c2 6005:8:01 6006:8:01 6007:16:0c00 6008:8:04 6009:32:44332211 6010:24:636261",
                   {}, 0x08},
        SFrameCase{"ChapResponse", "c223 02 01 000c 04 11223344 616263",
                   "6000:16:23c2 6005:8:02 6006:8:01 6007:16:0c00 6008:8:04 6009:32:44332211 6010:24:636261",
                   {}, 0x08},
        SFrameCase{"ChapSuccess", "c223 03 01 0007 4f4b21",
                   "6000:16:23c2 6005:8:03 6006:8:01 6007:16:0700 6011:24:214b4f",
                   {}, 0x08},
        SFrameCase{"ChapFailureWithoutMessage", "c223 04 01 0004",
                   "6000:16:23c2 6005:8:04 6006:8:01 6007:16:0400",
                   {}, 0x08},
        SFrameCase{"ChapCodeFive", "c223 05 01 0004",
                   "6000:16:23c2 6005:8:05 6006:8:01 6007:16:0400",
                   {191}, 0x08},
        // The check wants a name field whatever the Length says.
        SFrameCase{"ChapEmptyName", "c223 01 01 0009 04 11223344",
                   "6000:16:23c2 6005:8:01 6006:8:01 6007:16:0900 6008:8:04 6009:32:44332211",
                   {53}, 0x08},
        // Only the header is read; the rest is taken as a frame of protocol 0x0175.
        SFrameCase{"Eap", "c227 01 01 0009 01 75736572",
                   "6000:16:27c2 6041:8:01 6042:8:01 6043:16:0900 6000:16:7501 6001:8:73 6002:8:65 6003:8:72",
                   {54, 54, 54, 54, 55, 55, 54, 55}, 0x00},
        SFrameCase{"VanJacobsonCompressed", "002d 0f 00 ab cd 11 22 33",
                   "6000:16:2d00 6039:56:332211cdab000f",
                   {55}, 0x00},
        // Read as compressed, 624 bits at most; the check wants 320.
        SFrameCase{"VanJacobsonUncompressed", "002f 45 00 0028 1234 4000 4006 0000 0a000001 0a000002",
                   "6000:16:2f00 6039:160:0200000a0100000a000006400040341228000045",
                   {55}, 0x00},
        SFrameCase{"UnknownProtocol", "8207 01 01 0006 aabb",
                   "6000:16:0782 6001:8:01 6002:8:01 6003:16:0600 6004:16:bbaa",
                   {}, 0x00},
        // No data field: it counts as 0 bits.
        SFrameCase{"UnknownProtocolNoData", "8207 05 01 0004",
                   "6000:16:0782 6001:8:05 6002:8:01 6003:16:0400",
                   {}, 0x00},
        // An odd high byte makes the protocol number malformed.
        SFrameCase{"UnknownProtocolOddHighByte", "c121 01 01 0005 aa",
                   "6000:16:21c1 6001:8:01 6002:8:01 6003:16:0500 6004:8:aa",
                   {190}, 0x00},
        SFrameCase{"IpcpAddress", "8021 01 01 000a 0306 c0a80001",
                   "6000:16:2180 6012:8:01 6013:8:01 6014:16:0a00 6019:8:03 6020:8:06 6030:32:0100a8c0",
                   {}, 0x20},
        // The address takes the next option's type byte.
        SFrameCase{"IpcpPrimaryDNSLength5", "8021 01 01 000f 8105 c0a800 0306 0a000001",
                   "6000:16:2180 6012:8:01 6013:8:01 6014:16:0f00 6019:8:81 6020:8:05 6021:32:0300a8c0 6019:8:06 "
                   "6020:8:0a 6157:24:010000",
                   {221, 222, 224}, 0x20},
        // IP-Addresses takes the whole length, header bytes included, and runs short.
        SFrameCase{"IpcpAddressesAtTheEnd", "8021 01 01 000e 010a 0a000001 0a000002",
                   "6000:16:2180 6012:8:01 6013:8:01 6014:16:0e00 6019:8:01 6020:8:0a 6027:64:0200000a0100000a",
                   {55}, 0x20},
        SFrameCase{"IpcpVendorLength12", "8021 00 01 000c 12345678 00e04c 01",
                   "6000:16:2180 6012:8:00 6013:8:01 6014:16:0c00 6015:32:78563412 6016:24:4ce000 6017:8:01 "
                   "6018:0:",
                   {}, 0x20},
        SFrameCase{"IpcpVendorLength16", "8021 00 01 0010 12345678 00e04c 01 aabbccdd",
                   "6000:16:2180 6012:8:00 6013:8:01 6014:16:1000 6015:32:78563412 6016:24:4ce000 6017:8:01 "
                   "6018:32:ddccbbaa",
                   {}, 0x20},
        SFrameCase{"IpcpOptionType5", "8021 01 01 0009 0505 aabbcc",
                   "6000:16:2180 6012:8:01 6013:8:01 6014:16:0900 6019:8:05 6020:8:05 6157:24:ccbbaa",
                   {222, 224}, 0x20},
        SFrameCase{"IpcpVanJacobson", "8021 01 01 000a 0206 002d 0f 01",
                   "6000:16:2180 6012:8:01 6013:8:01 6014:16:0a00 6019:8:02 6020:8:06 6026:16:2d00 6028:8:0f "
                   "6029:8:01",
                   {}, 0x20},
        SFrameCase{"IpcpVanJacobsonSlotTwo", "8021 01 01 000a 0206 002d 0f 02",
                   "6000:16:2180 6012:8:01 6013:8:01 6014:16:0a00 6019:8:02 6020:8:06 6026:16:2d00 6028:8:0f "
                   "6029:8:02",
                   {223}, 0x20},
        SFrameCase{"IpcpHeaderCompression", "8021 01 01 0012 020e 0061 000f 000f 0100 0005 00a8",
                   "6000:16:2180 6012:8:01 6013:8:01 6014:16:1200 6019:8:02 6020:8:0e 6026:16:6100 6031:16:0f00 "
                   "6032:16:0f00 6033:16:0001 6034:16:0500 6035:16:a800",
                   {}, 0x20},
        SFrameCase{"IpcpOtherCompression", "8021 01 01 000a 0206 0003 aabb",
                   "6000:16:2180 6012:8:01 6013:8:01 6014:16:0a00 6019:8:02 6020:8:06 6026:16:0300 6027:16:bbaa",
                   {55}, 0x20},
        // The header wants a field behind its Length.
        SFrameCase{"IpcpConfigureAckWithoutOptions", "8021 02 01 0004",
                   "6000:16:2180 6012:8:02 6013:8:01 6014:16:0400",
                   {53}, 0x20},
        SFrameCase{"Ipv6cpInterfaceIdentifier", "8057 01 01 000e 010a 0123456789abcdef",
                   "6000:16:5780 6140:8:01 6141:8:01 6142:16:0e00 6143:8:01 6144:8:0a 6146:64:efcdab8967452301",
                   {}, 0x40},
        // 0 bits asked for the data mean the default byte.
        SFrameCase{"Ipv6cpCompressionTakesAByte", "8057 01 01 000c 0204 1234 0203 aabb",
                   "6000:16:5780 6140:8:01 6141:8:01 6142:16:0c00 6143:8:02 6144:8:04 6147:16:3412 6145:8:02 "
                   "6143:8:03 6144:8:aa 6145:8:bb",
                   {55, 242}, 0x40},
        // A length byte below 2 stays and is read again as a type.
        SFrameCase{"Ipv6cpLengthBelowTwoIsReadAgain", "8057 01 01 000c 0201 0104 1122 3344",
                   "6000:16:5780 6140:8:01 6141:8:01 6142:16:0c00 6143:8:02 6144:8:01 6143:8:01 6144:8:01 "
                   "6143:8:01 6144:8:04 6146:32:44332211",
                   {54, 55, 54, 55, 55}, 0x40},
        SFrameCase{"Ipv6cpCodeAndTypeOutOfRange", "8057 09 01 0008 0304 aabb",
                   "6000:16:5780 6140:8:09 6141:8:01 6142:16:0800 6143:8:03 6144:8:04 6145:16:bbaa",
                   {240, 242}, 0x40},
        // Codes 14 and 15 are out of range; a Length of 4 wraps the limit.
        SFrameCase{"CcpResetRequest", "80fd 0e 01 0004",
                   "6000:16:fd80 6106:8:0e 6107:8:01 6108:16:0400",
                   {230, 231}, 0x04},
        SFrameCase{"CcpDeflate", "80fd 01 01 0008 1a04 7800",
                   "6000:16:fd80 6106:8:01 6107:8:01 6108:16:0800 6109:8:1a 6110:8:04 6129:4:08 6130:4:07 "
                   "6131:6:00 6132:2:00",
                   {}, 0x04},
        // The option bits add up with one option only.
        SFrameCase{"CcpTwoDeflate", "80fd 01 01 000c 1a04 7800 1a04 7800",
                   "6000:16:fd80 6106:8:01 6107:8:01 6108:16:0c00 6109:8:1a 6110:8:04 6129:4:08 6130:4:07 "
                   "6131:6:00 6132:2:00 6109:8:1a 6110:8:04 6129:4:08 6130:4:07 6131:6:00 6132:2:00",
                   {231}, 0x04},
        // FZA has no layout: its data is one field, and the bits do not add up.
        SFrameCase{"CcpFZA", "80fd 01 01 0007 1303 01",
                   "6000:16:fd80 6106:8:01 6107:8:01 6108:16:0700 6109:8:13 6110:8:03 6111:8:01",
                   {231}, 0x04},
        SFrameCase{"CcpMPP", "80fd 01 01 000a 1206 01000060",
                   "6000:16:fd80 6106:8:01 6107:8:01 6108:16:0a00 6109:8:12 6110:8:06 6139:7:01 6133:1:00 "
                   "6139:16:0000 6134:1:00 6135:1:00 6136:1:00 6137:1:00 6139:3:06 6138:1:00",
                   {}, 0x04},
        SFrameCase{"CcpBSD", "80fd 01 01 0007 1503 2f",
                   "6000:16:fd80 6106:8:01 6107:8:01 6108:16:0700 6109:8:15 6110:8:03 6119:3:07 6120:5:05",
                   {}, 0x04},
        SFrameCase{"CcpLZS", "80fd 01 01 0009 1105 0001 04",
                   "6000:16:fd80 6106:8:01 6107:8:01 6108:16:0900 6109:8:11 6110:8:05 6115:16:0100 6116:8:04",
                   {}, 0x04},
        SFrameCase{"CcpLZSDCP", "80fd 01 01 000a 1706 0001 01 00",
                   "6000:16:fd80 6106:8:01 6107:8:01 6108:16:0a00 6109:8:17 6110:8:06 6121:16:0100 6122:8:01 "
                   "6123:8:00",
                   {}, 0x04},
        SFrameCase{"CcpMVRCA", "80fd 01 01 0008 1804 4123",
                   "6000:16:fd80 6106:8:01 6107:8:01 6108:16:0800 6109:8:18 6110:8:04 6124:2:01 6125:1:00 "
                   "6126:5:08 6127:8:23",
                   {}, 0x04},
        SFrameCase{"CcpDCE", "80fd 01 01 0007 1903 01",
                   "6000:16:fd80 6106:8:01 6107:8:01 6108:16:0700 6109:8:19 6110:8:03 6128:8:01",
                   {}, 0x04},
        SFrameCase{"CcpOUI", "80fd 01 01 000c 0008 00e04c 01 aabb",
                   "6000:16:fd80 6106:8:01 6107:8:01 6108:16:0c00 6109:8:00 6110:8:08 6112:24:4ce000 6113:8:01 "
                   "6114:16:bbaa",
                   {}, 0x04},
        // The length field is counted once more.
        SFrameCase{"CcpPredictorType1", "80fd 01 01 0009 0105 aabbcc",
                   "6000:16:fd80 6106:8:01 6107:8:01 6108:16:0900 6109:8:01 6110:8:05 6111:24:ccbbaa",
                   {231}, 0x04},
        // A length byte below 2 stays and is read again as a type.
        SFrameCase{"CcpLengthBelowTwo", "80fd 01 01 0008 1a01 7800",
                   "6000:16:fd80 6106:8:01 6107:8:01 6108:16:0800 6109:8:1a 6110:8:01 6109:8:01 6110:8:78 "
                   "6111:8:00",
                   {53, 55}, 0x04},
        // Version and header length as the standard draws them; type 0 behind the addresses.
        SFrameCase{"IpEchoReply", "0021 4500 0054 7d6f 4000 4001 b8c6 c0a80001 c0a80002 0000 59ea 1c2e0001",
                   "6000:16:2100 6075:4:04 6076:4:05 6077:3:00 6078:1:00 6079:1:00 6080:1:00 6081:1:00 6082:1:00 "
                   "6083:16:5400 6084:16:6f7d 6085:3:02 6086:13:0000 6087:8:40 6088:8:01 6089:16:c6b8 "
                   "6090:32:0100a8c0 6091:32:0200a8c0 6092:8:00 6105:56:01002e1cea5900",
                   {}, 0x10},
        SFrameCase{"IpSecurityOption",
                   "0021 4800 0020 0001 0000 4006 0000 0a000001 0a000002 830b 0000 0000 0000 000000 00",
                   "6000:16:2100 6075:4:04 6076:4:08 6077:3:00 6078:1:00 6079:1:00 6080:1:00 6081:1:00 6082:1:00 "
                   "6083:16:2000 6084:16:0100 6085:3:00 6086:13:0000 6087:8:40 6088:8:06 6089:16:0000 "
                   "6090:32:0100000a 6091:32:0200000a 6092:8:83 6093:8:0b 6094:16:0000 6095:16:0000 6096:16:0000 "
                   "6097:24:000000 6157:8:00",
                   {}, 0x10},
        SFrameCase{"IpTimestamps", "0021 4700 001c 0001 0000 4006 0000 0a000001 0a000002 4408 05 00 00000064",
                   "6000:16:2100 6075:4:04 6076:4:07 6077:3:00 6078:1:00 6079:1:00 6080:1:00 6081:1:00 6082:1:00 "
                   "6083:16:1c00 6084:16:0100 6085:3:00 6086:13:0000 6087:8:40 6088:8:06 6089:16:0000 "
                   "6090:32:0100000a 6091:32:0200000a 6092:8:44 6093:8:08 6098:8:05 6101:4:00 6102:4:00 "
                   "6104:32:64000000",
                   {}, 0x10},
        SFrameCase{"IpTimestampsWithAddresses",
                   "0021 4700 0020 0001 0000 4006 0000 0a000001 0a000002 440c 05 01 0a000001 00000064",
                   "6000:16:2100 6075:4:04 6076:4:07 6077:3:00 6078:1:00 6079:1:00 6080:1:00 6081:1:00 6082:1:00 "
                   "6083:16:2000 6084:16:0100 6085:3:00 6086:13:0000 6087:8:40 6088:8:06 6089:16:0000 "
                   "6090:32:0100000a 6091:32:0200000a 6092:8:44 6093:8:0c 6098:8:05 6101:4:00 6102:4:01 "
                   "6103:32:0100000a 6104:32:64000000",
                   {}, 0x10},
        SFrameCase{"IpRecordRoute", "0021 4700 001c 0001 0000 4006 0000 0a000001 0a000002 0707 04 0a000003 00",
                   "6000:16:2100 6075:4:04 6076:4:07 6077:3:00 6078:1:00 6079:1:00 6080:1:00 6081:1:00 6082:1:00 "
                   "6083:16:1c00 6084:16:0100 6085:3:00 6086:13:0000 6087:8:40 6088:8:06 6089:16:0000 "
                   "6090:32:0100000a 6091:32:0200000a 6092:8:07 6093:8:07 6098:8:04 6099:32:0300000a 6157:8:00",
                   {}, 0x10},
        // A route length of 3 asks 0 bits, the 32-bit default.
        SFrameCase{"IpRouteLengthThree", "0021 4700 001c 0001 0000 4006 0000 0a000001 0a000002 0703 04 0a000003 00",
                   "6000:16:2100 6075:4:04 6076:4:07 6077:3:00 6078:1:00 6079:1:00 6080:1:00 6081:1:00 6082:1:00 "
                   "6083:16:1c00 6084:16:0100 6085:3:00 6086:13:0000 6087:8:40 6088:8:06 6089:16:0000 "
                   "6090:32:0100000a 6091:32:0200000a 6092:8:07 6093:8:03 6098:8:04 6099:32:0300000a 6157:8:00",
                   {55}, 0x10},
        SFrameCase{"IpStreamIdentifier", "0021 4600 0018 0001 0000 4006 0000 0a000001 0a000002 8804 0001",
                   "6000:16:2100 6075:4:04 6076:4:06 6077:3:00 6078:1:00 6079:1:00 6080:1:00 6081:1:00 6082:1:00 "
                   "6083:16:1800 6084:16:0100 6085:3:00 6086:13:0000 6087:8:40 6088:8:06 6089:16:0000 "
                   "6090:32:0100000a 6091:32:0200000a 6092:8:88 6093:8:04 6100:16:0100",
                   {}, 0x10},
        // Protocol 134 is out of range; the later tests run on the last field.
        SFrameCase{"IpCutInTheHeader", "0021 4500 0014 0001 0000 4086 0000 0a000001",
                   "6000:16:2100 6075:4:04 6076:4:05 6077:3:00 6078:1:00 6079:1:00 6080:1:00 6081:1:00 6082:1:00 "
                   "6083:16:1400 6084:16:0100 6085:3:00 6086:13:0000 6087:8:40 6088:8:86 6089:16:0000 "
                   "6090:32:0100000a",
                   {210, 54, 54, 55, 210}, 0x10},
        // The frame ends at its Total Length; the next bytes are a frame of their own.
        SFrameCase{"IpOptionTypeWithoutRow", "0021 4500 0014 0001 0000 40ff 0000 0a000001 0a000002 99 c021",
                   "6000:16:2100 6075:4:04 6076:4:05 6077:3:00 6078:1:00 6079:1:00 6080:1:00 6081:1:00 6082:1:00 "
                   "6083:16:1400 6084:16:0100 6085:3:00 6086:13:0000 6087:8:40 6088:8:ff 6089:16:0000 "
                   "6090:32:0100000a 6091:32:0200000a 6000:16:c099 6157:8:21",
                   {54, 55, 210}, 0x10},
        SFrameCase{"SeveralFrames",
                   "c021 02 01 0008 0104 05dc 8021 02 01 000a 0306 0a000001 0021 4500 0015 0001 0000 4001 0000 "
                   "0a000001 0a000002 00 ab",
                   "6000:16:21c0 6041:8:02 6042:8:01 6043:16:0800 6044:8:01 6045:8:04 6050:16:dc05 6000:16:2180 "
                   "6012:8:02 6013:8:01 6014:16:0a00 6019:8:03 6020:8:06 6030:32:0100000a 6000:16:2100 6075:4:04 "
                   "6076:4:05 6077:3:00 6078:1:00 6079:1:00 6080:1:00 6081:1:00 6082:1:00 6083:16:1500 "
                   "6084:16:0100 6085:3:00 6086:13:0000 6087:8:40 6088:8:01 6089:16:0000 6090:32:0100000a "
                   "6091:32:0200000a 6092:8:00 6105:0: 6157:8:ab",
                   {}, 0x32},
        // The MRU option's length of 2 lets it take the next frame's protocol number.
        SFrameCase{"BrokenFrameAmongOthers", "c021 01 01 0008 0102 c223 03 01 0004",
                   "6000:16:21c0 6041:8:01 6042:8:01 6043:16:0800 6044:8:01 6045:8:02 6050:16:23c2 6000:16:0103 "
                   "6157:16:0400",
                   {57}, 0x02},
        // At most 16 bits behind the last frame are left over without complaint.
        SFrameCase{"LeftoverBehindTheLastFrame", "c021 0a 01 0004 aabb",
                   "6000:16:21c0 6041:8:0a 6042:8:01 6043:16:0400 6157:16:bbaa",
                   {}, 0x02}),
    [](const ::testing::TestParamInfo<SFrameCase>& info) { return std::string(info.param.pszName); });

// A payload cut behind any byte decodes to the first fields of the whole
// one, at the same offsets, the last perhaps shorter; what is too short for
// a frame may stand behind them as one leftover field. A cut into a frame's
// length bytes changes the frame's bounds, so those cuts are left out.
TEST(PPPCut, EveryPrefixIsAPrefixOfTheFields)
{
    const char* const aPayloads[] = {
        "c021 01 01 0017 0104 05dc 0305 c22305 0506 12345678 0702 0802",
        "c021 01 01 0016 1a06 01 02 aabb 1b04 02 01 1c08 0000006a 656e",
        "c223 01 01 000c 04 11223344 616263",
        "8021 01 01 0012 020e 0061 000f 000f 0100 0005 00a8",
        "8021 00 01 0010 12345678 00e04c 01 aabbccdd",
        "8057 01 01 000c 0201 0104 1122 3344",
        "80fd 01 01 000a 1206 01000060",
        "0021 4700 0020 0001 0000 4006 0000 0a000001 0a000002 440c 05 01 0a000001 00000064",
        "c021 02 01 0008 0104 05dc 8021 02 01 000a 0306 0a000001 c227 01 01 0005 01",
    };
    for (const char* pszHex : aPayloads) {
        const CAdvAnlzData whole = Hex(pszHex);
        CPPPPacket full;
        full.RestructBy(whole);
        std::vector<std::uint32_t> aFrameStarts;
        for (int i = 1; i <= full.GetFieldCount(); ++i)
            if (full.GetFieldId(static_cast<unsigned char>(i)) == Spec::FieldHeader)
                aFrameStarts.push_back(full.GetFieldAttr(static_cast<unsigned char>(i))->m_dwOffset);
        for (std::uint32_t nBytes = 0; nBytes < whole.GetByteLength(); ++nBytes) {
            bool bInLength = false;
            for (const std::uint32_t dwStart : aFrameStarts)
                bInLength = bInLength || (nBytes * 8 > dwStart + 16 && nBytes * 8 < dwStart + 48);
            if (bInLength)
                continue;
            CPPPPacket cut;
            cut.RestructBy(whole.GetBits(0, nBytes * 8));
            int nCount = cut.GetFieldCount();
            if (nCount > 0 && cut.GetFieldId(static_cast<unsigned char>(nCount)) == Spec::FieldUnexpected)
                --nCount;
            ASSERT_LE(nCount, full.GetFieldCount()) << pszHex << " cut at " << nBytes;
            for (int i = 1; i <= nCount; ++i) {
                const unsigned char n = static_cast<unsigned char>(i);
                EXPECT_EQ(cut.GetFieldId(n), full.GetFieldId(n)) << pszHex << " cut at " << nBytes << " field " << i;
                EXPECT_EQ(cut.GetFieldAttr(n)->m_dwOffset, full.GetFieldAttr(n)->m_dwOffset);
                EXPECT_LE(cut.GetFieldValue(n)->GetLength(), full.GetFieldValue(n)->GetLength());
            }
        }
    }
}

// Random frames of every protocol the walk dispatches on: the walk and the
// check end, and the fields account for the packet's length.
TEST(PPPCut, RandomFramesOfEveryProtocol)
{
    std::mt19937 rng(3);
    for (const unsigned short wProtocol :
         {0x0021, 0x002D, 0x002F, 0x8021, 0x8057, 0x80FD, 0xC021, 0xC223, 0xC227, 0x8207}) {
        for (int n = 0; n < 1500; ++n) {
            std::vector<std::uint8_t> a = {static_cast<std::uint8_t>(wProtocol >> 8),
                                           static_cast<std::uint8_t>(wProtocol)};
            const std::size_t nLength = rng() % 40;
            for (std::size_t i = 0; i < nLength; ++i)
                a.push_back(static_cast<std::uint8_t>(rng() % 4 ? rng() % 8 : rng()));
            CPPPPacket packet;
            packet.RestructBy(CAdvAnlzData::FromBytes(a.data(), static_cast<std::uint32_t>(a.size() * 8)));
            unsigned long dwSum = 0;
            for (int i = 1; i <= packet.GetFieldCount(); ++i)
                dwSum += packet.GetFieldValue(static_cast<unsigned char>(i))->GetLength();
            ASSERT_EQ(dwSum, packet.GetPacketLength());
        }
    }
}

// Frames that claim a length far beyond what their reader takes, one behind
// the other over a long payload: each frame is read on the payload's walk,
// never copied, so the cost stays with the bytes read.
TEST(PPPCut, LongPayloadsOfEarlyStoppingFrames)
{
    for (const char* pszFrame :
         {"c227 01 01 ffff", "c223 07 01 ffff", "0021 4500 ffff 0001 0000 40ff 0000 0a000001 0a000002 99"}) {
        const std::vector<std::uint8_t> aFrame = [&] {
            const CByteArray a = HexBytes(pszFrame);
            return std::vector<std::uint8_t>(a.GetData(), a.GetData() + a.GetSize());
        }();
        std::vector<std::uint8_t> a;
        while (a.size() < (1u << 20))
            a.insert(a.end(), aFrame.begin(), aFrame.end());
        CPPPPacket packet;
        packet.RestructBy(CAdvAnlzData::FromBytes(a.data(), static_cast<std::uint32_t>(a.size() * 8)));
        EXPECT_EQ(packet.GetFieldCount(), CProtocolPacket::kMaxFields) << pszFrame;
    }
}

TEST(PPPProtocols, MaskAndList)
{
    const struct {
        unsigned short wProtocol;
        unsigned short wMask;
    } aMasks[] = {{0xC021, 0x02}, {0x80FD, 0x04}, {0xC223, 0x08}, {0x0021, 0x10}, {0x8021, 0x20},
                  {0x8057, 0x40}, {0xC227, 0x00}, {0x002D, 0x00}, {0x002F, 0x00}, {0x8207, 0x00}};
    for (const auto& m : aMasks)
        EXPECT_EQ(Spec::GetProtocolMask(m.wProtocol), m.wMask) << m.wProtocol;

    const Spec& spec = *Spec::GetInstance();
    CWordArray aList;
    aList.Add(7);
    spec.GetProtocolList(0, aList);
    EXPECT_EQ(aList.GetSize(), 0);
    spec.GetProtocolList(0xFFFF, aList);
    EXPECT_EQ(WordsOf(aList), (std::vector<std::uint16_t>{0x0021, 0x8021, 0x8057, 0x80FD, 0xC021, 0xC223}));
    spec.GetProtocolList(0x22, aList);
    EXPECT_EQ(WordsOf(aList), (std::vector<std::uint16_t>{0x8021, 0xC021}));
}

// The packet takes over nothing: not from the bytes it is built from, not
// from the packet it is copied or assigned from; SetFieldData changes
// nothing. Addresses show in dotted decimal; the mask survives a save.
TEST(PPPPacket, ClassBehaviour)
{
    const CAdvAnlzData echoReply =
        Hex("0021 4500 0054 7d6f 4000 4001 b8c6 c0a80001 c0a80002 0000 59ea 1c2e0001");
    EXPECT_EQ(CPPPPacket(echoReply).GetFieldCount(), 0);
    EXPECT_EQ(CPPPPacket(HexBytes("c021 09 01 0004")).GetFieldCount(), 0);

    CPPPPacket packet;
    packet.RestructBy(echoReply);
    ASSERT_EQ(packet.GetFieldId(17), Spec::FieldIPSource);
    EXPECT_EQ(CPPPPacket(packet).GetFieldCount(), 0);
    CPPPPacket assigned;
    assigned = packet;
    EXPECT_EQ(assigned.GetFieldCount(), 0);
    EXPECT_EQ(assigned.GetProtocolsMask(), 0);
    EXPECT_EQ(packet.SetFieldData(17, Hex("01020304")), 0u);
    EXPECT_EQ(HexOf(*packet.GetFieldValue(17)), "0100a8c0");

    unsigned long dwLength = 0;
    EXPECT_EQ(packet.GetFieldBriefPattern(17, 6, dwLength, DisplayDecimal, 0), "192.168.0.1");
    EXPECT_EQ(dwLength, 11u);
    EXPECT_EQ(packet.GetFieldPattern(18, 6, DisplayDecimal, 0), "192.168.0.2");
    EXPECT_EQ(packet.GetFieldPattern(15, 6, DisplayDecimal, 0), "Int Ctrl Msg");
    EXPECT_EQ(packet.GetFieldPattern(1, 6, DisplayDecimal, 0), "IP");
    EXPECT_STREQ(packet.GetRuntimeClass()->m_lpszClassName, "CPPPPacket");
    EXPECT_TRUE(packet.IsKindOf(&CReqRespProtocolPacket::classCReqRespProtocolPacket));

    CMemoryStream stream;
    ASSERT_EQ(packet.Save(&stream, 1), S_OK);
    stream.Rewind();
    CPPPPacket loaded;
    ASSERT_EQ(loaded.Load(&stream), S_OK);
    EXPECT_EQ(Brief(loaded), Brief(packet));
    EXPECT_EQ(loaded.GetProtocolsMask(), 0x10);
}

TEST(PPPCatalogue, IdsLayerAndTables)
{
    Spec& spec = *Spec::GetInstance();
    ASSERT_EQ(spec.GetNumberOfLayerFields(), 158);
    for (int i = 0; i < 158; ++i) {
        const unsigned short nId = spec.GetLayerFieldId(i);
        const unsigned short nWanted = i == 71 ? 6072 : i == 72 ? 6071 : static_cast<unsigned short>(6000 + i);
        EXPECT_EQ(nId, nWanted) << i;
        ASSERT_NE(spec.GetDefaultFieldAttr(nId), nullptr);
        EXPECT_EQ(spec.GetDefaultFieldAttr(nId)->m_nId, nId);
        EXPECT_EQ(spec.GetLayerFieldName(nId), spec.GetDefaultFieldAttr(nId)->m_strName);
    }
    EXPECT_EQ(spec.GetDefaultFieldAttr(5999), nullptr);
    EXPECT_EQ(spec.GetDefaultFieldAttr(6158), nullptr);
    const SSpecFieldAttr& unexpected = *spec.GetDefaultFieldAttr(6157);
    EXPECT_EQ(unexpected.m_dwLength, 0u);
    EXPECT_EQ(unexpected.m_dwMaxLength, 4294967295u);
    EXPECT_EQ(spec.GetDefaultFieldAttr(6046)->m_dwMaxLength, 65535u);
    EXPECT_EQ(spec.GetDefaultFieldAttr(6061)->m_strName, "Multilink Max-Receive-Reconstructed-Unit ");
    EXPECT_EQ(spec.GetDefaultFieldAttr(6064)->m_strName, "MP+  Option");
    EXPECT_EQ(spec.GetDefaultFieldAttr(6039)->m_dwLength, 624u);

    const struct {
        unsigned short nId;
        std::uint64_t dwValue;
        std::uint8_t nWidth;
        const char* pszName;
        const char* pszAbbr;
    } aOptions[] = {
        {6000, 0x8207, 16, "UnKnown", "UnKnown"},
        {6000, 0xC021, 16, "LCP", "LCP"},
        {6000, 0x0000, 16, "UnKnown", "UnKnown"},
        {6041, 9, 8, "Echo Request", "Echo-Req"},
        {6044, 8, 8, "Address-and-control-field-compression", "ACFC"},
        {6044, 5, 8, "Magic Number ", "Magic Number "},
        {6012, 1, 8, "Configure_Request", "Conf_Req"},
        {6140, 4, 8, "Configure-Reject", "Conf-Rej"},
        {6026, 0x002D, 16, "Van Jacobson Compresed TCP/IP", "Van Jacobson Compressed TCP/IP"},
        {6106, 15, 8, "Reset Reply", "Reset Reply"},
        {6109, 26, 8, "DEFLATE", "DEFLATE"},
        {6088, 6, 8, "Transmission Control Protocol", "Transmission Control"},
        {6088, 134, 8, "RSVP-E2E-IGNORE", "RSVP-E2E-IGNORE"},
        {6088, 255, 8, "Reserved", "Reserved"},
        {6092, 68, 8, "Copy:not copy/Class:debuging/Optin:variable Time stamp",
         "not copy/debuging/variable Time stamp"},
        {6092, 131, 8, "Copy:copy/Class:control/Optin:Security", "copy/control/Security"},
        {6094, 0x35E2, 16, "Reserved for future use", "Reserved for future use"},
        {6085, 2, 3, "Do not fragment/Last fragment", "Don't frag/Last frag"},
    };
    for (const auto& o : aOptions) {
        const CAdvAnlzData value(o.dwValue, o.nWidth);
        EXPECT_EQ(spec.GetFieldOptionName(o.nId, value), o.pszName) << o.nId << " " << o.dwValue;
        EXPECT_EQ(spec.GetFieldOptionAbbr(o.nId, value), o.pszAbbr) << o.nId << " " << o.dwValue;
    }
    // The delay bit's value 0 is declared three bits wide.
    const CFieldOptionList* pDelay = spec.GetFieldOptions(6078);
    ASSERT_NE(pDelay, nullptr);
    ASSERT_EQ(pDelay->GetSize(), 2);
    EXPECT_EQ(pDelay->GetAt(0).m_Low.GetLength(), 3u);
    EXPECT_EQ(pDelay->GetAt(1).m_Low.GetLength(), 1u);
}

}  // namespace
