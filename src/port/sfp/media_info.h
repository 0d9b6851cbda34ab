// The summary of a module that a person reads first.
#pragma once

#include "framework/report_text.h"
#include "port/sfp/sfp_image.h"

// Appends the module's maker, its designation as FC-PI spells link variants ("3200-M5-SN-I"), and its speeds.
// `show_installed` adds the line that a module is there.
void DisplayMediaInfo(ReportText& text, SfpImage image, bool show_installed);
