// Removal of the zero bits that a synchronous sender inserts behind five
// ones in a row, so that no data looks like a flag. Only the first frame of a
// payload is unstuffed; the frames behind it reach the readers as captured.
//
// Bits are taken from the low end of each byte, as everywhere in the value,
// so the byte 0x7D (bits 1 0 1 1 1 1 1 0) holds a stuffed run and loses its
// top bit when it stands in the first frame.
#include "serial/HDLCSpec.h"

namespace {

// A body that is cut in place: the form a host hands to BitStuffing.
struct SPlainBody {
    CAdvAnlzData& body;

    std::uint32_t GetLength() const { return body.GetLength(); }
    int GetBit(std::uint32_t dwIndex) const { return body.GetBit(dwIndex); }
    void CutBit(std::uint32_t dwIndex)
    {
        const std::uint32_t dwLength = body.GetLength();
        if (dwIndex < dwLength)
            body = body.GetBits(0, dwIndex) + body.GetBits(dwIndex + 1, dwLength - dwIndex - 1);
    }
};

}  // namespace

// The first frame's body while its stuffed bits are taken out. Cutting a bit
// out of the middle of a value would copy everything behind it, so the view
// keeps the body as captured and copies the bits in front of each cut to the
// result once; a long frame full of stuffed bits costs linear time. The scan
// asks only for bits at or behind the last cut, where a bit's place in the
// body as it now stands is its captured place less the bits cut so far.
class CAdvAnlzHDLCSpec::CBodyView {
public:
    explicit CBodyView(const CAdvAnlzData& captured) : m_captured(captured), m_dwLength(captured.GetLength()) {}

    std::uint32_t GetLength() const noexcept { return m_dwLength; }
    int GetBit(std::uint32_t dwIndex) const noexcept
    {
        return dwIndex < m_dwLength ? m_captured.GetBit(dwIndex + m_dwCut) : 0;
    }
    void CutBit(std::uint32_t dwIndex)
    {
        if (dwIndex >= m_dwLength)
            return;
        const std::uint32_t dwCaptured = dwIndex + m_dwCut;
        m_result += m_captured.GetBits(m_dwCopied, dwCaptured - m_dwCopied);
        m_dwCopied = dwCaptured + 1;
        ++m_dwCut;
        --m_dwLength;
    }
    void CutToWholeBytes() noexcept { m_dwLength -= m_dwLength % 8; }
    // The body as it stands now.
    CAdvAnlzData Result() const
    {
        if (m_dwLength <= m_result.GetLength())
            return m_result.GetBits(0, m_dwLength);
        return m_result + m_captured.GetBits(m_dwCopied, m_dwLength - m_result.GetLength());
    }

private:
    const CAdvAnlzData& m_captured;
    CAdvAnlzData m_result;      // the bits in front of the last cut, without the cut ones
    std::uint32_t m_dwLength;   // the body's length as it now stands
    std::uint32_t m_dwCut = 0;  // bits cut so far
    std::uint32_t m_dwCopied = 0;  // captured bits copied to m_result or cut
};

// Takes bits behind the cursor until eight remain for the byte, in three
// stages: seek a zero (only while no run of ones is counted, so a run that
// begins a byte is not counted), count ones up to five, and judge the bit
// behind five ones: a zero is stuffed and cut out; a one and then a zero are
// a flag; a sixth one keeps the count at five, so the next bit is judged
// again. When the judging took a ninth bit the cursor stays on it, and the
// caller's next step skips the rest of that byte unscanned.
template <class TBody>
void CAdvAnlzHDLCSpec::ScanStuffedBits(TBody& body)
{
    std::uint32_t dwBit = m_dwBitCursor;  // the bit taken last
    int nSteps = 0;                       // bits taken in this call
    int& nOnes = s_nOnesInRow;
    auto take = [&]() {
        ++dwBit;
        ++nSteps;
        return body.GetBit(dwBit);
    };
    while (nSteps < 8) {
        if (nOnes == 0) {
            while (nSteps < 8 && take() == 1) {
            }
            if (nSteps >= 8)
                break;
        }
        while (nOnes < 5 && nSteps < 8)
            nOnes = take() ? nOnes + 1 : 0;
        if (nOnes < 5 || nSteps >= 8)
            break;
        if (take() == 0) {
            body.CutBit(dwBit);
            --dwBit;
            --nSteps;
            nOnes = 0;
        } else if (take() == 0) {
            m_bFlagPending = 1;
            nOnes = 0;
        }
    }
    m_dwBitCursor = nSteps == 8 ? dwBit - 7 : dwBit;
}

std::uint8_t CAdvAnlzHDLCSpec::BitStuffing(CAdvAnlzData& body)
{
    SPlainBody plain{body};
    ScanStuffedBits(plain);
    return static_cast<std::uint8_t>(body.GetBits(m_dwBitCursor, 8));
}

// Splits the stream into head (up to the first flag, and behind it an
// all-stations address with its control byte, escaped or not), body (up to
// and with the flag that closes the first frame; its first byte is never
// taken for that flag) and tail, unstuffs the body a byte at a time, and
// joins the three again. A stream without a flag becomes empty.
void CAdvAnlzHDLCSpec::BitStuffData(CAdvAnlzData& data)
{
    const std::uint32_t dwLength = data.GetLength();
    std::uint8_t byLast = 0;
    bool bFlag = false;
    while (m_dwBitCursor < dwLength && !bFlag) {
        byLast = data[m_dwBitCursor / 8];
        m_dwBitCursor += 8;
        bFlag = byLast == kFlag;
    }
    if (!bFlag) {
        data.Clean();
        m_dwBitCursor = 0;
        m_bFlagPending = 0;
        return;
    }
    byLast = data[m_dwBitCursor / 8];
    if (byLast == kAllStations) {
        m_dwBitCursor += 8;
        byLast = data[m_dwBitCursor / 8];
        if (byLast == kEscape)
            m_dwBitCursor += 8;
        m_dwBitCursor += 8;
    }
    const std::uint32_t dwBodyStart = m_dwBitCursor;
    m_dwBitCursor += 8;
    if (byLast != kFlag) {
        while (m_dwBitCursor < dwLength) {
            byLast = data[m_dwBitCursor / 8];
            m_dwBitCursor += 8;
            if (byLast == kFlag)
                break;
        }
    }
    const CAdvAnlzData head = data.GetBits(0, dwBodyStart);
    const CAdvAnlzData body = data.GetBits(dwBodyStart, m_dwBitCursor - dwBodyStart);
    const CAdvAnlzData tail =
        m_dwBitCursor < dwLength ? data.GetBits(m_dwBitCursor, dwLength - m_dwBitCursor) : CAdvAnlzData();

    // Near its end a body that is no longer whole bytes loses its last
    // partial byte; with nothing behind the body that end comes a byte
    // earlier.
    const std::uint32_t dwSlack = tail.GetLength() == 0 ? 24 : 16;
    CBodyView view(body);
    m_dwBitCursor = 0;
    while (view.GetLength() > m_dwBitCursor) {
        --m_dwBitCursor;
        ScanStuffedBits(view);
        if (view.GetLength() <= m_dwBitCursor + dwSlack && view.GetLength() % 8 != 0)
            view.CutToWholeBytes();
        m_dwBitCursor += 8;
    }
    m_dwBitCursor = 0;
    m_bFlagPending = 0;
    data = head;
    data += view.Result();
    data += tail;
}
