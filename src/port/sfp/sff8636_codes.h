// Codes and flags of SFF-8636, the memory map of QSFP modules.
// The odd spellings are meant: users' scripts know them.
#pragma once

#include <cstdint>

#include "port/sfp/sfp_code.h"

// Byte 129, matched as a whole: power class, and whether the module recovers clocks (CDR).
inline constexpr SfpCode ExtendedIdentifierCodesQsfp[] = {
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
    {0xc4, "Power Class 4 (3.5 W max), CDR in Rx"},
    {0xc8, "Power Class 4 (3.5 W max), CDR in Tx"},
    {0xcc, "Power Class 4 (3.5 W max), CDR in Tx and Rx"},
    {0xc1, "Power Class 5 (4.0 W max)"},
    {0xcd, "Power Class 5 (4.0 W max), CDR in Tx and Rx"},
    {0xc2, "Power Class 6 (4.5 W max)"},
    {0xce, "Power Class 6 (4.5 W max), CDR in Tx and Rx"},
    {0xc3, "Power Class 7 (5.0 W max)"},
    {0xcf, "Power Class 7 (5.0 W max), CDR in Tx and Rx"},
};

// Byte 131 as speeds, each once, whichever of its bits say it.
inline constexpr SfpCode EthernetSpeedsQsfp[] = {
    {0x0f, "40 Gbits/Sec"},
    {0x70, "10 Gbits/Sec"},
};

// The bit of byte 131 that refers to the code of byte 192.
inline constexpr std::uint8_t kExtendedEthernetSpeedUsed = 0x80;

// Byte 193.
inline constexpr SfpCode OptionBits1Qsfp[] = {
    {0x01, "Rx Output Amplitude Fixed Programmable Settings"},
    {0x02, "Rx Output Emphasis Fixed Programmable Settings"},
    {0x04, "Tx Input Equalization Fixed Programmable Settings"},
    {0x08, "Tx Input Equalization Auto Adaptive Capable"},
};

// Byte 194.
inline constexpr SfpCode OptionBits2Qsfp[] = {
    {0x01, "Tx Squelch implemented"},
    {0x02, "Tx Squelch Disable implemented"},
    {0x04, "Rx Output Disable capable"},
    {0x08, "Rx Squelch Disable implemented"},
    {0x10, "Rx CDR Loss of Lock Flag implemented"},
    {0x20, "Tx CDR Loss of Lock Flag implemented"},
    {0x40, "Rx CDR On/Off Control implemented"},
    {0x80, "Tx CDR On/Off Control implemented"},
};

// Byte 195.
inline constexpr SfpCode OptionBits3Qsfp[] = {
    {0x02, "Tx Loss of Signal implemented"}, {0x04, "Tx Squelch implemented"},
    {0x08, "TX_FAULT signal implemented"},   {0x10, "TX_DISABLE implemented and disables serial o/p"},
    {0x20, "RATE_SELECT implemented"},       {0x40, "Memory Page 01h provided"},
    {0x80, "Memory Page 02h provided"},
};

// Byte 220.
inline constexpr SfpCode DiagMonitoringBitsQsfp[] = {
    {0x04, "Transmitter Power Measurement"},
    {0x08, "Received Power Measurement"},
};

// Byte 221.
inline constexpr SfpCode EnhancedOptionBitsQsfp[] = {
    {0x04, "Application Select Table Declaration"},
    {0x08, "Rate Selection Declaration"},
    {0x10, "Initialization Complete Flag implemented"},
};
