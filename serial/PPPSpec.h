// PPP frames with the HDLC framing already taken away: a payload holds one
// or more frames one behind the other, each a 16-bit protocol number and the
// packet of that protocol. Decoded here: LCP with all its options, CHAP, the
// header of EAP, the two Van Jacobson TCP/IP frames, IPCP, IPV6CP and CCP
// with their options, and the IPv4 header with one option. Frames of other
// protocols show their code, identifier, length and data.
//
// Every value wider than 8 bits is a big-endian number on the wire, so the
// decoder's ReadField reverses all of them. After the walk a check goes over
// the fields by position and records protocol errors: 53 too few fields,
// 54 a field the position does not call for, 55 a field of the wrong length,
// 57 fields left over, 190 a malformed protocol number, 191 a CHAP code out
// of range, 200 and 202 an LCP code or option type out of range, 203 a
// data-less LCP option whose length is not 2, 210 an IPv4 value that is not
// accepted, 220 to 224 IPCP codes, lengths and option types, 230 and 231 a
// CCP code out of range or options that do not add up to the length, 240 and
// 242 an IPV6CP code or option type out of range.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>

#include "core/AdvAnlzData.h"
#include "core/FieldCursor.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"
#include "platform/Arrays.h"

class CAdvAnlzPPPSpec;

// The walk of every PPP reader over its frame: it stops as soon as nothing
// is left.
using CPPPWalk = CFieldCursor<CAdvAnlzPPPSpec, CProtocolPacket>;

class CAdvAnlzPPPSpec : public CProtocolSpec {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CAdvAnlzPPPSpec)

