// The physical descriptor decoder: its catalogue, its options and its walk.
#include "hid/USBHIDPhysicalSpec.h"

#include <cstdint>

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CUSBHIDPhysicalSpec, CProtocolSpec)

using Spec = CUSBHIDPhysicalSpec;

const SSpecFieldAttr Spec::ms_aDefaultFieldsAttr[Spec::kFieldCount] = {
    {27700, "bNumber", "bNumber",
     "Number of physical descriptors in this set, and so the number of designator pairs that follow.", 0, 8},
    {27701, "bLength", "bLength", "Length of each descriptor of the set.", 8, 16},
    {27702, "bPhysicalInfo-Bias", "Bias",
     "Bits 5 to 7 of bPhysicalInfo: indicates which hand the descriptor set is characterized for.", 29, 3},
    {27703, "bPhysicalInfo-Preference", "Preference",
     "Bits 0 to 4 of bPhysicalInfo: the preference of the set; 0 is the most preferred.", 24, 5},
    {27704, "dPhysical-bDesignator", "bDesignator",
     "Designator: indicates which part of the body affects the item.", 32, 8},
    {27705, "dPhysical-bFlags-Qualifier", "Qualifier",
     "Bits 5 to 7 of bFlags: indicates which hand, foot or side of the body the designator applies to.", 45, 3},
    {27706, "dPhysical-bFlags-Effort", "Effort",
     "Bits 0 to 4 of bFlags: how easy it is for the user to activate the control; 0 is the easiest.", 40, 5},
    {27707, "Unexpected", "Unexpected", "Bytes behind the last designator pair.", 48, 8, 0, 65535},
};

const std::array<CString, Spec::kFieldCount> Spec::ms_aFieldNames = FieldNamesOf(Spec::ms_aDefaultFieldsAttr);
const std::array<short, Spec::kFieldCount> Spec::ms_aFieldIds = FieldIdRange<Spec::kFieldCount>(Spec::kFirstId);
const SFieldTable Spec::ms_table = {Spec::ms_aDefaultFieldsAttr, Spec::ms_aFieldNames.data(),
                                    Spec::ms_aFieldIds.data(), Spec::kFieldCount, Spec::kFirstId};

