// Bluetooth HCI 1.1: commands from the host, events from the host
// controller, and ACL and SCO data packets in both directions. A payload is
// one HCI packet without a transport byte; the caller says which kind it is.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <vector>

#include "core/AdvAnlzData.h"
#include "core/FieldCursor.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"

// The packet kind, which the bytes cannot tell.
enum EHCIPacketKind : int {
    HCICommandPacketType = 0,
    HCIACLHostToHostControllerDataPacketType = 1,
    HCIACLHostControllerToHostDataPacketType = 2,
    HCISCODataPacketType = 3,
    HCIEventPacketType = 4,
};

class CHCISpec;
class CHCIPacket;

// The walk of every HCI reader over its copy of the payload.
using CHCIReader = CFieldCursor<CHCISpec>;

class CHCISpec : public CProtocolSpec {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CHCISpec)

public:
    static constexpr unsigned short kFirstId = 27000;
    static constexpr unsigned short kFieldCount = 280;

    // Header and data-packet field ids.
    enum : unsigned short {
        FieldVendorOCF = 27000,
        FieldLinkOCF = 27001,
        FieldLinkOGF = 27002,
        FieldPolicyOCF = 27003,
        FieldPolicyOGF = 27004,
        FieldHostOCF = 27005,
        FieldHostOGF = 27006,
        FieldInformationOCF = 27007,
        FieldInformationOGF = 27008,
        FieldStatusOCF = 27009,
        FieldStatusOGF = 27010,
        FieldTestingOCF = 27011,
        FieldTestingOGF = 27012,
        FieldTotalLength = 27013,
        FieldEventCode = 27090,
        FieldParameterTotalLength = 27091,
        FieldErrorMessageCode = 27266,
        FieldUnExpected = 27267,
        FieldVendorData = 27268,
        FieldLogoTestingData = 27269,
        FieldACLHandle = 27270,
        FieldPacketBoundaryFlag = 27271,
        FieldBroadcastFlagToController = 27272,
        FieldBroadcastFlagToHost = 27273,
        FieldACLDataTotalLength = 27274,
        FieldACLData = 27275,
        FieldSCOHandle = 27276,
        FieldSCOReserved = 27277,
        FieldSCODataTotalLength = 27278,
        FieldSCOData = 27279,
    };

    static CHCISpec* GetInstance();
    static void KillInstance();
    ~CHCISpec() override = default;

    // Decodes every payload as a command; returns 0.
    int InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int nReserved) override;
    // Decodes a payload of the given kind; returns 1.
    virtual int InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int nReserved,
                                    EHCIPacketKind eKind);

    const SSpecFieldAttr* GetDefaultFieldAttr(unsigned short nId) const override;
    unsigned short GetNumberOfLayerFields() const override { return kFieldCount; }
    unsigned short GetLayerFieldId(int nIndex) const override { return ms_table.LayerFieldId(nIndex); }
    CString GetLayerFieldName(unsigned short nId) override { return ms_table.LayerFieldName(nId); }
    // HCI raises no protocol error: every oddity shows in the fields.
    unsigned char CheckProtocol(CReqRespProtocolPacket&) const { return 0; }

    // The strict interning: records of equal numbers but different
    // descriptions stay apart, since readers re-describe field instances.
    const SSpecFieldAttr* GetFieldReference(const SSpecFieldAttr& attr);

