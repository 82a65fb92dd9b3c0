#include <busdecode/registry/DecoderRegistry.h>
#include <iostream>

int main() {
    const std::uint8_t cbw[31] = {0x55, 0x53, 0x42, 0x43, 1, 0, 0, 0, 0x24, 0, 0, 0, 0x80, 0, 6, 0x12, 0, 0, 0, 0x24};
    const SDecoderEntry* bot = FindDecoder("bot");
    std::unique_ptr<CProtocolPacket> packet = bot->pfnNewPacket({});
    bot->pfnDecode(*packet, CAdvAnlzData::FromBytes(cbw, sizeof cbw * 8), {});
    for (unsigned char i = 1; i <= packet->GetFieldCount(); ++i)
        std::cout << packet->GetFieldName(i) << " = 0x" << packet->GetFieldValue(i)->ToString(0, DisplayHexadecimal, 0) << "\n";
    KillAllDecoders();
}
