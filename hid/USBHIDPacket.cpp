// The HID packet: its selector, the release of the decoders it binds to, and
// the report item list of a report descriptor.
#include "hid/USBHIDPacket.h"

#include <cstdint>
#include <string>
#include <utility>

#include "hid/USBHIDDecoder.h"
#include "hid/USBHIDPhysicalSpec.h"
#include "hid/USBHIDReportSpec.h"
#include "hid/USBHIDRequestSpec.h"
#include "hid/USBHIDSpec.h"

const CRuntimeClass CUSBHIDPacket::classCUSBHIDPacket = {
    "CUSBHIDPacket", static_cast<int>(sizeof(CUSBHIDPacket)), &CReqRespProtocolPacket::classCReqRespProtocolPacket};

const CRuntimeClass* CUSBHIDPacket::_GetBaseClass()
{
    return &CReqRespProtocolPacket::classCReqRespProtocolPacket;
}

// ------------------------------------------------------------ construction

CUSBHIDPacket::CUSBHIDPacket() : CUSBHIDPacket(SelectorHIDDescriptor) {}

CUSBHIDPacket::CUSBHIDPacket(int nHIDSpec)
{
    SetHIDSpec(nHIDSpec);
}

CUSBHIDPacket::CUSBHIDPacket(int nHIDSpec, const CAdvAnlzData& data) : CUSBHIDPacket(nHIDSpec)
{
    RestructBy(data);
}

CUSBHIDPacket::CUSBHIDPacket(int nHIDSpec, const CByteArray& aBytes) : CUSBHIDPacket(nHIDSpec)
{
    RestructBy(CAdvAnlzData(aBytes));
}

CUSBHIDPacket::CUSBHIDPacket(const CUSBHIDPacket& other) : CReqRespProtocolPacket()
{
    SetHIDSpec(other.m_nHIDSpec);
    *this = other;
}

CUSBHIDPacket& CUSBHIDPacket::operator=(const CUSBHIDPacket& other)
{
    if (this == &other)
        return *this;
    // The fields copied point at the source's decoder, so the target is
    // bound to it before the decoder it leaves may go.
    CUSBHIDDecoder* pOld = dynamic_cast<CUSBHIDDecoder*>(m_pSpec);
    CUSBHIDDecoder* pNew = dynamic_cast<CUSBHIDDecoder*>(other.m_pSpec);
    if (pNew && pNew != pOld)
        pNew->AttachPacket();
    CReqRespProtocolPacket::operator=(other);
    if (pOld && pOld != pNew)
        pOld->DetachPacket();
    m_aReportItems.clear();
    m_nCollectionDepth = 0;
    return *this;
}

CUSBHIDPacket::~CUSBHIDPacket()
{
    CProtocolPacket::Clean();
    Bind(nullptr);
}

void CUSBHIDPacket::Bind(CProtocolSpec* pSpec)
{
    if (pSpec == m_pSpec)
        return;
    CUSBHIDDecoder* pOld = dynamic_cast<CUSBHIDDecoder*>(m_pSpec);
    if (CUSBHIDDecoder* pNew = dynamic_cast<CUSBHIDDecoder*>(pSpec))
        pNew->AttachPacket();
    m_pSpec = pSpec;
    if (pOld)
        pOld->DetachPacket();
}

int CUSBHIDPacket::SetHIDSpec(int nHIDSpec)
{
    m_nHIDSpec = nHIDSpec;
    CProtocolSpec* pSpec = nullptr;
    switch (nHIDSpec) {
    case SelectorRequest:
        pSpec = CUSBHIDRequestSpec::GetInstance();
        break;
    case SelectorHIDDescriptor:
        pSpec = CUSBHIDSpec::GetInstance();
        break;
    case SelectorReportDescriptor:
        pSpec = CUSBHIDReportSpec::GetInstance();
        break;
    case SelectorPhysicalDescriptor:
        pSpec = CUSBHIDPhysicalSpec::GetInstance();
        break;
    default:
        return nHIDSpec;
    }
    if (pSpec != m_pSpec) {
        Clean();
        m_aReportItems.clear();
        m_nCollectionDepth = 0;
        Bind(pSpec);
    }
    return nHIDSpec;
}

// ------------------------------------------------------------------ decode

