// The three readers of the AT decoder that do not work from the category
// tables: the modem's response lines, the dial string behind 'D', and the
// commands that begin with '+', which are compared as whole strings. With
// them, the tables of responses, dial characters and '+' commands.
#include <algorithm>
#include <cstring>

#include "serial/ATCommand.h"

using Spec = CAdvAnlzATCommandSpec;

// Dial modifiers, by row (271 to 280).
const SATTextRow Spec::ms_aDialRows[10] = {
    {271, "L", "Redial the last dialed number"},
    {272, "P", "Pulse dial"},
    {273, "R", "Enable answer mode"},
    {274, "S", "Dial the stored telephon number in X"},
    {275, "=", "Sign : ="},
    {276, "T", "Tone dial"},
    {277, "W", "Resume dialing after dial tone is detected"},
    {278, ",", "Pause befor dial"},
    {279, "!", "Enable flash"},
    {280, "@", "Modem will wait for a quiet answer befor dialing the rest of the dial string"},
};

// Responses by format code (267 to 281). "OK" is stored with its bytes the
// other way round, so that the text "OK" does not take its name; "NO CARRIER"
// and "NO DIALTONE" are recognised but have no named value.
const SATTextRow Spec::ms_aResponseRows[15] = {
    {267, "OK", "At Command Response - OK", "At Command Response : OK", 0x4F4B, 16},
    {268, "ERROR", "At Command Response - ERROR", "At Command Response : ERROR"},
    {269, "RING", "At Command Response - RING", "At Command Response : RING"},
    {270, "+CIEV:", "At Command Response - CIEV", "At Command Response : +CIEV :"},
    {271, "+BINP:", "At Command Response - BINP", "At Command Response : +BINP :"},
    {272, "+CLIP:", "At Command Response - CLIP", "At Command Response : +CLIP :"},
    {273, "+BVRA:", "At Command Response - BVRA", "At Command Response : +BVRA :"},
    {274, "+VGM:", "At Command Response - VGM", "At Command Response : +VGM :"},
    {275, "+VGS:", "At Command Response - VGS", "At Command Response : +VGS :"},
    {276, "+BSIR:", "At Command Response - BSIR", "At Command Response : +BSIR :"},
    {277, "+CCWA:", "At Command Response - CCWA", "At Command Response : +CCWA :"},
    {278, "CONNECT", "At Command Response - CONNECT"},
    {279, "BUSY", "At Command Response - BUSY"},
    {280, "NO CARRIER", nullptr},
    {281, "NO DIALTONE", nullptr},
};

// The '+' commands by format code (282 to 319): hands-free and headset
// control, identification, and fax. "+FDR" carries the value of "+DR".
const SATTextRow Spec::ms_aHandsFreeRows[38] = {
    {282, "+CHLD", "Hands_Free & Headset At Command : +CHLD"},
    {283, "+CHLD=?", "Hands_Free & Headset At Command : +CHLD=?"},
    {284, "+CHUP", "Hands_Free & Headset At Command : +CHUP"},
    {285, "+CHUP=?", "Hands_Free & Headset At Command : +CHUP=?"},
    {286, "+CLIP", "Hands_Free & Headset At Command : +CLIP"},
    {287, "+CLIP=?", "Hands_Free & Headset At Command : +CLIP=?"},
    {288, "+CLIP?", "Hands_Free & Headset At Command : +CLIP?"},
    {289, "+CMER", "Hands_Free & Headset At Command : +CMER"},
    {290, "+CMER=?", "Hands_Free & Headset At Command : +CMER=?"},
    {291, "+CMER?", "Hands_Free & Headset At Command : CMER?", "Hands_Free & Headset At Command : +CMER?"},
    {292, "+BINP", "Hands_Free & Headset At Command : BINP", "Hands_Free & Headset At Command : +BINP"},
    {293, "+BINP=?", "Hands_Free & Headset At Command : BINP=?", "Hands_Free & Headset At Command : +BINP=?"},
    {294, "+BINP?", "Hands_Free & Headset At Command : BINP?", "Hands_Free & Headset At Command : +BINP?"},
    {295, "+NREC", "Hands_Free & Headset At Command : NREC", "Hands_Free & Headset At Command : +NREC"},
    {296, "+NREC=?", "Hands_Free & Headset At Command : NREC=?", "Hands_Free & Headset At Command : +NREC=?"},
    {297, "+NREC?", "Hands_Free & Headset At Command : NREC?", "Hands_Free & Headset At Command : +NREC?"},
    {298, "+VGM", "Hands_Free & Headset At Command : VGM", "Hands_Free & Headset At Command : +VGM"},
    {299, "+VGM=?", "Hands_Free & Headset At Command : VGM=?", "Hands_Free & Headset At Command : +VGM=?"},
    {300, "+VGM?", "Hands_Free & Headset At Command : VGM?", "Hands_Free & Headset At Command : +VGM?"},
    {301, "+VGS", "Hands_Free & Headset At Command : VGS", "Hands_Free & Headset At Command : +VGS"},
    {302, "+VGS=?", "Hands_Free & Headset At Command : VGS=?", "Hands_Free & Headset At Command : +VGS=?"},
    {303, "+VGS?", "Hands_Free & Headset At Command : VGS?", "Hands_Free & Headset At Command : +VGS?"},
    {304, "+CCWA", "Hands_Free & Headset At Command : CCWA", "Hands_Free & Headset At Command : +CCWA"},
    {305, "+CCWA=?", "Hands_Free & Headset At Command : CCWA=?", "Hands_Free & Headset At Command : +CCWA=?"},
    {306, "+CCWA?", "Hands_Free & Headset At Command : CCWA?", "Hands_Free & Headset At Command : +CCWA?"},
    {307, "+GCAP", "Request Complete Capabilities List : +GCAP"},
    {308, "+GMI", "Request Manufacture Identification : +GMI"},
    {309, "+GMM", "Request Model Identification : +GMM"},
    {310, "+GMR", "Request Request Identification : +GMR"},
    {311, "+FTS", "FAX AT Command : +FTS : Stop transmission and pause"},
    {312, "+FRS", "FAX AT Command : +FRS : Wait for silence"},
    {313, "+FTM", "FAX AT Command : +FTM : Transmit data with <MOD> carrier"},
    {314, "+FRM", "FAX AT Command : +FRM : Receive data with <MOD> carrier"},
    {315, "+FTH", "FAX AT Command : +FTH : Transmit HDLC data with <MOD> carrier"},
    {316, "+FRH", "FAX AT Command : +FRH : Receive HDLC data with <MOD> carrier"},
    {317, "+FDT", "FAX AT Command : +FDT : Data Transmission command"},
    {318, "+FDR", "FAX AT Command : +FDR : Data Reception command", nullptr, 0x52442B, 32},
    {319, "+FKS", "FAX AT Command : +FKS : Session Termination command"},
};

