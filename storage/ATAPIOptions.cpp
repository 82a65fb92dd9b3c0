// Option lists of the ATAPI decoder: the named values of the command block
// fields, then those of the returned structures. They follow the SCSI
// decoder's lists, whose constructor runs first. A name or abbreviation
// stands as the decoder has always shown it; "\n" is a line feed.
#include "storage/ATAPISpec.h"

namespace {

using namespace ATAPIField;

// 26501: blanking type of BLANK.
const SOptionRow kBlankingTypeOptions[] = {
    {0, 0, 0, "Blank the disc", nullptr},
    {1, 1, 1, "Minimally blank the disc", nullptr},
    {2, 2, 2, "Blank a track", nullptr},
    {3, 3, 3, "Unreserved a track", nullptr},
    {4, 4, 4, "Blank a track tail", nullptr},
    {5, 5, 5, "Unclose the last session", nullptr},
    {6, 6, 6, "Erase session", nullptr},
    {7, 7, 7, "Reserved", nullptr},
};

// 26500: operation codes. The named codes come first; the unknown ranges
// leave out every named code.
const SOptionRow kOperationCodeOptions[] = {
    {0, 0xA1, 0xA1, "Blank", nullptr},
    {1, 0x5B, 0x5B, "Close Track/Session", nullptr},
    {2, 0x2C, 0x2C, "Erase(10)", nullptr},
    {3, 0x04, 0x04, "Format Unit", nullptr},
    {4, 0x46, 0x46, "Get Configuration", nullptr},
    {5, 0x4A, 0x4A, "Get Event/Status Notification", nullptr},
    {6, 0xAC, 0xAC, "Get Performance", nullptr},
    {7, 0x12, 0x12, "Inquiry", nullptr},
    {8, 0xA6, 0xA6, "Load/Unload Medium", nullptr},
    {9, 0xBD, 0xBD, "Mechanism Status", nullptr},
    {10, 0x55, 0x55, "Mode Select(10)", nullptr},
    {11, 0x5A, 0x5A, "Mode Sense(10)", nullptr},
    {12, 0x4B, 0x4B, "Pause Resume", nullptr},
    {13, 0x45, 0x45, "Play Audio(10)", nullptr},
    {14, 0xA5, 0xA5, "Play Audio(12)", nullptr},
    {15, 0x47, 0x47, "Play Audio MSF", nullptr},
    {16, 0xBC, 0xBC, "Play CD", nullptr},
    {17, 0x1E, 0x1E, "Prevent Allow Medium Removal", "Prevent/Allow Medium Removal"},
    {18, 0x28, 0x28, "Read(10)", nullptr},
    {19, 0xA8, 0xA8, "Read(12)", nullptr},
    {20, 0x3C, 0x3C, "Read Buffer", nullptr},
    {21, 0x5C, 0x5C, "Read Buffer Capacity", nullptr},
    {22, 0xBE, 0xBE, "Read CD", nullptr},
    {23, 0xB9, 0xB9, "Read CD MSF", nullptr},
    {24, 0x25, 0x25, "Read Capacity", nullptr},
    {25, 0x51, 0x51, "Read Disk Information", nullptr},
    {26, 0xAD, 0xAD, "Read DVD Structure", nullptr},
    {27, 0x23, 0x23, "Read Format Capacities", nullptr},
    {28, 0x44, 0x44, "Read Header", nullptr},
    {29, 0x59, 0x59, "Read Master CUE", nullptr},
    {30, 0x42, 0x42, "Resd Sub Channel", "Resd Sub_channel"},
    {31, 0x43, 0x43, "Read TOC/PMA/ATIP", nullptr},
    {32, 0x52, 0x52, "Read Track Information", nullptr},
    {33, 0x58, 0x58, "Repair track", "Repair Track"},
    {34, 0xA4, 0xA4, "Report Key", nullptr},
    {35, 0x03, 0x03, "Request send", "Request Send"},
    {36, 0x53, 0x53, "Reserve Track", nullptr},
    {37, 0xBA, 0xBA, "Scan", nullptr},
    {38, 0x2B, 0x2B, "Seek", nullptr},
    {39, 0x5D, 0x5D, "Send CUE Sheet", nullptr},
    {40, 0xBF, 0xBF, "Send DVD Structure", nullptr},
    {41, 0xA2, 0xA2, "Send Event", nullptr},
    {42, 0xA3, 0xA3, "Send Key", nullptr},
    {43, 0x54, 0x54, "Send OPC Information", nullptr},
    {44, 0xBB, 0xBB, "Set CD Speed", nullptr},
    {45, 0xA7, 0xA7, "Set Read Ahead", nullptr},
    {46, 0xB6, 0xB6, "Set Streaming", nullptr},
    {47, 0x1B, 0x1B, "Start Play Unit", nullptr},
    {48, 0x4E, 0x4E, "Stop Play Unit", nullptr},
    {49, 0x35, 0x35, "Synchronize Cache", nullptr},
    {50, 0x00, 0x00, "Test Unit Ready", nullptr},
    {51, 0x2F, 0x2F, "Verify", nullptr},
    {52, 0x2A, 0x2A, "Write(10)", nullptr},
    {53, 0xAA, 0xAA, "Write(12)", nullptr},
    {54, 0x2E, 0x2E, "Write And Verify(10)", nullptr},
    {55, 0x3B, 0x3B, "Write Buffer", nullptr},
    {56, 0x01, 0x02, "Unknown", nullptr},
    {57, 0x05, 0x11, "Unknown", nullptr},
    {58, 0x13, 0x1A, "Unknown", nullptr},
    {59, 0x1C, 0x1D, "Unknown", nullptr},
    {60, 0x1F, 0x22, "Unknown", nullptr},
    {61, 0x24, 0x24, "Unknown", nullptr},
    {62, 0x26, 0x27, "Unknown", nullptr},
    {63, 0x29, 0x29, "Unknown", nullptr},
    {64, 0x2D, 0x2D, "Unknown", nullptr},
    {65, 0x30, 0x34, "Unknown", nullptr},
    {66, 0x36, 0x3A, "Unknown", nullptr},
    {67, 0x3D, 0x41, "Unknown", nullptr},
    {68, 0x48, 0x49, "Unknown", nullptr},
    {69, 0x4C, 0x4D, "Unknown", nullptr},
    {70, 0x4F, 0x50, "Unknown", nullptr},
    {71, 0x56, 0x57, "Unknown", nullptr},
    {72, 0x5E, 0xA0, "Unknown", nullptr},
    {73, 0xA9, 0xA9, "Unknown", nullptr},
    {74, 0xAB, 0xAB, "Unknown", nullptr},
    {75, 0xAE, 0xB5, "Unknown", nullptr},
    {76, 0xB7, 0xB8, "Unknown", nullptr},
    {77, 0xC0, 0xFF, "Unknown", nullptr},
};

// 26580: expected sector type of READ CD.
const SOptionRow kExpectedSectorTypeOptions[] = {
    {0, 0, 0, "All Type(mandatory)", "All Type"},
    {1, 1, 1, "CD-DA(optional)", "CD-DA"},
    {2, 2, 2, "Mode 1(mandatory)", "Mode 1"},
    {3, 3, 3, "Mode 2 formless(mandatory)", "Mode 2 formless"},
    {4, 4, 4, "Mode 2 from 1(mandatory)", "Mode 2 from 1"},
    {5, 5, 5, "Mode 2 from 2(mandatory)", "Mode 2 from 2"},
    {6, 6, 7, "Reserved", nullptr},
};

// 26585: header codes of READ CD.
const SOptionRow kHeaderCodesOptions[] = {
    {0, 0, 0, "no header information shall br returned", "none"},
    {1, 1, 1, "only the four byte header will be returned in the data stream.", "header only"},
    {2, 2, 2, "only the mode 2 from 1 or from 2 sub-header will be returned.", "sub-header only"},
    {3, 3, 3, "Return both header and sub-header information.", "All headers"},
};

// 26582: error field of READ CD.
const SOptionRow kErrorFieldOptions[] = {
    {0, 0, 0, "no error information is returned", "none"},
    {1, 1, 1, "The C2 error, pointer bits will be included in the data stream.", "C2 error block data"},
    {2, 2, 2, "Both the C2 error bits and the Block Error Byte will be included in the data stream.",
     "C2 and Block Error bits"},
    {3, 3, 3, "Reserved for future enhancement.", "Reserved"},
};

// 26587: sub-channel selection of READ CD.
const SOptionRow kSubChannelSelectionOptions[] = {
    {0, 0, 0, "No Sub-channel data will be returned", "No Sub-channel data"},
    {1, 1, 1, "RAW P-W Sub-channel data will be Transfered", "RAW"},
    {2, 2, 2, "Q data is transferred", "Q"},
    {3, 3, 3, "Reserved", nullptr},
    {4, 4, 4, "R-W data is transferred", "P-W"},
    {5, 5, 7, "Reserved", nullptr},
};

// 26746: address type of SCAN.
const SOptionRow kScanTypeOptions[] = {
    {0, 0, 0, "Logical Block Address Format", "LBA Format"},
    {1, 1, 1, "MIN,SEC, and FRAME format(MSF)", "MSF"},
    {2, 2, 2, "Track Number Format(TNO)", "TNO"},
    {3, 3, 3, "Reserved", nullptr},
};

// 26750: structure format of SEND DVD STRUCTURE.
const SOptionRow kSendStructureFormatOptions[] = {
    {0, 0x00, 0x03, "Reserved", nullptr},
    {1, 0x04, 0x04, "Send User Specific Data to the RMD cache", nullptr},
    {2, 0x05, 0x05, "Send data to CPR_MAI in data area cache. (CPM,CGMS)", nullptr},
    {3, 0x06, 0x0E, "Reserved", nullptr},
    {4, 0x0F, 0x0F, "Send Timestamp data to the RMD cache", nullptr},
    {5, 0x10, 0x2F, "Reserved", nullptr},
    {6, 0x30, 0x30, "Send a Disc Control Block", nullptr},
    {7, 0x31, 0xFF, "Reserved", nullptr},
};

// 26615: structure format of READ DVD STRUCTURE.
const SOptionRow kStructureFormatOptions[] = {
    {0, 0x00, 0x00, "Returns information in the DCD Lead-in area.\n DVD-R returns the last Lead-in.",
     "Phisical Data Returns"},
    {1, 0x01, 0x01, "Returns the Copyright information from DVD \n Lead-in area.", "Returned Data:Copyright"},
    {2, 0x02, 0x02, "Returns the Disc Key obfuscated by using\n a Bus Key.", "Returned Data:Disc Key"},
    {3, 0x03, 0x03, "Returns the BCA information on DVD media.", "Returned Data:BCA"},
    {4, 0x04, 0x04, "Returns the Disc Manufacturing inforamtion\n from the DVD Lead-in area.",
     "Returned Data:Manufacture"},
    {5, 0x05, 0x05, "Returns CGMS,CPM information from \nspecified sector.", "Returned Data:CGMS,CPM"},
    {6, 0x06, 0x07, "Reserved", nullptr},
    {7, 0x09, 0x0B, "Reserved", nullptr},
    {8, 0x10, 0x2F, "Reserved", nullptr},
    {9, 0x31, 0xFE, "Reserved", nullptr},
    {10, 0x08, 0x08, "Returns  the DDS information on DVD-RAM Media.", "Returned Data: DDS"},
    {11, 0x0C, 0x0C, "Returns the field of RMD in the\n last Border-out.", "Returned Data: RMD in last Border-out."},
    {12, 0x0D, 0x0D, "Returns RMD sectors that are recorded in RMA.", "Returned Data: RMD "},
    {13, 0x0E, 0x0E, "Returns Pre-recorded information in the\n Lead-in area.",
     "Returned Data: Pre-recorded information in Lead-in"},
    {14, 0x0F, 0x0F, "Returns Unique Disc Identifier of the disc.", "Returned Data: Unique Disc Identifier"},
    {15, 0x30, 0x30, "Returns Disc Control Block identified by the\n content Decriptor.",
     "Returned Data: Disc Control Block"},
    {16, 0xFF, 0xFF, "Returns a list of DVD Structures present \nin the specified Layer.",
     "Returned Data: Structures List"},
};

// 26755: operational event of SEND EVENT.
const SOptionRow kOperationalEventOptions[] = {
    {0, 0x0, 0x0, "No request shall be processed by the Logical Unit", nullptr},
    {1, 0x1, 0x1, "Initiator requests Logical Unit to process the Operational Request", nullptr},
    {2, 0x2, 0xF, "Reserved", nullptr},
};

// 26665: sub-channel data format of READ SUB-CHANNEL.
const SOptionRow kSubChannelParameterListOptions[] = {
    {0, 0x00, 0x00, "Reserved", nullptr},
    {1, 0x04, 0xEF, "Reserved", nullptr},
    {2, 0x01, 0x01, "CD Current Position", nullptr},
    {3, 0x02, 0x02, "Media Catalog number(UPC/bar code)", nullptr},
    {4, 0x03, 0x03, "Track International standard recording code", nullptr},
    {5, 0xF0, 0xFF, "Vendor Specific", nullptr},
};

// 26678: format of READ TOC/PMA/ATIP.
const SOptionRow kTOCFormatOptions[] = {
    {0, 0x0, 0x0, "TOC", nullptr},  {1, 0x1, 0x1, "Session Info", nullptr}, {2, 0x2, 0x2, "Full TOC", nullptr},
    {3, 0x3, 0x3, "PMA", nullptr},  {4, 0x4, 0x4, "ATIP", nullptr},         {5, 0x5, 0x5, "CD-TEXT", nullptr},
    {6, 0x6, 0xF, "Reserved", nullptr},
};

// 26540: notification class of the event header.
const SOptionRow kNotificationClassOptions[] = {
    {0, 0, 0, "Reserved", nullptr},
    {1, 1, 1, "Operational Change Request/Notification", nullptr},
    {2, 2, 2, "Power Management Class Events", nullptr},
    {3, 3, 3, "External Request", nullptr},
    {4, 4, 4, "Media Status Class Events", nullptr},
    {5, 5, 5, "Multi-Initiator", nullptr},
    {6, 6, 6, "Device Busy Class Events", nullptr},
    {7, 7, 7, "Reserved", nullptr},
};

// 26559: changer state of the mechanism status.
const SOptionRow kChangerStateOptions[] = {
    {0, 0, 0, "Ready", nullptr},
    {1, 1, 1, "Load in Progress", nullptr},
    {2, 2, 2, "Unload in Progress", nullptr},
    {3, 3, 3, "Initializating", nullptr},
};

// 26564: mechanism state.
const SOptionRow kMechanismStateOptions[] = {
    {0, 0, 0, "Idle", nullptr},
    {1, 1, 1, "Playing", nullptr},
    {2, 2, 2, "Scanning", nullptr},
    {3, 3, 3, "Active with Initiator", nullptr},
    {4, 4, 6, "Reserved", nullptr},
    {5, 7, 7, "No State Information Available", nullptr},
};

// 26592: disc status.
const SOptionRow kDiscStatusOptions[] = {
    {0, 0, 0, "Empty Disc", nullptr},
    {1, 1, 1, "Incomplete disc (Appendable)", "Incomplete Disc"},
    {2, 2, 2, "Complete Disc", nullptr},
    {3, 3, 3, "Others(non-write protected Random Writable media)", "Others"},
};

// 26593: state of the last session.
const SOptionRow kLastSessionStateOptions[] = {
    {0, 0, 0, "Empty Session", nullptr},
    {1, 1, 1, "Incomplete Session", nullptr},
    {2, 2, 2, "Reserved", nullptr},
    {3, 3, 3, "Complete Session(only possible when Disc Status is Complete)", "Complete Session"},
};

// 26602: disc type.
const SOptionRow kDiscTypeOptions[] = {
    {0, 0x00, 0x00, "CD-DA or CD-ROM Disc", nullptr}, {1, 0x10, 0x10, "CD-I Disc", nullptr},
    {2, 0x20, 0x20, "CD-ROM XA Disc", nullptr},       {3, 0xFF, 0xFF, "Undefined", nullptr},
    {4, 0x01, 0x0F, "Reserved", nullptr},             {5, 0x11, 0x1F, "Reserved", nullptr},
    {6, 0x21, 0xFE, "Reserved", nullptr},
};

// 26742: format type of a formattable capacity descriptor.
const SOptionRow kFormatTypeOptions[] = {
    {0, 0x00, 0x00, "Block length in bytes", "Block length"},
    {1, 0x04, 0x04, "Zone number of the description", nullptr},
    {2, 0x05, 0x05, "Zone number of last zone", nullptr},
    {3, 0x10, 0x10, "Fixed Packet Size in sectors", nullptr},
    {4, 0x11, 0x11, "Fixed Packet Size in sectors", nullptr},
    {5, 0x12, 0x12, "Fixed Packet Size in sectors", nullptr},
    {6, 0x20, 0x20, "M and N (sparing parameters)", nullptr},
    {7, 0x01, 0x03, "Reserved", nullptr},
    {8, 0x06, 0x0F, "Reserved", nullptr},
    {9, 0x13, 0x1F, "Reserved", nullptr},
    {10, 0x21, 0x3F, "Reserved", nullptr},
};

// 26740: descriptor type of the current/maximum capacity descriptor.
const SOptionRow kDescriptorTypeOptions[] = {
    {0, 1, 1,
     "Unformatted Media.The reported value is for the maximum formatted capacity for this media",
     "Unformatted Media"},
    {1, 2, 2,
     "Formatted Media.The reported value is the current medias capacity. In the case of sequential writable "
     "media, the number of blocks field indicates the number of blocks between the first Lead-in and the Lead-out "
     "or Border-out. When the media doen not have a complete session it shall be reported as No Media Present "
     "with Descriptor Type = 11b.",
     "Formatted Media"},
    {2, 3, 3,
     "No Media Present. The reported value is for the maximum capacity of a media that the Logical Unit is "
     "capable of reading.",
     "No Media Present"},
    {3, 0, 0, "Reserved", nullptr},
};

// 26638: copy generation management.
const SOptionRow kCGMSOptions[] = {
    {0, 0, 0, "", "Copying is permitted."},
    {1, 1, 1, "Reserved", nullptr},
    {2, 2, 2, "One generation of copies may be made", nullptr},
    {3, 3, 3, "No copying is allowed", nullptr},
};

// 26736: type code of the region playback control state.
const SOptionRow kRegionTypeCodeOptions[] = {
    {0, 0, 0, "No Logical Unit region", "NONE"},
    {1, 1, 1, "Logical Unit region is set", "SET"},
    {2, 2, 2, "Logical UnitRegion is set. Additional restrictions required to make a change", "LAST CHANGE"},
    {3, 3, 3, "Logical UnitRegion has been set permanently, but may be reset by the vendor if necessary.", "PERM"},
};

// 26733: region playback control scheme.
const SOptionRow kRPCSchemeOptions[] = {
    {0, 0x00, 0x00, "Logical Unit does not enforce Region Playback Controls (RPC)", "Unknown"},
    {1, 0x01, 0x01,
     "Logical Unit region shall adhere to this standard and all requirements of the CSS license agreement "
     "concerning RPC.",
     "RPC Phase"},
    {2, 0x02, 0xFF, "Reserved", nullptr},
};

// 26712: data mode of the track information block.
const SOptionRow kDataModeOptions[] = {
    {0, 0x1, 0x1, "Mode 1 (ISO/IEC 10149)", "Mode 1"},
    {1, 0x2, 0x2, "Mode 2 (ISO/IEC 10149 or CD-ROM XA)", "Mode 2"},
    {2, 0xF, 0xF, "Data Block Type unknown (no track descriptor block)", "Data Block Type unknown"},
    {3, 0x3, 0xE, "Reserved", nullptr},
};

}  // namespace

