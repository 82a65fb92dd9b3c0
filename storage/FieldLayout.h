// A fixed run of fields as a table: what a command block or a fixed part of
// a returned structure looks like on the wire, stated once as data. The
// command-set decoders derived from the SCSI decoder read such tables with
// their own walk, so that a block reader is its field order and nothing more.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/AdvAnlzData.h"
#include "core/ProtocolSpec.h"

// One field of a layout.
struct SLayoutField {
    enum EFlags : std::uint8_t {
        BigEndian = 1,  // a multi-byte number sent most significant byte first
        Kept = 2,       // the value steers what follows: the reader hands it up
        Response = 4,   // the field belongs to the response side
    };

    unsigned short nId;
    std::uint16_t nBits = 0;  // 0: the catalogue's default width
    std::uint8_t nFlags = 0;
};

struct SLayout {
    const SLayoutField* pFields;
    std::size_t nFields;

    const SLayoutField* begin() const noexcept { return pFields; }
    const SLayoutField* end() const noexcept { return pFields + nFields; }
};

template <std::size_t N>
constexpr SLayout LayoutOf(const SLayoutField (&aFields)[N]) noexcept
{
    return SLayout{aFields, N};
}

// Reads every field of a layout with a walk (a CFieldCursor) and stores the
// values of the kept fields, as 32-bit numbers, in aKept in their order. At
// most nKept values are stored.
template <class TWalk>
void ReadLayout(TWalk& walk, const SLayout& layout, std::uint32_t* aKept = nullptr, std::size_t nKept = 0)
{
    std::size_t nNext = 0;
    for (const SLayoutField& field : layout) {
        const CAdvAnlzData& value = walk.Read(field.nId, field.nBits,
                                              (field.nFlags & SLayoutField::BigEndian) ? ByteOrderReversed
                                                                                       : ByteOrderAsStored);
        if ((field.nFlags & SLayoutField::Kept) && nNext < nKept)
            aKept[nNext++] = static_cast<std::uint32_t>(value);
    }
}