namespace {

// The forms in which a '+' command is accepted, behind the command itself.
enum : unsigned {
    FormBare = 1,         // nothing
    FormTest = 2,         // "=?"
    FormRead = 4,         // "?"
    FormSetAny = 8,       // "=" with anything or nothing behind it
    FormSet0To4 = 16,     // "=0" to "=4"
    FormSet0 = 32,        // "=0"
    FormUpperCaseOnly = 64,  // the lower-case twin is not accepted
};

struct SPlusCommand {
    const char* pszCommand;
    unsigned nForms;
};

constexpr unsigned kQueryAndSet = FormBare | FormTest | FormRead | FormSetAny;
constexpr unsigned kBareUpperCase = FormBare | FormUpperCaseOnly;

constexpr SPlusCommand kPlusCommands[] = {
    {"+CHLD", FormBare | FormTest | FormSet0To4},
    {"+CHUP", FormBare | FormTest},
    {"+CLIP", kQueryAndSet},
    {"+CMER", kQueryAndSet},
    {"+BINP", kQueryAndSet},
    {"+CCWA", kQueryAndSet},
    {"+VGM", kQueryAndSet},
    {"+VGS", kQueryAndSet},
    {"+NREC", FormBare | FormTest | FormRead | FormSet0},
    {"+GCAP", kBareUpperCase},
    {"+GMI", kBareUpperCase},
    {"+GMM", kBareUpperCase},
    {"+GMR", kBareUpperCase},
    {"+FTS", kBareUpperCase},
    {"+FRS", kBareUpperCase},
    {"+FTM", kBareUpperCase},
    {"+FRM", kBareUpperCase},
    {"+FTH", kBareUpperCase},
    {"+FRH", kBareUpperCase},
    {"+FDT", kBareUpperCase},
    {"+FDR", kBareUpperCase},
    {"+FKS", kBareUpperCase},
};

// Response texts that are understood: by their first six or five characters
// (a value follows the colon), or as the whole line.
constexpr const char* kResponsePrefixes[] = {
    "+CCWA:", "+ccwa:", "+CLIP:", "+clip:", "+CIEV:", "+ciev:", "+BINP:", "+binp:",
    "+BVRA:", "+bvra:", "+BSIR:", "+bsir:", "+VGM:",  "+vgm:",  "+VGS:",  "+vgs:",
};
constexpr const char* kResponseWords[] = {"OK", "ERROR", "RING", "CONNECT", "BUSY", "NO CARRIER", "NO DIALTONE"};

std::uint8_t ToLower(std::uint8_t c) noexcept
{
    return (c >= 'A' && c <= 'Z') ? static_cast<std::uint8_t>(c - 'A' + 'a') : c;
}

// Whether the first nLength bytes are the characters of pszText, each passed
// through fold first.
template <class TFold>
bool BytesAre(const std::uint8_t* p, std::uint32_t nLength, const char* pszText, TFold fold)
{
    for (std::uint32_t i = 0; i < nLength; ++i)
        if (pszText[i] == '\0' || p[i] != fold(static_cast<std::uint8_t>(pszText[i])))
            return false;
    return true;
}

bool BytesAre(const std::uint8_t* p, std::uint32_t nLength, const char* pszText)
{
    return BytesAre(p, nLength, pszText, [](std::uint8_t c) { return c; });
}

// Whether the first nText bytes are exactly pszText.
bool TextIs(const std::uint8_t* p, std::uint32_t nText, const char* pszText)
{
    return std::strlen(pszText) == nText && BytesAre(p, nText, pszText);
}

// Whether a '+' command line's text (its CR left out) is one of the accepted
// forms; bBareUpperCase tells whether it is a bare command in upper case.
const SPlusCommand* AcceptPlusCommand(const std::uint8_t* p, std::uint32_t nText, bool& bBareUpperCase)
{
    bBareUpperCase = false;
    for (const SPlusCommand& command : kPlusCommands) {
        const std::uint32_t n = static_cast<std::uint32_t>(std::strlen(command.pszCommand));
        if (nText < n)
            continue;
        const bool bUpper = BytesAre(p, n, command.pszCommand);
        const bool bLower = !bUpper && !(command.nForms & FormUpperCaseOnly) && BytesAre(p, n, command.pszCommand, ToLower);
        if (!bUpper && !bLower)
            continue;
        const std::uint32_t nRest = nText - n;
        const std::uint8_t c0 = nRest > 0 ? p[n] : 0, c1 = nRest > 1 ? p[n + 1] : 0;
        bool bAccepted = false;
        if (nRest == 0)
            bAccepted = (command.nForms & FormBare) != 0;
        else if (c0 == '=' && (command.nForms & FormSetAny))
            bAccepted = true;
        else if (nRest == 2 && c0 == '=' && c1 == '?')
            bAccepted = (command.nForms & FormTest) != 0;
        else if (nRest == 1 && c0 == '?')
            bAccepted = (command.nForms & FormRead) != 0;
        else if (nRest == 2 && c0 == '=' && c1 >= '0' && c1 <= '4')
            bAccepted = (command.nForms & FormSet0To4) || ((command.nForms & FormSet0) && c1 == '0');
        bBareUpperCase = bAccepted && nRest == 0 && bUpper;
        return bAccepted ? &command : nullptr;
    }
    return nullptr;
}

bool IsDialCharacter(std::uint8_t c) noexcept
{
    if (c >= '0' && c <= '9')
        return true;
    return c != '\0' && std::strchr("!,=@LPRSTWlprstw", c) != nullptr;
}

}  // namespace

