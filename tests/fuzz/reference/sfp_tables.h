// The memory maps of a pluggable module (SFF-8472, SFF-8636) and its codes, written down a second time as
// what the report shows of them.
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference {

struct Code {
  std::uint8_t value;
  const char* text;
};

enum class Show : std::uint8_t { kHeading, kCode, kDump, kBits, kText, kHex, kFlags };

struct Field {
  Show show;
  std::uint16_t offset;
  std::uint16_t size;
  const char* label;
  const Code* codes = nullptr;
  std::size_t code_count = 0;
};

inline constexpr Code kAlarmFlagBits1[] = {
    {0x01, "TX Signal Power Low Alarm"},
    {0x02, "TX Signal Power High Alarm"},
    {0x04, "TX Bias Low Alarm"},
    {0x08, "TX Bias High Alarm"},
    {0x10, "Vcc Low Alarm"},
    {0x20, "Vcc High Alarm"},
    {0x40, "Temp Low Alarm"},
    {0x80, "Temp High Alarm"},
};

inline constexpr Code kAlarmFlagBits2[] = {
    {0x40, "RX Signal Power Low Alarm"},
    {0x80, "RX Signal Power High Alarm"},
};

inline constexpr Code kConnectorCodes[] = {
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

inline constexpr Code kDiagMonitoringBitsQsfp[] = {
    {0x04, "Transmitter Power Measurement"},
    {0x08, "Received Power Measurement"},
};

inline constexpr Code kDiagMonitoringBitsSfp[] = {
    {0x04, "Address change required"}, {0x08, "Power Measurement"},       {0x10, "Externally Calibrated"},
    {0x20, "Internally Calibrated"},   {0x40, "Digital diag monitoring"}, {0x80, "Legacy diagnostic"},
};

inline constexpr Code kEncodingCodesQsfp[] = {
    {0x00, "Unspecified"}, {0x01, "8B10B"},           {0x02, "4B5B"},
    {0x03, "NRZ"},         {0x04, "SONET Scrambled"}, {0x05, "64B66B"},
    {0x06, "Manchester"},  {0x07, "256B257B"},        {0x08, "PAM4"},
};

inline constexpr Code kEncodingCodesSfp[] = {
    {0x00, "Unspecified"},     {0x01, "8B10B"},  {0x02, "4B5B"},     {0x03, "NRZ"},  {0x04, "Manchester"},
    {0x05, "SONET Scrambled"}, {0x06, "64B66B"}, {0x07, "256B257B"}, {0x08, "PAM4"},
};

inline constexpr Code kEnhancedOptionBitsQsfp[] = {
    {0x04, "Application Select Table Declaration"},
    {0x08, "Rate Selection Declaration"},
    {0x10, "Initialization Complete Flag implemented"},
};

inline constexpr Code kEnhancedOptionBitsSfp[] = {
    {0x02, "Optional Soft Rate Select ctrl per SFF-8431"},
    {0x04, "Optional Application Select ctrl per SFF-8079"},
    {0x08, "Optional Soft RATE_SELECT ctrl and monitoring"},
    {0x10, "Optional Soft RX_LOS monitoring"},
    {0x20, "Optional Soft TX_FAULT monitoring"},
    {0x40, "Optional Soft TX_DISABLE ctrl and monitoring"},
    {0x80, "Optional Alarm/warning flags"},
};

inline constexpr Code kEthernetSpeedBitsQsfp[] = {
    {0x01, "40 Gbits/Sec"}, {0x02, "40 Gbits/Sec"}, {0x04, "40 Gbits/Sec"}, {0x08, "40 Gbits/Sec"},
    {0x10, "10 Gbits/Sec"}, {0x20, "10 Gbits/Sec"}, {0x40, "10 Gbits/Sec"}, {0x80, "Extended"},
};

inline constexpr Code kEthernetSpeedBitsSfp[] = {
    {0x10, "10 Gbits/Sec"},
    {0x20, "10 Gbits/Sec"},
    {0x40, "10 Gbits/Sec"},
    {0x80, "10 Gbits/Sec"},
};

inline constexpr Code kEwrapControlBits[] = {
    {0x01, "EWRAP Disable"},
    {0x02, "EWRAP Enable"},
};

inline constexpr Code kExtendedComplianceCodes[] = {
    {0x00, "Unspecified"},
    {0x7f, "256GFC-SW4 (FC-PI-7P)"},
    {0x80, "64GFC (FC-PI-7)"},
    {0x81, "128GFC (FC-PI-8)"},
};

inline constexpr Code kExtendedEthernetSpeedCodes[] = {
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

inline constexpr Code kExtendedIdentifierCodesQsfp[] = {
    {0x00, "Power Class 1 (1.5 W max)"},
    {0x04, "Power Class 1 (1.5 W max), CDR in Rx"},
    {0x08, "Power Class 1 (1.5 W max), CDR in Tx"},
    {0x0c, "Power Class 1 (1.5 W max), CDR in Tx and Rx"},
    {0x40, "Power Class 2 (2.0 W max)"},
    {0x44, "Power Class 2 (2.0 W max), CDR in Rx"},
    {0x48, "Power Class 2 (2.0 W max), CDR in Tx"},
    {0x4c, "Power Class 2 (2.0 W max), CDR in Tx and Rx"},
    {0x80, "Power Class 3 (2.5 W max)"},
    {0x84, "Power Class 3 (2.5 W max), CDR in Rx"},
    {0x88, "Power Class 3 (2.5 W max), CDR in Tx"},
    {0x8c, "Power Class 3 (2.5 W max), CDR in Tx and Rx"},
    {0xc0, "Power Class 4 (3.5 W max)"},
    {0xc1, "Power Class 5 (4.0 W max)"},
    {0xc2, "Power Class 6 (4.5 W max)"},
    {0xc3, "Power Class 7 (5.0 W max)"},
    {0xc4, "Power Class 4 (3.5 W max), CDR in Rx"},
    {0xc8, "Power Class 4 (3.5 W max), CDR in Tx"},
    {0xcc, "Power Class 4 (3.5 W max), CDR in Tx and Rx"},
    {0xcd, "Power Class 5 (4.0 W max), CDR in Tx and Rx"},
    {0xce, "Power Class 6 (4.5 W max), CDR in Tx and Rx"},
    {0xcf, "Power Class 7 (5.0 W max), CDR in Tx and Rx"},
};

inline constexpr Code kExtendedIdentifierCodesSfp[] = {
    {0x00, "GBIC definition is not specified"},   {0x01, "GBIC is compliant with MOD_DEF 1"},
    {0x02, "GBIC is compliant with MOD_DEF 2"},   {0x03, "GBIC is compliant with MOD_DEF 3"},
    {0x04, "GBIC/SFP defined by serial ID only"}, {0x05, "GBIC is compliant with MOD_DEF 5"},
    {0x06, "GBIC is compliant with MOD_DEF 6"},   {0x07, "GBIC is compliant with MOD_DEF 7"},
};

inline constexpr Code kExtendedModuleControlBits[] = {
    {0x01, "Optional Power Level Select"},
    {0x02, "Optional Power Level Operation State"},
    {0x04, "Power Level 4 Enable"},
    {0x08, "Soft RS(1) Select"},
    {0x10, "Adaptive Input EQ Fail Flag"},
    {0x20, "Reserved"},
    {0x40, "Reserved"},
    {0x80, "Reserved"},
};

inline constexpr Code kExtendedStatusBits[] = {
    {0x02, "Optional Tx CDR Unlocked"},
    {0x04, "64GFC Mode"},
    {0x08, "PAM4 Mode Rx Configured"},
    {0x10, "PAM4 Mode Tx Configured"},
    {0x20, "Reserved"},
    {0x40, "Reserved"},
    {0x80, "Reserved"},
};

inline constexpr Code kFcLengthBits[] = {
    {0x01, "Electrical-InterEnclosure (EL)"},
    {0x02, "Longwave Laser (LS)"},
    {0x04, "Shortwave Laser, linear Rx (SA)"},
    {0x08, "Medium distance (M))"},
    {0x10, "Long Distance (L)"},
    {0x20, "Intermediate Distance (I)"},
    {0x40, "Short Distance (S)"},
    {0x80, "Very Long Distance (V)"},
};

inline constexpr Code kFcLengthShortBits[] = {
    {0x01, "EL"}, {0x02, "LS"}, {0x04, "SA"}, {0x08, "M"}, {0x10, "L"}, {0x20, "I"}, {0x40, "S"}, {0x80, "V"},
};

inline constexpr Code kFcMediaBits[] = {
    {0x01, "Single Mode (SM)"},     {0x04, "Multi-mode 50m (M5)"},   {0x08, "Multi-mode 62.5m (M6)"},
    {0x10, "Video Coax (TV)"},      {0x20, "Minimiature Coax (MI)"}, {0x40, "Shielded Twisted Pair (TP)"},
    {0x80, "Twin Axial Pair (TW)"},
};

inline constexpr Code kFcMediaShortBits[] = {
    {0x01, "SM"}, {0x02, " "},  {0x04, "M5"}, {0x08, "M6"},
    {0x10, "TV"}, {0x20, "MI"}, {0x40, "TP"}, {0x80, "TW"},
};

inline constexpr Code kFcSpeed2Bits[] = {
    {0x01, "6400 MBytes/Sec"},
    {0x02, "12800 MBytes/Sec"},
};

inline constexpr Code kFcSpeed2ShortBits[] = {
    {0x01, "6400"},
    {0x02, "12800"},
};

inline constexpr Code kFcSpeedBits[] = {
    {0x01, "100 MBytes/Sec"},  {0x04, "200 MBytes/Sec"}, {0x08, "3200 MBytes/Sec"}, {0x10, "400 MBytes/Sec"},
    {0x20, "1600 MBytes/Sec"}, {0x40, "800 MBytes/Sec"}, {0x80, "1200 MBytes/Sec"},
};

inline constexpr Code kFcSpeedShortBits[] = {
    {0x01, "100"},  {0x04, "200"}, {0x08, "3200"}, {0x10, "400"},
    {0x20, "1600"}, {0x40, "800"}, {0x80, "1200"},
};

inline constexpr Code kFcTechBits[] = {
    {0x01, " "},
    {0x02, "Copper FC-BaseT (LR1/LR2/LR3)"},
    {0x04, "Copper Passive (IR1/IR2)"},
    {0x08, "Copper Active (SR1/SR2)"},
    {0x10, "Longwave Laser (LL)"},
    {0x20, "Shortwave Laser w/ OFC (SL)"},
    {0x40, "Shortwave Laser w/o OFC (SN)"},
    {0x80, "Electrical Intra-Enclosure (EL)"},
};

inline constexpr Code kFcTechShortBits[] = {
    {0x01, " "},  {0x02, "LR"}, {0x04, "IR"}, {0x08, "SR"},
    {0x10, "LL"}, {0x20, "SL"}, {0x40, "SN"}, {0x80, "EL"},
};

inline constexpr Code kIdentifierCodes[] = {
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

inline constexpr Code kLsnControlBits[] = {
    {0x01, "Train 64G"}, {0x02, "Train 32G"}, {0x04, "Fixed Speed Switch to 64G"},  {0x08, "Reserved"},
    {0x10, "Reserved"},  {0x20, "Reserved"},  {0x40, "Client Rx Adaptation Reset"}, {0x80, "LSN Mode"},
};

inline constexpr Code kOptionBits1Qsfp[] = {
    {0x01, "Rx Output Amplitude Fixed Programmable Settings"},
    {0x02, "Rx Output Emphasis Fixed Programmable Settings"},
    {0x04, "Tx Input Equalization Fixed Programmable Settings"},
    {0x08, "Tx Input Equalization Auto Adaptive Capable"},
};

inline constexpr Code kOptionBits2Qsfp[] = {
    {0x01, "Tx Squelch implemented"},
    {0x02, "Tx Squelch Disable implemented"},
    {0x04, "Rx Output Disable capable"},
    {0x08, "Rx Squelch Disable implemented"},
    {0x10, "Rx CDR Loss of Lock Flag implemented"},
    {0x20, "Tx CDR Loss of Lock Flag implemented"},
    {0x40, "Rx CDR On/Off Control implemented"},
    {0x80, "Tx CDR On/Off Control implemented"},
};

inline constexpr Code kOptionBits3Qsfp[] = {
    {0x02, "Tx Loss of Signal implemented"}, {0x04, "Tx Squelch implemented"},
    {0x08, "TX_FAULT signal implemented"},   {0x10, "TX_DISABLE implemented and disables serial o/p"},
    {0x20, "RATE_SELECT implemented"},       {0x40, "Memory Page 01h provided"},
    {0x80, "Memory Page 02h provided"},
};

inline constexpr Code kOwrapControlBits[] = {
    {0x01, "OWRAP Disable"},
    {0x02, "OWRAP Enable"},
};

inline constexpr Code kRateIdentifierCodes[] = {
    {0x00, "Unspecified"},
    {0x01, "SFF-8079 (4/2/1G Rate_Select & AS0/AS1)"},
    {0x02, "SFF-8431 (8/4/2G Rx Rate_Select only)"},
    {0x03, "Unspecified"},
    {0x04, "SFF-8431 (8/4/2G Tx Rate_Select only)"},
    {0x05, "Unspecified"},
    {0x06, "SFF-8431 (8/4/2G Independent Rx & Tx Rate_select)"},
    {0x07, "Unspecified"},
    {0x08, "FC-PI-5 (16/8/4G Rx Rate_select only)"},
    {0x09, "Unspecified"},
    {0x0a, "FC-PI-5 (16/8/4G Independent Rx, Tx Rate_select"},
    {0x0b, "Unspecified"},
    {0x0c, "FC-PI-6 (32/16/8G Independent Rx, Tx Rate_Select)"},
    {0x0d, "Unspecified"},
    {0x0e, "10/8G Rx and Tx Rate_Select"},
    {0x0f, "Unspecified"},
    {0x10, "FC-PI-7 (64/32/16G Independent Rx, Tx Rate Select)"},
    {0x11, "Unspecified"},
    {0x20, "Rate select based on PMDs as defined by A0h, byte 36 and A2h, byte 67 (Rx, Tx Rate Select)"},
};

inline constexpr Code kSff8472ComplianceCodes[] = {
    {0x00, "Digital diag not included or undefined"},
    {0x01, "Includes functionality described in Rev 9.3 of SFF-8472"},
    {0x02, "Includes functionality described in Rev 9.5 of SFF-8472"},
    {0x03, "Includes functionality described in Rev 10.2 of SFF-8472"},
    {0x04, "Includes functionality described in Rev 10.4 of SFF-8472"},
    {0x05, "Includes functionality described in Rev 11.0 of SFF-8472"},
    {0x06, "Includes functionality described in Rev 11.3 of SFF-8472"},
    {0x07, "Includes functionality described in Rev 11.4 of SFF-8472"},
    {0x08, "Includes functionality described in Rev 12.3 of SFF-8472"},
    {0x09, "Includes functionality described in Rev 12.4 of SFF-8472"},
};

inline constexpr Code kStatusControlBits[] = {
    {0x01, "Data_Ready_Bar"},
    {0x02, "LOS"},
    {0x04, "TX Fault"},
    {0x08, "Soft RX Rate Select"},
    {0x10, "RX Rate Select State"},
    {0x40, "Soft TX Disable"},
    {0x80, "TX Disable State"},
};

inline constexpr Code kTransceiverSignalBits1[] = {
    {0x01, "Linear Receiver Output Implemented"},
    {0x02, "Power Level Declaration"},
    {0x04, "Cooled Transceiver Declaration"},
    {0x08, "Retimer or CDR indicator"},
    {0x10, "Paging implemented indicator"},
    {0x20, "High Power Level Declaration by bit 1"},
    {0x40, "High Power Level Declaration by bits 1 and 5"},
    {0x80, "Reserved"},
};

inline constexpr Code kTransceiverSignalBits2[] = {
    {0x02, "Signal Loss, as defined in SFP MSA"},
    {0x04, "Signal Loss, inverted from SFP MSA"},
    {0x08, "TX_FAULT signal implemented"},
    {0x10, "TX_DISABLE implemented and disables serial o/p"},
    {0x20, "RATE_SELECT implemented"},
    {0x40, "Tunable transmitter technology"},
    {0x80, "Receiver decision threshold implemented"},
};

inline constexpr Code kWarningFlagBits1[] = {
    {0x01, "TX Signal Power Low Warning"},
    {0x02, "TX Signal Power High Warning"},
    {0x04, "TX Bias Low Warning"},
    {0x08, "TX Bias High Warning"},
    {0x10, "Vcc Low Warning"},
    {0x20, "Vcc High Warning"},
    {0x40, "Temp Low Warning"},
    {0x80, "Temp High Warning"},
};

inline constexpr Code kWarningFlagBits2[] = {
    {0x01, "Reserved Warning"},
    {0x02, "Reserved Warning"},
    {0x04, "Reserved Warning"},
    {0x08, "Reserved Warning"},
    {0x10, "Reserved Warning"},
    {0x20, "Reserved Warning"},
    {0x40, "RX Signal Power Low Warning"},
    {0x80, "RX Signal Power High Warning"},
};

inline constexpr Code kWrapControlBits[] = {
    {0x01, "EWRAP Control Bit"},
    {0x02, "EWRAP FORWARD Control Bit"},
    {0x04, "OWRAP Control Bit"},
    {0x08, "OWRAP FORWARD Control Bit"},
};

inline constexpr Field kSfpFields[] = {
    {Show::kHeading, 0, 0, "\nOptical Transceiver Digital Diagnostic Data:"},
    {Show::kHeading, 0, 0, "\nAddress A0"},
    {Show::kCode, 0, 1, "Identifier", kIdentifierCodes, sizeof kIdentifierCodes / sizeof(Code)},
    {Show::kCode, 1, 1, "Extended Identifier", kExtendedIdentifierCodesSfp,
     sizeof kExtendedIdentifierCodesSfp / sizeof(Code)},
    {Show::kCode, 2, 1, "Connector", kConnectorCodes, sizeof kConnectorCodes / sizeof(Code)},
    {Show::kCode, 3, 1, "Ethernet Speed", kEthernetSpeedBitsSfp, sizeof kEthernetSpeedBitsSfp / sizeof(Code)},
    {Show::kDump, 4, 3, "Compliance"},
    {Show::kBits, 7, 1, "FC Link Length", kFcLengthBits, sizeof kFcLengthBits / sizeof(Code)},
    {Show::kBits, 8, 1, "FC Transmitter Tech", kFcTechBits, sizeof kFcTechBits / sizeof(Code)},
    {Show::kBits, 9, 1, "FC Transmission Media", kFcMediaBits, sizeof kFcMediaBits / sizeof(Code)},
    {Show::kBits, 10, 1, "FC Speed", kFcSpeedBits, sizeof kFcSpeedBits / sizeof(Code)},
    {Show::kCode, 11, 1, "Encoding", kEncodingCodesSfp, sizeof kEncodingCodesSfp / sizeof(Code)},
    {Show::kDump, 12, 1, "BR, Nominal"},
    {Show::kCode, 13, 1, "Rate Identifier", kRateIdentifierCodes, sizeof kRateIdentifierCodes / sizeof(Code)},
    {Show::kDump, 14, 1, "Length (9um) - km"},
    {Show::kDump, 15, 1, "Length (9um)"},
    {Show::kDump, 16, 1, "Length (50um,OM2)"},
    {Show::kDump, 17, 1, "Length (62.5um,OM1)"},
    {Show::kDump, 18, 1, "Length (50um,OM4,Copper)"},
    {Show::kDump, 19, 1, "Length (50um,OM3,Copper)"},
    {Show::kText, 20, 16, "Vendor name"},
    {Show::kCode, 36, 1, "Extended Compliance Codes", kExtendedComplianceCodes,
     sizeof kExtendedComplianceCodes / sizeof(Code)},
    {Show::kDump, 37, 3, "Vendor OUI"},
    {Show::kText, 40, 16, "Vendor PN"},
    {Show::kText, 56, 4, "Vendor rev"},
    {Show::kHex, 60, 2, "Wavelength"},
    {Show::kBits, 62, 1, "FC Speed 2", kFcSpeed2Bits, sizeof kFcSpeed2Bits / sizeof(Code)},
    {Show::kDump, 63, 1, "CC_BASE"},
    {Show::kFlags, 64, 1, "Optional Transceiver Signals:", kTransceiverSignalBits1,
     sizeof kTransceiverSignalBits1 / sizeof(Code)},
    {Show::kFlags, 65, 1, "", kTransceiverSignalBits2, sizeof kTransceiverSignalBits2 / sizeof(Code)},
    {Show::kDump, 66, 1, "Signaling Rate Max"},
    {Show::kDump, 67, 1, "Signaling Rate Min"},
    {Show::kText, 68, 16, "Vendor SN"},
    {Show::kText, 84, 8, "Date code"},
    {Show::kFlags, 92, 1, "Diag Monitoring Type:", kDiagMonitoringBitsSfp,
     sizeof kDiagMonitoringBitsSfp / sizeof(Code)},
    {Show::kFlags, 93, 1, "Enhanced Options:", kEnhancedOptionBitsSfp,
     sizeof kEnhancedOptionBitsSfp / sizeof(Code)},
    {Show::kCode, 94, 1, "SFF-8472 Compliance", kSff8472ComplianceCodes,
     sizeof kSff8472ComplianceCodes / sizeof(Code)},
    {Show::kDump, 95, 1, "CC_EXT"},
    {Show::kDump, 96, 32, "Vendor Specific"},
    {Show::kDump, 149, 2, "SFP Firmware Version"},
    {Show::kDump, 151, 1, "TX Health Warning"},
    {Show::kDump, 152, 1, "TX Health Alarm"},
    {Show::kDump, 153, 1, "Time To Fail Prediction MSB"},
    {Show::kDump, 154, 1, "Time To Fail Prediction LSB"},
    {Show::kDump, 249, 2, "MCU Firmware Version"},
    {Show::kDump, 251, 3, "DSP Firmware Version"},
    {Show::kHeading, 0, 0, "\nAddress A2"},
    {Show::kHex, 256, 2, "Temp High Alarm"},
    {Show::kHex, 258, 2, "Temp Low Alarm"},
    {Show::kHex, 260, 2, "Temp High Warning"},
    {Show::kHex, 262, 2, "Temp Low Warning"},
    {Show::kHex, 264, 2, "Voltage High Alarm"},
    {Show::kHex, 266, 2, "Voltage Low Alarm"},
    {Show::kHex, 268, 2, "Voltage High Warning"},
    {Show::kHex, 270, 2, "Voltage Low Warning"},
    {Show::kHex, 272, 2, "Bias High Alarm"},
    {Show::kHex, 274, 2, "Bias Low Alarm"},
    {Show::kHex, 276, 2, "Bias High Warning"},
    {Show::kHex, 278, 2, "Bias Low Warning"},
    {Show::kHex, 280, 2, "TX Signal Power High Alarm"},
    {Show::kHex, 282, 2, "TX Signal Power Low Alarm"},
    {Show::kHex, 284, 2, "TX Signal Power High Warning"},
    {Show::kHex, 286, 2, "TX Signal Power Low Warning"},
    {Show::kHex, 288, 2, "RX Signal Power High Alarm"},
    {Show::kHex, 290, 2, "RX Signal Power Low Alarm"},
    {Show::kHex, 292, 2, "RX Signal Power High Warning"},
    {Show::kHex, 294, 2, "RX Signal Power Low Warning"},
    {Show::kHex, 312, 4, "Rx_PWR(4)"},
    {Show::kHex, 316, 4, "Rx_PWR(3)"},
    {Show::kHex, 320, 4, "Rx_PWR(2)"},
    {Show::kHex, 324, 4, "Rx_PWR(1)"},
    {Show::kHex, 328, 4, "Rx_PWR(0)"},
    {Show::kHex, 332, 2, "Tx_I(Slope)"},
    {Show::kHex, 334, 2, "Tx_I(Offset)"},
    {Show::kHex, 336, 2, "Tx_PWR(Slope)"},
    {Show::kHex, 338, 2, "Tx_PWR(Offset)"},
    {Show::kHex, 340, 2, "T(Slope)"},
    {Show::kHex, 342, 2, "T(Offset)"},
    {Show::kHex, 344, 2, "V(Slope)"},
    {Show::kHex, 346, 2, "V(Offset)"},
    {Show::kDump, 351, 1, "Checksum"},
    {Show::kDump, 352, 1, "Temperature MSB"},
    {Show::kDump, 353, 1, "Temperature LSB"},
    {Show::kDump, 354, 1, "Vcc MSB"},
    {Show::kDump, 355, 1, "Vcc LSB"},
    {Show::kDump, 356, 1, "TX Bias MSB"},
    {Show::kDump, 357, 1, "TX Bias LSB"},
    {Show::kDump, 358, 1, "TX Power MSB"},
    {Show::kDump, 359, 1, "TX Power LSB"},
    {Show::kDump, 360, 1, "RX Power MSB"},
    {Show::kDump, 361, 1, "RX Power LSB"},
    {Show::kDump, 362, 1, "Reserved MSB"},
    {Show::kDump, 363, 1, "Reserved LSB"},
    {Show::kDump, 364, 1, "Reserved MSB"},
    {Show::kDump, 365, 1, "Reserved LSB"},
    {Show::kFlags, 366, 1, "Status/Control Bits:", kStatusControlBits,
     sizeof kStatusControlBits / sizeof(Code)},
    {Show::kFlags, 367, 1, "", kWrapControlBits, sizeof kWrapControlBits / sizeof(Code)},
    {Show::kFlags, 368, 1, "", kAlarmFlagBits1, sizeof kAlarmFlagBits1 / sizeof(Code)},
    {Show::kFlags, 369, 1, "", kAlarmFlagBits2, sizeof kAlarmFlagBits2 / sizeof(Code)},
    {Show::kFlags, 372, 1, "", kWarningFlagBits1, sizeof kWarningFlagBits1 / sizeof(Code)},
    {Show::kFlags, 373, 1, "", kWarningFlagBits2, sizeof kWarningFlagBits2 / sizeof(Code)},
    {Show::kFlags, 374, 1, "Extended Module Control:", kExtendedModuleControlBits,
     sizeof kExtendedModuleControlBits / sizeof(Code)},
    {Show::kFlags, 375, 1, "Extended Status Bytes:", kExtendedStatusBits,
     sizeof kExtendedStatusBits / sizeof(Code)},
    {Show::kDump, 376, 8, "Vendor Specific"},
    {Show::kFlags, 386, 1, "TP1 to TP4 EWRAP Control:", kEwrapControlBits,
     sizeof kEwrapControlBits / sizeof(Code)},
    {Show::kFlags, 389, 1, "TP3 to TP2 OWRAP Control:", kOwrapControlBits,
     sizeof kOwrapControlBits / sizeof(Code)},
    {Show::kDump, 480, 1, "Electrical Output Tx Tap Pre3"},
    {Show::kDump, 481, 1, "Electrical Output Tx Tap Pre2"},
    {Show::kDump, 482, 1, "Electrical Output Tx Tap Pre1"},
    {Show::kDump, 483, 1, "Electrical Output Tx Tap Main"},
    {Show::kDump, 484, 1, "Electrical Output Tx Tap Post1"},
    {Show::kDump, 496, 1, "DSP Status Timing Control"},
    {Show::kDump, 497, 1, "DSP Control"},
    {Show::kDump, 500, 1, "FC 64G Mode Control"},
    {Show::kFlags, 501, 1, "LSN Control:", kLsnControlBits, sizeof kLsnControlBits / sizeof(Code)},
    {Show::kDump, 502, 3, "CDR Firmware Version"},
    {Show::kDump, 505, 1, "Laser Version"},
    {Show::kDump, 506, 1, "TIA Version"},
    {Show::kDump, 507, 1, "CDR Version"},
    {Show::kDump, 508, 1, "HW Version"},
    {Show::kDump, 509, 1, "MCU Version"},
    {Show::kDump, 510, 1, "PLP API Version"},
    {Show::kDump, 511, 1, "Debug MCU Version"},
};

inline constexpr Field kQsfpFields[] = {
    {Show::kHeading, 0, 0, "\nOptical Transceiver Digital Diagnostic Data:"},
    {Show::kHeading, 0, 0, "\nAddress A0"},
    {Show::kCode, 128, 1, "Identifier", kIdentifierCodes, sizeof kIdentifierCodes / sizeof(Code)},
    {Show::kCode, 129, 1, "Extended Identifier", kExtendedIdentifierCodesQsfp,
     sizeof kExtendedIdentifierCodesQsfp / sizeof(Code)},
    {Show::kCode, 130, 1, "Connector", kConnectorCodes, sizeof kConnectorCodes / sizeof(Code)},
    {Show::kCode, 131, 1, "Ethernet Speed"},
    {Show::kDump, 132, 3, "Compliance"},
    {Show::kBits, 135, 1, "FC Link Length", kFcLengthBits, sizeof kFcLengthBits / sizeof(Code)},
    {Show::kBits, 136, 1, "FC Transmitter Tech", kFcTechBits, sizeof kFcTechBits / sizeof(Code)},
    {Show::kBits, 137, 1, "FC Transmission Media", kFcMediaBits, sizeof kFcMediaBits / sizeof(Code)},
    {Show::kBits, 138, 1, "FC Speed", kFcSpeedBits, sizeof kFcSpeedBits / sizeof(Code)},
    {Show::kCode, 139, 1, "Encoding", kEncodingCodesQsfp, sizeof kEncodingCodesQsfp / sizeof(Code)},
    {Show::kDump, 140, 1, "BR, Nominal"},
    {Show::kDump, 142, 1, "Length (SMF) - km"},
    {Show::kDump, 143, 1, "Length (OM3 50um)"},
    {Show::kDump, 144, 1, "Length (OM2 50um)"},
    {Show::kDump, 145, 1, "Length (OM1 62.5um)"},
    {Show::kDump, 146, 1, "Length (Copper)"},
    {Show::kText, 148, 16, "Vendor name"},
    {Show::kDump, 165, 3, "Vendor OUI"},
    {Show::kText, 168, 16, "Vendor PN"},
    {Show::kText, 184, 2, "Vendor rev"},
    {Show::kHex, 186, 2, "Wavelength"},
    {Show::kDump, 191, 1, "CC_BASE"},
    {Show::kCode, 192, 1, "Extended Ethernet Speed", kExtendedEthernetSpeedCodes,
     sizeof kExtendedEthernetSpeedCodes / sizeof(Code)},
    {Show::kFlags, 193, 1, "Options 1:", kOptionBits1Qsfp, sizeof kOptionBits1Qsfp / sizeof(Code)},
    {Show::kFlags, 194, 1, "Options 2:", kOptionBits2Qsfp, sizeof kOptionBits2Qsfp / sizeof(Code)},
    {Show::kFlags, 195, 1, "Options 3:", kOptionBits3Qsfp, sizeof kOptionBits3Qsfp / sizeof(Code)},
    {Show::kText, 196, 16, "Vendor SN"},
    {Show::kText, 212, 8, "Date code"},
    {Show::kFlags, 220, 1, "Diag Monitoring Type:", kDiagMonitoringBitsQsfp,
     sizeof kDiagMonitoringBitsQsfp / sizeof(Code)},
    {Show::kFlags, 221, 1, "Enhanced Options:", kEnhancedOptionBitsQsfp,
     sizeof kEnhancedOptionBitsQsfp / sizeof(Code)},
    {Show::kDump, 222, 1, "BR, Nominal"},
    {Show::kDump, 223, 1, "CC_EXT"},
    {Show::kDump, 224, 32, "Vendor Specific"},
};

}  // namespace reference
