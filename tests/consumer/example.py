import busdecode

cbw = bytes.fromhex("55534243 01000000 24000000 80 00 06 12000000 24000000 00000000 00000000")
print(busdecode.decode("bot", cbw)["request_name"])  # Command Block Wrapper
hci = busdecode.Decoder("hci", hci_kind=0)
for packet in hci.decode_many([bytes.fromhex("030c00"), bytes.fromhex("01040533 8b9e0800")]):
    print(packet["request_name"], [(f["name"], f["value"]) for f in packet["fields"]])
