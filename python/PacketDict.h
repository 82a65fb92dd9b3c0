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

// Slots of each cache of strings and dict templates.
constexpr std::size_t kCacheSlots = 4096;

// Makes the keys, templates and caches; once, at import.
void InitPacketDicts();

// Makes the caches anew with nSlots slots each (a power of two). With one
// slot, every packet's texts and dicts are checked against the last ones
// made: the tests run so to see that a cached object is never taken for a
// different one.
void SetCacheSlots(std::size_t nSlots);

// Packet n of the batch as a dict.
pybind11::object PacketDict(const CDecodedBatch& batch, std::size_t n);

// A decoder's text as a str; invalid UTF-8 as the tool's JSON writes it.
pybind11::str TextObject(const std::string& s);
