// The Read Diagnostic Parameters descriptors about the attached port's SFP module (FC-LS).
#pragma once

#include <string>

#include "framework/command_run.h"
#include "framework/report_text.h"
#include "port/rdp_descriptor.h"

// Each appends the lines of one descriptor, without its heading.
void DecodeSFPDiagParamDescriptorData(CommandRun& run, const RdpDescriptor& descriptor, ReportText& text);
void DecodeOpticalElementData(CommandRun& run, const RdpDescriptor& descriptor, ReportText& text);
void DecodeOpticalProductDataDescriptor(CommandRun& run, const RdpDescriptor& descriptor, ReportText& text);

// The vendor name in an optical product data descriptor.
std::string DecodeSwitchVendorFromOpticalProductDescriptor(CommandRun& run, const RdpDescriptor& descriptor);
