// RFCOMM payloads out of Bluetooth HCI ACL traffic, for the capture tests of
// the AT and OBEX decoders: ACL packets are joined into L2CAP frames per
// handle and direction, the signalling channel tells which channels were
// opened for RFCOMM (PSM 3), and the information field of every UIH frame on
// a data channel is handed out. The frame check sequence of each UIH frame is
// verified, so that a wrong cut shows as a count of bad frames.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <utility>
#include <vector>

struct SRfcommPayload {
    bool bFromController = false;
    unsigned nHandle = 0;
    unsigned nDLCI = 0;
    std::vector<std::uint8_t> aData;
};

class CRfcommExtractor {
public:
    // One HCI ACL data packet: handle and flags, length, data.
    void AddAcl(const std::uint8_t* p, std::size_t n, bool bFromController, std::vector<SRfcommPayload>& aOut)
    {
        if (n < 4)
            return;
        const unsigned nHandle = (p[0] | (p[1] << 8)) & 0x0FFF;
        const unsigned nBoundary = (p[1] >> 4) & 0x3;
        const std::size_t nLength = std::min<std::size_t>(p[2] | (p[3] << 8), n - 4);
        const auto key = std::make_pair(nHandle, bFromController);
        std::vector<std::uint8_t>& frame = m_mapPartial[key];
        if (nBoundary != 1)  // a first fragment starts a new L2CAP frame
            frame.clear();
        frame.insert(frame.end(), p + 4, p + 4 + nLength);
        if (frame.size() < 4)
            return;
        const std::size_t nFrame = frame[0] | (frame[1] << 8);
        if (frame.size() < 4 + nFrame)
            return;
        const unsigned nCID = frame[2] | (frame[3] << 8);
        const std::vector<std::uint8_t> aInfo(frame.begin() + 4, frame.begin() + 4 + static_cast<long>(nFrame));
        frame.clear();
        if (nCID == 1)
            Signalling(nHandle, aInfo);
        else if (m_setRfcomm.count({nHandle, nCID}))
            Rfcomm(nHandle, bFromController, aInfo, aOut);
    }

    std::size_t BadFrames() const noexcept { return m_nBadFrames; }

private:
    void Signalling(unsigned nHandle, const std::vector<std::uint8_t>& a)
    {
        for (std::size_t i = 0; i + 4 <= a.size();) {
            const unsigned nCode = a[i], nIdent = a[i + 1];
            const std::size_t nLength = a[i + 2] | (a[i + 3] << 8);
            const std::uint8_t* c = a.data() + i + 4;
            if (i + 4 + nLength > a.size())
                break;
            if (nCode == 0x02 && nLength >= 4)  // connection request: PSM, source CID
                m_mapPendingPSM[{nHandle, nIdent}] = c[0] | (c[1] << 8);
            if (nCode == 0x03 && nLength >= 4 && m_mapPendingPSM[{nHandle, nIdent}] == 3) {
                // connection response: both ends of the channel carry RFCOMM
                m_setRfcomm.insert({nHandle, static_cast<unsigned>(c[0] | (c[1] << 8))});
                m_setRfcomm.insert({nHandle, static_cast<unsigned>(c[2] | (c[3] << 8))});
            }
            i += 4 + nLength;
        }
    }

    static std::uint8_t Fcs(const std::uint8_t* p, std::size_t n)
    {
        std::uint8_t crc = 0xFF;
        for (std::size_t i = 0; i < n; ++i) {
            crc ^= p[i];
            for (int b = 0; b < 8; ++b)
                crc = (crc & 1) ? static_cast<std::uint8_t>((crc >> 1) ^ 0xE0) : static_cast<std::uint8_t>(crc >> 1);
        }
        return static_cast<std::uint8_t>(0xFF - crc);
    }

    void Rfcomm(unsigned nHandle, bool bFromController, const std::vector<std::uint8_t>& a,
                std::vector<SRfcommPayload>& aOut)
    {
        if (a.size() < 4)
            return;
        const unsigned nDLCI = a[0] >> 2;
        const std::uint8_t nControl = a[1];
        if ((nControl & 0xEF) != 0xEF || nDLCI == 0)
            return;  // not a UIH frame on a data channel
        std::size_t i = 2;
        std::size_t nLength = a[i] >> 1;
        if (a[i] & 1) {
            i += 1;
        } else {
            nLength |= static_cast<std::size_t>(a[i + 1]) << 7;
            i += 2;
        }
        if (nControl & 0x10)
            ++i;  // credits
        if (i + nLength + 1 != a.size() || Fcs(a.data(), 2) != a.back()) {
            ++m_nBadFrames;
            return;
        }
        if (nLength == 0)
            return;
        SRfcommPayload payload;
        payload.bFromController = bFromController;
        payload.nHandle = nHandle;
        payload.nDLCI = nDLCI;
        payload.aData.assign(a.begin() + static_cast<long>(i), a.begin() + static_cast<long>(i + nLength));
        aOut.push_back(std::move(payload));
    }

    std::map<std::pair<unsigned, bool>, std::vector<std::uint8_t>> m_mapPartial;
    std::map<std::pair<unsigned, unsigned>, unsigned> m_mapPendingPSM;
    std::set<std::pair<unsigned, unsigned>> m_setRfcomm;
    std::size_t m_nBadFrames = 0;
};
