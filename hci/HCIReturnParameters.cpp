// The Command Complete event behind its header: the command credits, the
// opcode of the command that completed, and that command's return
// parameters from its group's table. The format is found from the opcode in
// the event alone: no earlier command is remembered.
#include <string>

#include "hci/HCIEventTable.h"
#include "hci/HCIReader.h"
#include "hci/HCIReturnTable.h"

namespace {

const SHCIReturnGroup* const kReturnGroups[] = {
    &kHCILinkControlReturns, &kHCILinkPolicyReturns, &kHCIHostControllerReturns,
    &kHCIInformationReturns, &kHCIStatusReturns,     &kHCITestingReturns,
};

constexpr unsigned short kFirstReturnId = HCIReturn::InqueryCancelStatus;
constexpr unsigned short kLastReturnId = HCIReturn::EnableDeviceUnderTestModeStatus;

// A status field's abbreviation ends in "Status".
bool IsStatusAbbr(const CString& strAbbr)
{
    static const char kStatus[] = "Status";
    const int nSuffix = static_cast<int>(sizeof kStatus - 1);
    return strAbbr.GetLength() >= nSuffix && strAbbr.Right(nSuffix).Compare(kStatus) == 0;
}

}  // namespace

const SHCIReturnGroup* HCIReturnGroupOf(unsigned nOGF) noexcept
{
    return nOGF >= kOGFLinkControl && nOGF <= kOGFTesting ? kReturnGroups[nOGF - kOGFLinkControl] : nullptr;
}

void CHCISpec::InitOptions_HCIReturnParameter()
{
    for (unsigned short nId = kFirstReturnId; nId <= kLastReturnId; ++nId) {
        const SSpecFieldAttr& attr = *GetDefaultFieldAttr(nId);
        if (IsStatusAbbr(attr.m_strAbbr)) {
            // The error list first, then status 0 as "succeeded". Two fields
            // are abbreviated "Status" alone; their rows say which command
            // they answer.
            std::string strAbbr = attr.m_strAbbr.ToStdString();
            if (nId == HCIReturn::WriteLinkPolicySettingsStatus)
                strAbbr = "WriteLinkPolicySettingsStatus";
            else if (nId == HCIReturn::SetEventMaskStatus)
                strAbbr = "SetEventMaskStatus";
            strAbbr += "__succeeded";
            const SOptionRow success = {0, 0, 0, "succeeded", strAbbr.c_str()};
            InitOptions_HCIErrorMessage(nId);
            AddOptionList(nId, 8, &success, 1);
        }
    }
    // The value lists: each row's abbreviation is the field's, two
    // underscores and the row's name.
    for (const SHCIReturnGroup* pGroup : kReturnGroups) {
        for (std::size_t i = 0; i < pGroup->nOptions; ++i) {
            const SHCIReturnOptions& options = pGroup->pOptions[i];
            const std::string strFieldAbbr = GetDefaultFieldAttr(options.nFieldId)->m_strAbbr.ToStdString();
            std::vector<std::string> aAbbrs;
            aAbbrs.reserve(options.nRows);
            for (std::size_t r = 0; r < options.nRows; ++r)
                aAbbrs.push_back(strFieldAbbr + "__" + options.pRows[r].pszName);
            std::vector<SOptionRow> aRows(options.pRows, options.pRows + options.nRows);
            for (std::size_t r = 0; r < options.nRows; ++r)
                aRows[r].pszAbbr = aAbbrs[r].c_str();
            AddOptionList(options.nFieldId, 8, aRows.data(), aRows.size());
        }
    }
}

unsigned long CHCISpec::ReadHCIReturnParameters(CHCIReader& reader)
{
    const unsigned long dwStart = reader.Consumed();
    if (!reader.ReadOn(HCIEvent::Num_HCI_Command_Packets))
        return reader.Consumed() - dwStart;
    // An event that ends in its opcode keeps the name "CommandCompleteEvent".
    const SHCIEventOpCode opcode = ReadEventOpCodeOCF(reader);
    if (!opcode.bMore || !ReadEventOpCodeOGF(reader, opcode))
        return reader.Consumed() - dwStart;

    SetCommandCompleteRequestName(reader.Packet(), opcode.nOGF, opcode.nOCF);
    // Commands of no known group, unknown OCFs and the commands that return
    // nothing read no parameter here: what is left stays for UnExpected.
    const SHCIReturnGroup* pGroup = HCIReturnGroupOf(opcode.nOGF);
    const SHCIReturnParameters* pRow = pGroup ? pGroup->Find(opcode.nOCF) : nullptr;
    if (pRow)
        ReadHCIFields(reader, pRow->aIds);
    return reader.Consumed() - dwStart;
}
