// AT command lines and modem responses: a piece of the character stream
// between a terminal and a modem or a hands-free unit, possibly several lines
// in one payload. A recognised piece of text is a field whose value is the
// characters themselves, read as a little-endian number (so "&A" is 0x4126).
// The payload tells by itself what it holds: commands, a response, both or
// neither. Besides its fields a packet keeps the list of recognised elements
// and one format code that names the packet as a whole.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "core/AdvAnlzData.h"
#include "core/FieldCursor.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"
#include "platform/Arrays.h"

class CAdvAnlzATCommandSpec;
class CATCommandPacket;

// The one walk over a payload's characters, front to back.
using CATReader = CFieldCursor<CAdvAnlzATCommandSpec, CATCommandPacket>;

// One named text of a field: a command body, a response, a dial character or
// a prefix. Its row number is unique across the fields; its format code names
// a packet whose last element it is.
struct SATTextRow {
    unsigned short nCode;  // format code (prefixes and dial characters: their row)
    const char* pszText;   // the text as an upper-case command sends it
    const char* pszName;
    const char* pszAbbr = nullptr;  // null: the name
    std::uint64_t qwValue = 0;      // the named value when it is not the text itself
    std::uint8_t nBits = 0;         // its width when not 8 bits per character
};

class CAdvAnlzATCommandSpec : public CProtocolSpec {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CAdvAnlzATCommandSpec)

public:
    static constexpr std::uint8_t kCR = 0x0D;
    static constexpr std::uint8_t kLF = 0x0A;
    static constexpr unsigned short kFirstId = 21500;
    static constexpr unsigned short kFieldCount = 11;

    enum : unsigned short {
        FieldPrefixAT = 21500,
        FieldSwitchToCommandMode = 21501,
        FieldRepeatLastCommand = 21502,
        FieldCommandBody = 21503,
        FieldUnknownCommand = 21504,
        FieldUnknownDialParameters = 21505,
        FieldDialParameters = 21506,
        FieldResponse = 21507,
        FieldUnexpectedResponses = 21508,
        FieldCarriageReturn = 21509,
        FieldLineFeed = 21510,
    };

    // Format codes with a meaning of their own.
    enum : unsigned short {
        FormatAnswer = 169,  // "ATA"
        FormatDial = 176,
        FormatUnknownCommand = 320,
        FormatUnknownResponse = 321,
        FormatMultipleElements = 322,
        FormatNone = 500,  // no element has named the packet yet
    };

    // Protocol errors: text that was not understood, and a dial string that
    // was not.
    enum : unsigned short {
        ErrorUnexpectedElement = 141,
        ErrorUnknownDialParameters = 142,
    };

    static CAdvAnlzATCommandSpec* GetInstance();
    static void KillInstance();
    ~CAdvAnlzATCommandSpec() override = default;

    // Decodes the lines of one payload; 1 for any payload that is not empty,
    // whatever the check finds.
    int InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int nReserved) override;
    const SSpecFieldAttr* GetDefaultFieldAttr(unsigned short nId) const override;
    unsigned short GetNumberOfLayerFields() const override { return kFieldCount; }
    unsigned short GetLayerFieldId(int nIndex) const override { return ms_table.LayerFieldId(nIndex); }
    CString GetLayerFieldName(unsigned short nId) override { return ms_table.LayerFieldName(nId); }

    // Error 141 for every element that is not a prefix, the one body behind
    // it (with its dial parameters), a response, a CR or an LF; 142 for dial
    // parameters that were not understood. Returns the count of findings.
    unsigned char CheckProtocol(CATCommandPacket& packet) const;

    // The format codes, in the order they were added; the count as 8 bits.
    unsigned char GetAvailableATFormats(CWordArray& aCodes) const;
    // The name of a format code; empty for a code without one.
    CString GetATFormatName(unsigned short nCode) const;

    // The row tables (public for the catalogue test).
    static const SATTextRow ms_aPrefixRows[3];
    static const SATTextRow ms_aBodyRows[267];
    static const SATTextRow ms_aDialRows[10];
    static const SATTextRow ms_aResponseRows[15];
    static const SATTextRow ms_aHandsFreeRows[38];
    // The row number of a body, response or hands-free command's format code.
    static unsigned short RowOfFormat(unsigned short nCode) noexcept;