int CUSBHIDPacket::RestructBy(const CAdvAnlzData& data)
{
    const CAdvAnlzData copy(data);
    m_aReportItems.clear();
    m_nCollectionDepth = 0;
    const int nResult = CReqRespProtocolPacket::RestructBy(copy);
    if (m_nHIDSpec != SelectorReportDescriptor)
        return nResult;

    // A descriptor that starts with a long item gets no item list.
    CAdvAnlzData size, type, tag;
    GetFieldData(1, size);
    GetFieldData(2, type);
    GetFieldData(3, tag);
    if (static_cast<std::uint8_t>(size) == CUSBHIDReportSpec::LongItemSize &&
        static_cast<std::uint8_t>(type) == CUSBHIDReportSpec::TypeReserved &&
        static_cast<std::uint8_t>(tag) == CUSBHIDReportSpec::LongItemTag)
        return nResult;
    m_byPacketFormat = SelectorReportDescriptor;
    InterpretReportPacket();
    return nResult;
}

// --------------------------------------------------------- report item list

namespace {

using Report = CUSBHIDReportSpec;

// One more level of collection nesting in an item line.
constexpr std::size_t kIndentStep = 3;

// The words of the bits of an Input, Output or Feature item, for 0 and 1.
struct SFlagWords {
    const char* pszClear;
    const char* pszSet;
};
const SFlagWords kMainFlags[] = {
    {"Data", "Constant"},
    {"Array", "Variable"},
    {"Absolute", "Relative"},
    {"No Wrap", "Wrap"},
    {"Linear", "Non Linear"},
    {"Preferred", "No Preferred"},
    {"No Null Position", "Null State"},
    {"Non Volatile", "Volatile"},
    {"Bit Field", "Buffered Bytes"},
};
constexpr std::uint32_t kVolatileBit = 7;

const char* const kCollectionTypes[] = {"Physical",    "Application",  "Logical",       "Report",
                                        "Named Array", "Usage Switch", "Usage Modifier"};

// How an item's line goes on behind its name: by the tag's abbreviation.
enum EItemRule { RuleNumber, RuleSignedNumber, RuleEndCollection, RuleMainFlags, RuleCollection, RuleUsage };

EItemRule RuleOf(const CString& strName)
{
    if (strName == "End Collection")
        return RuleEndCollection;
    if (strName == "Input" || strName == "Output" || strName == "Feature")
        return RuleMainFlags;
    if (strName == "Collection")
        return RuleCollection;
    if (strName == "Usage Page" || strName == "Usage")
        return RuleUsage;
    if (strName == "Logical Minimum" || strName == "Logical Maximum")
        return RuleSignedNumber;
    return RuleNumber;
}

}  // namespace

