// OBEX: one request or response packet per payload. The opcode, the packet
// length, the fixed fields of a connect or set-path packet, then the chain of
// headers in their four encodings. A packet stands by itself: nothing is
// remembered from one packet to the next, and the opcode alone tells a
// request from a response. The packet's format code is its opcode, or 95 for
// an opcode that is not valid.
#pragma once

#include <array>
#include <cstdint>

#include "core/AdvAnlzData.h"
#include "core/FieldCursor.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"

class CAdvAnlzOBEXSpec;

// The walk over one OBEX packet; it ends as soon as nothing is left.
using COBEXReader = CFieldCursor<CAdvAnlzOBEXSpec, CProtocolPacket>;

class CAdvAnlzOBEXSpec : public CProtocolSpec {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CAdvAnlzOBEXSpec)

public:
    static constexpr unsigned short kFirstId = 5000;
    static constexpr unsigned short kFieldCount = 14;

    enum : unsigned short {
        FieldOpCode = 5000,
        FieldPacketLength = 5001,
        FieldVersion = 5002,
        FieldFlags = 5003,
        FieldMaxPacketLength = 5004,
        FieldHeaderId = 5005,
        FieldHeaderLength = 5006,
        FieldData = 5007,
        FieldCount = 5008,
        FieldObjectLength = 5009,
        FieldConnectionId = 5010,
        FieldSetPathFlags = 5011,
        FieldSetPathConstants = 5012,
        FieldUnexpectedData = 5013,
    };

    // Protocol errors.
    enum : unsigned short {
        ErrorTooFewFields = 53,
        ErrorUnexpectedField = 54,
        ErrorFieldLength = 55,
        ErrorNoRuleForOpcode = 160,
        ErrorUnknownHeader = 161,
        ErrorForbiddenFlags = 162,
        ErrorMaxPacketLength = 163,
    };

    // The format code of a packet whose opcode is not valid.
    static constexpr unsigned char kInvalidOpCodeFormat = 95;

    static CAdvAnlzOBEXSpec* GetInstance();
    static void KillInstance();
    ~CAdvAnlzOBEXSpec() override = default;

    // Decodes one packet; nonzero when the check found nothing. An empty
    // payload is a finding.
    int InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int nReserved) override;
    // The catalogue's record, or null for any other id.
    const SSpecFieldAttr* GetDefaultFieldAttr(unsigned short nId) const override;
    unsigned short GetNumberOfLayerFields() const override { return kFieldCount; }
    unsigned short GetLayerFieldId(int nIndex) const override { return ms_table.LayerFieldId(nIndex); }
    CString GetLayerFieldName(unsigned short nId) override { return ms_table.LayerFieldName(nId); }

    // Walks the packet's fields by position and returns the count of rules
    // broken; the findings go into the packet's protocol errors.
    unsigned char CheckProtocol(CProtocolPacket& packet) const;

    // The opcodes that the walk accepts, and the header ids it knows.
    static bool IsValidOpCode(std::uint8_t nOpCode) noexcept;
    static bool IsKnownHeaderId(std::uint8_t nId) noexcept;
    // Ids 48 to 63 of each encoding.
    static bool IsUserDefinedHeaderId(std::uint8_t nId) noexcept { return (nId & 0x3F) >= 48; }

private:
    friend class CFieldCursor<CAdvAnlzOBEXSpec, CProtocolPacket>;

    CAdvAnlzOBEXSpec();
    void InitFormats();
    void InitOptions();

    // The frame's ReadField; it honours the byte order.
    unsigned long ReadField(const CAdvAnlzData& data, CProtocolPacket& packet, unsigned short nId,
                            CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength);
    // Reads a field from the front without consuming it: the caller drops
    // its bits once it knows what follows.
    unsigned long ReadKept(COBEXReader& reader, unsigned short nId, CAdvAnlzData& value, EByteOrder eOrder,
                           unsigned long dwLength);

    unsigned long ReadElements(const CAdvAnlzData& data, CProtocolPacket& packet);
    // Sets the packet's format code from the opcode. An opcode that is not
    // valid is read with all that follows it, and the walk ends (0).
    int CheckOpCode(COBEXReader& reader);
    // Reads one header; false when the walk ends with it.
    bool ReadHeader(COBEXReader& reader);
    // An id that is neither known nor user-defined ends the walk: the rest,
    // from the id on, becomes "UnExpeced Data" (1).
    int CheckHeaderID(COBEXReader& reader, std::uint8_t nId);

    // The checks. A position is the 1-based index of the next field; each
    // check moves it over the fields it examines and returns its findings.
    unsigned char CheckElements(CProtocolPacket& packet, int& nPosition, unsigned char& nOpCode) const;
    unsigned char CheckOpcodeConnect(CProtocolPacket& packet, int& nPosition) const;
    unsigned char CheckOpcodeDisConnect(CProtocolPacket& packet, int& nPosition) const;
    unsigned char CheckOpcodeSetPath(CProtocolPacket& packet, int& nPosition) const;
    unsigned char CheckResponseSuccess(CProtocolPacket& packet, int& nPosition) const;
    unsigned char CheckOpcodes_Put_Get_FinalPut_FinalGet(CProtocolPacket& packet, int& nPosition, int nOpCode) const;
    unsigned char CheckHeader(CProtocolPacket& packet, int& nPosition) const;
    unsigned char CheckHeaderLength(CProtocolPacket& packet, unsigned char nIndex) const;
    // Responses other than Success have no rule beyond their value.
    unsigned char CheckIsHeaderId(CProtocolPacket&, unsigned char, unsigned char) const { return 0; }

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
    static CAdvAnlzOBEXSpec* ms_pInstance;
};

class COBEXPacket : public CReqRespProtocolPacket {
    BUSDECODE_DECLARE_RUNTIME_CLASS(COBEXPacket)

public:
    COBEXPacket();
    explicit COBEXPacket(const CAdvAnlzData& data);
    explicit COBEXPacket(const CByteArray& aBytes);
    // Gives an empty packet bound to the decoder: the source is not copied.
    COBEXPacket(const COBEXPacket& other);
    // Takes the fields, the errors, the format code and the decoder; names,
    // counts and the response flag stay as cleaned.
    COBEXPacket& operator=(const COBEXPacket& other);
    ~COBEXPacket() override = default;

    unsigned long SetFieldData(unsigned char nIndex, const CAdvAnlzData& value) override
    {
        return CProtocolPacket::SetFieldData(nIndex, value);
    }
};
