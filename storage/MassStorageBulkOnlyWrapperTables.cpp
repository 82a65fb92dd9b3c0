// Field catalogue and option lists of the bulk-only wrappers.
#include "storage/MassStorageBulkOnlyWrapper.h"

using Spec = CMassStorageBulkOnlyWrapperSpec;

const SSpecFieldAttr Spec::ms_aDefaultFieldsAttr[Spec::kFieldCount] = {
    {24500, "Signature", "Signature",
     "Signature that helps identify this data packet as a CBW. The signature field shall contain the value "
     "43425355h (little endian), indicating a CBW.",
     0, 32},
    {24501, "Tag", "Tag",
     "A Command Block Tag sent by the host. The device shall echo the contents of this field back to the host "
     "in the dCSWTag field of the associated CSW. The dCSWTag positively associates a CSW with the "
     "corresponding CBW.",
     32, 32},
    {24502, "Data Transport Length", "Data Transport Length",
     "The number of bytes of data that the host expects to transfer on the Bulk-In or Bulk-Out endpoint (as "
     "indicated by the Direction bit) during the execution of this command. If this field is zero, the device "
     "and the host shall transfer no data between the CBW and the associated CSW, and the device shall ignore "
     "the value of the Direction bit in bmCBWFlags.",
     64, 32},
    {24503, "Flags-Reserved", "Flags-Reserved", "Reserved", 96, 6},
    {24504, "Flags-Absolete", "Flags-Absolete", "The host shall set this bit to zero.", 102, 1},
    {24505, "Flags-Direction", "Flags-Direction",
     "the device shall ignore this bit if the dCBWDataTransferLength field is zero, otherwise:", 103, 1},
    {24506, "LUN", "LUN", "The device Logical Unit Number (LUN) to which the command block is being sent.", 104, 4},
    {24507, "Reserved", "Reserved", "Reserved", 108, 4},
    {24508, "CB Length", "CB Length", "This defines the valid length of the command block.", 112, 5},
    {24509, "Reserved", "Reserved", "Reserved", 117, 3},
    {24510, "CB", "CB", "The command block to be executed by the device.", 120, 128},
    {24511, "Tag", "Tag",
     "The device shall set this field to the value received in the dCBWTag of the associated CBW.", 32, 32},
    {24512, "Data Residue", "Data Residue",
     "For Data-Out the device shall report in the dCSWDataResidue the difference between the amount of data "
     "expected as stated in the dCBWDataTransferLength, and the actual amount of data processed by the device. "
     "For Data-In the device shall report in the dCSWDataResidue the difference between the amount of data "
     "expected as stated in the dCBWDataTransferLength and the actual amount of relevant data sent by the "
     "device. The dCSWDataResidue shall not exceed the value sent in the dCBWDataTransferLength.",
     64, 32},
    {24513, "Status", "Status", "bCSWStatus indicates the success or failure of the command.", 96, 8},
};

const std::array<CString, Spec::kFieldCount> Spec::ms_aFieldNames = FieldNamesOf(Spec::ms_aDefaultFieldsAttr);
const std::array<short, Spec::kFieldCount> Spec::ms_aFieldIds = FieldIdRange<Spec::kFieldCount>(Spec::kFirstId);
const SFieldTable Spec::ms_table = {Spec::ms_aDefaultFieldsAttr, Spec::ms_aFieldNames.data(),
                                    Spec::ms_aFieldIds.data(), Spec::kFieldCount, Spec::kFirstId};

namespace {

// 24500: the signature tells the two wrappers apart.
const SOptionRow kSignatureOptions[] = {
    {21333, 0x43425355, 0x43425355, "Data Packet is CBW", "CBW"},
    {21333, 0x53425355, 0x53425355, "CSW", "CSW"},
};

// 24505: bit 7 of bmCBWFlags.
const SOptionRow kDirectionOptions[] = {
    {0, 0, 0, "CBW-Flags direction-Data Out", "Data Out"},
    {1, 1, 1, "CBW-Flags direction-Data In", "Data In"},
};

// 24513: bCSWStatus. 4 and 6 to 255 have no name.
const SOptionRow kStatusOptions[] = {
    {0, 0, 0, "Command Passed", nullptr},
    {1, 1, 1, "Command Failed", nullptr},
    {2, 2, 2, "Phase Error", nullptr},
    {3, 3, 3, "Reserved Obsolete", nullptr},
    {4, 5, 5, "Reserved", nullptr},
};

}  // namespace

void CMassStorageBulkOnlyWrapperSpec::InitOptions()
{
    AddOptionList(FieldSignature, 32, kSignatureOptions);
    AddOptionList(FieldFlagsDirection, 1, kDirectionOptions);
    AddOptionList(FieldStatus, 8, kStatusOptions);
}
