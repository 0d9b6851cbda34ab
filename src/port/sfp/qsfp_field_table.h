// The memory map of QSFP modules after SFF-8636: upper page 00h, which begins at byte 128.
#pragma once

#include "port/sfp/fc_codes.h"
#include "port/sfp/sff8024_codes.h"
#include "port/sfp/sff8636_codes.h"
#include "port/sfp/sfp_field.h"

inline constexpr SfpField QsfpFieldTable[] = {
    {kNoOffset, 0, FIELD_HEADING, "\nOptical Transceiver Digital Diagnostic Data:"},
    {kNoOffset, 0, FIELD_HEADING, "\nAddress A0"},
    {128, 1, FIELD_BYTE_CODE, "Identifier", IdentifierCodes},
    {129, 1, FIELD_BYTE_CODE, "Extended Identifier", ExtendedIdentifierCodesQsfp},
    {130, 1, FIELD_BYTE_CODE, "Connector", ConnectorCodes},
    {131, 1, FIELD_BYTE_CODE, "Ethernet Speed"},
    {132, 3, FIELD_HEX_DUMP, "Compliance"},
    {135, 1, FIELD_BIT_LIST, "FC Link Length", FcLengthBits},
    {136, 1, FIELD_BIT_LIST, "FC Transmitter Tech", FcTechBits},
    {137, 1, FIELD_BIT_LIST, "FC Transmission Media", FcMediaBits},
    {138, 1, FIELD_BIT_LIST, "FC Speed", FcSpeedBits},
    {139, 1, FIELD_BYTE_CODE, "Encoding", EncodingCodesQsfp},
    {140, 1, FIELD_HEX_DUMP, "BR, Nominal"},
    {141, 1, FIELD_SKIP, ""},
    {142, 1, FIELD_HEX_DUMP, "Length (SMF) - km"},
    {143, 1, FIELD_HEX_DUMP, "Length (OM3 50um)"},
    {144, 1, FIELD_HEX_DUMP, "Length (OM2 50um)"},
    {145, 1, FIELD_HEX_DUMP, "Length (OM1 62.5um)"},
    {146, 1, FIELD_HEX_DUMP, "Length (Copper)"},
    {147, 1, FIELD_SKIP, ""},
    {148, 16, FIELD_ASCII, "Vendor name"},
    {164, 1, FIELD_SKIP, ""},
    {165, 3, FIELD_HEX_DUMP, "Vendor OUI"},
    {168, 16, FIELD_ASCII, "Vendor PN"},
    {184, 2, FIELD_ASCII, "Vendor rev"},
    {186, 2, FIELD_HEX2, "Wavelength"},
    {188, 2, FIELD_SKIP, ""},
    {190, 1, FIELD_SKIP, ""},
    {191, 1, FIELD_HEX_DUMP, "CC_BASE"},
    {192, 1, FIELD_BYTE_CODE, "Extended Ethernet Speed", ExtendedEthernetSpeedCodes},
    {193, 1, FIELD_BIT_FLAGS, "Options 1:", OptionBits1Qsfp},
    {194, 1, FIELD_BIT_FLAGS, "Options 2:", OptionBits2Qsfp},
    {195, 1, FIELD_BIT_FLAGS, "Options 3:", OptionBits3Qsfp},
    {196, 16, FIELD_ASCII, "Vendor SN"},
    {212, 8, FIELD_ASCII, "Date code"},
    {220, 1, FIELD_BIT_FLAGS, "Diag Monitoring Type:", DiagMonitoringBitsQsfp},
    {221, 1, FIELD_BIT_FLAGS, "Enhanced Options:", EnhancedOptionBitsQsfp},
    {222, 1, FIELD_HEX_DUMP, "BR, Nominal"},
    {223, 1, FIELD_HEX_DUMP, "CC_EXT"},
    {224, 32, FIELD_HEX_DUMP, "Vendor Specific"},
};
