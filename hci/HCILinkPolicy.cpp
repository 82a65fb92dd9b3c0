// Link policy commands, OGF 2: the hold, sniff and park modes, QoS, roles and
// the link policy settings of a connection.
#include <iterator>

#include "hci/HCICommandTable.h"

namespace {

using namespace HCIParam;

const SHCICommand kPolicyCommands[] = {
    {0x0001, "HCI_Hold_Mode",
     {{Connection_Handle, "Connection Handle to be used to identify a connection. " HCI_HANDLE_RANGE},
      {Hold_Mode_Max_Interval}, {Hold_Mode_Min_Interval}}},
    {0x0003, "HCI_Sniff_Mode",
     {{Connection_Handle, "Connection Handle to be used to identify a connection. " HCI_HANDLE_RANGE},
      {Sniff_Max_Interval}, {Sniff_Min_Interval}, {Sniff_Attempt}, {Sniff_Timeout}}},
    {0x0004, "HCI_Exit_Sniff_Mode",
     {{Connection_Handle, "Connection Handle to be used to identify a connection. " HCI_HANDLE_RANGE}}},
    {0x0005, "HCI_Park_Mode",
     {{Connection_Handle, "Connection Handle to be used to identify a connection. " HCI_HANDLE_RANGE},
      {Beacon_Max_Interval}, {Beacon_Min_Interval}}},
    {0x0006, "HCI_Exit_Park_Mode",
     {{Connection_Handle, "Connection Handle to be used to identify a connection." HCI_HANDLE_RANGE}}},
    {0x0007, "HCI_QoS_Setup",
     {{Connection_Handle, "Connection Handle to be used to identify which connection for the QoS "
                          "Setup." HCI_HANDLE_RANGE},
      {Flags}, {Service_Type}, {Token_Rate}, {Peak_Bandwidth}, {Latency}, {Delay_Variation}}},
    {0x0009, "HCI_Role_Discovery",
     {{Connection_Handle, "Connection Handle to be used to identify a connection. " HCI_HANDLE_RANGE}}},
    {0x000B, "HCI_Switch_Role",
     {{BD_ADDR, "BD_ADDR for the connected device with which a role switch is to be performed."}, {Role}}},
    {0x000C, "HCI_Read_Link_Policy_Settings",
     {{Connection_Handle, "Connection Handle to be used to identify a connection. " HCI_HANDLE_RANGE}}},
    {0x000D, "HCI_Write_Link_Policy_Settings",
     {{Connection_Handle, "Connection Handle to be used to identify a connection. " HCI_HANDLE_RANGE},
      {Link_Policy_Settings}}},
};

// 27043: Service_Type of a QoS request.
const SOptionRow kServiceTypeOptions[] = {
    {0, 0, 0, "Service_Type__NoTraffic", "No Traffic"},
    {1, 1, 1, "Service_Type__BestEffort", "Best Effort"},
    {2, 2, 2, "Service_Type__Guaranteed", "Guaranteed"},
    {3, 3, 0xFF, "Service_Type__Reserved", "Reserved"},
};

// 27048: Link_Policy_Settings, a mask of the link modes allowed; 16-bit options.
const SOptionRow kLinkPolicySettingsOptions[] = {
    {0, 0, 0, "Disable All LM Modes Default", nullptr},
    {1, 1, 1, "Enable Master Slave Switch", nullptr},
    {2, 2, 2, "Enable Hold Mode", nullptr},
    {4, 4, 4, "Enable Sniff Mode", nullptr},
    {8, 8, 8, "Enable Park Mode", nullptr},
    {0x10, 0x10, 0x10, "Reserved For Future Use", nullptr},
};

}  // namespace

extern const SHCICommandGroup kHCILinkPolicyCommands = {kPolicyCommands, std::size(kPolicyCommands)};

void CHCISpec::InitOptions_HCIPolicyControl()
{
    // Named with blanks for underscores, as "HCI Hold Mode".
    std::vector<SHCIOCFOption> aOCF;
    for (const SHCICommand& command : kPolicyCommands) {
        const std::string strName = HCIUnderscoresToBlanks(command.pszName);
        aOCF.push_back({command.nOCF, strName, strName});
    }
    const std::vector<SOptionRow> aOCFRows = HCIOCFOptionRows(aOCF);
    AddOptionList(FieldPolicyOCF, 10, aOCFRows.data(), aOCFRows.size());
    AddOptionList(FieldPolicyOGF, 6, kHCIOGFOptions);

    AddOptionList(HCIParam::Service_Type, 8, kServiceTypeOptions);
    AddOptionList(HCIParam::Link_Policy_Settings, 16, kLinkPolicySettingsOptions);
}

unsigned long CHCISpec::ReadPolicyCommandElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CHCIReader reader = Reader(data, packet);
    // Named at once, so that a command cut behind its OCF has its name too.
    const bool bMore = reader.ReadOn(FieldPolicyOCF);
    const std::uint16_t nOCF = reader.Value();
    PolicySetRequestAndResponseNames(packet, nOCF);
    if (!bMore || !reader.ReadOn(FieldPolicyOGF) || !reader.ReadOn(FieldTotalLength))
        return reader.Consumed();

    const SHCICommand* pCommand = kHCILinkPolicyCommands.Find(nOCF);
    if (pCommand && !ReadHCICommandParameters(reader, *pCommand))
        return reader.Consumed();
    reader.ReadRest(CHCISpec::FieldUnExpected);
    return reader.Consumed();
}
