// Codes and flags of SFF-8472, the memory map of SFP modules.
// The odd spellings are meant: users' scripts know them.
#pragma once

#include <cstdint>

#include "port/sfp/sfp_code.h"

// Byte 1.
inline constexpr SfpCode ExtendedIdentifierCodesSfp[] = {
    {0x00, "GBIC definition is not specified"},   {0x01, "GBIC is compliant with MOD_DEF 1"},
    {0x02, "GBIC is compliant with MOD_DEF 2"},   {0x03, "GBIC is compliant with MOD_DEF 3"},
    {0x04, "GBIC/SFP defined by serial ID only"}, {0x05, "GBIC is compliant with MOD_DEF 5"},
    {0x06, "GBIC is compliant with MOD_DEF 6"},   {0x07, "GBIC is compliant with MOD_DEF 7"},
};

// Byte 3, 10 gigabit Ethernet compliance.
inline constexpr SfpCode EthernetSpeedBitsSfp[] = {
    {0x10, "10 Gbits/Sec"},
    {0x20, "10 Gbits/Sec"},
    {0x40, "10 Gbits/Sec"},
    {0x80, "10 Gbits/Sec"},
};

// Byte 3 as a speed, whichever of the bits say it.
inline constexpr SfpCode EthernetSpeedsSfp[] = {
    {0xf0, "10 Gbits/Sec"},
};

