// Turns the answer to a Read Diagnostic Parameters ELS (FC-LS), a list of tagged descriptors, into text.
#pragma once

#include <cstdint>
#include <span>

#include "framework/report_text.h"

// Decodes the descriptor list: its length in the first four bytes, then the descriptors, each with a tag, a
// length and words of four bytes, all big-endian. No length leads outside `response`: a descriptor that its
// end cuts is decoded as far as its words are there. A word that is no known tag is passed over. `is_cisco`
// tells whether the switch names that vendor; nothing depends on it.
void ParseRDPDataBuffer(std::span<const std::uint8_t> response, ReportText& text, bool& is_cisco);