int CUSBHIDPacket::InterpretReportPacket()
{
    m_aReportItems.clear();
    m_nCollectionDepth = 0;
    if (!dynamic_cast<const CUSBHIDReportSpec*>(m_pSpec))
        return 0;

    const int nFields = GetFieldCount();
    const CAdvAnlzData empty;
    std::string strIndent;
    std::string strLine;
    bool bOpened = false;
    int i = 1;
    while (i < nFields) {
        // A collection opened by the line before indents this line and the
        // following ones, one step per open collection.
        if (bOpened) {
            if (m_nCollectionDepth > 0)
                strIndent.append(kIndentStep * static_cast<std::size_t>(m_nCollectionDepth), ' ');
            bOpened = false;
        }

        // The item runs up to the next bSize; the leftover of a descriptor
        // longer than a packet is not an item.
        int nEnd = i + 1;
        unsigned short nId = 0;
        while (nEnd <= nFields && (nId = GetFieldId(static_cast<unsigned char>(nEnd))) != Report::FieldSize &&
               nId != Report::FieldUnexpected)
            ++nEnd;
        auto Value = [&](int nIndex) -> const CAdvAnlzData& {
            const CAdvAnlzData* p = nIndex < nEnd ? GetFieldValue(static_cast<unsigned char>(nIndex)) : nullptr;
            return p ? *p : empty;
        };

        // The prefix byte as the descriptor had it, and the item's data: the
        // fields behind the prefix joined (two for a four-byte Global item,
        // bDataSize, tag and data for a long one).
        CAdvAnlzData prefix = Value(i);
        prefix += Value(i + 1);
        prefix += Value(i + 2);
        CAdvAnlzData data = Value(i + 3);
        for (int k = i + 4; k < nEnd; ++k)
            data += Value(k);
        const std::uint8_t nSize = Value(i);
        const std::uint8_t nType = Value(i + 1);
        const std::uint8_t nTag = Value(i + 2);
        const std::uint32_t nData = static_cast<std::uint32_t>(data.GetNumber64());

        unsigned long dwLength = 0;
        CString strName = i + 2 < nEnd ? GetFieldBriefPattern(static_cast<unsigned char>(i + 2), 6, dwLength,
                                                              PacketSideWhole, DisplayDecimal, 0)
                                       : CString();
        // A tag without a name (reserved types and tags) shows as Reserved
        // with its data as a number.
        if (strName.IsEmpty())
            strName = "Reserved";
        const EItemRule eRule = RuleOf(strName);
        if (eRule == RuleEndCollection) {
            // Two steps come off while one level closes, so nested lines
            // indent deeper on the way in than on the way out; the line itself
            // stands at the reduced indentation.
            --m_nCollectionDepth;
            strIndent.resize(strIndent.size() > 2 * kIndentStep ? strIndent.size() - 2 * kIndentStep : 0);
        }
        strLine.assign(strIndent);
        if (nType == Report::TypeReserved && nSize == Report::LongItemSize && nTag == Report::LongItemTag) {
            // A long item, which ends the descriptor: its tag.
            strLine += "Long Item(" + std::to_string(static_cast<std::uint8_t>(Value(i + 4))) + ")";
        } else {
            strLine.append(strName.GetString(), static_cast<std::size_t>(strName.GetLength()));
            switch (eRule) {
            case RuleEndCollection:
                break;
            case RuleMainFlags: {
                const bool bInput = strName == "Input";
                strLine += '(';
                for (std::uint32_t b = 0; b < sizeof kMainFlags / sizeof kMainFlags[0]; ++b) {
                    if (b == kVolatileBit && bInput)
                        continue;
                    if (b != 0)
                        strLine += ',';
                    strLine += data.GetBit(b) ? kMainFlags[b].pszSet : kMainFlags[b].pszClear;
                }
                strLine += ')';
                break;
            }
            case RuleCollection: {
                const unsigned nKind = nData & 0xFFu;
                strLine += '(';
                strLine += nKind < sizeof kCollectionTypes / sizeof kCollectionTypes[0] ? kCollectionTypes[nKind]
                                                                                       : "Reserved";
                strLine += ')';
                ++m_nCollectionDepth;
                bOpened = true;
                break;
            }
            case RuleUsage: {
                // The page's or the usage's name; a value without one shows as
                // a number.
                const CString strUsage = i + 3 < nEnd ? GetFieldBriefPattern(static_cast<unsigned char>(i + 3), 6,
                                                                             dwLength, PacketSideWhole,
                                                                             DisplayDecimal, 0)
                                                      : CString();
                strLine += '(';
                if (strUsage.IsEmpty())
                    strLine += std::to_string(nData);
                else
                    strLine.append(strUsage.GetString(), static_cast<std::size_t>(strUsage.GetLength()));
                strLine += ')';
                break;
            }
            case RuleSignedNumber:
            case RuleNumber: {
                // Every other item shows its data as a number; the logical
                // limits are signed in the item's width.
                const unsigned nWidth = nSize == 3 ? 4 : nSize;
                long long n = nData;
                if (eRule == RuleSignedNumber && nWidth > 0 && ((nData >> (8 * nWidth - 1)) & 1u))
                    n -= 1ll << (8 * nWidth);
                strLine += '(' + std::to_string(n) + ')';
                break;
            }
            }
        }

        data += prefix;
        m_aReportItems.push_back(SReportItem{CString(strLine), std::move(data)});
        i = nEnd;
        if (nEnd <= nFields && GetFieldId(static_cast<unsigned char>(nEnd)) == Report::FieldUnexpected)
            break;
    }
    return static_cast<int>(m_aReportItems.size());
}

int CUSBHIDPacket::GetNumberOfReportItems() const
{
    return m_nHIDSpec == SelectorReportDescriptor ? static_cast<int>(m_aReportItems.size()) : -1;
}

CString CUSBHIDPacket::GetReportItem(int nIndex) const
{
    if (m_nHIDSpec != SelectorReportDescriptor || nIndex < 0 || nIndex >= static_cast<int>(m_aReportItems.size()))
        return CString();
    return m_aReportItems[static_cast<std::size_t>(nIndex)].strText;
}

CAdvAnlzData CUSBHIDPacket::GetReportValue(int nIndex) const
{
    if (m_nHIDSpec != SelectorReportDescriptor || nIndex < 0 || nIndex >= static_cast<int>(m_aReportItems.size()))
        return CAdvAnlzData(0, 64);
    return m_aReportItems[static_cast<std::size_t>(nIndex)].value;
}
