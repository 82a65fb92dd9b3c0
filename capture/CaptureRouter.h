// From capture records to decoder payloads. The router takes the records of
// a capture in order, assembles what spans several records (control
// transfers, bulk-only commands with their data phase), and hands each
// payload with the decoder its route names to a sink; a record that no
// route takes goes to the sink with the reason.
//
// Only open transactions are held, each bounded, so memory stays flat
// whatever the length of the capture.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "capture/BulkOnly.h"
#include "capture/CaptureReader.h"
#include "capture/Routes.h"
#include "capture/UsbDevices.h"
#include "capture/UsbPacket.h"
#include "registry/DecoderRegistry.h"

enum EBluetoothDirection : int {
    BluetoothSent = 0,      // host to controller
    BluetoothReceived = 1,  // controller to host
    BluetoothDirectionUnknown = 2,
};

// Where a payload travelled.
struct SPacketLink {
    enum EKind { None, Usb, Bluetooth };
    EKind eKind = None;
    // USB
    std::uint16_t nBus = 0;
    std::uint16_t nDevice = 0;
    std::uint8_t nEndpoint = 0;
    bool bIn = false;
    EUsbTransfer eTransfer = UsbOtherTransfer;
    // Bluetooth
    EBluetoothDirection eDirection = BluetoothDirectionUnknown;
    int nHCIKind = 0;

    // The USB link of a packet.
    static SPacketLink Of(const SUsbPacket& packet)
    {
        SPacketLink link;
        link.eKind = Usb;
        link.nBus = packet.nBus;
        link.nDevice = packet.nDevice;
        link.nEndpoint = packet.nEndpoint;
        link.bIn = packet.bIn;
        link.eTransfer = packet.eTransfer;
        return link;
    }
};

struct SRoutedPayload {
    std::uint64_t nFrame = 0;   // the record that completed the payload, from 1
    std::int64_t nTime = 0;     // its time in microseconds
    SPacketLink link;
    const SDecoderEntry* pEntry = nullptr;
    SDecodeOptions options;
    const std::uint8_t* pData = nullptr;  // valid during the call only
    std::size_t nData = 0;
};

struct SUnroutedRecord {
    std::uint64_t nFrame = 0;
    std::int64_t nTime = 0;
    SPacketLink link;
    const std::string* pReason = nullptr;
    const std::uint8_t* pData = nullptr;  // the record's bytes
    std::size_t nData = 0;
};

class ICaptureSink {
public:
    virtual ~ICaptureSink() = default;
    virtual void Payload(const SRoutedPayload& payload) = 0;
    virtual void Unrouted(const SUnroutedRecord& record) = 0;
};

class CCaptureRouter {
public:
    // With pForced, every record's payload goes to that decoder (with
    // forcedOptions; Bluetooth records keep their own HCI kind).
    explicit CCaptureRouter(ICaptureSink& sink, const SDecoderEntry* pForced = nullptr,
                            const SDecodeOptions& forcedOptions = SDecodeOptions());

    // --usb-class BUS.DEVICE[.INTERFACE]=NAME.
    bool AddUsbClass(const std::string& strSpec, std::string& strError) { return m_devices.AddOverride(strSpec, strError); }

    void Feed(const SCaptureRecord& record);
    // Emits the commands still open, whose status never came (at their last
    // record), as the capture ends or breaks off.
    void Finish();

private:
    void Emit(ERoute eRoute, const SCaptureRecord& record, const SPacketLink& link, const std::uint8_t* pData,
              std::size_t nData);
    void EmitWith(const SResolvedRoute& route, std::uint64_t nFrame, std::int64_t nTime, const SPacketLink& link,
                  const std::uint8_t* pData, std::size_t nData);
    // A record that no route takes; pData, when given, is the payload it
    // completed (a control transfer), shown instead of the record.
    void Unrouted(const SCaptureRecord& record, const SPacketLink& link, const std::string& strReason,
                  const std::uint8_t* pData = nullptr, std::size_t nData = 0);

    void FeedForced(const SCaptureRecord& record);
    void FeedBluetooth(const SCaptureRecord& record);
    // Bluetooth: the HCI packet of a record, its kind and direction; false
    // with the reason when the record holds none.
    bool TakeHCI(const SCaptureRecord& record, SPacketLink& link, const std::uint8_t*& pData, std::size_t& nData,
                 std::string& strReason) const;

    // USB (UsbRoutes.cpp).
    void FeedUsb(const SCaptureRecord& record);
    void FeedUsbControl(const SCaptureRecord& record, const SUsbPacket& packet, SPacketLink& link);
    void RouteControlTransfer(const SCaptureRecord& record, const SUsbControlTransfer& transfer, SPacketLink& link);
    void FeedUsbInterrupt(const SCaptureRecord& record, const SUsbPacket& packet, const SPacketLink& link);
    void FeedUsbBulk(const SCaptureRecord& record, const SUsbPacket& packet, const SPacketLink& link);
    bool FeedBulkOnly(const SCaptureRecord& record, const SUsbPacket& packet, const SPacketLink& link,
                      const SUsbClass& cls);
    void EmitCommand(SBulkOnlySession& session, std::uint64_t nFrame, std::int64_t nTime, const SPacketLink& link);
    SUsbClass ClassOfEndpoint(const SCaptureRecord& record, const SUsbPacket& packet) const;

    ICaptureSink& m_sink;
    const SDecoderEntry* m_pForced;
    SDecodeOptions m_forcedOptions;
    std::array<SResolvedRoute, RouteCount> m_aRoutes;
    CUsbControlAssembler m_control;
    CUsbDevices m_devices;
    CBulkOnlySessions m_bulkOnly;
    std::vector<std::uint8_t> m_aPayload;  // a payload put together from pieces
    std::string m_strReason;
};
