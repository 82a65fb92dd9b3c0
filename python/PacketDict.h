// Decoded packets as Python objects: the dict of a packet has the keys and
// values of the tool's --json line, in its order. Dict keys are interned,
// field dicts are copied from per-record templates and repeated texts and
// small numbers are shared, so a packet costs little more than its dicts.
// Everything here needs the interpreter lock.
#pragma once

#include <pybind11/pybind11.h>

#include <cstddef>
#include <string>

#include "python/DecodedPacket.h"

// Makes the keys, templates and caches; once, at import.
void InitPacketDicts();

// Packet n of the batch as a dict.
pybind11::object PacketDict(const CDecodedBatch& batch, std::size_t n);

// A decoder's text as a str; invalid UTF-8 as the tool's JSON writes it.
pybind11::str TextObject(const std::string& s);
