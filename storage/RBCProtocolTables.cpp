// Field catalogue, option lists and format list of the RBC decoder. The
// option and format lists are added behind the SCSI decoder's.
#include "storage/RBCProtocol.h"

using Spec = CRBCProtocolSpec;

const SSpecFieldAttr Spec::ms_aDefaultFieldsAttr[Spec::kFieldCount] = {
    {28000, "Operation Code", "Operation Code",
     "This field contains the code value identifying the operation being requested.", 0, 8},
    {28001, "Reserved", "Reserved", "Reserved", 0, 2},
    {28002, "Reserved", "Reserved", "Reserved", 0, 3},
    {28003, "Reserved", "Reserved", "Reserved", 0, 4},
    {28004, "Reserved", "Reserved", "Reserved", 0, 7},
    {28005, "Reserved", "Reserved", "Reserved", 0, 8},
    {28006, "CONTROL", "CONTROL", "CONTROL", 0, 8},
    {28007, "LOGICAL_BLOCK_ADDRESS", "LOGICAL_BLOCK_ADDRESS",
     "The LOGICAL BLOCK ADDRESS field specifies the logical block at which the operation begins.", 0, 32},
    {28008, "TRANSFER_LENGTH", "TRANSFER_LENGTH",
     "The TRANSFER LENGTH field specifies the number of contiguous logical blocks of data to be transferred. A "
     "transfer length of zero indicates that no logical blocks shall be transferred.",
     0, 16},
    {28009, "VERIFICATION_LENGTH", "VERIFICATION_LENGTH",
     "The VERIFICATION LENGTH field specifies the number of contiguous logical blocks of data that shall be "
     "verified. A verification length of zero indicates that no logical blocks shall be verified.",
     0, 16},
    {28010, "RETURNED_LOGICAL_BLOCK_ADDRESS", "RETURNED_LOGICAL_BLOCK_ADDRESS",
     "The RETURNED LOGICAL BLOCK ADDRESS field holds the address of the last logical block of the device.", 0, 32},
    {28011, "BLOCK_LENGTH_IN_BYTES", "BLOCK_LENGTH_IN_BYTES",
     "The BLOCK LENGTH IN BYTES field holds the length in bytes of each logical block.", 0, 32},
    {28012, "IMMED", "IMMED",
     "An IMMED bit of one indicates that status shall be returned as soon as the command descriptor block has "
     "been validated. An IMMED bit of zero indicates that status shall be returned after the operation has "
     "completed.",
     0, 1},
    {28013, "POWER_CONDITIONS", "POWER_CONDITIONS",
     "The POWER CONDITIONS field requests that the device change its power condition.", 0, 4},
    {28014, "LOEJ", "LOEJ",
     "A LOEJ bit of one requests that the medium be loaded (START one) or ejected (START zero). A LOEJ bit of "
     "zero requests that no action be taken regarding loading or ejecting the medium.",
     0, 1},
    {28015, "START", "START",
     "A START bit of one requests that the device be made ready for use. A START bit of zero requests that the "
     "device be stopped.",
     0, 1},
    {28016, "FUA", "FUA",
     "A FUA (Force Unit Access) bit of one indicates that the device shall write the data to the medium before "
     "returning status.",
     0, 1},
    {28017, "Command Data Block", "Command Data Block", "Command Data Block", 0, 65535},
    {28018, "UnExpected Data", "UnExpected Data", "UnExpected Data", 0, 65535},
};

const std::array<CString, Spec::kFieldCount> Spec::ms_aFieldNames = FieldNamesOf(Spec::ms_aDefaultFieldsAttr);
const std::array<short, Spec::kFieldCount> Spec::ms_aFieldIds = FieldIdRange<Spec::kFieldCount>(Spec::kFirstId);
const SFieldTable Spec::ms_table = {Spec::ms_aDefaultFieldsAttr, Spec::ms_aFieldNames.data(),
                                    Spec::ms_aFieldIds.data(), Spec::kFieldCount, Spec::kFirstId};

