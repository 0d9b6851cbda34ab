// The report of a pluggable module.
#pragma once

#include "framework/report_text.h"
#include "port/sfp/sfp_image.h"

// Appends all that the image says: the summary, the table of measured values and every field of the memory
// map.
void AppendDmiReport(ReportText& text, SfpImage image);