public:
    static constexpr unsigned short kFirstId = 6000;
    static constexpr unsigned short kFieldCount = 158;

    enum : unsigned short {
        FieldHeader = 6000,
        // Frames of protocols not decoded here.
        FieldUndefinedCode = 6001,
        FieldUndefinedId = 6002,
        FieldUndefinedLength = 6003,
        FieldUndefinedField = 6004,
        // CHAP.
        FieldCHAPCode = 6005,
        FieldCHAPId = 6006,
        FieldCHAPLength = 6007,
        FieldCHAPValueSize = 6008,
        FieldCHAPValue = 6009,
        FieldCHAPName = 6010,
        FieldCHAPMessage = 6011,
        // IPCP.
        FieldIPCPCode = 6012,
        FieldIPCPId = 6013,
        FieldIPCPLength = 6014,
        FieldIPCPMagicNumber = 6015,
        FieldIPCPOUI = 6016,
        FieldIPCPKind = 6017,
        FieldIPCPValues = 6018,
        FieldIPCPType = 6019,
        FieldIPCPOptionLength = 6020,
        FieldPrimaryDNS = 6021,
        FieldSecondaryDNS = 6022,
        FieldPrimaryNBNS = 6023,
        FieldSecondaryNBNS = 6024,
        FieldMobileHomeAddress = 6025,
        FieldIPCompressionProtocol = 6026,
        FieldIPCPData = 6027,
        FieldMaxSlotId = 6028,
        FieldCompSlotId = 6029,
        FieldIPAddress = 6030,
        FieldTCPSpace = 6031,
        FieldNonTCPSpace = 6032,
        FieldFMaxPeriod = 6033,
        FieldFMaxTime = 6034,
        FieldMaxHeader = 6035,
        FieldSuboptionType = 6036,
        FieldSuboptionLength = 6037,
        FieldSuboptionParameters = 6038,
        // Van Jacobson TCP/IP.
        FieldVJData = 6039,
        // LCP.
        FieldLCPCode = 6041,
        FieldLCPId = 6042,
        FieldLCPLength = 6043,
        FieldLCPType = 6044,
        FieldLCPOptionLength = 6045,
        FieldLCPData = 6046,
        FieldLCPVendorOUI = 6047,
        FieldLCPVendorKind = 6048,
        FieldLCPVendorValues = 6049,
        FieldMRU = 6050,
        FieldAuthProtocol = 6051,
        FieldAuthData = 6052,
        FieldAuthAlgorithm = 6053,
        FieldMagicNumber = 6054,
        FieldQualityProtocol = 6055,
        FieldQualityData = 6056,
        FieldFCSAlternatives = 6057,
        FieldPadMaximum = 6058,
        FieldCallBackOperation = 6059,
        FieldCallBackMessage = 6060,
        FieldMRRU = 6061,
        FieldEndpointClass = 6062,
        FieldEndpointAddress = 6063,
        FieldMPPlusOption = 6064,
        FieldLinkDiscriminator = 6065,
        FieldPrefixClass = 6066,
        FieldPrefixLength = 6067,
        FieldPrefix = 6068,
        FieldMultilinkHeaderCode = 6069,
        FieldSuspendableClasses = 6070,
        FieldCharset = 6071,
        FieldLanguageTag = 6072,
        FieldNumberedWindow = 6073,
        FieldNumberedAddress = 6074,
        // IPv4.
        FieldIPVersion = 6075,
        FieldIPHeaderLength = 6076,
        FieldIPPrecedence = 6077,
        FieldIPDelay = 6078,
        FieldIPThroughput = 6079,
        FieldIPReliability = 6080,
        FieldIPMonetary = 6081,
        FieldIPTOSReserved = 6082,
        FieldIPTotalLength = 6083,
        FieldIPIdentification = 6084,
        FieldIPFlags = 6085,
        FieldIPFragmentOffset = 6086,
        FieldIPTimeToLive = 6087,
        FieldIPProtocol = 6088,
        FieldIPChecksum = 6089,
        FieldIPSource = 6090,
        FieldIPDestination = 6091,
        FieldIPOptionType = 6092,
        FieldIPOptionLength = 6093,
        FieldIPSecurity = 6094,
        FieldIPCompartments = 6095,
        FieldIPHandling = 6096,
        FieldIPTransmissionControl = 6097,
        FieldIPPointer = 6098,
        FieldIPRouteData = 6099,
        FieldIPStreamId = 6100,
        FieldIPOverflow = 6101,
        FieldIPTimestampFlag = 6102,
        FieldIPInternetAddress = 6103,
        FieldIPTimestamp = 6104,
        FieldIPData = 6105,
        // CCP.
        FieldCCPCode = 6106,
        FieldCCPId = 6107,
        FieldCCPLength = 6108,
        FieldCCPType = 6109,
        FieldCCPOptionLength = 6110,
        FieldCCPData = 6111,
        FieldCCPOUI = 6112,
        FieldCCPSubtype = 6113,
        FieldCCPValues = 6114,
        FieldLZSHistoryCount = 6115,
        FieldLZSCheckMode = 6116,
        FieldBSDVersion = 6119,
        FieldBSDDictionary = 6120,
        FieldDCPHistoryCount = 6121,
        FieldDCPCheckMode = 6122,
        FieldDCPProcessMode = 6123,
        FieldMVRCAFeatures = 6124,
        FieldMVRCAPacketByPacket = 6125,
        FieldMVRCAHistory = 6126,
        FieldMVRCAContext = 6127,
        FieldDCEMode = 6128,
        FieldDeflateWindow = 6129,
        FieldDeflateMethod = 6130,
        FieldDeflateMBZ = 6131,
        FieldDeflateCheck = 6132,
        FieldMPPH = 6133,
        FieldMPPM = 6134,
        FieldMPPS = 6135,
        FieldMPPL = 6136,
        FieldMPPD = 6137,
        FieldMPPC = 6138,
        FieldMPPUndefined = 6139,
        // IPV6CP.
        FieldIPV6CPCode = 6140,
        FieldIPV6CPId = 6141,
        FieldIPV6CPLength = 6142,
        FieldIPV6CPType = 6143,
        FieldIPV6CPOptionLength = 6144,
        FieldIPV6CPData = 6145,
        FieldInterfaceIdentifier = 6146,
        FieldIPV6CompressionProtocol = 6147,
        FieldUnexpected = 6157,
    };

    // The protocol numbers the frame walk dispatches on.
    enum : unsigned short {
        ProtocolIP = 0x0021,
        ProtocolCompressedTCP = 0x002D,
        ProtocolUncompressedTCP = 0x002F,
        ProtocolIPCP = 0x8021,
        ProtocolIPV6CP = 0x8057,
        ProtocolCCP = 0x80FD,
        ProtocolLCP = 0xC021,
        ProtocolCHAP = 0xC223,
        ProtocolEAP = 0xC227,
    };

    static CAdvAnlzPPPSpec* GetInstance();
    static void KillInstance();
    ~CAdvAnlzPPPSpec() override = default;

    // Walks the frames of the payload, then runs the check. The packet
    // should be a CPPPPacket, which receives the mask of the protocols seen.
    int InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int nReserved) override;
    // Ids 6000 to 6157; any other id has no record here.
    const SSpecFieldAttr* GetDefaultFieldAttr(unsigned short nId) const override { return ms_table.Find(nId); }
    unsigned short GetNumberOfLayerFields() const override { return kFieldCount; }
    unsigned short GetLayerFieldId(int nIndex) const override { return ms_table.LayerFieldId(nIndex); }
    CString GetLayerFieldName(unsigned short nId) override { return ms_table.LayerFieldName(nId); }

    // The check walk over the packet's fields; clears its protocol errors
    // first and returns the findings.
    unsigned char CheckProtocol(CProtocolPacket& packet) const;

    // The mask bit of a known protocol (LCP 0x02, CCP 0x04, CHAP 0x08, IP
    // 0x10, IPCP 0x20, IPV6CP 0x40); 0 for any other.
    static unsigned short GetProtocolMask(unsigned short wProtocol) noexcept;
    // The protocols of a mask, in the order of the protocol number's named
    // values: IP, IPCP, IPV6CP, CCP, LCP, CHAP.
    void GetProtocolList(unsigned short wMask, CWordArray& aProtocols) const;

    // One field of a configuration option layout: id and width in bits.
    struct SOptionField {
        unsigned short nId;
        std::uint8_t nBits;
    };
    // The layout of a configuration option with fixed fields: the fields in
    // wire order, then, when the option's data (S bits) is longer than
    // dwThreshold, one field of S - dwThreshold bits. The check wants
    // nNeedShort or nNeedLong fields from the option's first one on; on too
    // few the position moves to the field count where bSetShort or bSetLong
    // says so.
    struct SOptionLayout {
        std::uint8_t nType;
        SOptionField aFields[9];
        unsigned short nTrailingId;
        std::uint32_t dwThreshold;
        std::uint8_t nNeedShort;
        std::uint8_t nNeedLong;
        bool bSetShort;
        bool bSetLong;
    };

    // The state of the check walk: the position of the next field to look
    // at (from 1), which all checks share, and the running bit count and
    // limit of an option walk. The position is a full integer, so that a
    // packet of 255 fields cannot wrap it back to the first one.
    struct SCheck {
        CProtocolPacket& packet;
        int nCount;
        int nPos = 1;
        std::uint32_t dwBits = 0;
        std::uint32_t dwLimit = 0;

        // Fields from the position on.
        int Remaining() const noexcept { return nCount - nPos + 1; }
        // A field's id, length and value as a number; 0 for a position
        // outside the packet.
        unsigned short IdAt(int nAt) const;
        std::uint32_t LengthAt(int nAt) const;
        std::uint32_t NumberAt(int nAt) const;
        unsigned Error(unsigned short nCode)
        {
            packet.AddPError(nCode);
            return 1;
        }
        // True, after error 53, when fewer than nNeed fields remain; with
        // bSet the position then moves to the field count.
        bool Short(int nNeed, bool bSet = false);
        // Takes the field at the position and steps; error 54 when its id
        // is not nId. Returns the field's position.
        int Take(unsigned short nId, unsigned& nFindings);
        // The field test: Take, then error 55 when its length is not
        // dwLength. bCount adds its length to the running bit count.
        unsigned Test(unsigned short nId, std::uint32_t dwLength, bool bCount = false);
        // Takes fields of these ids one behind the other: each must be
        // there with nBehind more fields behind it (else error 53) and have
        // its id (else error 54); the position passes a field only when it
        // is right. False after an error; pAt receives the positions taken.
        bool TakeInOrder(std::initializer_list<unsigned short> ids, int* pAt, int nBehind = 0);
    };

