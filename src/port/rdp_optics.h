// The Read Diagnostic Parameters descriptors about the attached port's SFP module (FC-LS).
#pragma once

#include <string>

#include "framework/report_text.h"
#include "port/rdp_words.h"

// Each writes one descriptor's lines behind its heading.
void DecodeSFPDiagParamDescriptorData(const RdpDescriptor& descriptor, ReportText& text);
void DecodeOpticalElementData(const RdpDescriptor& descriptor, ReportText& text);
void DecodeOpticalProductDataDescriptor(const RdpDescriptor& descriptor, ReportText& text);

// The vendor name in an optical product data descriptor.
std::string DecodeSwitchVendorFromOpticalProductDescriptor(const RdpDescriptor& descriptor);