unsigned long CAdvAnlzATCommandSpec::InterperetCommandBodyHandsFreeAndHeadset(CATReader& reader,
                                                                              std::uint32_t dwLeft)
{
    const std::uint32_t nLine = dwLeft / 8;
    const std::uint32_t nText = nLine > 0 ? nLine - 1 : 0;
    bool bBareUpperCase = false;
    const SPlusCommand* pCommand = AcceptPlusCommand(Front(reader), nText, bBareUpperCase);
    if (!pCommand)
        return ReadUnKnownBody(reader, dwLeft);

    reader.Read(FieldCommandBody, nText * 8);
    // Only the bare command in upper case names the element; "+CHLD=?" and
    // the like are named for display only.
    if (bBareUpperCase) {
        for (const SATTextRow& row : ms_aHandsFreeRows) {
            if (std::strcmp(row.pszText, pCommand->pszCommand) == 0) {
                NameElement(reader.Packet(), RowOfFormat(row.nCode), row.nCode);
                break;
            }
        }
    }
    reader.Read(FieldCarriageReturn, 8);
    return dwLeft;
}

unsigned long CAdvAnlzATCommandSpec::InterperetDialCommandParameters(CATReader& reader, std::uint32_t dwLeft)
{
    CATCommandPacket& packet = reader.Packet();
    reader.Read(FieldCommandBody, 8);
    NameElement(packet, RowOfFormat(FormatDial), FormatDial);
    const CAdvAnlzData& w = reader.Data();
    const std::uint8_t* p = Front(reader);
    const std::uint32_t nBytes = dwLeft / 8 > 0 ? dwLeft / 8 - 1 : 0;  // behind the 'D', the CR included
    if (nBytes == 0)
        return 8;

    if (p[0] == kCR) {
        // No number: the CR stands as the dial string and as the line's end.
        AddTextAt(packet, FieldDialParameters, w.GetBits(0, 8), m_dwPayloadBits - w.GetLength());
        reader.Read(FieldCarriageReturn, 8);
        return dwLeft;
    }
    bool bUnderstood = true;
    for (std::uint32_t i = 0; i < nBytes; ++i) {
        const std::uint8_t c = p[i];
        if (c == kCR || IsDialCharacter(c))
            continue;
        if (c == '"') {
            // Quoted text is taken as it stands when the quotes pair up to
            // the end of the line.
            std::uint32_t nQuotes = 0;
            for (std::uint32_t j = i; j < nBytes; ++j)
                nQuotes += p[j] == '"' ? 1 : 0;
            bUnderstood = nQuotes % 2 == 0;
        } else {
            bUnderstood = false;
        }
        break;
    }
    if (!bUnderstood) {
        // The rest of the line, CR included, is one field that is not read
        // further.
        reader.Read(FieldUnknownDialParameters, nBytes * 8);
        return dwLeft;
    }
    const std::uint32_t nDial = p[nBytes - 1] == kCR ? nBytes - 1 : nBytes;
    reader.Read(FieldDialParameters, nDial * 8);
    return 8 + nDial * 8;
}

