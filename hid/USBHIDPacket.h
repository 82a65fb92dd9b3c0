// The one packet class of the four HID decoders. Its selector says which
// decoder it belongs to (0 class request, 1 HID descriptor, 2 report
// descriptor, 3 physical descriptor), which is how the overlapping field ids
// of those decoders are told apart. For a report descriptor it also turns
// the flat field list into the report item list: one line per descriptor
// item, indented by its collection nesting, with the item's bits.
#pragma once

#include <vector>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "platform/Arrays.h"
#include "platform/String.h"

class CUSBHIDDecoder;

// One item of a report descriptor as the host shows it.
struct SReportItem {
    CString strText;     // indentation, the item's name and its parenthesised part
    CAdvAnlzData value;  // the item's data, then its prefix byte
};

class CUSBHIDPacket : public CReqRespProtocolPacket {
public:
    static const CRuntimeClass classCUSBHIDPacket;

    enum : int {
        SelectorRequest = 0,
        SelectorHIDDescriptor = 1,
        SelectorReportDescriptor = 2,
        SelectorPhysicalDescriptor = 3,
    };

    // Selector 1, the HID descriptor.
    CUSBHIDPacket();
    explicit CUSBHIDPacket(int nHIDSpec);
    CUSBHIDPacket(int nHIDSpec, const CAdvAnlzData& data);
    CUSBHIDPacket(int nHIDSpec, const CByteArray& aBytes);
    // Takes the source's selector, then assigns.
    CUSBHIDPacket(const CUSBHIDPacket& other);
    // As the base assignment (fields, names, counts and the decoder the
    // fields belong to); the selector stays the target's own. The report
    // items are not copied: the target's list is emptied, since the fields
    // it described are gone.
    CUSBHIDPacket& operator=(const CUSBHIDPacket& other);
    ~CUSBHIDPacket() override;

    const CRuntimeClass* GetRuntimeClass() const override { return &classCUSBHIDPacket; }

    // Stores the selector; 0 to 3 bind the packet to that decoder. A packet
    // that changes decoder drops its fields and items, which belong to the
    // decoder it leaves. Any other value leaves the decoder as it was.
    int SetHIDSpec(int nHIDSpec);
    int GetHIDSpec() const noexcept { return m_nHIDSpec; }

    using CReqRespProtocolPacket::RestructBy;
    // Decodes through the selected decoder; a report descriptor whose first
    // item is a short item then gets its item list. The list always
    // describes this decode: a second decode replaces it.
    int RestructBy(const CAdvAnlzData& data) override;
    // Builds the report item list from the packet's fields, replacing it.
    int InterpretReportPacket();

    // The item list, for a packet of selector 2: its size (-1 for any other
    // selector), an item's line (empty otherwise) and value (64 zero bits
    // otherwise, and for an index outside the list).
    int GetNumberOfReportItems() const;
    CString GetReportItem(int nIndex) const;
    CAdvAnlzData GetReportValue(int nIndex) const;
    // Collections the descriptor left open (negative for surplus ends).
    int GetCollectionDepth() const noexcept { return m_nCollectionDepth; }

    unsigned long SetFieldData(unsigned char nIndex, const CAdvAnlzData& value) override
    {
        return CProtocolPacket::SetFieldData(nIndex, value);
    }

protected:
    static const CRuntimeClass* _GetBaseClass();

private:
    // Binds the packet to pSpec, counting it there and leaving the decoder
    // it was bound to.
    void Bind(CProtocolSpec* pSpec);

    int m_nHIDSpec = SelectorHIDDescriptor;
    std::vector<SReportItem> m_aReportItems;
    int m_nCollectionDepth = 0;
};
