// Images of devices, without what says whose they are.
#pragma once

#include <cstdint>
#include <span>

#include "recording/recording.h"
#include "tools/snapshot/made_up.h"

namespace snapshot {

// A World Wide Name. Its first two octets, the format and what the name is one of, stay: names of one port
// keep what they have in common.
void MakeUpName(std::span<std::uint8_t> name, MadeUp& made_up);

// The memory of a module (SFF-8472, SFF-8636): the serial number is made up, what the maker uses as it likes
// is zero.
void AnonymiseSfp(recording::SfpImage& image, MadeUp& made_up);

// Vital Product Data (PCI Local Bus Specification): serial number and all items without a known meaning.
void AnonymiseVpd(std::span<std::uint8_t> image, MadeUp& made_up);

// A response to Read Diagnostic Parameters (FC-LS): port names and the serial number of the switch's module;
// descriptors of other kinds than the known are zero.
void AnonymiseRdp(std::span<std::uint8_t> response, MadeUp& made_up);

}  // namespace snapshot