private:
    friend class CHCIPacket;

    CHCISpec();

    // Option lists, built in this order by the constructor.
    void InitOptions_HCIVendorCommand();
    void InitOptions_HCILinkControl();
    void InitOptions_HCIPolicyControl();
    void InitOptions_HCIHostControl();
    void InitOptions_HCIInformationParameters();
    void InitOptions_HCIStatusParameters();
    void InitOptions_HCITestingCommand();
    void InitOptions_HCIEvent();
    void InitOptions_HCIReturnParameter();
    void InitOptions_HCIDATAPacket();
    // The HCI error list under a status field; the caller adds the field's
    // own status 0 behind it.
    void InitOptions_HCIErrorMessage(int nFieldId);

    // The frame's ReadField; it also counts the field as a request field.
    unsigned long ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, unsigned short nId,
                            CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength);
    // A walk over data that stops as soon as nothing is left.
    CHCIReader Reader(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
    {
        return CHCIReader(*this, &CHCISpec::ReadField, StopWhenEmpty, data, packet);
    }

    // The names that no table gives (see HCINaming.cpp).
    enum EHCIFixedName : int {
        NameUnKnown,
        NameVendorCommand,
        NameVendorEvent,
        NameLogoTesting,
        NameACLData,
        NameSCOData,
        NameCommandComplete,
        NameCommandStatus,
        kFixedNameCount
    };

    // One walk per packet kind; each works on a copy of the payload.
    unsigned long ReadHCICommandPacketTypeElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadHCIEventPacketTypeElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadHCIACLHostToHostControllerDataPacketTypeElements(const CAdvAnlzData& data,
                                                                       CReqRespProtocolPacket& packet);
    unsigned long ReadHCIACLHostControllerToHostDataPacketTypeElements(const CAdvAnlzData& data,
                                                                       CReqRespProtocolPacket& packet);
    unsigned long ReadHCISCODataPacketTypeElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadHCIErrorMessagePacketTypeElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    // The walk of ACL and SCO data packets: the 12-bit handle (a reserved
    // handle ends the packet), the header fields behind it, the last of them
    // the data length in bytes, then the data.
    unsigned long ReadDataPacket(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, EHCIFixedName eName,
                                 unsigned short nHandleId, std::initializer_list<unsigned short> headerIds,
                                 unsigned short nDataId);

    // 1: the code is known and nothing was consumed; 0: the packet was
    // finished here.
    int CheckCommandCode(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    int CheckEventCode(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    int CheckErrorMessageCode(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);

    // The parameters of an event with a code of 0x01 to 0x20, read behind the
    // event code and Parameter_Total_Length; nothing of it remains unread.
    void ReadEventParameters(CHCIReader& reader, std::uint8_t nEventCode);
    // Command Status behind the header: status, command credits and the
    // opcode of the command.
    void ReadCommandStatusParameters(CHCIReader& reader);
    // Command Complete behind the header: command credits, the opcode of the
    // command and its return parameters. What is left stays for the caller.
    // Returns the bits consumed.
    unsigned long ReadHCIReturnParameters(CHCIReader& reader);

    // The opcode in a Command Complete or Command Status event, read through
    // the OCF and OGF fields of its command group (those of link control
    // for an OGF outside 1 to 6).
    struct SHCIEventOpCode {
        unsigned nOGF = 0;
        std::uint16_t nOCF = 0;
        bool bGroup = false;  // OGF 1 to 6
        unsigned short nOCFId = 0;
        unsigned short nOGFId = 0;
        bool bMore = false;  // bits are left behind the OCF field
    };
    SHCIEventOpCode ReadEventOpCodeOCF(CHCIReader& reader);
    // Reads the OGF field behind the OCF; false when nothing is left.
    bool ReadEventOpCodeOGF(CHCIReader& reader, const SHCIEventOpCode& opcode);

    // Command group readers: OCF field, OGF field, Total_Length, then the
    // parameters of the command.
    unsigned long ReadLinkCommandElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadPolicyCommandElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadHostCommandElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadInformationParametersElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadStatusParametersElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadTestingCommandElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);

    // Request names. Every name an HCI packet gets is decided in
    // HCINaming.cpp; an HCI packet has no response name.
    void InitRequestNames();
    void SetFixedRequestName(CReqRespProtocolPacket& packet, EHCIFixedName eName) const;
    // A command of OGF 1 to 6 by its group's table; "UnKnown" for an OCF the
    // group lacks.
    void SetCommandRequestName(CReqRespProtocolPacket& packet, unsigned nOGF, unsigned short nOCF) const;
    // An event of code 0x01 to 0x20.
    void SetEventRequestName(CReqRespProtocolPacket& packet, std::uint8_t nEventCode) const;
    // A Command Complete event by the opcode it carries.
    void SetCommandCompleteRequestName(CReqRespProtocolPacket& packet, unsigned nOGF, unsigned short nOCF) const;
    // A Command Status event by the option text of the OCF field read.
    void SetCommandStatusRequestName(CReqRespProtocolPacket& packet, unsigned short nOCFId) const;
    // The naming operations of the link control, link policy and host
    // controller readers, and the one of the information parameters that
    // the opcode check calls.
    void LinkCommandSetRequestAndResponseNames(CReqRespProtocolPacket& packet, unsigned short nOCF);
    void PolicySetRequestAndResponseNames(CReqRespProtocolPacket& packet, unsigned short nOCF);
    void HostSetRequestAndResponseNames(CReqRespProtocolPacket& packet, unsigned short nOCF);
    void InformationSetRequestName(CReqRespProtocolPacket& packet, unsigned short nOCF);

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
    static CHCISpec* ms_pInstance;

    // Per-packet state, reset at the start of every decode.
    int m_nOpCodeOCF = 0;
    EHCIPacketKind m_eHCIPacketKind = HCICommandPacketType;
    unsigned char m_nRequestFields = 0;
    unsigned char m_nResponseFields = 0;

    // The request names, built once by InitRequestNames: the fixed ones, the
    // events by code, and per command group (OGF 1 to 6) the commands and
    // their Command Complete events, parallel to the group's table.
    std::array<CString, kFixedNameCount> m_aFixedNames;
    std::vector<CString> m_aEventNames;
    std::array<std::vector<CString>, 6> m_aCommandNames;
    std::array<std::vector<CString>, 6> m_aCommandCompleteNames;
};

class CHCIPacket : public CReqRespProtocolPacket {
public:
    CHCIPacket();
    CHCIPacket(const CAdvAnlzData& data, EHCIPacketKind eKind);
    CHCIPacket(const CByteArray& aBytes, EHCIPacketKind eKind);
    // Gives an empty packet bound to the decoder: the source is not copied.
    CHCIPacket(const CHCIPacket& other);
    // As the base assignment; the target keeps its own OCF field id.
    CHCIPacket& operator=(const CHCIPacket& other);
    ~CHCIPacket() override = default;

    using CReqRespProtocolPacket::RestructBy;
    // Decodes a payload of the given kind and keeps the decoder's OCF field id.
    int RestructBy(const CAdvAnlzData& data, EHCIPacketKind eKind);
    // The id of the field that holds the command's OCF, or 0.
    int GetOpCodeOCF() const noexcept { return m_nOpCodeOCF; }

    unsigned long SetFieldData(unsigned char nIndex, const CAdvAnlzData& value) override
    {
        return CProtocolPacket::SetFieldData(nIndex, value);
    }

protected:
    void SerializeMembers(CArchive& ar) override;

private:
    int m_nOpCodeOCF = 0;
};