private:
    CAdvAnlzPPPSpec();

    // Option lists, built in this order by the constructor.
    void InitHeaderOptions();
    void InitLCPOptions();
    void InitCHAPOptions();
    void InitIPCPOptions();
    void InitIPV6CPOptions();
    void InitIPOptions();
    void InitCCPOptions();

    // The decoder's ReadField: the frame's rule, with every value wider than
    // 8 bits byte-reversed whatever eOrder says.
    unsigned long ReadField(const CAdvAnlzData& data, CProtocolPacket& packet, unsigned short nId,
                            CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength);
    CPPPWalk Walk(const CAdvAnlzData& data, CProtocolPacket& packet)
    {
        return CPPPWalk(*this, &CAdvAnlzPPPSpec::ReadField, StopWhenEmpty, data, packet);
    }
    // What is left of the walk, if anything, as one "Unexpected Field".
    static void ReadLeftover(CPPPWalk& walk);
    // Code, identifier and length of a control protocol packet, each only if
    // bytes remain; the length, or 0 when it is not there.
    static unsigned ReadControlHeader(CPPPWalk& walk, unsigned short nCodeId);
    // The fields of an option layout, each behind the first only if bytes
    // remain.
    static void ReadOptionLayout(CPPPWalk& walk, const SOptionLayout& layout, std::uint32_t dwSize);

    // Frame readers: each reads one frame on the payload's walk, which is
    // bound to the frame's length, and stops where its protocol ends.
    static void ReadLCPPacket(CPPPWalk& walk);
    static void ReadCHAPPacket(CPPPWalk& walk);
    static void ReadEAPPacket(CPPPWalk& walk);
    static void ReadUnDefinedPacket(CPPPWalk& walk);
    static void ReadVanJacobsonPacket(CPPPWalk& walk);
    static void ReadIPCPPacket(CPPPWalk& walk);
    static void ReadIPV6CPPacket(CPPPWalk& walk);
    static void ReadCCPPacket(CPPPWalk& walk);
    static void ReadIPPacket(CPPPWalk& walk);
    // LCP options of a type without a layout row: authentication protocol,
    // prefix elision, and the data of any other type.
    static void ReadLCPOption(CPPPWalk& walk, std::uint8_t nType, std::uint32_t dwSize);
    // IPCP options, and the compression protocols that IPCP and IPV6CP share.
    static void ReadIPCPDataOptions(CPPPWalk& walk, std::uint16_t wRemaining);
    static void ReadIPCPIPCompressionProtocol(CPPPWalk& walk, std::uint16_t wProtocol, std::uint32_t dwLength);
    static void ReadIPCPUnCompressedTCP(CPPPWalk& walk, std::uint32_t dwLength);
    static void ReadIPV6CPCompressionProtocol(CPPPWalk& walk, std::uint32_t dwLength);
    // Bit fields of one or two header bytes, in the order a standard draws
    // them, most significant bits first. Reads all fields (as the bits stand
    // when the frame ends inside these bytes) and gives back the last one's
    // value; false when the walk has ended.
    static bool ReadBitGroups(CPPPWalk& walk, std::uint32_t nBits, std::initializer_list<SOptionField> fields,
                              std::uint32_t* pLastValue = nullptr);
    // The length byte of an IPV6CP or CCP option. A length below 2 is added
    // as a field but stays in the data, where the walk takes it again as the
    // next option's type.
    static std::uint8_t ReadOptionLength(CPPPWalk& walk, unsigned short nId);

    // Checks: each takes the walk state and returns its findings.
    // The check of one frame, from the field behind its protocol number.
    static unsigned CheckFrame(SCheck& check, std::uint16_t wProtocol);
    static unsigned CheckOptionLayout(SCheck& check, const SOptionLayout& layout, std::uint32_t dwSize);
    // Code, identifier and length of LCP, IPV6CP or CCP; the length sets
    // the limit of the option walk.
    static unsigned CheckControlHeader(SCheck& check, unsigned short nCodeId, std::uint32_t dwMaxCode,
                                       unsigned short nCodeError, bool bSetOnShortId);
    static unsigned CheckLCPProtocol(SCheck& check);
    static unsigned CheckLCPOption(SCheck& check, std::uint32_t dwType, std::uint32_t dwSize);
    static unsigned CheckCHAPProtocol(SCheck& check);
    static unsigned CheckUnDefinedProtocolFields(SCheck& check);
    static unsigned CheckVanJacobson(SCheck& check, std::uint32_t dwBits);
    static unsigned CheckIPCPProtocol(SCheck& check);
    static unsigned CheckProtocolIPCPOptions(SCheck& check, int nRemaining);
    static unsigned CheckProtocolIPCPComprProtocol(SCheck& check, std::uint32_t dwLength);
    static unsigned CheckProtocolIPCPNonCompressedTCP(SCheck& check, std::uint32_t dwLength);
    static unsigned CheckIPV6CPProtocol(SCheck& check);
    static unsigned CheckCCPProtocol(SCheck& check);
    static unsigned CheckIPProtocol(SCheck& check);

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
    static CAdvAnlzPPPSpec* ms_pInstance;
};