namespace {

const SOptionRow kBiasOptions[] = {
    {0, 0, 0, "Not applicable", nullptr},
    {1, 1, 1, "Right hand", nullptr},
    {2, 2, 2, "Left hand", nullptr},
    {3, 3, 3, "Both hands", nullptr},
    {4, 4, 4, "Either hand", nullptr},
    {5, 5, 7, "Reserved", nullptr},
};

const SOptionRow kQualifierOptions[] = {
    {0, 0, 0, "Not applicable", nullptr},
    {1, 1, 1, "Right", nullptr},
    {2, 2, 2, "Left", nullptr},
    {3, 3, 3, "Both", nullptr},
    {4, 4, 4, "Either", nullptr},
    {5, 5, 5, "Center", nullptr},
    {6, 6, 7, "Reserved", nullptr},
};

const SOptionRow kDesignatorOptions[] = {
    {0x00, 0x00, 0x00, "None", nullptr},
    {0x01, 0x01, 0x01, "Hand", nullptr},
    {0x02, 0x02, 0x02, "Eyeball", nullptr},
    {0x03, 0x03, 0x03, "Eyebrow", nullptr},
    {0x04, 0x04, 0x04, "Eyelid", nullptr},
    {0x05, 0x05, 0x05, "Ear", nullptr},
    {0x06, 0x06, 0x06, "Nose", nullptr},
    {0x07, 0x07, 0x07, "Mouth", nullptr},
    {0x08, 0x08, 0x08, "Upper lip", nullptr},
    {0x09, 0x09, 0x09, "Lower lip", nullptr},
    {0x0A, 0x0A, 0x0A, "Jaw", nullptr},
    {0x0B, 0x0B, 0x0B, "Neck", nullptr},
    {0x0C, 0x0C, 0x0C, "Upper arm", nullptr},
    {0x0D, 0x0D, 0x0D, "Elbow", nullptr},
    {0x0E, 0x0E, 0x0E, "Forearm", nullptr},
    {0x0F, 0x0F, 0x0F, "Wrist", nullptr},
    {0x10, 0x10, 0x10, "Palm", nullptr},
    {0x11, 0x11, 0x11, "Thumb", nullptr},
    {0x12, 0x12, 0x12, "Index finger", nullptr},
    {0x13, 0x13, 0x13, "Middle fingeR", nullptr},
    {0x14, 0x14, 0x14, "Ring finger", nullptr},
    {0x15, 0x15, 0x15, "Little fingeR", nullptr},
    {0x16, 0x16, 0x16, "Head", nullptr},
    {0x17, 0x17, 0x17, "Shoulder", nullptr},
    {0x18, 0x18, 0x18, "Hip", nullptr},
    {0x19, 0x19, 0x19, "Waist", nullptr},
    {0x1A, 0x1A, 0x1A, "Thigh", nullptr},
    {0x1B, 0x1B, 0x1B, "Knee", nullptr},
    {0x1C, 0x1C, 0x1C, "Calf", nullptr},
    {0x1D, 0x1D, 0x1D, "Ankle", nullptr},
    {0x1E, 0x1E, 0x1E, "Foot", nullptr},
    {0x1F, 0x1F, 0x1F, "Heel", nullptr},
    {0x20, 0x20, 0x20, "Ball of foot", nullptr},
    {0x21, 0x21, 0x21, "Big toe", nullptr},
    {0x22, 0x22, 0x22, "Second toe", nullptr},
    {0x23, 0x23, 0x23, "Third toe", nullptr},
    {0x24, 0x24, 0x24, "Fourth toe", nullptr},
    {0x25, 0x25, 0x25, "Little toe", nullptr},
    {0x26, 0x26, 0x26, "Brow", nullptr},
    {0x27, 0x27, 0x27, "Cheek", nullptr},
    {0x28, 0x28, 0xFF, "Reserved", nullptr},
};

}  // namespace

Spec::CUSBHIDPhysicalSpec() : TUSBHIDDecoder(ms_table)
{
    // Designator pairs rename their fields, so records of equal numbers must
    // stay apart by name.
    SetReferenceStrings(RefCompareName);
    InitOptions();
}

void Spec::InitOptions()
{
    AddOptionList(FieldBias, 8, kBiasOptions);
    AddOptionList(FieldQualifier, 8, kQualifierOptions);
    AddOptionList(FieldDesignator, 8, kDesignatorOptions);
}

unsigned long Spec::ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    if (data.GetByteLength() < 1)
        return 0;
    packet.SetRequestName("Physical Descriptor");

    CUSBHIDWalk walk = Walk(data, packet);
    const unsigned nPairs = static_cast<std::uint8_t>(walk.Read(FieldNumber));
    walk.Read(FieldLength);
    // bPhysicalInfo: the preference is the low part of the byte.
    walk.Read(FieldPreference);
    walk.Read(FieldBias);

    // One designator pair per descriptor while data is left; the pair's
    // fields carry its number, from 1. A count beyond what a packet holds
    // ends at the last whole pair that fits.
    CString strName;
    for (unsigned i = 0; i < nPairs; ++i) {
        if (!walk.More())
            return walk.Consumed();
        if (!Fits(walk, 3, 16))
            break;
        strName.Format("dPhysical%u-bDesignator", i + 1);
        walk.ReadRenamed(FieldDesignator, i, &strName, nullptr, nullptr);
        strName.Format("dPhysical%u-bFlag-Effort", i + 1);
        walk.ReadRenamed(FieldEffort, i, &strName, nullptr, nullptr);
        strName.Format("dPhysical%u-bFlag-Qualifier", i + 1);
        walk.ReadRenamed(FieldQualifier, i, &strName, nullptr, nullptr);
    }
    ReadLeftover(walk, FieldUnexpected);
    return walk.Consumed();
}