unsigned long CAdvAnlzATCommandSpec::InterpretResponseBody(CATReader& reader)
{
    CATCommandPacket& packet = reader.Packet();
    const unsigned long dwStart = reader.Consumed();
    const std::uint32_t dwExtra = reader.Data().GetLength() % 8;  // bits of a last partial byte
    reader.Read(FieldCarriageReturn, 8);
    reader.Read(FieldLineFeed, 8);

    // What is not understood, up to the end of the payload, is one field.
    const auto readUnexpected = [&]() {
        reader.Read(FieldUnexpectedResponses, reader.Data().GetLength());
        packet.AddElementToList(FieldUnexpectedResponses);
        m_wATFormat = FormatUnknownResponse;
    };

    const CAdvAnlzData& w = reader.Data();
    const std::uint8_t* p = Front(reader);
    const std::uint32_t nBytes = w.GetLength() / 8;
    std::uint32_t nText = 0;
    while (nText < nBytes && p[nText] != kCR)
        ++nText;
    const bool bEndOfLine = nText < nBytes;
    if (bEndOfLine && !(nText + 1 < nBytes && p[nText + 1] == kLF)) {
        // A CR without its LF: the line and the character behind the CR are
        // passed over, and only what follows them is kept.
        reader.Drop(std::min<std::uint32_t>((nText + 2) * 8, w.GetLength()));
        readUnexpected();
        return reader.Consumed() - dwStart;
    }

    bool bUnderstood = false;
    if (bEndOfLine) {
        for (const char* pszPrefix : kResponsePrefixes) {
            const std::uint32_t n = static_cast<std::uint32_t>(std::strlen(pszPrefix));
            bUnderstood = bUnderstood || (nText >= n && BytesAre(p, n, pszPrefix));
        }
        for (const char* pszWord : kResponseWords)
            bUnderstood = bUnderstood || TextIs(p, nText, pszWord);
    }
    if (!bUnderstood) {
        readUnexpected();
        return reader.Consumed() - dwStart;
    }

    // Only a response that is exactly the text of a row names the element:
    // "+CIEV: 1,1" is shown but changes neither the list nor the format.
    const SATTextRow* pRow = nullptr;
    for (const SATTextRow& row : ms_aResponseRows)
        if (!pRow && TextIs(p, nText, row.pszText))
            pRow = &row;
    reader.Read(FieldResponse, nText * 8);
    if (pRow)
        NameElement(packet, RowOfFormat(pRow->nCode), pRow->nCode);
    reader.Read(FieldCarriageReturn, 8);
    reader.Read(FieldLineFeed, 8);

    // Only the first line is understood. The bits of a partial last byte
    // come first, then all the lines behind the first, as one field each.
    if (dwExtra != 0) {
        const CAdvAnlzData& rest = reader.Data();
        AddTextAt(packet, FieldUnexpectedResponses, rest.GetBits(rest.GetLength() - dwExtra, dwExtra),
                  m_dwPayloadBits - dwExtra);
        packet.AddElementToList(FieldUnexpectedResponses);
        m_wATFormat = FormatUnknownResponse;
    }
    const std::uint32_t dwTail = reader.Data().GetLength() - dwExtra;
    if (dwTail != 0) {
        reader.Read(FieldUnexpectedResponses, dwTail);
        packet.AddElementToList(FieldUnexpectedResponses);
        m_wATFormat = FormatUnknownResponse;
    }
    reader.Drop(dwExtra);
    return reader.Consumed() - dwStart;
}