// The packet of the PPP decoder: one list of fields (no request and response
// sides) and the mask of the known protocols seen in it. Every constructor
// binds the packet to the decoder and takes over nothing from its argument:
// a packet built from bytes is empty until RestructBy. Assignment copies
// nothing, and SetFieldData changes nothing.
class CPPPPacket : public CReqRespProtocolPacket {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CPPPPacket)

public:
    CPPPPacket();
    CPPPPacket(const CPPPPacket& other);
    explicit CPPPPacket(const CAdvAnlzData& data);
    explicit CPPPPacket(const CByteArray& aBytes);
    CPPPPacket& operator=(const CPPPPacket& other);
    ~CPPPPacket() override = default;

    unsigned short GetProtocolsMask() const noexcept { return m_wProtocolsMask; }
    void AddProtocol(unsigned short wMask) noexcept { m_wProtocolsMask |= wMask; }
    void ClearProtocolsMask() noexcept { m_wProtocolsMask = 0; }

    unsigned long SetFieldData(unsigned char nIndex, const CAdvAnlzData& value) override;
    using CReqRespProtocolPacket::GetFieldBriefPattern;
    // Kind 6 shows the source and destination addresses of an IPv4 header
    // in dotted decimal; everything else is the base's.
    CString GetFieldBriefPattern(unsigned char nIndex, unsigned char nKind, unsigned long& dwLength,
                                 EDisplayFormat eFormat, int nFlag) const override;
    using CReqRespProtocolPacket::GetFieldPattern;
    CString GetFieldPattern(unsigned char nIndex, unsigned char nKind, EDisplayFormat eFormat, int nFlag) const;

protected:
    void SerializeMembers(CArchive& ar) override;

private:
    unsigned short m_wProtocolsMask = 0;
};
