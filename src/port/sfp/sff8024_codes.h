// Codes of SFF-8024, the reference tables of the SFF transceiver standards.
// The odd spellings are meant: users' scripts know them.
#pragma once

#include "port/sfp/sfp_code.h"

// SFF-8024 table 4-1: what the module is.
inline constexpr SfpCode IdentifierCodes[] = {
    {0x00, "Unknown or unspecified"},
    {0x01, "GBIC"},
    {0x02, "Module/connector soldered to motherboard"},
    {0x03, "SFP/SFP+/SFP28 and later"},
    {0x04, "300 pin XBI"},
    {0x05, "XENPAK"},
    {0x06, "XFP"},
    {0x07, "XFF"},
    {0x08, "XFP-E"},
    {0x09, "XPAK"},
    {0x0a, "X2"},
    {0x0b, "DWDM-SFP/SFP+"},
    {0x0c, "QSFP"},
    {0x0d, "QSFP+"},
    {0x0e, "CXP"},
    {0x0f, "Shielded Mini Multilane HD 4X"},
    {0x10, "Shielded Mini Multilane HD 8X"},
    {0x11, "QSFP28"},
    {0x12, "CXP2"},
    {0x13, "CDFP"},
    {0x14, "Shielded Mini Multilane HD 4X Fanout Cable"},
    {0x15, "Shielded Mini Multilane HD 8X Fanout Cable"},
    {0x16, "CDFP"},
    {0x17, "microQSFP"},
    {0x18, "QSFP-DD Duoble Density 8X Pluggable Transceiver"},
};

// SFF-8024 table 4-3.
inline constexpr SfpCode ConnectorCodes[] = {
    {0x00, "Unknown or unspecified"},
    {0x01, "SC (Subscriber Connector)"},
    {0x02, "Fibre Channel Style 1 copper connector"},
    {0x03, "Fibre Channel Style 2 copper connector"},
    {0x04, "BNC/TNC"},
    {0x05, "Fibre Channel coaxial headers"},
    {0x06, "FibreJack"},
    {0x07, "LC (Lucent Connector)"},
    {0x08, "MT-RJ"},
    {0x09, "MU"},
    {0x0a, "SG"},
    {0x0b, "Optical pigtail"},
    {0x0c, "MPO 1x12"},
    {0x0d, "MPO 2x16"},
    {0x20, "HSSDC II"},
    {0x21, "Copper Pigtail"},
    {0x22, "RJ45"},
    {0x23, "No separable connector"},
    {0x24, "MXC 2x16"},
    {0x25, "CS optical connector"},
    {0x26, "SN optical connector"},
    {0x27, "MPO 2x12"},
    {0x28, "MPO 1x16"},
};

// SFF-8024 table 4-2, SFP column.
inline constexpr SfpCode EncodingCodesSfp[] = {
    {0x00, "Unspecified"},     {0x01, "8B10B"},  {0x02, "4B5B"},     {0x03, "NRZ"},  {0x04, "Manchester"},
    {0x05, "SONET Scrambled"}, {0x06, "64B66B"}, {0x07, "256B257B"}, {0x08, "PAM4"},
};

// SFF-8024 table 4-2, QSFP column.
inline constexpr SfpCode EncodingCodesQsfp[] = {
    {0x00, "Unspecified"}, {0x01, "8B10B"},           {0x02, "4B5B"},
    {0x03, "NRZ"},         {0x04, "SONET Scrambled"}, {0x05, "64B66B"},
    {0x06, "Manchester"},  {0x07, "256B257B"},        {0x08, "PAM4"},
};

// SFF-8024 table 4-4, Fibre Channel rows.
inline constexpr SfpCode ExtendedComplianceCodes[] = {
    {0x00, "Unspecified"},
    {0x7f, "256GFC-SW4 (FC-PI-7P)"},
    {0x80, "64GFC (FC-PI-7)"},
    {0x81, "128GFC (FC-PI-8)"},
};

// SFF-8024 table 4-4, as speeds.
inline constexpr SfpCode ExtendedEthernetSpeedCodes[] = {
    {0x00, "Unspecified"},
    {0x01, "100 Gbit/Sec or 25 Gbit/Sec"},
    {0x02, "100 Gbit/Sec or 25 Gbit/Sec"},
    {0x03, "100 Gbit/Sec or 25 Gbit/Sec"},
    {0x04, "100 Gbit/Sec or 25 Gbit/Sec"},
    {0x05, "100 Gbit/Sec"},
    {0x06, "100 Gbit/Sec"},
    {0x07, "100 Gbit/Sec"},
    {0x08, "100 Gbit/Sec"},
    {0x09, "Obsolete"},
    {0x0a, "Reserved"},
    {0x0b, "100 Gbit/Sec or 25 Gbit/Sec"},
    {0x0c, "25 Gbit/Sec"},
    {0x0d, "25 Gbit/Sec"},
    {0x0e, "Reserved"},
    {0x0f, "Reserved"},
    {0x10, "40 Gbit/Sec"},
    {0x11, "10 Gbit/Sec"},
    {0x12, "40 Gbit/Sec"},
    {0x13, "G959.1"},
    {0x14, "G959.1"},
    {0x15, "G959.1"},
    {0x16, "10 Gbit/Sec"},
    {0x17, "100 Gbit/Sec"},
    {0x18, "100 Gbit/Sec"},
    {0x19, "100 Gbit/Sec"},
    {0x1a, "100 Gbit/Sec"},
    {0x1b, "Reserved"},
};