void CATAPISpec::InitOptions()
{
    // The command blocks.
    AddOptionList(BlankingType, 3, kBlankingTypeOptions);
    AddOptionList(OpCode, 8, kOperationCodeOptions);
    AddOptionList(ExpectedSectorType, 3, kExpectedSectorTypeOptions);
    AddOptionList(HeaderCodes, 2, kHeaderCodesOptions);
    AddOptionList(ErrorField, 2, kErrorFieldOptions);
    AddOptionList(SubChannelSelection, 3, kSubChannelSelectionOptions);
    AddOptionList(ScanType, 2, kScanTypeOptions);
    AddOptionList(SendStructureFormat, 8, kSendStructureFormatOptions);
    AddOptionList(StructureFormat, 8, kStructureFormatOptions);
    AddOptionList(OperationalEvent, 4, kOperationalEventOptions);
    AddOptionList(SubChannelParameterList, 8, kSubChannelParameterListOptions);
    AddOptionList(TOCFormat, 4, kTOCFormatOptions);
    // The returned structures.
    AddOptionList(EventNotificationClass, 3, kNotificationClassOptions);
    AddOptionList(ChangerState, 2, kChangerStateOptions);
    AddOptionList(MechanismState, 3, kMechanismStateOptions);
    AddOptionList(DiscStatus, 2, kDiscStatusOptions);
    AddOptionList(LastSessionState, 2, kLastSessionStateOptions);
    AddOptionList(DiscType, 8, kDiscTypeOptions);
    AddOptionList(FormatType, 6, kFormatTypeOptions);
    AddOptionList(DescriptorType, 2, kDescriptorTypeOptions);
    AddOptionList(CGMS, 2, kCGMSOptions);
    AddOptionList(RegionTypeCode, 2, kRegionTypeCodeOptions);
    AddOptionList(RPCScheme, 8, kRPCSchemeOptions);
    AddOptionList(DataMode, 4, kDataModeOptions);
}