// Byte 13.
inline constexpr SfpCode RateIdentifierCodes[] = {
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

// Byte 64, option values.
inline constexpr SfpCode TransceiverSignalBits1[] = {
    {0x01, "Linear Receiver Output Implemented"},
    {0x02, "Power Level Declaration"},
    {0x04, "Cooled Transceiver Declaration"},
    {0x08, "Retimer or CDR indicator"},
    {0x10, "Paging implemented indicator"},
    {0x20, "High Power Level Declaration by bit 1"},
    {0x40, "High Power Level Declaration by bits 1 and 5"},
    {0x80, "Reserved"},
};

// Byte 65, option values.
inline constexpr SfpCode TransceiverSignalBits2[] = {
    {0x02, "Signal Loss, as defined in SFP MSA"},
    {0x04, "Signal Loss, inverted from SFP MSA"},
    {0x08, "TX_FAULT signal implemented"},
    {0x10, "TX_DISABLE implemented and disables serial o/p"},
    {0x20, "RATE_SELECT implemented"},
    {0x40, "Tunable transmitter technology"},
    {0x80, "Receiver decision threshold implemented"},
};

// Byte 92.
inline constexpr std::uint8_t kDiagnosticsImplemented = 0x40;
inline constexpr SfpCode DiagMonitoringBitsSfp[] = {
    {0x04, "Address change required"},
    {0x08, "Power Measurement"},
    {0x10, "Externally Calibrated"},
    {0x20, "Internally Calibrated"},
    {kDiagnosticsImplemented, "Digital diag monitoring"},
    {0x80, "Legacy diagnostic"},
};

// Byte 93.
inline constexpr SfpCode EnhancedOptionBitsSfp[] = {
    {0x02, "Optional Soft Rate Select ctrl per SFF-8431"},
    {0x04, "Optional Application Select ctrl per SFF-8079"},
    {0x08, "Optional Soft RATE_SELECT ctrl and monitoring"},
    {0x10, "Optional Soft RX_LOS monitoring"},
    {0x20, "Optional Soft TX_FAULT monitoring"},
    {0x40, "Optional Soft TX_DISABLE ctrl and monitoring"},
    {0x80, "Optional Alarm/warning flags"},
};

// Byte 94.
inline constexpr SfpCode Sff8472ComplianceCodes[] = {
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

// Address A2 byte 110.
inline constexpr SfpCode StatusControlBits[] = {
    {0x01, "Data_Ready_Bar"},
    {0x02, "LOS"},
    {0x04, "TX Fault"},
    {0x08, "Soft RX Rate Select"},
    {0x10, "RX Rate Select State"},
    {0x40, "Soft TX Disable"},
    {0x80, "TX Disable State"},
};

// Address A2 byte 111.
inline constexpr SfpCode WrapControlBits[] = {
    {0x01, "EWRAP Control Bit"},
    {0x02, "EWRAP FORWARD Control Bit"},
    {0x04, "OWRAP Control Bit"},
    {0x08, "OWRAP FORWARD Control Bit"},
};

// Address A2 byte 112.
inline constexpr SfpCode AlarmFlagBits1[] = {
    {0x01, "TX Signal Power Low Alarm"},
    {0x02, "TX Signal Power High Alarm"},
    {0x04, "TX Bias Low Alarm"},
    {0x08, "TX Bias High Alarm"},
    {0x10, "Vcc Low Alarm"},
    {0x20, "Vcc High Alarm"},
    {0x40, "Temp Low Alarm"},
    {0x80, "Temp High Alarm"},
};

// Address A2 byte 113.
inline constexpr SfpCode AlarmFlagBits2[] = {
    {0x40, "RX Signal Power Low Alarm"},
    {0x80, "RX Signal Power High Alarm"},
};

// Address A2 byte 116.
inline constexpr SfpCode WarningFlagBits1[] = {
    {0x01, "TX Signal Power Low Warning"},
    {0x02, "TX Signal Power High Warning"},
    {0x04, "TX Bias Low Warning"},
    {0x08, "TX Bias High Warning"},
    {0x10, "Vcc Low Warning"},
    {0x20, "Vcc High Warning"},
    {0x40, "Temp Low Warning"},
    {0x80, "Temp High Warning"},
};

// Address A2 byte 117.
inline constexpr SfpCode WarningFlagBits2[] = {
    {0x01, "Reserved Warning"},
    {0x02, "Reserved Warning"},
    {0x04, "Reserved Warning"},
    {0x08, "Reserved Warning"},
    {0x10, "Reserved Warning"},
    {0x20, "Reserved Warning"},
    {0x40, "RX Signal Power Low Warning"},
    {0x80, "RX Signal Power High Warning"},
};

// Address A2 byte 118.
inline constexpr SfpCode ExtendedModuleControlBits[] = {
    {0x01, "Optional Power Level Select"},
    {0x02, "Optional Power Level Operation State"},
    {0x04, "Power Level 4 Enable"},
    {0x08, "Soft RS(1) Select"},
    {0x10, "Adaptive Input EQ Fail Flag"},
    {0x20, "Reserved"},
    {0x40, "Reserved"},
    {0x80, "Reserved"},
};

// Address A2 byte 119.
inline constexpr SfpCode ExtendedStatusBits[] = {
    {0x02, "Optional Tx CDR Unlocked"},
    {0x04, "64GFC Mode"},
    {0x08, "PAM4 Mode Rx Configured"},
    {0x10, "PAM4 Mode Tx Configured"},
    {0x20, "Reserved"},
    {0x40, "Reserved"},
    {0x80, "Reserved"},
};

// Address A2 byte 130.
inline constexpr SfpCode EwrapControlBits[] = {
    {0x01, "EWRAP Disable"},
    {0x02, "EWRAP Enable"},
};

// Address A2 byte 133.
inline constexpr SfpCode OwrapControlBits[] = {
    {0x01, "OWRAP Disable"},
    {0x02, "OWRAP Enable"},
};

// Address A2 byte 245, link speed negotiation.
inline constexpr SfpCode LsnControlBits[] = {
    {0x01, "Train 64G"}, {0x02, "Train 32G"}, {0x04, "Fixed Speed Switch to 64G"},  {0x08, "Reserved"},
    {0x10, "Reserved"},  {0x20, "Reserved"},  {0x40, "Client Rx Adaptation Reset"}, {0x80, "LSN Mode"},
};