private:
    friend class CFieldCursor<CAdvAnlzATCommandSpec, CATCommandPacket>;

    // The command categories, by the first character of a body.
    enum EATCategory {
        CategoryA,  // '&'
        CategoryB,  // '\'
        CategoryC,  // '%'
        CategoryD,  // a letter
        CategoryE,  // '"', ')', '*', '-', ':', '@'
    };

    CAdvAnlzATCommandSpec();
    void InitOptions();
    void InitFormat();
    int AddATFormat(unsigned short nCode, const CString& strName);
    void AddTextOptions(unsigned short nFieldId, const SATTextRow* pRows, std::size_t nRows, unsigned short nRowBias);

    // Adds the next dwLength bits (exactly, 0 included) as field nId at its
    // place in the payload, and counts it: "AT Command Responses" as a
    // response field, every other field as a request field.
    unsigned long ReadField(const CAdvAnlzData& data, CATCommandPacket& packet, unsigned short nId,
                            CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength);
    // Adds a value at an explicit bit offset of the payload, counted as a
    // request field.
    void AddTextAt(CATCommandPacket& packet, unsigned short nId, const CAdvAnlzData& value, std::uint32_t dwOffset);

    // The prefixes "AT", "A/" and "+++": each takes its default width.
    unsigned long ReadElementPerefixAT(CATReader& reader);
    unsigned long ReadElementPerefixRepeatLastCommand(CATReader& reader);
    unsigned long ReadElementPerefixSwitchToCommandMode(CATReader& reader);

    // What follows "AT": the command line up to and including its first CR,
    // or, with no CR behind at least one character, an unknown command that
    // takes all the rest.
    unsigned long ReadCommandBody(CATReader& reader);
    // All of the next dwBits bits as one unknown command.
    unsigned long ReadUnKnownBody(CATReader& reader, std::uint32_t dwBits);
    // The elements of one command line of dwLine bits (its CR last).
    void InterperetCommandBody(CATReader& reader, std::uint32_t dwLine);
    // One element of a category from the front of the line's dwLeft bits.
    unsigned long InterperetCommandBodyCategory(CATReader& reader, std::uint32_t dwLeft, EATCategory eCategory);
    unsigned long InterperetCommandBodyHandsFreeAndHeadset(CATReader& reader, std::uint32_t dwLeft);
    unsigned long InterperetDialCommandParameters(CATReader& reader, std::uint32_t dwLeft);
    // The response lines: all that is left of the payload, from a CR LF on.
    unsigned long InterpretResponseBody(CATReader& reader);

    // Whether the next field of a prefix is its one body (and dial string);
    // gives the position of the last field that belongs to the command.
    int CheckProtocolCompleteOneAtCommand(const CATCommandPacket& packet, int nPosition) const;

    // The body row that matches the longest text at the front of the line
    // (letters in either case), or null. At most three characters are looked
    // at.
    const SATTextRow* MatchBodyRow(const std::uint8_t* pFront, std::uint32_t nLeftBytes) const;
    // The payload's bytes from the walk's position on. Three zero bytes
    // follow the payload, so that a look at the next few never runs past it.
    const std::uint8_t* Front(const CATReader& reader) const noexcept
    {
        return m_aBytes.data() + reader.Consumed() / 8;
    }
    // Records a recognised element in the command list and as the format.
    void NameElement(CATCommandPacket& packet, unsigned short nRow, unsigned short nCode);

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
    static CAdvAnlzATCommandSpec* ms_pInstance;

    // Per-packet state, reset at the start of every decode.
    int m_bMultipleElements = 0;
    unsigned short m_wATFormat = FormatNone;
    unsigned char m_nRequestFields = 0;
    unsigned char m_nResponseFields = 0;
    std::uint32_t m_dwPayloadBits = 0;  // length of the payload being decoded
    std::vector<std::uint8_t> m_aBytes; // its bytes, for looking at characters

    // The format codes in the order they were added, and their names by code.
    CWordArray m_awATFormats;
    CStringArray m_astrATFormatNames;
    // Body rows by their upper-case text, for the category lookup.
    std::vector<std::pair<std::uint32_t, const SATTextRow*>> m_aBodyIndex;
};

class CATCommandPacket : public CReqRespProtocolPacket {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CATCommandPacket)

public:
    CATCommandPacket();
    explicit CATCommandPacket(const CAdvAnlzData& data);
    explicit CATCommandPacket(const CByteArray& aBytes);
    // Gives an empty packet bound to the decoder: the source is not copied.
    CATCommandPacket(const CATCommandPacket& other);
    // Takes the fields, the decoder and the format code; the command list and
    // the names stay empty.
    CATCommandPacket& operator=(const CATCommandPacket& other);
    ~CATCommandPacket() override = default;

    unsigned long SetFieldData(unsigned char nIndex, const CAdvAnlzData& value) override
    {
        return CProtocolPacket::SetFieldData(nIndex, value);
    }

    void SetATPacketFormat(unsigned short wFormat) noexcept { m_wATPacketFormat = wFormat; }
    unsigned short GetATPacketFormat() const noexcept { return m_wATPacketFormat; }
    // The name of the packet's format code, from the decoder.
    CString GetATFormatName() const;

    void AddElementToList(unsigned short wElement) { m_awCommandList.Add(wElement); }
    void CleanListElement() noexcept { m_awCommandList.RemoveAll(); }
    void ListSetSize() { m_awCommandList.SetSize(1000); }
    // Appends the recognised elements, in order, to aList (not emptied).
    void GetCommandList(CWordArray& aList) const { aList.Append(m_awCommandList); }

protected:
    void SerializeMembers(CArchive& ar) override;

private:
    CWordArray m_awCommandList;
    unsigned short m_wATPacketFormat = CAdvAnlzATCommandSpec::FormatNone;
};