namespace {

// 28000: operation codes. The named codes come first; the unknown ranges
// leave out every named code but REQUEST SENSE, which the first match names.
const SOptionRow kOperationCodeOptions[] = {
    {0, 0x04, 0x04, "FORMAT_UNIT", nullptr},
    {1, 0x12, 0x12, "INQUIRY", nullptr},
    {2, 0x15, 0x15, "MODE_SELECT", nullptr},
    {3, 0x1A, 0x1A, "MODE_SENSE", nullptr},
    {4, 0x5E, 0x5E, "PERSISTENT_RESERVE_IN", nullptr},
    {5, 0x5F, 0x5F, "PERSISTENT_RESERVE_OUT", nullptr},
    {6, 0x1E, 0x1E, "PREVENT_ALLOW_MEDIUM_REMOVAL", nullptr},
    {7, 0x28, 0x28,
     "The READ(6) command requests that the device transfer data to the initiator. The most recent data value "
     "written in the addressed logical block shall be returned.",
     "READ (10)"},
    {8, 0x25, 0x25,
     "The READ CAPACITY command provides a means for the initiator to request the current capacity of the RBC "
     "device.",
     "READ_CAPACITY"},
    {9, 0x17, 0x17, "RELEASE", "RELEASE (6)"},
    {10, 0x03, 0x03, "REQUEST_SENSE", nullptr},
    {11, 0x16, 0x16, "RESERVE", "RESERVE (6)"},
    {12, 0x1B, 0x1B,
     "The START STOP UNIT command requests that the device enable or disable the Logical Unit for media access "
     "operations and controls certain power conditions.",
     "START_STOP_UNIT"},
    {13, 0x35, 0x35,
     "The SYNCHRONIZE CACHE command ensures that logical blocks in cache have their most recent data value "
     "recorded on the physical medium.",
     "SYNCHRONIZE_CACHE"},
    {14, 0x00, 0x00, "TEST_UNIT_READY", nullptr},
    {15, 0x2F, 0x2F, "The VERIFY(10) command requests that the device verify the data written on the medium.",
     "VERIFY (10)"},
    {16, 0x2A, 0x2A,
     "The WRITE(10) command requests that the device write data transferred from the initiator to the medium.",
     "WRITE (10)"},
    {17, 0x3B, 0x3B, "WRITE_BUFFER", "WRITE_BUFFER command"},
    {18, 0x01, 0x03, "Unknown", nullptr},
    {19, 0x05, 0x11, "Unknown", nullptr},
    {20, 0x13, 0x14, "Unknown", nullptr},
    {21, 0x18, 0x19, "Unknown", nullptr},
    {22, 0x1C, 0x1D, "Unknown", nullptr},
    {23, 0x1F, 0x24, "Unknown", nullptr},
    {24, 0x26, 0x27, "Unknown", nullptr},
    {25, 0x29, 0x29, "Unknown", nullptr},
    {26, 0x2C, 0x2D, "Unknown", nullptr},
    {27, 0x30, 0x34, "Unknown", nullptr},
    {28, 0x36, 0x3A, "Unknown", nullptr},
    {29, 0x3C, 0x5C, "Unknown", nullptr},
    {30, 0x60, 0xFF, "Unknown", nullptr},
};

// 28013: power conditions of START STOP UNIT.
const SOptionRow kPowerConditionsOptions[] = {
    {0, 0x0, 0x0, "No change in power condition.", nullptr},
    {1, 0x1, 0x1, "Place device in Active condition", nullptr},
    {2, 0x2, 0x2, "Place device in Idle condition", nullptr},
    {3, 0x3, 0x3, "Place device in Standby condition", nullptr},
    {4, 0x4, 0x4, "Reserved", nullptr},
    {5, 0x5, 0x5, "Place device in Sleep condition", nullptr},
    {6, 0x6, 0x6, "Reserved", nullptr},
    {7, 0x7, 0x7, "Device Control", nullptr},
    {8, 0x8, 0xF, "Reserved", nullptr},
};

// The commands offered to the host as packet formats, by operation code.
struct SFormatRow {
    unsigned char nCode;
    const char* pszName;
};
const SFormatRow kFormats[] = {
    {4, "FORMAT_UNIT"},
    {18, "INQUIRY"},
    {21, "MODE_SELECT"},
    {26, "MODE_SENSE"},
    {94, "PERSISTENT_RESERVE_IN"},
    {95, "PERSISTENT_RESERVE_OUT"},
    {30, "PREVENT_ALLOW_MEDIUM_REMOVAL"},
    {40, "READ"},
    {37, "READ_CAPACITY"},
    {23, "RELEASE"},
    {3, "REQUEST_SENSE"},
    {22, "RESERVE"},
    {27, "START_STOP_UNIT"},
    {53, "SYNCHRONIZE_CACHE"},
    {0, "TEST_UNIT_READY"},
    {47, "VERIFY"},
    {42, "WRITE"},
    {59, "WRITE_BUFFER"},
};

}  // namespace

void CRBCProtocolSpec::InitOptions()
{
    AddOptionList(FieldOperationCode, 8, kOperationCodeOptions);
    AddOptionList(FieldPowerConditions, 4, kPowerConditionsOptions);
}

void CRBCProtocolSpec::InitFormats()
{
    for (const SFormatRow& row : kFormats)
        AddFormat(row.nCode, row.pszName);
}
