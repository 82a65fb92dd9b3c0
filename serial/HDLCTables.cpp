// The field catalogue of the HDLC decoder: ids 5500 to 5507 in id order. The
// offsets are those of a frame 0x7E 0xFF 0x03 with a two-byte protocol
// number; reading replaces them with the real ones. No field has named
// values. "Protocol High" and "Protocol Low" stand in the catalogue and the
// layer table only: the protocol number stays inside the information bytes.
#include "serial/HDLCSpec.h"

using Spec = CAdvAnlzHDLCSpec;

const SSpecFieldAttr Spec::ms_aDefaultFieldsAttr[Spec::kFieldCount] = {
    {5500, "Information", "Information", "Information that come befor or in the middle of HDLC", 0, 8},
    {5501, "Flag", "Flag",
     "Each frame begins and ends with a Flag Sequence, which is the binary sequence 01111110 (hexadecimal "
     "0x7e).",
     0, 8},
    {5502, "Address", "Address",
     "The Address field is a single octet, which contains the binary sequence 11111111 (hexadecimal 0xff), "
     "the All-Stations address. ",
     8, 8},
    {5503, "Control", "Control",
     "The Control field is a single octet, which contains the binary  sequence 00000011 (hexadecimal 0x03), "
     "the Unnumbered Information (UI) command with the Poll/Final (P/F) bit set to zero. ",
     16, 8},
    {5504, "Protocol High", "Protocol_High", "High byte Protocol ", 24, 8},
    {5505, "Protocol Low", "Protocol_Low", "Low byte Protocol ", 32, 8},
    {5506, "FCS", "FCS",
     "The Frame Check Sequence field defaults to 16 bits (two octets).The FCS is transmitted least "
     "significant octet first, which contains the coefficient of the highest term.      The FCS field is "
     "calculated over all bits of the Address, Control, Protocol, Information and Padding fields, not "
     "including any start and stop bits (asynchronous) nor any bits (synchronous) or octets  (asynchronous "
     "or synchronous) inserted for transparency.  This  also does not include the Flag Sequences nor the FCS "
     "field itself. ",
     40, 16},
    {5507, "Data", "Data", "Data Befor Frame.", 0, 8},
};

const std::array<CString, Spec::kFieldCount> Spec::ms_aFieldNames = FieldNamesOf(Spec::ms_aDefaultFieldsAttr);
const std::array<short, Spec::kFieldCount> Spec::ms_aFieldIds = FieldIdRange<Spec::kFieldCount>(Spec::kFirstId);
const SFieldTable Spec::ms_table = {Spec::ms_aDefaultFieldsAttr, Spec::ms_aFieldNames.data(),
                                    Spec::ms_aFieldIds.data(), Spec::kFieldCount, Spec::kFirstId};
