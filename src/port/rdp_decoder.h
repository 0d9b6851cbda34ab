// Turns the answer to a Read Diagnostic Parameters ELS (FC-LS), a list of tagged descriptors, into text.
#pragma once

#include <cstdint>
#include <span>

#include "framework/command_run.h"
#include "framework/report_text.h"

// Decodes the descriptor list: its length in the first four bytes, then the descriptors, each with a tag, a
// length and words of four bytes, all big-endian. No length leads outside `response`: a descriptor that the
// response cuts is decoded as far as it goes. A word that is no known tag is passed over. `is_cisco` says
// whether the switch names that vendor; nothing depends on it.
void ParseRDPDataBuffer(CommandRun& run, std::span<const std::uint8_t> response, ReportText& text,
                        bool& is_cisco);
