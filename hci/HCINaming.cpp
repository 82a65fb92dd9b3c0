// Request names of HCI packets. Every name an HCI packet gets is decided
// here; an HCI packet has no response name. Names are set with the last
// write winning, as a walk learns more of its packet:
//
//   command                 the command's name from its group's table;
//                           "UnKnown" or "Vendor Command" from the opcode check
//   event                   the event's name; "UnKnown", "Vendor Event" or
//                           "Bluetooth Logo Testing" from the event code check
//   Command Complete event  "CommandCompleteEvent", then, once the opcode is
//                           read, "<command> Command Complete Event"
//   Command Status event    "Command Status Event", then, once the OCF is
//                           read, the OCF option's text and " Command Status Event"
//   ACL data, SCO data      "HCI ACL Data Packet", "HCI SCO Data Packet"
//
// The names are built once with the decoder, so that naming a packet costs
// no allocation, but for Command Status, whose name is made from the option
// text of the field read.
#include "hci/HCICommandTable.h"
#include "hci/HCIEventTable.h"
#include "hci/HCIReader.h"
#include "hci/HCIReturnTable.h"

namespace {

const SHCICommandGroup* const kCommandGroups[] = {
    &kHCILinkControlCommands, &kHCILinkPolicyCommands, &kHCIHostControllerCommands,
    &kHCIInformationCommands, &kHCIStatusCommands,     &kHCITestingCommands,
};

const char* const kFixedNames[] = {
    "UnKnown",                 // NameUnKnown
    "Vendor Command",          // NameVendorCommand
    "Vendor Event",            // NameVendorEvent
    "Bluetooth Logo Testing",  // NameLogoTesting
    "HCI ACL Data Packet",     // NameACLData
    "HCI SCO Data Packet",     // NameSCOData
    "CommandCompleteEvent",    // NameCommandComplete
    "Command Status Event",    // NameCommandStatus
};

const char kCommandCompleteSuffix[] = " Command Complete Event";
const char kCommandStatusSuffix[] = " Command Status Event";

}  // namespace

const SHCICommandGroup* HCICommandGroupOf(unsigned nOGF) noexcept
{
    return nOGF >= kOGFLinkControl && nOGF <= kOGFTesting ? kCommandGroups[nOGF - kOGFLinkControl] : nullptr;
}

void CHCISpec::InitRequestNames()
{
    static_assert(sizeof kFixedNames / sizeof kFixedNames[0] == kFixedNameCount, "one text per fixed name");
    for (int i = 0; i < kFixedNameCount; ++i)
        m_aFixedNames[static_cast<std::size_t>(i)] = kFixedNames[i];

    // Command Status names itself after its command once the opcode is read.
    m_aEventNames.clear();
    for (const SHCIEvent& event : kHCIEvents)
        m_aEventNames.push_back(event.nCode == kHCICommandStatusEvent ? m_aFixedNames[NameCommandStatus]
                                                                      : CString(event.pszName));

    for (unsigned nOGF = kOGFLinkControl; nOGF <= kOGFTesting; ++nOGF) {
        const std::size_t nGroup = nOGF - kOGFLinkControl;
        const SHCICommandGroup& commands = *HCICommandGroupOf(nOGF);
        const SHCIReturnGroup& returns = *HCIReturnGroupOf(nOGF);
        // Commands that return nothing may share the name of one command of
        // their group.
        const SHCICommand* pShared = returns.nSharedNameOCF ? commands.Find(returns.nSharedNameOCF) : nullptr;
        std::vector<CString>& aNames = m_aCommandNames[nGroup];
        std::vector<CString>& aCompleteNames = m_aCommandCompleteNames[nGroup];
        aNames.clear();
        aCompleteNames.clear();
        for (std::size_t i = 0; i < commands.nCount; ++i) {
            const SHCICommand& command = commands.pCommands[i];
            aNames.emplace_back(command.pszName);
            const SHCICommand& named = (pShared && !returns.Find(command.nOCF)) ? *pShared : command;
            aCompleteNames.push_back(CString(named.pszName) + kCommandCompleteSuffix);
        }
    }
}

void CHCISpec::SetFixedRequestName(CReqRespProtocolPacket& packet, EHCIFixedName eName) const
{
    packet.SetRequestName(m_aFixedNames[static_cast<std::size_t>(eName)]);
}

void CHCISpec::SetCommandRequestName(CReqRespProtocolPacket& packet, unsigned nOGF, unsigned short nOCF) const
{
    const SHCICommandGroup* pGroup = HCICommandGroupOf(nOGF);
    const SHCICommand* pCommand = pGroup ? pGroup->Find(nOCF) : nullptr;
    if (!pCommand) {
        SetFixedRequestName(packet, NameUnKnown);
        return;
    }
    packet.SetRequestName(m_aCommandNames[nOGF - kOGFLinkControl][static_cast<std::size_t>(pCommand - pGroup->pCommands)]);
}

void CHCISpec::SetEventRequestName(CReqRespProtocolPacket& packet, std::uint8_t nEventCode) const
{
    if (nEventCode >= kHCIFirstEventCode && nEventCode <= kHCILastEventCode)
        packet.SetRequestName(m_aEventNames[nEventCode - kHCIFirstEventCode]);
}

void CHCISpec::SetCommandCompleteRequestName(CReqRespProtocolPacket& packet, unsigned nOGF,
                                             unsigned short nOCF) const
{
    const SHCICommandGroup* pGroup = HCICommandGroupOf(nOGF);
    const SHCICommand* pCommand = pGroup ? pGroup->Find(nOCF) : nullptr;
    if (!pCommand) {
        SetFixedRequestName(packet, NameUnKnown);
        return;
    }
    packet.SetRequestName(
        m_aCommandCompleteNames[nOGF - kOGFLinkControl][static_cast<std::size_t>(pCommand - pGroup->pCommands)]);
}

void CHCISpec::SetCommandStatusRequestName(CReqRespProtocolPacket& packet, unsigned short nOCFId) const
{
    // The text of the OCF field's option: the command's name in the form of
    // its group's list, "UnKnown" for an OCF the group lacks.
    const CString strCommand =
        packet.GetFieldPattern(packet.GetFieldIndex(nOCFId), 6, DisplayDecimal, 0, 0, PacketSideWhole);
    packet.SetRequestName(strCommand + kCommandStatusSuffix);
}

void CHCISpec::LinkCommandSetRequestAndResponseNames(CReqRespProtocolPacket& packet, unsigned short nOCF)
{
    SetCommandRequestName(packet, kOGFLinkControl, nOCF);
}

void CHCISpec::PolicySetRequestAndResponseNames(CReqRespProtocolPacket& packet, unsigned short nOCF)
{
    SetCommandRequestName(packet, kOGFLinkPolicy, nOCF);
}

void CHCISpec::HostSetRequestAndResponseNames(CReqRespProtocolPacket& packet, unsigned short nOCF)
{
    SetCommandRequestName(packet, kOGFHostController, nOCF);
}

void CHCISpec::InformationSetRequestName(CReqRespProtocolPacket& packet, unsigned short nOCF)
{
    SetCommandRequestName(packet, kOGFInformation, nOCF);
}
