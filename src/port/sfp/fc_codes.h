// Fibre Channel compliance bits of a module: SFF-8472 bytes 7 to 10 and 62, SFF-8636 bytes 135 to 138, with
// the words of FC-PI. The odd spellings are meant: users' scripts know them.
#pragma once

#include <cstdint>

#include "port/sfp/sfp_code.h"

// Byte 7, link length.
inline constexpr SfpCode FcLengthBits[] = {
    {0x01, "Electrical-InterEnclosure (EL)"},
    {0x02, "Longwave Laser (LS)"},
    {0x04, "Shortwave Laser, linear Rx (SA)"},
    {0x08, "Medium distance (M))"},
    {0x10, "Long Distance (L)"},
    {0x20, "Intermediate Distance (I)"},
    {0x40, "Short Distance (S)"},
    {0x80, "Very Long Distance (V)"},
};

// Byte 8, transmitter technology; bit 0 belongs to the cable technology.
inline constexpr SfpCode FcTechBits[] = {
    {0x01, " "},
    {0x02, "Copper FC-BaseT (LR1/LR2/LR3)"},
    {0x04, "Copper Passive (IR1/IR2)"},
    {0x08, "Copper Active (SR1/SR2)"},
    {0x10, "Longwave Laser (LL)"},
    {0x20, "Shortwave Laser w/ OFC (SL)"},
    {0x40, "Shortwave Laser w/o OFC (SN)"},
    {0x80, "Electrical Intra-Enclosure (EL)"},
};

// Byte 9, transmission media.
inline constexpr SfpCode FcMediaBits[] = {
    {0x01, "Single Mode (SM)"},     {0x04, "Multi-mode 50m (M5)"},   {0x08, "Multi-mode 62.5m (M6)"},
    {0x10, "Video Coax (TV)"},      {0x20, "Minimiature Coax (MI)"}, {0x40, "Shielded Twisted Pair (TP)"},
    {0x80, "Twin Axial Pair (TW)"},
};

// Byte 10, speed.
inline constexpr SfpCode FcSpeedBits[] = {
    {0x01, "100 MBytes/Sec"},  {0x04, "200 MBytes/Sec"}, {0x08, "3200 MBytes/Sec"}, {0x10, "400 MBytes/Sec"},
    {0x20, "1600 MBytes/Sec"}, {0x40, "800 MBytes/Sec"}, {0x80, "1200 MBytes/Sec"},
};

// Set in byte 10 when byte 62 holds further speeds.
inline constexpr std::uint8_t kFcSpeed2Valid = 0x02;

// Byte 62, speed.
inline constexpr SfpCode FcSpeed2Bits[] = {
    {0x01, "6400 MBytes/Sec"},
    {0x02, "12800 MBytes/Sec"},
};

// The same bytes as the designations of link variants spell them. The two lowest bits of the link length name
// transmitters, the others distances.
inline constexpr std::uint8_t kFcLengthTransmitterBits = 0x03;
inline constexpr std::uint8_t kFcLengthDistanceBits = 0xfc;

inline constexpr SfpCode FcLengthShortBits[] = {
    {0x01, "EL"}, {0x02, "LS"}, {0x04, "SA"}, {0x08, "M"}, {0x10, "L"}, {0x20, "I"}, {0x40, "S"}, {0x80, "V"},
};

inline constexpr SfpCode FcTechShortBits[] = {
    {0x01, " "},  {0x02, "LR"}, {0x04, "IR"}, {0x08, "SR"},
    {0x10, "LL"}, {0x20, "SL"}, {0x40, "SN"}, {0x80, "EL"},
};

inline constexpr SfpCode FcMediaShortBits[] = {
    {0x01, "SM"}, {0x02, " "},  {0x04, "M5"}, {0x08, "M6"},
    {0x10, "TV"}, {0x20, "MI"}, {0x40, "TP"}, {0x80, "TW"},
};

// In rising order, so that the last set bit is the greatest speed. The bits of byte 62 are the high byte
// here.
inline constexpr SfpCode FcSpeedShortBits[] = {
    {0x0001, "100"},  {0x0004, "200"},  {0x0010, "400"},  {0x0040, "800"},   {0x0080, "1200"},
    {0x0020, "1600"}, {0x0008, "3200"}, {0x0100, "6400"}, {0x0200, "12800"},
};
